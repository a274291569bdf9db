// The database over its connection to a server.
#include "store/postgres/PostgresDatabase.h"

#include <utility>

#include "store/EngineDatabase.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/Snapshot.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresConnection.h"
#include "store/postgres/PostgresTable.h"
#include "store/postgres/PostgresTableDefs.h"

namespace zemo {

namespace {

class PostgresRow final : public RowView {
 public:
  explicit PostgresRow(const PostgresResult& rows) : rows_(rows) {}
  void Go(int row) { row_ = row; }

  Kind KindOf(int column) const override { return rows_.Kind(row_, column); }
  int64_t Int(int column) const override {
    if (KindOf(column) == Kind::kInteger) return rows_.Int(row_, column);
    return AsInt(rows_.Read(row_, column));
  }
  double Real(int column) const override { return AsReal(rows_.Read(row_, column)); }
  std::string_view Text(int column) const override { return rows_.Text(row_, column); }

 private:
  const PostgresResult& rows_;
  int row_ = 0;
};

class PostgresDatabase final : public EngineDatabase<PostgresConnection, PostgresTableDefs> {
 public:
  // No error shows the URL, which may hold a password.
  PostgresDatabase(std::string url, std::shared_ptr<LockWait> wait)
      : EngineDatabase("the base", std::move(wait)), url_(std::move(url)) {}

  using Database::ReadRows;

  std::unique_ptr<Recordset> OpenRecordset(std::string_view sql, const Values& values) override {
    const PostgresResult result = Use().RunDialect(sql, values, true);
    std::vector<std::string> names;
    for (int column = 0; column < result.Columns(); ++column)
      names.push_back(result.ColumnName(column));
    auto rows = std::make_unique<Snapshot>(std::move(names));
    Each(result, [&rows](const RowView& row) { rows->Add(row); });
    return rows;
  }
  void ReadRows(std::string_view sql, const Values& values, const TakeRow& take) override {
    Each(Use().RunDialect(sql, values, true), take);
  }
  std::shared_ptr<const StoredTable> FindTable(std::string_view name) override {
    return std::make_shared<const PostgresTable>(Shared(), name);
  }
  void Execute(std::string_view sql, const Values& values) override {
    Use().RunDialect(sql, values, false);
  }

  std::vector<std::string> PutStandIns() override {
    std::vector<std::string> told;
    for (const auto& table : Use().AllTables()) {
      const TableDef* schema = FindSchemaTable(table->Name);
      if (!schema) continue;
      for (const Field& field : schema->Fields)
        if (!table->FindField(field.Name))
          told.push_back(table->Name + '.' + field.Name + " is missing");
    }
    Use().NoteAll();
    return told;
  }
  bool HasColumn(std::string_view table, std::string_view column) override {
    const auto found = Use().FindTable(table);
    return found && found->FindField(column);
  }
  bool IsReadAsStored(std::string_view table) override {
    if (Use().StructureIsOld()) return false;
    const auto found = Use().FindTable(table);
    return found && found->AutoField();
  }

  void Open(bool create) override {
    Take(std::make_shared<PostgresConnection>(url_, create, wait_));
  }
  // A server's pages are its own: who keeps a table reads its rows again.
  bool ReadPages(std::string_view, int64_t, const TakePage&) override { return false; }
  void KeepAlone() override { throw StoreError(kErrLocked, "others are let in by the server"); }
  void LetOthersIn() override {}
  bool IsAlone() const override { return false; }
  bool FileIsLost() const override { return Opening() && Opening()->IsLost(); }

 private:
  static void Each(const PostgresResult& rows, const TakeRow& take) {
    PostgresRow view(rows);
    for (int row = 0; row < rows.Rows(); ++row) {
      view.Go(row);
      take(view);
    }
  }

  const std::string url_;
};

}  // namespace

std::unique_ptr<Database> ClosedPostgresDatabase(std::string url, std::shared_ptr<LockWait> wait) {
  return std::make_unique<PostgresDatabase>(std::move(url), std::move(wait));
}

}  // namespace zemo
