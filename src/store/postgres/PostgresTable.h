// A table on a server, as its cursors read and write it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/TableRows.h"
#include "store/postgres/PostgresConnection.h"

namespace zemo {

class PostgresTable final : public TableRows {
 public:
  PostgresTable(std::shared_ptr<PostgresConnection> connection, std::string_view name);

  const TableDef& Def() const override { return *def_; }
  bool First(Order order, StoredRow& row) const override;
  bool Last(Order order, StoredRow& row) const override;
  bool Behind(Order order, StoredRow& row) const override;
  bool Ahead(Order order, StoredRow& row) const override;
  bool Find(Order order, const Value& key, StoredRow& row) const override;
  bool Read(StoredRow& row) const override;
  int64_t Count() const override;
  int64_t Insert(Changes& changes) const override;
  bool Change(int64_t number, const Changes& changes) const override;
  void Remove(int64_t number) const override;

 private:
  using Parameters = PostgresConnection::Parameters;
  bool Load(const std::string& condition, const Parameters& parameters, Order order, bool down,
            StoredRow& row) const;
  bool Neighbour(Order order, bool down, StoredRow& row) const;
  bool HoldsText(size_t field) const;
  std::string ColumnOf(size_t field) const;
  std::string KeyOf(Order order) const;
  std::string ValueFor(size_t field, int place) const;

  std::shared_ptr<PostgresConnection> connection_;
  std::shared_ptr<const TableDef> def_;
  std::string name_;    // quoted
  std::string number_;  // the column, quoted
  std::string select_;  // "SELECT number, fields FROM table"
};

}  // namespace zemo
