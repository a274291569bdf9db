// The one place that runs on a device's own thread. It copies from the output ring, or into that of
// an input, and may use nothing that could make it wait: the tests look at what this file's object
// asks of the linker.
#include <algorithm>
#include <array>
#include <cstring>

#include "platform/real/sound/InputRing.h"
#include "platform/real/sound/OutputRing.h"

namespace zemo {

int OutputRing::Drain(int16_t* stereo, int frames) {
  int given = 0;
  if (!taken_.exchange(true, std::memory_order_acquire)) {
    if (flows_.load(std::memory_order_acquire)) {
      flowed_ = true;
      given = Copy(stereo, frames);
      played_.fetch_add(static_cast<uint64_t>(frames), std::memory_order_relaxed);
      if (given < frames) {
        underruns_.fetch_add(1, std::memory_order_relaxed);
        missed_.fetch_add(frames - given, std::memory_order_relaxed);
      }
    } else if (flowed_) {
      flowed_ = false;
      given = Glide(stereo, frames);
    }
    taken_.store(false, std::memory_order_release);
  }
  std::memset(stereo + 2 * given, 0, sizeof(int16_t) * 2 * static_cast<size_t>(frames - given));
  return given;
}

int OutputRing::DrainForDevice(int16_t* stereo, int frames) {
  askedByDevice_.fetch_add(static_cast<uint64_t>(frames), std::memory_order_release);
  if (deviceDrains_.load(std::memory_order_acquire)) {
    const int given = Drain(stereo, frames);
    if (given > 0 && rises_.exchange(false, std::memory_order_acquire)) Rise(stereo, given);
    return given;
  }
  std::memset(stereo, 0, sizeof(int16_t) * 2 * static_cast<size_t>(frames));
  return 0;
}

int OutputRing::Copy(int16_t* stereo, int frames) {
  const uint64_t read = read_.load(std::memory_order_relaxed);
  const uint64_t filled = written_.load(std::memory_order_acquire) - read;
  const int count = static_cast<int>(std::min<uint64_t>(filled, static_cast<uint64_t>(frames)));
  const int from = static_cast<int>(read % static_cast<uint64_t>(std::max(capacity_, 1)));
  const int first = std::min(count, capacity_ - from);
  constexpr size_t kFrameBytes = 2 * sizeof(int16_t);
  std::memcpy(stereo, items_.get() + 2 * from, kFrameBytes * static_cast<size_t>(first));
  std::memcpy(stereo + 2 * first, items_.get(), kFrameBytes * static_cast<size_t>(count - first));
  read_.store(read + static_cast<uint64_t>(count), std::memory_order_release);
  return count;
}

int OutputRing::Glide(int16_t* stereo, int frames) {
  const int count = Copy(stereo, std::min(frames, kGlideFrames));
  for (int i = 0; i < count; ++i) {
    const int left = count - 1 - i;
    stereo[2 * i] = static_cast<int16_t>(stereo[2 * i] * left / count);
    stereo[2 * i + 1] = static_cast<int16_t>(stereo[2 * i + 1] * left / count);
  }
  return count;
}

void OutputRing::Rise(int16_t* stereo, int frames) {
  const int count = std::min(frames, kGlideFrames);
  for (int i = 0; i < count; ++i) {
    stereo[2 * i] = static_cast<int16_t>(stereo[2 * i] * i / count);
    stereo[2 * i + 1] = static_cast<int16_t>(stereo[2 * i + 1] * i / count);
  }
}

void OutputRing::NoteDry() {
  if (deviceDrains_.load(std::memory_order_acquire) && Flows())
    underruns_.fetch_add(1, std::memory_order_relaxed);
}

int DeviceCallback(void* output, void*, unsigned int frames, double, unsigned int status,
                   void* ring) {
  auto& air = *static_cast<OutputRing*>(ring);
  if ((status & kDeviceRanDry) != 0) air.NoteDry();
  air.DrainForDevice(static_cast<int16_t*>(output), static_cast<int>(frames));
  return 0;
}

void InputRing::Take(const int16_t* samples, int frames) {
  constexpr int kSilentFrames = 256;
  static constexpr std::array<int16_t, kSilentFrames * kChannels> kSilence{};
  int64_t taken = 0;
  for (int left = frames; left > 0;) {
    const int count = samples != nullptr ? left : std::min(left, kSilentFrames);
    const uint64_t wanted = static_cast<uint64_t>(count) * static_cast<uint64_t>(channels_);
    const uint64_t written = samples_.Write(samples != nullptr ? samples : kSilence.data(), wanted);
    taken += static_cast<int64_t>(written) / channels_;
    if (written < wanted) break;
    left -= count;
  }
  received_.fetch_add(taken, std::memory_order_release);
  if (taken < frames) lost_.fetch_add(frames - taken, std::memory_order_release);
}

int InputCallback(void*, void* input, unsigned int frames, double, unsigned int, void* ring) {
  static_cast<InputRing*>(ring)->Take(static_cast<const int16_t*>(input), static_cast<int>(frames));
  return 0;
}

}  // namespace zemo
