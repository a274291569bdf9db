#include "app/ChosenDevices.h"

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "station/SideFileText.h"

namespace zemo {

namespace {

// The local values of a device.
struct DeviceValues {
  const char* number;
  const char* key;
};
constexpr DeviceValues kAirValues{"AudioOutID", "AudioOutName"};
constexpr DeviceValues kPrelistenValues{"AudioOutPFLID", "AudioOutPFLName"};
constexpr DeviceValues kMicrophoneValues{"VoiceTrackInputID", "VoiceTrackInputName"};
constexpr DeviceValues kVoiceTrackValues{"VoiceTrackOututID", "VoiceTrackOututName"};

// A name stands for the number that was chosen with it: another program may have changed the file.
std::string KeyOf(const LocalValues& local, int number, const DeviceValues& values) {
  const bool chosen = number >= 0 && local.GetInt(values.number, -1) == number;
  return chosen ? local.GetText(values.key, "") : "";
}

ChosenDevice Chosen(const LocalValues& local, const std::vector<SideField>& fields, size_t field,
                    const DeviceValues& values) {
  if (field >= fields.size()) return {};
  const int number = fields[field].AsInt(-1);
  return {number, KeyOf(local, number, values)};
}

}  // namespace

ChosenDevices ReadChosenDevices(Folder& machine) {
  try {
    const auto bytes = ReadBounded(machine, "ZemoAudio.Ini");
    if (!bytes) return {};
    const std::vector<SideField> fields = ReadFields(DecodeSideFile(*bytes));
    const LocalValues local(machine);
    return {Chosen(local, fields, 0, kAirValues), Chosen(local, fields, 1, kPrelistenValues)};
  } catch (const FileError&) {
    return {};
  }
}

std::string PrelistenKey(const LocalValues& local, int number) {
  return KeyOf(local, number, kPrelistenValues);
}

std::string MicrophoneKey(const LocalValues& local, int number) {
  return KeyOf(local, number, kMicrophoneValues);
}

std::string VoiceTrackOutputKey(const LocalValues& local, int number) {
  return KeyOf(local, number, kVoiceTrackValues);
}

int PlaceOf(const ChosenDevice& chosen, const std::vector<SoundDevice>& devices) {
  if (!chosen.key.empty()) return FindSoundDevice(devices, {chosen.key, true});
  return chosen.number < static_cast<int>(devices.size()) ? chosen.number : -1;
}

void RememberAirDevice(Folder& machine, int number, const std::string& key) {
  try {
    LocalValues local(machine);
    local.Set(kAirValues.key, key);
    local.Set(kAirValues.number, std::to_string(number));
  } catch (const FileError&) {
    // The number goes on counting.
  }
}

}  // namespace zemo
