#include "traffic/CampaignImport.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "platform/BoundedRead.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "station/DayGrid.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/WaitPointer.h"
#include "store/StoreError.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

constexpr size_t kLinesASlice = 500;
constexpr int64_t kSameFileFaultMs = 3600000;
constexpr int kToldWidth = 50;  // of an advertiser, in the log

// The fields of a line between its tabs, in their order.
class CampaignLine {
 public:
  explicit CampaignLine(std::string_view line) {
    for (size_t begin = 0; begin <= line.size();) {
      const size_t tab = std::min(line.find('\t', begin), line.size());
      fields_.push_back(line.substr(begin, tab - begin));
      begin = tab + 1;
    }
  }
  // From 1; past the last it is the last.
  std::string Field(size_t number) const {
    return std::string(fields_[std::min(number, fields_.size()) - 1]);
  }
  std::string SoundFile() const { return Field(13); }
  std::string Advertiser() const { return Field(15); }

 private:
  std::vector<std::string_view> fields_;  // into the file's text
};

void RequireDivision(const CampaignLine& line) {
  CampaignForm form;
  size_t field = 3;
  form.HDepPub = line.Field(field++);
  form.HFinPub = line.Field(field++);
  for (std::string& mark : form.DecoupagePub) mark = line.Field(field++);
  if (const auto wrong = FindWrongMark(form))
    throw StoreError(kErrValueRefused, WrongMarkFault(*wrong));
}

// In the order of the line's fields. The genre has none.
void AddCampaign(Recordset& table, const CampaignLine& line) {
  static constexpr const char* kTexts[] = {
      "CAMPAGNEDEPART", "CAMPAGNEFIN", "HDEPART",      "HFIN",      "DECOUPEH1",
      "DECOUPEH2",      "DECOUPEH3",   "DECOUPEH4",    "DECOUPEH5", "DECOUPEH6",
      "DECOUPEH7",      "DECOUPEH8",   "FILENAMEAUDIO"};
  table.AddNew();
  size_t field = 0;
  for (const char* name : kTexts) table.Set(name, line.Field(++field));
  table.Set("DUREE", int64_t{ValInt(line.Field(14))});
  table.Set("ANNONCEUR", line.Advertiser());
  table.Set("CATEGORIE", line.Field(16));
  table.Set("FILENAMEGRILLE", line.Field(17));
  table.Set("PRIORITY", int64_t{ValInt(line.Field(18))});
  table.Set("CONTACT", line.Field(19));
  const std::string pub = line.Field(20);
  table.Set("PUB", int64_t{pub == "True" || pub == "Vrai" ? -1 : 0});
  table.Update();
}

// False when the base refuses the row. With any other fault it is out of reach.
bool TryToAdd(Station& station, Recordset& table, const CampaignLine& line, size_t lineNumber) {
  try {
    RequireDivision(line);
    AddCampaign(table, line);
    return true;
  } catch (const StoreError& error) {
    if (!error.RefusesTheRow()) throw;
    LogCurrentException(station, "SurveilleNewBase",
                        station.files.ExportPubs + " line " + std::to_string(lineNumber) + ", " +
                            FirstCharacters(line.Advertiser(), kToldWidth));
    return false;
  }
}

// The file goes behind the commit. Where a crash or a folder that cannot be written comes between
// the two, the next import knows the campaigns by their sound files and adds none twice - but for
// those whose name has blanks around it, with which a line is never the same. An import that adds
// such a name leaves this mark beside the file until the file is gone.
class TakenMark {
 public:
  explicit TakenMark(Folder& folder) : folder_(folder), found_(folder.Exists(kName)) {}
  // The file beside it may have been taken in before.
  bool Found() const { return found_; }
  void Set() {
    if (!found_) folder_.WriteDurably(kName, "");
    found_ = true;
  }
  void Remove() {
    if (found_) folder_.Remove(kName);
  }

 private:
  static constexpr const char* kName = "ExportPubs.Taken";
  Folder& folder_;
  bool found_;
};

// The sound files in the table as the import finds it: a line does not see what the lines before it
// brought.
std::set<std::string> KnownSoundFiles(Station& station, bool withBlanks) {
  std::set<std::string> known;
  const auto rows = station.base.Db().OpenRecordset("SELECT FILENAMEAUDIO FROM GRILLEPUB");
  for (; !rows->Eof(); rows->MoveNext()) {
    std::string name = rows->Text("FILENAMEAUDIO");
    known.insert(Trim(name));
    if (withBlanks) known.insert(std::move(name));
  }
  return known;
}

std::vector<CampaignLine> CutLines(Station& station, const std::vector<std::string>& lines) {
  std::vector<CampaignLine> cut;
  cut.reserve(lines.size());
  for (const std::string& line : lines) {
    if (!cut.empty() && cut.size() % kLinesASlice == 0) station.platform.loop.Yield();
    cut.emplace_back(line);
  }
  return cut;
}

// All new lines in one transaction, and without a yield from the look at the table on. How many.
int32_t AddNewCampaigns(Station& station, const std::vector<CampaignLine>& lines, TakenMark& mark) {
  const std::set<std::string> known = KnownSoundFiles(station, mark.Found());
  const auto isNew = [&](const CampaignLine& line) { return known.count(line.SoundFile()) == 0; };
  const auto hasBlanks = [](const CampaignLine& line) {
    return Trim(line.SoundFile()) != line.SoundFile();
  };
  if (std::none_of(lines.begin(), lines.end(), isNew)) return 0;
  if (std::any_of(lines.begin(), lines.end(),
                  [&](const CampaignLine& line) { return hasBlanks(line) && isNew(line); }))
    mark.Set();
  const auto table = station.base.Db().OpenTable("GrillePub");
  Transaction transaction(station.base.Db());
  int32_t added = 0;
  for (size_t i = 0; i < lines.size(); ++i)
    if (isNew(lines[i]) && TryToAdd(station, *table, lines[i], i + 1)) ++added;
  transaction.Commit();
  return added;
}

}  // namespace

void ImportedField(std::string_view line, int field, std::string& result) {
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

void ImportExportedCampaigns(Station& station) {
  Folder& folder = station.platform.stationFolder;
  const std::string& name = station.files.ExportPubs;
  if (folder.SizeBytes(name) > kMostTextBytes) {
    const std::string fault = name + " is larger than 4 MB: it is not taken in";
    if (!LoggedLately(station, fault, kSameFileFaultMs))
      LogError(station, "SurveilleNewBase", kErrOther, fault);
    return;
  }
  const std::optional<std::string> bytes = folder.Read(name);
  if (!bytes) return;
  const WaitPointer wait(station.notices);
  const std::vector<std::string> lines = SplitLines(DecodeSideFile(*bytes));
  TakenMark mark(folder);
  const int32_t added = AddNewCampaigns(station, CutLines(station, lines), mark);
  if (added > 0) station.GPubJour.SetCell(0, GridCol::kDateStamp, "");
  if (folder.Read(name) != bytes) return;  // written anew meanwhile: the next element takes that
  folder.Remove(name);
  mark.Remove();
  station.GPubJour.SetCell(0, GridCol::kDateStamp, "");
  station.events.Import(static_cast<int32_t>(lines.size()), added);
}

}  // namespace zemo
