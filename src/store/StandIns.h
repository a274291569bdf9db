// What is read of a table whose columns are not the schema's, because another tool renamed, dropped
// or changed some, or an upgrade could not finish: the schema's fields all the same, the missing
// ones as what a new row holds, those of another type as their own. So a fault of one column costs
// what needs it, and nothing else.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/TableDefs.h"

namespace zemo {

// How the file declares a column.
struct DeclaredColumn {
  std::string type;
  bool caseBlind = true;  // compares texts without regard to case
};

// A stand-in, and what is to be told of it: one line a fault, with the column's name.
struct StandIn {
  std::shared_ptr<const TableDef> table;
  std::string view;  // SQL of the view that queries read; empty: they read the table itself
  std::vector<std::string> told;
};

// Table null: the table is as the schema has it.
StandIn StandInFor(const TableDef& present,
                   const std::function<DeclaredColumn(const std::string& column)>& declared);

// SQL that drops it again.
std::string DropViewSql(const TableDef& standIn);

}  // namespace zemo
