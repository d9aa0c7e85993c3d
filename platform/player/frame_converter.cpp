#include "player/frame_converter.h"

#include <utility>

#include "player/gst_ptr.h"

namespace host {
namespace {

/// Three pictures are under way at most: one shown, one waiting, one being made.
constexpr std::size_t kSparePictures = 3;
/// Two source pixels in each direction for one shown: what the toolkits' own scalers do.
constexpr guint kScalerTaps = 2;

/// Wraps plain memory as a picture that GStreamer writes to.
class PixelTarget {
public:
    PixelTarget(const GstVideoInfo &info, void *pixels)
        : buffer_(gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), pixels,
                                              GST_VIDEO_INFO_SIZE(&info), 0,
                                              GST_VIDEO_INFO_SIZE(&info), nullptr, nullptr)) {
        mapped_ = gst_video_frame_map(&frame_, &info, buffer_.get(), GST_MAP_WRITE);
    }
    ~PixelTarget() {
        if (mapped_) {
            gst_video_frame_unmap(&frame_);
        }
    }
    PixelTarget(const PixelTarget &) = delete;
    PixelTarget &operator=(const PixelTarget &) = delete;

    [[nodiscard]] bool mapped() const { return mapped_; }
    [[nodiscard]] GstVideoFrame *frame() { return &frame_; }

private:
    GstMiniPtr<GstBuffer> buffer_;
    GstVideoFrame frame_;
    bool mapped_ = false;
};

class MappedPicture {
public:
    MappedPicture(GstBuffer *buffer, const GstVideoInfo &info)
        : mapped_(gst_video_frame_map(&frame_, &info, buffer, GST_MAP_READ)) {}
    ~MappedPicture() {
        if (mapped_) {
            gst_video_frame_unmap(&frame_);
        }
    }
    MappedPicture(const MappedPicture &) = delete;
    MappedPicture &operator=(const MappedPicture &) = delete;

    [[nodiscard]] bool mapped() const { return mapped_; }
    [[nodiscard]] GstVideoFrame *frame() { return &frame_; }

private:
    GstVideoFrame frame_;
    bool mapped_;
};

GstStructure *scaler_options(const PictureLayout &layout) {
    return gst_structure_new(
        "options", GST_VIDEO_CONVERTER_OPT_RESAMPLER_METHOD, GST_TYPE_VIDEO_RESAMPLER_METHOD,
        GST_VIDEO_RESAMPLER_METHOD_LINEAR, GST_VIDEO_RESAMPLER_OPT_MAX_TAPS, G_TYPE_INT,
        static_cast<gint>(kScalerTaps), GST_VIDEO_CONVERTER_OPT_CHROMA_RESAMPLER_METHOD,
        GST_TYPE_VIDEO_RESAMPLER_METHOD, GST_VIDEO_RESAMPLER_METHOD_LINEAR,
        GST_VIDEO_CONVERTER_OPT_SRC_X, G_TYPE_INT, layout.source_x, GST_VIDEO_CONVERTER_OPT_SRC_Y,
        G_TYPE_INT, layout.source_y, GST_VIDEO_CONVERTER_OPT_SRC_WIDTH, G_TYPE_INT,
        layout.source.width, GST_VIDEO_CONVERTER_OPT_SRC_HEIGHT, G_TYPE_INT, layout.source.height,
        nullptr);
}

/// The format of single pictures. The converter insists on equal rates, which say nothing here.
GstVideoInfo still(GstVideoInfo info) {
    info.interlace_mode = GST_VIDEO_INTERLACE_MODE_PROGRESSIVE;
    info.fps_n = 0;
    info.fps_d = 1;
    return info;
}

/// Changes the size alone; what the numbers of the pixels mean stays.
bool resize(GstVideoInfo &info, PixelSize size) {
    const GstVideoInfo before = info;
    if (!gst_video_info_set_format(&info, GST_VIDEO_INFO_FORMAT(&before),
                                   static_cast<guint>(size.width),
                                   static_cast<guint>(size.height))) {
        return false;
    }
    info.colorimetry = before.colorimetry;
    info.chroma_site = before.chroma_site;
    info = still(info);
    return true;
}

/// Where the pixel of the unturned picture at column, row comes to lie.
struct TurnedIndex {
    PixelSize from;
    Orientation orientation;

    [[nodiscard]] std::size_t operator()(int column, int row) const {
        const auto width = static_cast<std::size_t>(from.width);
        const auto height = static_cast<std::size_t>(from.height);
        const auto x =
            static_cast<std::size_t>(orientation.mirrored ? from.width - 1 - column : column);
        const auto y = static_cast<std::size_t>(row);
        switch (orientation.quarter_turns) {
        case 1:
            return x * height + (height - 1 - y);
        case 2:
            return (height - 1 - y) * width + (width - 1 - x);
        case 3:
            return (width - 1 - x) * height + y;
        default:
            return y * width + x;
        }
    }
};

