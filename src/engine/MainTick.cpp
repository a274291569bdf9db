// The tick is the sequence in RunTick, read from top to bottom; the order is part of the behaviour.
// Invariants:
// 1. It never nests: a tick that comes due while one waits (drain, overlap) is dropped.
// 2. Slot 0 is on air exactly when its channel is not done: CurrentChannel is derived anew by each
//    tick, and PlayWave's during an overlap.
// 3. StartNextNow is only ever set here and at the start; PlayWave alone clears it.
// 4. Whatever the tick asks of the base, and whatever orders ask of it up to the next tick, waits
//    kTickWaitMs in all for another process's lock.
// 5. A fault of one step is logged and costs that step; steps 19 and 20 run all the same.
#include "engine/MainTick.h"

#include <algorithm>
#include <string>
#include <type_traits>

#include "engine/BreakService.h"
#include "engine/DayAndHour.h"
#include "engine/ElementOnAir.h"
#include "engine/ElementPlayback.h"
#include "engine/EmergencyAir.h"
#include "engine/ExternalTriggers.h"
#include "engine/GridUpkeep.h"
#include "engine/HeldKeys.h"
#include "engine/HourPip.h"
#include "engine/KeptPosition.h"
#include "engine/ListUpkeep.h"
#include "engine/NextUp.h"
#include "engine/OperatorControls.h"
#include "engine/ScreenSaver.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "engine/TakeOvers.h"
#include "engine/TickMoment.h"
#include "engine/TimedStartStop.h"
#include "engine/UnplayableRows.h"
#include "engine/VoiceTrackOnAir.h"
#include "library/KnownCards.h"
#include "library/OnAirRows.h"
#include "platform/Desktop.h"
#include "reports/AirWrites.h"
#include "reports/KnownReport.h"
#include "reports/ReportPurge.h"
#include "reports/RollingReport.h"
#include "scheduling/JingleSelection.h"
#include "settings/SideFiles.h"
#include "station/BaseFiles.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int64_t kBaseLookMs = 2000, kMostBasePauseMs = 60000;
constexpr int64_t kLibraryLookMs = 200;
constexpr int kSlicesATick = 3;  // of some 3 ms each
constexpr double kAwayFromExitMs = 1000;
constexpr double kNearExitMs = 300;  // this tick starts the next element, or one of the next two

// --- 0 to 5: inputs and clock ---

void PollOpenInputs(Station& station) {
  if (station.engine.SerialInputOpen) PollInputs(station);
}

void ServeSatelliteButton(Station& station) {
  if (station.engine.joystickLamp == JoystickLamp::kSatellite) PrepareReturnFromSatellite(station);
}

// In live mode the first break of the day's grid that is still to come.
std::string NextBreakText(const Station& station, const Moment& at) {
  const DayGrid& grid = station.GPubJour;
  const int row = NextBreakRow(grid, at.hourMinute);
  if (row == 0) return {};
  return grid.Cell(row, GridCol::kMoment) + " >> " + grid.Cell(row, GridCol::kType) + " - " +
         grid.Cell(row, GridCol::kLength);
}

void TellDay(Station& station, const Moment& at) {
  if (station.engine.IsAutomatic) {
    station.notices.day = LongDateText(at.now, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
  } else if (station.GPubJour.RowCount() > 0 && at.now.second % 3 == 0) {
    const std::string next = NextBreakText(station, at);
    if (!next.empty()) station.notices.day = next;
  }
}

// --- 14: the stopped branch ---

void DrainOutput(Station& station, Moment& at) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  engine.DrainPending = true;
  engine.DrainStartTimer = at.timer;
  WriteZemoOnOff(station, '0');
  WaitSeconds(station, engine.BufferOffsetSec + 0.5F);
  at.Read(station);
  engine.DrainPending = false;
  if (engine.TopagePending) {
    station.platform.clipboard.SetText("Topage");
    WriteCheckTopage(station);
  }
  sound.Stop();
  sound.Close();
  for (int slot = 0; slot < kSlots; ++slot) sound.SetFileName(slot, "");
  // Written false without a file: the drain is done, and is not seen again until the output runs.
  for (int slot = 0; slot < kSlots; ++slot) sound.SetChannelDone(slot, false);
}

