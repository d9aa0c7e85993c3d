#pragma once

#include <bundle.h>
#include <gio/gio.h>

#include <map>
#include <string>
#include <variant>
#include <vector>

/// The texts under their keys. An array keeps the pointers that it lends out beside its texts; map
/// nodes never move, so what is lent stays valid until its key goes.
struct _bundle_t {
    struct Array {
        explicit Array(std::vector<std::string> texts_);
        Array(const Array &other) : Array(other.texts) {}
        Array &operator=(const Array &) = delete;
        std::vector<std::string> texts;
        std::vector<const char *> pointers;
    };
    using Value = std::variant<std::string, Array>;

    std::map<std::string, Value, std::less<>> values;
};

namespace host {

/// Type of a bundle on the bus. Keys and texts go as bytes, since they need not be UTF-8.
inline constexpr const char *kBundleType = "a(aybaay)";

/// The bundle as one value for the bus, floating.
[[nodiscard]] GVariant *bundle_to_variant(const bundle &source);

/// The way back: adds what the value holds.
/// @param variant  of kBundleType
void bundle_from_variant(GVariant *variant, bundle &target);

}  // namespace host
