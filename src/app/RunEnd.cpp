#include "app/RunEnd.h"

#include <unistd.h>

#include <utility>

#include "app/ErrorLine.h"
#include "app/RealStation.h"
#include "engine/StartStop.h"
#include "reports/AirWrites.h"
#include "settings/SideFiles.h"

namespace zemo {

namespace {
bool Drained(const Station& station) {
  return !station.engine.IsRunning && station.platform.sound.State() == OutputState::kClosed;
}
}  // namespace

RunEnd::RunEnd(RealStation& real, std::optional<int64_t> forMs, Told told)
    : real_(real), told_(std::move(told)) {
  if (forMs) endMs_ = real.clock.MonotonicMs() + *forMs;
}

void RunEnd::OnSignal() {
  if (asked_) LeaveAtOnce();
  Ask();
}

void RunEnd::Watch() {
  if (!asked_ && endMs_ && real_.clock.MonotonicMs() >= *endMs_) Ask();
  if (!asked_ || !Drained(real_.station)) return;
  WriteZemoOnOff(real_.station, '0');  // told by no drain where nothing had sounded yet
  told_.drained();
}

void RunEnd::Ask() {
  asked_ = true;
  StartStopZemoRadio(real_.station, false);
  if (!Drained(real_.station)) told_.draining();
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
