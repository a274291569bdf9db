#include "store/SideTables.h"

#include "store/Database.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/StructureUpgrade.h"

namespace zemo {

namespace {

void MakeSideTable(TableDefs& tables, const TableDef& table) {
  StructureTransaction transaction(tables);
  if (tables.Has(table.Name)) return;  // another program was first
  tables.Append(table);
  for (const Index& index : table.Indexes) tables.AppendIndex(table.Name, index);
  transaction.Commit();
}

}  // namespace

Field SideField(const char* name, FieldType type) {
  Field field;
  field.Name = name;
  field.Type = type;
  return field;
}

void RequireSideTable(StationBase& base, const TableDef& table) {
  TableDefs& tables = base.Db().Tables();
  if (tables.Has(table.Name)) return;
  try {
    MakeSideTable(tables, table);
  } catch (const StoreError&) {
    OpenTablesThatAreThere(base);
    throw;
  }
  OpenTablesThatAreThere(base);
}

}  // namespace zemo
