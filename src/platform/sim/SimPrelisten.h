// The prelisten player on the virtual clock: it plays for as long as its file is, and makes no
// sound.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Prelisten.h"

namespace zemo {

class Clock;
class EventLoop;
class LoopTimer;
class SoundOpener;

// Thread: the logic's, which is the only one.
class SimPrelisten final : public Prelisten {
 public:
  static constexpr int kOutputs = 4;  // that the simulated machine has, from 0; others refuse

  // None is owned.
  SimPrelisten(EventLoop& loop, const Clock& clock, SoundOpener& opener);
  ~SimPrelisten() override;

  // What became of the player: "play", "pause", "stop", "end" or "refused".
  std::function<void(const char* state, const std::string& file, int device)> told;

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
  Levels HeardLevels() const override { return {}; }
  void OnEnd(std::function<void(bool lost)> ended) override { ended_ = std::move(ended); }

 private:
  void Play();
  void StandAt(State state, int32_t ms);
  void OnFileEnd();
  void BringNextIn();
  void Tell(const char* state) const;

  EventLoop& loop_;
  const Clock& clock_;
  SoundOpener& opener_;
  std::function<void(bool lost)> ended_;
  State state_ = State::kClosed;
  int device_ = -1;
  std::string file_;
  int32_t lengthMs_ = 0;
  struct Next {
    std::string file;
    int32_t lengthMs = 0, atMs = 0;
  };
  std::optional<Next> next_;          // comes in over the file
  int32_t fromMs_ = 0;                // position where it stands, or began to play
  int64_t begunMs_ = 0;               // while it plays: when it began, monotonic
  std::unique_ptr<LoopTimer> atEnd_;  // while it plays
};

}  // namespace zemo