void ServeStopped(Station& station, Moment& at) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  if (engine.NextRequested) {
    sound.FadeOut(engine.CurrentChannel, static_cast<int>(station.base.CnfInt(Cnf::kFadeOut)));
    engine.NextRequested = false;
  }
  if (sound.ChannelDone(0) && sound.ChannelDone(1)) DrainOutput(station, at);
  if (engine.JoystickInUse || engine.SerialInputOpen) JoystickButtonDown(station, 0);
  PrepareLocalProgramme(station, at);
  if (engine.TopagePending) AwaitHandBack(station);
}

// --- 17 and 18: pip and mode ---

void ServePip(Station& station, const Moment& at) {
  ServeHourPip(station, at.now);
}

void ServeLiveMode(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ProgressPercent <= 50 || !station.PL.Empty()) return;
  if (engine.OptionDirect)
    StartStopZemoRadio(station, false);
  else
    OnAir::ReturnToAutomatic(station);
}

void ForgetDrain(Station& station) {
  station.engine.DrainPending = false;
}

// --- 19 and 20: the rule that starts the next element ---

void DecideStart(Station& station) {
  EngineState& engine = station.engine;
  if (NothingOnAir(station)) engine.StartNextNow = true;
  if (engine.NextRequested)
    station.Sound().FadeOut(engine.CurrentChannel,
                            static_cast<int>(station.base.CnfInt(Cnf::kFadeOut)));
  const bool exitReached = static_cast<double>(engine.MixPointMs) + engine.ElementPositionMs >=
                           static_cast<double>(engine.ElementLengthMs);
  if (exitReached || engine.NextRequested) engine.StartNextNow = true;
}

void PutJinglesBefore(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  FindJingleBeforeTitle(station, station.PL.Row(1).code);
  FindGenreJingle(station, station.PL.Row(1).genre);
  const int64_t gapMinutes = station.base.CnfInt(Cnf::kJingles);
  if (!GuardIsAhead(at.timer, engine.LastJingleTimer) &&
      (at.timer - engine.LastJingleTimer) / 60 <= static_cast<float>(gapMinutes))
    return;
  engine.LastJingleTimer = at.timer;
  if (gapMinutes > 0) FindJingle(station, false, 0);
}

void StartNext(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.IsRunning || !engine.StartNextNow || station.PL.Empty()) return;
  if (!engine.keptAir.from) PutJinglesBefore(station, at);
  const OnAirElement played = PlayFirstRow(station);
  if (!engine.StartNextNow) NoteRowSounds(station);
  station.notices.titleOnAir = TitleOf(played);
  if (played.AnnouncesExtracts()) engine.CheckExtrait = true;
  engine.ElementPositionMs = 0;
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) + engine.ElementLengthMs;
  RefreshPlanTimes(station);
}

// --- behind the start: what may wait for the base ---

bool AboutToStart(const Station& station) {
  return station.engine.IsRunning && !station.PL.Empty() &&
         (NothingOnAir(station) || MsToExitPoint(station) < kNearExitMs);
}

bool AwayFromExit(const Station& station) {
  return !station.engine.IsRunning || NothingOnAir(station) ||
         MsToExitPoint(station) >= kAwayFromExitMs;
}

// A commit waits for the disk: not where an element is about to begin.
void WriteKept(Station& station) {
  if (AwayFromExit(station)) WriteKeptSlice(station);
}

// A share that came back, a file that was replaced: until then the air goes on by what is in
// memory. One that fails again and again is looked at less and less.
void LookForLostBase(Station& station) {
  EngineState& engine = station.engine;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  if (nowMs < engine.baseLookMs) return;
  engine.baseLookMs = nowMs + engine.basePauseMs;
  const bool opened = OpenLostBase(station);
  engine.basePauseMs = opened ? std::min(2 * engine.basePauseMs, kMostBasePauseMs) : kBaseLookMs;
  if (!opened) return;
  station.events.Base("opened");
  TakeUpOpenedBase(station);
}

void ServeKnownReport(Station& station) {
  PurgeReportOnceKnown(station);
  ExportReportOnceKnown(station);
}

