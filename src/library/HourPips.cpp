#include "library/HourPips.h"

#include "library/LibraryTexts.h"
#include "settings/SideFileIo.h"
#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kFileColumn = 1, kOverlayColumn = 2, kDaysColumn = 3;
constexpr int kDays = HourMasks::kDays;

using PipRows = std::array<HourPipRow, HourMasks::kHours>;

PipRows ReadPips(Station& station) {
  PipRows pips;
  for (const auto row = station.base.Table("Toph"); !row->Eof(); row->MoveNext()) {
    const int64_t hour = row->Int("HEURE");
    if (hour < 0 || hour >= HourMasks::kHours) continue;
    pips[static_cast<size_t>(hour)] = {row->Text("FICHIER"), row->Bool("SURIMPRESSION"),
                                       row->Text("JourSemaine")};
  }
  return pips;
}

void LoadPips(Station& station, LibraryEditor& editor) {
  editor.pipsCounter = station.base.Db().ForeignCounter();
  editor.GTopH = editor.loadedPips = ReadPips(station);
}

RecordFields FieldsOf(PipRows& pips) {
  RecordFields fields;
  for (HourPipRow& pip : pips) {
    fields.push_back({"GTopH.1", &pip.file});
    fields.push_back({"GTopH.2", &pip.overlay});
    fields.push_back({"GTopH.3", &pip.days});
  }
  return fields;
}

// False: the operator was asked, and nothing is to be stored.
bool MergePips(Station& station, LibraryEditor& editor) {
  const auto wordOf = [&](const char* column) {
    return Caption(LibraryCaptions(), column, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
  };
  RecordMerge merge;
  for (auto step = RecordMerge::Step::kReadAgain; step != RecordMerge::Step::kStore;) {
    const int64_t counter = station.base.Db().ForeignCounter();
    if (counter == editor.pipsCounter) break;
    PipRows theirs = ReadPips(station);
    step = merge.Next(
        station, {FieldsOf(editor.loadedPips), FieldsOf(theirs), FieldsOf(editor.GTopH)}, wordOf);
    if (step == RecordMerge::Step::kLeave) return false;
    if (step == RecordMerge::Step::kStore) editor.pipsCounter = counter;
  }
  return true;
}

void SavePips(Station& station, const LibraryEditor& editor) {
  Transaction together(station.base.Db());
  const auto row = station.base.Table("Toph");
  for (const HourPipRow& pip : editor.GTopH) {
    if (row->Eof()) break;
    row->Edit();
    row->Set("FICHIER", pip.file);
    row->Set("SURIMPRESSION", int64_t{pip.overlay ? -1 : 0});
    row->Set("JourSemaine", pip.days);
    row->Update();
    row->MoveNext();
  }
  together.Commit();
}

// Seven characters, "X" where the pip is on.
std::string DaysOf(const std::string& text) {
  std::string days;
  for (const char letter : FirstCharacters(text, kDays)) {
    const bool goesOn = (static_cast<unsigned char>(letter) & 0xC0) == 0x80;  // with a character
    if (!goesOn) days += letter == 'x' || letter == 'X' ? 'X' : ' ';
  }
  days.resize(kDays, ' ');
  return days;
}

}  // namespace

void LoadTopH(Station& station, LibraryEditor& editor, std::string_view action) {
  if (IsLoad(action)) LoadPips(station, editor);
  if (!IsSave(action) || !MergePips(station, editor)) return;
  SavePips(station, editor);
  editor.loadedPips = editor.GTopH;
}

void TakeOverPips(Station& station, LibraryEditor& editor) {
  PipRows theirs = ReadPips(station);
  TakeOverFields({FieldsOf(editor.loadedPips), FieldsOf(theirs), FieldsOf(editor.GTopH)});
}

std::string HourPipCell(const LibraryEditor& editor, size_t hour, int column) {
  const HourPipRow& pip = editor.GTopH[hour];
  switch (column) {
    case kFileColumn:
      return pip.file;
    case kOverlayColumn:
      return pip.overlay ? "True" : "False";
    case kDaysColumn:
      return pip.days;
    default:
      return TwoDigits(static_cast<int>(hour)) + ":00 ";
  }
}

void Library::GTopH_Click(LibraryEditor& editor, size_t hour, int column) {
  if (hour >= editor.GTopH.size()) return;
  editor.pipHour = static_cast<int32_t>(hour);
  if (column == kOverlayColumn) editor.GTopH[hour].overlay = !editor.GTopH[hour].overlay;
}

void Library::GTopH_Change(LibraryEditor& editor, size_t hour, int column,
                           const std::string& text) {
  if (hour >= editor.GTopH.size()) return;
  HourPipRow& pip = editor.GTopH[hour];
  if (column == kFileColumn) pip.file = text;
  if (column == kOverlayColumn)
    pip.overlay = EqualNoCase(text, "True") || EqualNoCase(text, "Vrai");
  if (column == kDaysColumn) pip.days = DaysOf(text);
}

}  // namespace zemo
