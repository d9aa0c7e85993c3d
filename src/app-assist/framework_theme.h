#pragma once

namespace app_assist {

/// The framework's own theme file, below the resource path.
constexpr const char *FRAMEWORK_THEME = "edje/app-assist-efl.edj";

}  // namespace app_assist
