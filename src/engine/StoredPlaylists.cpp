#include "engine/StoredPlaylists.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engine/OperatorControls.h"
#include "engine/StoredListMerge.h"
#include "library/OnAirRows.h"
#include "library/TrackNeighboursTable.h"
#include "platform/Desktop.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "station/NewList.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr const char* kEveryDay = "JOURNALIER";
constexpr int kLabelWidth = 40;  // characters of Playlist.LIBELLE

// Voice tracks have no index: the table is walked.
bool FindVoiceTrack(Recordset& vt, int64_t code) {
  for (vt.MoveFirst(); !vt.Eof(); vt.MoveNext())
    if (vt.Int("CODE") == code) return true;
  return false;
}

// Nothing for a record that is gone.
std::optional<OnAirElement> StoredRow(Station& station, int64_t kind, int64_t record,
                                      bool lastPlayed) {
  const auto row = [&](const char* table, const auto& make) {
    const auto found = station.base.Table(table);
    return SeekCode(*found, record) ? std::optional<OnAirElement>(make(*found)) : std::nullopt;
  };
  if (kind > 0)
    return row("Discotheque", [=](const Recordset& card) { return MusicRow(card, lastPlayed); });
  switch (kind) {
    case Element::kJingle:
      return row("DiscothequeJingle", JingleRow);
    case Element::kSpot:
      return row("GrillePub", SpotRow);
    case Element::kNews:
      return row("GrillePub", NewsRow);
    case Element::kOther:
      return row("DiscothequeVirgule", OtherRow);
    case Element::kBeginExtract:
      return BeginExtractRow();
    case Element::kVoiceTrack: {
      const auto vt = station.base.Table("VT");
      if (!FindVoiceTrack(*vt, record)) return std::nullopt;
      OnAirElement track = VoiceTrackRow(*vt);
      track.madeFor = FindNeighbours(station.base.Db(), record);
      return track;
    }
    default:
      return std::nullopt;
  }
}

// Of a row as it is stored.
struct StoredPlace {
  int64_t DISCOTHEQUE = 0, FICHE = 0;
};

// Nothing for a row that is left out: one of another kind, or one whose file its table does not
// know (any more).
std::optional<StoredPlace> PlaceOf(Station& station, const OnAirElement& row) {
  const int32_t code = row.code;
  if (code > 0) return StoredPlace{code, code};
  const char* lookUp = nullptr;
  switch (code) {
    case Element::kJingle:
      lookUp = "SELECT Code FROM DiscothequeJingle WHERE FileName = ?";
      break;
    case Element::kSpot:
    case Element::kNews:
      lookUp = "SELECT Code FROM GRILLEPUB WHERE FileNameAudio = ?";
      break;
    case Element::kOther:
      lookUp = "SELECT Code FROM DiscothequeVirgule WHERE FileName = ?";
      break;
    case Element::kBeginExtract:
      return StoredPlace{code, code};
    case Element::kVoiceTrack:
      return StoredPlace{code, row.voiceTrack};
    default:
      return std::nullopt;
  }
  const auto found = station.base.Db().OpenRecordset(lookUp, {row.file});
  if (found->Eof()) return std::nullopt;
  return StoredPlace{code, found->Int("Code")};
}

// A step of the saving that fails by its own fault is logged and ends alone; those behind it go on.
template <typename Step>
bool TryStep(Station& station, Step step) {
  try {
    step();
    return true;
  } catch (const StoreError& error) {
    if (error.MayPass()) throw;
    LogCurrentException(station, "BtnSauve");
    return false;
  }
}

// CODE of the list; 0 for a new one that gets no head, so that its rows must not go to another.
// `stored`: whether the head is as the panel has it.
int32_t SaveHead(Station& station, bool& stored) {
  const StoredListEditor& editor = station.storedList;
  Database& db = station.base.Db();
  const std::string label = FirstCharacters(editor.ComboPLS.text, kLabelWidth);
  if (editor.LblCodePL != 0) {
    stored = TryStep(station, [&] {
      db.Execute(
          "UPDATE PLAYLIST SET LADATE = ?, LHEURE = ?, LIBELLE = ?, NOJINGLE = ? WHERE CODE = ?",
          {editor.LblDate, editor.ChHeure, label, editor.OptPls, editor.LblCodePL});
    });
    return editor.LblCodePL;
  }
  stored = TryStep(station, [&] {
    db.Execute("INSERT INTO PLAYLIST(LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES(?,?,?,?)",
               {editor.LblDate, editor.ChHeure, label, editor.OptPls});
  });
  return stored ? static_cast<int32_t>(db.LastInsertCode()) : 0;
}

