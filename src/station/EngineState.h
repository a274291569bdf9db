// The engine's own variables: what the tick, playback and the inputs remember between two events.
// What survives a restart is kept in files: IsRunning (running flag), PCProduction, MnuStartStop
// (machine's values), what the base could not take (journal).
// Thread: the logic's. Guards are seconds since midnight in single precision (see TimeForms.h).
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/EventLoop.h"
#include "station/AirWrite.h"
#include "station/AutomatonState.h"
#include "station/EmergencyState.h"
#include "station/Flag.h"
#include "station/KeptAir.h"

namespace zemo {

struct Station;

// The button that is held, by its number; kReady: the joystick was found, and none pressed yet.
enum class JoystickLamp { kReady = -1, kDark, kEngine, kSatellite, kLocalProgramme, kPulse };

// The rows that "rapportzemo.txt" shows, as they were read last; see reports/RollingReport.h.
struct RollingRows {
  struct Row {
    double moment = 0;  // DATENUM; -infinity for Null
    int64_t code = 0;
    std::string line;  // of the file, without its end
  };
  bool known = false;     // false: the base has to be asked for all of them
  bool ahead = false;     // they are of the last stretch alone: the report is not known yet
  int64_t count = 0;      // as many were asked for
  int64_t head = 0;       // no row up to this CODE is missing
  std::vector<Row> rows;  // the newest first, `count` at most
};

// The stored lists as the base had them at that count of its changes; see engine/PlaylistWatcher.h.
struct DatedLists {
  struct List {
    int32_t code = 0;
    std::string label;
    std::string day;     // the word for every day, else the key of its date; empty: it has none
    std::string minute;  // "hh:mm"
    int32_t option = 0;
  };
  bool known = false;
  int64_t changeCounter = 0;
  std::vector<List> lists;  // in table order
};

struct EngineState {
  FlagObserver* observer = nullptr;  // hears of changed flags; not owned

  // --- engine and mode ---
  Flag<bool> IsRunning{"IsRunning", false, observer};              // StartStopZemoRadio
  Flag<bool> IsAutomatic{"IsAutomatic", true, observer};           // false is "Mode Direct Live"
  Flag<bool> ReportsDisabled{"ReportsDisabled", false, observer};  // production machine: no report
  Flag<bool> ScreenLocked{"ScreenLocked", false, observer};        // by the password
  Flag<bool> PlaylistRunning{"PlaylistRunning", false, observer};  // a dated list is on air
  std::string RunningPlaylistName;                                 // its label; PlayWave
  Flag<bool> DrainPending{"DrainPending", false, observer};        // stopped, buffers draining
  float DrainStartTimer = 0;
  Flag<bool> PCProduction{"PCProduction", false, observer};  // check mark of MnuPCProduction
  Flag<bool> MnuStartStop{"MnuStartStop", true, observer};   // daily start and stop times obeyed

  // --- element on air ---
  int CurrentChannel = 1;  // slot on air and the other one, derived at every tick
  int NextChannel = 0;
  Flag<int32_t> CodeEnCours{"CodeEnCours", 0,
                            observer};  // of the row last played, markers and lost files too
  Flag<float> MixPointMs{"MixPointMs", 0, observer};  // exit distance, ms before the end
  Flag<float> BufferOffsetSec{"BufferOffsetSec", 0,
                              observer};  // audible delay; ComputeBufferOffset
  int32_t ElementLengthMs = 0;
  int32_t ElementPositionMs = 0;
  int32_t RemainingMs = 0;
  int32_t ProgressPercent = 0;                                 // whole part
  Flag<bool> NextRequested{"NextRequested", false, observer};  // fade what sounds, start the next
  Flag<bool> StartNextNow{"StartNextNow", false, observer};    // a latch, cleared by PlayWave only

  // --- introduction, extract, voice track ---
  Flag<bool> IntroOverlayPending{"IntroOverlayPending", false, observer};  // slot 2 waits
  std::string IntroOverlayLabel;  // of the jingle that waits there
  int32_t IntroLengthSec = 0;     // 0 when none
  bool IntroShown = false;        // its countdown, from the begin on; a break that goes in hides it
  float IntroStartTimer = 0;      // the element with the introduction began
  float IntroArmedTimer = 0;      // the overlay was armed
  int32_t ExtractEndMs = 0;       // 0 when none
  Flag<bool> CheckExtrait{"CheckExtrait", false, observer};
  Flag<int> VoiceTrackState{"VoiceTrackState", 0, observer};  // 0 none, -1 armed, -2 playing
  int32_t VoiceTrackStartMs = 0;
  struct ArmedTrack {
    std::string code;                     // of VT
    std::optional<std::string> madeOver;  // stored path of the element; none: not known
  };
  ArmedTrack armedTrack;                       // that is armed or plays; set at the arming
  std::unique_ptr<LoopTimer> VoiceTrackTimer;  // looks for the moment of an armed one between ticks
  std::string OverlayFile;  // stored path of the file in slot 2; whoever loads it
  std::string OverlayKey;   // the shortcut key that is heard; empty: none

