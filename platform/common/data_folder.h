#pragma once

#include <filesystem>

namespace host {

/// The folder of the program's data, which lies beside the program's own folder in the build tree
/// and in an installation alike. Any thread; the first call before anything changes the working
/// directory.
/// @return empty when nothing tells where the program is
[[nodiscard]] const std::filesystem::path &data_folder();

}  // namespace host