void SaveRows(Station& station, int32_t listCode) {
  Database& db = station.base.Db();
  TryStep(station, [&] { db.Execute("DELETE * FROM Pls WHERE NUMPLS = ?", {listCode}); });
  for (const OnAirElement& row : station.PL) {
    TryStep(station, [&] {
      const std::optional<StoredPlace> place = PlaceOf(station, row);
      if (!place) return;
      db.Execute("INSERT INTO PLS(NUMPLS, DISCOTHEQUE, FICHE) VALUES(?,?,?)",
                 {listCode, place->DISCOTHEQUE, place->FICHE});
    });
  }
}

// Head and rows together or neither: what cannot be stored leaves the former list whole. What
// others store between the looking and the storing is looked at again. Whether the head is stored.
bool SaveList(Station& station, ListToStore& list) {
  for (;;) {
    list = MergeStoredList(station);
    if (!list.any) return false;
    Transaction transaction(station.base.Db());
    if (station.base.Db().ForeignCounter() != list.counter) continue;
    bool stored = false;
    const int32_t code = SaveHead(station, stored);
    if (code != 0 && list.rows) SaveRows(station, code);
    transaction.Commit();
    if (code != 0) station.storedList.LblCodePL = code;
    return stored;
  }
}

// Deletes the records of the voice tracks of a list that goes. Their sound files.
std::vector<std::string> DeleteVoiceTracks(Station& station, int32_t listCode) {
  const auto rows = station.base.Db().OpenRecordset(
      "SELECT FICHE FROM Pls WHERE NUMPLS = ? AND DISCOTHEQUE = -30", {listCode});
  std::vector<std::string> files;
  const auto vt = station.base.Table("VT");
  for (; !rows->Eof(); rows->MoveNext()) {
    if (!FindVoiceTrack(*vt, rows->Int("FICHE"))) continue;
    files.push_back(vt->Text("FILENAME"));
    vt->Delete();
  }
  return files;
}

// The files go behind the commit, so that a list that stays keeps its sound.
void DeleteList(Station& station, int32_t code) {
  Database& db = station.base.Db();
  Transaction transaction(db);
  const std::vector<std::string> voiceTracks = DeleteVoiceTracks(station, code);
  db.Execute("DELETE * FROM Playlist WHERE Code = ?", {code});
  db.Execute("DELETE * FROM Pls WHERE NUMPLS = ?", {code});
  transaction.Commit();
  SoundFiles& soundFiles = station.platform.soundFiles;
  for (const std::string& file : voiceTracks)
    if (soundFiles.Exists(file)) soundFiles.Remove(file);
}

// The list that the panel holds has its head in the base: it may have been deleted by now.
bool HasList(const StoredListEditor& editor) {
  const auto& items = editor.ComboPLS.items;
  return std::any_of(items.begin(), items.end(), [&](const StoredListEditor::Item& item) {
    return item.data == editor.LblCodePL;
  });
}

const StoredListEditor::Item* ChosenItem(const StoredListEditor::Combo& combo) {
  if (combo.index < 0 || combo.index >= static_cast<int>(combo.items.size())) return nullptr;
  return &combo.items[static_cast<size_t>(combo.index)];
}

}  // namespace

std::vector<OnAirElement> OnAir::StoredRows(Station& station, int32_t listCode, bool lastPlayed) {
  const auto stored = station.base.Db().OpenRecordset(
      "SELECT DISCOTHEQUE, FICHE FROM Pls WHERE NUMPLS = ? ORDER BY CODE", {listCode});
  std::vector<OnAirElement> rows;
  for (; !stored->Eof(); stored->MoveNext())
    if (auto row = StoredRow(station, stored->Int("DISCOTHEQUE"), stored->Int("FICHE"), lastPlayed))
      rows.push_back(std::move(*row));
  return rows;
}

void OnAir::LoadPlaylist(Station& station) {
  auto& combo = station.storedList.ComboPLS;
  combo.items.clear();
  combo.index = -1;
  try {
    const auto playlist = station.base.Table("Playlist");
    for (; !playlist->Eof(); playlist->MoveNext())
      combo.items.push_back(
          {Trim(playlist->Text("LIBELLE")), static_cast<int32_t>(playlist->Int("CODE"))});
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadPlaylist");
  }
}

