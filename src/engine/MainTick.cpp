// The tick is the sequence in RunTick, read from top to bottom; the order is part of the behaviour.
// Invariants:
// 1. It never nests: a tick that comes due while one waits (drain, overlap) is dropped.
// 2. Slot 0 is on air exactly when its channel is not done; which slot is on air is never stored.
// 3. StartNextNow is only ever set here and at the start; PlayWave alone clears it.
// 4. Whatever the tick asks of the base, and whatever orders ask of it up to the next tick, waits
//    kTickWaitMs in all for another process's lock.
// 5. A fault of one step is logged and costs that step; steps 19 and 20 run all the same.
#include "engine/MainTick.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "engine/ElementPlayback.h"
#include "engine/EmergencyAir.h"
#include "engine/ExternalTriggers.h"
#include "engine/HourPip.h"
#include "engine/OperatorControls.h"
#include "engine/OverlayButton.h"
#include "engine/PlaylistWatcher.h"
#include "engine/ScreenSaver.h"
#include "engine/StartStop.h"
#include "engine/Startup.h"
#include "engine/TakeOvers.h"
#include "library/OnAirRows.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/SoundSource.h"
#include "reports/AirWrites.h"
#include "scheduling/EndOfHourFitting.h"
#include "scheduling/JingleSelection.h"
#include "scheduling/PercentageRequest.h"
#include "settings/SideFiles.h"
#include "station/BaseFiles.h"
#include "station/Overlay.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/StoreError.h"
#include "traffic/BreakInsertion.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

constexpr int kKeyNumPad0 = 96;
constexpr int kKeySpace = 32;
constexpr float kSpaceLockSec = 2;
constexpr float kMinuteGuardSec = 60;
constexpr int64_t kSameErrorMs = 60000;
constexpr int64_t kGridRetryMs = 10000;
constexpr int64_t kBaseLookMs = 2000, kMostBasePauseMs = 60000;
constexpr double kAwayFromExitMs = 1000;
constexpr double kNearExitMs = 300;  // this tick starts the next element, or one of the next two
constexpr int64_t kTickMs = 100;
constexpr int64_t kMinuteMs = 60000, kDayMs = 86400000;
constexpr int64_t kDaySec = 86400;

// From one "hh:mm:ss" to another, over midnight as well; of other texts 0.
int SecondsPassed(const std::string& from, const std::string& to) {
  const auto second = [](const std::string& time) {
    return ValInt(time.substr(0, 2)) * 3600 + ValInt(time.substr(3, 2)) * 60 +
           ValInt(time.substr(6));
  };
  if (from.size() != to.size() || to.size() != std::strlen("hh:mm:ss")) return 0;
  return static_cast<int>((second(to) - second(from) + kDaySec) % kDaySec);
}

// The moment of the tick, read once and again after whatever may have waited.
struct Moment {
  // `lastTick`: the `time` of the tick before, empty before the first.
  Moment(const Station& station, const std::string& lastTick) {
    Read(station);
    passedSec = SecondsPassed(lastTick, time);
  }
  void Read(const Station& station) {
    now = station.Now();
    timer = SecondsSinceMidnight(now);
    time = TimeText(now);
    hourMinute = time.substr(0, 5);
  }
  LocalDateTime now;
  float timer = 0;
  std::string time;        // "hh:mm:ss"
  std::string hourMinute;  // "hh:mm"
  int passedSec = 0;       // since the tick before
};

// Less than a minute has passed since what the guard remembers.
bool WithinMinute(const Moment& at, float guard) {
  return !GuardIsAhead(at.timer, guard) && at.timer - guard < kMinuteGuardSec;
}

bool BeginsWith(const std::string& text, const std::string& head) {
  return text.compare(0, head.size(), head) == 0;
}

// A time "hh:mm" is due in its whole minute. One with seconds is due in the tick of its second, or
// in the next one where a wait held that; not where the clock jumped.
bool IsDue(const Moment& at, const std::string& item) {
  if (BeginsWith(at.time, item)) return true;
  if (item.size() != at.time.size() || at.passedSec > kMinuteGuardSec) return false;
  return SecondsPassed(item, at.time) < at.passedSec;
}

// Logs what is being handled; the same fault tick after tick only once a minute.
void LogTickError(Station& station, const char* fault) {
  if (!LoggedLately(station, fault, kSameErrorMs)) LogCurrentException(station, "MainTimer");
}

