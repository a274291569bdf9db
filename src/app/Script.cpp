#include "app/Script.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>

#include "app/Moments.h"
#include "app/ScriptControls.h"
#include "station/TextForms.h"
#include "store/Schema.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {
// How each order is written. A word in small letters stands as it is ("on|off" for a choice); one
// in capitals is an argument of that kind, in brackets when it may be left out, together with the
// fixed word before it. Several forms of one order may follow each other.
struct OrderForm {
  Order order;
  std::string_view form;
};
constexpr std::array kOrderForms{
    OrderForm{Order::kStart, "start"},
    OrderForm{Order::kStop, "stop"},
    OrderForm{Order::kNext, "next"},
    OrderForm{Order::kKeyDown, "keydown VK"},
    OrderForm{Order::kKeyUp, "keyup VK"},
    OrderForm{Order::kMode, "mode auto|live"},
    OrderForm{Order::kRequest, "request"},
    OrderForm{Order::kCompose, "compose"},
    OrderForm{Order::kLoad, "load CODE"},
    OrderForm{Order::kSave, "save LABEL DATE TIME OPTION"},
    OrderForm{Order::kNew, "new"},
    OrderForm{Order::kInsert, "insert music|jingle|spot|other CODE [ROW]"},
    OrderForm{Order::kInsertExtract, "insert extract [ROW]"},
    OrderForm{Order::kMove, "move ROW ROW"},
    OrderForm{Order::kDelete, "delete ROW"},
    OrderForm{Order::kRightClick, "rightclick ROW"},
    OrderForm{Order::kBreak, "break ROW [at ROW]"},
    OrderForm{Order::kPreview, "preview DAY"},
    OrderForm{Order::kLocal, "local NAME VALUE"},
    OrderForm{Order::kCheck, "check CONTROL on|off"},
    OrderForm{Order::kContact, "contact CONTACT on|off"},
    OrderForm{Order::kJoystick, "joystick BUTTON down|up"},
    OrderForm{Order::kClipboard, "clipboard TEXT..."},
    OrderForm{Order::kSql, "sql STATEMENT..."},
    OrderForm{Order::kDrop, "drop FILE FILENAME"},
    OrderForm{Order::kRemove, "remove FILENAME"},
    OrderForm{Order::kSet, "set FIELD VALUE"},
    OrderForm{Order::kAnswer, "answer yes|no|ok|cancel"},
    OrderForm{Order::kDump, "dump"},
    OrderForm{Order::kKill, "kill"},
};

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kRest = "...";

bool IsWholeNumber(std::string_view text, int lowest, int highest) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() && number >= lowest &&
         number <= highest;
}

// A name of a file of the station's folder: no path.
bool IsFileName(std::string_view text) {
  return !text.empty() && text != "." && text != ".." &&
         text.find_first_of("/\\") == std::string_view::npos;
}

// Whether the text can stand for an argument of that kind. Kinds without a rule take any text.
bool Fits(std::string_view kind, std::string_view text) {
  if (kind == "CODE" || kind == "ROW") return IsWholeNumber(text, 1, 0x7fffffff);
  if (kind == "VK") return IsWholeNumber(text, 1, 254);
  if (kind == "OPTION") return IsWholeNumber(text, 0, 3);
  if (kind == "CONTACT") return IsWholeNumber(text, 0, 3);
  if (kind == "BUTTON") return IsWholeNumber(text, 1, 4);
  if (kind == "DAY") return ParseDay(text).has_value();
  if (kind == "NAME") return !text.empty() && text.find('=') == std::string_view::npos;
  if (kind == "FIELD" || kind == "FILE" || kind == "CONTROL") return !text.empty();
  if (kind == "FILENAME") return IsFileName(text);
  return true;
}

std::string_view NextWord(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
  text.remove_prefix(word.size());
  return word;
}

bool IsOneOf(std::string_view choices, std::string_view word) {
  while (!choices.empty()) {
    const size_t bar = std::min(choices.find('|'), choices.size());
    if (choices.substr(0, bar) == word) return true;
    choices.remove_prefix(std::min(bar + 1, choices.size()));
  }
  return false;
}

// One line as it is read: its words, and the rest for the orders that take it whole.
struct Line {
  std::vector<std::string> words;
  std::vector<size_t> ends;  // offset behind each word
  bool openQuotes = false;
};

Line SplitWords(std::string_view text) {
  Line line;
  size_t at = text.find_first_not_of(kBlanks);
  while (at < text.size() && text[at] != '#') {
    std::string word;
    bool quoted = false;
    for (; at < text.size() && (quoted || kBlanks.find(text[at]) == std::string_view::npos); ++at) {
      if (text[at] == '"')
        quoted = !quoted;
      else
        word += text[at];
    }
    line.openQuotes = line.openQuotes || quoted;
    line.words.push_back(std::move(word));
    line.ends.push_back(at);
    at = text.find_first_not_of(kBlanks, at);
  }
  return line;
}

