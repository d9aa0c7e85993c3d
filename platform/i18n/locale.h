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

/// Repairs what the toolkit's initialisation has changed of it. Main thread.
void restore_locale();

/// Changes the language as the system's settings do: writes the setting, makes it that of the
/// process and its widgets, then raises the event. Main loop.
void change_language(const std::string &language);

}  // namespace host
