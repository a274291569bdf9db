// The database over its connection to a server.
#include "store/postgres/PostgresDatabase.h"

#include <utility>
#include <vector>

#include "store/EngineDatabase.h"
#include "store/Names.h"
#include "store/Snapshot.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresConnection.h"
#include "store/postgres/PostgresCopy.h"
#include "store/postgres/PostgresLine.h"
#include "store/postgres/PostgresRow.h"
#include "store/postgres/PostgresTable.h"
#include "store/postgres/PostgresTableDefs.h"
#include "store/postgres/ServerUrl.h"

namespace zemo {

namespace {

constexpr int kTimesOtherUser = 20;

class PostgresDatabase final
    : public EngineDatabase<PostgresConnection, PostgresTableDefs, ServerDatabase> {
 public:
  // No error shows the URL, which may hold a password.
  PostgresDatabase(std::string url, std::shared_ptr<LockWait> wait, LineKeeper* keeper)
      : EngineDatabase("the base", std::move(wait)), url_(std::move(url)), keeper_(keeper) {}

  using Database::ReadRows;

  std::unique_ptr<Recordset> OpenRecordset(std::string_view sql, const Values& values) override {
    const PostgresResult result = Use().RunDialect(sql, values, true);
    std::vector<std::string> names;
    for (int column = 0; column < result.Columns(); ++column)
      names.push_back(result.ColumnName(column));
    auto rows = std::make_unique<Snapshot>(std::move(names));
    for (int row = 0; row < result.Rows(); ++row) rows->Add(PostgresRow(result, row));
    return rows;
  }
  void ReadRows(std::string_view sql, const Values& values, const TakeRow& take) override {
    Use().ReadDialect(sql, values, [&take](const PostgresResult& row) { take(PostgresRow(row)); });
  }
  std::shared_ptr<const StoredTable> FindTable(std::string_view name) override {
    return std::make_shared<const PostgresTable>(Shared(), name);
  }
  void Execute(std::string_view sql, const Values& values) override {
    Use().RunDialect(sql, values, false);
  }

  std::vector<std::string> PutStandIns() override {
    std::vector<std::string> told = Use().PutStandIns();
    if (const std::string& why = Use().WhyReadOnly(); !why.empty()) told.push_back(why);
    return told;
  }
  bool HasColumn(std::string_view table, std::string_view column) override {
    const auto found = Use().FindReadTable(table);
    const Field* field = found ? found->FindField(column) : nullptr;
    return field && !field->Missing;
  }
  bool IsReadAsStored(std::string_view table) override {
    if (Use().StructureIsOld() || Use().StandInsAreOld()) return false;
    const auto found = Use().FindReadTable(table);
    return found && !found->IsStandIn && found->AutoField();
  }

  void BeginReading() override { Use().BeginReading(); }
  void ReadTable(std::string_view table, const TakeRow& take) override {
    ReadPostgresTable(Use(), *Existing(table), take);
  }
  std::unique_ptr<RowSink> FillTable(std::string_view table) override {
    return std::make_unique<PostgresRowSink>(Shared(), Existing(table));
  }
  bool CompactInPlace() override {
    Use().Compact();
    return true;
  }

  void SetTablesAside(const std::string& schema) override {
    Use().Run("SELECT zemo.begin_filling()", {}, true);
    Use().Change("CREATE SCHEMA " + QuotedName(schema));
    for (const auto& table : std::vector(Use().AllTables()))
      Use().Change("ALTER TABLE " + QuotedName(table->Name) + " SET SCHEMA " + QuotedName(schema));
    Use().StructureChanged();
  }
  std::string OtherUser() override {
    std::string other = OtherMachine();
    // Who has just left is known to the server for a moment.
    for (int times = 0; !other.empty() && times < kTimesOtherUser; ++times) {
      Use().Run("SELECT pg_sleep(0.05)", {}, false);
      other = OtherMachine();
    }
    return other.empty() ? other : Use().Name() + " is open in another program, on " + other;
  }

  void GiveRights(Rights rights, const std::string& role) override {
    static constexpr const char* kNames[] = {"read", "work", "own"};
    BeginTrans();
    try {
      Use().Run("SELECT zemo.give_rights($1::text, $2::text)",
                {role, kNames[static_cast<int>(rights)]}, true, "the rights of a role");
      CommitTrans();
    } catch (...) {
      RollbackTrans();
      throw;
    }
  }

  void Open(bool create) override {
    Take(std::make_shared<PostgresConnection>(url_, create, wait_, keeper_));
  }
  // A server's pages are its own: who keeps a table reads its rows again.
  bool ReadPages(std::string_view, int64_t, const TakePage&) override { return false; }
  void KeepAlone() override { throw StoreError(kErrLocked, "others are let in by the server"); }
  void LetOthersIn() override {}
  bool IsAlone() const override { return false; }
  bool FileIsLost() const override { return Opening() && Opening()->IsLost(); }

 private:
  std::string OtherMachine() {
    const PostgresResult others = Use().Run(
        "SELECT coalesce(host(client_addr), 'this machine') FROM pg_stat_activity WHERE "
        "datname = current_database() AND application_name = $1::text AND pid <> "
        "pg_backend_pid() LIMIT 1",
        {kProgramName}, false);
    return others.Rows() == 0 ? std::string() : std::string(others.Text(0, 0));
  }
  std::shared_ptr<const TableDef> Existing(std::string_view table) {
    Use().AllTables();
    auto def = Use().FindTable(table);
    if (!def) throw StoreError(kErrNoSuchTable, "no table " + std::string(table));
    return def;
  }

  const std::string url_;
  LineKeeper* const keeper_;
};

}  // namespace

std::unique_ptr<ServerDatabase> ClosedPostgresDatabase(std::string url,
                                                       std::shared_ptr<LockWait> wait,
                                                       LineKeeper* keeper) {
  return std::make_unique<PostgresDatabase>(std::move(url), std::move(wait), keeper);
}

BasePlace ServerPlace(const std::string& url, LineKeeper* keeper) {
  BasePlace place;
  place.name = ShownServerUrl(url);
  place.isFile = false;
  place.url = url;
  place.closed = [url, keeper](std::shared_ptr<LockWait> wait) {
    return ClosedPostgresDatabase(url, std::move(wait), keeper);
  };
  return place;
}

}  // namespace zemo
