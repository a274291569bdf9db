// The database over its SQLite connection, and the operations on whole files.
#include <optional>
#include <utility>

#include "store/BasePlace.h"
#include "store/Connection.h"
#include "store/DatabaseFiles.h"
#include "store/EngineDatabase.h"
#include "store/Names.h"
#include "store/Snapshot.h"
#include "store/SqliteRow.h"
#include "store/SqliteTable.h"
#include "store/SqliteTableDefs.h"
#include "store/StoreError.h"
#include "store/TablePages.h"

namespace zemo {

namespace {

std::shared_ptr<LockWait> EachWaits(int ms) {
  return std::make_shared<LockWait>(ms);
}

// Puts rows in as they come, by one statement.
class SqliteRowSink final : public RowSink {
 public:
  SqliteRowSink(std::shared_ptr<Connection> connection, const TableDef& table)
      : connection_(std::move(connection)), fields_(static_cast<int>(table.Fields.size())) {
    std::string fields;
    std::string places;
    for (const Field& field : table.Fields) {
      fields += (fields.empty() ? "" : ", ") + QuotedName(field.Name);
      places += places.empty() ? "?" : ", ?";
    }
    insert_ =
        "INSERT INTO main." + QuotedName(table.Name) + " (" + fields + ") VALUES (" + places + ")";
  }

  void Add(const RowView& row) override {
    Statement insert = connection_->Prepare(insert_);
    for (int field = 0; field < fields_; ++field) insert.Bind(field + 1, ValueOf(row, field));
    insert.Run();
  }
  void Finish() override {}

 private:
  static Value ValueOf(const RowView& row, int field) {
    switch (row.KindOf(field)) {
      case RowView::Kind::kNull:
        return {};
      case RowView::Kind::kInteger:
        return row.Int(field);
      case RowView::Kind::kReal:
        return row.Real(field);
      default:
        return std::string(row.Text(field));
    }
  }

  std::shared_ptr<Connection> connection_;
  const int fields_;
  std::string insert_;
};

void RequireRows(const Statement& query, std::string_view sql) {
  if (query.Columns() == 0)
    throw StoreError(kErrSyntax, "a query without rows cannot be opened: " + std::string(sql));
}

class SqliteDatabase final : public EngineDatabase<Connection, SqliteTableDefs> {
 public:
  // `keeper`: of a replica; none: it is a station's own file.
  SqliteDatabase(std::string path, std::shared_ptr<LockWait> wait,
                 std::optional<ReplicaKeeper> keeper = std::nullopt)
      : EngineDatabase(path, std::move(wait)), path_(std::move(path)), keeper_(std::move(keeper)) {}

  using Database::ReadRows;

  std::unique_ptr<Recordset> OpenRecordset(std::string_view sql, const Values& values) override {
    Statement query = Use().PrepareDialect(sql, values);
    RequireRows(query, sql);
    // The first step is what notices that another program has changed the table's columns.
    bool row = query.Step();
    std::vector<std::string> names;
    for (int column = 0; column < query.Columns(); ++column)
      names.push_back(query.ColumnName(column));
    auto rows = std::make_unique<Snapshot>(std::move(names));
    for (; row; row = query.Step()) rows->Add(SqliteRow(query.Handle()));
    return rows;
  }
  void ReadRows(std::string_view sql, const Values& values, const TakeRow& take) override {
    Statement query = Use().PrepareDialect(sql, values);
    RequireRows(query, sql);
    while (query.Step()) take(SqliteRow(query.Handle()));
  }
  std::shared_ptr<const StoredTable> FindTable(std::string_view name) override {
    return std::make_shared<const SqliteTable>(Shared(), name);
  }
  void Execute(std::string_view sql, const Values& values) override {
    Use().PrepareDialect(sql, values).Run();
  }
  std::vector<std::string> PutStandIns() override { return Use().PutStandIns(); }
  bool HasColumn(std::string_view table, std::string_view column) override {
    const auto found = Use().FindReadTable(table);
    const Field* field = found ? found->FindField(column) : nullptr;
    return field && !field->Missing;
  }
  bool IsReadAsStored(std::string_view table) override {
    if (Use().StandInsAreOld()) return false;
    const auto found = Use().FindReadTable(table);
    return found && !found->IsStandIn && found->LostKey.empty() && found->AutoField();
  }
  void BeginReading() override { Use().BeginReading(); }
  void ReadTable(std::string_view table, const TakeRow& take) override {
    const std::shared_ptr<const TableDef> def = Existing(table);
    std::string fields;
    for (const Field& field : def->Fields)
      fields += (fields.empty() ? "" : ", ") + QuotedName(field.Name);
    Statement rows = Use().Prepare("SELECT " + fields + " FROM main." + QuotedName(def->Name) +
                                   " ORDER BY rowid");
    while (rows.Step()) take(SqliteRow(rows.Handle()));
  }
  std::unique_ptr<RowSink> FillTable(std::string_view table) override {
    return std::make_unique<SqliteRowSink>(Shared(), *Existing(table));
  }
  bool CompactInPlace() override {
    if (keeper_) keeper_->compact();
    return keeper_.has_value();
  }
  void Open(bool create) override {
    if (keeper_ && !Connection::FileExists(path_))
      throw StoreError(kErrOther,
                       "the server is away, and this machine has no replica of its base");
    if (IsAlone()) LetOthersIn();  // the new opening is one of them
    auto fresh = std::make_shared<Connection>(path_, create, wait_);
    // SQLite makes the file with its first page; whoever looks at the folder now shall find a
    // database.
    if (create) fresh->ExecuteNow("PRAGMA user_version = 1");
    if (keeper_) fresh->TellStores(keeper_->stores);
    Take(std::move(fresh));
  }
  bool ReadPages(std::string_view table, int64_t afterKey, const TakePage& take) override {
    return ReadTablePages(Use(), table, afterKey, take);
  }
  void KeepAlone() override { Use().KeepAlone(); }
  void LetOthersIn() override { Use().LetOthersIn(); }
  bool IsAlone() const override { return Opening() && Opening()->IsAlone(); }
  bool FileIsLost() const override { return Opening() && Opening()->FileIsLost(); }

