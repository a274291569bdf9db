// Found by the size of the file, which an index over numbers serves whatever letters the path has;
// two paths are the same only byte for byte, as the files of this system are.
#include "store/SoundMeasuresTable.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>

#include "store/Database.h"
#include "store/Names.h"
#include "store/RowView.h"
#include "store/SideTables.h"
#include "store/StationBase.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {

constexpr const char* kTable = "Mesures";
constexpr const char* kPathIndex = "Chemin";

// What a meter can say: integrated loudness has no part below -70 LUFS, a decoded sample is 24 dB
// above full scale at most and a true peak 5 dB above that, and no sound is louder than 7 LU above
// its peak, where both channels have all of it at the highest frequencies.
constexpr double kLeastLufs = -70, kMostLufs = 31, kLeastPeakDb = -150, kMostPeakDb = 30;
constexpr double kMostAbovePeak = 7;

TableDef MakeMeasuresTable() {
  TableDef table;
  table.Name = kTable;
  table.Fields = {SideField("CHEMIN", FieldType::kMemo),
                  SideField("TAILLE", FieldType::kFloat64),   // bytes, also above 2 GB
                  SideField("MODIFIE", FieldType::kFloat64),  // ms since 1970
                  SideField("DUREE", FieldType::kInt32),      // ms, as the ones below
                  SideField("LUFS", FieldType::kFloat64),
                  SideField("DBTP", FieldType::kFloat64),
                  SideField("DEBUT", FieldType::kInt32),
                  SideField("FIN", FieldType::kInt32),
                  SideField("POINTSORTIE", FieldType::kInt32)};
  table.Indexes = {{kPathIndex, "CHEMIN"}, {"Taille", "TAILLE"}};
  return table;
}

bool Within(const std::optional<double>& value, double least, double most) {
  return !value || (*value >= least && *value <= most);
}

bool IsOfASound(const SoundMeasures& measures) {
  const std::optional<double>&lufs = measures.loudnessLufs, &peakDb = measures.truePeakDb;
  if (lufs && peakDb && *lufs > *peakDb + kMostAbovePeak) return false;
  return Within(lufs, kLeastLufs, kMostLufs) && Within(peakDb, kLeastPeakDb, kMostPeakDb) &&
         measures.lengthMs >= 0 && measures.soundBeginMs >= 0 && measures.soundEndMs >= 0 &&
         measures.exitMs >= 0 && measures.exitMs <= std::numeric_limits<int16_t>::max();
}

constexpr const char* kFind =
    "SELECT CHEMIN, DUREE, LUFS, DBTP, DEBUT, FIN, POINTSORTIE FROM Mesures WHERE TAILLE = ? AND "
    "MODIFIE = ?";

std::optional<double> RealOrNone(const RowView& row, int column) {
  if (row.IsNull(column)) return std::nullopt;
  return row.Real(column);
}

// A row of kFind whose columns behind the path hold numbers, or nothing.
bool HoldsNumbers(const RowView& row) {
  for (int column = 1; column <= 6; ++column)
    if (!row.IsNull(column) && !row.IsNumber(column)) return false;
  return true;
}

// A row of kFind.
SoundMeasures Read(const RowView& row) {
  SoundMeasures measures;
  measures.lengthMs = static_cast<int32_t>(row.Int(1));
  measures.loudnessLufs = RealOrNone(row, 2);
  measures.truePeakDb = RealOrNone(row, 3);
  measures.soundBeginMs = static_cast<int32_t>(row.Int(4));
  measures.soundEndMs = static_cast<int32_t>(row.Int(5));
  measures.exitMs = static_cast<int32_t>(row.Int(6));
  return measures;
}

Value ValueOf(const std::optional<double>& number) {
  return number ? Value(*number) : Value();
}

// On the row of that path, else on a new one. The index takes paths for the same that differ in
// case.
void EditRowOf(Recordset& rows, const std::string& path) {
  rows.SetIndex(kPathIndex);
  rows.Seek("=", path);
  while (!rows.Eof() && rows.Text("CHEMIN") != path && SameName(rows.Text("CHEMIN"), path))
    rows.MoveNext();
  if (!rows.Eof() && rows.Text("CHEMIN") == path)
    rows.Edit();
  else
    rows.AddNew();
}

}  // namespace

const TableDef& MeasuresTable() {
  static const TableDef table = MakeMeasuresTable();
  return table;
}

std::optional<SoundMeasures> FindMeasures(Database& database, std::string_view storedPath,
                                          const SoundFileStamp& stamp) {
  if (!database.Tables().Has(kTable)) return std::nullopt;
  std::optional<SoundMeasures> found;
  database.ReadRows(kFind, {stamp.sizeBytes, stamp.changedMs}, [&](const RowView& row) {
    if (row.Text(0) == storedPath && HoldsNumbers(row)) found = Read(row);
  });
  return found && IsOfASound(*found) ? found : std::nullopt;
}

void StoreMeasures(StationBase& base, std::string_view storedPath, const SoundFileStamp& stamp,
                   const SoundMeasures& measures) {
  RequireSideTable(base, MeasuresTable());
  const auto rows = base.Db().OpenTable(kTable);
  const std::string path(storedPath);
  EditRowOf(*rows, path);
  rows->Set("CHEMIN", path);
  rows->Set("TAILLE", stamp.sizeBytes);
  rows->Set("MODIFIE", stamp.changedMs);
  rows->Set("DUREE", int64_t{measures.lengthMs});
  rows->Set("LUFS", ValueOf(measures.loudnessLufs));
  rows->Set("DBTP", ValueOf(measures.truePeakDb));
  rows->Set("DEBUT", int64_t{measures.soundBeginMs});
  rows->Set("FIN", int64_t{measures.soundEndMs});
  rows->Set("POINTSORTIE", int64_t{measures.exitMs});
  rows->Update();
}

}  // namespace zemo
