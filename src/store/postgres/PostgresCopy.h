// Whole tables in and out of a server: rows in by COPY, out in portions by their numbers.
#pragma once

#include <memory>
#include <string>

#include "store/Database.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresConnection.h"

namespace zemo {

class PostgresRowSink final : public RowSink {
 public:
  PostgresRowSink(std::shared_ptr<PostgresConnection> connection,
                  std::shared_ptr<const TableDef> table);
  ~PostgresRowSink() override;
  // Throws kErrValueRefused for a value that a column of its kind cannot hold.
  void Add(const RowView& row) override;
  void Finish() override;

 private:
  void AddValue(const RowView& row, int field);

  const std::shared_ptr<PostgresConnection> connection_;
  const std::shared_ptr<const TableDef> table_;
  std::string rows_;  // not sent yet
  int64_t count_ = 0;
  bool open_ = true;
};

void ReadPostgresTable(PostgresConnection& connection, const TableDef& table,
                       const Database::TakeRow& take);

}  // namespace zemo
