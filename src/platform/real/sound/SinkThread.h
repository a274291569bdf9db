// The thread of a sink of the air, and the lock-free ring between it and the mixer. The mixer never
// waits: what a full ring cannot take is counted, and the sink is told where it was lost. After a
// loss nothing is taken until half of the ring is free, so that a slow sink gets few long gaps and
// not many short ones.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/Notices.h"
#include "platform/real/sound/SpscRing.h"
#include "platform/real/sound/WakeUp.h"

namespace zemo {

class SinkThread {
 public:
  // The sink's AheadFrames are rounded up to a power of two, and are twice what Take is ever given,
  // or more.
  explicit SinkThread(std::unique_ptr<AirSink> sink);
  ~SinkThread();
  SinkThread(const SinkThread&) = delete;
  SinkThread& operator=(const SinkThread&) = delete;

  // --- Mixer's thread ---
  void Take(const int16_t* stereo, int frames);

  // --- Any thread ---
  bool Takes() const { return takes_.load(std::memory_order_acquire); }  // false once it failed
  uint64_t LostFrames() const { return lostFrames_.load(std::memory_order_relaxed); }
  uint64_t Gaps() const { return gapsBegun_.load(std::memory_order_relaxed); }
  int64_t Frames() const { return given_.load(std::memory_order_relaxed); }  // taken and lost
  const std::string& Name() const { return name_; }

  // --- Logic's thread ---
  Notices& Told() { return notices_; }
  // Once the mixer's thread is no more: the sink gets all that waits, then silence until it had
  // `frames` in all, and is closed, however long that takes.
  void End(int64_t frames = 0);

 private:
  struct Gap {
    uint64_t at;  // frames handed to the sink before it, without other gaps
    uint64_t frames;
  };

  void Run();
  bool HandOver();

  static constexpr int kBlockFrames = 4096;
  static constexpr int kMostGaps = 16;  // half a ring lies between two of them

  const std::string name_;
  SpscRing<int16_t> ring_;  // interleaved
  SpscRing<Gap> gaps_{kMostGaps};
  WakeUp wake_;
  Notices notices_;
  std::atomic<int64_t> given_{0};
  std::atomic<uint64_t> lostFrames_{0};
  std::atomic<uint64_t> gapsBegun_{0};
  std::atomic<bool> takes_{true};
  std::atomic<bool> ended_{false};

  // The mixer's own.
  uint64_t taken_ = 0;    // frames written to the ring
  uint64_t missing_ = 0;  // frames of the gap that lasts

  // The thread's own.
  std::unique_ptr<AirSink> sink_;
  std::vector<int16_t> block_;
  std::optional<Gap> gap_;  // the next one
  uint64_t handed_ = 0;     // frames read from the ring
  std::thread thread_;      // last: it uses all the others
};

}  // namespace zemo
