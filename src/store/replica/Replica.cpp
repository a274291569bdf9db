#include "store/replica/Replica.h"

#include <set>
#include <utility>

#include "store/CarryOver.h"
#include "store/Connection.h"
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

std::vector<std::string> ClosedTablesOf(Connection& connection) {
  std::vector<std::string> tables;
  Statement closed = connection.Prepare("SELECT tableName FROM zemo_closed ORDER BY rowid");
  while (closed.Step()) tables.push_back(closed.Text(0));
  return tables;
}

// That the queue has given.
int64_t LastPlace(Connection& connection) {
  return Number(connection, "SELECT max(seq) FROM sqlite_sequence WHERE name = 'zemo_queue'");
}

void SetLastNumberOf(Connection& connection, const std::string& table, int64_t number) {
  connection.Prepare("DELETE FROM sqlite_sequence WHERE name = ?1").Bind(1, table).Run();
  connection.Prepare("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)")
      .Bind(1, table)
      .Bind(2, number)
      .Run();
}

void SetLastPlace(Connection& connection, int64_t place) {
  SetLastNumberOf(connection, "zemo_queue", place);
}

// Numbers that this table's rows have had: by the file, and of the machine's own those that it
// gave.
int64_t LastNumberOf(Connection& connection, const std::string& table) {
  Statement last = connection.Prepare(
      "SELECT max(number) FROM (SELECT max(seq) AS number FROM sqlite_sequence WHERE name = ?1 "
      "UNION ALL SELECT max(next) - 1 FROM zemo_numbers WHERE tableName = ?1 UNION ALL "
      "SELECT max(rowid) FROM main." +
      QuotedName(table) + ")");
  last.Bind(1, table);
  return last.Step() ? last.Int(0) : 0;
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
    renumber_ = "UPDATE " + name + " SET rowid = ?2 WHERE rowid = ?1";
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
  void Renumber(int64_t from, int64_t to) const {
    connection_.Prepare(renumber_).Bind(1, from).Bind(2, to).Run();
  }
  void Insert(const StoredRow& row) const {
    Statement insert = connection_.Prepare(insert_);
    insert.Bind(1, row.number);
    for (size_t i = 0; i < count_; ++i) insert.Bind(static_cast<int>(i) + 2, row.values[i]);
    insert.Run();
  }

 private:
  Connection& connection_;
  const size_t count_;
  std::string select_, insert_, remove_, renumber_;
};

}  // namespace

bool Replica::IsThere(const std::string& path) {
  if (!Connection::FileExists(path)) return false;
  try {
    Connection connection(path, false, std::make_shared<LockWait>(kBusyTimeoutMs));
    const int64_t form = Number(connection, "SELECT form FROM zemo_replica");
    return form >= kOldestReplicaForm && form <= kReplicaForm;
  } catch (const StoreError& error) {
    return error.Number() != kErrBadDatabase && error.Number() != kErrNoSuchTable;
  }
}

