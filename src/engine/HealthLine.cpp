#include "engine/HealthLine.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "platform/BaseLink.h"
#include "station/LanguageTexts.h"
#include "station/OperatorWords.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr int64_t kSilentAfterMs = 5000;    // a quiet passage is no fault
constexpr int64_t kDropoutShownMs = 30000;  // a dropout stays red that long
constexpr float kSilencePeak = 0.001f;      // -60 dB of full scale
constexpr int64_t kGigabyte = 1000000000;
constexpr int64_t kLittleDisk = kGigabyte;

// What the figures say; their names are the window's.
// clang-format off
constexpr Word kWords[] = {
    {"HealthAlive", {"%1 dB", "%1 dB", "%1 dB", "%1 dB"}},
    {"HealthEmergency", {"secours %1 dB", "emergency %1 dB", "emergência %1 dB", "emergencia %1 dB"}},
    {"HealthSilent", {"muette", "silent", "muda", "muda"}},
    {"HealthIdle", {"au repos", "idle", "em repouso", "en reposo"}},
    {"HealthUnheard", {"non entendue", "not heard", "não ouvida", "no se oye"}},
    {"HealthDiskFree", {"%1 Go", "%1 GB", "%1 GB", "%1 GB"}},
    {"HealthBaseOk", {"bonne", "OK", "boa", "bien"}},
    {"HealthBaseWaits", {"%1 en attente", "%1 waiting", "%1 em espera", "%1 en espera"}},
    {"HealthBaseAway",
     {"serveur absent, %1 en attente", "server away, %1 waiting", "servidor ausente, %1 em espera",
      "servidor ausente, %1 en espera"}},
    {"HealthBaseReads", {"lecture seule", "read only", "só leitura", "solo lectura"}},
    {"HealthBaseClosed", {"fermée", "closed", "fechada", "cerrada"}},
    {"HealthNoError", {"aucune", "none", "nenhum", "ninguno"}},
    {"Unknown", {"?", "?", "?", "?"}},
};
// clang-format on

std::string StateWord(const char* name, int langue) {
  return FindWord(kWords, name, langue);
}

std::string StateWord(const char* name, int langue, std::string_view inPlace) {
  return WithPlace(StateWord(name, langue), inPlace);
}

// The age begins with the first figure, and anew when the state changes, not when its figures do.
void Tell(HealthFigure& figure, const char* name, std::string state, std::string text,
          HealthSeverity severity, int64_t nowMs) {
  if (figure.state != state || figure.name[0] == '\0') {
    figure.state = std::move(state);
    figure.sinceMs = nowMs;
  }
  figure.name = name;
  figure.text = std::move(text);
  figure.severity = severity;
}

// Of what a listener would notice: where no device plays there is none.
HealthSeverity Noticed(const OutputFigures& output) {
  return output.device && output.heard ? HealthSeverity::kHeard : HealthSeverity::kNote;
}

void TellOutput(HealthLine& line, const Station& station, const OutputFigures& output,
                int64_t nowMs, int langue) {
  HealthFigure& figure = line.figures[HealthLine::kOutput];
  if (!station.engine.IsRunning)
    line.expectedSinceMs = -1;
  else if (line.expectedSinceMs < 0)
    line.expectedSinceMs = nowMs;
  const int64_t quietSinceMs = std::max(line.lastSoundMs, line.expectedSinceMs);
  const bool sounded = line.lastSoundMs >= 0 && nowMs - line.lastSoundMs < kSilentAfterMs;
  if (sounded) {
    const double decibels = 20 * std::log10(std::max(line.heldPeak, kSilencePeak));
    const bool emergency = station.engine.EmergencyOnAir;
    Tell(figure, "HealthOutput", emergency ? "emergency" : "alive",
         StateWord(emergency ? "HealthEmergency" : "HealthAlive", langue,
                   std::to_string(std::lround(decibels))),
         emergency ? HealthSeverity::kNote : HealthSeverity::kGood, nowMs);
  } else if (line.expectedSinceMs >= 0 && nowMs - quietSinceMs >= kSilentAfterMs) {
    Tell(figure, "HealthOutput", "silent", StateWord("HealthSilent", langue), Noticed(output),
         nowMs);
    figure.sinceMs = quietSinceMs;
  } else {
    Tell(figure, "HealthOutput", "idle", StateWord("HealthIdle", langue), HealthSeverity::kGood,
         nowMs);
  }
  line.heldPeak = 0;
}

void TellDropouts(HealthLine& line, const OutputFigures& output, int64_t nowMs, bool first) {
  HealthFigure& figure = line.figures[HealthLine::kUnderruns];
  const bool more = output.underruns > line.underruns || output.lateFrames > line.lateFrames;
  line.underruns = output.underruns;
  line.lateFrames = output.lateFrames;
  figure.name = "HealthUnderruns";
  figure.text = std::to_string(output.underruns);
  if (first || more) figure.sinceMs = nowMs;
  if (more && !first) figure.state = "heard";
  const bool lately = figure.state == "heard" && nowMs - figure.sinceMs < kDropoutShownMs;
  figure.severity = lately ? Noticed(output) : HealthSeverity::kGood;
}

