// The sound systems side by side.
#include "platform/real/sound/SoundDevices.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>

#include "platform/real/sound/PulseDevice.h"
#include "platform/real/sound/RtAudioDevice.h"

namespace zemo {
namespace {

std::string Folded(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// ALSA's default device may be the Pulse server's, and ALSA waits half a minute for a server that
// takes the connection and says nothing. nullopt: no answer in time; whoever asked ends by himself.
template <typename Answer>
std::optional<Answer> AnswerInTime(Answer (*ask)()) {
  constexpr std::chrono::seconds kPatience{2};
  const auto answer = std::make_shared<std::promise<Answer>>();
  std::future<Answer> future = answer->get_future();
  std::thread([answer, ask] {
    try {
      answer->set_value(ask());
    } catch (...) {
      answer->set_exception(std::current_exception());
    }
  }).detach();
  if (future.wait_for(kPatience) != std::future_status::ready) return std::nullopt;
  return future.get();
}

class NumberedDevice final : public OutputDevice {
 public:
  explicit NumberedDevice(int number) : number_(number) {}

  Opened Open(OutputRing& ring) override {
    device_.reset();
    const std::vector<SoundDevice> devices = ListSoundDevices();
    if (number_ < 0 || number_ >= static_cast<int>(devices.size()))
      throw NoSuchDevice("there is no sound device of number " + std::to_string(number_));
    device_ = Make(devices[static_cast<size_t>(number_)]);
    return device_->Open(ring);
  }
  void Close() override { device_.reset(); }
  News Look() override { return device_->Look(); }

 private:
  static std::unique_ptr<OutputDevice> Make(const SoundDevice& device) {
    const DeviceWish wish{device.key, true, true};
    if (device.system == "PulseAudio") return MakePulseDevice(wish);
    return MakeRtAudioDevice(device.system == "JACK" ? RtAudioSystem::kJack : RtAudioSystem::kAlsa,
                             wish);
  }

  const int number_;
  std::unique_ptr<OutputDevice> device_;  // while it is open
};

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
  const auto alsa =
      AnswerInTime<std::vector<SoundDevice>>([] { return RtAudioDevices(RtAudioSystem::kAlsa); });
  for (const auto& more : {PulseDevices(), alsa.value_or(std::vector<SoundDevice>())})
    devices.insert(devices.end(), more.begin(), more.end());
  return devices;
}

bool AnySoundDevice() {
  if (AnyRtAudioDevice(RtAudioSystem::kJack) || !PulseDevices().empty()) return true;
  return AnswerInTime<bool>([] { return AnyRtAudioDevice(RtAudioSystem::kAlsa); }).value_or(true);
}

std::unique_ptr<OutputDevice> MakeNumberedDevice(int number) {
  return std::make_unique<NumberedDevice>(number);
}

std::vector<std::unique_ptr<OutputDevice>> MakeOutputDevices(const DeviceWish& wish) {
  std::vector<std::unique_ptr<OutputDevice>> devices;
  devices.push_back(MakeRtAudioDevice(RtAudioSystem::kJack, wish));
  devices.push_back(MakePulseDevice(wish));
  devices.push_back(MakeRtAudioDevice(RtAudioSystem::kAlsa, wish));
  return devices;
}

}  // namespace zemo
