#pragma once

#include <string>

namespace host {

/// The system settings behind vconf_get_*(). Any thread.
///
/// They live in the key file settings.ini of the user's configuration folder:
/// "db/menu_widget/language" is the key "language" of the group "db/menu_widget". Settings whose
/// name begins with "memory/" last as long as the process and are never written. The file is read
/// again after it has changed; a damaged one is set aside, see StoredKeyFile. Language and region
/// of the environment beat the file, until they are set here or the desktop changes them.

/// Sets one setting and writes the file in one piece.
/// @return false when the file can't be written; the setting holds for this process all the same
[[nodiscard]] bool set_setting(const std::string &key, const std::string &value);

/// The desktop has changed a setting: it holds for this process and isn't written, but where the
/// user's own choice holds, set here or found in the file.
/// @return whether it holds now
bool follow_desktop_setting(const std::string &key, const std::string &value);

}  // namespace host
