#pragma once

#include <widget_app.h>

namespace app_assist {

class WWidgetInstance;
struct _WWidgetImpl;

/// An application whose user interface is widgets on another's screen: the platform's life cycle as
/// virtual operations. Main thread only.
class WWidget {
public:
    WWidget();
    virtual ~WWidget();
    WWidget(const WWidget &) = delete;
    WWidget &operator=(const WWidget &) = delete;

    /// Runs the application to its end. Called once, by main().
    /// @return 0, or -12 when the platform refused or failed
    int start(int argc, char *argv[]);

protected:
    virtual void onCreate();
    virtual void onTerminate();
    /// Makes the object behind one widget that is to be shown.
    /// @return null to refuse it. The framework deletes the object when its widget goes.
    virtual WWidgetInstance *onCreateWidgetInstance() = 0;

private:
    static widget_class_h _createCb(void *data);
    static void _terminateCb(void *data);

    static int _instanceCreateCb(widget_context_h context, bundle *content, int width, int height,
                                 void *data);
    static int _instanceDestroyCb(widget_context_h context, widget_app_destroy_type_e reason,
                                  bundle *content, void *data);
    static int _instancePauseCb(widget_context_h context, void *data);
    static int _instanceResumeCb(widget_context_h context, void *data);
    static int _instanceResizeCb(widget_context_h context, int width, int height, void *data);
    static int _instanceUpdateCb(widget_context_h context, bundle *content, int isForced,
                                 void *data);

    _WWidgetImpl *_pv;
};

}  // namespace app_assist
