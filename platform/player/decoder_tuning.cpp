#include "player/decoder_tuning.h"

#include <memory>

#include "player/reference_frames.h"

namespace host {
namespace {

/// Up to these many pixels one thread decodes any usual rate with ease, and each more costs memory
/// and hand-overs.
constexpr gint64 kOneThreadPixels = 640LL * 480;
constexpr gint64 kTwoThreadPixels = 1920LL * 1088;
constexpr int kThreadsByItself = 0;

int threads_for(gint64 pixels) {
    if (pixels <= kOneThreadPixels) {
        return 1;
    }
    return pixels <= kTwoThreadPixels ? 2 : kThreadsByItself;
}

/// Sits before one decoder. Only that decoder's streaming thread uses it.
class DecoderGate {
public:
    static GstPadProbeReturn probe(GstPad *pad, GstPadProbeInfo *info, gpointer gate) {
        return static_cast<DecoderGate *>(gate)->pass(pad, info);
    }
    static void free(gpointer gate) { delete static_cast<DecoderGate *>(gate); }

private:
    GstPadProbeReturn pass(GstPad *pad, GstPadProbeInfo *info) {
        if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
            return unneeded(GST_PAD_PROBE_INFO_BUFFER(info)) ? GST_PAD_PROBE_DROP
                                                             : GST_PAD_PROBE_OK;
        }
        GstEvent *event = GST_PAD_PROBE_INFO_EVENT(info);
        if (GST_EVENT_TYPE(event) == GST_EVENT_CAPS) {
            GstCaps *caps = nullptr;
            gst_event_parse_caps(event, &caps);
            take_caps(pad, gst_caps_get_structure(caps, 0));
        } else if (GST_EVENT_TYPE(event) == GST_EVENT_SEGMENT) {
            gst_event_copy_segment(event, &segment_);
        }
        return GST_PAD_PROBE_OK;
    }

    void take_caps(GstPad *pad, const GstStructure *caps) {
        frames_.set_caps(caps);
        gint width = 0;
        gint height = 0;
        gst_structure_get_int(caps, "width", &width);
        gst_structure_get_int(caps, "height", &height);
        GstElement *decoder = GST_PAD_PARENT(pad);
        if (decoder != nullptr &&
            g_object_class_find_property(G_OBJECT_GET_CLASS(decoder), "max-threads") != nullptr) {
            g_object_set(decoder, "max-threads", threads_for(static_cast<gint64>(width) * height),
                         nullptr);
        }
    }

    bool unneeded(GstBuffer *buffer) const {
        if (segment_.format != GST_FORMAT_TIME || segment_.rate < 0.0 ||
            !GST_BUFFER_PTS_IS_VALID(buffer) || !GST_BUFFER_DURATION_IS_VALID(buffer)) {
            return false;
        }
        // Twice the duration: where rates vary it is that of another picture.
        if (GST_BUFFER_PTS(buffer) + 2 * GST_BUFFER_DURATION(buffer) >= segment_.start) {
            return false;
        }
        GstMapInfo map;
        if (!gst_buffer_map(buffer, &map, GST_MAP_READ)) {
            return false;
        }
        const bool disposable = frames_.is_disposable({map.data, map.size});
        gst_buffer_unmap(buffer, &map);
        return disposable;
    }

    ReferenceFrames frames_;
    GstSegment segment_{};
};

bool is_video_decoder(GstElement *element) {
    GstElementFactory *factory = gst_element_get_factory(element);
    return factory != nullptr &&
           gst_element_factory_list_is_type(factory, GST_ELEMENT_FACTORY_TYPE_DECODER |
                                                         GST_ELEMENT_FACTORY_TYPE_MEDIA_VIDEO) != 0;
}

}  // namespace

void tune_if_video_decoder(GstElement *element) {
    if (!is_video_decoder(element)) {
        return;
    }
    GstPad *sink = gst_element_get_static_pad(element, "sink");
    if (sink == nullptr) {
        return;
    }
    gst_pad_add_probe(sink,
                      static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER |
                                                   GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
                      &DecoderGate::probe, new DecoderGate, &DecoderGate::free);
    gst_object_unref(sink);
}

}  // namespace host
