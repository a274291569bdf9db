// Invariants:
// 1. MainTimer is held from the loading of the slot to the end, whatever way the routine ends.
// 2. What is audible comes first; every read of a card and every write comes after the overlap.
// 3. StartNextNow and NextRequested are cleared here and nowhere else, and only once an element
// sounds:
//    a row that starts nothing leaves them set, so that the next tick takes the row behind it.
#include "engine/ElementPlayback.h"

#include <algorithm>
#include <cstdio>

#include "engine/BaseMaintenance.h"
#include "library/OnAirRows.h"
#include "platform/Folder.h"
#include "platform/SoundSource.h"
#include "reports/AirWrites.h"
#include "reports/BroadcastReport.h"
#include "scheduling/JingleSelection.h"
#include "settings/ExtractMarks.h"
#include "settings/NowPlaying.h"
#include "settings/SideFiles.h"
#include "settings/WebPage.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"
#include "store/StoreError.h"
#include "traffic/BreakInsertion.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "PlayWave";
constexpr float kLongOverlapMs =
    3000;  // a longer overlap fades the old element, a shorter does not

// One element on its way to the air.
struct Incoming {
  const std::string& file;  // stored path
  int32_t code;
  std::string path;  // of this system
  int volume = 0;
  int current = 0;  // slot on air
  int next = 1;     // slot that takes the element
};

const OnAirElement& FirstRow(const Station& station) {
  static const OnAirElement none;  // an order during the overlap can have emptied the list
  return station.PL.Empty() ? none : station.PL.Row(1);
}

// --- rows that start nothing ---

void ServePlaylistMarker(Station& station, int32_t code) {
  EngineState& engine = station.engine;
  const OnAirElement& row = FirstRow(station);
  station.events.Marker(code, TitleOf(row));
  if (!engine.ReportsDisabled) {
    ReportRow report = NewReportRow(station);
    report.GENRE = "PLAYLIST";
    report.AUTEUR = row.title;
    report.TITRE = row.secondLine;
    WriteOrKeep(station, {.row = report, .where = kRoutine});
  }
  if (code == Element::kStartPlaylist) {
    engine.PlaylistRunning = true;
    engine.RunningPlaylistName = row.secondLine;
  } else {
    engine.NoJingleActive = false;
    engine.PlaylistRunning = false;
    engine.HourBlockHandled = false;
    engine.PipSuppressed = false;
    engine.RunningPlaylistName.clear();
  }
}

// A pipe, a folder or a device in the place of a file is told as what it is. The reading refuses it
// without waiting for it.
void TellWhatStandsThere(Station& station, const std::string& file) {
  try {
    station.platform.soundFiles.Read(file);
  } catch (const std::exception&) {
    LogCurrentException(station, "PlayWave");
  }
}

// True when the element can be loaded; otherwise the row starts nothing and the reason is told.
bool HasFile(Station& station, const std::string& file, int32_t code) {
  if (!file.empty() && station.platform.soundFiles.Exists(file)) return true;
  const bool marker = code == Element::kStartPlaylist || code == Element::kEndPlaylist;
  if (marker) return false;
  if (!file.empty()) TellWhatStandsThere(station, file);
  station.events.Skip(code, file, file.empty() ? "empty" : "missing");
  return false;
}

// --- before the start ---

void ClearTicker(MainScreen& screen) {
  screen.LblInfoScrolling = false;
  screen.LblInfo = "ZEMO RADIO PRO";
}

int VolumeOfKind(Station& station, int32_t code) {
  EngineState& engine = station.engine;
  if (code != Element::kNews && code != Element::kSpot)
    return static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusique));
  engine.LastJingleTimer = station.Timer();
  return static_cast<int>(
      station.base.CnfInt(code == Element::kNews ? Cnf::kVolumeRubriques : Cnf::kVolumePubs));
}

