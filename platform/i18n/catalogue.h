#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace host {

/// Whether a compiled catalogue is whole: that its tables and texts lie within it and end, and that
/// a look-up in its hash table comes to an end. The text lookup itself takes all that for granted.
/// @param content  of the file. Any thread.
[[nodiscard]] bool is_sound_catalogue(std::string_view content);

/// The languages of a list as LANGUAGE has it, without those of which a catalogue is damaged; each
/// is told in the log. "C", the texts as they are, where none is left.
/// @param folder  as bindtextdomain() takes it; any thread
[[nodiscard]] std::string languages_with_sound_catalogues(const std::string &list,
                                                          const std::filesystem::path &folder,
                                                          const std::string &domain);

}  // namespace host
