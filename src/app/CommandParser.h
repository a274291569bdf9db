// The parser of the command line, made from the table of the commands: what reads the words that
// were typed, and what the manual and the shell's completion are made of.
#pragma once

#include <CLI/CLI.hpp>
#include <span>
#include <utility>
#include <vector>

#include "app/CommandLine.h"

namespace zemo {

// Of one parse. The commands outlive it.
struct CommandParser {
  explicit CommandParser(std::span<const Command> commands);
  CommandParser(const CommandParser&) = delete;

  CommonOptions common;
  CLI::App app;  // itself the command without a name
  // Every command's part of the parser, in the order of the table.
  std::vector<std::pair<CLI::App*, Command::Prepared>> prepared;
};

}  // namespace zemo