int VolumeUnderVoiceTrack(Station& station, int kindVolume) {
  if (station.engine.VoiceTrackState == 0) return kindVolume;
  return static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSous));
}

void SetExtract(Station& station, const Incoming& element) {
  EngineState& engine = station.engine;
  if (!engine.CheckExtrait) return;
  if (element.code < 1) {
    engine.CheckExtrait = false;
    engine.ExtractEndMs = 0;
    station.screen.LblFeu.visible = false;
    return;
  }
  engine.ExtractEndMs = 0;
  const auto marks = ReadExtractMarks(station, element.file);
  int32_t startMs = marks ? marks->startMs : 0;
  int32_t endMs = marks ? marks->endMs : 0;
  if (endMs == 0 && station.base.CnfInt(Cnf::kExtraitAuto) == 1) {
    startMs = static_cast<int32_t>(station.base.CnfInt(Cnf::kInExtrait) * 1000);
    endMs = startMs + static_cast<int32_t>(station.base.CnfInt(Cnf::kOutExtrait) * 1000);
  } else if (!marks) {
    return;
  }
  // Marks behind the end of the file would give an element without a sound: it plays whole.
  if (startMs >= engine.ElementLengthMs) return;
  station.Sound().SetPosition(element.next, startMs);
  engine.ExtractEndMs = endMs;
}

void DeriveChannels(Station& station, Incoming& element) {
  const bool slot0OnAir = !station.Sound().ChannelDone(0);
  element.current = slot0OnAir ? 0 : 1;
  element.next = slot0OnAir ? 1 : 0;
  station.engine.CurrentChannel = element.current;
  station.engine.NextChannel = element.next;
}

// MixPointMs is still the old element's here.
void FadeOldElement(Station& station, const Incoming& element) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  const auto fadeMs = static_cast<int>(station.base.CnfInt(Cnf::kFadeOut));
  if (engine.MixPointMs > kLongOverlapMs) sound.FadeOut(element.current, fadeMs);
  if (engine.MixPointMs > static_cast<float>(engine.ElementLengthMs)) {
    sound.FadeOut(element.current, std::min(fadeMs, engine.ElementLengthMs));
    engine.MixPointMs = 0;
  }
}

// --- the start ---

void TellStart(Station& station, const Incoming& element, int slot) {
  SoundChain& sound = station.Sound();
  const OnAirElement& row = FirstRow(station);
  StartedElement started;
  started.code = element.code;
  started.file = element.file;
  started.title = TitleOf(row);
  started.kind = row.genre;
  started.slot = slot;
  started.length_ms = sound.Length(slot);
  started.position_ms = sound.Position(slot);
  started.volume = sound.Volume(slot);
  station.events.Start(started);
  station.WatchSilence();
}

// By the clock that is never set: an overlap left too early would take the old element for the one
// on air and hurry to the next.
void WaitOutOverlap(Station& station, const Incoming& element) {
  const EngineState& engine = station.engine;
  const bool shortJingles = station.base.CnfInt(Cnf::kJingleCourt) == 1;
  const float waitMs =
      engine.MixPointMs + engine.BufferOffsetSec * 1000 + (shortJingles ? 1000.0F : 0.0F);
  const int64_t startMs = station.platform.clock.MonotonicMs();
  while (!station.Sound().ChannelDone(element.current) &&
         static_cast<float>(station.platform.clock.MonotonicMs() - startMs) < waitMs)
    station.platform.loop.WaitYield();
  station.base.CheckCnf();  // what was stored during the overlap holds from here on
}

void StartOnFreeSlot(Station& station, const Incoming& element) {
  SoundChain& sound = station.Sound();
  sound.SetChannelDone(element.next, false);
  TellStart(station, element, element.next);
  station.screen.LblLongueur = FormatDuration(station.engine.ElementLengthMs);
  station.engine.ElementPositionMs = sound.ChannelPosition(element.next);
  if (sound.State() == OutputState::kStarted) WaitOutOverlap(station, element);
}

