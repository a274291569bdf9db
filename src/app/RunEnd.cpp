#include "app/RunEnd.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

#include "app/CommandOptions.h"
#include "app/ErrorLine.h"
#include "app/RealStation.h"
#include "engine/FreeMoment.h"
#include "engine/StartStop.h"
#include "reports/AirWrites.h"
#include "settings/SideFiles.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr int64_t kWatchMs = 50;  // once the end is near
constexpr int64_t kLongestMs = 60 * 60 * 1000;

bool Drained(const Station& station) {
  return !station.engine.IsRunning && station.platform.sound.State() == OutputState::kClosed;
}
}  // namespace

RunEnd::RunEnd(RealStation& real, const AirOptions& options, Told told)
    : real_(real), cut_(options.cut), told_(std::move(told)), watch_(real.loop, [this] {
        Rewatch();
        Watch();
      }) {
  if (!options.forMs) return;
  endMs_ = real.clock.MonotonicMs() + *options.forMs;
  endFrames_ = MsToFrames(*options.forMs);
  Rewatch();
}

void RunEnd::OnSignal() {
  if (asked_) LeaveAtOnce();
  Ask();
}

// Wakes nobody before there is something to see.
void RunEnd::Rewatch() {
  const int64_t leftMs = asked_ ? 0 : *endMs_ - real_.clock.MonotonicMs();
  watch_.SetInterval(static_cast<int>(std::clamp(leftMs, kWatchMs, kLongestMs)));
}

void RunEnd::Watch() {
  if (!asked_ && TimeIsOver()) {
    if (cut_) return Cut();
    Ask();
  }
  if (!asked_ || !Drained(real_.station)) return;
  WriteZemoOnOff(real_.station, '0');  // told by no drain where nothing had sounded yet
  TellLonger();
  told_.drained();
}

// A file has its time from its first frame on, which comes some moments behind the start; without
// an output that runs none comes any more.
bool RunEnd::TimeIsOver() const {
  if (!endMs_) return false;
  const bool over = real_.clock.MonotonicMs() >= *endMs_;
  if (!cut_ || real_.sound->State() != OutputState::kStarted) return over;
  return real_.sound->SinkFrames() >= endFrames_;
}

// The file takes nothing more by then: the engine may finish what it has begun, so that the report
// has its row.
void RunEnd::Cut() {
  if (real_.station.engine.IsRunning) StartStopZemoRadio(real_.station, false);
  if (!NoTickBelow(real_.station)) return;
  real_.service.Stopping();
  real_.sound->Stop();
  real_.sound->Close();
  WriteZemoOnOff(real_.station, '0');
  real_.sound->End(endFrames_);
  asked_ = true;
  told_.drained();
}

void RunEnd::Ask() {
  asked_ = true;
  real_.service.Stopping();
  Rewatch();
  StartStopZemoRadio(real_.station, false);
  if (!Drained(real_.station)) told_.line("stopping: what is on air plays to its end");
}

void RunEnd::TellLonger() const {
  const int64_t longerMs = FramesToMs(real_.sound->SinkFrames() - endFrames_);
  if (!endMs_ || cut_ || longerMs <= 0) return;
  told_.line("the file is " + SecondsText(longerMs) +
             " s longer than --for: what was on air has played to its end (--for-exactly cuts it)");
}

int EndStatus(const Station& station) {
  const auto& kept = station.engine.kept;
  if (kept.writes.empty()) return 0;
  PrintError("the base could not take " + std::to_string(kept.writes.size()) + " rows: " +
             (kept.journalBehind ? "they are lost" : "they are written at the next start"));
  return 1;
}

// Whatever routine waits below this one on the stack is not gone back to.
void RunEnd::LeaveAtOnce() {
  told_.leaving();
  real_.sound->Stop();
  real_.sound->Close();
  WriteZemoOnOff(real_.station, '0');
  JournalKeptRows(real_.station);
  _exit(EndStatus(real_.station));
}

}  // namespace zemo
