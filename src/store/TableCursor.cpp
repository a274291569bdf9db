// SQL of a table; moves, seeks and edits of its cursors.
#include "store/TableCursor.h"

#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "store/Collation.h"
#include "store/Connection.h"
#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

bool IsAscii(const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  return !text || std::all_of(text->begin(), text->end(),
                              [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

[[noreturn]] void Refuse(const TableDef& table, const Field& field, const std::string& text) {
  throw StoreError(kErrValueRefused,
                   table.Name + '.' + field.Name + " holds a number, not \"" + text + '"');
}

std::string ReadSql(const Field& field) {
  return field.ReadAs.empty() ? QuotedName(field.Name) : field.ReadAs;
}

std::string StoredName(const TableDef& table) {
  return "main." + QuotedName(table.Name);
}

// The value in the type of its field, as far as it can be read as one; widths and ranges are the
// schema's own rules.
Value InFieldType(const TableDef& table, const Field& field, const Value& value) {
  if (IsNull(value)) return value;
  if (field.Type == FieldType::kText || field.Type == FieldType::kMemo) return AsText(value);
  if (const auto* text = std::get_if<std::string>(&value)) {
    if (!ReadsAsNumber(value)) Refuse(table, field, *text);
  }
  switch (field.Type) {
    case FieldType::kFloat64:
      return AsReal(value);
    case FieldType::kBool:
      return int64_t{AsBool(value) ? -1 : 0};
    default:
      return AsInt(value);
  }
}

}  // namespace

// --- SqliteTable ---

SqliteTable::SqliteTable(std::shared_ptr<Connection> connection, std::string_view name)
    : connection_(std::move(connection)) {
  connection_->RefreshCatalogue();
  def_ = connection_->FindReadTable(name);
  if (!def_) throw StoreError(kErrNoSuchTable, "no table " + std::string(name));
  select_ = "SELECT rowid";
  for (const Field& field : def_->Fields) select_ += ", " + ReadSql(field);
  select_ += " FROM " + StoredName(*def_);
}

std::unique_ptr<Recordset> SqliteTable::Cursor() const {
  return std::make_unique<TableCursor>(shared_from_this());
}

std::shared_ptr<const TableOrder> SqliteTable::OrderBy(std::optional<size_t> field) const {
  if (field && def_->Fields[*field].AutoIncrement) field.reset();
  for (const auto& order : orders_)
    if (order->key == field) return order;
  orders_.push_back(std::make_shared<const TableOrder>(MakeOrder(field)));
  return orders_.back();
}

TableOrder SqliteTable::MakeOrder(std::optional<size_t> key) const {
  const std::string k = key ? ReadSql(def_->Fields[*key]) : "rowid";
  const std::string up = key ? " ORDER BY " + k + ", rowid LIMIT 1" : " ORDER BY rowid LIMIT 1";
  const std::string down =
      key ? " ORDER BY " + k + " DESC, rowid DESC LIMIT 1" : " ORDER BY rowid DESC LIMIT 1";
  TableOrder order;
  order.key = key;
  order.first = select_ + up;
  order.last = select_ + down;
  order.seek = select_ + " WHERE " + k + " = ?1" + up;
  if (!key) {
    order.nextHigher = select_ + " WHERE rowid > ?1" + up;
    order.previousLower = select_ + " WHERE rowid < ?1" + down;
    return order;
  }
  order.seekAnyCase = select_ + " WHERE " + k + " = ?1 COLLATE " + kFrenchCase + up;
  order.nextEqual = select_ + " WHERE " + k + " IS ?1 AND rowid > ?2" + up;
  order.nextHigher = select_ + " WHERE " + k + " > ?1" + up;
  order.nextNotNull = select_ + " WHERE " + k + " IS NOT NULL" + up;
  order.previousEqual = select_ + " WHERE " + k + " IS ?1 AND rowid < ?2" + down;
  order.previousLower = select_ + " WHERE " + k + " < ?1" + down;
  order.previousNull = select_ + " WHERE " + k + " IS NULL" + down;
  return order;
}

// --- TableCursor ---

TableCursor::TableCursor(std::shared_ptr<const SqliteTable> table)
    : table_(std::move(table)),
      connection_(table_->ItsConnection()),
      order_(table_->OrderBy({})),
      row_(Def().Fields.size()) {}

Connection& TableCursor::Open() const {
  if (!connection_) throw StoreError(kErrClosed, "table " + Def().Name + " is not open");
  return *connection_;
}

void TableCursor::Close() {
  connection_.reset();
  place_ = Place::kEmpty;
  pending_ = Pending::kNothing;
}

// --- Order ---

void TableCursor::SetIndex(std::string_view name) {
  Open();
  pending_ = Pending::kNothing;
  place_ = Place::kUnsettled;
  if (SameName(name, index_)) return;
  // The key serves by its name in every table that has one.
  const bool byKey = name.empty() || (Def().AutoField() && SameName(name, Def().AutoField()->Name));
  if (const Index* index = Def().FindIndex(name)) {
    order_ = table_->OrderBy(FieldAt(index->Field));
  } else if (byKey) {
    order_ = table_->OrderBy({});
  } else if (!Def().LostKey.empty() && SameName(name, Def().LostKey)) {
    order_ = table_->OrderBy(FieldAt(name));
  } else {
    throw StoreError(kErrNoSuchIndex, "no index " + Def().Name + '.' + std::string(name));
  }
  index_ = name;
}

// --- Moves ---

// Makes the first row of the query current; false when it has none.
bool TableCursor::Load(Statement& query) const {
  if (!query.Step()) return false;
  rowNumber_ = query.Int(0);
  for (size_t i = 0; i < row_.size(); ++i) query.Read(static_cast<int>(i) + 1, row_[i]);
  place_ = Place::kRow;
  return true;
}

void TableCursor::Settle() const {
  if (place_ != Place::kUnsettled) return;
  Statement query = Open().Prepare(order_->first);
  if (!Load(query)) place_ = Place::kEmpty;
}

void TableCursor::MoveFirst() {
  Open();
  pending_ = Pending::kNothing;
  place_ = Place::kUnsettled;
  Settle();
}

void TableCursor::MoveLast() {
  pending_ = Pending::kNothing;
  Statement query = Open().Prepare(order_->last);
  if (!Load(query)) place_ = Place::kEmpty;
}

// `equal`: rows of this key beyond this row; `beyond`: rows of the keys beyond; `null`: where Null
// lies on the other side of the keys. Texts that do not apply are empty.
bool TableCursor::LoadNeighbour(const std::string& equal, const std::string& beyond,
                                const std::string& null) {
  Connection& connection = Open();
  if (!order_->key) {
    Statement query = connection.Prepare(beyond);
    query.Bind(1, rowNumber_);
    return Load(query);
  }
  const Value key = Key();
  {
    Statement query = connection.Prepare(equal);
    query.Bind(1, key).Bind(2, rowNumber_);
    if (Load(query)) return true;
  }
  if (!IsNull(key)) {
    Statement query = connection.Prepare(beyond);
    query.Bind(1, key);
    if (Load(query)) return true;
  }
  if (null.empty()) return false;
  Statement query = connection.Prepare(null);
  return Load(query);
}

void TableCursor::MoveNext() {
  Open();
  pending_ = Pending::kNothing;
  Settle();
  if (place_ == Place::kBeforeFirst) {
    MoveFirst();
  } else if (place_ == Place::kRow || place_ == Place::kDeleted) {
    // Null keys come first: the way up from them leads to all others.
    const bool fromNull = order_->key && IsNull(Key());
    if (!LoadNeighbour(order_->nextEqual, order_->nextHigher,
                       fromNull ? order_->nextNotNull : "")) {
      place_ = Place::kBehindLast;
    }
  } else {
    throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + ": no row to go on from");
  }
}

void TableCursor::MovePrevious() {
  Open();
  pending_ = Pending::kNothing;
  Settle();
  if (place_ == Place::kBehindLast) {
    MoveLast();
  } else if (place_ == Place::kRow || place_ == Place::kDeleted) {
    const bool fromNull = order_->key && IsNull(Key());
    if (!LoadNeighbour(order_->previousEqual, order_->previousLower,
                       fromNull ? "" : order_->previousNull)) {
      place_ = Place::kBeforeFirst;
    }
  } else {
    throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + ": no row to go back from");
  }
}