// The arguments when the words behind the order fit the form.
std::optional<std::vector<std::string>> Match(std::string_view form, const Line& line,
                                              std::string_view text) {
  constexpr size_t kFirst = 2;  // words 0 and 1 are the time and the order
  NextWord(form);
  std::vector<std::string> arguments;
  size_t next = kFirst;
  for (std::string_view kind = NextWord(form); !kind.empty(); kind = NextWord(form)) {
    if (kind.ends_with(kRest)) {
      text.remove_prefix(line.ends[kFirst - 1]);
      text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
      if (text.empty() && kind == "STATEMENT...") return std::nullopt;
      return std::vector<std::string>{std::string(text)};
    }
    if (kind.front() == '[') {
      if (next == line.words.size()) break;
      kind.remove_prefix(1);
    }
    if (kind.ends_with(']')) kind.remove_suffix(1);
    if (next == line.words.size()) return std::nullopt;
    const std::string& word = line.words[next++];
    const bool fixed = kind.front() >= 'a' && kind.front() <= 'z';
    if (fixed ? !IsOneOf(kind, word) : !Fits(kind, word)) return std::nullopt;
    if (!fixed || kind.find('|') != std::string_view::npos) arguments.push_back(word);
  }
  if (next != line.words.size() || line.openQuotes) return std::nullopt;
  return arguments;
}

// A number, or for a yes/no field a word. Whether a number is in the field's range, the base tells.
bool FitsField(const Field& field, std::string_view value) {
  if (field.Type == FieldType::kText || field.Type == FieldType::kMemo) return true;
  constexpr std::string_view kYesOrNo[] = {"true", "yes", "on", "false", "no", "off"};
  if (field.Type == FieldType::kBool &&
      std::any_of(std::begin(kYesOrNo), std::end(kYesOrNo),
                  [&](std::string_view word) { return EqualNoCase(value, word); }))
    return true;
  double number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  return error == std::errc() && end == value.data() + value.size() && std::isfinite(number);
}

// What is wrong with names and values that stand in tables; empty: nothing.
std::string Misnamed(const ScriptOrder& order) {
  const auto argument = [&](size_t index) { return "'" + order.arguments[index] + "'"; };
  if (order.order == Order::kCheck && !IsCheckControl(order.arguments[0]))
    return "no screen has a check box or check menu " + argument(0);
  if (order.order != Order::kSet) return {};
  const Field* field = FindSchemaTable("Cnf")->FindField(order.arguments[0]);
  if (!field) return "Cnf has no field " + argument(0);
  return FitsField(*field, order.arguments[1]) ? std::string()
                                               : argument(1) + " is no value of " + field->Name;
}

// Finds the order's form and fills the order; the error is empty when the line could be read.
std::string ReadOrder(const Line& line, std::string_view text, ScriptOrder& order) {
  std::string expected;
  for (const OrderForm& candidate : kOrderForms) {
    std::string_view form = candidate.form;
    if (NextWord(form) != line.words[1]) continue;
    if (auto arguments = Match(candidate.form, line, text)) {
      order.order = candidate.order;
      order.arguments = std::move(*arguments);
      return Misnamed(order);
    }
    expected += (expected.empty() ? "" : " or ") + std::string(candidate.form);
  }
  if (expected.empty()) return "unknown order '" + line.words[1] + "'";
  return "cannot be read, expected: " + expected;
}

// The moment of a line in ms of UTC; nullopt when its time is none.
std::optional<int64_t> ReadTime(std::string_view text, int64_t previousUtcMs) {
  if (text.starts_with('+')) {
    const auto later = ParseSeconds(text.substr(1));
    if (!later) return std::nullopt;
    return previousUtcMs + *later;
  }
  const auto time = ParseTimeOfDay(text);
  if (!time) return std::nullopt;
  return FirstMomentOfDay(previousUtcMs, *time);
}
}  // namespace

std::string_view OrderWord(Order order) {
  for (const OrderForm& candidate : kOrderForms) {
    std::string_view form = candidate.form;
    if (candidate.order == order) return NextWord(form);
  }
  return {};
}

int ScriptOrder::Number(size_t index) const {
  int number = 0;
  if (Has(index)) {
    const std::string& text = arguments[index];
    std::from_chars(text.data(), text.data() + text.size(), number);
  }
  return number;
}

std::vector<ScriptOrder> ParseScript(std::string_view text, const LocalDateTime& begin,
                                     const std::string& fileName) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  const int64_t beginUtcMs = UtcMs(begin);
  int64_t lineUtcMs = beginUtcMs;
  std::vector<ScriptOrder> orders;
  for (int number = 1; !text.empty(); ++number) {
    std::string_view lineText = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(lineText.size() + 1, text.size()));
    if (lineText.ends_with('\r')) lineText.remove_suffix(1);
    const Line line = SplitWords(lineText);
    if (line.words.empty()) continue;

    const auto fail = [&](const std::string& why) {
      throw ScriptError(fileName + ":" + std::to_string(number) + ": " + why);
    };
    const auto utcMs = ReadTime(line.words[0], lineUtcMs);
    if (!utcMs) fail("'" + line.words[0] + "' is no time");
    if (line.words.size() < 2) fail("no order behind the time");
    lineUtcMs = *utcMs;
    ScriptOrder order{.atMs = lineUtcMs - beginUtcMs, .line = number, .order = {}, .arguments = {}};
    if (const std::string error = ReadOrder(line, lineText, order); !error.empty()) fail(error);
    orders.push_back(std::move(order));
  }
  return orders;
}

}  // namespace zemo
