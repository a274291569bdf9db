// The thirteen tables of a station: the one place that lists their fields, defaults and indexes,
// and the creators made from it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/TableDefs.h"

namespace zemo {

// What the name of a rule of the schema says behind Table.Field; the error number hangs on it.
inline constexpr char kWidthRule[] = " holds at most ";
inline constexpr char kRangeRule[] = " holds whole numbers from ";

// In the order in which a new base gets them.
const std::vector<TableDef>& SchemaTables();
const TableDef* FindSchemaTable(std::string_view name);  // null: not one of the thirteen

// The creators. Each throws StoreError; kErrTableExists where there is nothing to do.
void CreateTable(TableDefs& tables, std::string_view name);
void CreateIndexes(TableDefs& tables, std::string_view name);  // those that are missing

// The key of a table is a unique index on its field: listed where the schema has such an index, or
// does not know the table.
void AddKeyIndex(TableDef& table);

// SQL behind TableDefs.
std::string CreateTableSql(const TableDef& table);
std::string FieldSql(std::string_view table, const Field& field);
std::string CreateIndexSql(std::string_view table, const Index& index);
// What FieldSql declares, read back: type and size of a declared type ("VARCHAR(40)").
void ReadDeclaredType(std::string_view declared, Field& field);

}  // namespace zemo
