#include "store/replica/Replica.h"

#include <set>
#include <utility>

#include "store/CarryOver.h"
#include "store/Connection.h"
#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/Names.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresValues.h"
#include "store/replica/QueuedChanges.h"
#include "store/replica/ReplicaSchema.h"

namespace zemo {

namespace {

// Begins now; what is not committed at the end of the scope is taken back.
class Held {
 public:
  explicit Held(Connection& connection) : connection_(connection) { connection_.Begin(); }
  ~Held() { connection_.Rollback(); }
  Held(const Held&) = delete;
  void Commit() { connection_.Commit(); }

 private:
  Connection& connection_;
};

int64_t Number(Connection& connection, const std::string& sql) {
  Statement query = connection.Prepare(sql);
  return query.Step() ? query.Int(0) : 0;
}

void SetQuiet(Connection& connection, bool quiet) {
  connection.ExecuteNow(quiet ? "UPDATE zemo_replica SET quiet = 1"
                              : "UPDATE zemo_replica SET quiet = 0");
}

std::vector<TableDef> TablesOf(Connection& connection) {
  std::vector<TableDef> tables;
  for (const auto& table : connection.AllTables()) tables.push_back(*table);
  return tables;
}

// Of every row that the table has, ascending.
std::vector<int64_t> AllNumbers(Connection& connection, const TableDef& table) {
  std::vector<int64_t> numbers;
  Statement query =
      connection.Prepare("SELECT rowid FROM main." + QuotedName(table.Name) + " ORDER BY rowid");
  while (query.Step()) numbers.push_back(query.Int(0));
  return numbers;
}

// Rows of one table, read and written by their numbers.
class TableOfRows {
 public:
  TableOfRows(Connection& connection, const TableDef& table, const std::vector<std::string>& fields)
      : connection_(connection), count_(fields.size()) {
    std::string names, places;
    for (size_t i = 0; i < fields.size(); ++i) {
      names += ", " + QuotedName(fields[i]);
      places += ", ?" + std::to_string(i + 2);
    }
    const std::string name = "main." + QuotedName(table.Name);
    select_ = "SELECT rowid" + names + " FROM " + name + " WHERE rowid = ?1";
    insert_ = "INSERT INTO " + name + " (rowid" + names + ") VALUES (?1" + places + ")";
    remove_ = "DELETE FROM " + name + " WHERE rowid = ?1";
  }

  bool Is(const StoredRow& row) const {
    Statement query = connection_.Prepare(select_);
    query.Bind(1, row.number);
    if (!query.Step()) return false;
    Value value;
    for (size_t i = 0; i < count_; ++i) {
      query.Read(static_cast<int>(i) + 1, value);
      if (value != row.values[i]) return false;
    }
    return true;
  }
  void Remove(int64_t number) const { connection_.Prepare(remove_).Bind(1, number).Run(); }
  void Insert(const StoredRow& row) const {
    Statement insert = connection_.Prepare(insert_);
    insert.Bind(1, row.number);
    for (size_t i = 0; i < count_; ++i) insert.Bind(static_cast<int>(i) + 2, row.values[i]);
    insert.Run();
  }

