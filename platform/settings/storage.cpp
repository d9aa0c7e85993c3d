#include <glib.h>
#include <storage.h>

#include <array>
#include <cstring>
#include <optional>
#include <string>

namespace {

/// A folder of the user's that the desktop knows, or one under the home folder where it knows none.
struct MediaFolder {
    storage_directory_e type;
    std::optional<GUserDirectory> user_directory;
    const char *default_name;
};
constexpr std::array<MediaFolder, 9> kFolders{{
    {STORAGE_DIRECTORY_IMAGES, G_USER_DIRECTORY_PICTURES, "Pictures"},
    {STORAGE_DIRECTORY_SOUNDS, std::nullopt, "Sounds"},
    {STORAGE_DIRECTORY_VIDEOS, G_USER_DIRECTORY_VIDEOS, "Videos"},
    {STORAGE_DIRECTORY_CAMERA, std::nullopt, "Camera"},
    {STORAGE_DIRECTORY_DOWNLOADS, G_USER_DIRECTORY_DOWNLOAD, "Downloads"},
    {STORAGE_DIRECTORY_MUSIC, G_USER_DIRECTORY_MUSIC, "Music"},
    {STORAGE_DIRECTORY_DOCUMENTS, G_USER_DIRECTORY_DOCUMENTS, "Documents"},
    {STORAGE_DIRECTORY_OTHERS, std::nullopt, "Others"},
    {STORAGE_DIRECTORY_SYSTEM_RINGTONES, std::nullopt, "Ringtones"},
}};

int give(const std::string &folder, char **path) {
    char *const copy = strdup(folder.c_str());
    if (copy == nullptr) {
        return STORAGE_ERROR_OUT_OF_MEMORY;
    }
    *path = copy;
    return STORAGE_ERROR_NONE;
}

std::string path_of(const MediaFolder &folder) {
    const char *known =
        folder.user_directory ? g_get_user_special_dir(*folder.user_directory) : nullptr;
    return known != nullptr ? known : std::string(g_get_home_dir()) + "/" + folder.default_name;
}

}  // namespace

int storage_get_root_directory(int storage_id, char **path) {
    if (path == nullptr) {
        return STORAGE_ERROR_INVALID_PARAMETER;
    }
    return storage_id == STORAGE_INTERNAL ? give(g_get_home_dir(), path)
                                          : STORAGE_ERROR_NOT_SUPPORTED;
}

int storage_get_directory(int storage_id, storage_directory_e type, char **path) {
    if (path == nullptr) {
        return STORAGE_ERROR_INVALID_PARAMETER;
    }
    if (storage_id != STORAGE_INTERNAL) {
        return STORAGE_ERROR_NOT_SUPPORTED;
    }
    for (const MediaFolder &folder : kFolders) {
        if (folder.type == type) {
            return give(path_of(folder), path);
        }
    }
    return STORAGE_ERROR_INVALID_PARAMETER;
}
