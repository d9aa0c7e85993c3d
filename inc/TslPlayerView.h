#pragma once

#include "app-assist/WContentViewController.h"

class TslPlayerViewInside;

/// The playback screen: a transparent page with three round buttons and the two times, and a
/// surface that takes taps. It holds no playback state: it shows what it is told and reports what
/// the user does on the signal bus.
///
/// Lives as long as its Evas object; the naviframe owns it. Main loop.
class TslPlayerView : public app_assist::WContentViewController {
public:
    TslPlayerView();

    /// Shows the controls and starts the 3 seconds until they hide; nothing when they are shown.
    void showPlayViewUi();
    /// Hides the controls, unless the screen reader is on.
    void hidePlayViewUi();

    /// Makes the volume button respond. Its image stays what it is.
    void enableVolumeButton();
    /// Gives the button the mute image, which enabling it again doesn't take back.
    void disableVolumeButton();

    /// Starts the timer that asks for the times on the signal bus, every 0.3 seconds.
    void createProgressTimer();
    /// Stops asking; the times shown stay.
    void destroyProgressTimer();
    /// Shows the times as "MM:SS", the hours dropped.
    /// @param nPlayedTime, nDuration  milliseconds
    void setProgressValues(int nPlayedTime, int nDuration);

    /// The play button shows, and tells the screen reader, what a press will do.
    void changePlayButtonImageAsPlay();
    void changePlayButtonImageAsPause();
    /// Nothing while the button is disabled.
    void changeVolumeButtonImageAsVolumeOn();
    /// Also while the button is disabled.
    void changeVolumeButtonImageAsVolumeMute();
    /// The display mode button shows the mode that a press will bring.
    void changeDisplaymodeButtonImageAsFull();
    void changeDisplaymodeButtonImageAsLetterbox();

protected:
    ~TslPlayerView() override;

    bool onCreate(void *viewParam) override;
    Evas_Object *onCreateView(Evas_Object *pParent, void *viewParam) override;
    void onDestroy() override;
    void onPushed(Elm_Object_Item *pNaviItem) override;
    bool onPop() override;
    void onBecomeTop() override;

private:
    TslPlayerViewInside *m_pPlayerlViewInside;
};
