// Values as they stand in the text of a query.
#include "store/SqlText.h"

#include <cmath>

namespace zemo {

std::string SqlQuoted(std::string_view text) {
  std::string quoted;
  quoted.reserve(text.size() + 4);
  for (const char c : text) {
    quoted += c;
    if (c == '\'') quoted += c;
  }
  return quoted;
}

std::string SqlNumber(double number) {
  if (std::isnan(number)) return "NULL";
  if (std::isinf(number)) return number > 0 ? "9e999" : "-9e999";
  return AsText(number);
}

std::string SqlLiteral(const Value& value) {
  if (IsNull(value)) return "NULL";
  if (const auto* text = std::get_if<std::string>(&value)) return '\'' + SqlQuoted(*text) + '\'';
  if (const auto* real = std::get_if<double>(&value)) return SqlNumber(*real);
  return AsText(value);
}

std::string QueryWithValues(std::string_view query, const Values& values) {
  std::string shown;
  size_t place = 0;
  char closing = 0;  // of the literal or name that is open
  for (const char c : query) {
    if (closing) {
      if (c == closing) closing = 0;
    } else if (c == '\'' || c == '"' || c == '[') {
      closing = c == '[' ? ']' : c;
    } else if (c == '?' && place < values.size()) {
      shown += SqlLiteral(values[place++]);
      continue;
    }
    shown += c;
  }
  return shown;
}

}  // namespace zemo
