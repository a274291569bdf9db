#include "platform/real/sound/MachineDevices.h"

#include "platform/Prelisten.h"
#include "platform/real/sound/RealSoundChain.h"

namespace zemo {

std::vector<std::string> MachineDevices::OutputNames() {
  devices_ = ListSoundDevices();
  std::vector<std::string> names;
  for (const SoundDevice& device : devices_)
    names.push_back(device.name + " (" + device.system + ")");
  return names;
}

std::vector<std::string> MachineDevices::OutputKeys() {
  std::vector<std::string> keys;
  for (const SoundDevice& device : devices_) keys.push_back(device.key);
  return keys;
}

// None chosen is the default device.
void MachineDevices::SelectOutput(int device) {
  if (air_ != nullptr) air_->ChooseDevice(device < 0 ? std::string() : At(device).key);
}

bool MachineDevices::PrelistenClosed() const {
  return prelisten_ == nullptr || prelisten_->PlayerState() == Prelisten::State::kClosed;
}

void MachineDevices::SelectPrelisten(int device) {
  if (prelisten_ == nullptr) return;
  if (device >= 0) At(device);
  prelisten_->SetDevice(device);
}

const SoundDevice& MachineDevices::At(int device) const {
  if (device < 0 || static_cast<size_t>(device) >= devices_.size())
    throw DeviceError("there is no sound device of number " + std::to_string(device));
  return devices_[static_cast<size_t>(device)];
}

}  // namespace zemo