// Behind the figure's own word that it is a device: its name alone, where it has begun.
std::string DeviceText(const std::string& output, int langue) {
  constexpr std::string_view kDeviceWords = "sound device", kNamed = "sound device: ";
  if (output == kDeviceWords) return StateWord("HealthIdle", langue);
  if (output.starts_with(kNamed)) return output.substr(kNamed.size());
  return InOperatorsWords(output, langue);
}

void TellDevice(HealthLine& line, const Station& station, const OutputFigures& output,
                int64_t nowMs, int langue) {
  const bool started = station.platform.sound.State() == OutputState::kStarted;
  const bool lost = started && !output.heard;
  Tell(line.figures[HealthLine::kDevice], "HealthDevice", lost ? "lost" : output.output,
       lost ? StateWord("HealthUnheard", langue) : DeviceText(output.output, langue),
       lost || !output.device ? HealthSeverity::kNote : HealthSeverity::kGood, nowMs);
}

void TellDisk(HealthLine& line, int64_t freeBytes, int64_t nowMs, int langue) {
  const bool little = freeBytes >= 0 && freeBytes < kLittleDisk;
  std::string text = StateWord("Unknown", langue);
  if (freeBytes >= 0) {
    const int64_t tenths = freeBytes / (kGigabyte / 10);
    std::string figure = std::to_string(tenths / 10);
    if (tenths < 100) figure += (langue == 1 ? "." : ",") + std::to_string(tenths % 10);
    text = StateWord("HealthDiskFree", langue, figure);
  }
  Tell(line.figures[HealthLine::kDisk], "HealthDisk", little ? "little" : "enough", text,
       little ? HealthSeverity::kNote : HealthSeverity::kGood, nowMs);
}

void TellBase(HealthLine& line, const Station& station, int64_t nowMs, int langue) {
  HealthFigure& figure = line.figures[HealthLine::kBase];
  const size_t waiting = station.engine.kept.writes.size();
  const BaseLink* const link = station.platform.baseLink;
  const BaseLinkState linked = link ? link->State() : BaseLinkState{.reachable = true};
  if (!station.base.IsOpen() && waiting == 0)
    Tell(figure, "HealthBase", "closed", StateWord("HealthBaseClosed", langue),
         HealthSeverity::kNote, nowMs);
  else if (waiting > 0)
    Tell(figure, "HealthBase", "waits",
         StateWord("HealthBaseWaits", langue, std::to_string(waiting)), HealthSeverity::kNote,
         nowMs);
  else if (!linked.reachable)
    Tell(figure, "HealthBase", "away",
         StateWord("HealthBaseAway", langue, std::to_string(linked.waiting)), HealthSeverity::kNote,
         nowMs);
  else if (linked.onlyReads)
    Tell(figure, "HealthBase", "reads", StateWord("HealthBaseReads", langue), HealthSeverity::kNote,
         nowMs);
  else
    Tell(figure, "HealthBase", "good", StateWord("HealthBaseOk", langue), HealthSeverity::kGood,
         nowMs);
}

void TellError(HealthLine& line, const Station& station, int64_t nowMs, int langue) {
  const std::string& error = station.notices.lastError;
  Tell(line.figures[HealthLine::kError], "HealthError", error,
       error.empty() ? StateWord("HealthNoError", langue) : error,
       error.empty() ? HealthSeverity::kGood : HealthSeverity::kNote, nowMs);
}

}  // namespace

void NotePeaks(HealthLine& line, const OutputFigures& output, int64_t nowMs) {
  const float peak = std::max(output.peakLeft, output.peakRight);
  line.heldPeak = std::max(line.heldPeak, peak);
  if (peak >= kSilencePeak) line.lastSoundMs = nowMs;
}

void UpdateHealth(HealthLine& line, const Station& station, const OutputFigures& output,
                  int64_t freeDiskBytes, int64_t nowMs, int langue) {
  const bool first = line.figures[HealthLine::kUnderruns].name[0] == '\0';
  TellOutput(line, station, output, nowMs, langue);
  TellDropouts(line, output, nowMs, first);
  TellDevice(line, station, output, nowMs, langue);
  TellDisk(line, freeDiskBytes, nowMs, langue);
  TellBase(line, station, nowMs, langue);
  TellError(line, station, nowMs, langue);
}

bool UnheardOnAir(const Station& station, const OutputFigures& output) {
  if (!station.engine.IsRunning) return false;
  if (!output.device) return true;
  return station.platform.sound.State() == OutputState::kStarted && !output.heard;
}

bool SilentOnAir(const HealthLine& line) {
  return line.figures[HealthLine::kOutput].state == "silent";
}

std::string AgeText(int64_t ms, int langue) {
  const int64_t seconds = std::max<int64_t>(0, ms) / 1000;
  if (seconds < 60) return std::to_string(seconds) + " s";
  if (seconds < 3600) return std::to_string(seconds / 60) + " min";
  if (seconds < 86400) return std::to_string(seconds / 3600) + " h";
  return std::to_string(seconds / 86400) + (langue == 0 ? " j" : " d");
}

}  // namespace zemo