// One step of the tick: its fault is logged and costs this step alone, so that the next element
// starts whatever else fails. Events served during the step can have changed the settings and taken
// time.
template <typename Work>
void Step(Station& station, Moment& at, Work work) {
  const uint64_t served = station.platform.loop.EventsServed();
  try {
    work();
  } catch (const std::exception& error) {
    LogTickError(station, error.what());
  }
  if (station.platform.loop.EventsServed() == served) return;
  station.base.CheckCnf();
  at.Read(station);
}

int64_t Setting(Station& station, Cnf::Field field) {
  return station.base.CnfInt(field);
}

// --- 1 to 3: blinking lights ---

void Blink(Station& station, const Moment& at) {
  MainScreen& screen = station.screen;
  const EngineState& engine = station.engine;
  const bool even = at.now.second % 2 == 0;
  screen.LblTopage.visible = even && engine.TopagePending;
  if (engine.VoiceTrackState != 0) {
    screen.LblFeu = "Voice Track";
    screen.LblFeu.visible = even;
  }
  if (engine.CheckExtrait) {
    screen.LblFeu = "Extrait " + FormatDuration(engine.ExtractEndMs - engine.ElementPositionMs);
    screen.LblFeu.colour = kFeuArmed;
    screen.LblFeu.visible = even;
  }
}

// --- 4: keys ---

void ServeSpaceKey(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.LastSpacePressTimer > at.timer) engine.LastSpacePressTimer = at.timer - 3;
  if (at.timer - engine.LastSpacePressTimer < kSpaceLockSec) return;
  engine.LastSpacePressTimer = at.timer;
  StartStopZemoRadio(station, !engine.IsRunning);
}

void PlayShortcut(Station& station, const EngineLists::Shortcut& shortcut) {
  PlayOverAir(station, shortcut.FileName);
  station.screen.BtnSurImpressionCaption = "Touche " + shortcut.Touche;
}

// "Touche n" stands as long as what the key played is heard.
void RestOverlayCaption(Station& station) {
  if (station.screen.BtnSurImpressionCaption != kOverlayAtRest &&
      station.platform.sound.ChannelDone(kOverlaySlot))
    station.screen.BtnSurImpressionCaption = kOverlayAtRest;
}

void ServeKeys(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  RestOverlayCaption(station);
  const Keyboard& keyboard = station.platform.keyboard;
  if (!keyboard.MainScreenActive() || !engine.HotKeysArmed) return;
  if (keyboard.Held(kKeyNumPad0)) {
    engine.NextRequested = true;
    engine.FittingActive = false;
  }
  if (keyboard.Held(kKeySpace)) ServeSpaceKey(station, at);
  for (const EngineLists::Shortcut& shortcut : station.lists.Touches) {
    const auto key = static_cast<int>(Val(shortcut.Touche));
    if (key <= 0) break;
    if (!keyboard.Held(key + kKeyNumPad0)) continue;
    PlayShortcut(station, shortcut);
    break;
  }
}

// --- 5 to 9: clock, timed start, topage, mode ---

// In live mode the first break of the day's grid that is still to come.
std::string NextBreakText(const Station& station, const Moment& at) {
  const DayGrid& grid = station.GPubJour;
  for (int row = 1; row < grid.RowCount(); ++row)
    if (grid.Cell(row, 0) > at.hourMinute)
      return grid.Cell(row, 0) + " >> " + grid.Cell(row, 2) + " - " + grid.Cell(row, 1);
  return {};
}

void ShowClock(Station& station, const Moment& at) {
  if (station.engine.IsAutomatic) {
    station.screen.InfoDate =
        LongDateText(at.now, static_cast<int>(Setting(station, Cnf::kLangue)));
  } else if (station.GPubJour.RowCount() > 0 && at.now.second % 3 == 0) {
    const std::string next = NextBreakText(station, at);
    if (!next.empty()) station.screen.InfoDate = next;
  }
}

void LookForDayTimes(Station& station, const Moment& at) {
  if (at.now.minute == 0) ReloadDayTimes(station, JourSemaineCourant(at.now) - 1);
}