// True where something is left to be read.
bool ReadASlice(Station& station, bool cardsFirst) {
  if (cardsFirst && ReadCardsAhead(station)) return true;
  if (ReadReportAhead(station)) return true;
  ServeKnownReport(station);
  return !cardsFirst && ReadCardsAhead(station);
}

// Some slices a tick while there is something to read, else a look for others' writes: a request
// finds the report and the library in memory then. The last one is the library's first: others may
// write faster than a long report is read.
void ReadAhead(Station& station) {
  EngineState& engine = station.engine;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  if (nowMs < engine.libraryLookMs || !AwayFromExit(station)) return;
  bool left = true;
  for (int slice = 0; slice < kSlicesATick && left; ++slice) {
    if (slice > 0) station.platform.loop.Yield();
    left = ReadASlice(station, slice == kSlicesATick - 1);
  }
  if (!left) engine.libraryLookMs = nowMs + kLibraryLookMs;
}

// --- the sequence ---

// The guard of every step: its fault is logged, tick after tick the same one only once a minute,
// and costs this step alone. Events served during the step can have changed the settings and taken
// time.
template <typename Work>
void Guarded(Station& station, Moment& at, Work step) {
  const uint64_t served = station.platform.loop.EventsServed();
  try {
    if constexpr (std::is_invocable_v<Work, Station&>)
      step(station);
    else
      step(station, at);
  } catch (const std::exception& error) {
    if (!LoggedLately(station, error.what(), kSameErrorMs))
      LogCurrentException(station, "MainTimer");
  }
  if (station.platform.loop.EventsServed() == served) return;
  station.base.CheckCnf();
  at.Read(station);
}

void RunTick(Station& station) {
  const EngineState& engine = station.engine;
  Moment at(station, engine.lastTickTime);
  station.engine.lastTickTime = at.time;
  const auto step = [&](auto work) { Guarded(station, at, work); };
  // 1, 3 and 9 are the screen's: its lights and its mode follow from the state.
  step(PollOpenInputs);        // 0
  step(ServeSatelliteButton);  // 2
  step(ServeKeys);             // 4
  step(TellDay);               // 5
  step(LookForDayTimes);       // 6
  step(ServeTimedStart);       // 7
  step(ServeTopageTimes);      // 8
  step(ReadElementOnAir);      // 10
  step(ServeExtractEnd);       // 11
  step(CountProgress);         // 12
  step(CountIntro);            // 13
  if (!engine.IsRunning) {
    step(ServeStopped);  // 14
    step(ServeGridSignalAtRest);
  } else {
    step(ServeIntroOverlay);  // 15
    step(ServeTimedStop);     // 16
    if (at.endsTick) return;
    step(ServeBreaks);
    step(ServePip);            // 17
    if (engine.IsAutomatic) {  // 18
      step(FitEndOfHour);
      step(ServeDayChange);
      step(WatchPlaylists);
      step(ServeNewHour);
      step(RebuildGrid);
      step(Refill);
      step(ServeVoiceTrack);
    } else {
      step(ServeLiveMode);
    }
    step(ForgetDrain);
  }
  step(DecideStart);       // 19
  step(StartNext);         // 20
  step(ServeScreenSaver);  // 21
  step(KeepAirPosition);
  step(WriteKept);
  step(LookForLostBase);
  step(ReadAhead);
}

}  // namespace

double MsToExitPoint(const Station& station) {
  const EngineState& engine = station.engine;
  return static_cast<double>(engine.ElementLengthMs) - engine.ElementPositionMs -
         static_cast<double>(engine.MixPointMs);
}

void OnAir::MainTimer_Timer(Station& station) {
  EngineState& engine = station.engine;
  if (engine.tickRunning || engine.mainTimerHolds > 0) return;
  struct Running {
    bool& flag;
    explicit Running(bool& f) : flag(f) { flag = true; }
    ~Running() { flag = false; }
  } running(engine.tickRunning);
  station.base.Waiting().LetAllWait(kTickWaitMs, AboutToStart(station) ? kSavedWaitMs : 0);
  station.base.CheckCnf();
  ServeEmergencyAir(station);
  RunTick(station);
}

}  // namespace zemo
