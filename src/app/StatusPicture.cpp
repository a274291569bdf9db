#include "app/StatusPicture.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "app/AirFigures.h"
#include "app/Trace.h"
#include "app/Version.h"
#include "engine/FreeMoment.h"
#include "engine/HourPip.h"
#include "engine/MainScreenPicture.h"
#include "engine/NextUp.h"
#include "station/OperatorWords.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr int64_t kObserveMs = 1000;
constexpr int kMostRows = 500;  // of the list; its length is told whole
constexpr int64_t kDayMs = 24LL * 3600 * 1000;
constexpr double kQuietest = -100;  // dB of full scale, and below

const char* const kHealthNames[] = {"output", "dropouts", "device", "disk", "base", "error"};
const char* const kSeverities[] = {"good", "note", "heard"};
const char* const kListFaults[] = {"", "other_before", "changed_before", "other_after",
                                   "changed_after"};

// One decimal.
double Decibels(float peak) {
  if (peak <= 0) return kQuietest;
  return std::max(kQuietest, std::round(200 * std::log10(static_cast<double>(peak))) / 10);
}

std::string DayTime(int64_t ms) {
  return ClockText((ms % kDayMs + kDayMs) % kDayMs);
}

}  // namespace

StatusPicture::StatusPicture(Station& station, ControlSources& sources)
    : station_(station), sources_(sources), begunMs_(station.platform.clock.MonotonicMs()) {}

int64_t StatusPicture::UptimeMs() const {
  return station_.platform.clock.MonotonicMs() - begunMs_;
}