void ServeTimedStart(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.ReportsDisabled || !engine.MnuStartStop) return;
  for (const std::string& item : station.lists.ComboHeure) {
    if (item.empty() || !IsDue(at, item) || engine.IsRunning) continue;
    engine.IsAutomatic = true;
    StartStopZemoRadio(station, true);
    return;
  }
}

void ServeTopageTimes(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.LastTopageTimer > at.timer) engine.LastTopageTimer = 0;
  if (at.timer - engine.LastTopageTimer < kMinuteGuardSec) return;
  for (const std::string& item : station.lists.Topage) {
    if (item != at.hourMinute || !engine.IsRunning) continue;
    engine.TopagePending = true;
    engine.LastTopageTimer = at.timer;
    station.platform.clipboard.SetText(at.time);
    StartStopZemoRadio(station, false);
    station.screen.LblTopage.visible = true;
  }
}

// --- 10 to 13: what is on air ---

void ReadElementOnAir(Station& station) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  const SoundChain& sound = station.platform.sound;
  engine.CurrentChannel = sound.ChannelDone(0) ? 1 : 0;
  engine.NextChannel = 1 - engine.CurrentChannel;
  engine.ElementPositionMs = sound.Position(engine.CurrentChannel);
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) +
                       engine.ElementLengthMs - engine.ElementPositionMs;
  screen.Temp = FormatDuration(engine.RemainingMs);
  screen.Tmn = engine.RemainingMs / 1000 / 60;
  screen.Tss = engine.RemainingMs / 1000 % 60;
}

void ServeExtractEnd(Station& station) {
  EngineState& engine = station.engine;
  if (!engine.CheckExtrait || engine.ExtractEndMs < 1 ||
      engine.ElementPositionMs < engine.ExtractEndMs)
    return;
  engine.NextRequested = true;
  station.screen.LblFeu.visible = false;
}

void ShowProgress(Station& station) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  if (engine.ElementLengthMs <= 0) return;
  engine.ProgressPercent =
      static_cast<int32_t>(int64_t{engine.ElementPositionMs} * 100 / engine.ElementLengthMs);
  screen.VuMettrePercent = engine.ElementPositionMs < 5000 ? 0 : engine.ProgressPercent;
  screen.LblEncours = ClockText(station.Sound().OutputPosition());
}

void CountIntro(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  MainScreen& screen = station.screen;
  if (engine.IntroLengthSec > 0) {
    const auto elapsed = static_cast<int32_t>(std::floor(at.timer - engine.IntroStartTimer));
    screen.VueIntro.elapsedSec = elapsed;
    if (elapsed >= engine.IntroLengthSec) {
      engine.IntroLengthSec = 0;
      screen.VueIntro.visible = false;
    }
  }
  if (screen.LblInfoScrolling && engine.ProgressPercent > 30) {
    screen.LblInfoScrolling = false;
    screen.LblInfo = "ZEMO RADIO PRO";
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

// Row of the day's grid whose minute it is; 0 for none. Each row passed over opens the guard, so
// that it only holds after a hit.
int DueGridRow(Station& station, const Moment& at) {
  const DayGrid& grid = station.GPubJour;
  for (int row = 1; row < grid.RowCount(); ++row) {
    if (grid.Cell(row, GridCol::kMoment) == at.hourMinute) return row;
    station.engine.LastGridCheckTimer = 0;
  }
  return 0;
}

void InsertBreak(Station& station, const Moment& at, int row) {
  station.engine.LastGridCheckTimer = at.timer;
  if (station.GPubJour.Cell(row, GridCol::kType) == "Pubs")
    AjoutPubPlaylist(station, row);
  else
    AjoutRubriquePlaylist(station, row);
  station.screen.VueIntro.visible = false;
}

// A break whose minute comes while the engine is stopped is prepared for the local programme.
void PrepareLocalProgramme(Station& station, const Moment& at) {
  const EngineState& engine = station.engine;
  if (!engine.InputsAllowed || engine.composing || Setting(station, Cnf::kEntreSat) != 3) return;
  if (WithinMinute(at, engine.LastGridCheckTimer)) return;
  const int row = DueGridRow(station, at);
  if (row == 0) return;
  station.PL.Clear();
  InsertBreak(station, at, row);
  AutomaticRequest(station);
}

void ServeStopped(Station& station, Moment& at) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  if (engine.NextRequested) {
    sound.FadeOut(engine.CurrentChannel, static_cast<int>(Setting(station, Cnf::kFadeOut)));
    engine.NextRequested = false;
  }
  if (sound.ChannelDone(0) && sound.ChannelDone(1)) DrainOutput(station, at);
  if (engine.JoystickInUse || engine.SerialInputOpen) JoystickButtonDown(station, 0);
  PrepareLocalProgramme(station, at);
  if (engine.TopagePending) TraiteTopage(station);
}

// --- 15 and 16: overlay over the introduction, timed stop, breaks ---

void ServeIntroOverlay(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.IntroOverlayPending) return;
  SoundChain& sound = station.Sound();
  station.screen.LblIntro.visible = at.now.second % 2 == 0;
  const float leftSec =
      static_cast<float>(engine.IntroLengthSec) - (at.timer - engine.IntroArmedTimer) -
      static_cast<float>(sound.Length(kOverlaySlot)) / 1000 - engine.BufferOffsetSec - 1;
  if (leftSec > 0 && !GuardIsAhead(at.timer, engine.IntroArmedTimer)) return;
  engine.IntroOverlayPending = false;
  station.screen.LblIntro.visible = false;
  if (sound.FileName(kOverlaySlot).empty()) return;  // a stop or an output restart freed it
  StartOverlay(station, "jingle");
}

