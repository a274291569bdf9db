// SQL of a table's rows. A statement lives no longer than the call that steps it.
#include "store/SqliteTable.h"

#include <utility>

#include "store/Collation.h"
#include "store/Connection.h"
#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

std::string ReadSql(const Field& field) {
  return field.ReadAs.empty() ? QuotedName(field.Name) : field.ReadAs;
}

std::string StoredName(const TableDef& table) {
  return "main." + QuotedName(table.Name);
}

// To a place each, from the first on; returns how many.
int BindAll(const TableRows::Changes& changes, Statement& query) {
  int position = 0;
  for (const auto& change : changes)
    if (change) query.Bind(++position, *change);
  return position;
}

}  // namespace

SqliteTable::SqliteTable(std::shared_ptr<Connection> connection, std::string_view name)
    : connection_(std::move(connection)) {
  connection_->RefreshCatalogue();
  def_ = connection_->FindReadTable(name);
  if (!def_) throw StoreError(kErrNoSuchTable, "no table " + std::string(name));
  select_ = "SELECT rowid";
  for (const Field& field : def_->Fields) select_ += ", " + ReadSql(field);
  select_ += " FROM " + StoredName(*def_);
}

const SqliteTable::Moves& SqliteTable::By(Order order) const {
  for (const auto& moves : moves_)
    if (moves->key == order) return *moves;
  moves_.push_back(std::make_unique<const Moves>(MakeMoves(order)));
  return *moves_.back();
}

SqliteTable::Moves SqliteTable::MakeMoves(Order key) const {
  const std::string k = key ? ReadSql(def_->Fields[*key]) : "rowid";
  const std::string up = key ? " ORDER BY " + k + ", rowid LIMIT 1" : " ORDER BY rowid LIMIT 1";
  const std::string down =
      key ? " ORDER BY " + k + " DESC, rowid DESC LIMIT 1" : " ORDER BY rowid DESC LIMIT 1";
  Moves moves;
  moves.key = key;
  moves.first = select_ + up;
  moves.last = select_ + down;
  moves.seek = select_ + " WHERE " + k + " = ?1" + up;
  if (!key) {
    moves.nextHigher = select_ + " WHERE rowid > ?1" + up;
    moves.previousLower = select_ + " WHERE rowid < ?1" + down;
    return moves;
  }
  moves.seekAnyCase = select_ + " WHERE " + k + " = ?1 COLLATE " + kFrenchCase + up;
  moves.nextEqual = select_ + " WHERE " + k + " IS ?1 AND rowid > ?2" + up;
  moves.nextHigher = select_ + " WHERE " + k + " > ?1" + up;
  moves.nextNotNull = select_ + " WHERE " + k + " IS NOT NULL" + up;
  moves.previousEqual = select_ + " WHERE " + k + " IS ?1 AND rowid < ?2" + down;
  moves.previousLower = select_ + " WHERE " + k + " < ?1" + down;
  moves.previousNull = select_ + " WHERE " + k + " IS NULL" + down;
  return moves;
}

// Reads the first row of the query; false when it has none.
bool SqliteTable::Load(Statement& query, StoredRow& row) const {
  if (!query.Step()) return false;
  row.number = query.Int(0);
  for (size_t i = 0; i < row.values.size(); ++i) query.Read(static_cast<int>(i) + 1, row.values[i]);
  return true;
}

// `equal`: rows of this key beyond this row; `beyond`: rows of the keys beyond; `null`: where Null
// lies on the other side of the keys. Texts that do not apply are empty.
bool SqliteTable::LoadNeighbour(const Moves& moves, StoredRow& row, const std::string& equal,
                                const std::string& beyond, const std::string& null) const {
  if (!moves.key) {
    Statement query = connection_->Prepare(beyond);
    query.Bind(1, row.number);
    return Load(query, row);
  }
  const Value key = row.values[*moves.key];
  {
    Statement query = connection_->Prepare(equal);
    query.Bind(1, key).Bind(2, row.number);
    if (Load(query, row)) return true;
  }
  if (!IsNull(key)) {
    Statement query = connection_->Prepare(beyond);
    query.Bind(1, key);
    if (Load(query, row)) return true;
  }
  if (null.empty()) return false;
  Statement query = connection_->Prepare(null);
  return Load(query, row);
}

