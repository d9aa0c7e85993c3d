#pragma once

#include <optional>
#include <string>
#include <vector>

namespace host {

/// Locales as variables such as LANG name them, as "fr_FR.UTF-8". Absent where they name none, or
/// the C or POSIX locale.
struct NamedLocale {
    std::optional<std::string> language;
    std::optional<std::string> region;
};
/// The environment as the process found it. Any thread.
[[nodiscard]] const NamedLocale &environment_locale();

/// Gives the process its language and locale: the environment's, else that of the settings, else
/// English; always a UTF-8 one that is installed, numbers always written the C way, English always
/// the last resort of a text without translation. Main thread, before any other thread exists,
/// since it changes the environment.
void start_locale();

/// Repairs what the toolkit's initialisation has changed of it, and turns the toolkit's widgets to
/// the side where the language begins. Main thread.
void restore_locale();

/// The language that texts are in, as "fr" or "pt_BR". Main loop.
[[nodiscard]] const std::string &current_language();

/// Changes the language as the system's settings do: writes the setting, makes it that of the
/// process and its widgets, which are mirrored for one that runs from right to left, then raises
/// the event. Main loop.
/// @param language  a name such as "pt_BR" or "pt_BR.UTF-8"; for one that there is no catalogue of,
///     texts are English
void change_language(const std::string &language);

/// The region that numbers and dates are written for, as the settings name it, such as
/// "en_GB.UTF-8"; absent where they name none. Any thread.
[[nodiscard]] std::optional<std::string> current_region();

/// Changes the region as the system's settings do: writes the setting, then raises the event. Main
/// loop.
/// @param region  a name such as "en_GB" or "en_GB.UTF-8"
void change_region(const std::string &region);

/// The desktop has another locale from now on: language and region become its own, each with its
/// event where that is a change, but where the user has chosen another. Main loop.
/// @param assignments  such as "LANG=fr_FR.UTF-8" and "LC_TIME=en_GB.UTF-8"
void follow_locale(const std::vector<std::string> &assignments);

enum class Clock { twelve_hours = 12, twenty_four_hours = 24 };
/// How times of the day are written; 24 hours where the settings don't say. Any thread.
[[nodiscard]] Clock current_clock();

/// Changes it as the system's settings do: writes the setting, then raises the event of a changed
/// region. Main loop.
void change_clock(Clock clock);

}  // namespace host
