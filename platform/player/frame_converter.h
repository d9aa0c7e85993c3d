#pragma once

#include <gst/video/video.h>

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "player/display_geometry.h"
#include "shell/shell.h"

namespace host {

/// Memory for converted pictures, used again and again, so that a running video takes none anew.
/// Any thread; lives as long as the last picture from it.
class PixelPool : public std::enable_shared_from_this<PixelPool> {
public:
    using Pixels = std::vector<std::uint32_t>;
    [[nodiscard]] Pixels take(std::size_t count);
    void give_back(Pixels pixels);

private:
    std::mutex mutex_;
    std::vector<Pixels> spare_;
};

/// A picture from the pool, given back to it at the end.
class PooledFrame final : public VideoFrame {
public:
    PooledFrame(std::shared_ptr<PixelPool> pool, PixelSize size);
    ~PooledFrame() override;
    PooledFrame(const PooledFrame &) = delete;
    PooledFrame &operator=(const PooledFrame &) = delete;

    [[nodiscard]] const void *pixels() const override { return pixels_.data(); }
    [[nodiscard]] int width() const override { return size_.width; }
    [[nodiscard]] int height() const override { return size_.height; }
    [[nodiscard]] int stride() const override { return size_.width * 4; }
    [[nodiscard]] std::uint32_t *data() { return pixels_.data(); }

private:
    std::shared_ptr<PixelPool> pool_;
    PixelPool::Pixels pixels_;
    PixelSize size_;
};

/// Turns decoded pictures into BGRx at the exact place and size of a layout. Scaling comes before
/// the conversion of colours, which is then done on the few pixels that are shown.
/// Thread: one at a time; the owner locks.
class FrameConverter {
public:
    FrameConverter();
    ~FrameConverter();

    /// @return the picture, or null when the buffer can't be read or converted.
    [[nodiscard]] std::unique_ptr<VideoFrame> convert(GstBuffer *buffer, const GstVideoInfo &format,
                                                      const PictureLayout &layout);

private:
    struct ConverterFree {
        void operator()(GstVideoConverter *converter) const { gst_video_converter_free(converter); }
    };
    using ConverterPtr = std::unique_ptr<GstVideoConverter, ConverterFree>;
    class ScaledPicture;

    bool prepare(const GstVideoInfo &format, const PictureLayout &layout);

    std::shared_ptr<PixelPool> pool_ = std::make_shared<PixelPool>();
    GstVideoInfo format_;
    PictureLayout layout_;
    bool prepared_ = false;
    ConverterPtr scaler_;  ///< null when there is nothing to scale or to cut
    std::unique_ptr<ScaledPicture> scaled_;
    ConverterPtr to_bgrx_;
    GstVideoInfo bgrx_;
};

}  // namespace host
