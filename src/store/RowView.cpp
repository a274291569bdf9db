// The usual type of a column is read without a detour; any other goes the way of Value.
#include "store/RowView.h"

#include <sqlite3.h>

#include <string>

#include "store/Value.h"

namespace zemo {

bool RowView::IsNull(int column) const {
  return sqlite3_column_type(statement_, column) == SQLITE_NULL;
}

bool RowView::IsNumber(int column) const {
  const int type = sqlite3_column_type(statement_, column);
  return type == SQLITE_INTEGER || type == SQLITE_FLOAT;
}

bool RowView::IsText(int column) const {
  return sqlite3_column_type(statement_, column) == SQLITE_TEXT;
}

int64_t RowView::Int(int column) const {
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

double RowView::Real(int column) const {
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

std::string_view RowView::Text(int column) const {
  const auto* bytes =
      static_cast<const char*>(static_cast<const void*>(sqlite3_column_text(statement_, column)));
  if (!bytes) return {};
  return {bytes, static_cast<size_t>(sqlite3_column_bytes(statement_, column))};
}

}  // namespace zemo
