#include "shell/snapshot.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

#include "shell/evas_object.h"

namespace host {

namespace {

/// Saves under a name of its own and renames, so that nobody reads half a picture.
bool save_image(const Evas_Object *image, const std::string &file) {
    const std::string partial = file + '.' + std::to_string(getpid()) + ".png";
    std::error_code error;
    if (evas_object_image_save(image, partial.c_str(), nullptr, "compress=3") == EINA_FALSE) {
        std::filesystem::remove(partial, error);
        return false;
    }
    std::filesystem::rename(partial, file, error);
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(partial, ignored);
        return false;
    }
    return true;
}

}  // namespace

bool save_snapshot(TopWindow &top, const Geometry &geometry, const std::string &file) {
    top.render();
    if (top.pixels() == nullptr) {
        return false;
    }
    const EvasObject image(evas_object_image_add(top.canvas()));
    evas_object_image_alpha_set(image.get(), EINA_FALSE);
    evas_object_image_size_set(image.get(), geometry.window_w, geometry.window_h);
    evas_object_image_data_copy_set(image.get(), const_cast<void *>(top.pixels()));
    return save_image(image.get(), file);
}

}  // namespace host
