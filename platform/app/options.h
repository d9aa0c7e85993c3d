#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace host {

/// What the command line asks of the host. Parsed once, before anything is started.
struct Options {
    struct Size {
        int width = 360;
        int height = 360;
    };
    struct Screenshot {
        std::string file;
        double seconds = 0.0;  ///< after the first frame
    };

    std::optional<std::string> target;  ///< path or URI, as given
    std::optional<std::string> operation;
    std::optional<std::string> mime;
    std::vector<std::pair<std::string, std::string>> extras;
    Size screen;
    double scale = 1.0;         ///< by how much larger the desktop shows it
    std::optional<bool> frame;  ///< whether a watch is around it, as given
    bool fullscreen = false;
    bool headless = false;
    bool control = false;
    bool new_instance = false;
    bool service = false;  ///< the first request comes over the session bus
    bool watch_profile = false;
    std::optional<std::string> log;  ///< level, as given
    std::optional<Screenshot> screenshot;

    /// Size of the round screen on the desktop, in its pixels.
    [[nodiscard]] Size shown_screen() const;
    /// Whether a watch is around the screen: unless it is asked for, not where the screen is full.
    [[nodiscard]] bool framed() const { return frame.value_or(!fullscreen); }
};

/// The process's options; defaults until ui_app_main() has parsed the command line.
[[nodiscard]] const Options &options();

}  // namespace host
