// Opening, records and closing of the campaign editor.
#include "traffic/CampaignEditor.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <utility>

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "settings/GenreList.h"
#include "settings/LineLists.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignMerge.h"
#include "traffic/CampaignMessages.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

constexpr int kHighestPriority = 300, kPriorityStep = 10;

std::unique_ptr<Recordset> OpenCampaigns(Station& station) {
  return station.base.Table("GrillePub");
}

// Goes to the place of the editor, in order of passage; its position from 1, 0 when there is no
// such record.
int WalkToPlace(Recordset& table, const CampaignEditor& editor) {
  table.SetIndex("PRIORITY");
  int position = 0;
  for (table.MoveFirst(); !table.Eof(); table.MoveNext()) {
    ++position;
    if (table.Text("CODE") == editor.place) return position;
  }
  return 0;
}

void ShowPosition(Station& station, CampaignEditor& editor) {
  const int position = WalkToPlace(*OpenCampaigns(station), editor);
  editor.LblInfoPub =
      std::to_string(position) + " /" + std::to_string(station.base.CountRecords("GrillePub"));
}

// All but the hours and marks, whose template may be missing.
void EmptyFields(CampaignEditor& editor) {
  CampaignForm empty;
  empty.HDepPub = editor.HDepPub;
  empty.HFinPub = editor.HFinPub;
  empty.DecoupagePub = editor.DecoupagePub;
  empty.LblDepartPub = empty.LblFinPub = kNoDate;
  empty.LblTemp = FormatDuration(0);
  for (int row = 0; row < 10; ++row) empty.GPub.AddRow(TextGrid::Row(4));
  static_cast<CampaignForm&>(editor) = std::move(empty);
}

// What the screen shows when no record is left.
void ShowNone(Station& station, CampaignEditor& editor) {
  EmptyFields(editor);
  editor.place.clear();
  LoadSaveMarks(station, "Load", editor);
  editor.PLPubVisible = false;
  editor.BtnNewEnabled = true;
  editor.BtnAjouterEnabled = editor.BtnReplacerEnabled = editor.BtnDeleteEnabled = false;
  editor.LblInfoPub = "0 /0";
}

// Loads the record that `move` goes to; with no record, the empty screen. Nothing where `move` says
// that there is nowhere to go.
template <typename Move>
void Page(Station& station, CampaignEditor& editor, const char* routine, const Move& move) {
  try {
    station.base.CheckCnf();
    const auto table = OpenCampaigns(station);
    const int position = WalkToPlace(*table, editor);
    if (!move(*table, position)) return;
    if (table->Eof() || table->Bof()) return ShowNone(station, editor);
    Campaigns::ShowRecord(station, *table, editor);
    ShowPosition(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, routine);
  }
}

// From the record of that position, or without one to the first. False at the end already, and
// where a new record is typed for a table that has none.
bool MoveOn(Recordset& table, int position, const CampaignEditor& editor,
            void (Recordset::*step)()) {
  if (position == 0) {
    table.MoveFirst();
    return !table.Eof() || !editor.BtnAjouterEnabled;
  }
  (table.*step)();
  return !table.Eof() && !table.Bof();
}

// The grid file and the program file. False when one could not be written, which is logged.
bool WriteFiles(Station& station, CampaignEditor& editor) {
  try {
    if (!LoadSaveCampaignGrid(station, editor, "Save", editor.FILENAMEGRILLE, RowYields::kNone))
      return false;
    CampaignFile(CampaignFilePath(editor.FichierAudio, "prg"))
        .Write(station, CampaignProgram(editor));
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "ReplaceChampsPubs");
    return false;
  }
}

// The screen to the row that AddNew or Edit began, then to the files. The row comes first: one that
// the base refuses leaves the files as they were. False when a file could not be written.
bool StoreCampaign(Station& station, CampaignEditor& editor, Recordset& row) {
  editor.FILENAMEGRILLE = CampaignFilePath(editor.FichierAudio, "GPB");
  WriteCampaign(editor, row);
  row.Update();
  editor.LblCode = editor.place = row.Text("CODE");
  editor.BtnAjouterEnabled = false;
  editor.BtnNewEnabled = editor.BtnReplacerEnabled = editor.BtnDeleteEnabled = true;
  const bool written = WriteFiles(station, editor);
  // What others make of it counts from here on, where the record stays on the screen.
  editor.counter = station.base.Db().ForeignCounter();
  editor.gridStamp = CampaignFile(editor.FILENAMEGRILLE).Stamp(station);
  return written;
}

// What came to nothing is told where it was asked for; the log has why.
bool SaveRecord(Station& station, CampaignEditor& editor, Recordset& row, const char* routine) {
  bool saved = false;
  try {
    saved = StoreCampaign(station, editor, row);
    if (station.engine.PCProduction) WriteGridSignal(station);
  } catch (const std::exception&) {
    LogCurrentException(station, routine, editor.ChAnnonceur);
    saved = false;
  }
  if (saved)
    Campaigns::BtnDebut_Click(station, editor);
  else
    ShowAlert(station, kCannotSave);
  return saved;
}

