#pragma once

#include "app-assist/WContentViewController.h"

class TslVolumeViewInside;

/// The volume screen: a bar around the rim, the level in the middle, a mute button, plus and minus.
/// It closes by itself after 3 seconds without input, unless the screen reader is on.
///
/// It keeps a copy of the level and never talks to the sound manager: what the user does with the
/// bezel, the buttons and the rim goes out on the signal bus, and what it shows is what it is told.
/// Levels are whole steps of the sound manager, from 0. Operations with a level answer -1 when the
/// view has no inside.
///
/// Lives as long as its Evas object; the naviframe owns it. Main loop.
class TslVolumeView : public app_assist::WContentViewController {
public:
    /// @param nCurrentVolume  0 to `nMaxVolume`
    /// @param nSafetyVolume  the level above which the bar warns; `nMaxVolume` + 1 for never
    TslVolumeView(int nCurrentVolume, int nMaxVolume, int nSafetyVolume);

    /// Shows a level, with the bar on its way there; one off the scale is refused and changes
    /// nothing.
    void setVolume(int nCurrentVolume);
    int getVolume();
    /// @param nVolume  0 to the maximum + 1, else refused. Shown with the next level.
    void setSafetyVolume(int nVolume);
    int getSafetyVolume();
    /// Levels up to the new maximum are accepted from now on; the bar keeps its range.
    void setMaxVolume(int nMaxVolume);
    int getMaxVolume();

    /// Has the screen reader say the level.
    void readCurrentVolumeLevel();
    /// Leaves the screen as the back key does. It must be the top one.
    void pop();

protected:
    ~TslVolumeView() override;

    bool onCreate(void *viewParam) override;
    Evas_Object *onCreateView(Evas_Object *pParent, void *viewParam) override;
    void onDestroy() override;
    void onPushed(Elm_Object_Item *pNaviItem) override;
    bool onPop() override;

private:
    TslVolumeViewInside *m_pVolumeViewInside;
};
