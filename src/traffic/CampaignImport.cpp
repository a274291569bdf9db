#include "traffic/CampaignImport.h"

#include <exception>
#include <set>
#include <vector>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int kSoundFileField = 13;
constexpr int kDateStampColumn = 53;

std::string FieldOf(std::string_view line, int field) {
  std::string result;
  ImportPub(line, field, result);
  return result;
}

class BusyPointer {
 public:
  explicit BusyPointer(MainScreen& screen) : screen_(screen), former_(screen.hourglass) {
    screen_.hourglass = true;
  }
  ~BusyPointer() { screen_.hourglass = former_; }
  BusyPointer(const BusyPointer&) = delete;

 private:
  MainScreen& screen_;
  const bool former_;
};

// The table as the import finds it: a line does not see what the lines before it brought.
std::set<std::string> KnownSoundFiles(Station& station) {
  std::set<std::string> known;
  const auto rows = station.base.Db().OpenRecordset("SELECT FILENAMEAUDIO FROM GRILLEPUB");
  for (; !rows->Eof(); rows->MoveNext()) known.insert(Trim(rows->Text("FILENAMEAUDIO")));
  return known;
}

// In the order of the line's fields. The genre has none.
void AddCampaign(Recordset& table, std::string_view line) {
  static constexpr const char* kTexts[] = {
      "CAMPAGNEDEPART", "CAMPAGNEFIN", "HDEPART",      "HFIN",      "DECOUPEH1",
      "DECOUPEH2",      "DECOUPEH3",   "DECOUPEH4",    "DECOUPEH5", "DECOUPEH6",
      "DECOUPEH7",      "DECOUPEH8",   "FILENAMEAUDIO"};
  table.AddNew();
  int field = 0;
  for (const char* name : kTexts) table.Set(name, FieldOf(line, ++field));
  table.Set("DUREE", int64_t{ValInt(FieldOf(line, 14))});
  table.Set("ANNONCEUR", FieldOf(line, 15));
  table.Set("CATEGORIE", FieldOf(line, 16));
  table.Set("FILENAMEGRILLE", FieldOf(line, 17));
  table.Set("PRIORITY", int64_t{ValInt(FieldOf(line, 18))});
  table.Set("CONTACT", FieldOf(line, 19));
  const std::string pub = FieldOf(line, 20);
  table.Set("PUB", int64_t{pub == "True" || pub == "Vrai" ? -1 : 0});
  table.Update();
}

// What the row itself is at fault for; with any other fault the base is out of reach.
bool RefusesTheRow(int number) {
  return number == kErrFieldTooSmall || number == kErrOverflow || number == kErrValueRefused ||
         number == kErrDuplicateKey;
}

// False when the base refuses the row.
bool TryToAdd(Station& station, Recordset& table, std::string_view line, size_t lineNumber) {
  try {
    AddCampaign(table, line);
    return true;
  } catch (const StoreError& error) {
    if (!RefusesTheRow(error.Number())) throw;
    LogCurrentException(station, "SurveilleNewBase",
                        station.files.ExportPubs + " line " + std::to_string(lineNumber) + ", " +
                            FieldOf(line, 15));
    return false;
  }
}

}  // namespace

void ImportPub(std::string_view line, int field, std::string& result) {
  result.clear();
  int tabs = 0;
  for (const char c : line) {
    if (c != '\t') {
      result += c;
    } else if (++tabs == field) {
      return;
    } else {
      result.clear();
    }
  }
}

void ImportExportPubs(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const auto text = ReadSideFile(folder, station.files.ExportPubs);
  if (!text) return;
  const BusyPointer busy(station.screen);
  const std::set<std::string> known = KnownSoundFiles(station);
  const std::vector<std::string> lines = SplitLines(*text);
  // A cursor of its own: a composition under way walks on the shared one.
  const auto table = station.base.Db().OpenTable("GrillePub");
  int32_t added = 0;
  size_t number = 0;
  for (const std::string& line : lines) {
    ++number;
    if (known.count(FieldOf(line, kSoundFileField)) > 0) continue;
    if (TryToAdd(station, *table, line, number)) ++added;
  }
  station.GPubJour.SetCell(0, kDateStampColumn, "");
  folder.Remove(station.files.ExportPubs);
  station.events.Import(static_cast<int32_t>(lines.size()), added);
}

}  // namespace zemo
