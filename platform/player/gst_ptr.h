#pragma once

#include <gst/gst.h>

#include <memory>

#include "common/gobject.h"

namespace host {

struct GstObjectUnref {
    void operator()(gpointer object) const { gst_object_unref(object); }
};
/// Owner of one reference to a GstObject.
template <typename T>
using GstObjectPtr = std::unique_ptr<T, GstObjectUnref>;

struct GstMiniObjectUnref {
    void operator()(gpointer object) const { gst_mini_object_unref(GST_MINI_OBJECT_CAST(object)); }
};
/// Owner of one reference to a sample, a buffer, caps or another of GStreamer's light objects.
template <typename T>
using GstMiniPtr = std::unique_ptr<T, GstMiniObjectUnref>;

}  // namespace host
