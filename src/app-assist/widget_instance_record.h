#pragma once

#include <Elementary.h>

namespace app_assist {

class WWidget;
class WWidgetWindowController;

/// The record of WWidgetInstance, which WWidget fills in as the platform tells it.
struct _WWidgetInstanceImpl {
    WWidgetWindowController *_windowController = nullptr;
    WWidget *_widget = nullptr;
    int _width = 0;
    int _height = 0;
    // Watched, so that a window that closes by itself leaves no stale controller behind.
    Evas_Object *_windowObject = nullptr;
};

}  // namespace app_assist
