#include "access/extents.h"

#include <Elementary.h>
#include <dlfcn.h>

#include <optional>

#include "shell/shell.h"

extern "C" Eina_Rect efl_access_component_extents_get(const Eo *obj, Eina_Bool screen_coords);

namespace host {
namespace {

bool reporting = false;

/// What is drawn of `object`: itself, or the widget that an item is of. Null when nothing is.
const Evas_Object *drawn_for(const Eo *object) {
    while (object != nullptr && !efl_isa(object, EFL_CANVAS_OBJECT_CLASS)) {
        object = efl_parent_get(object);
    }
    return object;
}

std::optional<Rect> on_desktop(const Eo *object, const Eina_Rect &area) {
    const Evas_Object *const drawn = reporting ? drawn_for(object) : nullptr;
    return drawn != nullptr
               ? place_on_desktop(evas_object_evas_get(drawn), {area.x, area.y, area.w, area.h})
               : std::nullopt;
}

}  // namespace

void report_extents_on_desktop() {
    reporting = true;
}

}  // namespace host

// The toolkit calls this one of its operations by name, so that a definition in the program takes
// its place for the toolkit too. What an object says of itself is left as it is, and then moved.
Eina_Rect efl_access_component_extents_get(const Eo *obj, Eina_Bool screen_coords) {
    static auto *const toolkits_own = reinterpret_cast<decltype(&efl_access_component_extents_get)>(
        dlsym(RTLD_NEXT, "efl_access_component_extents_get"));
    Eina_Rect area = toolkits_own(obj, screen_coords);
    if (screen_coords != EINA_FALSE) {
        if (const auto place = host::on_desktop(obj, area)) {
            area = EINA_RECT(place->x, place->y, place->w, place->h);
        }
    }
    return area;
}
