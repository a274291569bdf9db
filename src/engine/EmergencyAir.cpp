// Chooses what to do from what sounds on slots 0 and 1 alone: the state of the folder is not kept
// beside it, but for the flag EmergencyOnAir, which begins and ends once each.
#include "engine/EmergencyAir.h"

#include <algorithm>
#include <string>

#include "engine/ElementPlayback.h"
#include "engine/EmergencyFolder.h"
#include "library/OnAirRows.h"
#include "platform/Folder.h"
#include "platform/SoundLengths.h"
#include "station/PlanTimes.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr const char* kPlace = "Secours";  // in the log
constexpr int kNotice = 0;                 // no fault of a kind that has a number
// An ordinary refill, a row that is skipped, a restart of the engine come well before it; with what
// a tick may take, half of the 5 s that the air may be silent are left.
constexpr int64_t kSilenceMs = 2000;
constexpr int64_t kGapMs = 300;    // between two of its own
constexpr int64_t kLookMs = 2000;  // between two looks at a folder that holds nothing playable
constexpr int64_t kListLookMs = 500;
constexpr int64_t kRequestRestMs = 10000;
constexpr int kMostTries = 16;      // files in one tick ...
constexpr int64_t kMostTryMs = 50;  // ... that may take that long before the last of them
constexpr size_t kMostTold = 1000;
constexpr int kTitleWidth = 40;  // of the report

int64_t NowMs(const Station& station) {
  return station.platform.clock.MonotonicMs();
}

Folder& EmergencyOf(Station& station) {
  return station.platform.machineFolder.Subfolder(kEmergencyFolder);
}

// --- what is on air ---

struct Sounding {
  int folderSlot = -1;  // an element of the folder, played by it
  bool other = false;   // any other element
};

Sounding WhatSounds(Station& station) {
  const SoundChain& sound = station.platform.sound;
  // In ordinary times the folder is not even looked for.
  const std::string folder =
      station.engine.EmergencyOnAir ? EmergencyOf(station).Path() : std::string();
  Sounding sounding;
  for (const int slot : {0, 1}) {
    const std::string& file = sound.FileName(slot);
    if (sound.ChannelDone(slot) || file.empty()) continue;
    if (!folder.empty() && file.starts_with(folder))
      sounding.folderSlot = slot;
    else
      sounding.other = true;
  }
  return sounding;
}

void Begin(Station& station) {
  EngineState& engine = station.engine;
  if (engine.EmergencyOnAir) return;
  engine.EmergencyOnAir = true;
  engine.emergency.requestAgainMs = 0;
  LogError(station, kPlace, kNotice, "nothing else can play: the emergency folder has the air");
}

void End(Station& station, const std::string& why) {
  if (!station.engine.EmergencyOnAir) return;
  station.engine.EmergencyOnAir = false;
  LogError(station, kPlace, kNotice, "the emergency folder has left the air: " + why);
}

// --- one element ---

OnAirElement EmergencyRow(Station& station, const std::string& name, const std::string& path,
                          int32_t lengthMs) {
  const auto overlapMs = static_cast<int32_t>(station.base.CnfInt(Cnf::kPmixDef));
  OnAirElement element;
  element.title = kEmergencyFolder;
  element.secondLine =
      FirstCharacters(DecodeSideFile(name.substr(0, name.rfind('.'))), kTitleWidth);
  element.genre = "AUTRES";
  element.file = path;
  element.code = Element::kOther;
  element.lengthMs = lengthMs;
  // The exit point of music, but most of a short file is heard.
  element.exitMs = std::clamp(overlapMs, 1, std::max(1, lengthMs / 4));
  return element;
}

