#include "ui/SlicedWork.h"

#include <exception>
#include <utility>

#include "platform/EventLoop.h"
#include "station/LockedBase.h"
#include "station/Station.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
constexpr int kAskLockedAgainMs = 50;
constexpr int kLockedTurns = 100;  // of kAskLockedAgainMs: as long as any other query waits
}  // namespace

SlicedWork::SlicedWork(Station& station, const char* routine, std::function<bool()> slice,
                       std::function<void()> done)
    : station_(station), routine_(routine), slice_(std::move(slice)), done_(std::move(done)) {
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { WhenFree(station_, &timer_, [this] { Turn(); }); });
}

void SlicedWork::Begin() {
  atWork_ = true;
  lockedTurns_ = 0;
  WhenFree(station_, &timer_, [this] { Turn(); });
}

void SlicedWork::Turn() {
  if (!atWork_) return;
  if (!Slice()) return timer_.start(lockedTurns_ > 0 ? kAskLockedAgainMs : 0);
  atWork_ = false;
  done_();
}

bool SlicedWork::Slice() {
  const NoLockWait atOnce(station_.base.Waiting());
  try {
    const bool ended = slice_();
    lockedTurns_ = 0;
    return ended;
  } catch (const std::exception& fault) {
    if (IsOfLockedBase(fault) && ++lockedTurns_ < kLockedTurns) return false;
    LogCurrentException(station_, routine_);
    return true;
  }
}

void SlicedWork::ToTheEnd() {
  while (atWork_) {
    station_.platform.loop.Yield();
    if (atWork_) Turn();
  }
}

}  // namespace zemo
