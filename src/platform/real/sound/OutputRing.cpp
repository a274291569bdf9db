// The mixer's end of the output ring.
#include "platform/real/sound/OutputRing.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <thread>

namespace zemo {

void OutputRing::Reset(int capacityFrames, int rate) {
  // Whoever drains holds it for the time of one copy.
  while (taken_.exchange(true, std::memory_order_acquire)) std::this_thread::yield();
  if (capacityFrames != capacity_) {
    items_ = std::make_unique<int16_t[]>(2 * static_cast<size_t>(capacityFrames));
    capacity_ = capacityFrames;
  }
  const uint64_t played = played_.load(std::memory_order_relaxed);
  const uint64_t frames = (played & kFramesMask) * static_cast<uint64_t>(rate) /
                          static_cast<uint64_t>(rate_.load(std::memory_order_relaxed));
  played_.store((played & ~kFramesMask) | frames, std::memory_order_relaxed);
  missed_.store(
      missed_.load(std::memory_order_relaxed) * rate / rate_.load(std::memory_order_relaxed),
      std::memory_order_relaxed);
  rate_.store(rate, std::memory_order_relaxed);
  written_.store(0, std::memory_order_relaxed);
  read_.store(0, std::memory_order_relaxed);
  flowed_ = false;
  taken_.store(false, std::memory_order_release);
}

int OutputRing::FilledFrames() const {
  const uint64_t read = read_.load(std::memory_order_acquire);
  return static_cast<int>(written_.load(std::memory_order_relaxed) - read);
}

void OutputRing::Write(const int16_t* stereo, int frames) {
  assert(frames <= FreeFrames());
  if (frames <= 0) return;
  const uint64_t written = written_.load(std::memory_order_relaxed);
  const int to = static_cast<int>(written % static_cast<uint64_t>(capacity_));
  const int first = std::min(frames, capacity_ - to);
  constexpr size_t kFrameBytes = 2 * sizeof(int16_t);
  std::memcpy(items_.get() + 2 * to, stereo, kFrameBytes * static_cast<size_t>(first));
  std::memcpy(items_.get(), stereo + 2 * first, kFrameBytes * static_cast<size_t>(frames - first));
  written_.store(written + static_cast<uint64_t>(frames), std::memory_order_release);
}

void OutputRing::Begin(uint16_t run) {
  missed_.store(0, std::memory_order_relaxed);
  played_.store(static_cast<uint64_t>(run) << kRunShift, std::memory_order_release);
  flows_.store(true, std::memory_order_release);
}

void OutputRing::End() {
  flows_.store(false, std::memory_order_release);
}

int64_t OutputRing::PlayedFrames(uint16_t run) const {
  const uint64_t played = played_.load(std::memory_order_acquire);
  if (played >> kRunShift != run) return 0;
  return AtSampleRate(static_cast<int64_t>(played & kFramesMask));
}

int64_t OutputRing::GivenFrames(uint16_t run) const {
  const int64_t missed = AtSampleRate(missed_.load(std::memory_order_relaxed));
  return std::max<int64_t>(0, PlayedFrames(run) - missed);
}

int64_t OutputRing::AtSampleRate(int64_t frames) const {
  return frames * kSampleRate / rate_.load(std::memory_order_relaxed);
}

}  // namespace zemo
