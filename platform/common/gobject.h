#pragma once

#include <gio/gio.h>

#include <memory>

namespace host {

struct GObjectUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
/// Owner of one reference to a GObject.
template <typename T>
using GObjectPtr = std::unique_ptr<T, GObjectUnref>;

struct GVariantUnref {
    void operator()(GVariant *variant) const { g_variant_unref(variant); }
};
using GVariantPtr = std::unique_ptr<GVariant, GVariantUnref>;

struct GErrorFree {
    void operator()(GError *error) const { g_error_free(error); }
};
using GErrorPtr = std::unique_ptr<GError, GErrorFree>;

struct GFree {
    void operator()(gpointer memory) const { g_free(memory); }
};
/// Owner of a text of GLib's.
using GText = std::unique_ptr<char, GFree>;

/// Receives a GError from a call: `GErrorPtr error; call(..., out(error))`.
class GErrorOut {
public:
    explicit GErrorOut(GErrorPtr &target) : target_(target) {}
    ~GErrorOut() { target_.reset(error_); }
    operator GError **() { return &error_; }

private:
    GErrorPtr &target_;
    GError *error_ = nullptr;
};

[[nodiscard]] inline GErrorOut out(GErrorPtr &error) {
    return GErrorOut(error);
}

}  // namespace host