bool SqliteTable::First(Order order, StoredRow& row) const {
  Statement query = connection_->Prepare(By(order).first);
  return Load(query, row);
}

bool SqliteTable::Last(Order order, StoredRow& row) const {
  Statement query = connection_->Prepare(By(order).last);
  return Load(query, row);
}

bool SqliteTable::Behind(Order order, StoredRow& row) const {
  const Moves& moves = By(order);
  // Null keys come first: the way up from them leads to all others.
  const bool fromNull = order && IsNull(row.values[*order]);
  return LoadNeighbour(moves, row, moves.nextEqual, moves.nextHigher,
                       fromNull ? moves.nextNotNull : "");
}

bool SqliteTable::Ahead(Order order, StoredRow& row) const {
  const Moves& moves = By(order);
  const bool fromNull = order && IsNull(row.values[*order]);
  return LoadNeighbour(moves, row, moves.previousEqual, moves.previousLower,
                       fromNull ? "" : moves.previousNull);
}

bool SqliteTable::Find(Order order, const Value& key, StoredRow& row) const {
  {
    Statement query = connection_->Prepare(By(order).seek);
    query.Bind(1, key);
    if (Load(query, row)) return true;
  }
  // The index knows the case of ASCII letters only. What it does not find may still be there with
  // another case of an accented letter, which the index cannot serve.
  const auto* text = std::get_if<std::string>(&key);
  if (!order || !text || IsAscii(*text)) return false;
  Statement query = connection_->Prepare(By(order).seekAnyCase);
  query.Bind(1, key);
  return Load(query, row);
}

bool SqliteTable::Read(StoredRow& row) const {
  Statement query = connection_->Prepare(select_ + " WHERE rowid = ?1");
  query.Bind(1, row.number);
  return Load(query, row);
}

int64_t SqliteTable::Count() const {
  Statement query = connection_->Prepare("SELECT COUNT(*) FROM " + StoredName(*def_));
  return query.Step() ? query.Int(0) : 0;
}

// What the file gives no new row by itself, where its table has lost it.
void SqliteTable::AddWhatIsLost(Changes& changes) const {
  size_t lostKey = changes.size();
  for (size_t i = 0; i < changes.size(); ++i) {
    const Field& field = def_->Fields[i];
    if (field.DefaultLost && !changes[i]) changes[i] = field.DefaultValue;
    if (!def_->LostKey.empty() && SameName(field.Name, def_->LostKey)) lostKey = i;
  }
  if (lostKey == changes.size() || changes[lostKey]) return;
  Statement highest = connection_->Prepare("SELECT coalesce(MAX(" + QuotedName(def_->LostKey) +
                                           "), 0) + 1 FROM " + StoredName(*def_));
  if (highest.Step()) changes[lostKey] = highest.Int(0);
}

int64_t SqliteTable::Insert(Changes& changes) const {
  AddWhatIsLost(changes);
  std::string fields;
  std::string values;
  for (size_t i = 0; i < changes.size(); ++i) {
    if (!changes[i]) continue;
    fields += (fields.empty() ? "" : ", ") + QuotedName(def_->Fields[i].Name);
    values += values.empty() ? "?" : ", ?";
  }
  const std::string head = "INSERT INTO " + StoredName(*def_);
  {
    Statement query =
        connection_->Prepare(fields.empty() ? head + " DEFAULT VALUES"
                                            : head + " (" + fields + ") VALUES (" + values + ")");
    BindAll(changes, query);
    query.Run();
  }
  return connection_->LastInsertCode();
}

bool SqliteTable::Change(int64_t number, const Changes& changes) const {
  std::string assignments;
  for (size_t i = 0; i < changes.size(); ++i) {
    if (!changes[i]) continue;
    assignments += (assignments.empty() ? "" : ", ") + QuotedName(def_->Fields[i].Name) + " = ?";
  }
  {
    Statement query = connection_->Prepare("UPDATE " + StoredName(*def_) + " SET " + assignments +
                                           " WHERE rowid = ?");
    query.Bind(BindAll(changes, query) + 1, number);
    query.Run();
  }
  return connection_->RowsChanged() != 0;
}

void SqliteTable::Remove(int64_t number) const {
  Statement query = connection_->Prepare("DELETE FROM " + StoredName(*def_) + " WHERE rowid = ?1");
  query.Bind(1, number);
  query.Run();
}

}  // namespace zemo