// In silence the output needs no fade and no wait before its position begins anew: what PlayWave
// would do for CycleMax takes longer than the air may be silent.
class FreshOutput {
 public:
  FreshOutput(SoundChain& sound, bool silent, int32_t lengthMs)
      : sound_(sound),
        cycleMax_(sound.CycleMax()),
        fresh_(silent && int64_t{sound.OutputPosition()} + lengthMs > cycleMax_) {
    if (!fresh_) return;
    sound.Stop();
    sound.Close();
    sound.SetCycleMax(std::max(cycleMax_, lengthMs));
  }
  ~FreshOutput() {
    if (fresh_) sound_.SetCycleMax(cycleMax_);
  }
  FreshOutput(const FreshOutput&) = delete;

 private:
  SoundChain& sound_;
  int32_t cycleMax_;
  bool fresh_;
};

bool Holds(const Station& station, const std::string& path) {
  const SoundChain& sound = station.platform.sound;
  return sound.FileName(0) == path || sound.FileName(1) == path;
}

// By the ordinary road: a row at the head of the list, which goes as soon as it sounds.
bool PlayRow(Station& station, OnAirElement element, int32_t lengthMs) {
  const std::string file = element.file;
  const std::string title = TitleOf(element);
  station.PL.Insert(1, std::move(element));
  {
    const FreshOutput fresh(station.Sound(), NothingOnAir(station), lengthMs);
    PlayFirstRow(station);
  }
  if (!Holds(station, station.platform.soundFiles.Resolve(file))) return false;
  EngineState& engine = station.engine;
  station.notices.titleOnAir = title;
  engine.ElementPositionMs = 0;
  engine.RemainingMs = static_cast<int32_t>(engine.BufferOffsetSec * 1000) + engine.ElementLengthMs;
  RefreshPlanTimes(station);
  return true;
}

// Told once, until it plays.
void Refuse(Station& station, const std::string& name, const std::string& path,
            const char* reason) {
  auto& told = station.engine.emergency.told;
  if (told.size() >= kMostTold || !told.insert(name).second) return;
  station.events.Skip(Element::kOther, path, reason);
  LogError(station, kPlace, kNotice, path + " cannot be played (" + reason + ")");
}

bool PlayFile(Station& station, const std::string& name) {
  const std::string path = EmergencyOf(station).PathOf(name);
  if (!station.platform.soundFiles.Exists(path))
    return Refuse(station, name, path, "missing"), false;
  const int32_t lengthMs = station.platform.lengths.LengthMs(path);
  if (lengthMs <= 0) return Refuse(station, name, path, "unreadable"), false;
  if (!PlayRow(station, EmergencyRow(station, name, path, lengthMs), lengthMs)) return false;
  station.engine.emergency.told.erase(name);
  return true;
}

// --- one after the other ---

// The folder is listed anew. False when nothing in it is left to try for a while.
bool BeginRound(Station& station) {
  auto& emergency = station.engine.emergency;
  const bool allFailed = emergency.failed > 0 && emergency.failed >= emergency.roundSize;
  emergency.failed = 0;
  if (!allFailed) {
    const auto round = ShuffledRound(EmergencyFiles(station.platform.machineFolder), station.Now(),
                                     emergency.last);
    emergency.round.assign(round.begin(), round.end());
    emergency.roundSize = static_cast<int>(round.size());
    if (!round.empty()) return true;
  }
  emergency.lookAgainMs = NowMs(station) + kLookMs;
  return false;
}

// The next file that plays; files that do not are passed over, some of them in one tick.
bool PlayNext(Station& station) {
  auto& emergency = station.engine.emergency;
  const int64_t beginMs = NowMs(station);
  if (beginMs < emergency.lookAgainMs) return false;
  for (int tries = 0; tries < kMostTries && NowMs(station) - beginMs <= kMostTryMs; ++tries) {
    if (emergency.round.empty() && !BeginRound(station)) return false;
    const std::string name = emergency.round.front();
    emergency.round.pop_front();
    ++emergency.failed;
    if (!PlayFile(station, name)) continue;
    emergency.failed = 0;
    emergency.last = name;
    emergency.silentSinceMs = -1;
    Begin(station);
    return true;
  }
  return false;
}

// --- giving way ---

