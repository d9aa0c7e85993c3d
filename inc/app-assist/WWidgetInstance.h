#pragma once

#include <widget_app.h>

namespace app_assist {

class WWidget;
class WWidgetWindowController;
struct _WWidgetInstanceImpl;

/// One widget that is shown. Made by WWidget::onCreateWidgetInstance(); deleted by the framework
/// when the widget goes, after onDestroy(). Main thread only.
class WWidgetInstance {
public:
    WWidgetInstance();
    virtual ~WWidgetInstance();
    WWidgetInstance(const WWidgetInstance &) = delete;
    WWidgetInstance &operator=(const WWidgetInstance &) = delete;

    /// Takes the widget's window controller and creates its window in the widget's current size.
    /// @return false when the window can't be made; the controller stays attached
    bool attachWindowController(widget_context_h context, WWidgetWindowController *window);
    /// @return null when none is attached or its window has gone
    WWidgetWindowController *getWindowController() const;
    /// @return the application that made this instance, null until the widget's creation
    WWidget *getWidget() const;
    /// Size in pixels, 0 until the widget's creation. A refused resize doesn't change it.
    int getWidth() const;
    int getHeight() const;

    /// @return the instance behind a widget, or null
    static WWidgetInstance *getInstance(widget_context_h context);

protected:
    // Of each the result is success; a failure is reported to the platform.

    /// @param content  what the widget was last told, may be null; valid during the call
    virtual bool onCreate(widget_context_h context, bundle *content, int width, int height) = 0;
    /// @param content  what the widget was last told; valid during the call
    virtual bool onDestroy(widget_context_h context, widget_app_destroy_type_e reason,
                           bundle *content);
    virtual bool onPause(widget_context_h context);
    virtual bool onResume(widget_context_h context);
    virtual bool onUpdate(widget_context_h context, bundle *content, bool isForced);
    virtual bool onResize(widget_context_h context, int width, int height);

private:
    // It delivers the platform's calls.
    friend class WWidget;

    static void _windowDeletedCb(void *data, Evas *evas, Evas_Object *obj, void *eventInfo);

    void _unwatchWindow();

    _WWidgetInstanceImpl *_pv;
};

}  // namespace app_assist
