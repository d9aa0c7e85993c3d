#pragma once

#include <Elementary.h>

#include <functional>

#include "app-assist/WViewController.h"

namespace app_assist {

struct _WPopupControllerImpl;

/// A popup, described before it is created with WViewController::attachPopup(). It ends by button,
/// back key, destroyPopup() or the death of the view that shows it, and is never used again. Main
/// loop only.
class WPopupController : public WViewController {
public:
    WPopupController();
    /// Either text is copied and may be null.
    WPopupController(const char *title, const char *content);

    /// @param title  copied; null or empty for none
    void setTitle(const char *title);
    /// The content is a text, which wins over the others, a view, which becomes a child of the
    /// popup, or what a function makes below the popup. A text and a function destroy a view that
    /// was set before.
    void setContent(const char *text);
    void setContent(WViewController *view);
    void setContent(std::function<Evas_Object *(Evas_Object *)> creator);
    /// All texts are then message ids of this text domain.
    void setTextDomain(const char *domain);
    /// All texts are then message ids of the default text domain.
    void setTextTranslatable();
    /// @param hook  runs on the new popup before anything is added, so that it can set the style
    void setCreationHook(std::function<void(Evas_Object *)> hook);
    /// @param handler  for the back key; gets a flag that is true, and destroys the popup unless it
    ///                 sets that to false. Without a handler the key deletes the popup.
    void setBackHandler(std::function<void(bool *)> handler);

    /// @param text          not null
    /// @param handler       as the back handler; an empty one stands for deleting the popup
    /// @param creationHook  runs on the button when it stands in its part; may be empty
    /// @return false, with a log line, for a fourth button
    bool addButton(const char *text, std::function<void(bool *)> handler,
                   std::function<void(Evas_Object *)> creationHook);
    bool addButton(const char *text, std::function<void(bool *)> handler);

protected:
    Evas_Object *onCreateView(Evas_Object *parent, void *viewParam) override;
    void onDestroy() override;
    ~WPopupController() override;

private:
    template <int index>
    static void _buttonClickedCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _backCb(void *data, Evas_Object *obj, void *eventInfo);
    static void _deletePopupCb(void *data, Evas_Object *obj, void *eventInfo);

    void _setText(Evas_Object *obj, const char *part, const char *text);
    void _addContent(Evas_Object *popup);
    void _addButtonObject(Evas_Object *popup, int index);
    void _buttonClicked(int index);

    _WPopupControllerImpl *_pv;
};

}  // namespace app_assist
