#include <Ecore_File.h>
#include <libintl.h>
#include <storage.h>
#include <sys/stat.h>
#include <vconf.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "TslLog.h"
#include "TslUtils.h"

namespace {

constexpr char TSL_UTIL_VCONF_KEY_PERSONAL[] = "memory/setting/personal";
constexpr char TEXT_DOMAIN[] = "tessel";
constexpr char CLOUD_ROOT[] =
    "/opt/usr/apps/com.orvane.nimbus-relay/shared/data/.cloud/dropbox/cache/root";
constexpr char SDCARD_ROOT[] = "/opt/storage/sdcard";
constexpr char USB_ROOT[] = "/opt/storage/usb";
constexpr char PRIVATE_ROOT[] = "/opt/storage/PrivateStorage";
constexpr const char *STREAMING_SCHEMES[] = {"rtp://", "rtsp://", "http://", "https://"};
constexpr const char *SUBTITLE_EXTENSIONS[] = {".srt", ".sub", ".smi", ".SRT", ".SUB", ".SMI"};

enum StorageType {
    STORAGE_TYPE_NONE,
    STORAGE_TYPE_INTERNAL,
    STORAGE_TYPE_CLOUD,
    STORAGE_TYPE_SDCARD,
    STORAGE_TYPE_USB,
    STORAGE_TYPE_PRIVATE
};

bool contains(const char *szText, const char *szPart) {
    return std::strstr(szText, szPart) != nullptr;
}

/// Lends a text of the platform's and frees the platform's own.
/// @return valid until the next call for the same place on this thread
const char *lend(std::string &strPlace, char *szPath) {
    strPlace = szPath;
    std::free(szPath);
    return strPlace.c_str();
}

StorageType _getStorageType(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr) {
        TslWarn("File path is nullptr.");
        return STORAGE_TYPE_NONE;
    }
    if (contains(szFilePath, CLOUD_ROOT)) {
        return STORAGE_TYPE_CLOUD;
    }
    if (contains(szFilePath, TslUtils::getMediaRootDirectory())) {
        return STORAGE_TYPE_INTERNAL;
    }
    if (contains(szFilePath, SDCARD_ROOT)) {
        return STORAGE_TYPE_SDCARD;
    }
    if (contains(szFilePath, USB_ROOT)) {
        return STORAGE_TYPE_USB;
    }
    if (contains(szFilePath, PRIVATE_ROOT)) {
        return STORAGE_TYPE_PRIVATE;
    }
    return STORAGE_TYPE_NONE;
}

/// The platform's folder for one kind of media.
/// @return null, with a path freed that may have come, on failure
char *getMediaDirectory(storage_directory_e nType) {
    char *szPath = nullptr;
    if (storage_get_directory(STORAGE_INTERNAL, nType, &szPath) != STORAGE_ERROR_NONE) {
        std::free(szPath);
        return nullptr;
    }
    return szPath;
}

/// What stands before the user's part of a path of the class, and what the user is shown for it.
struct StorageLabel {
    const char *szPrefix;
    const char *szTextId;
};

StorageLabel getStorageLabel(StorageType nType) {
    switch (nType) {
    case STORAGE_TYPE_INTERNAL:
        return {TslUtils::getMediaRootDirectory(), "IDS_VIDEO_SBODY_DEVICE_STORAGE"};
    case STORAGE_TYPE_CLOUD:
        return {CLOUD_ROOT, "IDS_CLOUD_BODY_DROPBOX_ABB"};
    case STORAGE_TYPE_SDCARD:
        return {SDCARD_ROOT, "IDS_VIDEO_SBODY_SD_CARD"};
    case STORAGE_TYPE_USB:
        return {USB_ROOT, "IDS_VPL_TAB_EXTERNAL_STORAGE"};
    default:
        return {PRIVATE_ROOT, "IDS_VIDEO_SBODY_DEVICE_STORAGE"};
    }
}

}  // namespace

bool TslUtils::isStreamingPath(const char *szUri) {
    TslInfo("");
    if (szUri == nullptr) {
        TslWarn("There is no szUri.");
        return false;
    }
    for (const char *szScheme : STREAMING_SCHEMES) {
        if (contains(szUri, szScheme)) {
            return true;
        }
    }
    return false;
}

bool TslUtils::isFileExisted(const char *szFullPath) {
    TslInfo("");
    if (szFullPath == nullptr) {
        TslWarn("There is no szFullPath.");
        return false;
    }
    struct stat status {};
    return stat(szFullPath, &status) == 0;
}

bool TslUtils::is3gpFile(const char *szFileUri) {
    TslInfo("");
    if (szFileUri == nullptr) {
        TslWarn("There is no szFileUri.");
        return false;
    }
    const char *szExtension = std::strrchr(szFileUri, '.');
    if (szExtension == nullptr) {
        TslWarn("There is no extension.");
        return false;
    }
    return std::strcmp(szExtension + 1, "3gp") == 0;
}

bool TslUtils::isPrivateStorage() {
    TslInfo("");
    int nPersonal = 0;
    if (vconf_get_bool(TSL_UTIL_VCONF_KEY_PERSONAL, &nPersonal) != 0) {
        TslInfo("To get information about TSL_UTIL_VCONF_KEY_PERSONAL_TAG is failed.");
        nPersonal = 0;
    }
    TslInfo("Personal Status = %d", nPersonal);
    return nPersonal != 0;
}

