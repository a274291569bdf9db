// The usual type of a column is read without a detour; any other goes the way of Value.
#include "store/SqliteRow.h"

#include <sqlite3.h>

#include <string>

#include "store/Value.h"

namespace zemo {

RowView::Kind SqliteRow::KindOf(int column) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_NULL:
      return Kind::kNull;
    case SQLITE_INTEGER:
      return Kind::kInteger;
    case SQLITE_FLOAT:
      return Kind::kReal;
    case SQLITE_TEXT:
      return Kind::kText;
    default:
      return Kind::kBytes;
  }
}

int64_t SqliteRow::Int(int column) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_INTEGER:
      return sqlite3_column_int64(statement_, column);
    case SQLITE_FLOAT:
      return AsInt(sqlite3_column_double(statement_, column));
    case SQLITE_NULL:
      return 0;
    default:
      return AsInt(std::string(Text(column)));
  }
}

double SqliteRow::Real(int column) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_INTEGER:
    case SQLITE_FLOAT:
      return sqlite3_column_double(statement_, column);
    case SQLITE_NULL:
      return 0;
    default:
      return AsReal(std::string(Text(column)));
  }
}

std::string_view SqliteRow::Text(int column) const {
  const auto* bytes =
      static_cast<const char*>(static_cast<const void*>(sqlite3_column_text(statement_, column)));
  if (!bytes) return {};
  return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement_, column))};
}

}  // namespace zemo
