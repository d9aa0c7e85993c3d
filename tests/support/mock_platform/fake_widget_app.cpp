#include "fake_widget_app.h"

#include "slot.h"

namespace mock {

FakeWidgetApp &fake_widget_app() {
    static Slot<FakeWidgetApp> slot;
    return slot.get();
}

}  // namespace mock

FakeWidgetApp::FakeWidgetApp() = default;
FakeWidgetApp::~FakeWidgetApp() = default;

widget_context_h FakeWidgetApp::add_context() {
    m_contexts.push_back(std::make_unique<_widget_context>());
    return m_contexts.back().get();
}

int FakeWidgetApp::create(widget_context_h context, bundle *content, int width, int height) {
    return m_class->callbacks.create(context, content, width, height, m_class->user_data);
}

int FakeWidgetApp::destroy(widget_context_h context, widget_app_destroy_type_e reason,
                           bundle *content) {
    return m_class->callbacks.destroy(context, reason, content, m_class->user_data);
}

int FakeWidgetApp::pause(widget_context_h context) {
    return m_class->callbacks.pause(context, m_class->user_data);
}

int FakeWidgetApp::resume(widget_context_h context) {
    return m_class->callbacks.resume(context, m_class->user_data);
}

int FakeWidgetApp::resize(widget_context_h context, int width, int height) {
    return m_class->callbacks.resize(context, width, height, m_class->user_data);
}

int FakeWidgetApp::update(widget_context_h context, bundle *content, int force) {
    return m_class->callbacks.update(context, content, force, m_class->user_data);
}

int FakeWidgetApp::widget_app_main(int, char **, widget_app_lifecycle_callback_s *callback,
                                   void *user_data) {
    if (callback->create(user_data) == nullptr) {
        return WIDGET_ERROR_NONE;
    }
    if (m_run) {
        m_run();
    }
    callback->terminate(user_data);
    return WIDGET_ERROR_NONE;
}

widget_class_h FakeWidgetApp::widget_app_class_create(widget_instance_lifecycle_callback_s callback,
                                                      void *user_data) {
    m_class = _widget_class{callback, user_data};
    return &*m_class;
}

int FakeWidgetApp::widget_app_context_set_tag(widget_context_h context, void *tag) {
    context->tag = tag;
    return WIDGET_ERROR_NONE;
}

int FakeWidgetApp::widget_app_context_get_tag(widget_context_h context, void **tag) {
    if (context == nullptr) {
        return WIDGET_ERROR_INVALID_PARAMETER;
    }
    *tag = context->tag;
    return WIDGET_ERROR_NONE;
}

int FakeWidgetApp::widget_app_get_elm_win(widget_context_h context, Evas_Object **win) {
    if (context->window == nullptr) {
        context->window = elm_win_add(nullptr, "widget", ELM_WIN_BASIC);
    }
    *win = context->window;
    return WIDGET_ERROR_NONE;
}
