#pragma once

#include <Elementary.h>

namespace app_assist {

class WViewController;

/// What a view knows of the window above it. Main loop only.
class IWWindowController {
public:
    virtual const char *getClassName() = 0;
    /// @return the window, null until created
    virtual Evas_Object *getEvasObject() = 0;
    /// @return may be null
    virtual Evas_Object *getBaseLayoutEvasObject() = 0;
    /// @return may be null
    virtual Evas_Object *getConformantEvasObject() = 0;
    /// @return the attached view, null when there is none
    virtual WViewController *getBaseViewController() = 0;

protected:
    virtual ~IWWindowController() = default;
};

}  // namespace app_assist