// The output's position would pass CycleMax during the element: begin it on a fresh output, slot 0.
void RestartOutput(Station& station, const Incoming& element) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  sound.FadeOut(element.current, static_cast<int>(engine.BufferOffsetSec * 1000));
  WaitSeconds(station, engine.BufferOffsetSec + 1.5F);
  for (int slot = 0; slot < kSlots; ++slot) sound.SetFileName(slot, "", SlotEnd::kRestart);
  sound.Stop();
  sound.Close();
  sound.Open();
  station.platform.loop.Yield();
  sound.SetFileName(0, element.path);
  engine.ElementLengthMs = sound.Length(0);
  sound.SetVolume(0, VolumeUnderVoiceTrack(station, element.volume));
  sound.SetChannelDone(1, true);
  sound.SetChannelDone(0, false);
  sound.Start();
  engine.CurrentChannel = 0;
  engine.NextChannel = 1;
  TellStart(station, element, 0);
}

// One that is longer than the cycle would pass it on a fresh output as well.
bool CycleWouldOverflow(Station& station) {
  const SoundChain& sound = station.platform.sound;
  if (station.engine.ElementLengthMs > sound.CycleMax()) return false;
  return static_cast<int64_t>(sound.OutputPosition()) + station.engine.ElementLengthMs >
         sound.CycleMax();
}

// --- after the overlap ---

void ShowComment(MainScreen& screen, const std::string& comment) {
  if (comment.empty()) return;
  screen.LblInfo = std::string(20, ' ') + UpperLatin(comment);
  screen.LblInfoScrolling = true;
}

void BeginIntro(Station& station, int32_t code, int32_t introSec) {
  EngineState& engine = station.engine;
  engine.IntroLengthSec = introSec;
  if (introSec < 1) {
    station.screen.VueIntro.visible = false;
    return;
  }
  engine.IntroStartTimer = station.Timer();
  station.screen.VueIntro = {true, 0, introSec};
  if (FindJingleAssocie(station, code)) return;
  const int64_t gapMinutes = station.base.CnfInt(Cnf::kJinglesIntro);
  if (gapMinutes <= 0) return;
  const float now = station.Timer();
  const float last = engine.LastIntroJingleTimer;
  if (!GuardIsAhead(now, last) && (now - last) / 60 <= static_cast<float>(gapMinutes)) return;
  engine.IntroOverlayPending = false;
  engine.LastIntroJingleTimer = now;
  FindJingle(station, true, introSec * 1000);
}

// The row's own exit point, else the setting.
float RowExitMs(Station& station, Cnf::Field fallback) {
  const int64_t exitMs = FirstRow(station).exitMs.value_or(0);
  return static_cast<float>(exitMs > 0 ? exitMs : station.base.CnfInt(fallback));
}

// What a music title's card says of it.
struct MusicCard {
  bool found = false;
  int64_t exitMs = 0;  // 0: the setting's
  int32_t introSec = 0;
  std::string file, comment;
  ReportRow report{};  // its texts, without a moment
};

MusicCard ReadMusicCard(Station& station, int32_t code) {
  const auto card = station.base.Table("Discotheque");
  if (!SeekCode(*card, code)) return {};
  return {true,
          card->Int("POINTSORTIE"),
          static_cast<int32_t>(card->Int("INTRO")),
          card->Text("FILENAME"),
          Trim(card->Text("COMMENTAIRE")),
          ReportOfCard(*card)};
}

void WriteMusic(Station& station, AirWrite::Kind kind, int32_t code, const ReportRow& begun) {
  if (kind == AirWrite::Kind::kTitlePlayed)
    station.requests.airings[code] = {station.platform.clock.MonotonicMs(), BroadcastText(begun)};
  WriteOrKeep(station, {.kind = kind, .code = code, .row = begun, .where = kRoutine});
}

