#include "store/LockWait.h"

#include <sqlite3.h>

#include <algorithm>
#include <iterator>

namespace zemo {

namespace {

// Short at first: most locks are one commit's.
constexpr int kPausesMs[] = {1, 2, 5, 10, 15, 20, 25, 25, 25, 50, 50, 100};

int PauseMs(int times) {
  const auto last = static_cast<int>(std::size(kPausesMs)) - 1;
  return kPausesMs[std::clamp(times, 0, last)];
}

}  // namespace

void LockWait::LetEachWait(int ms) {
  eachMs_ = std::max(0, ms);
  leftMs_ = eachMs_;
  savedMs_ = 0;
  inVain_[0] = inVain_[1] = false;
}

void LockWait::LetAllWait(int ms, int savedMs) {
  eachMs_ = 0;
  leftMs_ = std::max(0, ms);
  savedMs_ = std::max(0, savedMs);
}

void LockWait::Begin(bool writes) {
  writes_ = writes;
  waited_ = false;
  if (eachMs_ > 0) leftMs_ = eachMs_;
}

void LockWait::End(bool writes, bool locked) {
  if (!locked)
    inVain_[writes] = false;
  else if (waited_)
    inVain_[writes] = true;
}

bool LockWait::WaitOnce(int times) {
  if (inVain_[writes_] || LeftMs() <= 0) return false;
  const int pauseMs = std::min(PauseMs(times), LeftMs());
  const int sleptMs = std::max(pauseMs, sqlite3_sleep(pauseMs));
  leftMs_ -= sleptMs;
  soFar_.ms += sleptMs;
  if (!waited_) ++soFar_.operations;
  waited_ = true;
  return true;
}

}  // namespace zemo
