// A field's value and its lenient readings: the database gives whatever was stored, and the logic
// reads it as the text, number or yes/no that it needs.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zemo {

// std::monostate is Null. Booleans are the integers -1 and 0; dates are day serials (double).
using Value = std::variant<std::monostate, int64_t, double, std::string>;
using Values = std::vector<Value>;

bool IsNull(const Value& value);
bool ReadsAsNumber(const Value& value);  // a number, or a text that is one
std::string AsText(const Value& value);  // Null is ""; a whole double has no decimal point
int64_t AsInt(
    const Value& value);  // Null and text that is no number are 0; reals to the nearest even
double AsReal(const Value& value);
bool AsBool(const Value& value);  // non-zero

}  // namespace zemo