// True when a "-F" stop ends this tick.
bool ServeTimedStop(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.MnuStartStop) return false;
  for (const std::string& item : station.lists.HeureArretSystem) {
    if (item.empty()) continue;
    const std::string suffix = item.size() > 2 ? item.substr(item.size() - 2) : "";
    const bool fade = suffix == "-F";
    const bool quit = suffix == "-Q";
    const std::string time = fade || quit ? item.substr(0, item.size() - 2) : item;
    if (!IsDue(at, time)) continue;
    StartStopZemoRadio(station, false);
    if (fade) {
      engine.NextRequested = true;
      return true;
    }
    if (quit) {
      station.Sound().Stop();
      station.Sound().Close();
      station.platform.system.Shutdown();
    }
  }
  return false;
}

// While the grid is being composed its rows are not whole yet: the minute's break waits for the
// tick behind the composition.
void ServeBreaks(Station& station, const Moment& at) {
  const EngineState& engine = station.engine;
  if (engine.OptionDirect || engine.HourBlockHandled || engine.composing ||
      WithinMinute(at, engine.LastGridCheckTimer))
    return;
  // Midnight: the change of the day, later in this tick, resets the guard.
  if (engine.IsAutomatic && at.now.day != engine.LastDay &&
      GuardIsAhead(at.timer, engine.LastGridCheckTimer))
    return;
  const int row = DueGridRow(station, at);
  if (row > 0) InsertBreak(station, at, row);
}

// --- 18: automatic mode ---

// The exit point would come while a request holds the tick, if it walks through the library as long
// as the last one: it waits for the next element then. One within a tick makes nobody late.
bool RequestWouldDelayNext(const Station& station) {
  const int64_t walkMs = station.requests.lastWalkMs;
  if (station.PL.Empty() || walkMs <= kTickMs) return false;
  return MsToExitPoint(station) < static_cast<double>(walkMs + kTickMs);
}

void FitEndOfHour(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (engine.PlaylistRunning || !station.base.CnfBool(Cnf::kOptimiseToph)) return;
  if (at.now.minute < Setting(station, Cnf::kHOptimise)) {
    engine.FittingActive = false;
    return;
  }
  // The hour's break is placed from the grid, which is not whole while it is being composed.
  if (engine.FittingActive || engine.composing || RequestWouldDelayNext(station)) return;
  if (Setting(station, Cnf::kPubAvecTopH) == 1)
    AjusteFinHeurePubColleTopH(station);
  else if (Setting(station, Cnf::kInstrumental) == 1)
    AjusteFinHeureInstru(station);
  else
    AjusteFinHeure(station);
}

// Seconds since midnight begin again: no guard may stay ahead of the clock.
void ServeDayChange(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (at.now.day == engine.LastDay) return;
  engine.LastDay = at.now.day;
  engine.LastGridCheckTimer = at.timer;
  engine.LastJingleTimer = at.timer;
  engine.LastIntroJingleTimer = at.timer;
  engine.LastPlaylistWatchTimer = at.timer - kMinuteGuardSec;  // a list due at midnight is seen
  engine.LastAssociationTimer = at.timer;
  engine.LastTopHourTimer = at.timer;
}

