// The sound systems side by side.
#include "platform/real/sound/SoundDevices.h"

#include <algorithm>
#include <cctype>

#include "platform/real/sound/PulseDevice.h"
#include "platform/real/sound/RtAudioDevice.h"

namespace zemo {
namespace {

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

}  // namespace

int FindSoundDevice(const std::vector<SoundDevice>& devices, const DeviceWish& wish) {
  const std::string wanted = Folded(wish.name);
  const auto find = [&](auto means) {
    const auto found = std::find_if(devices.begin(), devices.end(), means);
    return found == devices.end() ? -1 : static_cast<int>(found - devices.begin());
  };
  if (wanted.empty()) return find([](const SoundDevice& device) { return device.isDefault; });
  int found = find([&](const SoundDevice& device) { return Folded(device.key) == wanted; });
  if (found < 0)
    found = find([&](const SoundDevice& device) { return Folded(device.name) == wanted; });
  if (found >= 0 || wish.whole) return found;
  return find([&](const SoundDevice& device) {
    return Folded(device.name).find(wanted) != std::string::npos ||
           Folded(device.key).find(wanted) != std::string::npos;
  });
}

std::vector<SoundDevice> ListSoundDevices() {
  std::vector<SoundDevice> devices = RtAudioDevices(RtAudioSystem::kJack);
  for (const auto& more : {PulseDevices(), RtAudioDevices(RtAudioSystem::kAlsa)})
    devices.insert(devices.end(), more.begin(), more.end());
  return devices;
}

bool AnySoundDevice() {
  return AnyRtAudioDevice(RtAudioSystem::kJack) || !PulseDevices().empty() ||
         AnyRtAudioDevice(RtAudioSystem::kAlsa);
}

std::vector<std::unique_ptr<OutputDevice>> MakeOutputDevices(const DeviceWish& wish) {
  std::vector<std::unique_ptr<OutputDevice>> devices;
  devices.push_back(MakeRtAudioDevice(RtAudioSystem::kJack, wish));
  devices.push_back(MakePulseDevice(wish));
  devices.push_back(MakeRtAudioDevice(RtAudioSystem::kAlsa, wish));
  return devices;
}

}  // namespace zemo
