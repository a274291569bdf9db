// Fields and values as a PostgreSQL server takes them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/TableDefs.h"
#include "store/Value.h"

namespace zemo {

// The values beside a statement, each as its text; none: Null.
using PostgresParameters = std::vector<std::optional<std::string>>;

// The form in which a place of a translated query takes a value.
struct PostgresPlace {
  enum Form {
    kNumber,
    kWhole,  // to the nearest even
    kText,
    kPattern  // of LIKE
  };
  size_t value = 0;  // from 0, of the query's own
  Form form = kText;
};

// What a translation depends on beside the query's text: a letter a value.
std::string KindsOf(const Values& values);
// The value in its form; nothing for Null.
bool InForm(PostgresPlace::Form form, const Value& value, std::string& text);
// As the file writes a real into a text: fifteen digits, always a mark.
std::string TextOfReal(double real);

// The column that numbers the rows: the key, or one of the engine's own that no query shows.
inline constexpr char kHiddenNumber[] = "rowid";
std::string NumberColumn(const TableDef& table);
bool HoldsText(const Field& field);  // the others hold numbers

// PostgreSQL's pattern for one of the dialect.
std::string PostgresPattern(std::string_view written);
// 'text', whatever stands in it.
std::string PostgresLiteral(std::string_view text);

}  // namespace zemo
