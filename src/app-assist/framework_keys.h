#pragma once

namespace app_assist {

/// The keys under which the framework's objects stand on their Evas objects.
constexpr const char *WINDOW_INSTANCE_KEY = "__@WWindowInstance";        // IWWindowController *
constexpr const char *BASE_LAYOUT_TAG_KEY = "__@WBaselayoutTag";         // only its presence counts
constexpr const char *VIEW_INSTANCE_KEY = "__@WViewInstance";            // WViewController *
constexpr const char *NAVIFRAME_INSTANCE_KEY = "__@WNaviframeInstance";  // WNaviframeController *

}  // namespace app_assist
