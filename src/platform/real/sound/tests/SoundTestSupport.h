// What the tests of the real sound threads share: waiting for a condition with a bound, a folder
// for files, and a device that the test plays.
#pragma once

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/SoundSource.h"
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

// Calls back for its frames in real time, as a device does, and can be made to fail as one.
class PlayedDevice {
 public:
  enum class Conduct { kPlays, kStandsStill, kRacesAway };
  std::atomic<Conduct> conduct{Conduct::kPlays};
  std::atomic<bool> absent{false};  // the next opening fails
  std::atomic<int> rate{kSampleRate};
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
      if (test_.absent) throw SoundError("test device: absent");
      ++test_.openings;
      quit_ = false;
      thread_ = std::thread([this, &ring] { Play(ring); });
      return {"test device", test_.rate};
    }
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
