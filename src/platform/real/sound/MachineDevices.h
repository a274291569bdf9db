// The sound outputs of this machine as its settings offer them.
#pragma once

#include <string>
#include <vector>

#include "platform/SettingsDevices.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

class Prelisten;
class RealSoundChain;

// The devices are asked for when their names are, and keep their numbers until the next time.
class MachineDevices final : public SettingsDevices {
 public:
  // The chain of the air and the prelisten player, not owned; null where nothing is on air: choices
  // are only stored then.
  MachineDevices(RealSoundChain* air, Prelisten* prelisten) : air_(air), prelisten_(prelisten) {}

  std::vector<std::string> OutputNames() override;
  std::vector<std::string> OutputKeys() override;
  void SelectOutput(int device) override;
  bool PrelistenClosed() const override;
  void SelectPrelisten(int device) override;

 private:
  const SoundDevice& At(int device) const;

  RealSoundChain* air_;
  Prelisten* prelisten_;
  std::vector<SoundDevice> devices_;
};

}  // namespace zemo