void WatchPlaylists(Station& station, Moment& at) {
  if (at.now.second % 5 != 0 || WithinMinute(at, station.engine.LastPlaylistWatchTimer)) return;
  SurveillePlaylist(station);
  at.Read(station);
}

// True once for each jump of the wall clock by a minute or more.
bool ClockJumped(Station& station, const Moment& at) {
  const auto wallMs = static_cast<int64_t>(std::llround(DateSerial(at.now) * kDayMs));
  const int64_t aheadMs = wallMs - station.platform.clock.MonotonicMs();
  std::optional<int64_t>& known = station.engine.wallAheadMs;
  if (known && std::abs(aheadMs - *known) < kMinuteMs) return false;
  return std::exchange(known, aheadMs).has_value();
}

// Unplayed music of the old hour does not survive; spots, jingles and the pip do. Where the clock
// jumps, into an hour or back to its beginning, what was done for the hour is done again.
void ServeNewHour(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  const bool jumped = ClockJumped(station, at);
  if (engine.PlaylistRunning || (at.now.minute != 0 && !jumped)) return;
  if (jumped) engine.FittingActive = false;
  engine.HourBlockHandled = false;
  if (at.now.hour == engine.LastHour) return;
  engine.LastHour = at.now.hour;
  station.requests.restUntilMs = -1;  // its titles may be listed where the old hour's may not
  for (int row = station.PL.Count(); row >= 1; --row)
    if (station.PL.Row(row).code > 0) station.PL.Remove(row);
}

// A composition that fails is tried again, but not tick after tick. True when the grid is whole.
bool ComposeGrid(Station& station) {
  station.engine.gridRetryMs = station.platform.clock.MonotonicMs() + kGridRetryMs;
  return MakeGrillePubGeneral(station);
}

bool GridIsOf(const Station& station, const Moment& at) {
  return station.GPubJour.Cell(0, GridCol::kDateStamp).substr(0, 8) == ShortDateText(at.now);
}

// False after a composition that failed; the signal then waits for the next try.
bool ServeGridSignal(Station& station, const Moment& at) {
  Folder& folder = station.platform.stationFolder;
  const std::string& signal = station.files.MajGrillePub;
  if (station.engine.ReportsDisabled || at.now.second % 2 != 0 || !folder.Exists(signal))
    return true;
  if (!ComposeGrid(station)) return false;
  folder.Remove(signal);
  return true;
}

// Stopped and silent there is no element under which a composition would have to wait.
void ServeGridSignalAtRest(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!NothingOnAir(station) || engine.composing) return;
  if (station.platform.clock.MonotonicMs() < engine.gridRetryMs) return;
  if (ServeGridSignal(station, at)) engine.gridRetryMs = 0;
}

void RebuildGrid(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (station.screen.Tmn < 1 || engine.ProgressPercent <= 25 || engine.composing) return;
  if (station.platform.clock.MonotonicMs() < engine.gridRetryMs) return;
  if (!GridIsOf(station, at)) {
    if (!ComposeGrid(station)) return;
    engine.LastJingleTimer = at.timer;
  }
  if (!ServeGridSignal(station, at)) return;
  if (GridIsOf(station, at)) engine.gridRetryMs = 0;
}

// The request that the base kept from its work left the list as it was, maybe empty before the
// first element: that one is made again without an element that progresses.
// One that found nothing to list rests: what it would look at is the same. The operator's own order
// does not come here.
void Refill(Station& station) {
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  const bool failed = station.requests.askAgainMs >= 0;
  if (nowMs < station.requests.askAgainMs || nowMs < station.requests.restUntilMs) return;
  const bool early = station.engine.ProgressPercent <= 10 && !(failed && NothingOnAir(station));
  if (station.PL.Count() >= 5 || early) return;
  if (RequestWouldDelayNext(station) || !EmergencyLetsRequest(station)) return;
  AutomaticRequest(station);
}