// Without its card a title has neither introduction nor comment, and the exit point of its row;
// what was played is marked and reported all the same, as soon as the base can be reached.
MusicCard FollowUpUnreadMusic(Station& station, int32_t code, const StoreError& error) {
  LogError(station, kRoutine, error.Number(), error.what());
  station.engine.IntroLengthSec = 0;
  station.engine.MixPointMs = RowExitMs(station, Cnf::kPmixDef);
  const ReportRow begun = NewReportRow(station);
  WriteMusic(station, AirWrite::Kind::kTitlePlayed, code, begun);
  if (!station.engine.ReportsDisabled)
    WriteMusic(station, AirWrite::Kind::kMusicReport, code, begun);
  return {};
}

// The exit point first: whatever fails behind it must not leave the old element's.
MusicCard FollowUpMusic(Station& station, int32_t code) {
  EngineState& engine = station.engine;
  MusicCard card;
  try {
    card = ReadMusicCard(station, code);
  } catch (const StoreError& error) {
    return FollowUpUnreadMusic(station, code, error);
  }
  if (!card.found) {
    engine.IntroLengthSec = 0;
    engine.MixPointMs = static_cast<float>(station.base.CnfInt(Cnf::kPmixDef));
    return card;
  }
  if (engine.FittingActive)
    engine.MixPointMs = static_cast<float>(FirstRow(station).exitMs.value_or(0));
  else
    engine.MixPointMs =
        static_cast<float>(card.exitMs > 0 ? card.exitMs : station.base.CnfInt(Cnf::kPmixDef));
  SetMoment(card.report, station);
  WriteMusic(station, AirWrite::Kind::kTitlePlayed, code, card.report);
  ShowComment(station.screen, card.comment);
  BeginIntro(station, code, card.introSec);
  if (!engine.ReportsDisabled) WriteMusic(station, AirWrite::Kind::kMusicReport, 0, card.report);
  return card;
}

void FollowUpOther(Station& station, const Incoming& element) {
  EngineState& engine = station.engine;
  ReportRow report = NewReportRow(station);
  switch (element.code) {
    case Element::kJingle:
      report.GENRE = "JINGLE";
      engine.MixPointMs = RowExitMs(station, Cnf::kPmixJingles);
      report.AUTEURCOMPOSITEUR = FindJingleCompositeur(station, element.file);
      break;
    case Element::kSpot:
    case Element::kNews:
      report.GENRE = element.code == Element::kSpot ? "PUB" : "Rubrique";
      engine.MixPointMs = static_cast<float>(station.base.CnfInt(Cnf::kPmixPubs));
      FindInfoPubRub(station);
      engine.LastJingleTimer = station.Timer();
      engine.LastIntroJingleTimer = station.Timer();
      break;
    case Element::kHourPip:
      report.GENRE = "TOP-H";
      engine.MixPointMs = static_cast<float>(station.base.CnfInt(Cnf::kPmixToph));
      break;
    case Element::kOther:
      report.GENRE = "AUTRES";
      engine.MixPointMs = RowExitMs(station, Cnf::kPmixJingles);
      break;
    case Element::kVoiceTrack:
      engine.MixPointMs = static_cast<float>(FirstRow(station).exitMs.value_or(0));
      return;  // a voice track leaves no report row
    default:
      return;
  }
  if (engine.ReportsDisabled) return;
  report.AUTEUR = FirstRow(station).title;
  report.TITRE = FirstRow(station).secondLine;
  WriteOrKeep(station, {.row = report, .where = kRoutine});
}

void ShowExitPoint(Station& station) {
  char text[32];
  std::snprintf(text, sizeof text, "PS %.1f",
                static_cast<double>(station.engine.MixPointMs) / 1000);
  station.screen.PSortie = text;
  station.screen.VuMettrePercent = 0;
}

void TellOutside(Station& station, int32_t code, const MusicCard& card) {
  const auto& page = station.lists.Internet;
  if (page.on && card.found)
    SaveInfoRealAudio(station, card.report.AUTEUR + page.separator + card.report.TITRE, card.file);
  if (code > 0) {
    SaveDonnes_Associees(station, card.comment);
    SurveilleNewBase(station);
  }
}

