// The preview of a join on a device of this machine: a sound chain as the air's, which shares
// nothing with it.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

#include "platform/PreviewChain.h"
#include "platform/real/sound/DeviceThread.h"

namespace zemo {

class EventLoop;
class RealSoundChain;
class SoundOpener;

// Thread: the logic's. The chain is made when it is first asked for; its device is open only while
// its output is.
class RealPreview final : public PreviewChain {
 public:
  // The device of a number, asked for at each use; may throw SoundError.
  using DeviceOf = std::function<WishedDevice(int number)>;
  static constexpr std::chrono::milliseconds kPatience{8000};  // with a device that does not play

  // Loop and opener are not owned.
  RealPreview(EventLoop& loop, SoundOpener& opener, DeviceOf deviceOf,
              std::chrono::milliseconds patience = kPatience);
  ~RealPreview() override;  // waits 2 s for the device at most

  bool Poll();  // true: again within 20 ms; else whenever the loop wakes

  SoundChain& Sound() override;
  void UseDevice(int number) override;
  Levels HeardLevels() override;
  void OnLost(std::function<void()> lost) override { lost_ = std::move(lost); }

 private:
  using Time = std::chrono::steady_clock::time_point;

  RealSoundChain& Chain();
  void Watch();

  EventLoop& loop_;
  SoundOpener& opener_;
  const DeviceOf deviceOf_;
  const std::chrono::milliseconds patience_;
  std::function<void()> lost_;
  std::unique_ptr<RealSoundChain> chain_;
  std::string device_;     // identity of the one that was chosen last
  bool watching_ = false;  // the output runs, and its loss is not told yet
  bool started_ = false;   // it ran at the last look
  Time playedAt_;          // when its device was last seen to play
  std::shared_ptr<int> alive_ = std::make_shared<int>();  // for what is on its way
};

}  // namespace zemo
