#pragma once

#include "app-assist/WContentViewController.h"

class TslVolumeViewInside;

/// The volume screen. The screen has no layout yet, so it can't be pushed: creating it fails, and
/// whoever pushes it destroys it. The levels are kept and answered.
///
/// Levels are whole steps of the sound manager, from 0. Main loop.
class TslVolumeView : public app_assist::WContentViewController {
public:
    TslVolumeView(int nCurrentVolume, int nMaxVolume, int nSafetyVolume);

    void setVolume(int nCurrentVolume);
    int getVolume();
    /// The level above which the bar warns.
    void setSafetyVolume(int nVolume);
    int getSafetyVolume();
    void setMaxVolume(int nMaxVolume);
    int getMaxVolume();

    /// Has the screen reader say the level.
    void readCurrentVolumeLevel();
    /// Leaves the screen as the back key does.
    void pop();

protected:
    ~TslVolumeView() override;

    bool onCreate(void *viewParam) override;
    Evas_Object *onCreateView(Evas_Object *pParent, void *viewParam) override;
    void onDestroy() override;

private:
    TslVolumeViewInside *m_pVolumeViewInside;
};
