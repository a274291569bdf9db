// `zemoradio devices`: the sound devices of this machine, and what it uses them for.
#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "app/ChosenDevices.h"
#include "app/Commands.h"
#include "app/StationPaths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

namespace {

using Json = nlohmann::ordered_json;

struct Use {
  const char* word;
  ChosenDevice chosen;
  int place;  // among the devices; -1: not there
};

// The air takes the default device where none is chosen, or a number that no device has.
std::vector<Use> UsesOf(const ChosenDevices& chosen, const std::vector<SoundDevice>& devices) {
  int air = PlaceOf(chosen.air, devices);
  if (air < 0 && chosen.air.key.empty()) air = FindSoundDevice(devices, {});
  return {{"air", chosen.air, air},
          {"prelisten", chosen.prelisten, PlaceOf(chosen.prelisten, devices)}};
}

bool IsMissing(const Use& use) {
  return use.place < 0 && !use.chosen.key.empty();
}

std::vector<std::string> WordsOf(const std::vector<Use>& uses, size_t place) {
  std::vector<std::string> words;
  for (const Use& use : uses)
    if (use.place == static_cast<int>(place)) words.emplace_back(use.word);
  return words;
}

void TellJson(const std::vector<SoundDevice>& devices, const std::vector<Use>& uses) {
  Json answer{{"devices", Json::array()}};
  for (size_t place = 0; place < devices.size(); ++place) {
    const SoundDevice& device = devices[place];
    answer["devices"].push_back({{"number", place},
                                 {"name", device.name},
                                 {"key", device.key},
                                 {"system", device.system},
                                 {"rates", device.rates},
                                 {"channels", device.channels},
                                 {"default", device.isDefault},
                                 {"uses", WordsOf(uses, place)}});
  }
  for (const Use& use : uses) {
    answer[use.word] = {{"number", use.place >= 0 ? Json(use.place) : Json()},
                        {"chosen", use.chosen.key.empty() ? Json() : Json(use.chosen.key)},
                        {"missing", IsMissing(use)}};
  }
  std::cout << answer.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
}

std::string Joined(const std::vector<std::string>& words, const char* between) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : between) + word;
  return text;
}

void TellDevice(const SoundDevice& device, size_t place, const std::vector<Use>& uses) {
  std::vector<std::string> rates;
  for (const int rate : device.rates) rates.push_back(std::to_string(rate));
  std::vector<std::string> notes = WordsOf(uses, place);
  if (device.isDefault) notes.insert(notes.begin(), "default");
  std::cout << place << "  " << device.name << "\n    " << device.system << ", " << device.channels
            << " channels, " << Joined(rates, " ") << " Hz"
            << (notes.empty() ? "" : "; " + Joined(notes, ", ")) << "\n";
  if (device.key != device.name) std::cout << "    " << device.key << "\n";
}

void Tell(const std::vector<SoundDevice>& devices, const std::vector<Use>& uses) {
  if (devices.empty()) std::cout << "no sound device on this machine\n";
  for (size_t place = 0; place < devices.size(); ++place) TellDevice(devices[place], place, uses);
  for (const Use& use : uses)
    if (IsMissing(use))
      std::cout << use.word << ": " << use.chosen.key << " is chosen and not there\n";
}

}  // namespace

int RunDevicesCommand(const DevicesOptions& options) {
  LocalFolder machine(options.machine.empty() ? DefaultMachineFolder() : options.machine);
  const std::vector<SoundDevice> devices = ListSoundDevices();
  const std::vector<Use> uses = UsesOf(ReadChosenDevices(machine), devices);
  if (options.json)
    TellJson(devices, uses);
  else
    Tell(devices, uses);
  return 0;
}

}  // namespace zemo