void Replica::Make(Database& server, const FeedPlace& place, const std::string& machine,
                   const std::string& path) {
  ReadOverToFile(server, path);
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

void Replica::MakePlain(const std::string& path) {
  Connection connection(path, false, std::make_shared<LockWait>(kBusyTimeoutMs));
  Held held(connection);
  for (const TableDef& table : TablesOf(connection))
    if (table.AutoField())
      SetLastNumberOf(connection, table.Name, LastNumberOf(connection, table.Name));
  connection.ExecuteNow(PlainFileSql(TablesOf(connection)).c_str());
  held.Commit();
}

Replica::Replica(const std::string& path, int waitMs)
    : connection_(std::make_unique<Connection>(path, false, std::make_shared<LockWait>(waitMs))) {
  int64_t form = 0;
  {
    Statement row = connection_->Prepare("SELECT machine, form FROM zemo_replica");
    if (!row.Step()) throw StoreError(kErrBadDatabase, path + " is no replica of a base");
    machine_ = row.Text(0);
    form = row.Int(1);
  }
  if (form != kReplicaForm) Renew();
}

void Replica::Renew() {
  Held held(*connection_);
  connection_->ExecuteNow(RenewedReplicaSql(TablesOf(*connection_)).c_str());
  connection_->StructureChanged();
  held.Commit();
}

Replica::~Replica() = default;

FeedPlace Replica::Place() {
  Statement row = connection_->Prepare("SELECT base, place, placeMark, tables FROM zemo_replica");
  if (!row.Step()) throw StoreError(kErrBadDatabase, connection_->Path() + " is no replica");
  return {row.Text(0), row.Int(1), row.Text(2), row.Text(3)};
}

void Replica::SetWriting(Writing writing, const std::vector<std::string>& closedTables) {
  const auto state = static_cast<int64_t>(writing);
  if (Number(*connection_, "SELECT onlyReads FROM zemo_replica") == state &&
      ClosedTablesOf(*connection_) == closedTables)
    return;
  Held held(*connection_);
  if (OnlyReads() && writing == Writing::kAllowed && Waiting() > 0) DropPlace();
  connection_->Prepare("UPDATE zemo_replica SET onlyReads = ?1").Bind(1, state).Run();
  connection_->ExecuteNow("DELETE FROM zemo_closed");
  for (const std::string& table : closedTables)
    connection_->Prepare("INSERT INTO zemo_closed VALUES (?1)").Bind(1, table).Run();
  held.Commit();
}

void Replica::TakeOver(Replica& former) {
  Connection& old = *former.connection_;
  Held held(*connection_);
  SetLastPlace(*connection_, LastPlace(old));
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
  const int64_t last = Number(
      *connection_, "SELECT max(place) FROM (SELECT place FROM zemo_queue ORDER BY place LIMIT " +
                        std::to_string(mostWrites) + ")");
  if (last == 0) return std::nullopt;
  return ChangesUpTo(*connection_, last);
}

void Replica::Sent(int64_t last) {
  connection_->Prepare("DELETE FROM zemo_queue WHERE place <= ?1").Bind(1, last).Run();
}

bool Replica::HasHad(int64_t place) {
  return place <= LastPlace(*connection_);
}

void Replica::GoOnBehind(int64_t place) {
  Held held(*connection_);
  // All of them are below the first that any gets.
  connection_->Prepare("UPDATE zemo_queue SET place = place + ?1").Bind(1, place).Run();
  SetLastPlace(*connection_, place + LastPlace(*connection_));
  held.Commit();
}

std::vector<std::pair<std::string, std::vector<int64_t>>> Replica::NewRows() {
  std::vector<std::pair<std::string, std::vector<int64_t>>> tables;
  Statement rows = connection_->Prepare(
      "SELECT tableName, number, act, min(place) FROM zemo_queue GROUP BY tableName, number "
      "ORDER BY tableName, number");
  while (rows.Step()) {
    if (rows.Text(2) != "I") continue;
    if (tables.empty() || tables.back().first != rows.Text(0))
      tables.emplace_back(rows.Text(0), std::vector<int64_t>());
    tables.back().second.push_back(rows.Int(1));
  }
  return tables;
}

void Replica::GiveOtherNumbers(const ServerRows& there, int64_t first) {
  const auto def = connection_->FindTable(there.table);
  if (!def) return;
  const TableOfRows table(*connection_, *def, there.fields);
  Held held(*connection_);
  SetQuiet(*connection_, true);
  for (const StoredRow& row : there.rows) {
    if (table.Is(row)) {
      connection_
          ->Prepare("DELETE FROM zemo_queue WHERE tableName = ?1 AND number = ?2 AND act = 'I'")
          .Bind(1, there.table)
          .Bind(2, row.number)
          .Run();
      continue;
    }
    table.Renumber(row.number, first);
    connection_->Prepare("UPDATE zemo_queue SET number = ?3 WHERE tableName = ?1 AND number = ?2")
        .Bind(1, there.table)
        .Bind(2, row.number)
        .Bind(3, first++)
        .Run();
  }
  SetQuiet(*connection_, false);
  held.Commit();
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
  DropPlace();
  held.Commit();
}

// Of no base: it is made anew once its queue is sent.
void Replica::DropPlace() {
  connection_->ExecuteNow("UPDATE zemo_replica SET base = ''");
}

bool Replica::TakeIn(const std::vector<ServerRows>& changes, const FeedPlace& place) {
  Held held(*connection_);
  if (Waiting() != 0) return false;
  SetQuiet(*connection_, true);
  for (const ServerRows& table : changes) Put(table, {});
  SetPlace(place);
  SetQuiet(*connection_, false);
  held.Commit();
  return true;
}

void Replica::TakeInBesideQueue(const std::vector<ServerRows>& changes, const FeedPlace& place) {
  Held held(*connection_);
  SetQuiet(*connection_, true);
  for (const ServerRows& table : changes) {
    std::set<int64_t> waiting;
    {
      Statement rows =
          connection_->Prepare("SELECT DISTINCT number FROM zemo_queue WHERE tableName = ?1");
      rows.Bind(1, table.table);
      while (rows.Step()) waiting.insert(rows.Int(0));
    }
    Put(table, waiting);
  }
  SetPlace(place);
  SetQuiet(*connection_, false);
  held.Commit();
}

void Replica::SetPlace(const FeedPlace& place) {
  connection_->Prepare("UPDATE zemo_replica SET base = ?1, place = ?2, placeMark = ?3, tables = ?4")
      .Bind(1, place.base)
      .Bind(2, place.place)
      .Bind(3, place.mark)
      .Bind(4, place.tables)
      .Run();
}

// All that is not as the server has it goes, then what it has comes: two rows may have exchanged
// what only one of them can have.
void Replica::Put(const ServerRows& changes, const std::set<int64_t>& untouched) {
  const auto def = connection_->FindTable(changes.table);
  if (!def) return;
  const TableOfRows table(*connection_, *def, changes.fields);
  std::set<int64_t> same = untouched;
  std::vector<const StoredRow*> others;
  for (const StoredRow& row : changes.rows)
    if (untouched.contains(row.number) || table.Is(row))
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
