// The shared state of one station: what every routine of the logic works on. One object a program,
// a test or a forecast; no routine keeps state anywhere else.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Clock.h"
#include "platform/Platform.h"
#include "platform/SoundChain.h"
#include "station/DayGrid.h"
#include "station/EngineEvents.h"
#include "station/EngineState.h"
#include "station/ListUndo.h"
#include "station/ModelEditor.h"
#include "station/OnAirList.h"
#include "station/OperatorFrames.h"
#include "station/RequestState.h"
#include "station/ScreenNotices.h"
#include "station/SettingsScreen.h"
#include "store/StationBase.h"

namespace zemo {

class KnownCards;
class KnownReport;

// Names of the side files in the station's folder, set at load.
struct SideFileNames {
  std::string Tranche, Genre, Decoupe, Categori, Messages, Labels, Internet, Exclusion,
      DonneesAssociees, ArtisteTitre, ExportPubs, LectureBase, Instrumental, ZemoOnOff, CheckTopage,
      CD, MajGrillePub;
  std::string ZemoAudio, ZemoPlay, ZemoPasseWord;  // in the machine folder
  std::array<std::string, 7> Days, SkeletonDays;   // Monday first
};

// Lists that side files fill and the engine walks.
struct EngineLists {
  std::vector<std::string> ComboHeure;        // start times "hh:mm", or "hh:mm:ss"
  std::vector<std::string> HeureArretSystem;  // stop times, with an optional "-F" or "-Q"
  std::vector<std::string> Topage;            // marker times "hh:mm"
  std::string dayTimesStamp;                  // of the files that the three were read from
  std::vector<std::pair<std::string, std::string>> Exclusion;  // from, to, "hh:mm"; empty: none
  struct Shortcut {
    std::string Touche;    // key digit as text
    std::string FileName;  // stored path
  };
  std::vector<Shortcut> Touches;
  int32_t LectureBase = 0;        // groups of 30 titles that a request reads; 0 reads all
  std::array<bool, 24> Instru{};  // instrumental hours
  // The lock's state and password: side file of the machine, else of the station.
  bool Locked = false;
  std::string Password;
  int32_t AudioOutID = -1;  // output devices of the air and of prelisten; -1 none chosen
  int32_t AudioOutPFLID = -1;
  struct {
    std::string pageFile, firstMarker, separator, secondMarker;
    bool on = false;  // the page file exists
  } Internet;
};

// Thread: the logic's, all of it.
struct Station : private SoundObserver, private FlagObserver {
  // `base`: where the base is opened; without one as the station's folder names it.
  explicit Station(const Platform& platform, std::optional<BasePlace> base = std::nullopt);
  ~Station() override;
  Station(const Station&) = delete;

  Platform platform;  // references; the owner outlives the station
  EngineEvents events;
  StationBase base;
  EngineState engine;
  OnAirList PL;
  std::optional<ListUndo> listUndo;  // of the operator's last order on it
  int64_t listOrders = 0;            // given so far
  DayGrid GPubJour;
  ScreenNotices notices;
  BrowseFrame browse;
  StoredListEditor storedList;
  GridFrame gridFrame;
  Saver saver;
  LockDialogue lockDialogue;
  RequestState requests;
  std::shared_ptr<KnownCards> knownCards;    // the music library in memory; library/KnownCards.h
  std::shared_ptr<KnownReport> knownReport;  // its newest rows in memory; reports/KnownReport.h
  ModelEditor modelEditor;
  SettingsScreen settings;
  EngineLists lists;
  SideFileNames files;

  // The moment, read once: texts and guards of one handler agree with each other.
  LocalDateTime Now() const;
  float Timer() const;  // seconds since midnight, single precision
  SoundChain& Sound() { return platform.sound; }

  // Tells a begin or an end of silence on air; called after whatever may have changed it.
  void WatchSilence();

 private:
  void OnSlotEnd(int slot, SlotEnd reason) override;
  void OnFade(int slot, int ms) override;
  void OnVolume(int slot, int from, int to) override;
  void OnOutput(const char* state) override;
  void OnFlag(const char* name, double value, bool boolean) override;

  bool silent_ = false;  // a begin of silence was told
};

inline constexpr int kErrFile = 75;  // a file that cannot be read or written, or is damaged

// The one error log: a line in "Messages.Txt" (date and time, place, number, text, between tabs),
// the screen's error line, and an event. The very same fault again within 5 s is passed over, of a
// base out of reach within a minute. Never throws; the program goes on.
void LogError(Station& station, const std::string& where, int number, const std::string& text);

// The same line in the log and on the screen of what an event of its own tells, as a row that is
// passed over: no event "error" follows, but EngineEvents::Notice. The same again within a minute
// is passed over.
void LogNotice(Station& station, const std::string& where, int number, const std::string& text);

// What fails at every turn is logged once in this time.
inline constexpr int64_t kSameErrorMs = 60000;

// True when that fault was logged within that time; else notes it as logged now.
bool LoggedLately(Station& station, const std::string& fault, int64_t withinMs);

// The error boundary of a routine: logs what is being handled under `where`, with `detail` behind
// the fault's own text. Call in a catch block.
void LogCurrentException(Station& station, const std::string& where,
                         const std::string& detail = {});

// Holds MainTimer over a routine; the last hold released enables it, whatever way the routine ends.
class MainTimerHold {
 public:
  explicit MainTimerHold(Station& station);
  ~MainTimerHold();
  MainTimerHold(const MainTimerHold&) = delete;

 private:
  Station& station_;
};

}  // namespace zemo
