#include "store/replica/ServerUpkeep.h"

#include "store/Database.h"
#include "store/Schema.h"
#include "store/SideTables.h"
#include "store/SoundMeasuresTable.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/StructureUpgrade.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/PostgresFunctions.h"
#include "store/replica/ReplicaSchema.h"

namespace zemo {

namespace {

template <typename Step>
void Try(const std::function<void(const std::string&)>& told, Step step) {
  try {
    step();
  } catch (const StoreError& error) {
    told(error.what());
  }
}

}  // namespace

std::string ProgramMark() {
  std::string mark = std::to_string(kReplicaForm) + ' ' + std::to_string(kFunctionsVersion);
  for (const TableDef& table : SchemaTables())
    mark += ' ' + table.Name + ' ' + std::to_string(table.Fields.size());
  return mark;
}

void BringBaseUpToDate(const std::string& url,
                       const std::function<void(const std::string&)>& told) {
  StationBase base(ServerPlace(url));
  base.OpenOrCreateDatabase();
  base.CreateMissingTables([&told](const std::string& table, int, const std::string& text) {
    told(table + ": " + text);
  });
  Try(told, [&] { base.OpenAllTables(); });
  Try(told, [&] { base.SeedFixedRows(); });
  Try(told, [&] { DropOldSetting(base); });
  for (const CheckedTable& table : kCheckedTables)
    Try(told, [&] {
      if (!NeedsRebuild(base, table)) return;
      RebuildTable(base, table);
      told(table.message);
    });
  Try(told, [&] { RequireSideTable(base, MeasuresTable()); });
}

}  // namespace zemo
