// The catalogue's operations.
#include "store/TableDefs.h"

#include "store/Connection.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

template <typename Items>
auto FindByName(const Items& items, std::string_view name) -> decltype(items.data()) {
  for (const auto& item : items) {
    if (SameName(item.Name, name)) return &item;
  }
  return nullptr;
}

// The auto-increment key is an index by itself; SQLite needs no second one.
bool ServedByKey(const TableDef& table, const Index& index) {
  const Field* key = table.AutoField();
  return index.Unique && key && SameName(key->Name, index.Field);
}

}  // namespace

const Field* TableDef::FindField(std::string_view name) const {
  return FindByName(Fields, name);
}

const Index* TableDef::FindIndex(std::string_view name) const {
  return FindByName(Indexes, name);
}

const Field* TableDef::AutoField() const {
  for (const zemo::Field& field : Fields) {
    if (field.AutoIncrement) return &field;
  }
  return nullptr;
}

int TableDefs::Count() {
  return static_cast<int>(connection_.AllTables().size());
}

TableDef TableDefs::Item(int position) {
  const auto& tables = connection_.AllTables();
  if (position < 0 || position >= static_cast<int>(tables.size())) {
    throw StoreError(kErrNoSuchTable, "no table at position " + std::to_string(position));
  }
  return *tables[static_cast<size_t>(position)];
}

TableDef TableDefs::Item(std::string_view name) {
  return Existing(name);
}

bool TableDefs::Has(std::string_view name) {
  connection_.RefreshCatalogue();
  return connection_.FindTable(name) != nullptr;
}

bool TableDefs::ChangedSinceStandIns() {
  return connection_.StandInsAreOld();
}

TableDef TableDefs::Existing(std::string_view name) {
  connection_.RefreshCatalogue();
  const auto table = connection_.FindTable(name);
  if (!table) throw StoreError(kErrNoSuchTable, "no table " + std::string(name));
  return *table;
}

void TableDefs::Append(const TableDef& table) {
  if (Has(table.Name)) throw StoreError(kErrTableExists, "table " + table.Name + " exists already");
  Change(CreateTableSql(table));
}

void TableDefs::Delete(std::string_view table) {
  Change("DROP TABLE " + QuotedName(Existing(table).Name));
}

void TableDefs::Rename(std::string_view table, std::string_view newName) {
  const TableDef def = Existing(table);
  if (!SameName(table, newName) && Has(newName)) {
    throw StoreError(kErrTableExists, "table " + std::string(newName) + " exists already");
  }
  // The stored name of an index holds its table's name, which must be free for a new table: the
  // indexes are made anew under the new one.
  for (const Index& index : def.Indexes) DeleteIndex(def.Name, index.Name);
  Change("ALTER TABLE " + QuotedName(def.Name) + " RENAME TO " + QuotedName(newName));
  for (const Index& index : def.Indexes) {
    if (!ServedByKey(def, index)) Change(CreateIndexSql(newName, index));
  }
}

void TableDefs::AppendField(std::string_view table, const Field& field) {
  const TableDef def = Existing(table);
  if (def.FindField(field.Name)) {
    throw StoreError(kErrFieldExists, "field " + def.Name + '.' + field.Name + " exists already");
  }
  Change("ALTER TABLE " + QuotedName(def.Name) + " ADD COLUMN " + FieldSql(def.Name, field));
}

void TableDefs::DeleteField(std::string_view table, std::string_view field) {
  const TableDef def = Existing(table);
  if (!def.FindField(field)) {
    throw StoreError(kErrNoSuchField, "no field " + def.Name + '.' + std::string(field));
  }
  Change("ALTER TABLE " + QuotedName(def.Name) + " DROP COLUMN " + QuotedName(field));
}

void TableDefs::AppendIndex(std::string_view table, const Index& index) {
  const TableDef def = Existing(table);
  if (def.FindIndex(index.Name)) {
    throw StoreError(kErrIndexExists, "index " + def.Name + '.' + index.Name + " exists already");
  }
  if (!def.FindField(index.Field)) {
    throw StoreError(kErrNoSuchField, "no field " + def.Name + '.' + index.Field);
  }
  if (!ServedByKey(def, index)) Change(CreateIndexSql(def.Name, index));
}

void TableDefs::DeleteIndex(std::string_view table, std::string_view index) {
  const TableDef def = Existing(table);
  const Index* found = def.FindIndex(index);
  if (!found) {
    throw StoreError(kErrNoSuchIndex, "no index " + def.Name + '.' + std::string(index));
  }
  if (!ServedByKey(def, *found)) {
    Change("DROP INDEX " + QuotedName(StoredIndexName(def.Name, found->Name)));
  }
}

void TableDefs::TakeOverNumbers(std::string_view from, std::string_view to) {
  const std::string source = Existing(from).Name;
  const TableDef target = Existing(to);
  if (!target.AutoField()) return;
  // A table of another tool may have given numbers without keeping the last.
  Statement last =
      connection_.Prepare("SELECT MAX(seq) FROM sqlite_sequence WHERE name IN (?1, ?2)");
  last.Bind(1, source).Bind(2, target.Name);
  if (!last.Step() || last.Int(0) == 0) return;
  const Value number = last.Int(0);
  connection_.Prepare("DELETE FROM sqlite_sequence WHERE name = ?1").Bind(1, target.Name).Run();
  connection_.Prepare("INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)")
      .Bind(1, target.Name)
      .Bind(2, number)
      .Run();
}

void TableDefs::Change(const std::string& sql) {
  connection_.DropStandIns();  // views would keep the structure that they read from changing
  connection_.ExecuteNow(sql.c_str());
  connection_.StructureChanged();
}

StructureTransaction::StructureTransaction(TableDefs& tables) : connection_(tables.connection_) {
  connection_.DropStandIns();  // within, a failure would bring their views back
  connection_.Begin();
}

StructureTransaction::~StructureTransaction() {
  if (!connection_.InTransaction()) return;  // stored, or taken back already
  connection_.Rollback();
  connection_.StructureChanged();
}

void StructureTransaction::Commit() {
  connection_.Commit();
}

}  // namespace zemo
