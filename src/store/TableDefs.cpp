// What every engine asks ahead of a change.
#include "store/TableDefs.h"

#include "store/Names.h"
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

// The auto-increment key is an index by itself; no engine needs a second one.
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
  return static_cast<int>(All().size());
}

TableDef TableDefs::Item(int position) {
  const auto& tables = All();
  if (position < 0 || position >= static_cast<int>(tables.size())) {
    throw StoreError(kErrNoSuchTable, "no table at position " + std::to_string(position));
  }
  return *tables[static_cast<size_t>(position)];
}

TableDef TableDefs::Item(std::string_view name) {
  return *Existing(name);
}

bool TableDefs::Has(std::string_view name) {
  return Find(name) != nullptr;
}

std::shared_ptr<const TableDef> TableDefs::Find(std::string_view name) {
  for (const auto& table : All())
    if (SameName(table->Name, name)) return table;
  return nullptr;
}

std::shared_ptr<const TableDef> TableDefs::Existing(std::string_view name) {
  auto table = Find(name);
  if (!table) throw StoreError(kErrNoSuchTable, "no table " + std::string(name));
  return table;
}

void TableDefs::Append(const TableDef& table) {
  if (Has(table.Name)) throw StoreError(kErrTableExists, "table " + table.Name + " exists already");
  MakeTable(table);
}

void TableDefs::Delete(std::string_view table) {
  DropTable(Existing(table)->Name);
}

void TableDefs::Rename(std::string_view table, std::string_view newName) {
  const auto def = Existing(table);
  if (!SameName(table, newName) && Has(newName)) {
    throw StoreError(kErrTableExists, "table " + std::string(newName) + " exists already");
  }
  // The stored name of an index holds its table's name, which must be free for a new table: the
  // indexes are made anew under the new one.
  for (const Index& index : def->Indexes) DeleteIndex(def->Name, index.Name);
  RenameTable(def->Name, std::string(newName));
  for (const Index& index : def->Indexes) {
    if (!ServedByKey(*def, index)) MakeIndex(std::string(newName), index);
  }
}

void TableDefs::AppendField(std::string_view table, const Field& field) {
  const auto def = Existing(table);
  if (def->FindField(field.Name)) {
    throw StoreError(kErrFieldExists, "field " + def->Name + '.' + field.Name + " exists already");
  }
  MakeField(*def, field);
}

void TableDefs::DeleteField(std::string_view table, std::string_view field) {
  const auto def = Existing(table);
  const Field* found = def->FindField(field);
  if (!found) {
    throw StoreError(kErrNoSuchField, "no field " + def->Name + '.' + std::string(field));
  }
  DropField(def->Name, found->Name);
}

void TableDefs::AppendIndex(std::string_view table, const Index& index) {
  const auto def = Existing(table);
  if (def->FindIndex(index.Name)) {
    throw StoreError(kErrIndexExists, "index " + def->Name + '.' + index.Name + " exists already");
  }
  if (!def->FindField(index.Field)) {
    throw StoreError(kErrNoSuchField, "no field " + def->Name + '.' + index.Field);
  }
  if (!ServedByKey(*def, index)) MakeIndex(def->Name, index);
}

void TableDefs::DeleteIndex(std::string_view table, std::string_view index) {
  const auto def = Existing(table);
  const Index* found = def->FindIndex(index);
  if (!found) {
    throw StoreError(kErrNoSuchIndex, "no index " + def->Name + '.' + std::string(index));
  }
  if (!ServedByKey(*def, *found)) DropIndex(def->Name, found->Name);
}

void TableDefs::TakeOverNumbers(std::string_view from, std::string_view to) {
  KeepNumbersAbove(to, LastNumber(from));
}

int64_t TableDefs::LastNumber(std::string_view table) {
  const auto def = Existing(table);
  return def->AutoField() ? LastNumberOf(*def) : 0;
}

void TableDefs::KeepNumbersAbove(std::string_view table, int64_t number) {
  const auto def = Existing(table);
  if (def->AutoField() && number > LastNumberOf(*def)) SetLastNumber(*def, number);
}

StructureTransaction::StructureTransaction(TableDefs& tables) : tables_(tables) {
  tables_.BeginChanges();
}

StructureTransaction::~StructureTransaction() {
  tables_.TakeBackChanges();
}

void StructureTransaction::Commit() {
  tables_.CommitChanges();
}

}  // namespace zemo
