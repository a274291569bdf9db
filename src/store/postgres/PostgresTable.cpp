// SQL of a table's rows: each move asks for the neighbour of a place, by the index of its order.
#include "store/postgres/PostgresTable.h"

#include <utility>

#include "store/Names.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

std::optional<std::string> Text(const Value& value) {
  if (IsNull(value)) return std::nullopt;
  return AsText(value);
}

std::string Lower(const std::string& sql) {
  return "lower(" + sql + " COLLATE \"C\")";
}

bool IsPlainText(const Value& value) {
  return KindOf(value) != ValueKind::kWideText;
}

}  // namespace

PostgresTable::PostgresTable(std::shared_ptr<PostgresConnection> connection, std::string_view name)
    : connection_(std::move(connection)) {
  connection_->AllTables();
  def_ = connection_->FindReadTable(name);
  if (!def_) throw StoreError(kErrNoSuchTable, "no table " + std::string(name));
  name_ = QuotedName(def_->Name);
  number_ = QuotedName(NumberColumn(*def_));
  select_ = "SELECT " + number_;
  for (size_t i = 0; i < def_->Fields.size(); ++i) select_ += ", " + ColumnOf(i);
  select_ += " FROM " + name_;
}

bool PostgresTable::HoldsText(size_t field) const {
  return zemo::HoldsText(def_->Fields[field]);
}

std::string PostgresTable::ColumnOf(size_t field) const {
  const Field& of = def_->Fields[field];
  return of.ReadAs.empty() ? QuotedName(of.Name) : '(' + of.ReadAs + ')';
}

// What the index of this order is on.
std::string PostgresTable::KeyOf(Order order) const {
  const std::string column = ColumnOf(*order);
  return HoldsText(*order) ? Lower(column) : column;
}

std::string PostgresTable::ValueFor(size_t field, int place) const {
  const std::string at = '$' + std::to_string(place);
  switch (def_->Fields[field].Type) {
    case FieldType::kText:
    case FieldType::kMemo:
      return at + "::text";
    case FieldType::kFloat64:
      return at + "::float8";
    default:
      return at + "::bigint";
  }
}

bool PostgresTable::Load(const std::string& condition, const Parameters& parameters, Order order,
                         bool down, StoredRow& row) const {
  std::string sql = select_;
  if (!condition.empty()) sql += " WHERE " + condition;
  sql += " ORDER BY ";
  if (order) sql += KeyOf(order) + (down ? " DESC NULLS LAST, " : " ASC NULLS FIRST, ");
  sql += number_ + (down ? " DESC LIMIT 1" : " LIMIT 1");
  const PostgresResult rows = connection_->Run(sql, parameters, false);
  if (rows.Rows() == 0) return false;
  row.number = rows.Int(0, 0);
  for (size_t i = 0; i < row.values.size(); ++i)
    row.values[i] = rows.Read(0, static_cast<int>(i) + 1);
  return true;
}

bool PostgresTable::First(Order order, StoredRow& row) const {
  return Load("", {}, order, false, row);
}

bool PostgresTable::Last(Order order, StoredRow& row) const {
  return Load("", {}, order, true, row);
}

// Null is ahead of all keys.
bool PostgresTable::Neighbour(Order order, bool down, StoredRow& row) const {
  const std::string beyond = down ? " < " : " > ";
  const Parameters number = {std::to_string(row.number)};
  if (!order) return Load(number_ + beyond + "$1::bigint", number, order, down, row);
  const std::string key = KeyOf(order);
  const Value at = row.values[*order];
  if (IsNull(at)) {
    if (Load(key + " IS NULL AND " + number_ + beyond + "$1::bigint", number, order, down, row))
      return true;
    return !down && Load(key + " IS NOT NULL", {}, order, down, row);
  }
  std::string value = ValueFor(*order, 1);
  if (HoldsText(*order)) value = Lower(value);
  const Parameters place = {Text(at), number[0]};
  if (Load('(' + key + ", " + number_ + ')' + beyond + '(' + value + ", $2::bigint)", place, order,
           down, row))
    return true;
  return down && Load(key + " IS NULL", {}, order, down, row);
}

