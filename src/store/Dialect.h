// The station's query dialect, translated to SQLite's SQL. The one place that knows both.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "store/TableDefs.h"

namespace zemo {

// Gives a table's definition, or null for a name that is no table.
using TableLookup = std::function<std::shared_ptr<const TableDef>(std::string_view)>;

// SQLite's SQL for one query of the dialect. Throws StoreError (kErrSyntax) only where the text
// cannot be cut into words; all else that is wrong is left for SQLite to say. The contents of text
// literals are never touched, but for the wildcards of LIKE.
std::string TranslateQuery(std::string_view query, const TableLookup& tables);

}  // namespace zemo
