// Names of tables, fields and indexes: compared without regard to case, quoted in SQL.
#pragma once

#include <string>
#include <string_view>

namespace zemo {

bool SameName(std::string_view a, std::string_view b);  // ASCII letters without regard to case
std::string UpperName(std::string_view name);
std::string QuotedName(std::string_view name);  // "name", double quotes in it doubled

// An index is one of its table for the logic, but one of the whole file for SQLite: it is stored as
// Table.Index, so that every table can have its CODE.
std::string StoredIndexName(std::string_view table, std::string_view index);
std::string_view IndexNameOf(std::string_view table, std::string_view storedName);

}  // namespace zemo
