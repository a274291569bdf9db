// What the tests of the real sound threads share: waiting for a condition with a bound, a folder
// for files, a sink that the test holds and a device that it plays.
#pragma once

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <climits>
#include <condition_variable>
#include <csignal>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/SoundSource.h"
#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/OutputDevice.h"

namespace zemo::testing {

// Asks until the answer is yes; false after `boundMs`. The bound only ends a test that has failed.
inline bool Within(int boundMs, const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(boundMs);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

constexpr int kBoundMs = 20000;

// An empty folder of the test's own, gone at its end.
class TestFolder {
 public:
  TestFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "zemo-sound-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
  }
  ~TestFolder() { std::filesystem::remove_all(path_); }
  std::string Path(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

// Files grow to so many bytes and no further while it lives, as on a disk that fills up.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(uint64_t bytes) {
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

// A sink whose writing the test holds, and looks at from its own thread.
class HeldSink {
 public:
  static constexpr int kAheadFrames = 16384;  // a power of two: the ring has no more
  static constexpr int16_t kLost = -7;        // in place of each lost sample

  std::unique_ptr<AirSink> Make() { return std::make_unique<Sink>(*this); }
  void Hold() { Let(0); }
  void LetOne() { Let(1); }  // of the writings, the next one or the one that waits
  void Release() { Let(INT_MAX); }
  void FailAt(size_t samples) { failAt_ = samples; }  // the writing that comes to so many
  std::atomic<bool> failsAtClose{false};

  int Begun() const { return begun_; }  // writings, held or not
  bool Closed() const { return closed_; }
  std::vector<int16_t> Written() {
    const std::lock_guard lock(mutex_);
    return written_;
  }

 private:
  class Sink final : public AirSink {
   public:
    explicit Sink(HeldSink& test) : test_(test) {}
    void Write(const int16_t* stereo, int frames) override {
      test_.Take(std::vector<int16_t>(stereo, stereo + 2 * frames));
    }
    void WriteLost(int64_t frames) override {
      test_.Take(std::vector<int16_t>(2 * static_cast<size_t>(frames), kLost));
    }
    void Close() override {
      if (test_.failsAtClose) throw SoundError("held sink: cannot be closed");
      test_.closed_ = true;
    }
    std::string Name() const override { return "held sink"; }
    int AheadFrames() const override { return kAheadFrames; }

   private:
    HeldSink& test_;
  };

  void Let(int writings) {
    const std::lock_guard lock(mutex_);
    let_ = writings;
    changed_.notify_all();
  }
  void Take(const std::vector<int16_t>& samples) {
    std::unique_lock lock(mutex_);
    ++begun_;
    changed_.wait(lock, [this] { return let_ > 0; });
    if (let_ < INT_MAX) --let_;
    if (written_.size() + samples.size() >= failAt_) throw SoundError("held sink: is full");
    written_.insert(written_.end(), samples.begin(), samples.end());
  }

  std::atomic<int> begun_{0};
  std::atomic<bool> closed_{false};
  std::atomic<size_t> failAt_{SIZE_MAX};
  std::mutex mutex_;
  std::condition_variable changed_;
  int let_ = INT_MAX;  // writings that may go on
  std::vector<int16_t> written_;
};

// Calls back for its frames in real time, as a device does, and can be made to fail as one.
class PlayedDevice {
 public:
  enum class Conduct { kPlays, kStandsStill, kRacesAway };
  std::atomic<Conduct> conduct{Conduct::kPlays};
  std::atomic<bool> absent{false};  // the next opening fails
  std::atomic<bool> holds{false};   // an opening waits
  std::atomic<bool> gone{false};    // its system says so
  std::atomic<int> rate{kSampleRate};
  std::atomic<int> delayMs{0};  // until a frame that it asked for would be heard
  std::atomic<int> asked{0};    // openings that were begun
  std::atomic<int> openings{0};
  std::atomic<int> closings{0};

  std::vector<int16_t> Played() {
    const std::lock_guard lock(mutex_);
    return played_;
  }
  std::unique_ptr<OutputDevice> Make() { return std::make_unique<Device>(*this); }

 private:
  class Device : public OutputDevice {
   public:
    explicit Device(PlayedDevice& test) : test_(test) {}
    ~Device() override { Close(); }
    Opened Open(OutputRing& ring) override {
      ++test_.asked;
      while (test_.holds) std::this_thread::sleep_for(std::chrono::milliseconds(1));
      if (test_.absent) throw SoundError("test device: absent");
      ++test_.openings;
      quit_ = false;
      thread_ = std::thread([this, &ring] { Play(ring); });
      return {"test device", test_.rate, 0, test_.delayMs};
    }
    News Look() override { return {test_.gone ? Condition::kGone : Condition::kFine, ""}; }
    void Close() override {
      if (!thread_.joinable()) return;
      quit_ = true;
      thread_.join();
      ++test_.closings;
    }

   private:
    void Play(OutputRing& ring) {
      constexpr int kFrames = 512;
      std::vector<int16_t> block(2 * kFrames);
      auto next = std::chrono::steady_clock::now();
      while (!quit_) {
        if (test_.conduct != Conduct::kStandsStill) {
          ring.DrainForDevice(block.data(), kFrames);
          const std::lock_guard lock(test_.mutex_);
          if (test_.played_.size() < kMostPlayed) {
            test_.played_.insert(test_.played_.end(), block.begin(), block.end());
          }
        }
        if (test_.conduct == Conduct::kRacesAway) {
          next = std::chrono::steady_clock::now();
          continue;
        }
        next += std::chrono::microseconds(1000000LL * kFrames / test_.rate);
        std::this_thread::sleep_until(next);
      }
    }
    PlayedDevice& test_;
    std::atomic<bool> quit_{false};
    std::thread thread_;
  };

  static constexpr size_t kMostPlayed = 2 * 60 * kSampleRate;
  std::mutex mutex_;
  std::vector<int16_t> played_;
};

}  // namespace zemo::testing