 private:
  Connection& connection_;
  const size_t count_;
  std::string select_, insert_, remove_;
};

}  // namespace

bool Replica::IsThere(const std::string& path) {
  if (!Connection::FileExists(path)) return false;
  try {
    Connection connection(path, false, std::make_shared<LockWait>(kBusyTimeoutMs));
    return Number(connection, "SELECT form FROM zemo_replica") == kReplicaForm;
  } catch (const StoreError& error) {
    return error.Number() != kErrBadDatabase && error.Number() != kErrNoSuchTable;
  }
}

void Replica::Make(Database& server, const FeedPlace& place, const std::string& machine,
                   const std::string& path) {
  {
    const std::unique_ptr<Database> made = DBEngine::CreateDatabase(path);
    server.BeginReading();
    try {
      CarryOver(server, *made, nullptr);
    } catch (...) {
      server.RollbackTrans();
      throw;
    }
    server.RollbackTrans();
    made->Close();
  }
  Connection connection(path, false, std::make_shared<LockWait>(kBusyTimeoutMs));
  const std::vector<TableDef> tables = TablesOf(connection);
  Held held(connection);
  connection.ExecuteNow(ReplicaSql(tables).c_str());
  connection.StructureChanged();
  connection
      .Prepare(
          "INSERT INTO zemo_replica (form, machine, base, place, placeMark, tables) VALUES "
          "(?1, ?2, ?3, ?4, ?5, ?6)")
      .Bind(1, int64_t{kReplicaForm})
      .Bind(2, machine)
      .Bind(3, place.base)
      .Bind(4, place.place)
      .Bind(5, place.mark)
      .Bind(6, place.tables)
      .Run();
  held.Commit();
}

Replica::Replica(const std::string& path, int waitMs)
    : connection_(std::make_unique<Connection>(path, false, std::make_shared<LockWait>(waitMs))) {
  Statement row = connection_->Prepare("SELECT machine FROM zemo_replica");
  if (!row.Step()) throw StoreError(kErrBadDatabase, path + " is no replica of a base");
  machine_ = row.Text(0);
}

Replica::~Replica() = default;

FeedPlace Replica::Place() {
  Statement row = connection_->Prepare("SELECT base, place, placeMark, tables FROM zemo_replica");
  if (!row.Step()) throw StoreError(kErrBadDatabase, connection_->Path() + " is no replica");
  return {row.Text(0), row.Int(1), row.Text(2), row.Text(3)};
}

void Replica::SetOnlyReads(bool onlyReads) {
  if (Number(*connection_, "SELECT onlyReads FROM zemo_replica") == (onlyReads ? 1 : 0)) return;
  connection_->Prepare("UPDATE zemo_replica SET onlyReads = ?1").Bind(1, int64_t{onlyReads}).Run();
}

void Replica::TakeOver(Replica& former) {
  Connection& old = *former.connection_;
  Held held(*connection_);
  connection_->ExecuteNow("DELETE FROM sqlite_sequence WHERE name = 'zemo_queue'");
  connection_->Prepare("INSERT INTO sqlite_sequence (name, seq) VALUES ('zemo_queue', ?1)")
      .Bind(1, Number(old, "SELECT max(seq) FROM sqlite_sequence WHERE name = 'zemo_queue'"))
      .Run();
  held.Commit();
}

bool Replica::OnlyReads() {
  return Number(*connection_, "SELECT onlyReads FROM zemo_replica") != 0;
}

std::string Replica::SeenToBy() {
  Statement row = connection_->Prepare("SELECT program FROM zemo_replica");
  return row.Step() ? row.Text(0) : std::string();
}

void Replica::SetSeenToBy(const std::string& program) {
  connection_->Prepare("UPDATE zemo_replica SET program = ?1").Bind(1, program).Run();
}

void Replica::KeepAlone() {
  connection_->KeepAlone();
}

void Replica::LetOthersIn() {
  connection_->LetOthersIn();
}

int64_t Replica::Waiting() {
  return Number(*connection_, "SELECT COUNT(*) FROM zemo_queue");
}

std::optional<QueuedWrites> Replica::Queued(int64_t mostWrites) {
  connection_->BeginReading();
  std::optional<QueuedWrites> queued;
  try {
    const int64_t last = Number(
        *connection_, "SELECT max(place) FROM (SELECT place FROM zemo_queue ORDER BY place LIMIT " +
                          std::to_string(mostWrites) + ")");
    if (last != 0) queued = ChangesUpTo(*connection_, last);
  } catch (...) {
    connection_->Rollback();
    throw;
  }
  connection_->Rollback();
  return queued;
}

void Replica::Sent(int64_t last) {
  connection_->Prepare("DELETE FROM zemo_queue WHERE place <= ?1").Bind(1, last).Run();
}

RefusedRow Replica::FirstRow() {
  RefusedRow row;
  {
    Statement first =
        connection_->Prepare("SELECT tableName, number FROM zemo_queue ORDER BY place LIMIT 1");
    if (!first.Step()) return row;
    row.table = first.Text(0);
    row.number = first.Int(1);
  }
  row.values = RowInWords(*connection_, row.table, row.number);
  return row;
}

void Replica::Drop(const RefusedRow& row) {
  Held held(*connection_);
  connection_->Prepare("DELETE FROM zemo_queue WHERE tableName = ?1 AND number = ?2")
      .Bind(1, row.table)
      .Bind(2, row.number)
      .Run();
  connection_->ExecuteNow("UPDATE zemo_replica SET base = ''");
  held.Commit();
}

bool Replica::TakeIn(const std::vector<ServerRows>& changes, const FeedPlace& place) {
  Held held(*connection_);
  if (Waiting() != 0) return false;
  SetQuiet(*connection_, true);
  for (const ServerRows& table : changes) Put(table);
  connection_->Prepare("UPDATE zemo_replica SET base = ?1, place = ?2, placeMark = ?3, tables = ?4")
      .Bind(1, place.base)
      .Bind(2, place.place)
      .Bind(3, place.mark)
      .Bind(4, place.tables)
      .Run();
  SetQuiet(*connection_, false);
  held.Commit();
  return true;
}

// All that is not as the server has it goes, then what it has comes: two rows may have exchanged
// what only one of them can have.
void Replica::Put(const ServerRows& changes) {
  const auto def = connection_->FindTable(changes.table);
  if (!def) return;
  const TableOfRows table(*connection_, *def, changes.fields);
  std::set<int64_t> same;
  std::vector<const StoredRow*> others;
  for (const StoredRow& row : changes.rows)
    if (table.Is(row))
      same.insert(row.number);
    else
      others.push_back(&row);
  for (const int64_t number : changes.all ? AllNumbers(*connection_, *def) : changes.numbers)
    if (!same.contains(number)) table.Remove(number);
  for (const StoredRow* other : others) table.Insert(*other);
}

std::vector<std::string> Replica::Tables() {
  std::vector<std::string> names;
  for (const auto& table : connection_->AllTables()) names.push_back(table->Name);
  return names;
}

int64_t Replica::NumbersLeft(std::string_view table) {
  Statement left = connection_->Prepare(
      "SELECT coalesce(sum(last - next + 1), 0) FROM zemo_numbers WHERE tableName = ?1");
  left.Bind(1, std::string(table));
  return left.Step() ? left.Int(0) : 0;
}

void Replica::AddNumbers(std::string_view table, int64_t first, int64_t last) {
  Held held(*connection_);
  connection_->Prepare("DELETE FROM zemo_numbers WHERE next > last").Run();
  connection_->Prepare("INSERT INTO zemo_numbers VALUES (?1, ?2, ?3)")
      .Bind(1, std::string(table))
      .Bind(2, first)
      .Bind(3, last)
      .Run();
  held.Commit();
}

bool Replica::NumbersAreBehind(std::string_view table) {
  const std::string name(table);
  const int64_t newest = Number(*connection_, "SELECT max(rowid) FROM main." + QuotedName(name));
  Statement next = connection_->Prepare(
      "SELECT min(next) FROM zemo_numbers WHERE tableName = ?1 AND next <= last");
  next.Bind(1, name);
  return !next.Step() || next.Int(0) < newest;
}

void Replica::DropNumbers(std::string_view table) {
  connection_->Prepare("DELETE FROM zemo_numbers WHERE tableName = ?1")
      .Bind(1, std::string(table))
      .Run();
}

}  // namespace zemo
