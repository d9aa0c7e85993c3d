#pragma once

#include <Elementary.h>

#include "app-assist/WWindowController.h"

/// What the video hole of the window shows.
enum WindowType {
    WINDOW_TYPE_VIDEO = 1,   ///< transparent: the video below the window
    WINDOW_TYPE_OPAQUE = 2,  ///< black
};

/// The program's window: a hole for the video below it, and the screens above that.
///
/// Lives as long as its window. A turn of the window is reported on the signal bus. Main loop.
class TslWindowCtrl : public app_assist::WWindowController {
public:
    TslWindowCtrl();
    TslWindowCtrl(const char *szName, Elm_Win_Type winType);

    /// Sets what the video hole shows. An unknown value changes nothing.
    void changeColorMode(WindowType nType);

protected:
    ~TslWindowCtrl() override;

    Evas_Object *onCreateWin() override;
    Evas_Object *onCreateBaseLayout(Evas_Object *pWindow, Evas_Object **ppConformant) override;

private:
    static void _rotateChangedCb(void *pData, Evas_Object *pObj, void *pEventInfo);
};
