#include "player/sound_stream.h"

#include <gst/audio/audio.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <span>
#include <utility>

namespace host {
namespace {

constexpr char kVolumeFormats[] = "audio/x-raw, format={F32LE, S16LE}, layout=interleaved";

GstElement *add(GstElement *bin, const char *factory) {
    GstElement *element = gst_element_factory_make(factory, nullptr);
    if (element != nullptr) {
        gst_bin_add(GST_BIN(bin), element);
    }
    return element;
}

template <typename Sample>
void scale_pairs(std::span<std::uint8_t> bytes, float left, float right) {
    const std::span samples(reinterpret_cast<Sample *>(bytes.data()),
                            bytes.size() / sizeof(Sample));
    for (std::size_t index = 0; index + 1 < samples.size(); index += 2) {
        samples[index] = static_cast<Sample>(static_cast<float>(samples[index]) * left);
        samples[index + 1] = static_cast<Sample>(static_cast<float>(samples[index + 1]) * right);
    }
}

}  // namespace

/// Makes one side of a stereo stream softer than the other, just before the output.
class SoundStream::Balance {
public:
    void set(float left, float right) {
        left_.store(left, std::memory_order_relaxed);
        right_.store(right, std::memory_order_relaxed);
    }

    static GstPadProbeReturn probe(GstPad *, GstPadProbeInfo *info, gpointer balance) {
        auto &self = **static_cast<std::shared_ptr<Balance> *>(balance);
        if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
            GST_PAD_PROBE_INFO_DATA(info) = self.apply(GST_PAD_PROBE_INFO_BUFFER(info));
        } else if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) == GST_EVENT_CAPS) {
            GstCaps *caps = nullptr;
            gst_event_parse_caps(GST_PAD_PROBE_INFO_EVENT(info), &caps);
            self.stereo_ = gst_audio_info_from_caps(&self.format_, caps) != FALSE &&
                           GST_AUDIO_INFO_CHANNELS(&self.format_) == 2;
        }
        return GST_PAD_PROBE_OK;
    }
    static void free(gpointer balance) { delete static_cast<std::shared_ptr<Balance> *>(balance); }

private:
    GstBuffer *apply(GstBuffer *buffer) {
        const float left = left_.load(std::memory_order_relaxed);
        const float right = right_.load(std::memory_order_relaxed);
        if (!stereo_ || left == right) {
            return buffer;
        }
        buffer = gst_buffer_make_writable(buffer);
        GstMapInfo map;
        if (!gst_buffer_map(buffer, &map, GST_MAP_READWRITE)) {
            return buffer;
        }
        if (GST_AUDIO_INFO_FORMAT(&format_) == GST_AUDIO_FORMAT_F32LE) {
            scale_pairs<float>({map.data, map.size}, left, right);
        } else {
            scale_pairs<std::int16_t>({map.data, map.size}, left, right);
        }
        gst_buffer_unmap(buffer, &map);
        return buffer;
    }

    std::atomic<float> left_ = 1.0F;
    std::atomic<float> right_ = 1.0F;
    GstAudioInfo format_{};  ///< streaming thread
    bool stereo_ = false;    ///< streaming thread
};

SoundStream::SoundStream(const char *output) : balance_(std::make_shared<Balance>()) {
    GstObjectPtr<GstElement> bin(GST_ELEMENT(gst_object_ref_sink(gst_bin_new("sound-stream"))));
    const std::array chain = {add(bin.get(), "audioconvert"),  add(bin.get(), "scaletempo"),
                              add(bin.get(), "audioresample"), add(bin.get(), "capsfilter"),
                              add(bin.get(), "volume"),        add(bin.get(), output)};
    if (std::find(chain.begin(), chain.end(), nullptr) != chain.end()) {
        return;
    }
    for (std::size_t index = 1; index < chain.size(); ++index) {
        gst_element_link_pads(chain[index - 1], "src", chain[index], "sink");
    }
    const GstMiniPtr<GstCaps> formats(gst_caps_from_string(kVolumeFormats));
    g_object_set(chain[3], "caps", formats.get(), nullptr);
    volume_ = chain[4];
    // The one that discards the sound would do so at once.
    g_object_set(chain[5], "sync", TRUE, nullptr);

    const GstObjectPtr<GstPad> before_output(gst_element_get_static_pad(volume_, "src"));
    gst_pad_add_probe(before_output.get(),
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &Balance::probe, new std::shared_ptr<Balance>(balance_), &Balance::free);

    const GstObjectPtr<GstPad> entry(gst_element_get_static_pad(chain.front(), "sink"));
    gst_element_add_pad(bin.get(), gst_ghost_pad_new("sink", entry.get()));
    bin_ = std::move(bin);
}

void SoundStream::set_volume(const StreamVolume &volume) {
    if (!bin_) {
        return;
    }
    const float louder = std::max(volume.left, volume.right);
    g_object_set(volume_, "volume", static_cast<double>(louder) * volume.gain, nullptr);
    if (louder > 0.0F) {
        balance_->set(volume.left / louder, volume.right / louder);
    }
}

}  // namespace host
