#pragma once

#include <Elementary.h>

#include <memory>

namespace app_assist {

/// Stands for a bare Evas object as long as that exists. Main loop only.
class IWEvasObject {
public:
    virtual ~IWEvasObject() = default;
    virtual Evas_Object *getEvasObject() = 0;
};

/// Tells whether a bare Evas object still exists; a locked pointer doesn't keep it alive.
using WEvasObjectWeakPtr = std::weak_ptr<IWEvasObject>;

/// @param obj  live object, not owned
/// @return pointer that expires when `obj` is deleted; calls for one object aren't merged
WEvasObjectWeakPtr wevasobject_get_weak_ptr(Evas_Object *obj);

}  // namespace app_assist
