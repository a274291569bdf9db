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
#include <utility>

#include "platform/real/sound/PulseDevice.h"
#include "platform/real/sound/PulseInput.h"
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

// As NumberedDevice.
class NumberedInput final : public InputDevice {
 public:
  explicit NumberedInput(int number) : number_(number) {}

  Opened Open(InputRing& ring) override {
    input_.reset();
    const std::vector<SoundDevice> inputs = ListSoundInputs();
    if (number_ >= static_cast<int>(inputs.size()))
      throw NoSuchDevice("there is no sound input of number " + std::to_string(number_));
    const SoundDevice& input = inputs[static_cast<size_t>(number_)];
    const DeviceWish wish{input.key, true};
    input_ = input.system == "PulseAudio"
                 ? MakePulseInput(wish)
                 : MakeRtAudioInput(
                       input.system == "JACK" ? RtAudioSystem::kJack : RtAudioSystem::kAlsa, wish);
    return input_->Open(ring);
  }
  void Close() override { input_.reset(); }
  OutputDevice::Condition Look() override { return input_->Look(); }

 private:
  const int number_;
  std::unique_ptr<InputDevice> input_;  // while it is open
};

// In the order of the systems.
std::vector<SoundDevice> InOneList(std::vector<SoundDevice> jack,
                                   const std::vector<SoundDevice>& pulse,
                                   const std::optional<std::vector<SoundDevice>>& alsa) {
  jack.insert(jack.end(), pulse.begin(), pulse.end());
  if (alsa) jack.insert(jack.end(), alsa->begin(), alsa->end());
  return jack;
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
  std::vector<SoundDevice> jack = RtAudioDevices(RtAudioSystem::kJack);
  const auto alsa =
      AnswerInTime<std::vector<SoundDevice>>([] { return RtAudioDevices(RtAudioSystem::kAlsa); });
  return InOneList(std::move(jack), PulseDevices(), alsa);
}

std::vector<SoundDevice> ListSoundInputs() {
  std::vector<SoundDevice> jack = RtAudioInputs(RtAudioSystem::kJack);
  const auto alsa =
      AnswerInTime<std::vector<SoundDevice>>([] { return RtAudioInputs(RtAudioSystem::kAlsa); });
  return InOneList(std::move(jack), PulseInputs(), alsa);
}

WishedInput InputOf(const std::string& key, int number) {
  if (number < 0) throw SoundError("no sound input is chosen");
  WishedInput wished{key.empty() ? "number " + std::to_string(number) : key, {}};
  if (key.empty()) {
    wished.systems.push_back(std::make_unique<NumberedInput>(number));
    return wished;
  }
  const DeviceWish wish{key, true};
  wished.systems.push_back(MakeRtAudioInput(RtAudioSystem::kJack, wish));
  wished.systems.push_back(MakePulseInput(wish));
  wished.systems.push_back(MakeRtAudioInput(RtAudioSystem::kAlsa, wish));
  return wished;
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
