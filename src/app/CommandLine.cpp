#include "app/CommandLine.h"

#include <algorithm>
#include <iostream>
#include <numeric>
#include <set>
#include <utility>
#include <vector>

#include "app/CommandParser.h"
#include "app/Version.h"

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

// Letters to put in, take out or exchange to make the one of the other.
size_t Distance(const std::string& from, const std::string& to) {
  std::vector<size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < from.size(); ++i) {
    size_t diagonal = std::exchange(row[0], i + 1);
    for (size_t j = 0; j < to.size(); ++j) {
      const size_t exchanged = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = std::exchange(row[j + 1], std::min({exchanged, row[j] + 1, row[j + 1] + 1}));
    }
  }
  return row.back();
}

// The option or command that was meant; empty where none is near.
std::string Nearest(const std::string& word, const CLI::App& app) {
  constexpr size_t kNear = 2;
  std::vector<std::string> names;
  for (const CLI::App* level :
       {&app, app.get_subcommands().empty() ? &app : app.get_subcommands().front()}) {
    for (const CLI::Option* option : level->get_options()) names.push_back(option->get_name());
    for (const CLI::App* command : level->get_subcommands({})) names.push_back(command->get_name());
  }
  const auto best = std::min_element(names.begin(), names.end(), [&](auto& a, auto& b) {
    return Distance(word, a) < Distance(word, b);
  });
  return best != names.end() && Distance(word, *best) <= kNear ? *best : std::string();
}

std::string WithHint(const CLI::ExtrasError& error, const CLI::App& app) {
  const std::vector<std::string> unknown = app.remaining(true);
  const std::string word =
      unknown.empty() ? "" : unknown.front().substr(0, unknown.front().find('='));
  const std::string meant = Nearest(word, app);
  return OneLine(error.what()) + (meant.empty() ? "" : "; did you mean " + meant + "?");
}

// The bare program's options in front of a command would have no effect, but for those that all
// share.
void RequireOwnOptions(const CLI::App& app) {
  if (app.get_subcommands().empty()) return;
  const std::set<std::string> shared = {"--station", "--machine", "--output"};
  const std::string command = app.get_subcommands().front()->get_name();
  for (const CLI::Option* option : app.get_options()) {
    const std::string name = option->get_name();
    if (option->count() > 0 && shared.count(name) == 0)
      throw UsageError(name + " stands behind its command: zemoradio " + command + " " + name +
                       " ...");
  }
}

// Shows what was asked for, and says whether there is more to do.
bool Parse(CLI::App& app, int argc, const char* const* argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& shown) {
    app.exit(shown, std::cout, std::cerr);
    return false;
  } catch (const CLI::ExtrasError& error) {
    throw UsageError(WithHint(error, app));
  } catch (const CLI::ParseError& error) {
    throw UsageError(OneLine(error.what()));
  }
  return true;
}

}  // namespace

CommandParser::CommandParser(std::span<const Command> commands) : app("", "zemoradio") {
  app.set_version_flag("--version", std::string("Zemo Radio ") + kVersion);
  app.require_subcommand(0, 1);
  for (const Command& command : commands) {
    const bool named = !command.name.empty();
    CLI::App& its = named ? *app.add_subcommand(command.name, command.help) : app;
    if (!named) app.description(command.help);
    prepared.emplace_back(&its, command.prepare(its, common));
  }
}

std::optional<std::function<int()>> ParseCommandLine(int argc, const char* const* argv,
                                                     std::span<const Command> commands) {
  CommandParser parser(commands);
  CLI::App& app = parser.app;
  if (!Parse(app, argc, argv)) return std::nullopt;
  RequireNames(app);
  RequireOwnOptions(app);
  const CLI::App* chosen = app.get_subcommands().empty() ? &app : app.get_subcommands().front();
  const auto asked = std::find_if(parser.prepared.begin(), parser.prepared.end(),
                                  [chosen](const auto& one) { return one.first == chosen; });
  asked->second.read();
  return asked->second.run;
}

}  // namespace zemo
