// The life of the device, from what is wanted of it, from its calls, and from what its sound system
// and the mixer's thread say of it.
#include "platform/real/sound/DeviceThread.h"

#include <exception>
#include <utility>

#include "platform/real/sound/ClockDrain.h"

namespace zemo {
namespace {

constexpr int kRetryMs = 500;
constexpr int kWakingTurnMs = 10;
constexpr int kRunningTurnMs = 50;
// A restart of the output closes and opens within an instant: the device may as well stay open.
constexpr int kLingerMs = 50;
constexpr double kToldAfterSeconds = 2.5;  // a device that begins by then is not spoken of
constexpr double kWakingSeconds = 5.0;     // that an open device has to begin
constexpr double kOwnSystemSeconds = 5.0;  // that a lost device has to come back by its own system
constexpr double kSteadySeconds = 5.0;     // a device that is lost before has not come back
constexpr int kMostUnsteady = 2;

}  // namespace

DeviceThread::DeviceThread(WishedDevice wished, OutputRing& ring, WakeUp& mixer, bool told)
    : wished_(std::move(wished)), ring_(ring), mixer_(mixer), toldLost_(told), thread_([this] {
        Run();
      }) {}

DeviceThread::~DeviceThread() {
  quit_.store(true, std::memory_order_release);
  wake_.Signal();
  thread_.join();
}

void DeviceThread::Want(bool open) {
  if (open) wants_.fetch_add(1, std::memory_order_acq_rel);
  wanted_.store(open, std::memory_order_release);
  wake_.Signal();
}

void DeviceThread::Choose(WishedDevice wished) {
  const std::lock_guard lock(chosenMutex_);
  chosen_ = std::move(wished);
}

void DeviceThread::Trouble(uint32_t opening, const char* reason) {
  reason_.store(reason, std::memory_order_relaxed);
  troubled_.store(opening, std::memory_order_release);
  wake_.Signal();
}

void DeviceThread::Run() {
  while (!quit_.load(std::memory_order_acquire)) Step(std::chrono::steady_clock::now());
  for (const auto& system : wished_.systems) system->Close();
}

void DeviceThread::Step(Time now) {
  const bool wanted = wanted_.load(std::memory_order_acquire);
  if (!wanted) return GetState() == State::kClosed ? Rest() : Leave();
  if (GetState() != State::kClosed && ChoiceIsDue()) return LetGo();
  switch (GetState()) {
    case State::kClosed:
      TakeChoice();
      SetState(State::kOpening);
      break;
    case State::kOpening:
      if (!OpenFrom(0, wished_.systems.size())) Lose(reasons_);
      break;
    case State::kWaking:
      wake_.Wait(kWakingTurnMs);
      WatchWaking(std::chrono::steady_clock::now());
      break;
    case State::kRunning:
      wake_.Wait(kRunningTurnMs);
      WatchRunning(std::chrono::steady_clock::now());
      break;
    case State::kLost:
      SearchAgain(now);
      break;
  }
}

void DeviceThread::Rest() {
  rests_.store(true, std::memory_order_release);
  wake_.Wait(-1);
  rests_.store(false, std::memory_order_release);
}

void DeviceThread::TakeChoice() {
  wantsSeen_ = wants_.load(std::memory_order_acquire);
  const std::lock_guard lock(chosenMutex_);
  if (!chosen_.systems.empty()) wished_ = std::exchange(chosen_, {});
  open_ = 0;
}

// It was let go and wanted again faster than this thread saw, and another one was chosen in
// between.
bool DeviceThread::ChoiceIsDue() {
  const uint32_t wants = wants_.load(std::memory_order_acquire);
  if (std::exchange(wantsSeen_, wants) == wants) return false;
  const std::lock_guard lock(chosenMutex_);
  return !chosen_.systems.empty() && !chosen_.identity.empty() &&
         chosen_.identity != wished_.identity;
}

// False when none of them opens; reasons_ tells why.
bool DeviceThread::OpenFrom(size_t first, size_t end) {
  reasons_.clear();
  for (size_t system = first; system < end; ++system) {
    try {
      askedBefore_ = ring_.AskedByDevice();
      opened_ = wished_.systems[system]->Open(ring_);
      open_ = system;
      since_ = std::chrono::steady_clock::now();
      asleep_ = false;
      SetState(State::kWaking);
      return true;
    } catch (const NoSuchDevice&) {
      // The next one may have it.
    } catch (const SystemHangs& error) {
      reasons_ = error.what();
      return false;
    } catch (const std::exception& error) {  // the libraries and the thread they make throw theirs
      if (reasons_.empty()) reasons_ = error.what();
    }
  }
  if (reasons_.empty()) reasons_ = wished_.absent;
  return false;
}

void DeviceThread::WatchWaking(Time now) {
  const OutputDevice::News news = wished_.systems[open_]->Look();
  if (!news.movedTo.empty()) opened_.name = news.movedTo;
  const bool sleeps = news.condition == OutputDevice::Condition::kAsleep;
  if (news.condition == OutputDevice::Condition::kGone) return NextSystem();
  if (asleep_ && !sleeps) {
    // What it holds is of the time when it fell asleep.
    wished_.systems[open_]->Close();
    if (!OpenFrom(open_, open_ + 1)) Lose(reasons_);
    return;
  }
  if (sleeps) {
    if (!asleep_) TellLoss("sound device " + opened_.name + " sleeps");
    asleep_ = true;
    since_ = now;
    return;
  }
  if (ring_.AskedByDevice() - askedBefore_ > static_cast<uint64_t>(opened_.bufferFrames))
    return Begin(now);
  const double waited = SecondsBetween(since_, now);
  if (waited > kWakingSeconds) return NextSystem();
  if (waited > kToldAfterSeconds) TellLoss("sound device " + opened_.name + " has not begun yet");
}

void DeviceThread::Begin(Time now) {
  rate_.store(opened_.rate, std::memory_order_release);
  delayMs_.store(opened_.delayMs, std::memory_order_release);
  opening_.fetch_add(1, std::memory_order_acq_rel);
  since_ = now;
  nameDue_ = true;
  if (unsteady_ < kMostUnsteady) TellName();
  SetState(State::kRunning);
}

// The one that is open does not begin.
void DeviceThread::NextSystem() {
  wished_.systems[open_]->Close();
  const std::string line = "sound device " + opened_.name + " does not begin";
  if (OpenFrom(open_ + 1, wished_.systems.size())) return;
  lostAt_ = {};
  Lose(line);
}

void DeviceThread::WatchRunning(Time now) {
  const OutputDevice::News news = wished_.systems[open_]->Look();
  if (!news.movedTo.empty() && news.movedTo != opened_.name) {
    opened_.name = news.movedTo;
    notices_.Put("sound device: " + opened_.name, true);
    nameDue_ = false;
  }
  if (news.condition == OutputDevice::Condition::kAsleep) return FallAsleep(now);
  const bool gone = news.condition == OutputDevice::Condition::kGone;
  if (gone || troubled_.load(std::memory_order_acquire) == Opening()) {
    unsteady_ = SecondsBetween(since_, now) < kSteadySeconds ? unsteady_ + 1 : 0;
    lostAt_ = now;
    losses_.fetch_add(1, std::memory_order_relaxed);
    const char* reason = gone ? "it is gone" : reason_.load(std::memory_order_relaxed);
    return Lose(std::string("sound device lost (") + reason + ")");
  }
  if (nameDue_ && SecondsBetween(since_, now) >= kSteadySeconds) {
    unsteady_ = 0;
    TellName();
  }
}

void DeviceThread::FallAsleep(Time now) {
  TellLoss("sound device " + opened_.name + " sleeps");
  asleep_ = true;
  since_ = now;
  SetState(State::kWaking);
}

void DeviceThread::Lose(const std::string& reason) {
  // Both before the closing, which may take long; the line first, so that it is there for whoever
  // sees the state.
  TellLoss(reason);
  SetState(State::kLost);
  wished_.systems[open_]->Close();
}

// The own system comes first: a server that is restarted finds its cards free. One that lets the
// device play for a moment only, again and again, comes last.
void DeviceThread::SearchAgain(Time now) {
  const size_t end = wished_.systems.size();
  bool found = false;
  if (unsteady_ >= kMostUnsteady)
    found = OpenFrom(open_ + 1, end) || OpenFrom(0, end);
  else if (SecondsBetween(lostAt_, now) < kOwnSystemSeconds)
    found = OpenFrom(open_, open_ + 1);
  else
    found = OpenFrom(0, end);
  if (!found) wake_.Wait(kRetryMs);
}

void DeviceThread::Leave() {
  wake_.Wait(kLingerMs);
  if (!wanted_.load(std::memory_order_acquire)) LetGo();
}

void DeviceThread::LetGo() {
  SetState(State::kClosed);
  wished_.systems[open_]->Close();
  toldLost_ = false;
  unsteady_ = 0;
}

void DeviceThread::SetState(State state) {
  state_.store(state, std::memory_order_release);
  mixer_.Signal();
}

void DeviceThread::TellLoss(const std::string& line) {
  if (!toldLost_) notices_.Put(line + ": the air goes on unheard until it is back", true);
  toldLost_ = true;
}

void DeviceThread::TellName() {
  notices_.Put("sound device: " + opened_.name, toldLost_);
  toldLost_ = nameDue_ = false;
}

}  // namespace zemo
