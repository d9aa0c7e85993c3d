#include "shell/snapshot.h"

#include "shell/evas_object.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

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

bool save_from_memory(TopWindow &top, const Geometry &g, const std::string &file) {
    top.render();
    const void *pixels = top.pixels();
    if (pixels == nullptr) {
        return false;
    }
    const EvasObject image(evas_object_image_add(top.canvas()));
    evas_object_image_alpha_set(image.get(), EINA_FALSE);
    evas_object_image_size_set(image.get(), g.window_w, g.window_h);
    evas_object_image_data_copy_set(image.get(), const_cast<void *>(pixels));
    return save_image(image.get(), file);
}

/// A snapshot object is painted with all that lies below it, when the canvas is drawn.
bool save_from_canvas(TopWindow &top, const Geometry &g, const std::string &file) {
    const EvasObject image(evas_object_image_filled_add(top.canvas()));
    evas_object_image_snapshot_set(image.get(), EINA_TRUE);
    evas_object_geometry_set(image.get(), 0, 0, g.window_w, g.window_h);
    evas_object_pass_events_set(image.get(), EINA_TRUE);
    evas_object_show(image.get());
    evas_object_raise(image.get());
    top.render();
    evas_sync(top.canvas());
    return save_image(image.get(), file);
}

}  // namespace

bool save_snapshot(TopWindow &top, const Geometry &geometry, const std::string &file) {
    return top.in_memory() ? save_from_memory(top, geometry, file)
                           : save_from_canvas(top, geometry, file);
}

}  // namespace host