 private:
  std::shared_ptr<const TableDef> Existing(std::string_view table) {
    Use().RefreshCatalogue();
    auto def = Use().FindTable(table);
    if (!def) throw StoreError(kErrNoSuchTable, "no table " + std::string(table));
    return def;
  }

  const std::string path_;
  const std::optional<ReplicaKeeper> keeper_;
};

std::unique_ptr<Database> Opened(const std::string& path, bool create, int busyTimeoutMs) {
  auto database = std::make_unique<SqliteDatabase>(path, EachWaits(busyTimeoutMs));
  database->Open(create);
  return database;
}

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

OthersLetIn::~OthersLetIn() {
  if (!alone_) return;
  try {
    database_.KeepAlone();
  } catch (const StoreError&) {
    // Looked for from now on as everywhere else.
  }
}

HeldDatabase::HeldDatabase(const std::string& path, int waitMs)
    : connection_(std::make_unique<Connection>(path, false, EachWaits(waitMs))) {
  connection_->KeepAlone();
}

HeldDatabase::~HeldDatabase() = default;

void HeldDatabase::CopyTo(const std::string& to) {
  if (DBEngine::DatabaseExists(to)) throw StoreError(kErrFileExists, to + " exists already");
  connection_->Prepare("VACUUM INTO ?1").Bind(1, to).Run();
  // The copy is written without waiting for the disk. One small stored change makes all of it safe
  // before it takes the place of the original.
  Connection copy(to, false, EachWaits(kBusyTimeoutMs));
  copy.Begin();
  copy.ExecuteNow("PRAGMA user_version = 2");
  copy.ExecuteNow("PRAGMA user_version = 1");
  copy.Commit();
}

bool DBEngine::DatabaseExists(const std::string& path) {
  return Connection::FileExists(path);
}

std::unique_ptr<Database> DBEngine::ClosedDatabase(const std::string& path,
                                                   std::shared_ptr<LockWait> wait) {
  return std::make_unique<SqliteDatabase>(path, std::move(wait));
}

std::unique_ptr<Database> DBEngine::ClosedReplica(const std::string& path,
                                                  std::shared_ptr<LockWait> wait,
                                                  ReplicaKeeper keeper) {
  return std::make_unique<SqliteDatabase>(path, std::move(wait), std::move(keeper));
}

BasePlace FilePlace(std::string path) {
  BasePlace place;
  place.closed = [path](std::shared_ptr<LockWait> wait) {
    return DBEngine::ClosedDatabase(path, std::move(wait));
  };
  place.name = std::move(path);
  return place;
}

std::unique_ptr<Database> DBEngine::CreateDatabase(const std::string& path, int busyTimeoutMs) {
  if (DatabaseExists(path)) throw StoreError(kErrFileExists, path + " exists already");
  return Opened(path, true, busyTimeoutMs);
}

std::unique_ptr<Database> DBEngine::OpenDatabase(const std::string& path, int busyTimeoutMs) {
  return Opened(path, false, busyTimeoutMs);
}

void DBEngine::CompactDatabase(const std::string& from, const std::string& to) {
  HeldDatabase(from, kBusyTimeoutMs).CopyTo(to);
}

void DBEngine::RepairDatabase(const std::string& path) {
  Connection connection(path, false, EachWaits(kBusyTimeoutMs));
  if (FirstFault(connection).empty()) return;
  connection.ExecuteNow("REINDEX");
  const std::string fault = FirstFault(connection);
  if (!fault.empty()) throw StoreError(kErrBadDatabase, path + " is damaged: " + fault);
}

void DBEngine::ExecuteNative(const std::string& path, const std::string& sql) {
  Connection(path, false, EachWaits(kBusyTimeoutMs)).ExecuteNow(sql.c_str());
}

}  // namespace zemo
