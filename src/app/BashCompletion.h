// The completion of the program's words in bash, made of the table of its commands as `--help` is.
#pragma once

#include <span>
#include <string>

#include "app/CommandLine.h"

namespace zemo {

// A script for bash that completes the commands, those below them, options, and values as far as
// their kind tells them: folders, files and choices. It needs nothing but bash.
std::string BashCompletion(std::span<const Command> commands);

}  // namespace zemo
