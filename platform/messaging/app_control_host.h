#pragma once

#include <app_control.h>
#include <gio/gio.h>

#include <memory>
#include <optional>
#include <string>

#include "common/gobject.h"
#include "messaging/bundle_host.h"

/// One request. A text that isn't set is absent; an empty one is a text.
struct app_control_s {
    std::optional<std::string> operation;
    std::optional<std::string> uri;
    std::optional<std::string> mime;
    std::optional<std::string> category;
    std::optional<std::string> app_id;
    std::optional<std::string> caller;
    app_control_launch_mode_e launch_mode = APP_CONTROL_LAUNCH_MODE_SINGLE;
    bundle extras;
    /// Whether the application has looked for the media to be played, here or in a copy.
    std::shared_ptr<bool> asked_for_media = std::make_shared<bool>(false);
};

namespace host {

using AppControlPtr = std::unique_ptr<app_control_s>;

/// Keys that an application can't use for its extra data.
[[nodiscard]] bool is_reserved_extra_key(const std::string &key);

/// The text under `key`, when there is one.
[[nodiscard]] std::optional<std::string> extra_text(const app_control_s &request,
                                                    const std::string &key);

/// The request as one value for the bus, floating. Texts go as bytes, since a path need not be
/// UTF-8.
[[nodiscard]] GVariant *request_to_variant(const app_control_s &request);

/// The way back; what isn't there or of another type is left out.
[[nodiscard]] AppControlPtr request_from_variant(GVariant *variant);

/// `uri` as the program gets it: a local file URI percent-decoded ("file:///a%20b" becomes
/// "file:///a b"), any other as it is. An encoded null byte stays encoded.
[[nodiscard]] std::string decode_local_uri(const std::string &uri);

/// Whether `text` is meant as a URI rather than as a path.
[[nodiscard]] bool is_uri(const std::string &text);

}  // namespace host
