#include "app/OrderForms.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "app/Moments.h"

namespace zemo {

namespace {

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
  if (kind == "KEY") return IsWholeNumber(text, 1, 9);
  if (kind == "VK") return IsWholeNumber(text, 1, 254);
  if (kind == "OPTION") return IsWholeNumber(text, 0, 3);
  if (kind == "CONTACT") return IsWholeNumber(text, 0, 3);
  if (kind == "BUTTON") return IsWholeNumber(text, 1, 4);
  if (kind == "DAY") return ParseDay(text).has_value();
  if (kind == "COLOUR") return ParseColour(text).has_value();
  if (kind == "NAME") return !text.empty() && text.find('=') == std::string_view::npos;
  if (kind == "NUMBER") return IsWholeNumber(text, 0, 0x7fffffff);
  if (kind == "FIELD" || kind == "FILE" || kind == "FOLDER" || kind == "CONTROL" ||
      kind == "GRID" || kind == "LIST")
    return !text.empty();
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

// The arguments when the words behind the order fit the form.
std::optional<std::vector<std::string>> Match(std::string_view form, const OrderWords& line,
                                              std::string_view text) {
  NextWord(form);
  std::vector<std::string> arguments;
  size_t next = 1;  // behind the order
  for (std::string_view kind = NextWord(form); !kind.empty(); kind = NextWord(form)) {
    if (kind.ends_with(kRest)) {
      text.remove_prefix(line.ends[0]);
      text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
      if (text.empty() && kind == "STATEMENT...") return std::nullopt;
      return std::vector<std::string>{std::string(text)};
    }
    if (kind.ends_with('+')) {
      kind.remove_suffix(1);
      for (const size_t first = next; next < line.words.size() || next == first; ++next) {
        if (next == line.words.size() || !Fits(kind, line.words[next])) return std::nullopt;
        arguments.push_back(line.words[next]);
      }
      break;
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

GivenOrder FindOrder(std::span<const Order> orders, const OrderWords& line, std::string_view text) {
  if (line.words.empty()) throw UnreadableOrder("no order");
  std::string expected;
  for (const Order& order : orders) {
    if (order.Name() != line.words[0]) continue;
    if (auto arguments = Match(order.form, line, text)) {
      GivenOrder given{&order, std::move(*arguments)};
      const std::string error = order.misnamed ? order.misnamed(given) : std::string();
      if (!error.empty()) throw UnreadableOrder(error);
      return given;
    }
    expected += (expected.empty() ? "" : " or ") + std::string(order.form);
  }
  if (expected.empty()) throw UnreadableOrder("unknown order '" + line.words[0] + "'");
  throw UnreadableOrder("cannot be read, expected: " + expected);
}

}  // namespace

std::optional<int32_t> ParseColour(std::string_view text) {
  uint32_t rgb = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rgb, 16);
  if (error != std::errc() || end != text.data() + text.size() || text.size() != 6)
    return std::nullopt;
  return static_cast<int32_t>((rgb & 0xff) << 16 | (rgb & 0xff00) | rgb >> 16);
}

int GivenOrder::Number(size_t index) const {
  int number = 0;
  if (Has(index)) {
    const std::string& text = arguments[index];
    std::from_chars(text.data(), text.data() + text.size(), number);
  }
  return number;
}

OrderWords SplitWords(std::string_view text) {
  OrderWords line;
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

GivenOrder ReadOrder(std::span<const Order> orders, std::string_view text) {
  return FindOrder(orders, SplitWords(text), text);
}

GivenOrder OrderOfWords(std::span<const Order> orders, const std::vector<std::string>& words) {
  OrderWords line;
  line.words = words;
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
    line.ends.push_back(text.size());
  }
  return FindOrder(orders, line, text);
}

}  // namespace zemo
