// The row that a statement of SQLite stands on.
#pragma once

#include "store/RowView.h"

struct sqlite3_stmt;

namespace zemo {

class SqliteRow final : public RowView {
 public:
  explicit SqliteRow(sqlite3_stmt* statement) : statement_(statement) {}

  Kind KindOf(int column) const override;
  int64_t Int(int column) const override;
  double Real(int column) const override;
  std::string_view Text(int column) const override;

 private:
  sqlite3_stmt* statement_;  // not owned
};

}  // namespace zemo
