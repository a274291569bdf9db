#include "engine/OperatorControls.h"

#include <memory>
#include <utility>

#include "engine/LiveMode.h"
#include "engine/StartStop.h"
#include "engine/StoredPlaylists.h"
#include "library/OnAirRows.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "scheduling/PercentageRequest.h"
#include "scheduling/SkeletonDialogue.h"
#include "settings/SideFiles.h"
#include "station/OperatorWords.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "voicetrack/VoiceTrackScreen.h"

namespace zemo {

namespace {

void SetAutomatic(Station& station, bool automatic) {
  EngineState& engine = station.engine;
  const bool changed = engine.IsAutomatic != automatic;
  engine.IsAutomatic = automatic;
  if (changed) station.events.Engine(engine.IsRunning, automatic);
}

void CloseFrames(Station& station) {
  station.browse.open = false;
  station.storedList.open = false;
  station.gridFrame.open = false;
  station.gridFrame.forInsertion = false;
}

void EnterAutomatic(Station& station) {
  CloseFrames(station);
  SetAutomatic(station, true);
  station.engine.NoJingleActive = false;
  station.engine.CheckNoJingle = false;
  station.engine.OptionDirect = false;
  station.engine.HotKeysArmed = true;
}

void EnterLive(Station& station) {
  CloseFrames(station);
  SetAutomatic(station, false);
  station.browse.open = true;
  station.storedList.open = true;
  station.engine.HotKeysArmed = false;
  OnAir::LoadPlaylist(station);
  OnAir::MenuLive_Click(station, BrowseList::kMusic);
}

void ShowDayGrid(Station& station) {
  CloseFrames(station);
  station.gridFrame.open = true;
  station.gridFrame.previewOffered = true;
}

const char* LibraryTable(BrowseList list) {
  switch (list) {
    case BrowseList::kMusic:
      return "Discotheque";
    case BrowseList::kJingles:
      return "DiscothequeJingle";
    case BrowseList::kSpots:
      return "GrillePub";
    case BrowseList::kOthers:
      return "DiscothequeVirgule";
    case BrowseList::kToday:
      break;
  }
  return nullptr;
}

// Null: the list is not one of the library, or its table has not the record.
std::unique_ptr<Recordset> FindInLibrary(Station& station, BrowseList list, int32_t code) {
  const char* table = LibraryTable(list);
  if (!table) return nullptr;
  auto record = station.base.Table(table);
  return SeekCode(*record, code) ? std::move(record) : nullptr;
}

OnAirElement RowOfBrowseList(BrowseList list, const Recordset& record) {
  switch (list) {
    case BrowseList::kMusic:
      return MusicRow(record);
    case BrowseList::kJingles:
      return JingleRow(record);
    case BrowseList::kSpots:
      return record.Bool("PUB") ? SpotRow(record) : NewsRow(record);
    case BrowseList::kOthers:
      return OtherRow(record);
    case BrowseList::kToday:
      break;
  }
  return {};
}

bool ValidRow(const Station& station, int row) {
  return row >= 1 && row <= station.PL.Count();
}

// Asks first; the row itself goes in any case. True when the record has gone.
bool DeleteVoiceTrackRecord(Station& station, const OnAirElement& row) {
  const std::string question = "Delete Voice Track \n" + row.secondLine;
  if (station.platform.messages.Show("Alerte", question, Buttons::kYesNo) != Answer::kYes)
    return false;
  Transaction transaction(station.base.Db());
  station.base.Db().Execute("DELETE * FROM VT WHERE Code = ?", {row.voiceTrack});
  transaction.Commit();
  if (station.platform.soundFiles.Exists(row.file)) station.platform.soundFiles.Remove(row.file);
  return true;
}

void CheckStartStop(Station& station, bool on) {
  station.engine.MnuStartStop = on;
  station.platform.localValues.Set("StartAndStop", on ? "True" : "False");
}

void CheckProduction(Station& station, bool on) {
  station.platform.localValues.Set("PCProduction", on ? "True" : "False");
  LoadMachineState(station);
}

void CheckJingles(Station& station, bool on) {
  station.engine.CheckNoJingle = on;
  station.engine.NoJingleActive = on;
}

}  // namespace

void OnAir::RecordActivity(Station& station) {
  station.engine.LastActivityTimer = station.Timer();
  station.base.CheckCnf();
}

void OnAir::Toolbar_ButtonClick(Station& station, Toolbar button) {
  RecordActivity(station);
  switch (button) {
    case Toolbar::kAutomatic:
      EnterAutomatic(station);
      break;
    case Toolbar::kLive:
      EnterLive(station);
      break;
    case Toolbar::kDayGrid:
      ShowDayGrid(station);
      break;
    case Toolbar::kStart:
      StartStopZemoRadio(station, true);
      break;
    case Toolbar::kStop:
      StartStopZemoRadio(station, false);
      break;
  }
}

void OnAir::ReturnToAutomatic(Station& station) {
  CloseFrames(station);
  if (station.engine.CheckNoJingle) CheckJingles(station, false);  // with what the box had stopped
  SetAutomatic(station, true);
}

void OnAir::AskForNext(Station& station) {
  station.engine.NextRequested = true;
  station.engine.FittingActive = false;
}

void OnAir::CmdStop_Click(Station& station) {
  RecordActivity(station);
  AskForNext(station);
}

void OnAir::CmdRequette_Click(Station& station) {
  RecordActivity(station);
  if (station.storedList.open) return Skeleton::Open(station);
  const ListOrder order(station);
  AutomaticRequest(station);
}

void OnAir::CmdMarqueurExtrait_Click(Station& station, int selectedRow) {
  RecordActivity(station);
  const ListOrder order(station);
  if (ValidRow(station, selectedRow))
    station.PL.Insert(selectedRow, BeginExtractRow());
  else
    station.PL.Add(BeginExtractRow());
  RefreshPlanTimes(station);
}

bool OnAir::SetCheck(Station& station, std::string_view name, bool on) {
  RecordActivity(station);
  EngineState& engine = station.engine;
  try {
    if (EqualNoCase(name, "OptionDirect"))
      engine.OptionDirect = on;
    else if (EqualNoCase(name, "CheckNoJingle"))
      CheckJingles(station, on);
    else if (EqualNoCase(name, "CheckExtrait"))
      engine.CheckExtrait = on;
    else if (EqualNoCase(name, "MnuStartStop"))
      CheckStartStop(station, on);
    else if (EqualNoCase(name, "MnuPCProduction"))
      CheckProduction(station, on);
    else
      return false;
  } catch (const std::exception&) {
    LogCurrentException(station, std::string(name));
  }
  return true;
}

std::optional<OnAirElement> OnAir::RowFromLibrary(Station& station, BrowseList list, int32_t code) {
  try {
    const auto record = FindInLibrary(station, list, code);
    if (record) return RowOfBrowseList(list, *record);
  } catch (const std::exception&) {
    LogCurrentException(station, "ListRech");
  }
  return std::nullopt;
}

bool OnAir::DropFromLibrary(Station& station, BrowseList list, int32_t code, int row) {
  RecordActivity(station);
  std::optional<OnAirElement> element = RowFromLibrary(station, list, code);
  if (!element) return false;
  const ListOrder order(station);
  if (row < 1)
    station.PL.Add(std::move(*element));
  else
    station.PL.Insert(row, std::move(*element));
  RefreshPlanTimes(station);
  return true;
}

void OnAir::PL_MouseDown(Station& station) {
  RecordActivity(station);
  station.engine.ActiveList = "PL";
}

int32_t OnAir::CardOfRow(const Station& station, int row) {
  const bool opens = ValidRow(station, row) && !station.lists.Locked;
  return opens ? station.PL.Row(row).code : 0;
}

std::vector<std::string> OnAir::PrintedList(Station& station) {
  const int langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  std::vector<std::string> lines;
  for (const OnAirRow& row : station.PL)
    lines.push_back(ColumnText(row, Col::kPlanned) + "  " + ColumnText(row, Col::kLength) + "  " +
                    TitleInWords(row.code, TitleOf(row), langue));
  return lines;
}

void OnAir::PL_DragDrop(Station& station, int fromRow, int toRow) {
  RecordActivity(station);
  if (!ValidRow(station, fromRow)) return;
  ListOrder order(station);
  const int64_t key = station.PL.Row(fromRow).key;
  OnAirElement element = station.PL.Row(fromRow).AsElement();
  station.PL.Remove(fromRow);
  order.Moved(key, station.PL.Insert(toRow, std::move(element)).key);
  RefreshPlanTimes(station);
}

bool OnAir::DeletingAsks(const Station& station, int row) {
  return ValidRow(station, row) && station.PL.Row(row).code == Element::kVoiceTrack;
}

void OnAir::PL_KeyDelete(Station& station, int row) {
  RecordActivity(station);
  if (!ValidRow(station, row)) return;
  const int64_t key = station.PL.Row(row).key;
  bool recordGone = false;
  if (DeletingAsks(station, row)) {
    try {
      const OnAirElement deleted = station.PL.Row(row).AsElement();  // writing can take rows off
      recordGone = DeleteVoiceTrackRecord(station, deleted);
    } catch (const std::exception&) {
      LogCurrentException(station, "PL");
    }
  }
  // The question can have let the tick take rows off the head.
  ListOrder order(station);
  if (recordGone) order.Forget(key);
  if (const int now = station.PL.RowOfKey(key); now > 0) station.PL.Remove(now);
  RefreshPlanTimes(station);
}

void OnAir::BntVoiceTrack_Click(Station& station, VoiceTrackEditor& editor, int row) {
  RecordActivity(station);
  VoiceTracks::Open(station, editor, row);
}

void OnAir::PL_RightClick(Station& station, int row) {
  RecordActivity(station);
  if (!ValidRow(station, row)) return;
  const ListOrder order(station);
  station.PL.Remove(row);
  RefreshPlanTimes(station);
}

}  // namespace zemo