bool TslUtils::isPrivateContent(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr) {
        TslError("File Path is nullptr.");
        return false;
    }
    return _getStorageType(szFilePath) == STORAGE_TYPE_PRIVATE;
}

const char *TslUtils::getMediaRootDirectory() {
    TslInfo("");
    static thread_local std::string strPath;
    char *szPath = nullptr;
    if (storage_get_root_directory(STORAGE_INTERNAL, &szPath) != STORAGE_ERROR_NONE) {
        TslError("It is failed to get root directory of storage.");
        std::free(szPath);
        return nullptr;
    }
    return lend(strPath, szPath);
}

const char *TslUtils::getMediaMusicDirectory() {
    TslInfo("");
    static thread_local std::string strPath;
    char *szPath = getMediaDirectory(STORAGE_DIRECTORY_MUSIC);
    if (szPath == nullptr) {
        TslError("It is failed to get music directory of storage.");
        return nullptr;
    }
    return lend(strPath, szPath);
}

const char *TslUtils::getMediaVideosDirectory() {
    TslInfo("");
    static thread_local std::string strPath;
    char *szPath = getMediaDirectory(STORAGE_DIRECTORY_VIDEOS);
    if (szPath == nullptr) {
        TslError("It is failed to get videos directory of storage.");
        return nullptr;
    }
    return lend(strPath, szPath);
}

const char *TslUtils::getMediaSoundsDirectory() {
    TslInfo("");
    static thread_local std::string strPath;
    char *szPath = getMediaDirectory(STORAGE_DIRECTORY_SOUNDS);
    if (szPath == nullptr) {
        TslError("It is failed to get sounds directory of storage.");
        return nullptr;
    }
    return lend(strPath, szPath);
}

char *TslUtils::getTitleFromPath(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr || *szFilePath == '\0') {
        TslError("File Path is nullptr");
        return nullptr;
    }
    const char *szFile = ecore_file_file_get(szFilePath);
    return szFile != nullptr ? ecore_file_strip_ext(szFile) : nullptr;
}

char *TslUtils::getTitleAndExtFromPath(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr || *szFilePath == '\0') {
        TslError("File Path is nullptr");
        return nullptr;
    }
    const char *szTitleAndExt = ecore_file_file_get(szFilePath);
    if (szTitleAndExt == nullptr) {
        return nullptr;
    }
    TslInfo("szTitleAndExt : %s", szTitleAndExt);
    return strdup(szTitleAndExt);
}

char *TslUtils::getSubtitlePathFromPath(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr || *szFilePath == '\0') {
        TslError("File path is nullptr or invalid.");
        return nullptr;
    }
    // Of the whole path: the dot may be that of a folder.
    const std::string strPath(szFilePath);
    const std::string strBase = strPath.substr(0, strPath.rfind('.'));
    for (const char *szExtension : SUBTITLE_EXTENSIONS) {
        const std::string strCandidate = strBase + szExtension;
        struct stat status {};
        if (stat(strCandidate.c_str(), &status) == 0) {
            return strdup(strCandidate.c_str());
        }
    }
    return nullptr;
}

char *TslUtils::getFolderPathFromFile(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr) {
        TslError("File Path is NULL");
        return nullptr;
    }
    if (*szFilePath == '\0') {
        TslError("Length of szFilePath is zero.");
        return nullptr;
    }
    const char *szSlash = std::strrchr(szFilePath, '/');
    return szSlash != nullptr ? strndup(szFilePath, static_cast<size_t>(szSlash - szFilePath))
                              : nullptr;
}

char *TslUtils::convertFilePathToAbstractPath(const char *szFilePath) {
    TslInfo("");
    if (szFilePath == nullptr) {
        TslWarn("FilePath is nullptr.");
        return nullptr;
    }
    const StorageType nType = _getStorageType(szFilePath);
    if (nType == STORAGE_TYPE_NONE) {
        return nullptr;
    }
    const StorageLabel label = getStorageLabel(nType);
    if (label.szPrefix == nullptr) {
        // The storage has gone since its class was found.
        return nullptr;
    }
    std::string strPath(szFilePath);
    // By length alone, wherever the storage's path stands.
    strPath.replace(0, std::strlen(label.szPrefix), dgettext(TEXT_DOMAIN, label.szTextId));
    TslInfo("Converted File Path: [%s]", strPath.c_str());
    return strdup(strPath.c_str());
}

const char *TslUtils::findString(const char *szSource, const char *szTarget) {
    TslInfo("");
    if (szSource == nullptr || szTarget == nullptr) {
        TslWarn("There are no string.");
        return nullptr;
    }
    if (std::strlen(szTarget) > std::strlen(szSource)) {
        TslWarn("The size of the target string is bigger than source string.");
        return nullptr;
    }
    const char *szFound = std::strstr(szSource, szTarget);
    if (szFound == nullptr) {
        return nullptr;
    }
    TslInfo("It is found at(%d)", static_cast<int>(szFound - szSource));
    // By the value of the byte that is found there, not by its place.
    return szSource + static_cast<unsigned char>(*szFound);
}
