#include "platform/real/sound/MachineSounds.h"

#include <chrono>
#include <exception>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/real/sound/SoundDevices.h"

namespace zemo {
namespace {

std::vector<SoundDeviceList::Device> Named(const std::vector<SoundDevice>& devices) {
  std::vector<SoundDeviceList::Device> named;
  for (const SoundDevice& device : devices)
    named.push_back({device.name + " (" + device.system + ")", device.key});
  return named;
}

}  // namespace

void MachineSounds::Ask(std::function<void(const Devices&)> answer) {
  answer_ = std::move(answer);
  auto listed = std::make_shared<std::promise<Devices>>();
  listed_ = listed->get_future();
  std::thread([listed] {
    try {
      listed->set_value({Named(ListSoundInputs()), Named(ListSoundDevices())});
    } catch (...) {
      listed->set_exception(std::current_exception());
    }
  }).detach();
}

bool MachineSounds::Poll() {
  if (!listed_.valid()) return false;
  if (listed_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return true;
  std::future<Devices> listed = std::move(listed_);
  const auto answer = std::exchange(answer_, nullptr);
  if (!answer) return false;
  try {
    answer(listed.get());
  } catch (const std::exception&) {
    answer({});  // nothing is known of them
  }
  return listed_.valid();  // the answer may ask again
}

}  // namespace zemo
