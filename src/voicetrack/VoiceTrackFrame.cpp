// Opening on a row of the list, and closing.
#include <algorithm>
#include <optional>
#include <utility>

#include "library/LibraryHandler.h"
#include "platform/Desktop.h"
#include "platform/PreviewChain.h"
#include "platform/SoundLengths.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

constexpr int32_t kDayMs = 86400000, kDaySec = kDayMs / 1000;

// Of a number of the base, which may be any: what is reckoned with it stays a number of ms.
int32_t Between(int64_t least, int64_t number, int64_t most) {
  return static_cast<int32_t>(std::clamp(number, least, most));
}

const OnAirRow* RowAt(const Station& station, int row) {
  return row >= 1 && row <= station.PL.Count() ? &station.PL.Row(row) : nullptr;
}

void TakeBefore(Station& station, VoiceTrackEditor& editor, const OnAirRow* row) {
  if (!row) return;
  editor.beforeKey = row->key;
  editor.FileAvant = row->file;
  editor.Avant = TitleOf(*row);
  editor.PS1 = Between(0, row->exitMs.value_or(0), kDayMs);
  if (editor.PS1 == 0) editor.PS1 = Between(0, station.base.CnfInt(Cnf::kPmixDef), kDayMs);
  editor.InfoPS = "PS = " + SecondsText(editor.PS1);
  editor.beforeLengthMs = station.platform.lengths.LengthMs(row->file);
}

// The planned begin is that of the element after; at the list's end that of the track's place.
void TakeAfter(Station& station, VoiceTrackEditor& editor, const OnAirRow* row,
               const OnAirRow* before) {
  std::optional<double> plannedMs;
  if (before && before->plannedMs) plannedMs = *before->plannedMs + before->AirMs();
  if (row) {
    editor.FileApres = row->file;
    editor.afterLengthMs = station.platform.lengths.LengthMs(row->file);
    editor.Apres = TitleOf(*row);
    editor.LblIntro = Between(0, row->introSec.value_or(0), kDaySec);
    editor.Intro = "Intro = " + std::to_string(editor.LblIntro);
    plannedMs = row->plannedMs;
  }
  if (plannedMs) editor.Diffusion = "Broadcasting at " + PlannedTimeText(*plannedMs);
}

// False: the record is gone.
bool TakeRecord(Station& station, VoiceTrackEditor& editor, int64_t code) {
  const auto vt = station.base.Db().OpenRecordset("SELECT * From VT Where Code = ?", {code});
  if (vt->Eof()) return false;
  editor.LblCodeVT = static_cast<int32_t>(vt->Int("CODE"));
  editor.FileVoiceTrack = Trim(vt->Text("FILENAME"));
  editor.LblPositionVT = Between(-kDayMs, vt->Int("START"), kDayMs);
  editor.CheckCut = vt->Bool("CUT");
  VoiceTracks::PointSortie_Change(editor, Between(0, vt->Int("POINTSORTIE"), kDayMs));
  return true;
}

void AddRecord(Station& station, VoiceTrackEditor& editor) {
  Database& db = station.base.Db();
  Transaction transaction(db);
  db.Execute(
      "INSERT INTO VT(FILENAME, LIBELLE, CUT, START, DUREE, POINTSORTIE) VALUES(?,?,?,?,?,?)",
      {"", "", 0, 0, 0, 0});
  transaction.Commit();
  editor.LblCodeVT = static_cast<int32_t>(db.LastInsertCode());
  VoiceTracks::PointSortie_Change(editor, 0);
}

}  // namespace

Folder& VoiceTracks::TrackFolder(Station& station) {
  return station.platform.stationFolder.Subfolder("VoiceTrack");
}

std::string VoiceTracks::TrackName(int32_t code) {
  constexpr size_t kDigits = 8;
  const std::string digits = std::to_string(code);
  return std::string(kDigits - std::min(digits.size(), kDigits), '0') + digits + ".Wav";
}

std::string VoiceTracks::LevelName(int32_t code) {
  return "Level-" + TrackName(code);
}

std::string VoiceTracks::UntouchedName(int32_t code) {
  return "Untouched-" + TrackName(code);
}

std::string VoiceTracks::PathInFolder(Station& station, const std::string& name) {
  return station.platform.stationFolder.Path() + "VoiceTrack/" + name;
}

void VoiceTracks::Tell(Station& station, const std::string& text) {
  station.platform.messages.Show("Alerte", text, Buttons::kOk);
}

void VoiceTracks::HandleTold(Station& station, const char* routine, const char* message,
                             const std::function<void()>& work) {
  std::string fault;
  HandleControl(station, routine, [&] {
    try {
      work();
    } catch (const std::exception& error) {
      fault = error.what();
      throw;
    }
  });
  if (!fault.empty()) Tell(station, message + fault);
}

TrackState VoiceTracks::StateOf(const VoiceTrackEditor& editor) {
  return {editor.FileVoiceTrack, editor.LblPositionVT, editor.PointSortie, editor.CheckCut,
          editor.takes};
}

bool VoiceTracks::IsUnsaved(const VoiceTrackEditor& editor) {
  return editor.open && !Trim(editor.FileVoiceTrack).empty() && StateOf(editor) != editor.stored;
}

void VoiceTracks::Open(Station& station, VoiceTrackEditor& editor, int row) {
  if (editor.open) Form_Unload(station, editor);
  const OnAirRow* chosen = RowAt(station, row);
  if (!chosen) return;
  HandleTold(station, "BntVoiceTrack", kNotOpened, [&] {
    editor = VoiceTrackEditor();
    TakeMachineValues(station, editor);
    const bool isTrack = chosen->code == Element::kVoiceTrack;
    const OnAirRow* before = isTrack ? RowAt(station, row - 1) : chosen;
    TakeBefore(station, editor, before);
    const OnAirRow* after = RowAt(station, row + 1);
    TakeAfter(station, editor, after, before);
    editor.madeFor = NeighboursOf(before, after);
    if (isTrack) editor.rowKey = chosen->key;
    if (!isTrack || !TakeRecord(station, editor, chosen->voiceTrack)) AddRecord(station, editor);
    editor.counter = station.base.Db().ForeignCounter();
    TakeTrackFile(station, editor);
    editor.stored = StateOf(editor);
    editor.open = true;
  });
  if (editor.open) OpenDevices(station, editor);
}

// Each part for itself: what cannot be kept does not keep the rest from being ended.
void VoiceTracks::Form_Unload(Station& station, VoiceTrackEditor& editor) {
  HandleControl(station, "VoiceTrack", [&] { StopTrack(station, editor); });
  HandleControl(station, "VoiceTrack", [&] {
    EndJoin(station, editor);
    if (PreviewChain* preview = station.platform.preview) preview->Sound().SetObserver(nullptr);
  });
  HandleControl(station, "VoiceTrack", [&] { CloseDevices(station); });
  HandleControl(station, "VoiceTrack", [&] { ForgetUntouched(station, editor); });
  HandleControl(station, "VoiceTrack", [&] { KeepMachineValues(station, editor); });
  editor = VoiceTrackEditor();
}

}  // namespace zemo
