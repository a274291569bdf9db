#include "store/postgres/PostgresRules.h"

#include <string_view>

#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresResult.h"

namespace zemo {

std::string NameOfRule(size_t place, const PostgresRule& rule) {
  std::string number = std::to_string(place);
  number.insert(0, number.size() < 3 ? 3 - number.size() : 0, '0');
  return number + (rule.isWidth ? " width " : " range ") + std::to_string(rule.number) + ' ' +
         rule.field;
}

std::optional<PostgresRule> RuleNamed(const std::string& name) {
  const size_t word = name.find(' ');
  if (word == std::string::npos) return std::nullopt;
  const size_t number = name.find(' ', word + 1);
  if (number == std::string::npos) return std::nullopt;
  const size_t field = name.find(' ', number + 1);
  if (field == std::string::npos) return std::nullopt;
  const std::string kind = name.substr(word + 1, number - word - 1);
  if (kind != "width" && kind != "range") return std::nullopt;
  PostgresRule rule;
  rule.isWidth = kind == "width";
  rule.number = NumberIn<int>(std::string_view(name).substr(number + 1, field - number - 1));
  rule.field = name.substr(field + 1);
  return rule;
}

void ThrowRule(const std::string& table, const std::string& name, const std::string& message) {
  const auto rule = RuleNamed(name);
  if (!rule) throw StoreError(kErrValueRefused, message);
  const std::string where = table + '.' + rule->field;
  if (rule->isWidth)
    throw StoreError(kErrFieldTooSmall,
                     where + kWidthRule + std::to_string(rule->number) + " characters");
  throw StoreError(
      kErrOverflow,
      where + kRangeRule + (rule->number == 16 ? "-32768 to 32767" : "-2147483648 to 2147483647"));
}

}  // namespace zemo
