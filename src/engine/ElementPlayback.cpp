// Two elements meet here, each a value with its own figures: `Outgoing` sounds when the start
// begins, `Incoming` is to sound. What follows the start goes one way for every kind of element,
// and for whatever the base says of it.
// Invariants:
// 1. MainTimer is held from the loading of the slot to the end, whatever way the routine ends.
// 2. What is audible comes first; every read of a card and every write comes after the overlap. Of
//    the base only the settings and the measures of the file are read ahead of it, without a wait.
// 3. StartNextNow is cleared here alone, NextRequested also by the stopped tick, and only once an
//    element sounds: a row that starts nothing leaves them set, so that the next tick takes the row
//    behind it.
#include "engine/ElementPlayback.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engine/BaseMaintenance.h"
#include "engine/ElementOnAir.h"
#include "engine/KeptPosition.h"
#include "engine/UnplayableRows.h"
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
#include "station/Loudness.h"
#include "station/Overlap.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"
#include "store/StoreError.h"
#include "traffic/BreakInsertion.h"

namespace zemo {

namespace {

constexpr const char* kPlayRoutine = "PlayWave";

// What sounds when a start begins.
struct Outgoing {
  int slot = 0;
  float exitMs = 0;  // its exit distance; 0 where there is no overlap with the incoming one
};

// What is to sound.
struct Incoming {
  OnAirElement row;    // a copy: during the overlap the list is the operator's
  std::string path{};  // of this system
  int slot = 1;
  double gain = 1;  // of its file
  int volume = 0;
  int32_t lengthMs = 0;
};

// --- rows that start nothing ---

void ServePlaylistMarker(Station& station, const OnAirElement& row) {
  EngineState& engine = station.engine;
  station.events.Marker(row.code, TitleOf(row));
  if (!engine.ReportsDisabled) {
    ReportRow report = NewReportRow(station);
    report.GENRE = "PLAYLIST";
    report.AUTEUR = row.title;
    report.TITRE = row.secondLine;
    WriteOrKeep(station, {.row = report, .where = kPlayRoutine});
  }
  if (row.code == Element::kStartPlaylist) {
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
bool HasFile(Station& station, const OnAirElement& row) {
  if (!row.file.empty() && station.platform.soundFiles.Exists(row.file)) return true;
  const bool marker = row.code == Element::kStartPlaylist || row.code == Element::kEndPlaylist;
  if (marker) return false;
  if (!row.file.empty()) TellWhatStandsThere(station, row.file);
  const char* reason = row.file.empty() ? "empty" : "missing";
  station.events.Skip(row.code, row.file, reason);
  TellUnplayable(station, row, reason);
  return false;
}

// --- before the start ---

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
  if (element.row.code < 1) {
    engine.CheckExtrait = false;
    engine.ExtractEndMs = 0;
    return;
  }
  engine.ExtractEndMs = 0;
  const auto marks = ReadExtractMarks(station, element.row.file);
  int32_t startMs = marks ? marks->startMs : 0;
  int32_t endMs = marks ? marks->endMs : 0;
  if (endMs == 0 && station.base.CnfInt(Cnf::kExtraitAuto) == 1) {
    startMs = static_cast<int32_t>(station.base.CnfInt(Cnf::kInExtrait) * 1000);
    endMs = startMs + static_cast<int32_t>(station.base.CnfInt(Cnf::kOutExtrait) * 1000);
  } else if (!marks) {
    return;
  }
  // Marks behind the end of the file would give an element without a sound: it plays whole.
  if (startMs >= element.lengthMs) return;
  station.Sound().SetPosition(element.slot, startMs);
  engine.ExtractEndMs = endMs;
}

// MixPointMs is the old element's up to the follow-up of the new one.
Outgoing WhatSounds(const Station& station) {
  const int slot = station.platform.sound.ChannelDone(0) ? 1 : 0;
  return {.slot = slot, .exitMs = station.engine.MixPointMs};
}

void LoadIncoming(Station& station, Incoming& element) {
  SoundChain& sound = station.Sound();
  element.path = station.platform.soundFiles.Resolve(element.row.file);
  try {
    sound.SetFileName(element.slot, element.path);
  } catch (const SoundError&) {
    station.events.Skip(element.row.code, element.row.file, "unreadable");
    throw;
  }
  element.gain = LoudnessGain(station, element.row.file);
  sound.SetGain(element.slot, element.gain);
  element.lengthMs = sound.Length(element.slot);
  station.engine.ElementLengthMs = element.lengthMs;
  SetExtract(station, element);
  sound.SetVolume(element.slot, VolumeUnderVoiceTrack(station, element.volume));
}

// The overlap is the old element's exit distance. A new element that is shorter than that leaves no
// overlap, and fades the old one within its own length.
void FadeOutgoing(Station& station, Outgoing& old, int32_t newLengthMs) {
  SoundChain& sound = station.Sound();
  const auto fadeMs = static_cast<int>(station.base.CnfInt(Cnf::kFadeOut));
  if (old.exitMs > kLongOverlapMs) sound.FadeOut(old.slot, fadeMs);
  if (old.exitMs <= static_cast<float>(newLengthMs)) return;
  sound.FadeOut(old.slot, std::min(fadeMs, newLengthMs));
  old.exitMs = 0;
  station.engine.MixPointMs = 0;
}

// --- the start ---

void TellStart(Station& station, const Incoming& element) {
  SoundChain& sound = station.Sound();
  StartedElement started;
  started.code = element.row.code;
  started.file = element.row.file;
  started.title = TitleOf(element.row);
  started.kind = element.row.genre;
  started.slot = element.slot;
  started.length_ms = sound.Length(element.slot);
  started.position_ms = sound.Position(element.slot);
  started.volume = sound.Volume(element.slot);
  station.events.Start(started);
  CountLateStart(station);
  station.WatchSilence();
}

// By the clock that is never set: an overlap left too early would take the old element for the one
// on air and hurry to the next.
void WaitOutOverlap(Station& station, const Outgoing& old) {
  const bool shortJingles = station.base.CnfInt(Cnf::kJingleCourt) == 1;
  const float waitMs =
      old.exitMs + station.engine.BufferOffsetSec * 1000 + (shortJingles ? 1000.0F : 0.0F);
  const int64_t startMs = station.platform.clock.MonotonicMs();
  while (!station.Sound().ChannelDone(old.slot) &&
         static_cast<float>(station.platform.clock.MonotonicMs() - startMs) < waitMs)
    station.platform.loop.WaitYield();
  station.base.CheckCnf();  // what was stored during the overlap holds from here on
}

void StartOnFreeSlot(Station& station, const Outgoing& old, const Incoming& element) {
  SoundChain& sound = station.Sound();
  sound.SetChannelDone(element.slot, false);
  TellStart(station, element);
  station.engine.ElementPositionMs = sound.ChannelPosition(element.slot);
  if (sound.State() == OutputState::kStarted) WaitOutOverlap(station, old);
}

// The output's position would pass CycleMax during the element: begin it on a fresh output, slot 0.
void RestartOutput(Station& station, const Outgoing& old, Incoming& element) {
  EngineState& engine = station.engine;
  SoundChain& sound = station.Sound();
  sound.FadeOut(old.slot, static_cast<int>(engine.BufferOffsetSec * 1000));
  WaitSeconds(station, engine.BufferOffsetSec + 1.5F);
  for (int slot = 0; slot < kSlots; ++slot) sound.SetFileName(slot, "", SlotEnd::kRestart);
  sound.Stop();
  sound.Close();
  sound.Open();
  station.platform.loop.Yield();
  element.slot = 0;
  sound.SetFileName(element.slot, element.path);
  sound.SetGain(element.slot, element.gain);
  element.lengthMs = sound.Length(element.slot);
  engine.ElementLengthMs = element.lengthMs;
  sound.SetVolume(element.slot, VolumeUnderVoiceTrack(station, element.volume));
  sound.SetChannelDone(1, true);
  sound.SetChannelDone(element.slot, false);
  sound.Start();
  engine.CurrentChannel = element.slot;
  engine.NextChannel = 1;
  TellStart(station, element);
}

// One that is longer than the cycle would pass it on a fresh output as well.
bool CycleWouldOverflow(const Station& station, int32_t lengthMs) {
  const SoundChain& sound = station.platform.sound;
  if (lengthMs > sound.CycleMax()) return false;
  return static_cast<int64_t>(sound.OutputPosition()) + lengthMs > sound.CycleMax();
}

// --- after the overlap ---

// What the library says of the element.
struct TitleCard {
  enum class Read {
    kNoTitle,  // the element is none
    kNoCard,   // a title that the library does not hold: it is neither marked nor reported
    kNotRead,  // the base could not be reached
    kWhole,
  };

  Read read = Read::kNoTitle;
  int64_t exitMs = 0;  // 0: the setting's
  int32_t introSec = 0;
  std::string file{}, comment{};
  ReportRow texts{};  // of the report, without a moment

  bool Known() const { return read == Read::kWhole || read == Read::kNotRead; }
};

// The one read of it at a start. A base that is out of reach is logged; what was played is marked
// and reported all the same, as soon as it is back.
TitleCard ReadTitleCard(Station& station, int32_t code) {
  if (code <= 0) return {};
  try {
    const auto card = station.base.Table("Discotheque");
    if (!SeekCode(*card, code)) return {.read = TitleCard::Read::kNoCard};
    return {.read = TitleCard::Read::kWhole,
            .exitMs = card->Int("POINTSORTIE"),
            .introSec = static_cast<int32_t>(card->Int("INTRO")),
            .file = card->Text("FILENAME"),
            .comment = Trim(card->Text("COMMENTAIRE")),
            .texts = ReportOfCard(*card)};
  } catch (const StoreError& error) {
    LogError(station, kPlayRoutine, error.Number(), error.what());
    return {.read = TitleCard::Read::kNotRead};
  }
}

// The row's own exit point, else the setting.
float RowExitMs(Station& station, const OnAirElement& row, Cnf::Field fallback) {
  const int64_t exitMs = row.exitMs.value_or(0);
  return static_cast<float>(exitMs > 0 ? exitMs : station.base.CnfInt(fallback));
}

float TitleExitMs(Station& station, const OnAirElement& row, const TitleCard& card) {
  if (card.read == TitleCard::Read::kNotRead) return RowExitMs(station, row, Cnf::kPmixDef);
  if (card.read == TitleCard::Read::kWhole && station.engine.FittingActive)
    return static_cast<float>(row.exitMs.value_or(0));
  return static_cast<float>(card.exitMs > 0 ? card.exitMs : station.base.CnfInt(Cnf::kPmixDef));
}

// Where the element gives way, ms before its end; none for a code that is no element's.
std::optional<float> ExitMs(Station& station, const OnAirElement& row, const TitleCard& card) {
  if (row.code > 0) return TitleExitMs(station, row, card);
  switch (row.code) {
    case Element::kJingle:
    case Element::kOther:
      return RowExitMs(station, row, Cnf::kPmixJingles);
    case Element::kSpot:
    case Element::kNews:
      return static_cast<float>(station.base.CnfInt(Cnf::kPmixPubs));
    case Element::kHourPip:
      return static_cast<float>(station.base.CnfInt(Cnf::kPmixToph));
    case Element::kVoiceTrack:
      return static_cast<float>(row.exitMs.value_or(0));
    default:
      return std::nullopt;
  }
}

// --- what was played, and its report ---

void WriteMusic(Station& station, AirWrite::Kind kind, int32_t code, const ReportRow& begun) {
  WriteOrKeep(station, {.kind = kind, .code = code, .row = begun, .where = kPlayRoutine});
}

void MarkPlayed(Station& station, const OnAirElement& row, const TitleCard& card,
                const ReportRow& begun) {
  EngineState& engine = station.engine;
  if (card.Known()) {
    station.requests.airings[row.code] = {station.platform.clock.MonotonicMs(),
                                          BroadcastText(begun)};
    WriteMusic(station, AirWrite::Kind::kTitlePlayed, row.code, begun);
  } else if (row.code == Element::kSpot || row.code == Element::kNews) {
    TellBreakElement(station, row);
    engine.LastJingleTimer = station.Timer();
    engine.LastIntroJingleTimer = station.Timer();
  }
}

// The word of the report; null for what leaves no row in it.
const char* KindWord(int32_t code) {
  switch (code) {
    case Element::kJingle:
      return "JINGLE";
    case Element::kSpot:
      return "PUB";
    case Element::kNews:
      return "Rubrique";
    case Element::kHourPip:
      return "TOP-H";
    case Element::kOther:
      return "AUTRES";
    default:
      return nullptr;
  }
}

// A title's texts are its card's; where that was not read, the report takes them when it is
// written.
void WriteReport(Station& station, const OnAirElement& row, const TitleCard& card,
                 ReportRow begun) {
  if (station.engine.ReportsDisabled) return;
  if (card.Known()) {
    const bool whole = card.read == TitleCard::Read::kWhole;
    return WriteMusic(station, AirWrite::Kind::kMusicReport, whole ? 0 : row.code, begun);
  }
  const char* word = KindWord(row.code);
  if (!word) return;
  begun.GENRE = word;
  if (row.code == Element::kJingle) begun.AUTEURCOMPOSITEUR = ComposerOfJingle(station, row.file);
  begun.AUTEUR = row.title;
  begun.TITRE = row.secondLine;
  WriteOrKeep(station, {.row = begun, .where = kPlayRoutine});
}

// --- comment, introduction, exit point ---

void TellComment(Station& station, const std::string& comment) {
  if (!comment.empty()) station.notices.ticker = std::string(20, ' ') + UpperLatin(comment);
}

void BeginIntro(Station& station, int32_t code, int32_t introSec) {
  EngineState& engine = station.engine;
  engine.IntroLengthSec = introSec;
  engine.IntroShown = introSec >= 1;
  if (!engine.IntroShown) return;
  engine.IntroStartTimer = station.Timer();
  if (FindAssociatedJingle(station, code)) return;
  const int64_t gapMinutes = station.base.CnfInt(Cnf::kJinglesIntro);
  if (gapMinutes <= 0) return;
  const float now = station.Timer();
  const float last = engine.LastIntroJingleTimer;
  if (!GuardIsAhead(now, last) && (now - last) / 60 <= static_cast<float>(gapMinutes)) return;
  engine.IntroOverlayPending = false;
  engine.LastIntroJingleTimer = now;
  FindJingle(station, true, introSec * 1000);
}

void TellOutside(Station& station, int32_t code, const TitleCard& card) {
  const auto& page = station.lists.Internet;
  if (page.on && card.read == TitleCard::Read::kWhole)
    SaveInfoRealAudio(station, card.texts.AUTEUR + page.separator + card.texts.TITRE, card.file);
  if (code > 0) {
    SaveAssociatedData(station, card.comment);
    TakeDroppedBase(station);
  }
}

// The exit point first: whatever fails behind it must not leave the old element's.
// Of an element that is taken up in its middle all but the exit point was done before the crash.
void FollowUp(Station& station, const OnAirElement& row, bool takenUp) {
  EngineState& engine = station.engine;
  const TitleCard card = ReadTitleCard(station, row.code);
  if (const auto exitMs = ExitMs(station, row, card)) engine.MixPointMs = *exitMs;
  engine.keptAir.element = row;
  if (takenUp) return station.events.OnAir(row.code, engine.MixPointMs, 0);
  ReportRow begun = card.texts;
  SetMoment(begun, station);
  KeepAirBegin(station, begun.DATENUM);
  MarkPlayed(station, row, card, begun);
  TellComment(station, card.comment);
  if (row.code > 0) BeginIntro(station, row.code, card.introSec);
  WriteReport(station, row, card, begun);
  TellOutside(station, row.code, card);
  station.events.OnAir(row.code, engine.MixPointMs, engine.IntroLengthSec);
}

void PlayElement(Station& station, Incoming element, std::optional<int32_t> takenUpMs) {
  SoundChain& sound = station.Sound();
  station.notices.ticker.clear();
  element.volume = VolumeOfKind(station, element.row.code);
  Outgoing old = WhatSounds(station);
  element.slot = 1 - old.slot;
  station.engine.CurrentChannel = old.slot;
  station.engine.NextChannel = element.slot;
  LoadIncoming(station, element);
  if (takenUpMs && *takenUpMs < element.lengthMs) sound.SetPosition(element.slot, *takenUpMs);
  FadeOutgoing(station, old, element.lengthMs);
  if (CycleWouldOverflow(station, element.lengthMs))
    RestartOutput(station, old, element);
  else
    StartOnFreeSlot(station, old, element);
  station.engine.StartNextNow = false;
  station.engine.NextRequested = false;
  if (sound.State() != OutputState::kStarted) sound.Start();
  station.WatchSilence();
  station.base.Waiting().LetSavedWait();
  FollowUp(station, element.row, takenUpMs.has_value());
}

}  // namespace

void PlayWave(Station& station, const OnAirElement& element) {
  station.engine.CodeEnCours = element.code;
  const auto takenUpMs = std::exchange(station.engine.keptAir.from, std::nullopt);
  if (element.code == Element::kBeginExtract) {
    station.engine.CheckExtrait = true;
    station.events.Marker(element.code, TitleOf(element));
    return;
  }
  try {
    if (element.code == Element::kStartPlaylist || element.code == Element::kEndPlaylist)
      ServePlaylistMarker(station, element);
    if (!HasFile(station, element)) return;
    const MainTimerHold hold(station);
    PlayElement(station, {.row = element}, takenUpMs);
  } catch (const SoundError&) {
    LogCurrentException(station, kPlayRoutine, "code " + std::to_string(element.code));
    TellUnplayable(station, element, "unreadable");
  } catch (const std::exception&) {
    LogCurrentException(station, kPlayRoutine, "code " + std::to_string(element.code));
  }
}

OnAirElement PlayFirstRow(Station& station) {
  const int64_t key = station.PL.Row(1).key;
  OnAirElement element = station.PL.Row(1).AsElement();
  PlayWave(station, element);
  station.PL.TakeToAir(key);
  return element;
}

void ComputeBufferOffset(Station& station) {
  const SoundChain& sound = station.platform.sound;
  station.engine.BufferOffsetSec = static_cast<float>(sound.OutputNumBuffers()) *
                                   static_cast<float>(sound.OutputBufferSize()) / 2048.0F / 100.0F;
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
