#include <app_common.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "messaging/desktop_application.h"

namespace {

// The data lies beside the program's folder, in the build tree and in an installation alike.
char *data_folder(const char *name) {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error) {
        return nullptr;
    }
    const std::filesystem::path prefix = program.parent_path().parent_path();
    return strdup((prefix / "share" / "tessel" / name / "").c_str());
}

}  // namespace

int app_get_id(char **id) {
    if (id == nullptr) {
        return APP_ERROR_INVALID_PARAMETER;
    }
    *id = strdup(host::kOwnId);
    return *id != nullptr ? APP_ERROR_NONE : APP_ERROR_OUT_OF_MEMORY;
}

char *app_get_resource_path(void) {
    return data_folder("res");
}

char *app_get_shared_resource_path(void) {
    return data_folder("shared");
}