bool PostgresTable::Behind(Order order, StoredRow& row) const {
  return Neighbour(order, false, row);
}

bool PostgresTable::Ahead(Order order, StoredRow& row) const {
  return Neighbour(order, true, row);
}

bool PostgresTable::Find(Order order, const Value& key, StoredRow& row) const {
  if (IsNull(key)) return false;
  if (order && HoldsText(*order)) {
    if (Load(KeyOf(order) + " = " + Lower("$1::text"), {Text(key)}, order, false, row)) return true;
    if (IsPlainText(key)) return false;
    const std::string column = ColumnOf(*order);
    return Load("zemo.folded(" + column + ") = zemo.folded($1::text)", {Text(key)}, order, false,
                row);
  }
  if (!ReadsAsNumber(key)) return false;
  const std::string column = order ? KeyOf(order) : number_;
  const double real = AsReal(key);
  const int64_t whole = AsInt(key);
  if (static_cast<double>(whole) == real)
    return Load(column + " = $1::bigint", {std::to_string(whole)}, order, false, row);
  return Load(column + " = $1::float8", {AsText(real)}, order, false, row);
}

bool PostgresTable::Read(StoredRow& row) const {
  return Load(number_ + " = $1::bigint", {std::to_string(row.number)}, {}, false, row);
}

int64_t PostgresTable::Count() const {
  return connection_->Run("SELECT COUNT(*) FROM " + name_, {}, false).Int(0, 0);
}

int64_t PostgresTable::Insert(Changes& changes) const {
  std::string fields;
  std::string values;
  Parameters parameters;
  for (size_t i = 0; i < changes.size(); ++i) {
    const Field& field = def_->Fields[i];
    if (field.DefaultLost && !changes[i]) changes[i] = field.DefaultValue;
    if (!changes[i] || (field.AutoIncrement && IsNull(*changes[i]))) continue;
    parameters.push_back(Text(*changes[i]));
    fields += (fields.empty() ? "" : ", ") + QuotedName(def_->Fields[i].Name);
    values += (values.empty() ? "" : ", ") + ValueFor(i, static_cast<int>(parameters.size()));
  }
  const std::string head = "INSERT INTO " + name_;
  const PostgresResult rows =
      connection_->Run((fields.empty() ? head + " DEFAULT VALUES"
                                       : head + " (" + fields + ") VALUES (" + values + ")") +
                           " RETURNING " + number_,
                       parameters, true);
  const int64_t number = rows.Int(0, 0);
  connection_->Note(def_->Name, number);
  connection_->Inserted(number);
  return number;
}

bool PostgresTable::Change(int64_t number, const Changes& changes) const {
  std::string assignments;
  Parameters parameters;
  for (size_t i = 0; i < changes.size(); ++i) {
    if (!changes[i]) continue;
    parameters.push_back(Text(*changes[i]));
    assignments += (assignments.empty() ? "" : ", ") + QuotedName(def_->Fields[i].Name) + " = " +
                   ValueFor(i, static_cast<int>(parameters.size()));
  }
  parameters.emplace_back(std::to_string(number));
  const PostgresResult rows =
      connection_->Run("UPDATE " + name_ + " SET " + assignments + " WHERE " + number_ + " = $" +
                           std::to_string(parameters.size()) + "::bigint RETURNING " + number_,
                       parameters, true);
  if (rows.Rows() == 0) return false;
  connection_->Note(def_->Name, number);
  connection_->Note(def_->Name, rows.Int(0, 0));
  return true;
}

void PostgresTable::Remove(int64_t number) const {
  connection_->Run("DELETE FROM " + name_ + " WHERE " + number_ + " = $1::bigint",
                   {std::to_string(number)}, true);
  connection_->Note(def_->Name, number);
}

}  // namespace zemo