void turn(const std::uint32_t *from, std::uint32_t *to, PixelSize size, Orientation orientation) {
    const TurnedIndex index{size, orientation};
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            to[index(column, row)] = *from++;
        }
    }
}

}  // namespace

PixelPool::Pixels PixelPool::take(std::size_t count) {
    {
        const std::lock_guard lock(mutex_);
        while (!spare_.empty()) {
            Pixels pixels = std::move(spare_.back());
            spare_.pop_back();
            if (pixels.size() == count) {
                return pixels;
            }
        }
    }
    return Pixels(count);
}

void PixelPool::give_back(Pixels pixels) {
    const std::lock_guard lock(mutex_);
    if (spare_.size() < kSparePictures) {
        spare_.push_back(std::move(pixels));
    }
}

PooledFrame::PooledFrame(std::shared_ptr<PixelPool> pool, PixelSize size)
    : pool_(std::move(pool)),
      pixels_(pool_->take(static_cast<std::size_t>(size.width) *
                          static_cast<std::size_t>(size.height))),
      size_(size) {}

PooledFrame::~PooledFrame() {
    pool_->give_back(std::move(pixels_));
}

/// The picture at its shown size, still in the decoder's format.
class FrameConverter::ScaledPicture {
public:
    explicit ScaledPicture(const GstVideoInfo &info)
        : buffer_(gst_buffer_new_allocate(nullptr, GST_VIDEO_INFO_SIZE(&info), nullptr)) {
        mapped_ = buffer_ && gst_video_frame_map(&frame_, &info, buffer_.get(), GST_MAP_READWRITE);
    }
    ~ScaledPicture() {
        if (mapped_) {
            gst_video_frame_unmap(&frame_);
        }
    }
    ScaledPicture(const ScaledPicture &) = delete;
    ScaledPicture &operator=(const ScaledPicture &) = delete;

    [[nodiscard]] bool mapped() const { return mapped_; }
    [[nodiscard]] GstVideoFrame *frame() { return &frame_; }

private:
    GstMiniPtr<GstBuffer> buffer_;
    GstVideoFrame frame_;
    bool mapped_ = false;
};

FrameConverter::FrameConverter() {
    gst_video_info_init(&format_);
    gst_video_info_init(&bgrx_);
}

FrameConverter::~FrameConverter() = default;

bool FrameConverter::prepare(const GstVideoInfo &format, const PictureLayout &layout) {
    if (prepared_ && layout == layout_ && gst_video_info_is_equal(&format, &format_)) {
        return true;
    }
    prepared_ = false;
    format_ = format;
    layout_ = layout;
    scaler_.reset();
    scaled_.reset();
    to_bgrx_.reset();

    const GstVideoInfo decoded = still(format);
    GstVideoInfo scaled = decoded;
    const PixelSize size{GST_VIDEO_INFO_WIDTH(&decoded), GST_VIDEO_INFO_HEIGHT(&decoded)};
    if (layout.scaled != size || layout.source != size) {
        if (!resize(scaled, layout.scaled)) {
            return false;
        }
        scaler_.reset(gst_video_converter_new(&decoded, &scaled, scaler_options(layout)));
        scaled_ = std::make_unique<ScaledPicture>(scaled);
        if (!scaler_ || !scaled_->mapped()) {
            return false;
        }
    }
    if (!gst_video_info_set_format(&bgrx_, GST_VIDEO_FORMAT_BGRx,
                                   static_cast<guint>(layout.scaled.width),
                                   static_cast<guint>(layout.scaled.height))) {
        return false;
    }
    bgrx_ = still(bgrx_);
    to_bgrx_.reset(gst_video_converter_new(
        &scaled, &bgrx_,
        gst_structure_new("options", GST_VIDEO_CONVERTER_OPT_DITHER_METHOD,
                          GST_TYPE_VIDEO_DITHER_METHOD, GST_VIDEO_DITHER_NONE, nullptr)));
    prepared_ = to_bgrx_ != nullptr;
    return prepared_;
}

std::unique_ptr<VideoFrame> FrameConverter::convert(GstBuffer *buffer, const GstVideoInfo &format,
                                                    const PictureLayout &layout) {
    if (layout.empty() || !prepare(format, layout)) {
        return nullptr;
    }
    MappedPicture decoded(buffer, format);
    if (!decoded.mapped()) {
        return nullptr;
    }
    GstVideoFrame *picture = decoded.frame();
    if (scaler_) {
        gst_video_converter_frame(scaler_.get(), picture, scaled_->frame());
        picture = scaled_->frame();
    }
    auto frame = std::make_unique<PooledFrame>(pool_, layout.scaled);
    {
        PixelTarget target(bgrx_, frame->data());
        if (!target.mapped()) {
            return nullptr;
        }
        gst_video_converter_frame(to_bgrx_.get(), picture, target.frame());
    }
    if (layout.orientation == Orientation{}) {
        return frame;
    }
    auto turned_frame = std::make_unique<PooledFrame>(pool_, layout.shown());
    turn(frame->data(), turned_frame->data(), layout.scaled, layout.orientation);
    return turned_frame;
}

}  // namespace host
