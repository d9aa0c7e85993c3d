#include "app-assist/WWidget.h"

#include "app-assist/WWidgetInstance.h"
#include "app-assist/WWidgetWindowController.h"
#include "widget_instance_record.h"

namespace app_assist {

namespace {

constexpr int START_FAILED = -12;

int resultOf(bool succeeded) {
    return succeeded ? WIDGET_ERROR_NONE : WIDGET_ERROR_FAULT;
}

}  // namespace

struct _WWidgetImpl {
    char _unused;
};

WWidget::WWidget() : _pv(new _WWidgetImpl()) {}

WWidget::~WWidget() {
    delete _pv;
}

int WWidget::start(int argc, char *argv[]) {
    widget_app_lifecycle_callback_s callbacks = {_createCb, _terminateCb};
    return widget_app_main(argc, argv, &callbacks, this) == WIDGET_ERROR_NONE ? 0 : START_FAILED;
}

void WWidget::onCreate() {}

void WWidget::onTerminate() {}

widget_class_h WWidget::_createCb(void *data) {
    const widget_instance_lifecycle_callback_s callbacks = {_instanceCreateCb, _instanceDestroyCb,
                                                            _instancePauseCb,  _instanceResumeCb,
                                                            _instanceResizeCb, _instanceUpdateCb};
    const widget_class_h widgetClass = widget_app_class_create(callbacks, data);
    static_cast<WWidget *>(data)->onCreate();
    return widgetClass;
}

void WWidget::_terminateCb(void *data) {
    static_cast<WWidget *>(data)->onTerminate();
}

int WWidget::_instanceCreateCb(widget_context_h context, bundle *content, int width, int height,
                               void *data) {
    auto *widget = static_cast<WWidget *>(data);
    WWidgetInstance *instance = widget->onCreateWidgetInstance();
    if (instance == nullptr) {
        return resultOf(false);
    }
    widget_app_context_set_tag(context, instance);
    instance->_pv->_width = width;
    instance->_pv->_height = height;
    instance->_pv->_widget = widget;
    // A failed instance stays: its deletion is the destroy call's.
    return resultOf(instance->onCreate(context, content, width, height));
}

int WWidget::_instanceDestroyCb(widget_context_h context, widget_app_destroy_type_e reason,
                                bundle *content, void *) {
    WWidgetInstance *instance = WWidgetInstance::getInstance(context);
    if (instance == nullptr) {
        return resultOf(false);
    }
    // The controller outlives its window here, and onDestroy() may still ask for it.
    instance->_unwatchWindow();
    if (instance->_pv->_windowController != nullptr) {
        instance->_pv->_windowController->destroy();
    }
    const bool destroyed = instance->onDestroy(context, reason, content);
    delete instance;
    return resultOf(destroyed);
}

int WWidget::_instancePauseCb(widget_context_h context, void *) {
    WWidgetInstance *instance = WWidgetInstance::getInstance(context);
    return resultOf(instance != nullptr && instance->onPause(context));
}

int WWidget::_instanceResumeCb(widget_context_h context, void *) {
    WWidgetInstance *instance = WWidgetInstance::getInstance(context);
    return resultOf(instance != nullptr && instance->onResume(context));
}

int WWidget::_instanceResizeCb(widget_context_h context, int width, int height, void *) {
    WWidgetInstance *instance = WWidgetInstance::getInstance(context);
    if (instance == nullptr || !instance->onResize(context, width, height)) {
        return resultOf(false);
    }
    instance->_pv->_width = width;
    instance->_pv->_height = height;
    return resultOf(true);
}

int WWidget::_instanceUpdateCb(widget_context_h context, bundle *content, int isForced, void *) {
    WWidgetInstance *instance = WWidgetInstance::getInstance(context);
    return resultOf(instance != nullptr && instance->onUpdate(context, content, isForced != 0));
}

}  // namespace app_assist