// VoiceTrackState: 0 none -> -1 armed in the second half of the element it speaks over -> -2 on air
// at its position -> 0 at its end. An armed track that reached the next element goes back to 0.
void ArmVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ProgressPercent <= 50 || engine.ProgressPercent >= 65 || engine.VoiceTrackState != 0)
    return;
  if (station.PL.Empty() || !station.PL.Row(1).liesOver) return;
  const OnAirRow row = station.PL.Row(1);
  station.PL.Remove(1);  // first, so that a track that cannot be opened does not stay in the way
  LoadOverlay(station, row.file);
  engine.VoiceTrackStartMs = static_cast<int32_t>(row.startMs.value_or(0));
  engine.VoiceTrackState = -1;
  station.screen.LblFeu.colour = kFeuArmed;
}

void ForgetVoiceTrack(Station& station) {
  station.engine.VoiceTrackState = 0;
  station.screen.LblFeu.visible = false;
}

void StartVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  if (sound.FileName(kOverlaySlot).empty())
    return ForgetVoiceTrack(station);  // freed since it was armed
  engine.VoiceTrackState = -2;
  sound.SetVolume(engine.CurrentChannel,
                  static_cast<int>(Setting(station, Cnf::kVolumeMusiqueSous)));
  sound.SetVolume(kOverlaySlot,
                  static_cast<int>(Setting(station, Cnf::kVolumeMusiqueSurImpression)));
  StartOverlay(station, "voicetrack");
  station.screen.LblFeu.colour = kFeuOnAir;
}

void ServeVoiceTrack(Station& station) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  ArmVoiceTrack(station);
  if (engine.VoiceTrackState == -1) {
    if (sound.Position(engine.CurrentChannel) >= engine.VoiceTrackStartMs)
      StartVoiceTrack(station);
    else if (engine.ProgressPercent > 30 && engine.ProgressPercent < 40)
      ForgetVoiceTrack(station);
  }
  if (engine.VoiceTrackState == -2 && sound.ChannelDone(kOverlaySlot)) {
    const auto volume = static_cast<int>(Setting(station, Cnf::kVolumeMusique));
    sound.SetVolume(0, volume);
    sound.SetVolume(1, volume);
    ForgetVoiceTrack(station);
  }
}

void ServeLiveMode(Station& station) {
  EngineState& engine = station.engine;
  if (engine.ProgressPercent <= 50 || !station.PL.Empty()) return;
  if (engine.OptionDirect)
    StartStopZemoRadio(station, false);
  else
    ReturnToAutomatic(station);
}

void ServeMode(Station& station, Moment& at) {
  if (station.engine.IsAutomatic) {
    Step(station, at, [&] { FitEndOfHour(station, at); });
    ServeDayChange(station, at);
    Step(station, at, [&] { WatchPlaylists(station, at); });
    ServeNewHour(station, at);
    Step(station, at, [&] { RebuildGrid(station, at); });
    Step(station, at, [&] { Refill(station); });
    Step(station, at, [&] { ServeVoiceTrack(station); });
  } else {
    Step(station, at, [&] { ServeLiveMode(station); });
  }
  station.engine.DrainPending = false;
}

// --- 19 and 20: the rule that starts the next element ---

void DecideStart(Station& station) {
  EngineState& engine = station.engine;
  if (NothingOnAir(station)) engine.StartNextNow = true;
  if (engine.NextRequested)
    station.Sound().FadeOut(engine.CurrentChannel,
                            static_cast<int>(Setting(station, Cnf::kFadeOut)));
  const bool exitReached = static_cast<double>(engine.MixPointMs) + engine.ElementPositionMs >=
                           static_cast<double>(engine.ElementLengthMs);
  if (exitReached || engine.NextRequested) engine.StartNextNow = true;
}

void PutJinglesBefore(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  FindJingleAssocieAvantTitre(station, station.PL.Row(1).code);
  FindJingleAssocieGenre(station, station.PL.Row(1).genre);
  const int64_t gapMinutes = Setting(station, Cnf::kJingles);
  if (!GuardIsAhead(at.timer, engine.LastJingleTimer) &&
      (at.timer - engine.LastJingleTimer) / 60 <= static_cast<float>(gapMinutes))
    return;
  engine.LastJingleTimer = at.timer;
  if (gapMinutes > 0) FindJingle(station, false, 0);
}

