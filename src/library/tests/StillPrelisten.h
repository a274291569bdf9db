// A prelisten player that plays nothing: the test looks at what it was told, and ends it.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "platform/Prelisten.h"

namespace zemo {

struct StillPrelisten : Prelisten {
  Following following;
  State state = State::kClosed;
  std::string file;
  std::function<void(bool lost)> ended;
  void SetDevice(int) override {}
  int Device() const override { return 1; }
  void Open(const std::string& path) override {
    file = path;
    state = State::kOpen;
  }
  void Start() override { state = State::kPlaying; }
  void Pause() override {}
  void Restart() override {}
  void Stop() override {}
  void Close() override { state = State::kClosed; }
  void Follow(const Following& next) override { following = next; }
  State PlayerState() const override { return state; }
  const std::string& FileName() const override { return file; }
  int32_t LengthMs() const override { return 180000; }
  int32_t PositionMs() const override { return 0; }
  void SetPositionMs(int32_t) override {}
  Levels HeardLevels() const override { return {}; }
  void OnEnd(std::function<void(bool lost)> told) override { ended = std::move(told); }
};

}  // namespace zemo
