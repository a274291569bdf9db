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

// How the base declares a column.
struct DeclaredColumn {
  std::string type;
  bool caseBlind = true;  // compares texts without regard to case
};

// An engine's words for what is read in the place of a column.
class StandInSql {
 public:
  virtual ~StandInSql() = default;
  virtual std::string Constant(const Field& field, const std::string& literal) const = 0;
  // `column`, quoted, is of another type than the field.
  virtual std::string InType(const Field& field, const std::string& column) const = 0;
  virtual std::string Number(const TableDef& present) const = 0;  // of a row
  virtual std::string Table(std::string_view name) const = 0;     // and no stand-in for it
};

// A stand-in, and what is to be told of it: one line a fault, with the column's name.
struct StandIn {
  std::shared_ptr<const TableDef> table;
  std::string select;  // SQL of what queries read in its place; empty: they read the table itself
  std::vector<std::string> told;
};

// Table null: the table is as the schema has it.
StandIn StandInFor(const TableDef& present, const StandInSql& words,
                   const std::function<DeclaredColumn(const std::string& column)>& declared);

// Of the file: SQL of the view by which a stand-in is read, and that drops it again.
std::string MakeViewSql(const StandIn& standIn);
std::string DropViewSql(const TableDef& standIn);

}  // namespace zemo
