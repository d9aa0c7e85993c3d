#include "shell/object_tree.h"

#include <memory>

namespace host {

namespace {

struct EinaListFree {
    void operator()(Eina_List *list) const { eina_list_free(list); }
};

}  // namespace

std::string_view type_of(const Evas_Object *object) {
    const char *type = evas_object_type_get(object);
    return type != nullptr ? type : "";
}

bool is_visible(const Evas_Object *object) {
    for (const Evas_Object *part = object; part != nullptr;
         part = evas_object_smart_parent_get(part)) {
        int alpha = 0;
        evas_object_color_get(part, nullptr, nullptr, nullptr, &alpha);
        if (!evas_object_visible_get(part) || alpha == 0) {
            return false;
        }
    }
    int width = 0;
    int height = 0;
    evas_object_geometry_get(object, nullptr, nullptr, &width, &height);
    return width > 0 && height > 0;
}

void walk(Evas_Object *object, const std::function<void(Evas_Object *)> &visit) {
    visit(object);
    const std::unique_ptr<Eina_List, EinaListFree> members(evas_object_smart_members_get(object));
    for (const Eina_List *node = members.get(); node != nullptr; node = node->next) {
        walk(static_cast<Evas_Object *>(node->data), visit);
    }
}

void walk_window(Evas_Object *window, const std::function<void(Evas_Object *)> &visit) {
    for (Evas_Object *object = evas_object_bottom_get(evas_object_evas_get(window));
         object != nullptr; object = evas_object_above_get(object)) {
        // Members are reached through what they belong to.
        if (evas_object_smart_parent_get(object) == nullptr) {
            walk(object, visit);
        }
    }
}

}  // namespace host
