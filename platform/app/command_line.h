#pragma once

#include <string>
#include <variant>

#include "app/options.h"

namespace host {

/// The command line asks for a text only ("--help"), or is wrong.
struct CommandLineEnd {
    int status = 0;    ///< exit status: 0, or 2 for wrong use
    std::string text;  ///< for standard output with status 0, else one line for standard error
};

/// Reads the command line, which says what to start; starts nothing. A target may stand anywhere
/// between the options; after "--" everything is a target.
[[nodiscard]] std::variant<Options, CommandLineEnd> parse_command_line(int argc,
                                                                       const char *const *argv);

/// Makes `options` the process's own. Main thread, before any other thread reads them.
void set_options(Options options);

}  // namespace host
