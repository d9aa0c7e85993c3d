#pragma once

#include <cstdint>

/// What the program knows of one media item. Main loop only.
///
/// The texts are the record's own: a setter keeps a copy, a getter gives one that the caller frees
/// with free(), or null when the text isn't set. Null isn't taken: it leaves the old text standing.
class TslVideoItemInfo {
public:
    TslVideoItemInfo() = default;
    ~TslVideoItemInfo();
    TslVideoItemInfo(const TslVideoItemInfo &) = delete;
    TslVideoItemInfo &operator=(const TslVideoItemInfo &) = delete;

    char *getUid() const;
    void setUid(const char *szUid);
    /// Location of the media.
    char *getUrl() const;
    void setUrl(const char *szUrl);
    char *getTitle() const;
    void setTitle(const char *szTitle);
    char *getThumbnailPath() const;
    void setThumbnailPath(const char *szThumbnailPath);

    /// Milliseconds.
    int getDuration() const { return m_nDuration; }
    void setDuration(int nDuration) { m_nDuration = nDuration; }
    /// Milliseconds.
    int getPlayedTime() const { return m_nPlayedTime; }
    void setPlayedTime(int nPlayedTime) { m_nPlayedTime = nPlayedTime; }
    /// Pixels.
    int getWidth() const { return m_nWidth; }
    void setWidth(int nWidth) { m_nWidth = nWidth; }
    /// Pixels.
    int getHeight() const { return m_nHeight; }
    void setHeight(int nHeight) { m_nHeight = nHeight; }
    /// Degrees by which the picture is to be turned.
    int getRotation() const { return m_nRotation; }
    void setRotation(int nRotation) { m_nRotation = nRotation; }
    /// Pictures a second.
    int getFrameRate() const { return m_nFrameRate; }
    void setFrameRate(int nFrameRate) { m_nFrameRate = nFrameRate; }
    /// Bits a second.
    int getBitRate() const { return m_nBitRate; }
    void setBitRate(int nBitRate) { m_nBitRate = nBitRate; }
    /// Bytes.
    int64_t getFileSize() const { return m_nFileSize; }
    void setFileSize(int64_t nFileSize) { m_nFileSize = nFileSize; }

    /// The platform's media item, not owned. Null when it isn't set.
    void *getMediaItemHandle() const;
    /// @param pMediaItemHandle  null isn't taken
    void setMediaItemHandle(void *pMediaItemHandle);

private:
    char *_szUid = nullptr;
    char *_szUrl = nullptr;
    char *_szTitle = nullptr;
    char *_szThumbnailPath = nullptr;
    int m_nDuration = 0;
    int m_nPlayedTime = 0;
    int m_nWidth = 0;
    int m_nHeight = 0;
    int m_nRotation = 0;
    int m_nFrameRate = 0;
    int m_nBitRate = 0;
    int64_t m_nFileSize = 0;
    void *m_pMediaItemHandle = nullptr;
};
