#include "app/ManualPage.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "app/CommandParser.h"
#include "app/Version.h"

namespace zemo {

namespace {

// What the commands do not tell: where the program looks, and how it ends.
constexpr char kBehindTheCommands[] = R"(.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
The work failed; one line on standard error says why.
.TP
.B 2
Wrong usage; the same.
.SH FILES
.TP
.I ~/.local/share/ZemoKaluri/ZemoRadio
The station where none is named.
.TP
.I ~/.config/ZemoKaluri/ZemoRadio
What belongs to the machine where no other folder is named.
.TP
.I /var/lib/zemoradio/NAME
The station of the service
.BR zemoradio@NAME ;
its machine folder is
.IR /var/lib/zemoradio/NAME.machine .
.SH ENVIRONMENT
.TP
.BR XDG_DATA_HOME ", " XDG_CONFIG_HOME
Folders in place of
.I ~/.local/share
and
.IR ~/.config .
.TP
.BR DISPLAY ", " WAYLAND_DISPLAY ", " QT_QPA_PLATFORM
Without any of them there is no screen.
.TP
.BR NOTIFY_SOCKET ", " WATCHDOG_USEC ", " WATCHDOG_PID ", " JOURNAL_STREAM
Set by a service manager:
.B zemoradio run
tells it when it stands, that its tick turns and when it stops, and marks the lines of the journal by their gravity.
.SH SEE ALSO
.BR systemctl (1),
.BR journalctl (1)
)";

// Text as man shows it letter by letter.
std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char letter : text) {
    if (letter == '\\')
      escaped += "\\e";
    else if (letter == '-')
      escaped += "\\-";
    else if (letter == '\'' || (letter == '.' && escaped.empty()))
      escaped += letter == '\'' ? "\\(aq" : "\\&.";
    else
      escaped += letter;
  }
  return escaped;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Escaped(text) + "\\fR";
}

// A use's words: what is typed as it stands in bold, what stands for something in italics.
std::string Words(std::string_view words) {
  const auto partOfWord = [](unsigned char letter) {
    return std::isalnum(letter) != 0 || letter == '-' || letter == '.' || letter == '_';
  };
  std::string typeset;
  while (!words.empty()) {
    size_t length = 0;
    while (length < words.size() && partOfWord(words[length])) ++length;
    const std::string_view word = words.substr(0, length);
    const bool stands = length > 0 && std::isupper(static_cast<unsigned char>(word[0])) == 0;
    if (word == "...")
      typeset += Escaped(word);
    else if (length > 0)
      typeset += (stands ? "\\fB" : "\\fI") + Escaped(word) + "\\fR";
    for (words.remove_prefix(length); !words.empty() && !partOfWord(words[0]);
         words.remove_prefix(1))
      typeset += words[0];
  }
  return typeset;
}

// Running text with code between backticks, as README has it.
std::string Running(std::string_view text) {
  std::string running;
  for (bool code = false; !text.empty(); code = !code) {
    const std::string_view part = text.substr(0, text.find('`'));
    running += code ? Bold(part) : Escaped(part);
    text.remove_prefix(std::min(part.size() + 1, text.size()));
  }
  return running;
}

std::string Sentence(std::string_view text) {
  const std::string sentence = Running(text);
  return sentence + (sentence.ends_with('.') ? "\n" : ".\n");
}

// The kind of an option's value without what the parser checks of it.
std::string ValueOf(const CLI::Option& option) {
  if (option.get_items_expected_max() == 0) return {};
  const std::string type = option.get_type_name();
  return type.substr(0, type.find(':'));
}

void AddOption(std::string& page, const CLI::Option& option) {
  if (option.get_description().empty()) return;
  std::string names;
  for (const auto& shortName : option.get_snames()) names += Bold("-" + shortName) + ", ";
  for (const auto& longName : option.get_lnames()) names += Bold("--" + longName) + ", ";
  if (names.empty()) names = "\\fI" + Escaped(option.get_name(true)) + "\\fR, ";
  names.resize(names.size() - 2);
  const std::string value = option.get_positional() ? std::string() : ValueOf(option);
  if (!value.empty()) names += " \\fI" + Escaped(value) + "\\fR";
  page += ".TP\n" + names + "\n" + Sentence(option.get_description());
}

// The help is every command's; it stands once, with the options of the bare program.
void AddOptions(std::string& page, const CLI::App& app, bool withHelp) {
  for (const CLI::Option* option : app.get_options())
    if (withHelp || option != app.get_help_ptr()) AddOption(page, *option);
  for (const CLI::App* below : app.get_subcommands({})) {
    bool any = false;
    for (const CLI::Option* option : below->get_options()) any |= option != below->get_help_ptr();
    page += ".P\n" + Bold(app.get_name() + " " + below->get_name()) + ": " +
            Sentence(below->get_description());
    if (any) page += ".RS\n";
    AddOptions(page, *below, false);
    if (any) page += ".RE\n";
  }
}

// What it does begins small, as in a cell of a table.
void AddUses(std::string& page, const Command& command) {
  for (const CommandUse& use : command.uses) {
    std::string does = use.does;
    does[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(does[0])));
    page += ".TP\n" + Bold("zemoradio") + " " + Words(use.words) + "\n" + Sentence(does);
  }
}

}  // namespace

std::string ManualPage(std::span<const Command> commands, const std::string& date) {
  const CommandParser parser(commands);
  std::string page = ".\\\" Made of the program's own table of commands.\n.TH ZEMORADIO 1 \"" +
                     date + "\" \"Zemo Radio " + kVersion + "\" \"User Commands\"\n.nh\n";
  page += ".SH NAME\nzemoradio \\- a station's air, automated\n.SH SYNOPSIS\n";
  for (const Command& command : commands)
    for (const CommandUse& use : command.uses)
      page += (page.ends_with("SYNOPSIS\n") ? "" : ".br\n") + Bold("zemoradio") + " " +
              Words(use.words) + "\n";
  page += ".SH DESCRIPTION\n";
  for (size_t i = 0; i < commands.size(); ++i) {
    const Command& command = commands[i];
    const CLI::App& its = *parser.prepared[i].first;
    const bool named = !command.name.empty();
    if (named) page += ".SS zemoradio " + Escaped(command.name) + "\n";
    page += Sentence(command.help);
    AddUses(page, command);
    if (named)
      AddOptions(page, its, false);
    else
      for (const CLI::Option* option : its.get_options()) AddOption(page, *option);
    if (!named) page += ".SH COMMANDS\n";
  }
  return page + kBehindTheCommands;
}

}  // namespace zemo
