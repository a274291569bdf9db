#include "engine/BaseMaintenance.h"

#include <exception>

#include "platform/Desktop.h"
#include "station/Station.h"
#include "store/StructureUpgrade.h"

namespace zemo {

namespace {

void CheckTable(Station& station, const CheckedTable& table) {
  try {
    if (!NeedsRebuild(station.base, table)) return;
    RebuildTable(station.base, table);
    station.base.CheckCnf();
    station.events.Base("rebuilt", table.name);
    station.platform.messages.Show("", table.message, Buttons::kOk, Icon::kInformation);
  } catch (const std::exception&) {
    LogCurrentException(station, "RebuildTable", table.name);
  }
}

}  // namespace

void CheckStructures(Station& station) {
  try {
    if (DropOldSetting(station.base)) station.base.CheckCnf();
  } catch (const std::exception&) {
    LogCurrentException(station, "Form_Load", "JingleExtrait");
  }
  for (const CheckedTable& table : kCheckedTables) CheckTable(station, table);
}

}  // namespace zemo