  // --- hour ---
  Flag<bool> HourPipPending{"HourPipPending", false, observer};
  Flag<int> SavedVolume{"SavedVolume", 0, observer};  // while a pip plays over the music
  Flag<bool> FittingActive{"FittingActive", false, observer};
  Flag<bool> HourBlockHandled{"HourBlockHandled", false, observer};
  Flag<bool> PipSuppressed{"PipSuppressed", false, observer};
  Flag<bool> NoJingleActive{"NoJingleActive", false, observer};
  Flag<int> LastHour{"LastHour", 0, observer};
  Flag<int> LastDay{"LastDay", 0, observer};  // day of the month of the last guard reset

  // --- inputs and operator ---
  Flag<bool> TopagePending{"TopagePending", false, observer};
  Flag<bool> SatelliteTaking{"SatelliteTaking", false, observer};
  Flag<bool> LocalProgrammeOn{"LocalProgrammeOn", false, observer};
  Flag<bool> InputsAllowed{"InputsAllowed", false, observer};
  Flag<bool> SerialInputOpen{"SerialInputOpen", false, observer};
  Flag<bool> JoystickInUse{"JoystickInUse", false, observer};
  std::array<bool, 4> Contacts{};  // of the automaton; a pulse turns 1 and 2 over
  JoystickLamp joystickLamp = JoystickLamp::kDark;
  // Seconds a pulse of contact 1 or 2 shuts others out, 0 for level contacts. Read at the start and
  // set by the settings screen, so that another machine's change of the base waits for the restart.
  Flag<int> TempsMaxiImPulsion{"TempsMaxiImPulsion", 0, observer};
  std::optional<int64_t> lastPulseMs;  // monotonic, so that midnight is no matter; PollInputs
  AutomatonState automaton;
  Flag<bool> OptionDirect{"OptionDirect", false, observer};  // live mode: stop when PL runs out
  Flag<bool> CheckNoJingle{"CheckNoJingle", false, observer};
  Flag<bool> HotKeysArmed{"HotKeysArmed", false, observer};
  std::string ActiveList = "PL";  // "PL" or "ListRech"
  float LastSpacePressTimer = 0;
  double LastActivityTimer = 0;

  // --- guards ---
  Flag<float> LastTopHourTimer{"LastTopHourTimer", 0, observer};
  Flag<float> LastGridCheckTimer{"LastGridCheckTimer", 0, observer};
  Flag<float> LastJingleTimer{"LastJingleTimer", 0, observer};
  Flag<float> LastIntroJingleTimer{"LastIntroJingleTimer", 0, observer};
  Flag<float> LastPlaylistWatchTimer{"LastPlaylistWatchTimer", 0, observer};
  Flag<float> LastTopageTimer{"LastTopageTimer", 0, observer};
  double LastAssociationTimer = 0;  // written, never read
  // The wall clock less the monotonic one, ms, as the last look at the hour had it: another value
  // is a clock that jumped.
  std::optional<int64_t> wallAheadMs;

  // --- the day's grid ---
  bool composing = false;     // a composition runs, maybe up the stack
  bool composeAgain = false;  // another was asked for meanwhile
  int64_t gridRetryMs = 0;    // monotonic; after a failed one the tick waits until then
  // The wall clock less the monotonic one, days, before a preview set the date; none without one.
  std::optional<double> clockBeforePreview;

  // --- writes that the base could not take yet (see reports/AirWrites.h) ---
  KeptWrites kept;
  RollingRows rollingReport;  // writer: ExportReport
  // The day up to which rows go once the report is known, as a day serial; writer: ReportPurge.
  std::optional<int64_t> reportPurgeLimit;
  DatedLists datedLists;  // writer: PlaylistWatcher

  int64_t baseLookMs = 0;      // monotonic; whether the base is lost is not looked at before
  int64_t basePauseMs = 2000;  // up to the look behind it
  int64_t libraryLookMs = 0;   // monotonic; others' writes to the library are not looked for before
  bool baseWasOpen = false;    // in this run; else what a start does with it is still to be done

  KeptAir keptAir;  // for a start behind a crash; engine/KeptPosition

  Flag<bool> EmergencyOnAir{"EmergencyOnAir", false, observer};
  EmergencyState emergency;

  // Rows that could not be played since one sounded, and those of them whose file is missing.
  int unplayableRows = 0, missingRows = 0;

  // --- the tick ---
  std::unique_ptr<LoopTimer> MainTimer;  // 100 ms; made by Form_Load
  int mainTimerHolds = 0;                // see MainTimerHold
  bool tickRunning = false;              // the tick refuses re-entry
  bool errorLogRunning = false;          // LogError is at work and refuses re-entry
  std::string lastTickTime;              // "hh:mm:ss"; empty before the first
  // Faults that were logged lately, and when (monotonic ms): one that comes tick after tick does
  // not flood the log.
  std::map<std::string, int64_t> loggedFaults;

  // --- a base dropped as "New.mdb" ---
  std::string newBaseRefused;  // stamp of the file that cannot be the base: looked at once
  std::string newBasePassed;   // stamp of the one that can, while the old base is in use
  std::string newBaseTold;     // stamp and fault that were logged last
};

}  // namespace zemo
