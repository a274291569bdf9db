// Values as they stand in the text of a query. For the store itself, its messages and the tests:
// whoever asks the base binds his values (store/Database.h).
#pragma once

#include <string>
#include <string_view>

#include "store/Value.h"

namespace zemo {

// The one quoting routine for text in SQL: every apostrophe doubled, without the quotes around it.
std::string SqlQuoted(std::string_view text);
// A number in SQL: point as decimal mark, enough digits to come back the same.
std::string SqlNumber(double number);
// 'text', a number or NULL.
std::string SqlLiteral(const Value& value);

// The query with its values in their places, as it is told in a message.
std::string QueryWithValues(std::string_view query, const Values& values);

}  // namespace zemo
