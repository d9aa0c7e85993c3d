#include "TslResourceCtrl.h"

#include <app_common.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "TslLog.h"

namespace {
constexpr size_t MAX_PATH_BUFFER = 1024;
}

TslResourceCtrl::TslResourceCtrl() {
    initResourceManager();
}

TslResourceCtrl::~TslResourceCtrl() {
    releaseResourceManager();
}

void TslResourceCtrl::setTextDomain(const std::string &szTextDomain) {
    this->szTextDomain = szTextDomain;
}

std::string TslResourceCtrl::getTextDomain() {
    TslInfo("szTextDomain: %s", szTextDomain.c_str());
    return szTextDomain;
}

char *TslResourceCtrl::getAppResourcePath() {
    char *szPath = app_get_resource_path();
    if (szPath == nullptr) {
        TslError("It is failed to get app resource path.");
    }
    return szPath;
}

char *TslResourceCtrl::getResourcePath(const char *szResourcePath) {
    if (szResourcePath == nullptr) {
        TslError("There is no szResourcePath.");
        return nullptr;
    }
    char *szBase = app_get_resource_path();
    if (szBase == nullptr) {
        TslError("It is failed to get app resource path.");
        return nullptr;
    }
    char szPath[MAX_PATH_BUFFER] = {};
    std::snprintf(szPath, sizeof(szPath), "%s%s", szBase, szResourcePath);
    std::free(szBase);
    return strdup(szPath);
}

bool TslResourceCtrl::initResourceManager() {
    TslInfo("");
    return true;
}

bool TslResourceCtrl::releaseResourceManager() {
    TslInfo("");
    return true;
}
