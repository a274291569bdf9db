// The manual page of the program, made of the table of its commands as `--help` is.
#pragma once

#include <span>
#include <string>

#include "app/CommandLine.h"

namespace zemo {

// The source of zemoradio(1) for man: every command with its uses, what they do, and its options.
// `date` stands in its foot, as it is given.
std::string ManualPage(std::span<const Command> commands, const std::string& date);

}  // namespace zemo
