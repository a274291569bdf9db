#include "library/TrackNeighboursTable.h"

#include <memory>

#include "store/Database.h"
#include "store/RowView.h"
#include "store/SideTables.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

constexpr const char* kNeighbours = "Raccords";
constexpr const char* kFindNeighbours =
    "SELECT FICHIERAVANT, DUREEAVANT, PSAVANT, FICHIERAPRES, INTROAPRES FROM Raccords WHERE VT = ?";

TableDef MakeNeighboursTable() {
  TableDef table;
  table.Name = kNeighbours;
  table.Fields = {SideField("VT", FieldType::kInt32),  // CODE of VT
                  SideField("FICHIERAVANT", FieldType::kMemo),
                  SideField("DUREEAVANT", FieldType::kInt32),  // ms, as the exit point
                  SideField("PSAVANT", FieldType::kInt32),
                  SideField("FICHIERAPRES", FieldType::kMemo),
                  SideField("INTROAPRES", FieldType::kInt32)};  // s
  table.Indexes = {{"VT", "VT"}};
  return table;
}

// A row of kFindNeighbours.
TrackNeighbours ReadNeighbours(const RowView& row) {
  TrackNeighbours neighbours;
  neighbours.fileBefore = row.Text(0);
  neighbours.lengthBeforeMs = row.Int(1);
  neighbours.exitBeforeMs = row.Int(2);
  neighbours.fileAfter = row.Text(3);
  neighbours.introAfterSec = row.Int(4);
  return neighbours;
}

void EditNeighboursOf(Recordset& rows, int64_t code) {
  rows.SetIndex("VT");
  rows.Seek("=", code);
  if (rows.NoMatch())
    rows.AddNew();
  else
    rows.Edit();
}

}  // namespace

const TableDef& NeighboursTable() {
  static const TableDef table = MakeNeighboursTable();
  return table;
}

std::optional<TrackNeighbours> FindNeighbours(Database& database, int64_t code) {
  std::optional<TrackNeighbours> found;
  try {
    if (!database.Tables().Has(kNeighbours)) return std::nullopt;
    // Of two rows the first, which is the one that is written.
    database.ReadRows(kFindNeighbours, {code}, [&](const RowView& row) {
      if (!found) found = ReadNeighbours(row);
    });
  } catch (const StoreError& error) {
    if (error.MayPass()) throw;
  }
  return found;
}

void StoreNeighbours(StationBase& base, int64_t code, const TrackNeighbours& neighbours) {
  RequireSideTable(base, NeighboursTable());
  const auto rows = base.Db().OpenTable(kNeighbours);
  EditNeighboursOf(*rows, code);
  rows->Set("VT", code);
  rows->Set("FICHIERAVANT", neighbours.fileBefore);
  rows->Set("DUREEAVANT", neighbours.lengthBeforeMs);
  rows->Set("PSAVANT", neighbours.exitBeforeMs);
  rows->Set("FICHIERAPRES", neighbours.fileAfter);
  rows->Set("INTROAPRES", neighbours.introAfterSec);
  rows->Update();
}

}  // namespace zemo
