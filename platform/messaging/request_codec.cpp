#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>

#include "messaging/app_control_host.h"

namespace host {
namespace {

constexpr std::string_view kReservedPrefix = "__";
constexpr std::string_view kLocalPrefixes[] = {"file:///", "file://localhost/"};
constexpr const char *kExtras = "extras";
constexpr const char *kLaunchMode = "launch-mode";

struct NamedField {
    const char *name;
    std::optional<std::string> app_control_s::*field;
};
constexpr std::array<NamedField, 6> kFields{{{"operation", &app_control_s::operation},
                                             {"uri", &app_control_s::uri},
                                             {"mime", &app_control_s::mime},
                                             {"category", &app_control_s::category},
                                             {"app-id", &app_control_s::app_id},
                                             {"caller", &app_control_s::caller}}};

int hex_digit(char digit) {
    return std::isdigit(static_cast<unsigned char>(digit)) ? digit - '0'
                                                           : (digit | 0x20) - 'a' + 10;
}

std::string percent_decoded(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool code = text[i] == '%' && i + 2 < text.size() &&
                          std::isxdigit(static_cast<unsigned char>(text[i + 1])) &&
                          std::isxdigit(static_cast<unsigned char>(text[i + 2]));
        const int byte = code ? hex_digit(text[i + 1]) * 16 + hex_digit(text[i + 2]) : 0;
        if (byte != 0) {
            decoded += static_cast<char>(byte);
            i += 2;
        } else {
            decoded += text[i];
        }
    }
    return decoded;
}

}  // namespace

bool is_reserved_extra_key(const std::string &key) {
    return key.starts_with(kReservedPrefix);
}

std::optional<std::string> extra_text(const app_control_s &request, const std::string &key) {
    const auto found = request.extras.values.find(key);
    const auto *text =
        found != request.extras.values.end() ? std::get_if<std::string>(&found->second) : nullptr;
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

GVariant *request_to_variant(const app_control_s &request) {
    GVariantDict dict;
    g_variant_dict_init(&dict, nullptr);
    for (const NamedField &named : kFields) {
        if (const std::optional<std::string> &text = request.*named.field) {
            g_variant_dict_insert_value(&dict, named.name, g_variant_new_bytestring(text->c_str()));
        }
    }
    g_variant_dict_insert(&dict, kLaunchMode, "i", static_cast<gint32>(request.launch_mode));
    g_variant_dict_insert_value(&dict, kExtras, bundle_to_variant(request.extras));
    return g_variant_dict_end(&dict);
}

AppControlPtr request_from_variant(GVariant *variant) {
    auto request = std::make_unique<app_control_s>();
    for (const NamedField &named : kFields) {
        const GVariantPtr text(
            g_variant_lookup_value(variant, named.name, G_VARIANT_TYPE_BYTESTRING));
        if (text) {
            request.get()->*named.field = g_variant_get_bytestring(text.get());
        }
    }
    gint32 mode = APP_CONTROL_LAUNCH_MODE_SINGLE;
    if (g_variant_lookup(variant, kLaunchMode, "i", &mode) &&
        mode == APP_CONTROL_LAUNCH_MODE_GROUP) {
        request->launch_mode = APP_CONTROL_LAUNCH_MODE_GROUP;
    }
    const GVariantPtr extras(g_variant_lookup_value(variant, kExtras, G_VARIANT_TYPE(kBundleType)));
    if (extras) {
        bundle_from_variant(extras.get(), request->extras);
    }
    return request;
}

std::string decode_local_uri(const std::string &uri) {
    for (const std::string_view prefix : kLocalPrefixes) {
        if (strncasecmp(uri.c_str(), prefix.data(), prefix.size()) == 0) {
            return "file:///" + percent_decoded(std::string_view(uri).substr(prefix.size()));
        }
    }
    return uri;
}

bool is_uri(const std::string &text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string::npos || colon == 0 ||
        std::isalpha(static_cast<unsigned char>(text[0])) == 0) {
        return false;
    }
    const bool scheme = std::all_of(
        text.begin(), text.begin() + static_cast<long>(colon),
        [](unsigned char c) { return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.'; });
    // A file may well be called "part 1: the end.mp4", so that a scheme alone makes no URI.
    return scheme && text.compare(colon, 3, "://") == 0;
}

}  // namespace host
