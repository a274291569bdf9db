// Invariants:
// 1. nowMs_ never goes back, and moves only in MoveTo.
// 2. Nothing due before nowMs_ is ever left unserved when time moves on: MoveTo goes at most to the
//    next due moment, unless serving is nested inside an event of that very moment.
// 3. A timer fires at most once a moment; its next moment counts from the firing.
#include "platform/sim/SimLoop.h"

#include <algorithm>
#include <ctime>

namespace zemo {

namespace {
constexpr int64_t kZoneBlockMs = 15 * 60 * 1000;  // zones change on quarter hours only

int64_t FloorDiv(int64_t a, int64_t b) {
  return a / b - ((a % b != 0) && ((a < 0) != (b < 0)));
}

// Days since 1970-01-01 of a civil date (proleptic Gregorian calendar).
int64_t DaysOfCivil(int year, int month, int day) {
  const int64_t y = year - (month <= 2);
  const int64_t era = FloorDiv(y, 400);
  const int64_t yearOfEra = y - era * 400;
  const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

LocalDateTime CivilOfMs(int64_t localMs) {
  const int64_t days = FloorDiv(localMs, 86400000);
  int64_t rest = localMs - days * 86400000;
  const int64_t z = days + 719468;
  const int64_t era = FloorDiv(z, 146097);
  const int64_t dayOfEra = z - era * 146097;
  const int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const int64_t mp = (5 * dayOfYear + 2) / 153;
  LocalDateTime t;
  t.day = static_cast<int>(dayOfYear - (153 * mp + 2) / 5 + 1);
  t.month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  t.year = static_cast<int>(yearOfEra + era * 400 + (t.month <= 2));
  t.millisecond = static_cast<int>(rest % 1000);
  rest /= 1000;
  t.second = static_cast<int>(rest % 60);
  t.minute = static_cast<int>(rest / 60 % 60);
  t.hour = static_cast<int>(rest / 3600);
  return t;
}

// Offset of local time from UTC at that UTC moment, in ms.
int64_t ZoneOffsetMs(int64_t utcMs) {
  const std::time_t utc = static_cast<std::time_t>(FloorDiv(utcMs, 1000));
  std::tm local{};
  localtime_r(&utc,
              &local);  // a pure conversion of the virtual moment; the system clock is not read
  return static_cast<int64_t>(local.tm_gmtoff) * 1000;
}

// UTC of a local moment; a local hour that stands twice is taken as the first of the two.
int64_t UtcOfLocal(const LocalDateTime& t) {
  const int64_t local = DaysOfCivil(t.year, t.month, t.day) * 86400000 + t.hour * 3600000LL +
                        t.minute * 60000LL + t.second * 1000LL + t.millisecond;
  const int64_t before = local - ZoneOffsetMs(local - 86400000);
  if (before + ZoneOffsetMs(before) == local) return before;
  return local - ZoneOffsetMs(local + 86400000);
}
}  // namespace

struct SimLoop::Timer : LoopTimer {
  Timer(SimLoop& owner, int interval, std::function<void()> onDue)
      : loop(owner), intervalMs(interval), handler(std::move(onDue)) {
    loop.timers_.push_back(this);
  }
  ~Timer() override { loop.timers_.remove(this); }
  void SetEnabled(bool on) override {
    enabled = on;
    dueMs = loop.nowMs_ + intervalMs;
  }
  bool Enabled() const override { return enabled; }

  SimLoop& loop;
  int intervalMs;
  std::function<void()> handler;
  bool enabled = false;
  int64_t dueMs = 0;
};

SimLoop::SimLoop(const LocalDateTime& begin) : epochMs_(UtcOfLocal(begin)) {}
SimLoop::~SimLoop() = default;

LocalDateTime SimLoop::LocalNow() const {
  const int64_t utc = epochMs_ + nowMs_ + wallShiftMs_;
  const int64_t block = FloorDiv(utc, kZoneBlockMs);
  if (block != zoneBlock_) {
    zoneBlock_ = block;
    zoneOffsetMs_ = ZoneOffsetMs(utc);
  }
  const int64_t local = utc + zoneOffsetMs_;
  if (local != toldMs_) {
    told_ = CivilOfMs(local);
    toldMs_ = local;
  }
  return told_;
}

void SimLoop::SetWallClock(const LocalDateTime& moment) {
  wallShiftMs_ = UtcOfLocal(moment) - epochMs_ - nowMs_;
}

std::unique_ptr<LoopTimer> SimLoop::MakeTimer(int intervalMs, std::function<void()> handler) {
  return std::make_unique<Timer>(*this, intervalMs, std::move(handler));
}

void SimLoop::Post(std::function<void()> order) {
  At(nowMs_, std::move(order));
}

void SimLoop::At(int64_t virtualMs, std::function<void()> order) {
  orders_.emplace(std::max(virtualMs, nowMs_), std::move(order));
}

int64_t SimLoop::NextDue() const {
  int64_t due = sound_ ? sound_->NextDueMs() : SimMover::kNever;
  if (preview_) due = std::min(due, preview_->NextDueMs());
  if (!orders_.empty()) due = std::min(due, orders_.begin()->first);
  for (const Timer* timer : timers_)
    if (timer->enabled) due = std::min(due, timer->dueMs);
  return due;
}

void SimLoop::MoveTo(int64_t virtualMs) {
  if (virtualMs > endMs_) virtualMs = endMs_;
  if (virtualMs > nowMs_) nowMs_ = virtualMs;
  AdvanceSound();
}

void SimLoop::AdvanceSound() {
  if (sound_) sound_->AdvanceTo(nowMs_);
  if (preview_) preview_->AdvanceTo(nowMs_);
}

bool SimLoop::ServeOneOrder() {
  if (orders_.empty() || orders_.begin()->first > nowMs_) return false;
  const auto order = std::move(orders_.begin()->second);
  orders_.erase(orders_.begin());
  ++served_;
  order();
  return true;
}

bool SimLoop::ServeOneTimer() {
  Timer* next = nullptr;
  for (Timer* timer : timers_)
    if (timer->enabled && timer->dueMs <= nowMs_ && (!next || timer->dueMs < next->dueMs))
      next = timer;
  if (!next) return false;
  next->dueMs = nowMs_ + next->intervalMs;
  ++served_;
  const auto handler = next->handler;  // the handler may destroy its timer
  handler();
  return true;
}

void SimLoop::ServeDue() {
  AdvanceSound();
  while (ServeOneOrder() || ServeOneTimer()) {
  }
}

void SimLoop::Yield() {
  ServeDue();
}

void SimLoop::WaitYield() {
  ServeDue();
  if (nowMs_ >= endMs_) throw SimulationEnd{};
  MoveTo(std::min(nowMs_ + 10, std::max(NextDue(), nowMs_ + 1)));
  ServeDue();
}

void SimLoop::PassYield() {
  ServeDue();
  if (nowMs_ >= endMs_) throw SimulationEnd{};
  MoveTo(nowMs_ + 1);
  ServeDue();
}

bool SimLoop::RunUntil(int64_t virtualMs) {
  endMs_ = virtualMs;
  bool whole = true;
  try {
    ServeDue();
    while (nowMs_ < endMs_) {
      MoveTo(std::min(endMs_, std::max(NextDue(), nowMs_)));
      ServeDue();
    }
  } catch (const SimulationEnd&) {
    whole = false;
  }
  endMs_ = SimMover::kNever;
  return whole;
}

}  // namespace zemo
