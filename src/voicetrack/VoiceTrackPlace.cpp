// Where the track stands: in the element before, and in the list.
#include <optional>
#include <string>
#include <utility>

#include "library/LibraryHandler.h"
#include "library/OnAirRows.h"
#include "library/TrackNeighboursTable.h"
#include "station/ListUndo.h"
#include "station/PlanTimes.h"
#include "station/RecordMerge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/StoreError.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackScreen.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {

constexpr int32_t kMostBesideIntroMs = 30000;  // that a track may be longer than the intro

// The row that the track has or gets, from 1; 0: there is no place for it any more.
struct TrackPlace {
  int row = 0;
  bool own = false;  // its row stands there already
};

TrackPlace PlaceInList(const Station& station, const VoiceTrackEditor& editor) {
  if (const int own = station.PL.RowOfKey(editor.rowKey); own > 0) return {own, true};
  const int before = station.PL.RowOfKey(editor.beforeKey);
  return {before > 0 ? before + 1 : 0, false};
}

RecordFields FieldsOf(TrackState& state) {
  return {{"For.FileVoiceTrack", &state.file},
          {"For.LblPositionVT", &state.positionMs},
          {"For.PointSortie", &state.exitMs},
          {"CheckCut.1", &state.cut}};
}

std::string WordOf(Station& station, const char* control) {
  const char* word =
      FindWord(VoiceTrackCaptions(), control, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
  return word ? word : control;
}

// What others have made of the record; none where it is gone, and is made anew.
std::optional<TrackState> ReadState(Station& station, const VoiceTrackEditor& editor) {
  const auto vt =
      station.base.Db().OpenRecordset("SELECT * FROM VT WHERE CODE = ?", {editor.LblCodeVT});
  if (vt->Eof()) return std::nullopt;
  return TrackState{Trim(vt->Text("FILENAME")), static_cast<int32_t>(vt->Int("START")),
                    static_cast<int32_t>(vt->Int("POINTSORTIE")), vt->Bool("CUT"), 0};
}

// The screen's fields become what is to be stored, asked for where both changed one. False: nothing
// is to be stored. Where nobody else has stored anything it looks no further.
bool MergeRecord(Station& station, VoiceTrackEditor& editor) {
  RecordMerge merge;
  for (;;) {
    if (station.base.Db().ForeignCounter() == editor.counter) return true;
    auto theirs = ReadState(station, editor);
    if (!theirs) return true;
    TrackState mine = VoiceTracks::StateOf(editor);
    const auto step =
        merge.Next(station, {FieldsOf(editor.stored), FieldsOf(*theirs), FieldsOf(mine)},
                   [&](const char* control) { return WordOf(station, control); });
    if (step == RecordMerge::Step::kLeave) return false;
    if (step == RecordMerge::Step::kReadAgain) continue;
    editor.FileVoiceTrack = mine.file;
    editor.LblPositionVT = mine.positionMs;
    editor.CheckCut = mine.cut;
    VoiceTracks::PointSortie_Change(editor, mine.exitMs);
    return true;
  }
}

void WriteRecord(Station& station, const VoiceTrackEditor& editor) {
  Database& db = station.base.Db();
  Transaction transaction(db);
  const Values record = {editor.FileVoiceTrack,    "",
                         editor.CheckCut ? -1 : 0, editor.LblPositionVT,
                         editor.trackLengthMs,     editor.PointSortie,
                         editor.LblCodeVT};
  const bool there =
      !db.OpenRecordset("SELECT CODE FROM VT WHERE CODE = ?", {editor.LblCodeVT})->Eof();
  db.Execute(there ? "UPDATE VT SET FILENAME = ?, Libelle = ?, CUT = ?, START = ?, DUREE = ?, "
                     "POINTSORTIE = ? WHERE CODE = ?"
                   : "INSERT INTO VT(FILENAME, LIBELLE, CUT, START, DUREE, POINTSORTIE, CODE) "
                     "VALUES(?,?,?,?,?,?,?)",
             record);
  transaction.Commit();
}

void WriteRow(Station& station, VoiceTrackEditor& editor, const TrackPlace& place) {
  const auto vt =
      station.base.Db().OpenRecordset("SELECT * FROM VT WHERE CODE = ?", {editor.LblCodeVT});
  if (vt->Eof()) return;
  ListOrder order(station);
  const int64_t former = std::exchange(editor.rowKey, 0);
  if (place.own) station.PL.Remove(place.row);
  OnAirElement track = VoiceTrackRow(*vt);
  track.madeFor = editor.madeFor;
  editor.rowKey = station.PL.Insert(place.row, std::move(track)).key;
  if (place.own) order.Moved(former, editor.rowKey);
  RefreshPlanTimes(station);
}

// A table that is damaged stays so: the track is stored without them. What may pass is thrown, and
// the track is to be stored again.
void KeepNeighbours(Station& station, const VoiceTrackEditor& editor) {
  try {
    StoreNeighbours(station.base, editor.LblCodeVT, editor.madeFor);
  } catch (const StoreError& error) {
    if (error.MayPass()) throw;
    LogCurrentException(station, "BtnSave");
  }
}

}  // namespace

void VoiceTracks::PointSortie_Change(VoiceTrackEditor& editor, int32_t ms) {
  editor.PointSortie = ms;
  editor.LblPS = SecondsText(ms);
}

void VoiceTracks::LblPositionVT_Change(VoiceTrackEditor& editor, int32_t ms) {
  editor.LblPositionVT = ms;
}

void VoiceTracks::CheckCut_Click(VoiceTrackEditor& editor, bool ticked) {
  editor.CheckCut = ticked;
}

void VoiceTracks::CmdVTToIntro_Click(Station& station, VoiceTrackEditor& editor) {
  if (editor.LblIntro <= 0) return Tell(station, kNoIntro);
  HandleControl(station, "CmdVTToIntro", [&] { ReadTrackLength(station, editor); });
  const int64_t introMs = int64_t{editor.LblIntro} * 1000;
  const int64_t besideMs = editor.trackLengthMs - introMs;
  if (besideMs <= 0 || besideMs >= kMostBesideIntroMs) return Tell(station, kDoesNotFit);
  editor.LblPositionVT = ExitOfBefore(editor) - static_cast<int32_t>(besideMs);
  Tell(station, kFitted);
}

void VoiceTracks::BtnSave_Click(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "BtnSave", [&] {
    if (IsRecording(station)) StopTrack(station, editor);  // what is stored has its length
    if (Trim(editor.FileVoiceTrack).empty()) return;
    const TrackPlace place = PlaceInList(station, editor);
    if (place.row == 0) return Tell(station, kNoPlace);
    if (!MergeRecord(station, editor)) return;
    ReadTrackLength(station, editor);
    WriteRecord(station, editor);
    WriteRow(station, editor, place);
    KeepNeighbours(station, editor);
    editor.stored = StateOf(editor);
    editor.counter = station.base.Db().ForeignCounter();
  });
}

}  // namespace zemo
