// An order: how it is written, what it does, and who can carry it out. Which orders there are
// stands in Orders.cpp.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zemo {

class SimStation;
struct Order;
struct Station;

struct GivenOrder {
  const Order* order = nullptr;
  // The words behind the order: arguments and chosen words, the fixed "at" of `break` left out.
  // Those that have to be numbers were checked to be.
  std::vector<std::string> arguments;

  bool Has(size_t index) const { return index < arguments.size(); }
  int Number(size_t index) const;  // 0 when absent
};

struct Order {
  // An act of the operator, on any station; or one of what a simulation has around its station.
  // Both throw std::exception for an order that cannot be carried out.
  using OfOperator = void (*)(Station& station, const GivenOrder& given);
  using OfSimulation = void (*)(SimStation& sim, const GivenOrder& given);

  // A word in small letters stands as it is ("on|off" for a choice); one in capitals is an argument
  // of that kind, in brackets when it may be left out, together with the fixed word before it. The
  // last may take the rest of the line ("TEXT...") or all words that are left, one at least
  // ("FILE+"). Several forms of one order may follow each other.
  std::string_view form;
  std::string_view help;
  std::variant<OfOperator, OfSimulation> serve;
  // What is wrong with names and values that stand in tables; empty for nothing. Null: there are
  // none.
  std::string (*misnamed)(const GivenOrder& given) = nullptr;
  bool setsTheClock = false;  // of the machine: for who sits at it, and for a simulation

  std::string_view Name() const { return form.substr(0, form.find(' ')); }
};

// An order that cannot be read; what() is one line.
struct UnreadableOrder : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// "RRGGBB" as 0xBBGGRR.
std::optional<int32_t> ParseColour(std::string_view text);

inline constexpr std::string_view kBlanks = " \t";

// The words of a line, up to a comment. Quotes hold blanks and comment marks.
struct OrderWords {
  std::vector<std::string> words;
  std::vector<size_t> ends;  // offset behind each word
  bool openQuotes = false;
};
OrderWords SplitWords(std::string_view text);

// The order of these words, each as it is, blanks and quotes included; as ReadOrder.
GivenOrder OrderOfWords(std::span<const Order> orders, const std::vector<std::string>& words);

// The order that `text` gives, by one of `orders`, which has to outlive it. Throws UnreadableOrder.
GivenOrder ReadOrder(std::span<const Order> orders, std::string_view text);

}  // namespace zemo
