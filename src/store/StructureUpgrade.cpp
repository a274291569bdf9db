#include "store/StructureUpgrade.h"

#include <memory>
#include <string>
#include <vector>

#include "store/Names.h"
#include "store/Schema.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"

namespace zemo {

const std::array<CheckedTable, 6> kCheckedTables = {{
    {"Cnf", "PmixDef", "Mise à jour de la table des paramètres effectuée avec succès"},
    {"DiscothequeJingle", "FILENAME", "Mise à jour de la table des jingles effectuée avec succès"},
    {"Toph", "CODE", "Mise à jour de la table des top horaires effectuée avec succès"},
    {"DiscothequeVirgule", "FILENAME",
     "Mise à jour de la table des Autre Virgules effectuée avec succès"},
    {"Discotheque", "FILENAME",
     "Mise à jour de la table des discotheque music effectuée avec succès"},
    {"GrillePub", "FILENAMEAUDIO", "Mise à jour de la table des pubs effectuée avec succès"},
}};

namespace {

// What every row of a table is given that was made anew, in passes over all of them.
struct Fill {
  const char* table;
  std::vector<std::pair<const char*, const char*>> values;
};

const std::vector<Fill>& Fills() {
  static const std::vector<Fill> fills = {
      {"Discotheque", {{"MMJJDebut", ""}, {"MMJJFIN", ""}}},
      {"DiscothequeJingle", {{"AUTEURCOMPOSITEUR", "x"}, {"MMJJDebut", ""}, {"MMJJFin", ""}}},
      {"GrillePub", {{"GENREASSOCIE", "."}}},
      {"GrillePub", {{"GENREASSOCIE", ""}}},
  };
  return fills;
}

void FillRows(StationBase& base, std::string_view table) {
  for (const Fill& fill : Fills()) {
    if (!SameName(fill.table, table)) continue;
    const auto rows = base.Db().OpenTable(table);
    if (rows->RecordCount() == 0) continue;
    for (rows->MoveFirst(); !rows->Eof(); rows->MoveNext()) {
      rows->Edit();
      for (const auto& [field, value] : fill.values) rows->Set(field, std::string(value));
      rows->Update();
    }
  }
}

// What a value must keep to have room in the field; empty: any does.
std::string BreaksItsRule(const Field& field) {
  const std::string& name = field.Name;
  if (field.Type == FieldType::kText) return "length(" + name + ") > " + std::to_string(field.Size);
  if (field.AutoIncrement) return {};
  if (field.Type == FieldType::kInt16) return name + " NOT BETWEEN -32768 AND 32767";
  if (field.Type == FieldType::kInt32) return name + " NOT BETWEEN -2147483648 AND 2147483647";
  return {};
}

// Behind the text of the rule that was broken: in which rows, for whoever has to mend them.
std::string RowsThatBreak(StationBase& base, const CheckedTable& table, const std::string& rule) {
  const TableDef present = base.Db().Tables().Item(table.name);
  for (const Field& field : FindSchemaTable(table.name)->Fields) {
    if (!rule.starts_with(std::string(table.name) + "." + field.Name + " holds")) continue;
    const std::string condition = BreaksItsRule(field);
    if (condition.empty() || !present.FindField(field.Name)) return {};
    const bool numbered = present.FindField("CODE") != nullptr;
    const auto rows =
        base.Db().OpenRecordset(std::string("SELECT COUNT(*), ") + (numbered ? "MIN(CODE)" : "0") +
                                " FROM " + table.name + " WHERE " + condition);
    std::string text = "; rows that hold more: " + AsText(rows->Field(0));
    if (numbered) text += ", the first is CODE " + AsText(rows->Field(1));
    return text;
  }
  return {};
}

void MakeAnew(StationBase& base, const CheckedTable& table) {
  TableDefs& tables = base.Db().Tables();
  StructureTransaction transaction(tables);
  // Its indexes would only be made for the old table once more, to go with it.
  const TableDef old = tables.Item(table.name);
  for (const Index& index : old.Indexes) tables.DeleteIndex(table.name, index.Name);
  tables.Rename(table.name, kTempTable);
  CreateTable(tables, table.name);
  CreateIndexes(tables, table.name);
  CopyTable(base, table.sortField, table.name, kTempTable);
  tables.TakeOverNumbers(kTempTable, table.name);
  tables.Delete(kTempTable);
  FillRows(base, table.name);
  transaction.Commit();
}

}  // namespace

// A table that is missing was told at the start, and must not hide what became of another.
void OpenTablesThatAreThere(StationBase& base) {
  try {
    base.OpenAllTables();
  } catch (const StoreError&) {
    // Each use of it says so.
  }
}

bool NeedsRebuild(StationBase& base, const CheckedTable& table) {
  TableDefs& tables = base.Db().Tables();
  return tables.Has(table.name) &&
         tables.Item(table.name).Fields.size() != FindSchemaTable(table.name)->Fields.size();
}

bool DropOldSetting(StationBase& base) {
  constexpr size_t kOldPosition = 44;
  constexpr const char* kOldField = "JingleExtrait";
  TableDefs& tables = base.Db().Tables();
  if (!tables.Has("Cnf")) return false;
  const TableDef settings = tables.Item("Cnf");
  if (settings.Fields.size() <= kOldPosition ||
      !SameName(settings.Fields[kOldPosition].Name, kOldField))
    return false;
  try {
    // The settings are taken to be the first table of the catalogue.
    tables.DeleteField(tables.Item(0).Name, kOldField);
  } catch (const StoreError&) {
    OpenTablesThatAreThere(base);
    throw;
  }
  OpenTablesThatAreThere(base);
  return true;
}

void RebuildTable(StationBase& base, const CheckedTable& table) {
  try {
    MakeAnew(base, table);
  } catch (const StoreError& error) {
    OpenTablesThatAreThere(base);
    if (error.Number() != kErrFieldTooSmall && error.Number() != kErrOverflow) throw;
    throw StoreError(error.Number(), error.what() + RowsThatBreak(base, table, error.what()));
  }
  OpenTablesThatAreThere(base);
}

// The store matches the fields of such a query by their names.
void CopyTable(StationBase& base, std::string_view sortField, std::string_view target,
               std::string_view source) {
  const std::string from(source);
  std::string query = "INSERT INTO " + std::string(target) + " SELECT * FROM " + from;
  if (base.Db().Tables().Item(source).FindField(sortField))
    query += " ORDER BY " + from + "." + std::string(sortField);
  base.Db().Execute(query);
}

}  // namespace zemo
