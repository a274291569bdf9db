// The catalogue of a SQLite base.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/TableDefs.h"

namespace zemo {

class Connection;

class SqliteTableDefs final : public TableDefs {
 public:
  explicit SqliteTableDefs(Connection& connection) : connection_(connection) {}  // not owned

  bool ChangedSinceStandIns() override;

 private:
  const std::vector<std::shared_ptr<const TableDef>>& All() override;
  void MakeTable(const TableDef& table) override;
  void DropTable(const std::string& table) override;
  void RenameTable(const std::string& table, const std::string& newName) override;
  void MakeField(const TableDef& table, const Field& field) override;
  void DropField(const std::string& table, const std::string& field) override;
  void MakeIndex(const std::string& table, const Index& index) override;
  void DropIndex(const std::string& table, const std::string& index) override;
  int64_t LastNumberOf(const TableDef& table) override;
  void SetLastNumber(const TableDef& table, int64_t number) override;
  void BeginChanges() override;
  void CommitChanges() override;
  void TakeBackChanges() override;
  void Change(const std::string& sql);
  void RequireOwn() const;  // not of a replica

  Connection& connection_;
};

}  // namespace zemo
