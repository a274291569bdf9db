// The command line: a table of commands, and the words that ask for one of them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "app/CommandOptions.h"

namespace zemo {

// One way to ask for a command, as README tells it.
struct CommandUse {
  std::string words;  // behind the program's name
  std::string does;
};

struct Command {
  // Of one parse: `read` throws UsageError, `run` does the work and gives the exit status.
  struct Prepared {
    ReadTyped read;
    std::function<int()> run;
  };

  std::string name;  // empty: the program without a command
  std::string help;
  std::vector<CommandUse> uses;
  std::function<Prepared(CLI::App& app, CommonOptions& common)> prepare;
};

// A command of options of its own: how they are written, and what is done with them.
template <typename Options>
Command MakeCommand(std::string name, std::string help, std::vector<CommandUse> uses,
                    ReadTyped (*declare)(CLI::App& app, CommonOptions& common, Options& options),
                    std::function<int(const Options&)> run) {
  const auto prepare = [declare, run](CLI::App& app, CommonOptions& common) {
    const auto options = std::make_shared<Options>();
    return Command::Prepared{declare(app, common, *options),
                             [options, run] { return run(*options); }};
  };
  return {std::move(name), std::move(help), std::move(uses), prepare};
}

// The work that was asked for, checked as far as it can be without touching anything; nullopt when
// help or the version was asked for, and shown. One of the commands has no name. Throws UsageError.
std::optional<std::function<int()>> ParseCommandLine(int argc, const char* const* argv,
                                                     std::span<const Command> commands);

}  // namespace zemo
