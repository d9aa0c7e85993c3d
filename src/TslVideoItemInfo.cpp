#include "TslVideoItemInfo.h"

#include <cstdlib>
#include <cstring>

#include "TslLog.h"

namespace {

void replaceText(char *&szText, const char *szNew) {
    std::free(szText);
    szText = strdup(szNew);
}

}  // namespace

TslVideoItemInfo::~TslVideoItemInfo() {
    std::free(_szUid);
    std::free(_szUrl);
    std::free(_szTitle);
    std::free(_szThumbnailPath);
}

char *TslVideoItemInfo::getUid() const {
    if (_szUid == nullptr) {
        TslWarn("There is no _szUid.");
        return nullptr;
    }
    return strdup(_szUid);
}

void TslVideoItemInfo::setUid(const char *szUid) {
    if (szUid == nullptr) {
        TslWarn("There is no szUid.");
        return;
    }
    replaceText(_szUid, szUid);
}

char *TslVideoItemInfo::getUrl() const {
    if (_szUrl == nullptr) {
        TslWarn("There is no _szUrl.");
        return nullptr;
    }
    return strdup(_szUrl);
}

void TslVideoItemInfo::setUrl(const char *szUrl) {
    if (szUrl == nullptr) {
        TslWarn("There is no szUrl.");
        return;
    }
    replaceText(_szUrl, szUrl);
}

char *TslVideoItemInfo::getTitle() const {
    if (_szTitle == nullptr) {
        TslWarn("There is no _szTitle.");
        return nullptr;
    }
    return strdup(_szTitle);
}

void TslVideoItemInfo::setTitle(const char *szTitle) {
    if (szTitle == nullptr) {
        TslWarn("There is no szTitle.");
        return;
    }
    replaceText(_szTitle, szTitle);
}

char *TslVideoItemInfo::getThumbnailPath() const {
    if (_szThumbnailPath == nullptr) {
        TslWarn("There is no _szThumbnailPath.");
        return nullptr;
    }
    return strdup(_szThumbnailPath);
}

void TslVideoItemInfo::setThumbnailPath(const char *szThumbnailPath) {
    if (szThumbnailPath == nullptr) {
        TslWarn("There is no szThumbnailPath.");
        return;
    }
    replaceText(_szThumbnailPath, szThumbnailPath);
}

void *TslVideoItemInfo::getMediaItemHandle() const {
    if (m_pMediaItemHandle == nullptr) {
        TslWarn("There is no m_pMediaItemHandle.");
    }
    return m_pMediaItemHandle;
}

void TslVideoItemInfo::setMediaItemHandle(void *pMediaItemHandle) {
    if (pMediaItemHandle == nullptr) {
        TslWarn("There is no pMediaItemHandle.");
        return;
    }
    m_pMediaItemHandle = pMediaItemHandle;
}
