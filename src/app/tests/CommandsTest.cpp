// The table of the commands: what README tells of it, and that its uses name the options that there
// are.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <regex>
#include <set>
#include <string>

#include "app/Commands.h"
#include "support/ReadmeTable.h"

namespace zemo::test {
namespace {

using Names = std::set<std::string>;

// The long options of a command and of those below it, but for the help.
void AddOptionsOf(const CLI::App& app, Names& names) {
  for (const CLI::Option* option : app.get_options())
    for (const std::string& name : option->get_lnames())
      if (name != "help") names.insert("--" + name);
  for (const CLI::App* below : app.get_subcommands({})) AddOptionsOf(*below, names);
}

Names OptionsOf(const Command& command) {
  CLI::App app;
  CommonOptions common;
  const auto prepared = command.prepare(app, common);
  Names names;
  AddOptionsOf(app, names);
  return names;
}

Names OptionsIn(const std::string& words) {
  static const std::regex option("--[a-z-]+");
  return {std::sregex_token_iterator(words.begin(), words.end(), option),
          std::sregex_token_iterator()};
}

TEST(Commands, StandInReadmeAsInTheirTable) {
  std::string rows;
  for (const Command& command : Commands())
    for (const CommandUse& use : command.uses)
      rows += ReadmeRow("zemoradio " + use.words, use.does);
  EXPECT_EQ(ReadmeTable(ZEMO_README, "| Command | What it does |"), rows);
}

// "..." stands for options that are told elsewhere.
TEST(Commands, AreUsedWithTheOptionsThatTheyTake) {
  for (const Command& command : Commands()) {
    std::string uses;
    for (const CommandUse& use : command.uses) {
      EXPECT_TRUE(use.words.starts_with(command.name)) << use.words;
      uses += use.words + " ";
    }
    const Names taken = OptionsOf(command);
    for (const std::string& named : OptionsIn(uses))
      EXPECT_TRUE(taken.contains(named)) << command.name << " does not take " << named;
    if (uses.find("...") != std::string::npos) continue;
    EXPECT_EQ(OptionsIn(uses), taken) << command.name;
  }
}

TEST(Commands, HaveNamesOfTheirOwnAndHelp) {
  Names names;
  for (const Command& command : Commands()) {
    EXPECT_TRUE(names.insert(command.name).second) << command.name;
    EXPECT_NE(command.help, "");
    EXPECT_FALSE(command.uses.empty()) << command.name;
  }
  EXPECT_TRUE(names.contains(""));
}

}  // namespace
}  // namespace zemo::test