bool TableCursor::Eof() const {
  Settle();
  return place_ == Place::kBehindLast || place_ == Place::kEmpty || place_ == Place::kNoMatch;
}

bool TableCursor::Bof() const {
  Settle();
  return place_ == Place::kBeforeFirst || place_ == Place::kEmpty || place_ == Place::kNoMatch;
}

int32_t TableCursor::RecordCount() {
  Statement query = Open().Prepare("SELECT COUNT(*) FROM " + StoredName(Def()));
  return query.Step() ? static_cast<int32_t>(query.Int(0)) : 0;
}

void TableCursor::Seek(std::string_view op, const Value& key) {
  Connection& connection = Open();
  if (op != "=") throw StoreError(kErrSyntax, "a seek knows \"=\" only, not " + std::string(op));
  if (index_.empty())
    throw StoreError(kErrNoSuchIndex, "table " + Def().Name + " has no current index");
  pending_ = Pending::kNothing;
  {
    Statement query = connection.Prepare(order_->seek);
    query.Bind(1, key);
    if (Load(query)) return;
  }
  // The index knows the case of ASCII letters only. What it does not find may still be there with
  // another case of an accented letter, which the index cannot serve.
  if (order_->key && !IsAscii(key)) {
    Statement query = connection.Prepare(order_->seekAnyCase);
    query.Bind(1, key);
    if (Load(query)) return;
  }
  place_ = Place::kNoMatch;
}

