// Queued pip: idle -> (announced before MiniFinHeure) pending -> (percentage passed) cut -> idle
//                  -> (announced later) cut -> idle
// Pip over music: idle -> SavedVolume holds the music's volume -> (slot 2 done) lifted -> idle
#include "engine/HourPip.h"

#include "engine/ElementPlayback.h"
#include "library/OnAirRows.h"
#include "platform/SoundSource.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {
constexpr float kGuardSec = 32;  // one announcement an hour, however long the test holds

void LayOverMusic(Station& station, const Pip& pip) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  engine.SavedVolume = sound.Volume(engine.CurrentChannel);
  sound.SetVolume(engine.CurrentChannel,
                  static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSous)));
  sound.SetChannelDone(kOverlaySlot, true);
  try {
    LoadOverlay(station, pip.file);
  } catch (const SoundError&) {
    // The music is lifted again at the end of this very step, since slot 2 is done.
    LogCurrentException(station, "Top Horaire");
    return;
  }
  sound.SetPaused(false);
  StartOverlay(station, "pip");
}

void Queue(Station& station, const Pip& pip) {
  EngineState& engine = station.engine;
  station.PL.Insert(1, RowOfHourPip(pip.file));
  engine.MixPointMs = static_cast<float>(station.base.CnfInt(Cnf::kPmixToph));
  if (engine.ProgressPercent < station.base.CnfInt(Cnf::kMiniFinHeure)) {
    engine.HourPipPending = true;
  } else {
    engine.HourPipPending = false;
    engine.NextRequested = true;
  }
}

// OffsetTopH stands unpadded in the text, so that 5 compares as "59:5", which is 59:50.
bool PipIsDue(Station& station, const LocalDateTime& now) {
  constexpr int kLastMinute = 59;
  if (now.minute != kLastMinute) return false;
  return TimeText(now).substr(3) >= "59:" + station.base.CnfText(Cnf::kOffsetTopH);
}

void Announce(Station& station, const LocalDateTime& now) {
  EngineState& engine = station.engine;
  const Pip pip =
      FindPip(station, now);  // a fault leaves the guard, so that the next tick asks again
  engine.LastTopHourTimer = SecondsSinceMidnight(now);
  if (pip.file.empty()) return;
  if (pip.overMusic)
    LayOverMusic(station, pip);
  else
    Queue(station, pip);
  engine.LastJingleTimer = SecondsSinceMidnight(now);
}
}  // namespace

Pip FindPip(Station& station, const LocalDateTime& now) {
  if (station.engine.PipSuppressed) return {};
  const int hour = (now.hour + 1) % 24;
  const std::string weekday(static_cast<size_t>(CurrentWeekday(now) - 1), '?');
  const auto pips = station.base.Db().OpenRecordset(
      "SELECT * FROM Toph WHERE Heure = ? AND JourSemaine Like ?", {hour, weekday + "X*"});
  if (pips->Eof()) return {};
  return {Trim(pips->Text("FICHIER")), pips->Bool("SURIMPRESSION")};
}

void ServeHourPip(Station& station, const LocalDateTime& now) {
  EngineState& engine = station.engine;
  const float timer = SecondsSinceMidnight(now);
  // A pip over the music that still sounds where the clock goes back ends as any other.
  const bool clockWentBack =
      GuardIsAhead(timer, engine.LastTopHourTimer) && engine.SavedVolume == 0;
  const bool midnight = now.hour == 0 && now.minute == 0 && now.second == 0;
  if ((midnight || clockWentBack || timer - engine.LastTopHourTimer >= kGuardSec) &&
      !engine.HourPipPending) {
    if (PipIsDue(station, now)) {
      Announce(station, now);
    } else {
      engine.SavedVolume = 0;
      engine.LastTopHourTimer = 0;
    }
  }
  if (engine.HourPipPending && engine.ProgressPercent > station.base.CnfInt(Cnf::kMiniFinHeure)) {
    engine.HourPipPending = false;
    engine.NextRequested = true;
    engine.LastJingleTimer = timer;
  }
  if (engine.SavedVolume != 0 && station.Sound().ChannelDone(kOverlaySlot)) {
    ChangeVolume(station, engine.CurrentChannel, engine.SavedVolume,
                 static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusique)));
    engine.SavedVolume = 0;
  }
}

}  // namespace zemo
