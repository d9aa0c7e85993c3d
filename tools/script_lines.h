#pragma once

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace tesselctl {

/// One command of a script.
struct ScriptLine {
    int number;  ///< from 1
    std::vector<std::string> words;
};

struct ScriptError : std::runtime_error {
    ScriptError(int line, const std::string &why)
        : std::runtime_error(std::to_string(line) + ": " + why) {}
};

/// Reads commands, one a line: words between blanks, in double quotes where they hold blanks, with
/// a backslash before a quote or a backslash that is meant. Empty lines, and those that begin with
/// #, hold none.
/// @throws ScriptError at a quote without an end, and at a NUL character
[[nodiscard]] std::vector<ScriptLine> read_script(std::istream &script);

/// The line that read_script() reads as these words.
[[nodiscard]] std::string to_script_line(const std::vector<std::string> &words);

}  // namespace tesselctl