std::string StatusPicture::Now() {
  const int64_t nowMs = station_.platform.clock.MonotonicMs();
  Observe(nowMs);
  Json picture;
  AddAir(picture);
  AddElement(picture);
  AddComing(picture);
  AddList(picture);
  AddLights(picture);
  AddHealth(picture, nowMs);
  return picture.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string StatusPicture::WithMoment(const std::string& picture) const {
  return "{\"at\":\"" + TraceMoment(station_.Now()) + "\"," + picture.substr(1);
}

void StatusPicture::Observe(int64_t nowMs) {
  output_ = FiguresOf(sources_.output());
  NotePeaks(health_, output_, nowMs);
  if (observedMs_ >= 0 && nowMs - observedMs_ < kObserveMs) return;
  observedMs_ = nowMs;
  AskBase();
  UpdateHealth(health_, station_, output_, sources_.space.stationBytes, nowMs, langue_);
}

void StatusPicture::AskBase() {
  try {
    if (!station_.base.IsOpen() || !NoTickBelow(station_)) return;
    const NoLockWait atOnce(station_.base.Waiting());
    station_.base.CheckCnf();
    langue_ = static_cast<int>(station_.base.CnfInt(Cnf::kLangue));
    pip_ = !FindPip(station_, station_.Now()).file.empty();
  } catch (const std::exception&) {
    LogCurrentException(station_, "Control");
  }
}

// As the lamp of the main screen.
const char* StatusPicture::Lamp() const {
  if (UnheardOnAir(station_, output_)) return "unheard";
  if (SilentOnAir(health_)) return "silent";
  if (station_.engine.EmergencyOnAir) return "emergency";
  if (station_.engine.IsRunning) return "on_air";
  return station_.platform.sound.ElementSounds() ? "draining" : "stopped";
}

void StatusPicture::AddAir(Json& picture) const {
  const EngineState& engine = station_.engine;
  picture["version"] = kVersion;
  picture["station"] = sources_.space.station;
  picture["uptime_s"] = UptimeMs() / 1000;
  picture["on_air"] = bool{engine.IsRunning};
  picture["mode"] = engine.IsAutomatic ? "auto" : "live";
  picture["lamp"] = Lamp();
  picture["output"] = output_.output;
  picture["heard"] = output_.heard;
  picture["levels"] = {{"left_db", Decibels(output_.peakLeft)},
                       {"right_db", Decibels(output_.peakRight)}};
  picture["output_ms"] = station_.platform.sound.OutputPosition();
}

void StatusPicture::AddElement(Json& picture) const {
  const EngineState& engine = station_.engine;
  picture["element"] = nullptr;
  if (!station_.platform.sound.ElementSounds()) return;
  Json element;
  element["code"] = int32_t{engine.CodeEnCours};
  element["title"] = TitleInWords(engine.CodeEnCours, station_.notices.titleOnAir, langue_);
  element["file"] = station_.platform.sound.FileName(engine.CurrentChannel);
  element["slot"] = engine.CurrentChannel;
  element["position_ms"] = engine.ElementPositionMs;
  element["length_ms"] = engine.ElementLengthMs;
  element["remaining_ms"] = std::max(engine.RemainingMs, 0);
  element["exit_ms"] = std::lround(float{engine.MixPointMs});
  const MainScreen screen = PictureOf(station_);
  element["intro"] = nullptr;
  if (screen.VueIntro.visible)
    element["intro"] = {{"elapsed_s", screen.VueIntro.elapsedSec},
                        {"length_s", screen.VueIntro.lengthSec}};
  picture["element"] = std::move(element);
}

void StatusPicture::AddComing(Json& picture) {
  const LocalDateTime now = station_.Now();
  planShiftMs_ = PlanShiftMs(station_, now, planShiftMs_);
  const NextUp next = LookAhead(station_, now, pip_, planShiftMs_);
  picture["next"] = picture["break"] = picture["pip"] = nullptr;
  if (!next.elementTitle.empty())
    picture["next"] = {{"code", next.elementCode},
                       {"title", TitleInWords(next.elementCode, next.elementTitle, langue_)},
                       {"due", next.elementAt}};
  if (!next.breakAt.empty())
    picture["break"] = {{"due", next.breakAt},
                        {"type", next.breakIsSpots ? "spots" : "news"},
                        {"length", next.breakLength},
                        {"in_s", next.breakInSec}};
  if (!next.pipAt.empty()) picture["pip"] = {{"due", next.pipAt}, {"in_s", next.pipInSec}};
}

void StatusPicture::AddList(Json& picture) const {
  picture["list_rows"] = station_.PL.Count();
  picture["list_s"] = ListTotalSec(station_);
  Json rows = Json::array();
  for (int at = 1; at <= std::min(station_.PL.Count(), kMostRows); ++at) {
    const OnAirRow& row = station_.PL.Row(at);
    Json told = {{"key", row.key},
                 {"code", row.code},
                 {"title", TitleInWords(row.code, TitleOf(row), langue_)},
                 {"kind", row.genre},
                 {"length_ms", row.lengthMs.value_or(0)},
                 {"exit_ms", row.exitMs.value_or(0)},
                 {"due", ""},
                 {"fault", kListFaults[static_cast<size_t>(FaultOfRow(station_.PL, at))]}};
    if (row.plannedMs) told["due"] = DayTime(std::llround(*row.plannedMs) + planShiftMs_);
    rows.push_back(std::move(told));
  }
  picture["list"] = std::move(rows);
}

void StatusPicture::AddLights(Json& picture) const {
  const EngineState& engine = station_.engine;
  const ScreenNotices& notices = station_.notices;
  picture["lights"] = {{"voice_track", engine.VoiceTrackState == 0   ? "none"
                                       : engine.VoiceTrackState < -1 ? "on_air"
                                                                     : "armed"},
                       {"extract", bool{engine.CheckExtrait}},
                       {"intro_jingle", bool{engine.IntroOverlayPending}},
                       {"topage", bool{engine.TopagePending}},
                       {"no_jingle", bool{engine.CheckNoJingle}},
                       {"stop_at_end", bool{engine.OptionDirect}},
                       {"no_report", notices.noReport},
                       {"locked", bool{engine.ScreenLocked}},
                       {"overlay_key", engine.OverlayKey},
                       {"contacts", engine.Contacts},
                       {"joystick", PictureOf(station_).LedJoystique.text}};
  picture["day"] = notices.day;
  picture["ticker"] = notices.ticker;
  picture["working"] =
      notices.progress.visible ? InOperatorsWords(notices.progress.text, langue_) : "";
  picture["error"] = notices.lastError;
}

void StatusPicture::AddHealth(Json& picture, int64_t nowMs) const {
  Json line = Json::array();
  for (size_t at = 0; at < health_.figures.size(); ++at) {
    const HealthFigure& figure = health_.figures[at];
    line.push_back({{"name", kHealthNames[at]},
                    {"text", figure.text},
                    {"severity", kSeverities[static_cast<size_t>(figure.severity)]},
                    {"age_s", std::max<int64_t>(0, nowMs - figure.sinceMs) / 1000}});
  }
  picture["health"] = std::move(line);
}

}  // namespace zemo
