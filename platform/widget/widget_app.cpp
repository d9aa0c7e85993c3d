#include <dlog.h>
#include <errno.h>
#include <widget_app.h>
#include <widget_app_efl.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/application.h"
#include "app/lifecycle.h"
#include "messaging/desktop_application.h"
#include "shell/shell.h"
#include "widget/widget_host.h"

struct _widget_class {
    widget_instance_lifecycle_callback_s callbacks;
    void *user_data;
};

struct _widget_context {
    bundle content;
    int width = 0;
    int height = 0;
    void *tag = nullptr;
    Evas_Object *window = nullptr;
    bool had_window = false;
    bool is_seen = false;

    ~_widget_context() {
        if (window != nullptr) {
            evas_object_event_callback_del_full(window, EVAS_CALLBACK_DEL, window_deleted, this);
            evas_object_del(window);
        }
    }

    static void window_deleted(void *data, Evas * /*evas*/, Evas_Object * /*obj*/,
                               void * /*info*/) {
        static_cast<_widget_context *>(data)->window = nullptr;
    }
};

namespace host {
namespace {

/// An application that nobody starts to look at itself: a home screen, played by the host, shows
/// its widgets.
class WidgetApplication : public ApplicationKind {
public:
    WidgetApplication(const widget_app_lifecycle_callback_s &callbacks, void *user_data)
        : callbacks_(callbacks), user_data_(user_data) {
        current_ = this;
    }
    ~WidgetApplication() override { current_ = nullptr; }
    WidgetApplication(const WidgetApplication &) = delete;
    WidgetApplication &operator=(const WidgetApplication &) = delete;

    [[nodiscard]] static WidgetApplication *current() { return current_; }

    bool start() override {
        return start_widget_shell(options().screen.width, options().screen.height);
    }
    bool create() override {
        const widget_class_h made = callbacks_.create(user_data_);
        return made != nullptr && made == class_.get();
    }
    void take(app_control_h request) override;
    void set_foreground(bool foreground) override {
        in_foreground_ = foreground;
        tell_what_is_seen();
    }
    void terminate() override;
    void stop() override { stop_shell(); }
    bool has_picture() const override { return !contexts_.empty() && contexts_.back()->is_seen; }
    std::optional<std::string> failure() const override { return failure_; }

    [[nodiscard]] widget_class_h make_class(const widget_instance_lifecycle_callback_s &callbacks,
                                            void *user_data);
    /// @return null for what is no live context
    [[nodiscard]] _widget_context *find(const _widget_context *context) const;
    /// @return null when the window can't be made or has been deleted
    [[nodiscard]] Evas_Object *window_of(_widget_context &context);

    [[nodiscard]] bool add(int width, int height, const bundle &content);
    [[nodiscard]] bool resize(int width, int height);
    [[nodiscard]] bool update(const bundle &content, bool force);
    [[nodiscard]] bool remove();

private:
    template <typename Callback, typename... Arguments>
    int call(const char *what, Callback callback, Arguments... arguments) {
        const int result =
            callback == nullptr ? WIDGET_ERROR_NONE : callback(arguments..., class_->user_data);
        if (result != WIDGET_ERROR_NONE) {
            __dlog_print(LOG_ID_MAIN, DLOG_WARN, "HOST", "A widget's %s failed: 0x%08X", what,
                         static_cast<unsigned int>(result));
        }
        return result;
    }
    void show_top() const;
    void tell_what_is_seen();
    void tell_seen(_widget_context &context, bool seen);
    int destroy_top(widget_app_destroy_type_e reason);

    static inline WidgetApplication *current_ = nullptr;

