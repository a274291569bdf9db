// Moves, seeks and edits of a table's cursors.
#include "store/TableCursor.h"

#include <utility>

#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

[[noreturn]] void Refuse(const TableDef& table, const Field& field, const std::string& text) {
  throw StoreError(kErrValueRefused,
                   table.Name + '.' + field.Name + " holds a number, not \"" + text + '"');
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

std::unique_ptr<Recordset> TableRows::Cursor() const {
  return std::make_unique<TableCursor>(shared_from_this());
}

TableCursor::TableCursor(std::shared_ptr<const TableRows> table) : table_(std::move(table)) {
  row_.values.resize(Def().Fields.size());
}

const TableRows& TableCursor::Open() const {
  if (closed_) throw StoreError(kErrClosed, "table " + Def().Name + " is not open");
  return *table_;
}

void TableCursor::Close() {
  closed_ = true;
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
    order_ = FieldAt(index->Field);
  } else if (byKey) {
    order_.reset();
  } else if (!Def().LostKey.empty() && SameName(name, Def().LostKey)) {
    order_ = FieldAt(name);
  } else {
    throw StoreError(kErrNoSuchIndex, "no index " + Def().Name + '.' + std::string(name));
  }
  if (order_ && Def().Fields[*order_].AutoIncrement) order_.reset();
  index_ = name;
}

// --- Moves ---

void TableCursor::Settle() const {
  if (place_ != Place::kUnsettled) return;
  place_ = Open().First(order_, row_) ? Place::kRow : Place::kEmpty;
}

void TableCursor::MoveFirst() {
  Open();
  pending_ = Pending::kNothing;
  place_ = Place::kUnsettled;
  Settle();
}

void TableCursor::MoveLast() {
  pending_ = Pending::kNothing;
  place_ = Open().Last(order_, row_) ? Place::kRow : Place::kEmpty;
}

void TableCursor::MoveNext() {
  Open();
  pending_ = Pending::kNothing;
  Settle();
  if (place_ == Place::kBeforeFirst) {
    MoveFirst();
  } else if (place_ == Place::kRow || place_ == Place::kDeleted) {
    place_ = Open().Behind(order_, row_) ? Place::kRow : Place::kBehindLast;
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
    place_ = Open().Ahead(order_, row_) ? Place::kRow : Place::kBeforeFirst;
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
  return static_cast<int32_t>(Open().Count());
}

void TableCursor::Seek(std::string_view op, const Value& key) {
  const TableRows& table = Open();
  if (op != "=") throw StoreError(kErrSyntax, "a seek knows \"=\" only, not " + std::string(op));
  if (index_.empty())
    throw StoreError(kErrNoSuchIndex, "table " + Def().Name + " has no current index");
  pending_ = Pending::kNothing;
  place_ = table.Find(order_, key, row_) ? Place::kRow : Place::kNoMatch;
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
  return row_.values[field];
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

void TableCursor::InsertPending() {
  row_.number = Open().Insert(changes_);
  for (size_t i = 0; i < row_.values.size(); ++i) {
    const zemo::Field& field = Def().Fields[i];
    row_.values[i] = changes_[i] ? *changes_[i] : field.DefaultValue;
    if (field.AutoIncrement) row_.values[i] = row_.number;
  }
  place_ = Place::kRow;
}

void TableCursor::UpdatePending() {
  int64_t number = row_.number;
  bool any = false;
  for (size_t i = 0; i < changes_.size(); ++i) {
    if (!changes_[i]) continue;
    any = true;
    if (Def().Fields[i].AutoIncrement) number = AsInt(*changes_[i]);
  }
  if (!any) return;
  if (!Open().Change(row_.number, changes_)) LoseRow();
  row_.number = number;
  for (size_t i = 0; i < changes_.size(); ++i) {
    if (changes_[i]) row_.values[i] = *changes_[i];
  }
}

// Reads the current row again, as others may have left it.
void TableCursor::Reload() {
  if (!Open().Read(row_)) LoseRow();
}

void TableCursor::LoseRow() {
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
  Open().Remove(row_.number);
  place_ = Place::kDeleted;
}

}  // namespace zemo