void OnAir::ComboPLS_Click(Station& station) {
  StoredListEditor& editor = station.storedList;
  const StoredListEditor::Item* item = ChosenItem(editor.ComboPLS);
  if (!item) return;
  try {
    const auto playlist = station.base.Table("Playlist");
    const ListOrder order(station, ListOrder::Panel::kChanges);
    if (!SeekCode(*playlist, item->data)) return;
    const std::vector<OnAirElement> rows =
        StoredRows(station, static_cast<int32_t>(playlist->Int("CODE")), true);
    station.PL.Clear();
    for (const OnAirElement& row : rows) station.PL.Add(row);
    editor.ComboPLS.text = playlist->Text("LIBELLE");
    editor.LblDate = playlist->Text("LADATE");
    editor.ChHeure = playlist->Text("LHEURE");
    editor.OptPls = static_cast<int>(playlist->Int("NOJINGLE"));
    editor.LblCodePL = static_cast<int32_t>(playlist->Int("CODE"));
    KeepAsLoadedList(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "ComboPLS");
  }
  RefreshPlanTimes(station);
}

bool OnAir::SelectStoredList(Station& station, int32_t code) {
  LoadPlaylist(station);
  auto& combo = station.storedList.ComboPLS;
  for (size_t i = 0; i < combo.items.size(); ++i)
    if (combo.items[i].data == code) combo.index = static_cast<int>(i);
  ComboPLS_Click(station);
  return combo.index >= 0;
}

void OnAir::ComboPLS_Change(Station& station, const std::string& label) {
  station.storedList.ComboPLS.text = label;
}

void OnAir::ChHeure_Change(Station& station, const std::string& time) {
  station.storedList.ChHeure = time;
  RefreshPlanTimes(station);
}

void OnAir::OptPls_Click(Station& station, int option) {
  RecordActivity(station);
  station.storedList.OptPls = option;
}

void OnAir::PickListDay(Station& station, const LocalDateTime& day) {
  RecordActivity(station);
  station.storedList.LblDate = DateText(day);
}

void OnAir::LblDate_RightClick(Station& station) {
  RecordActivity(station);
  station.storedList.LblDate = kEveryDay;
}

bool OnAir::TimeMissing(const StoredListEditor& editor) {
  return editor.ChHeure.empty() || editor.ChHeure == StoredListEditor().ChHeure;
}

bool OnAir::DateMissing(const StoredListEditor& editor) {
  return editor.LblDate.empty() || editor.LblDate == StoredListEditor().LblDate;
}

OnAir::ListDoubt OnAir::DoubtOf(const StoredListEditor& editor) {
  if (TimeMissing(editor) && DateMissing(editor)) return ListDoubt::kNoMoment;
  if (!IsClockTime(editor.ChHeure)) return ListDoubt::kNoTime;
  const bool date = editor.LblDate == kEveryDay || !DateKeyOfText(editor.LblDate).empty();
  return date ? ListDoubt::kNone : ListDoubt::kNoDate;
}

bool OnAir::BtnSauve_Click(Station& station) {
  station.storedList.saving = true;
  station.platform.loop.Yield();
  const MainTimerHold hold(station);
  bool saved = false;
  try {
    ListToStore list;
    saved = SaveList(station, list);
    LoadPlaylist(station);
    saved = saved && HasList(station.storedList);
    if (saved) KeepStoredList(station, list);
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnSauve",
                        station.storedList.LblCodePL != 0 ? "the stored list stays as it was"
                                                          : "the list is not stored");
  }
  station.storedList.saving = false;
  return saved;
}

void OnAir::BtnNew_Click(Station& station) {
  const ListOrder order(station, ListOrder::Panel::kChanges);
  BeginNewList(station);
}

void OnAir::ComboPLS_KeyDelete(Station& station) {
  const StoredListEditor::Item* item = ChosenItem(station.storedList.ComboPLS);
  if (!item) return;
  if (station.platform.messages.Show("Suppresion", "Supprimer cette playlist",
                                     Buttons::kOkCancel) != Answer::kOk)
    return;
  const int32_t code = item->data;
  try {
    DeleteList(station, code);
    ForgetListOrder(station);  // the voice tracks of its rows are gone
    LoadPlaylist(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "ComboPLS");
  }
}

}  // namespace zemo