    const widget_app_lifecycle_callback_s callbacks_;
    void *const user_data_;
    std::unique_ptr<_widget_class> class_;
    std::vector<std::unique_ptr<_widget_context>> contexts_;  ///< the last one is on top
    bool in_foreground_ = false;
    std::optional<std::string> failure_;
};

bundle *or_null(bundle &content) {
    return bundle_get_count(&content) > 0 ? &content : nullptr;
}

widget_class_h WidgetApplication::make_class(const widget_instance_lifecycle_callback_s &callbacks,
                                             void *user_data) {
    if (class_ != nullptr) {
        errno = EALREADY;
        return nullptr;
    }
    class_ = std::make_unique<_widget_class>(_widget_class{callbacks, user_data});
    return class_.get();
}

_widget_context *WidgetApplication::find(const _widget_context *context) const {
    const auto found = std::find_if(contexts_.begin(), contexts_.end(),
                                    [context](const auto &c) { return c.get() == context; });
    return found != contexts_.end() ? found->get() : nullptr;
}

Evas_Object *WidgetApplication::window_of(_widget_context &context) {
    if (!context.had_window) {
        context.window = elm_win_add(nullptr, kOwnId, ELM_WIN_BASIC);
        if (context.window != nullptr) {
            context.had_window = true;
            elm_win_title_set(context.window, kOwnId);
            evas_object_event_callback_add(context.window, EVAS_CALLBACK_DEL,
                                           _widget_context::window_deleted, &context);
            show_top();
        }
    }
    return context.window;
}

void WidgetApplication::show_top() const {
    if (!contexts_.empty()) {
        const _widget_context &top = *contexts_.back();
        show_widget_window(top.window, top.width, top.height);
    }
}

void WidgetApplication::take(app_control_h request) {
    const bool is_first = contexts_.empty();
    const Options::Size &size = options().screen;
    if (!add(size.width, size.height, request->extras) && is_first) {
        failure_ = "the widget could not be made";
    }
}

bool WidgetApplication::add(int width, int height, const bundle &content) {
    if (class_ == nullptr) {
        return false;
    }
    if (!contexts_.empty()) {
        tell_seen(*contexts_.back(), false);
    }
    contexts_.push_back(std::make_unique<_widget_context>());
    _widget_context *const context = contexts_.back().get();
    context->content = content;
    context->width = width;
    context->height = height;
    const int result = call("creation", class_->callbacks.create, context,
                            or_null(context->content), width, height);
    if (result != WIDGET_ERROR_NONE) {
        destroy_top(WIDGET_APP_DESTROY_TYPE_TEMPORARY);
        return false;
    }
    show_top();
    tell_what_is_seen();
    return true;
}

bool WidgetApplication::resize(int width, int height) {
    if (contexts_.empty()) {
        return false;
    }
    _widget_context *const top = contexts_.back().get();
    top->width = width;
    top->height = height;
    show_top();
    return call("resizing", class_->callbacks.resize, top, width, height) == WIDGET_ERROR_NONE;
}

bool WidgetApplication::update(const bundle &content, bool force) {
    if (contexts_.empty()) {
        return false;
    }
    _widget_context *const top = contexts_.back().get();
    top->content = content;
    return call("update", class_->callbacks.update, top, or_null(top->content), force ? 1 : 0) ==
           WIDGET_ERROR_NONE;
}

bool WidgetApplication::remove() {
    return !contexts_.empty() &&
           destroy_top(WIDGET_APP_DESTROY_TYPE_PERMANENT) == WIDGET_ERROR_NONE;
}

int WidgetApplication::destroy_top(widget_app_destroy_type_e reason) {
    _widget_context *const top = contexts_.back().get();
    tell_seen(*top, false);
    const int result = call("destruction", class_->callbacks.destroy, top, reason, &top->content);
    contexts_.pop_back();
    if (is_exiting()) {
        return result;
    }
    if (contexts_.empty()) {
        request_exit();
    }
    show_top();
    tell_what_is_seen();
    return result;
}

void WidgetApplication::tell_what_is_seen() {
    if (!contexts_.empty()) {
        tell_seen(*contexts_.back(), in_foreground_);
    }
}

void WidgetApplication::tell_seen(_widget_context &context, bool seen) {
    if (context.is_seen == seen) {
        return;
    }
    context.is_seen = seen;
    if (seen) {
        call("resuming", class_->callbacks.resume, &context);
    } else {
        call("pausing", class_->callbacks.pause, &context);
    }
}

void WidgetApplication::terminate() {
    while (!contexts_.empty()) {
        destroy_top(WIDGET_APP_DESTROY_TYPE_TEMPORARY);
    }
    if (callbacks_.terminate != nullptr) {
        callbacks_.terminate(user_data_);
    }
}

}  // namespace

bool add_widget(int width, int height, const bundle &content) {
    WidgetApplication *const application = WidgetApplication::current();
    return application != nullptr && application->add(width, height, content);
}

bool resize_widget(int width, int height) {
    WidgetApplication *const application = WidgetApplication::current();
    return application != nullptr && application->resize(width, height);
}

bool update_widget(const bundle &content, bool force) {
    WidgetApplication *const application = WidgetApplication::current();
    return application != nullptr && application->update(content, force);
}

bool remove_widget() {
    WidgetApplication *const application = WidgetApplication::current();
    return application != nullptr && application->remove();
}

}  // namespace host

int widget_app_main(int argc, char **argv, widget_app_lifecycle_callback_s *callback,
                    void *user_data) {
    if (argc < 0 || argv == nullptr || callback == nullptr || callback->create == nullptr) {
        return WIDGET_ERROR_INVALID_PARAMETER;
    }
    constexpr int kWrongUse = 2;
    host::WidgetApplication application(*callback, user_data);
    const int status = host::run_application(application, argc, argv);
    if (status == 0) {
        return WIDGET_ERROR_NONE;
    }
    if (application.failure()) {
        return WIDGET_ERROR_FAULT;
    }
    return status == kWrongUse ? WIDGET_ERROR_INVALID_PARAMETER : WIDGET_ERROR_CANCELED;
}

widget_class_h widget_app_class_create(widget_instance_lifecycle_callback_s callback,
                                       void *user_data) {
    host::WidgetApplication *const application = host::WidgetApplication::current();
    if (application == nullptr) {
        errno = EINVAL;
        return nullptr;
    }
    return application->make_class(callback, user_data);
}

namespace {

_widget_context *live_context(widget_context_h context) {
    const host::WidgetApplication *const application = host::WidgetApplication::current();
    return application != nullptr ? application->find(context) : nullptr;
}

}  // namespace

int widget_app_context_set_tag(widget_context_h context, void *tag) {
    _widget_context *const live = live_context(context);
    if (live == nullptr) {
        return WIDGET_ERROR_INVALID_PARAMETER;
    }
    live->tag = tag;
    return WIDGET_ERROR_NONE;
}

int widget_app_context_get_tag(widget_context_h context, void **tag) {
    const _widget_context *const live = live_context(context);
    if (live == nullptr || tag == nullptr) {
        return WIDGET_ERROR_INVALID_PARAMETER;
    }
    *tag = live->tag;
    return WIDGET_ERROR_NONE;
}

int widget_app_get_elm_win(widget_context_h context, Evas_Object **win) {
    _widget_context *const live = live_context(context);
    if (live == nullptr || win == nullptr) {
        return WIDGET_ERROR_INVALID_PARAMETER;
    }
    Evas_Object *const window = host::WidgetApplication::current()->window_of(*live);
    if (window == nullptr) {
        return WIDGET_ERROR_FAULT;
    }
    *win = window;
    return WIDGET_ERROR_NONE;
}
