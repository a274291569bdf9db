#include "app/BashCompletion.h"

#include <string_view>
#include <utility>
#include <vector>

#include "app/CommandParser.h"

namespace zemo {

namespace {

// `at` is what was typed so far of commands, as "models list"; `value` the option that waits for
// its value, with its command in front. A word may have been cut at its "=".
constexpr char kFrame[] = R"bash(
_zemoradio() {
  local word="${COMP_WORDS[COMP_CWORD]}" before="${COMP_WORDS[COMP_CWORD-1]}"
  if [[ $word == "=" ]]; then
    word=""
  elif [[ $before == "=" ]]; then
    before="${COMP_WORDS[COMP_CWORD-2]}"
  fi
  local at="" given i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    given="${COMP_WORDS[i]}"
    if [[ -n "$(_zemoradio_value "$at" "$given")" ]]; then
      if [[ "${COMP_WORDS[i+1]}" == "=" ]]; then ((i += 2)); else ((i += 1)); fi
    elif [[ " $(_zemoradio_commands "$at") " == *" $given "* ]]; then
      at="${at:+$at }$given"
    fi
  done
  local value="$(_zemoradio_value "$at" "$before")"
  if [[ -z $value && $word != -* ]]; then
    local commands="$(_zemoradio_commands "$at")"
    if [[ -n $commands ]]; then value="of $commands"; else value="$(_zemoradio_rest "$at")"; fi
  fi
  COMPREPLY=()
  local found
  case "$value" in
    folder) found="$(compgen -d -- "$word")" ;;
    file) found="$(compgen -f -- "$word")" ;;
    "of "*) found="$(compgen -W "${value#of }" -- "$word")" ;;
    any) found="" ;;
    *) found="$(compgen -W "$(_zemoradio_options "$at")" -- "$word")" ;;
  esac
  if [[ $value == folder || $value == file ]]; then compopt -o filenames 2>/dev/null; fi
  if [[ -n $found ]]; then mapfile -t COMPREPLY <<<"$found"; fi
}

complete -F _zemoradio zemoradio
)bash";

using Case = std::pair<std::string, std::string>;  // pattern, words

// A function that gives the words of the first pattern that its arguments fit.
std::string Function(const std::string& name, const std::string& what,
                     const std::vector<Case>& cases) {
  std::string text = name + "() {\n  case \"" + what + "\" in\n";
  for (const auto& [pattern, words] : cases)
    text += "    \"" + pattern + "\") echo \"" + words + "\" ;;\n";
  return text + "  esac\n}\n";
}

// What completes a value of that kind: the parser tells choices as KIND:{one,two}.
std::string Completing(const CLI::Option& option) {
  const std::string type = option.get_type_name();
  const size_t begin = type.find(":{");
  if (begin != std::string::npos) {
    std::string choices = type.substr(begin + 2, type.find('}') - begin - 2);
    for (char& letter : choices)
      if (letter == ',') letter = ' ';
    return "of " + choices;
  }
  const std::string name = option.get_name(true);
  const auto speaksOf = [&](std::string_view kind) {
    return type.find(kind) != std::string::npos || name.find(kind) != std::string::npos;
  };
  if (speaksOf("DIR")) return "folder";
  if (speaksOf("FILE") || speaksOf("PATH") || name == "paths") return "file";
  return "any";
}

std::string Joined(std::string joined, const std::string& word) {
  if (!joined.empty()) joined += ' ';
  return joined + word;
}

struct Tables {
  std::vector<Case> commands, options, values, rest;
};

void Collect(const CLI::App& app, const std::string& at, Tables& tables) {
  std::string commands, options, rest = "any";
  for (const CLI::App* below : app.get_subcommands({}))
    commands = Joined(commands, below->get_name());
  for (const CLI::Option* option : app.get_options()) {
    if (option->get_positional()) rest = Completing(*option);
    for (const std::string& name : option->get_lnames()) {
      options = Joined(options, "--" + name);
      if (option->get_items_expected_max() > 0)
        tables.values.emplace_back(at + " --" + name, Completing(*option));
    }
  }
  if (!commands.empty()) tables.commands.emplace_back(at, commands);
  tables.options.emplace_back(at, options);
  tables.rest.emplace_back(at, rest);
  for (const CLI::App* below : app.get_subcommands({}))
    Collect(*below, Joined(at, below->get_name()), tables);
}

}  // namespace

std::string BashCompletion(std::span<const Command> commands) {
  const CommandParser parser(commands);
  Tables tables;
  Collect(parser.app, "", tables);
  return "# bash completion of zemoradio, made of the program's own table of commands.\n\n" +
         Function("_zemoradio_commands", "$1", tables.commands) + "\n" +
         Function("_zemoradio_options", "$1", tables.options) + "\n" +
         Function("_zemoradio_value", "$1 $2", tables.values) + "\n" +
         Function("_zemoradio_rest", "$1", tables.rest) + kFrame;
}

}  // namespace zemo
