#include "app/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

namespace zemo {

namespace {

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return text;
}

// Files and folders, before the command and behind it.
void RequireNames(const CLI::App& app) {
  for (const char* name :
       {"--station", "--machine", "--script", "--trace", "--audio", "--choices", "DIR", "FILE"}) {
    const CLI::Option* option = app.get_option_no_throw(name);
    if (option && option->count() > 0 && option->as<std::string>().empty())
      throw UsageError(std::string(name) + " needs a name");
  }
  for (const CLI::App* command : app.get_subcommands()) RequireNames(*command);
}

// Shows what was asked for, and says whether there is more to do.
bool Parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& shown) {
    app.exit(shown, std::cout, std::cerr);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(OneLine(error.what()));
  }
  return true;
}

}  // namespace

std::optional<std::function<int()>> ParseCommandLine(int argc, const char* const* argv,
                                                     std::span<const Command> commands) {
  CommonOptions common;
  CLI::App app("", "zemoradio");
  app.set_version_flag("--version", std::string("Zemo Radio " ZEMO_VERSION));
  app.require_subcommand(0, 1);
  std::vector<std::pair<const CLI::App*, Command::Prepared>> prepared;
  for (const Command& command : commands) {
    const bool named = !command.name.empty();
    CLI::App& its = named ? *app.add_subcommand(command.name, command.help) : app;
    if (!named) app.description(command.help);
    prepared.emplace_back(&its, command.prepare(its, common));
  }
  if (!Parse(app, argc, argv)) return std::nullopt;
  RequireNames(app);
  const CLI::App* chosen = app.get_subcommands().empty() ? &app : app.get_subcommands().front();
  const auto asked = std::find_if(prepared.begin(), prepared.end(),
                                  [chosen](const auto& one) { return one.first == chosen; });
  asked->second.read();
  return asked->second.run;
}

}  // namespace zemo
