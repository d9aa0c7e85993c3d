#pragma once

#include <Evas.h>

#include <functional>
#include <string_view>

namespace host {

/// The toolkit's name of an object's type; empty for none.
[[nodiscard]] std::string_view type_of(const Evas_Object *object);

/// Shown, of some size, and neither it nor what it stands in is transparent.
[[nodiscard]] bool is_visible(const Evas_Object *object);

/// Calls `visit` for an object and all that it is made of, parents first, from the lowest layer up.
void walk(Evas_Object *object, const std::function<void(Evas_Object *)> &visit);

/// The same for all objects of a window's canvas.
void walk_window(Evas_Object *window, const std::function<void(Evas_Object *)> &visit);

}  // namespace host
