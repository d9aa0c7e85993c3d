#include <app_common.h>

#include <cstring>
#include <filesystem>

#include "common/data_folder.h"
#include "messaging/desktop_application.h"

namespace {

char *folder_of(const char *name) {
    const std::filesystem::path &data = host::data_folder();
    return data.empty() ? nullptr : strdup((data / name / "").c_str());
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
    return folder_of("res");
}

char *app_get_shared_resource_path(void) {
    return folder_of("shared");
}
