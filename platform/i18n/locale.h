#pragma once

#include <optional>
#include <string>

namespace host {

/// Locales as the environment of the process names them, as "fr_FR.UTF-8". Absent where it names
/// none, or the C or POSIX locale.
struct EnvironmentLocale {
    std::optional<std::string> language;
    std::optional<std::string> region;
};
/// The environment as the process found it. Any thread.
[[nodiscard]] const EnvironmentLocale &environment_locale();

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

}  // namespace host