// The first row of the list that names a file which is there.
bool ListCanSound(Station& station) {
  const SoundFiles& files = station.platform.soundFiles;
  for (const OnAirRow& row : station.PL) {
    const std::string& file = row.file;
    if (!file.empty() && files.Exists(file)) return station.platform.lengths.LengthMs(file) > 0;
  }
  return false;
}

// A pip that waits for its percentage of the element asks for its next itself.
void GiveWay(Station& station) {
  EngineState& engine = station.engine;
  const int64_t nowMs = NowMs(station);
  if (!engine.IsAutomatic || engine.HourPipPending || nowMs < engine.emergency.listLookMs) return;
  engine.emergency.listLookMs = nowMs + kListLookMs;
  if (ListCanSound(station)) engine.NextRequested = true;
}

void GoOn(Station& station, int slot) {
  EngineState& engine = station.engine;
  if (!station.PL.Empty()) return GiveWay(station);
  SoundChain& sound = station.Sound();
  const bool exitReached = static_cast<double>(engine.MixPointMs) + sound.Position(slot) >=
                           static_cast<double>(engine.ElementLengthMs);
  if (!exitReached && !engine.NextRequested) return;
  if (engine.NextRequested)
    sound.FadeOut(slot, static_cast<int>(station.base.CnfInt(Cnf::kFadeOut)));
  PlayNext(station);
}

// --- silence ---

// A row that stood in the list at a silent tick was tried by that tick; where it is still silent,
// it started nothing.
void NoteSilence(Station& station) {
  auto& emergency = station.engine.emergency;
  if (emergency.silentSinceMs < 0) {
    emergency.silentSinceMs = NowMs(station);
    emergency.rowsFailed = false;
  } else if (emergency.hadRows) {
    emergency.rowsFailed = true;
  }
  emergency.hadRows = !station.PL.Empty();
}

void ServeSilence(Station& station) {
  EngineState& engine = station.engine;
  NoteSilence(station);
  if (!engine.IsAutomatic && !engine.emergency.rowsFailed && !engine.EmergencyOnAir) return;
  const int64_t silentMs = NowMs(station) - engine.emergency.silentSinceMs;
  if (silentMs < (engine.EmergencyOnAir ? kGapMs : kSilenceMs)) return;
  // A row that came this moment begins with this tick.
  if (silentMs < kSilenceMs + kListLookMs && ListCanSound(station)) return;
  if (!PlayNext(station) && silentMs >= kSilenceMs)
    End(station, "nothing in it can be played any more");
}

void Serve(Station& station) {
  EngineState& engine = station.engine;
  auto& emergency = engine.emergency;
  const Sounding sounding = WhatSounds(station);
  if (!engine.IsRunning) {
    emergency.silentSinceMs = -1;
    // Nobody waits for its end, which can be hours away.
    if (sounding.folderSlot >= 0) engine.NextRequested = true;
    return End(station, "the engine was stopped");
  }
  if (sounding.other) End(station, "something else plays");
  const bool onAir = sounding.other || sounding.folderSlot >= 0;
  if (!onAir && !station.Sound().Sounds(kOverlaySlot)) return ServeSilence(station);
  emergency.silentSinceMs = -1;
  if (engine.EmergencyOnAir && onAir) GoOn(station, sounding.folderSlot);
}

}  // namespace

void ServeEmergencyAir(Station& station) {
  try {
    Serve(station);
  } catch (const std::exception& error) {
    if (!LoggedLately(station, error.what(), kSameErrorMs)) LogCurrentException(station, kPlace);
  }
}

bool EmergencyLetsRequest(Station& station) {
  EngineState& engine = station.engine;
  if (!engine.EmergencyOnAir) return true;
  const int64_t nowMs = NowMs(station);
  if (nowMs < engine.emergency.requestAgainMs) return false;
  engine.emergency.requestAgainMs = nowMs + kRequestRestMs;
  return true;
}

}  // namespace zemo
