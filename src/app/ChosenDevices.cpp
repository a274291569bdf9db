#include "app/ChosenDevices.h"

#include "platform/BoundedRead.h"
#include "platform/Folder.h"
#include "platform/LocalValues.h"
#include "station/SideFileText.h"

namespace zemo {

namespace {

// A name stands for the number that was chosen with it: another program may have changed the file.
ChosenDevice Chosen(const LocalValues& local, const std::vector<SideField>& fields, size_t field,
                    const char* numberValue, const char* keyValue) {
  ChosenDevice chosen;
  if (field >= fields.size()) return chosen;
  chosen.number = fields[field].AsInt(-1);
  if (chosen.number >= 0 && local.GetInt(numberValue, -1) == chosen.number)
    chosen.key = local.GetText(keyValue, "");
  return chosen;
}

}  // namespace

ChosenDevices ReadChosenDevices(Folder& machine) {
  try {
    const auto bytes = ReadBounded(machine, "ZemoAudio.Ini");
    if (!bytes) return {};
    const std::vector<SideField> fields = ReadFields(DecodeSideFile(*bytes));
    const LocalValues local(machine);
    return {Chosen(local, fields, 0, "AudioOutID", "AudioOutName"),
            Chosen(local, fields, 1, "AudioOutPFLID", "AudioOutPFLName")};
  } catch (const FileError&) {
    return {};
  }
}

int PlaceOf(const ChosenDevice& chosen, const std::vector<SoundDevice>& devices) {
  if (!chosen.key.empty()) return FindSoundDevice(devices, {chosen.key, true});
  return chosen.number < static_cast<int>(devices.size()) ? chosen.number : -1;
}

void RememberAirDevice(Folder& machine, int number, const std::string& key) {
  try {
    LocalValues local(machine);
    local.Set("AudioOutName", key);
    local.Set("AudioOutID", std::to_string(number));
  } catch (const FileError&) {
    // The number goes on counting.
  }
}

}  // namespace zemo