bool HasSoundFile(Station& station, const CampaignEditor& editor) {
  return !editor.FichierAudio.empty() && station.platform.soundFiles.Exists(editor.FichierAudio);
}

// Only a file that is a grid file by its name, and no other campaign's: the field may hold any
// path.
bool OwnsGridFile(Station& station, int64_t code, const std::string& path) {
  constexpr size_t kEnding = 3;
  if (path.size() < kEnding || !EqualNoCase(path.substr(path.size() - kEnding), "GPB"))
    return false;
  const std::string place = CampaignFile(path).Path(station);
  const auto rows = station.base.Db().OpenRecordset(
      "SELECT FILENAMEGRILLE, FILENAMEAUDIO FROM GrillePub WHERE CODE <> ?", {code});
  for (; !rows->Eof(); rows->MoveNext())
    for (const char* field : {"FILENAMEGRILLE", "FILENAMEAUDIO"})
      if (CampaignFile(rows->Text(field)).Path(station) == place) return false;
  return true;
}

std::vector<CampaignEditor::OverviewLine> ReadOverview(Station& station) {
  std::vector<CampaignEditor::OverviewLine> lines;
  const auto rows = station.base.Db().OpenRecordset("SELECT * FROM GrillePub ORDER BY ANNONCEUR");
  for (; !rows->Eof(); rows->MoveNext())
    lines.push_back({rows->Text("ANNONCEUR"),
                     {rows->Text("CATEGORIE"), rows->Text("CAMPAGNEDEPART"),
                      rows->Text("CAMPAGNEFIN"), rows->Bool("PUB") ? kSpotKind : "Rubrique",
                      rows->Text("CODE"), rows->Text("GENREASSOCIE")}});
  return lines;
}

// By the head that was clicked last; without one they stay as they were filled.
void SortOverview(CampaignEditor& editor) {
  if (!editor.sortedColumn) return;
  const auto item = static_cast<size_t>(*editor.sortedColumn - 1);
  const auto key = [item](const CampaignEditor::OverviewLine& line) {
    return UpperLatin(item < line.subItems.size() ? line.subItems[item] : line.text);
  };
  std::stable_sort(editor.PLPub.begin(), editor.PLPub.end(), [&](const auto& a, const auto& b) {
    return editor.sortedDown ? key(b) < key(a) : key(a) < key(b);
  });
}

void FillLists(Station& station, CampaignEditor& editor) {
  LoadSaveCategories(station, "Load", editor.CategorieList);
  LoadSaveGenres(station, "Load", editor.GenreAssocieList);
  editor.ComboPriorityList.clear();
  for (int priority = kPriorityStep; priority <= kHighestPriority; priority += kPriorityStep)
    editor.ComboPriorityList.push_back(std::to_string(priority));
}

}  // namespace

void Campaigns::MnuHPubs_Click(Station& station, CampaignEditor& editor) {
  if (station.engine.ScreenLocked || editor.open) return;
  editor = CampaignEditor{};
  editor.open = true;
  station.engine.OverlayKey.clear();
  LoadSaveMarks(station, "Load", editor);
  FillLists(station, editor);
  BtnFin_Click(station, editor);
}

void Campaigns::Form_Unload(Station& station, CampaignEditor& editor) {
  editor.open = false;
  LoadSaveMarks(station, "Save", editor);
  ComposeTodaysGrid(station);
}

void Campaigns::ShowRecord(Station& station, const Recordset& grillePub, CampaignEditor& editor) {
  try {
    // Without a yield: what the operator does meanwhile would meet the fields of one campaign with
    // the grid of another.
    const int64_t counter = station.base.Db().ForeignCounter();
    LoadCampaign(station, grillePub, editor, RowYields::kNone);
    editor.counter = counter;
    editor.gridStamp = CampaignFile(editor.FILENAMEGRILLE).Stamp(station);
    editor.gone = false;
    editor.stored = static_cast<const CampaignForm&>(editor);
    editor.place = editor.LblCode;
    editor.BtnNewEnabled = editor.BtnReplacerEnabled = editor.BtnDeleteEnabled = true;
    editor.BtnAjouterEnabled = false;
    editor.PLPubVisible = false;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadFichePub");
  }
}

void Campaigns::BtnNew_Click(Station& station, CampaignEditor& editor) {
  EmptyFields(editor);
  editor.PLPubVisible = false;
  editor.BtnNewEnabled = editor.BtnReplacerEnabled = editor.BtnDeleteEnabled = false;
  editor.BtnAjouterEnabled = true;
  LoadSaveMarks(station, "Load", editor);
  editor.gone = false;
  editor.stored = static_cast<const CampaignForm&>(editor);
}

