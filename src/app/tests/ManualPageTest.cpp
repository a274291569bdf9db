// The manual page: every command and option of the program, typeset from the same words as the
// help.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "app/Commands.h"
#include "app/ManualPage.h"

namespace zemo {
namespace {

// The page as it is read: without what only says how it looks.
std::string AsRead(std::string page) {
  for (const std::string mark : {"\\fB", "\\fI", "\\fR", "\\&"})
    for (size_t at = 0; (at = page.find(mark, at)) != std::string::npos;)
      page.erase(at, mark.size());
  for (size_t at = 0; (at = page.find("\\-", at)) != std::string::npos;) page.erase(at, 1);
  for (size_t at = 0; (at = page.find("\\(aq", at)) != std::string::npos;) page.replace(at, 4, "'");
  return page;
}

TEST(ManualPage, HasEveryUseAndOptionOfEveryCommand) {
  const std::string page = AsRead(ManualPage(Commands(), "2026-11-23"));
  for (const Command& command : Commands()) {
    for (const CommandUse& use : command.uses)
      EXPECT_NE(page.find("\nzemoradio " + use.words + "\n"), std::string::npos) << use.words;
    CLI::App app;
    CommonOptions common;
    const auto prepared = command.prepare(app, common);
    const size_t begin = command.name.empty() ? page.find(".SH DESCRIPTION")
                                              : page.find(".SS zemoradio " + command.name + "\n");
    ASSERT_NE(begin, std::string::npos) << command.name;
    const std::string own = page.substr(begin, page.find("\n.S", begin + 1) - begin);
    for (const CLI::Option* option : app.get_options())
      for (const std::string& name : option->get_lnames()) {
        if (name == "help") continue;
        EXPECT_NE(own.find("\n.TP\n--" + name), std::string::npos) << command.name << " " << name;
      }
  }
}

struct NoOptions {};

ReadTyped DeclareFew(CLI::App& app, CommonOptions& common, NoOptions&) {
  app.add_option("--station", common.station, "Its folder: 'here' or C:\\there")->type_name("DIR");
  CLI::App& below = *app.add_subcommand("list", "As lines");
  below.add_option("NAME", common.machine, "What is listed");
  return [] {};
}

TEST(ManualPage, SetsWhatIsTypedInBoldAndWhatStandsForSomethingInItalics) {
  const std::vector<Command> commands{MakeCommand<NoOptions>(
      "show", "Show it", {{"show [--station DIR] list NAME...", "tells all of it, as `run` does"}},
      DeclareFew, [](const NoOptions&) { return 0; })};
  const std::string page = ManualPage(commands, "2026-11-23");
  const std::string words =
      "\\fBzemoradio\\fR \\fBshow\\fR [\\fB\\-\\-station\\fR \\fIDIR\\fR] \\fBlist\\fR "
      "\\fINAME...\\fR\n";
  EXPECT_NE(page.find(".SH SYNOPSIS\n" + words + ".SH"), std::string::npos) << page;
  EXPECT_NE(
      page.find(".SS zemoradio show\nShow it.\n.TP\n" + words +
                "Tells all of it, as \\fBrun\\fR does.\n.TP\n"
                "\\fB\\-\\-station\\fR \\fIDIR\\fR\n"
                "Its folder: \\(aqhere\\(aq or C:\\ethere.\n"
                ".P\n\\fBshow list\\fR: As lines.\n.RS\n.TP\n\\fINAME\\fR\nWhat is listed.\n.RE\n"),
      std::string::npos)
      << page;
}

}  // namespace
}  // namespace zemo