void LoadOnFreeSlot(Station& station, Incoming& element) {
  SoundChain& sound = station.Sound();
  ClearTicker(station.screen);
  element.volume = VolumeOfKind(station, element.code);
  DeriveChannels(station, element);
  element.path = station.platform.soundFiles.Resolve(element.file);
  try {
    sound.SetFileName(element.next, element.path);
  } catch (const SoundError&) {
    station.events.Skip(element.code, element.file, "unreadable");
    throw;
  }
  station.engine.ElementLengthMs = sound.Length(element.next);
  SetExtract(station, element);
  sound.SetVolume(element.next, VolumeUnderVoiceTrack(station, element.volume));
}

void PlayElement(Station& station, Incoming element) {
  SoundChain& sound = station.Sound();
  LoadOnFreeSlot(station, element);
  FadeOldElement(station, element);
  if (CycleWouldOverflow(station))
    RestartOutput(station, element);
  else
    StartOnFreeSlot(station, element);
  station.engine.StartNextNow = false;
  station.engine.NextRequested = false;
  if (sound.State() != OutputState::kStarted) sound.Start();
  station.WatchSilence();
  station.base.Waiting().LetSavedWait();

  MusicCard card;
  if (element.code > 0)
    card = FollowUpMusic(station, element.code);
  else
    FollowUpOther(station, element);
  ShowExitPoint(station);
  TellOutside(station, element.code, card);
  station.events.OnAir(element.code, station.engine.MixPointMs, station.engine.IntroLengthSec);
}

}  // namespace

void PlayWave(Station& station, const std::string& file, int32_t code) {
  station.engine.CodeEnCours = code;
  if (code == Element::kBeginExtract) {
    station.engine.CheckExtrait = true;
    station.events.Marker(code, TitleOf(FirstRow(station)));
    return;
  }
  try {
    if (code == Element::kStartPlaylist || code == Element::kEndPlaylist)
      ServePlaylistMarker(station, code);
    if (!HasFile(station, file, code)) return;
    const MainTimerHold hold(station);
    // Copies: the row that `file` may stand in can go during the overlap.
    const std::string ownFile = file;
    PlayElement(station, {ownFile, code, {}});
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine, "code " + std::to_string(code));
  }
}

void CalculOffset(Station& station) {
  const SoundChain& sound = station.platform.sound;
  const float offset = static_cast<float>(sound.OutputNumBuffers()) *
                       static_cast<float>(sound.OutputBufferSize()) / 2048.0F / 100.0F;
  station.engine.BufferOffsetSec = offset;
  char text[32];
  std::snprintf(text, sizeof text, "%g '' de buffers", static_cast<double>(offset));
  station.screen.LblOffsetBuffers = text;
}

void ChangeVolume(Station& station, int channel, int from, int to) {
  const MainTimerHold hold(station);
  for (int volume = from; volume < to; ++volume) {
    station.Sound().SetVolume(channel, volume);
    station.platform.loop.Yield();
  }
  station.Sound().SetVolume(channel, to);
  station.base.CheckCnf();
}

void WaitSeconds(Station& station, float seconds) {
  float startTimer = station.Timer();
  while (true) {
    const float now = station.Timer();
    if (now < startTimer) startTimer = now;  // midnight, or a clock set back
    if (now - startTimer >= seconds) break;
    station.platform.loop.WaitYield();
  }
  station.base.CheckCnf();
}

bool NothingOnAir(const Station& station) {
  const SoundChain& sound = station.platform.sound;
  const bool closed = sound.State() == OutputState::kClosed;
  for (int slot : {0, 1})
    if (!sound.ChannelDone(slot) && !(closed && sound.FileName(slot).empty())) return false;
  return true;
}

}  // namespace zemo
