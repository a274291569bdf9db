// The database over its connection, and the operations on whole files.
#include "store/Database.h"

#include <utility>

#include "store/Connection.h"
#include "store/Names.h"
#include "store/RowView.h"
#include "store/Snapshot.h"
#include "store/StoreError.h"
#include "store/TableCursor.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

// Cursors share the connection, so that one that outlives the database finds it closed.
class SqliteDatabase : public Database {
 public:
  SqliteDatabase(const std::string& path, bool create, int busyTimeoutMs)
      : connection_(std::make_shared<Connection>(path, create, busyTimeoutMs)),
        tables_(*connection_) {}
  ~SqliteDatabase() override { connection_->Close(); }

  std::unique_ptr<Recordset> OpenRecordset(std::string_view sql) override {
    Statement query = connection_->PrepareDialect(sql);
    if (query.Columns() == 0) {
      throw StoreError(kErrSyntax, "a query without rows cannot be opened: " + std::string(sql));
    }
    return std::make_unique<Snapshot>(query);
  }
  void ReadRows(std::string_view sql, const std::function<void(const RowView&)>& take) override {
    Statement query = connection_->PrepareDialect(sql);
    while (query.Step()) take(RowView(query.Handle()));
  }
  std::unique_ptr<Recordset> OpenTable(std::string_view table) override {
    return std::make_unique<TableCursor>(connection_, table);
  }
  void Execute(std::string_view sql) override { connection_->PrepareDialect(sql).Run(); }
  void BeginTrans() override { connection_->Begin(); }
  void CommitTrans() override { connection_->Commit(); }
  TableDefs& Tables() override { return tables_; }
  void Close() override { connection_->Close(); }
  bool IsOpen() const override { return connection_->IsOpen(); }
  int64_t ChangeCounter() override { return connection_->ChangeCounter(); }
  int64_t LastInsertCode() const override { return connection_->LastInsertCode(); }
  int BusyTimeoutMs() const override { return connection_->BusyTimeoutMs(); }
  void SetBusyTimeoutMs(int ms) override { connection_->SetBusyTimeoutMs(ms); }

 private:
  std::shared_ptr<Connection> connection_;
  TableDefs tables_;
};

// The first fault that SQLite finds, empty for none. A row that breaks a rule of the schema
// (another tool can store one) is no damage of the file.
std::string FirstFault(Connection& connection) {
  Statement check = connection.Prepare("PRAGMA integrity_check");
  while (check.Step()) {
    const std::string line = check.Text(0);
    if (line != "ok" && !line.starts_with("CHECK constraint failed")) return line;
  }
  return {};
}

}  // namespace

Transaction::~Transaction() {
  if (committed_) return;
  try {
    database_.CommitTrans();
  } catch (const StoreError&) {
    // Rolled back. The failure that led here is on its way already.
  }
}

bool DBEngine::DatabaseExists(const std::string& path) {
  return Connection::FileExists(path);
}

std::unique_ptr<Database> DBEngine::CreateDatabase(const std::string& path, int busyTimeoutMs) {
  if (DatabaseExists(path)) throw StoreError(kErrFileExists, path + " exists already");
  auto database = std::make_unique<SqliteDatabase>(path, true, busyTimeoutMs);
  // SQLite makes the file with its first page; whoever looks at the folder now shall find a
  // database.
  database->Execute("PRAGMA user_version = 1");
  return database;
}

std::unique_ptr<Database> DBEngine::OpenDatabase(const std::string& path, int busyTimeoutMs) {
  return std::make_unique<SqliteDatabase>(path, false, busyTimeoutMs);
}

void DBEngine::CompactDatabase(const std::string& from, const std::string& to) {
  if (DatabaseExists(to)) throw StoreError(kErrFileExists, to + " exists already");
  {
    Connection source(from, false, kBusyTimeoutMs);
    source.Prepare("VACUUM INTO ?1").Bind(1, to).Run();
  }
  // The copy is written without waiting for the disk. One small stored change makes all of it safe
  // before it takes the place of the original.
  Connection copy(to, false, kBusyTimeoutMs);
  copy.Begin();
  copy.ExecuteNow("PRAGMA user_version = 2");
  copy.ExecuteNow("PRAGMA user_version = 1");
  copy.Commit();
}

void DBEngine::RepairDatabase(const std::string& path) {
  Connection connection(path, false, kBusyTimeoutMs);
  if (FirstFault(connection).empty()) return;
  connection.ExecuteNow("REINDEX");
  const std::string fault = FirstFault(connection);
  if (!fault.empty()) throw StoreError(kErrBadDatabase, path + " is damaged: " + fault);
}

void DBEngine::ExecuteNative(const std::string& path, const std::string& sql) {
  Connection(path, false, kBusyTimeoutMs).ExecuteNow(sql.c_str());
}

}  // namespace zemo
