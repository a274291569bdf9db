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
#include "store/postgres/PostgresErrors.h"
#include "store/postgres/PostgresFunctions.h"
#include "store/replica/ReplicaSchema.h"

namespace zemo {

namespace {

// What could not be done; of what the role may not do the first alone.
class Faults {
 public:
  explicit Faults(const std::function<void(const std::string&)>& told) : told_(told) {}
  ~Faults() {
    if (!refused_.empty()) told_("this role leaves the base as it is: " + refused_);
  }
  Faults(const Faults&) = delete;

  void Take(int number, const std::string& text) {
    if (number != kErrReadOnly) return told_(text);
    if (refused_.empty()) refused_ = text;
  }
  template <typename Step>
  void Try(Step step) {
    try {
      step();
    } catch (const StoreError& error) {
      Take(error.Number(), error.what());
    }
  }

 private:
  const std::function<void(const std::string&)>& told_;
  std::string refused_;
};

// The first table is made by who moves a station here, and by nobody else: one that was moved away
// would be there again, and empty.
void RequireStation(StationBase& base) {
  for (const TableDef& table : SchemaTables())
    if (base.Db().Tables().Has(table.Name)) return;
  throw StoreError(kErrNoSuchFile, base.Path() + kNoStationsBase);
}

}  // namespace

std::string ProgramMark() {
  std::string mark = std::to_string(kReplicaForm) + ' ' + std::to_string(kFunctionsVersion);
  for (const TableDef& table : SchemaTables())
    mark += ' ' + table.Name + ' ' + std::to_string(table.Fields.size());
  return mark;
}

void BringBaseUpToDate(const std::string& url, const std::function<void(const std::string&)>& told,
                       LineKeeper* keeper) {
  StationBase base(ServerPlace(url, keeper));
  base.OpenOrCreateDatabase();
  RequireStation(base);
  Faults faults(told);
  base.CreateMissingTables(
      [&faults](const std::string& table, int number, const std::string& text) {
        faults.Take(number, table + ": " + text);
      });
  faults.Try([&] { base.OpenAllTables(); });
  faults.Try([&] { base.SeedFixedRows(); });
  faults.Try([&] { DropOldSetting(base); });
  for (const CheckedTable& table : kCheckedTables)
    faults.Try([&] {
      if (!NeedsRebuild(base, table)) return;
      RebuildTable(base, table);
      told(table.message);
    });
  faults.Try([&] { RequireSideTable(base, MeasuresTable()); });
}

}  // namespace zemo