// --- Fields ---

size_t TableCursor::FieldAt(std::string_view name) const {
  for (size_t i = 0; i < Def().Fields.size(); ++i) {
    if (SameName(Def().Fields[i].Name, name)) return i;
  }
  throw StoreError(kErrNoSuchField, "no field " + Def().Name + '.' + std::string(name));
}

const std::string& TableCursor::FieldName(int ordinal) const {
  if (ordinal < 0 || ordinal >= FieldCount()) {
    throw StoreError(kErrNoSuchField,
                     "table " + Def().Name + " has no field number " + std::to_string(ordinal));
  }
  return Def().Fields[static_cast<size_t>(ordinal)].Name;
}

Value TableCursor::Field(std::string_view name) const {
  return Current(FieldAt(name));
}

Value TableCursor::Field(int ordinal) const {
  FieldName(ordinal);  // throws when there is no such field
  return Current(static_cast<size_t>(ordinal));
}

Value TableCursor::Current(size_t field) const {
  if (pending_ != Pending::kNothing && changes_[field]) return *changes_[field];
  if (pending_ == Pending::kAdd) return Def().Fields[field].DefaultValue;
  Settle();
  if (place_ != Place::kRow) {
    throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + " has no current row");
  }
  return row_[field];
}

// --- Changes ---

void TableCursor::AddNew() {
  Open();
  changes_.assign(Def().Fields.size(), std::nullopt);
  pending_ = Pending::kAdd;
}

void TableCursor::Edit() {
  Open();
  Settle();
  if (place_ != Place::kRow) {
    throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + " has no row to edit");
  }
  pending_ = Pending::kNothing;
  Reload();
  changes_.assign(Def().Fields.size(), std::nullopt);
  pending_ = Pending::kEdit;
}

void TableCursor::Set(std::string_view name, const Value& value) {
  Open();
  const size_t at = FieldAt(name);
  if (pending_ == Pending::kNothing) {
    throw StoreError(kErrNoEdit, "table " + Def().Name + " is not being edited");
  }
  const zemo::Field& field = Def().Fields[at];
  // A setting that cannot be stored is told to whoever sets it.
  if (field.Missing && SameName(Def().Name, "Cnf"))
    throw StoreError(kErrNoSuchField, "no field " + Def().Name + '.' + field.Name);
  if (!field.Missing) changes_[at] = InFieldType(Def(), field, value);
}

