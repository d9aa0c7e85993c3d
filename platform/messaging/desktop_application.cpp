#include "messaging/desktop_application.h"

#include <glib.h>

#include <algorithm>
#include <memory>
#include <utility>

// Null in a program that defines none; see tessel_application() of the build.
extern "C" __attribute__((weak)) const char tessel_application_id[];

namespace host {

const char *const kOwnId =
    tessel_application_id != nullptr ? tessel_application_id : "com.orvane.tessel";

namespace {

constexpr const char *kUriCharacters = ":/?#[]@!$&'()*+,;=%";

// The media as the desktop's interface wants it, a proper URI; empty when there is none.
std::string media_uri(const app_control_s &request) {
    if (request.uri && !request.uri->empty() &&
        g_utf8_validate(request.uri->c_str(), -1, nullptr)) {
        const GText escaped(g_uri_escape_string(request.uri->c_str(), kUriCharacters, FALSE));
        return escaped.get();
    }
    const auto path = extra_text(request, APP_CONTROL_DATA_PATH);
    const GText uri(path && path->starts_with('/')
                        ? g_filename_to_uri(path->c_str(), nullptr, nullptr)
                        : nullptr);
    return uri ? uri.get() : "";
}

OwnApplication &mutable_own_application() {
    static OwnApplication instance;
    return instance;
}

}  // namespace

std::string object_path_of(const std::string &app_id) {
    std::string path = "/" + app_id;
    std::replace(path.begin(), path.end(), '.', '/');
    std::replace(path.begin(), path.end(), '-', '_');
    return path;
}

ApplicationCall call_for(const app_control_s &request) {
    GVariantDict data;
    g_variant_dict_init(&data, nullptr);
    g_variant_dict_insert_value(&data, kRequestKey, request_to_variant(request));
    const std::string uri = media_uri(request);
    if (uri.empty()) {
        return {"Activate", g_variant_new("(@a{sv})", g_variant_dict_end(&data))};
    }
    const char *uris[] = {uri.c_str(), nullptr};
    return {"Open", g_variant_new("(^as@a{sv})", uris, g_variant_dict_end(&data))};
}

AppControlPtr request_of(const std::string &method, GVariant *parameters) {
    const bool open = method == "Open";
    const GVariantPtr data(g_variant_get_child_value(parameters, open ? 1 : 0));
    const GVariantPtr complete(
        g_variant_lookup_value(data.get(), kRequestKey, G_VARIANT_TYPE_VARDICT));
    if (complete) {
        return request_from_variant(complete.get());
    }
    const GVariantPtr uris(open ? g_variant_get_child_value(parameters, 0) : nullptr);
    if (!uris || g_variant_n_children(uris.get()) == 0) {
        return nullptr;
    }
    const char *uri = nullptr;
    g_variant_get_child(uris.get(), 0, "&s", &uri);
    auto request = std::make_unique<app_control_s>();
    request->operation = APP_CONTROL_OPERATION_VIEW;
    request->uri = decode_local_uri(uri);
    return request;
}

void set_own_application(OwnApplication own) {
    mutable_own_application() = std::move(own);
}

const OwnApplication &own_application() {
    return mutable_own_application();
}

}  // namespace host
