#include "library/HourPips.h"

#include "settings/SideFileIo.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int kFileColumn = 1, kOverlayColumn = 2, kDaysColumn = 3;
constexpr int kDays = HourMasks::kDays;

void LoadPips(Station& station, LibraryEditor& editor) {
  editor.GTopH.fill(HourPipRow());
  for (const auto row = station.base.Table("Toph"); !row->Eof(); row->MoveNext()) {
    const int64_t hour = row->Int("HEURE");
    if (hour < 0 || hour >= HourMasks::kHours) continue;
    editor.GTopH[static_cast<size_t>(hour)] = {row->Text("FICHIER"), row->Bool("SURIMPRESSION"),
                                               row->Text("JourSemaine")};
  }
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
  if (IsSave(action)) SavePips(station, editor);
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
