#include "mock_widget_app.h"

#include "slot.h"

namespace mock {

MockWidgetApp &widget_app() {
    static Slot<testing::NiceMock<MockWidgetApp>> slot;
    return slot.get();
}

}  // namespace mock

#define DELEGATE(function)                                         \
    ON_CALL(*this, function).WillByDefault([](auto... arguments) { \
        return mock::fake_widget_app().function(arguments...);     \
    })

MockWidgetApp::MockWidgetApp() {
    DELEGATE(widget_app_main);
    DELEGATE(widget_app_class_create);
    DELEGATE(widget_app_context_set_tag);
    DELEGATE(widget_app_context_get_tag);
    DELEGATE(widget_app_get_elm_win);
}

MockWidgetApp::~MockWidgetApp() = default;

extern "C" {

int widget_app_main(int argc, char **argv, widget_app_lifecycle_callback_s *callback,
                    void *user_data) {
    return mock::widget_app().widget_app_main(argc, argv, callback, user_data);
}

widget_class_h widget_app_class_create(widget_instance_lifecycle_callback_s callback,
                                       void *user_data) {
    return mock::widget_app().widget_app_class_create(callback, user_data);
}

int widget_app_context_set_tag(widget_context_h context, void *tag) {
    return mock::widget_app().widget_app_context_set_tag(context, tag);
}

int widget_app_context_get_tag(widget_context_h context, void **tag) {
    return mock::widget_app().widget_app_context_get_tag(context, tag);
}

int widget_app_get_elm_win(widget_context_h context, Evas_Object **win) {
    return mock::widget_app().widget_app_get_elm_win(context, win);
}

}  // extern "C"
