// The sound outputs of the simulated machine: they have their numbers for names, and another than
// these refuses.
#pragma once

#include <string>
#include <vector>

#include "platform/Prelisten.h"
#include "platform/SettingsDevices.h"
#include "platform/sim/SimPrelisten.h"

namespace zemo {

// Thread: the logic's, which is the only one.
class SimDevices final : public SettingsDevices {
 public:
  // Not owned; null where there is no prelisten.
  explicit SimDevices(Prelisten* prelisten) : prelisten_(prelisten) {}

  std::vector<std::string> OutputNames() override {
    std::vector<std::string> names;
    for (int output = 0; output < SimPrelisten::kOutputs; ++output)
      names.push_back(std::to_string(output));
    return names;
  }
  void SelectOutput(int device) override { RequireOutput(device); }
  bool PrelistenClosed() const override {
    return prelisten_ == nullptr || prelisten_->PlayerState() == Prelisten::State::kClosed;
  }
  void SelectPrelisten(int device) override {
    RequireOutput(device);
    if (prelisten_ != nullptr) prelisten_->SetDevice(device);
  }

 private:
  static void RequireOutput(int device) {
    if (device >= SimPrelisten::kOutputs)
      throw DeviceError("there is no output " + std::to_string(device));
  }

  Prelisten* prelisten_;
};

}  // namespace zemo
