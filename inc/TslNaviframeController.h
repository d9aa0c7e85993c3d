#pragma once

#include "app-assist/WContentViewController.h"
#include "app-assist/WNaviframeController.h"

/// The stack of the screens, with a look-up by name. Lives as long as its naviframe. Main loop.
class TslNaviframeController : public app_assist::WNaviframeController {
public:
    TslNaviframeController();

    /// @return the lowest page of that name, not owned; null when there is none
    app_assist::WContentViewController *getContentViewController(const char *szName);

protected:
    ~TslNaviframeController() override;
};