void StartNext(Station& station, const Moment& at) {
  EngineState& engine = station.engine;
  if (!engine.IsRunning || !engine.StartNextNow || station.PL.Empty()) return;
  PutJinglesBefore(station, at);
  const std::string file = station.PL.Row(1).file;
  PlayWave(station, file, station.PL.Row(1).code);
  if (!station.PL.Empty()) {
    const OnAirElement& row = station.PL.Row(1);
    station.screen.LblArtiste = TitleOf(row);
    if (row.AnnouncesExtracts()) engine.CheckExtrait = true;
    station.PL.Remove(1);
  }
  engine.ElementPositionMs = 0;
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) + engine.ElementLengthMs;
  RefreshPlanTimes(station);
}

void ServeScreenSaver(Station& station) {
  const int64_t minutes = Setting(station, Cnf::kVeille);
  const double idleSec = station.Timer() - station.engine.LastActivityTimer;
  if (minutes > 0 && std::floor(idleSec) > static_cast<double>(minutes * 60))
    DeclencheVeille(station);
}

bool AboutToStart(const Station& station) {
  return station.engine.IsRunning && !station.PL.Empty() &&
         (NothingOnAir(station) || MsToExitPoint(station) < kNearExitMs);
}

// A commit waits for the disk: not where an element is about to begin.
void WriteKept(Station& station) {
  if (station.engine.IsRunning && !NothingOnAir(station) &&
      MsToExitPoint(station) < kAwayFromExitMs)
    return;
  WriteKeptSlice(station);
}

// A share that came back, a file that was replaced: until then the air goes on by what is in
// memory. One that fails again and again is looked at less and less.
void LookForLostBase(Station& station) {
  EngineState& engine = station.engine;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  if (nowMs < engine.baseLookMs) return;
  engine.baseLookMs = nowMs + engine.basePauseMs;
  try {
    const bool opened = OpenLostBase(station);
    engine.basePauseMs = opened ? std::min(2 * engine.basePauseMs, kMostBasePauseMs) : kBaseLookMs;
    if (!opened) return;
    station.events.Base("opened");
    TakeUpOpenedBase(station);
  } catch (const StoreError& error) {
    if (!LoggedLately(station, error.what(), kSameErrorMs))
      LogCurrentException(station, "MainTimer");
  }
}

void RunTick(Station& station) {
  EngineState& engine = station.engine;
  Moment at(station, engine.lastTickTime);
  engine.lastTickTime = at.time;
  if (engine.SerialInputOpen) Step(station, at, [&] { PollInputs(station); });  // 0
  Blink(station, at);                                                           // 1, 3
  if (station.screen.LedJoystique.text == "Joy2")
    Step(station, at, [&] { PrepareReturnFromSatellite(station); });                      // 2
  Step(station, at, [&] { ServeKeys(station, at); });                                     // 4
  ShowClock(station, at);                                                                 // 5
  LookForDayTimes(station, at);                                                           // 6
  Step(station, at, [&] { ServeTimedStart(station, at); });                               // 7
  Step(station, at, [&] { ServeTopageTimes(station, at); });                              // 8
  station.screen.LblMode = engine.IsAutomatic ? "Mode Automatique" : "Mode Direct Live";  // 9
  ReadElementOnAir(station);                                                              // 10
  ServeExtractEnd(station);                                                               // 11
  ShowProgress(station);                                                                  // 12
  CountIntro(station, at);                                                                // 13
  if (!engine.IsRunning) {
    Step(station, at, [&] { ServeStopped(station, at); });  // 14
    Step(station, at, [&] { ServeGridSignalAtRest(station, at); });
  } else {
    Step(station, at, [&] { ServeIntroOverlay(station, at); });  // 15
    bool fades = false;
    Step(station, at, [&] { fades = ServeTimedStop(station, at); });  // 16
    if (fades) return;
    Step(station, at, [&] { ServeBreaks(station, at); });
    Step(station, at, [&] { ServeHourPip(station, at.now); });  // 17
    ServeMode(station, at);                                     // 18
  }
  DecideStart(station);       // 19
  StartNext(station, at);     // 20
  ServeScreenSaver(station);  // 21
  WriteKept(station);
  LookForLostBase(station);
}

}  // namespace

double MsToExitPoint(const Station& station) {
  const EngineState& engine = station.engine;
  return static_cast<double>(engine.ElementLengthMs) - engine.ElementPositionMs -
         static_cast<double>(engine.MixPointMs);
}

void MainTimer_Timer(Station& station) {
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
  try {
    RunTick(station);
  } catch (const std::exception& error) {
    LogTickError(station, error.what());
  }
}

}  // namespace zemo
