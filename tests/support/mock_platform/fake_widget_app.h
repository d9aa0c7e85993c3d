#pragma once

#include <widget_app.h>
#include <widget_app_efl.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

struct _widget_class {
    widget_instance_lifecycle_callback_s callbacks;
    void *user_data;
};

struct _widget_context {
    void *tag = nullptr;
    Evas_Object *window = nullptr;
};

/// A home screen without a main loop: between create and terminate a test does to the widgets what
/// it wants to. Main loop only.
class FakeWidgetApp {
public:
    FakeWidgetApp();
    ~FakeWidgetApp();

    /// Runs inside widget_app_main(), between create and terminate.
    void set_run(std::function<void()> run) { m_run = std::move(run); }

    /// A context as the platform makes it; lives to the end of the test.
    widget_context_h add_context();

    // What the platform does to an instance; each returns what the instance reported.
    int create(widget_context_h context, bundle *content, int width, int height);
    int destroy(widget_context_h context, widget_app_destroy_type_e reason, bundle *content);
    int pause(widget_context_h context);
    int resume(widget_context_h context);
    int resize(widget_context_h context, int width, int height);
    int update(widget_context_h context, bundle *content, int force);

    [[nodiscard]] widget_class_h the_class() { return m_class ? &*m_class : nullptr; }

    int widget_app_main(int argc, char **argv, widget_app_lifecycle_callback_s *callback,
                        void *user_data);
    widget_class_h widget_app_class_create(widget_instance_lifecycle_callback_s callback,
                                           void *user_data);
    int widget_app_context_set_tag(widget_context_h context, void *tag);
    int widget_app_context_get_tag(widget_context_h context, void **tag);
    int widget_app_get_elm_win(widget_context_h context, Evas_Object **win);

private:
    std::function<void()> m_run;
    std::optional<_widget_class> m_class;
    std::vector<std::unique_ptr<_widget_context>> m_contexts;
};

namespace mock {
FakeWidgetApp &fake_widget_app();
}
