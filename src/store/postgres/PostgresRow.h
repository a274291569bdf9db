// A row of a server's answer.
#pragma once

#include <string_view>

#include "store/RowView.h"
#include "store/postgres/PostgresResult.h"

namespace zemo {

class PostgresRow final : public RowView {
 public:
  explicit PostgresRow(const PostgresResult& rows, int row = 0) : rows_(rows), row_(row) {}

  Kind KindOf(int column) const override { return rows_.Kind(row_, column); }
  int64_t Int(int column) const override {
    if (KindOf(column) == Kind::kInteger) return rows_.Int(row_, column);
    return AsInt(rows_.Read(row_, column));
  }
  double Real(int column) const override { return AsReal(rows_.Read(row_, column)); }
  std::string_view Text(int column) const override { return rows_.Text(row_, column); }

 private:
  const PostgresResult& rows_;
  const int row_;
};

}  // namespace zemo
