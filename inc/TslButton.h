#pragma once

#include <Elementary.h>

#include "app-assist/WViewController.h"

class TslButtonInside;

/// One toolkit button as a view: a style, an optional label, an optional icon, three callbacks.
///
/// Lives as long as its Evas object; an icon given to it belongs to it. Parts are those of the
/// button's theme, null for the default part. A call without button logs and does nothing. Main
/// loop.
class TslButton : public app_assist::WViewController {
public:
    /// @param szStyle  null keeps the default style; the text must outlive the button
    /// @param szText, szTextDomain  id of the label and its text domain, copied; null for none
    /// @param clickedCb, pressedCb, unpressedCb  null for none; their data is the one of create()
    TslButton(const char *szStyle, const char *szText, const char *szTextDomain,
              Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb, Evas_Smart_Cb unpressedCb);

    /// @param szText  id of the new label, in the button's text domain or else in "tessel". Null
    ///     forgets the stored text and leaves the label as it is.
    void setText(const char *szText);
    /// @param szStyle  null does nothing
    void setStyle(const char *szStyle);
    void setDisabled(bool bDisabled);

    /// @param szColor  colour code of the theme
    void setIconColor(const char *szColor);
    /// Puts an icon into a part, in place of the one there, which is deleted.
    void setIcon(Evas_Object *pIcon, const char *szPart);
    /// Takes the icon out of a part and deletes it.
    void unsetIcon(const char *szPart);
    /// Changes the image of the icon in a part.
    /// @param szFile  relative to the resource folder
    /// @param szColor  colour code of the theme, null to keep the colour
    void updateIconImage(const char *szFile, const char *szGroup, const char *szColor,
                         const char *szPart);

    /// Takes all former callbacks away and sets those that aren't null.
    void setCallback(Evas_Smart_Cb clickedCb, Evas_Smart_Cb pressedCb, Evas_Smart_Cb unpressedCb,
                     void *pData);

protected:
    ~TslButton() override;

    Evas_Object *onCreateView(Evas_Object *pParent, void *viewParam) override;
    void onDestroy() override;

private:
    TslButtonInside *m_pButtonInside;
};
