// The sound inputs and outputs of the simulated machine: they have their numbers for names.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/SoundDeviceList.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sim/SimRecorder.h"

namespace zemo {

// Thread: the logic's, which is the only one.
class SimSounds final : public SoundDeviceList {
 public:
  explicit SimSounds(EventLoop& loop)
      : devices{Numbered(SimRecorder::kInputs), Numbered(SimPrelisten::kOutputs)},
        loop_(loop) {}  // not owned

  void Ask(std::function<void(const Devices&)> answer) override {
    loop_.Post([this, answer = std::move(answer), which = ++asked_] {
      if (which == asked_) answer(devices);
    });
  }
  void Forget() override { ++asked_; }

  Devices devices;  // a test may plug some in

 private:
  static std::vector<Device> Numbered(int count) {
    std::vector<Device> devices;
    for (int number = 0; number < count; ++number)
      devices.push_back({std::to_string(number), std::to_string(number)});
    return devices;
  }

  EventLoop& loop_;
  int asked_ = 0;  // questions, and answers that are not wanted
};

}  // namespace zemo
