// Measures sound files one after the other, by a thread that runs only while nothing else on this
// machine wants to: neither the processor nor the disk is taken from the air.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <thread>

#include "platform/SoundMeasurer.h"
#include "platform/SoundSource.h"

namespace zemo {

// Thread: the logic's; the measuring has its own, which uses an opener of its own. The logic never
// waits: where the other thread has the lists at this moment, nothing is taken and nothing given;
// and as the allocator has locks of its own, each of the two copies what it takes and frees what is
// its.
class MeasuringThread : public SoundMeasurer {
 public:
  explicit MeasuringThread(std::unique_ptr<SoundOpener> opener);
  // Leaves off in the middle of a file, as soon as the thread gets the processor once more.
  ~MeasuringThread() override;

  bool Wish(const std::string& path) override;
  std::optional<MeasuredSound> TakeMeasured() override;

 private:
  void Run(const std::stop_token& stop);
  struct Waiting {
    std::string path;
    bool taken = false;  // by the thread
  };
  std::optional<std::string> NextWish();
  void Give(MeasuredSound sound);
  MeasuredSound Measure(const std::string& path, const std::stop_token& stop);

  std::unique_ptr<SoundOpener> opener_;
  std::mutex mutex_;                    // held for some instructions, never while a file is read
  std::deque<Waiting> wishes_;          // the newest last; the logic's
  std::string current_;                 // empty: none; the thread's
  std::deque<MeasuredSound> measured_;  // the oldest first; the thread's
  size_t copied_ = 0;                   // of these, by the logic
  std::atomic<uint32_t> signals_ = 0;   // counts up when there is a wish, or the end
  std::jthread thread_;                 // last: it uses all the others
};

}  // namespace zemo
