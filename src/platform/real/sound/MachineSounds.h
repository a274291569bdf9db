// The sound inputs and outputs of this machine, listed on a thread of its own.
#pragma once

#include <functional>
#include <future>
#include <memory>

#include "platform/SoundDeviceList.h"

namespace zemo {

// Thread: the logic's. A listing that hangs in its sound system is left to itself.
class MachineSounds final : public SoundDeviceList {
 public:
  void Ask(std::function<void(const Devices&)> answer) override;
  void Forget() override { answer_ = nullptr; }
  bool Poll();  // true: again within 20 ms; else whenever the loop wakes

 private:
  std::future<Devices> listed_;
  std::function<void(const Devices&)> answer_;
};

}  // namespace zemo
