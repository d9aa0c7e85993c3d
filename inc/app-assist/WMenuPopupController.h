#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/WViewController.h"

namespace app_assist {

struct WMenuPopupControllerImpl;

/// The menu behind the more key. The process knows the one that was created last, so that it can be
/// closed when the application goes to the background. Main loop only.
class WMenuPopupController : public WViewController {
public:
    WMenuPopupController();

    /// Makes the menu, not yet shown.
    /// @param win        window below which it stands
    /// @param naviframe  object whose resizing places the menu anew
    /// @return false when the menu can't be made
    bool createMenu(Evas_Object *win, Evas_Object *naviframe);
    /// @param handler  runs when the item is selected; the menu is deleted after it
    /// @return null, with a log line, before createMenu()
    Elm_Object_Item *appendItem(const char *label, std::function<void()> handler);
    /// Shows the menu at the middle of the bottom edge.
    /// @return false, with a log line, before createMenu()
    bool showMenu();

    /// Deletes the menu that was created last, if it is still there.
    static void destroyLastMenuPopup();

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *viewParam) override;
    void onDestroy() override;
    ~WMenuPopupController() override;

private:
    static void _itemSelectedCb(void *data, Evas_Object *obj, void *eventInfo);

    WMenuPopupControllerImpl *_pv;
};

}  // namespace app_assist
