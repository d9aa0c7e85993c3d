#pragma once

#include <gst/gst.h>

#include <memory>

#include "player/gst_ptr.h"

namespace host {

/// Loudness of one stream, linear, each 0.0 to 1.0.
struct StreamVolume {
    float left = 1.0F;
    float right = 1.0F;
    double gain = 1.0;  ///< of the media volume, where no server applies that
};

/// The sound of one pipeline: conversion, tempo with the pitch kept, volume and balance, and the
/// output. Any thread.
class SoundStream {
public:
    /// @param output  name of the element that takes the sound
    explicit SoundStream(const char *output);

    /// The element for the pipeline; null when GStreamer lacks a part of it.
    [[nodiscard]] GstElement *element() const { return bin_.get(); }
    void set_volume(const StreamVolume &volume);

private:
    class Balance;

    GstObjectPtr<GstElement> bin_;
    GstElement *volume_ = nullptr;  ///< the bin's
    std::shared_ptr<Balance> balance_;
};

}  // namespace host
