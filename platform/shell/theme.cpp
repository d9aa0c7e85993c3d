#include "shell/theme.h"

#include <Elementary.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

namespace host {

void load_platform_theme() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    const auto file = program.parent_path() / "../share/tessel/platform/host-theme.edj";
    if (error || !std::filesystem::exists(file, error)) {
        std::fprintf(stderr, "tessel: the platform's theme is missing: %s\n", file.c_str());
        return;
    }
    elm_theme_overlay_add(nullptr, file.lexically_normal().c_str());
}

}  // namespace host