void TableCursor::Update() {
  Open();
  switch (pending_) {
    case Pending::kNothing:
      throw StoreError(kErrNoEdit, "table " + Def().Name + " is not being edited");
    case Pending::kAdd:
      InsertPending();
      break;
    case Pending::kEdit:
      UpdatePending();
      break;
  }
  pending_ = Pending::kNothing;
}

// What the file gives no new row by itself, where its table has lost it.
void TableCursor::AddWhatIsLost() {
  for (size_t i = 0; i < changes_.size(); ++i) {
    const zemo::Field& field = Def().Fields[i];
    if (field.DefaultLost && !changes_[i]) changes_[i] = field.DefaultValue;
  }
  if (Def().LostKey.empty() || changes_[FieldAt(Def().LostKey)]) return;
  Statement highest = Open().Prepare("SELECT coalesce(MAX(" + QuotedName(Def().LostKey) +
                                     "), 0) + 1 FROM " + StoredName(Def()));
  if (highest.Step()) changes_[FieldAt(Def().LostKey)] = highest.Int(0);
}

void TableCursor::InsertPending() {
  AddWhatIsLost();
  std::string fields;
  std::string values;
  for (size_t i = 0; i < changes_.size(); ++i) {
    if (!changes_[i]) continue;
    fields += (fields.empty() ? "" : ", ") + QuotedName(Def().Fields[i].Name);
    values += values.empty() ? "?" : ", ?";
  }
  const std::string head = "INSERT INTO " + StoredName(Def());
  {
    Statement query =
        Open().Prepare(fields.empty() ? head + " DEFAULT VALUES"
                                      : head + " (" + fields + ") VALUES (" + values + ")");
    int position = 0;
    for (const auto& change : changes_) {
      if (change) query.Bind(++position, *change);
    }
    query.Run();
  }
  rowNumber_ = Open().LastInsertCode();
  for (size_t i = 0; i < row_.size(); ++i) {
    const zemo::Field& field = Def().Fields[i];
    row_[i] = changes_[i] ? *changes_[i] : field.DefaultValue;
    if (field.AutoIncrement) row_[i] = rowNumber_;
  }
  place_ = Place::kRow;
}

void TableCursor::UpdatePending() {
  std::string assignments;
  int64_t number = rowNumber_;
  int count = 0;
  for (size_t i = 0; i < changes_.size(); ++i) {
    if (!changes_[i]) continue;
    assignments += (count++ == 0 ? "" : ", ") + QuotedName(Def().Fields[i].Name) + " = ?";
    if (Def().Fields[i].AutoIncrement) number = AsInt(*changes_[i]);
  }
  if (count == 0) return;
  {
    Statement query =
        Open().Prepare("UPDATE " + StoredName(Def()) + " SET " + assignments + " WHERE rowid = ?");
    int position = 0;
    for (const auto& change : changes_) {
      if (change) query.Bind(++position, *change);
    }
    query.Bind(count + 1, rowNumber_);
    query.Run();
  }
  if (Open().RowsChanged() == 0) {
    place_ = Place::kDeleted;
    throw StoreError(kErrNoCurrentRecord,
                     "table " + Def().Name + ": the row was deleted meanwhile");
  }
  rowNumber_ = number;
  for (size_t i = 0; i < row_.size(); ++i) {
    if (changes_[i]) row_[i] = *changes_[i];
  }
}

// Reads the current row again, as others may have left it.
void TableCursor::Reload() {
  Statement query = Open().Prepare(table_->Select() + " WHERE rowid = ?1");
  query.Bind(1, rowNumber_);
  if (Load(query)) return;
  place_ = Place::kDeleted;
  throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + ": the row was deleted meanwhile");
}

void TableCursor::Delete() {
  Open();
  pending_ = Pending::kNothing;
  Settle();
  if (place_ != Place::kRow) {
    throw StoreError(kErrNoCurrentRecord, "table " + Def().Name + " has no row to delete");
  }
  Statement query = Open().Prepare("DELETE FROM " + StoredName(Def()) + " WHERE rowid = ?1");
  query.Bind(1, rowNumber_);
  query.Run();
  place_ = Place::kDeleted;
}

}  // namespace zemo
