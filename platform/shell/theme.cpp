#include "shell/theme.h"

#include <Elementary.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "common/data_folder.h"

namespace host {

void load_platform_theme() {
    std::error_code error;
    const std::filesystem::path file = data_folder() / "platform" / "host-theme.edj";
    if (!std::filesystem::exists(file, error)) {
        std::fprintf(stderr, "tessel: the platform's theme is missing: %s\n", file.c_str());
        return;
    }
    elm_theme_overlay_add(nullptr, file.c_str());
}

}  // namespace host