bool Campaigns::BtnAjouter_Click(Station& station, CampaignEditor& editor) {
  if (!editor.BtnAjouterEnabled) return false;
  try {
    if (!HasSoundFile(station, editor)) {
      ShowAlert(station, NoSoundFileText(station));
      return false;
    }
    if (RefuseWrongMark(station, editor)) return false;
    const auto row = OpenCampaigns(station);
    row->AddNew();
    return SaveRecord(station, editor, *row, "BtnAjouter");
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnAjouter", editor.ChAnnonceur);
    return false;
  }
}

bool Campaigns::BtnReplacer_Click(Station& station, CampaignEditor& editor) {
  if (!editor.BtnReplacerEnabled) return false;
  try {
    if (!HasSoundFile(station, editor)) {
      ShowAlert(station, kNoSoundFile);
      return false;
    }
    if (RefuseWrongMark(station, editor)) return false;
    const int32_t code = ValInt(editor.LblCode);
    if (code < 1) return false;
    const auto row = OpenCampaigns(station);
    if (!MergeShownCampaign(station, editor)) return false;
    if (!SeekCode(*row, code)) {
      ShowAlert(station, kCannotSave);
      editor.gone = true;
      KeepAsNew(editor);
      return false;
    }
    row->Edit();
    return SaveRecord(station, editor, *row, "BtnReplacer");
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnReplacer", editor.ChAnnonceur);
    return false;
  }
}

bool Campaigns::BtnDelete_Click(Station& station, CampaignEditor& editor) {
  if (!editor.BtnDeleteEnabled) return false;
  try {
    if (station.base.CountRecords("GrillePub") == 0) {
      ShowAlert(station, kNothingToDelete);
      return false;
    }
    const std::string question = kConfirmDelete + editor.ChAnnonceur;
    if (station.platform.messages.Show(kAlertTitle, question, Buttons::kOkCancel) != Answer::kOk)
      return false;
    const auto table = OpenCampaigns(station);
    if (WalkToPlace(*table, editor) == 0) return false;
    const std::string gridPath = table->Text("FILENAMEGRILLE");
    const CampaignFile gridFile(gridPath);
    const bool ownsFile =
        gridFile.Exists(station) && OwnsGridFile(station, table->Int("CODE"), gridPath);
    table->Delete();  // first: a record that the base keeps has its crosses
    if (ownsFile) gridFile.Remove(station);
    BtnDebut_Click(station, editor);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnDelete", editor.ChAnnonceur);
    return false;
  }
}

void Campaigns::BtnDebut_Click(Station& station, CampaignEditor& editor) {
  Page(station, editor, "BtnDebut", [](Recordset& table, int) {
    table.MoveFirst();
    return true;
  });
}

void Campaigns::BtnFin_Click(Station& station, CampaignEditor& editor) {
  Page(station, editor, "BtnFin", [](Recordset& table, int) {
    table.MoveLast();
    return true;
  });
}

void Campaigns::BtnPlus_Click(Station& station, CampaignEditor& editor) {
  Page(station, editor, "BtnPlus", [&](Recordset& table, int position) {
    return MoveOn(table, position, editor, &Recordset::MoveNext);
  });
}

void Campaigns::BtnMoins_Click(Station& station, CampaignEditor& editor) {
  Page(station, editor, "BtnMoins", [&](Recordset& table, int position) {
    return MoveOn(table, position, editor, &Recordset::MovePrevious);
  });
}

void Campaigns::BtnRecherhe_Click(Station& station, CampaignEditor& editor) {
  try {
    editor.PLPub.clear();
    editor.sortedColumn.reset();
    editor.PLPub = ReadOverview(station);
    editor.PLPubVisible = true;
    editor.BtnNewEnabled = editor.BtnReplacerEnabled = false;
    editor.BtnAjouterEnabled = editor.BtnDeleteEnabled = false;
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnRecherhe");
  }
}

void Campaigns::PLPub_ColumnClick(CampaignEditor& editor, int column) {
  editor.sortedDown = editor.sortedColumn == column && !editor.sortedDown;
  editor.sortedColumn = column;
  SortOverview(editor);
}

void Campaigns::TakeOver(Station& station, CampaignEditor& editor) {
  TakeOverShownCampaign(station, editor);
  if (editor.PLPubVisible) {
    editor.PLPub = ReadOverview(station);
    SortOverview(editor);
  }
  if (!editor.gone && !editor.BtnAjouterEnabled) ShowPosition(station, editor);
}

void Campaigns::PLPub_DblClick(Station& station, CampaignEditor& editor, size_t line) {
  if (line >= editor.PLPub.size()) return;
  editor.fromOverview = true;
  ShowRecordOfCode(station, editor, ValInt(editor.PLPub[line].subItems[4]));
  editor.fromOverview = false;
}

bool Campaigns::ShowRecordOfCode(Station& station, CampaignEditor& editor, int64_t code) {
  try {
    const auto table = OpenCampaigns(station);
    const bool found = SeekCode(*table, code);
    if (found) {
      ShowRecord(station, *table, editor);
      ShowPosition(station, editor);
    }
    return found;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadFichePub");
    return false;
  }
}

}  // namespace zemo
