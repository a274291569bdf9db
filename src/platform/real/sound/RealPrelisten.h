// The prelisten player on a device of this machine: a sound chain of its own, which shares nothing
// with the air's.
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Prelisten.h"
#include "platform/real/sound/ChainParting.h"
#include "platform/real/sound/DeviceThread.h"

namespace zemo {

class EventLoop;
class RealSoundChain;
class SoundOpener;

// What prelistens on the device of that key, or where the key is empty on the one of that number.
// Throws SoundError for a negative number.
WishedDevice PrelistenDevice(const std::string& key, int number);

// Thread: the logic's. The chain is made at the first start, its device is open only while a file
// plays, and it goes when the player is closed.
class RealPrelisten final : public Prelisten {
 public:
  // The device of a number, asked for at each start; may throw SoundError.
  using DeviceOf = std::function<WishedDevice(int number)>;
  static constexpr std::chrono::milliseconds kPatience{8000};  // with a device that does not play

  // Loop and opener are not owned.
  RealPrelisten(EventLoop& loop, SoundOpener& opener, DeviceOf deviceOf,
                std::chrono::milliseconds patience = kPatience);
  ~RealPrelisten() override;

  bool Poll();  // true: again within 20 ms; else whenever the loop wakes

  void SetDevice(int number) override;
  int Device() const override { return device_; }
  void Open(const std::string& path) override;
  void Start() override;
  void Pause() override;
  void Restart() override;
  void Stop() override;
  void Close() override;
  void Follow(const Following& following) override;
  State PlayerState() const override { return state_; }
  const std::string& FileName() const override { return file_; }
  int32_t LengthMs() const override { return lengthMs_; }
  int32_t PositionMs() const override;
  void SetPositionMs(int32_t ms) override;
  Levels HeardLevels() const override;
  void OnEnd(std::function<void(bool lost)> ended) override { ended_ = std::move(ended); }

  bool Rests() const { return chain_ == nullptr && leaving_.empty(); }  // no thread of it is left

 private:
  using Time = std::chrono::steady_clock::time_point;
  // Of what was mixed up to there, in ms of the chain's output.
  struct MixedLevels {
    int32_t atMs = 0;
    Levels levels;
  };
  struct Next {
    std::string file;
    int32_t lengthMs = 0, atMs = 0;
    std::optional<int32_t> fadeMs;
    double gain = 1;
  };

  void Play();
  void TakeChain(WishedDevice wished);
  void LoadSlots();
  void PlayFrom(int32_t ms);
  void Silence();
  void Reap();
  void BringNextIn();
  void BeginNext();
  void NoteLevels();
  void WatchEnd();
  void EndLater(bool lost);
  int32_t HeardMs() const;
  int32_t MixedMs() const;

  EventLoop& loop_;
  SoundOpener& opener_;
  const DeviceOf deviceOf_;
  const std::chrono::milliseconds patience_;
  std::function<void(bool lost)> ended_;
  State state_ = State::kClosed;
  int device_ = -1;
  std::string file_;
  int32_t lengthMs_ = 0;
  // Position where it stands, or at the output's start; below 0 for one that came in later.
  int32_t fromMs_ = 0;
  int slot_ = 0;              // of the file; the next one has the other
  double gain_ = 1;           // of the file
  std::optional<Next> next_;  // until it is heard
  int32_t nextAtMs_ = -1;     // HeardMs at its begin, once it is mixed

  std::unique_ptr<RealSoundChain> chain_;
  int chainDevice_ = -1;            // that it plays on
  LeavingChains leaving_;           // until their devices are closed
  std::deque<MixedLevels> levels_;  // from the oldest that is heard on
  int32_t endMs_ = -1;              // HeardMs at the file's end, once known
  Time playedAt_;                   // when its device was last seen to play
  uint64_t playing_ = 0;            // counts what begins to play or falls silent
  uint64_t ending_ = 0;             // the one whose end is on its way
  std::shared_ptr<int> alive_ = std::make_shared<int>();  // for what is on its way
};

}  // namespace zemo
