// The station's query dialect, translated to SQLite's SQL. The one place that knows both.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/TableDefs.h"
#include "store/Value.h"

namespace zemo {

// Gives a table's definition, or null for a name that is no table.
using TableLookup = std::function<std::shared_ptr<const TableDef>(std::string_view)>;

// What the translation has to know of a value: it treats one as the literal of that value.
enum class ValueKind : char {
  kNumber = 'n',       // or Null
  kText = 't',         // ASCII alone
  kPercentText = 'p',  // the same, with a % or _ in it, which LIKE has to escape
  kWideText = 'w',     // with letters beyond ASCII
};
ValueKind KindOf(const Value& value);

struct TranslatedQuery {
  std::string sql;               // the value n, from 1, is ?n, whatever became of the others
  std::vector<size_t> patterns;  // from 0: values to be handed over as LikePattern makes them
};

// SQLite's SQL for one query of the dialect, which has a ? for each value. Throws StoreError
// (kErrSyntax) only where the text cannot be cut into words, or has not as many places as `values`;
// all else that is wrong is left for SQLite to say. The contents of text literals are never
// touched, but for the wildcards of LIKE.
TranslatedQuery TranslateQuery(std::string_view query, const TableLookup& tables,
                               const std::vector<ValueKind>& values = {});

// SQLite's pattern for one of the dialect.
std::string LikePattern(std::string_view written);

}  // namespace zemo
