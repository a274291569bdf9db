#include "app/RunFolders.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "app/ChosenDevices.h"
#include "app/CommandOptions.h"
#include "app/ErrorLine.h"
#include "app/StationPaths.h"
#include "platform/SoundSource.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {

namespace {

// A folder that was named is there: a slip of the pen makes no station.
std::string MakeStationFolder(const StationOptions& options) {
  if (options.station.empty()) {
    const std::string folder = DefaultStationFolder();
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error)
      throw std::runtime_error("cannot make the station folder " + folder + ": " + error.message());
  }
  return AskedStationFolder(options.station);
}

std::string MakeMachineFolder(const StationOptions& options) {
  const std::string folder = options.machine.empty() ? DefaultMachineFolder() : options.machine;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) PrintError("cannot make the machine folder " + folder + ": " + error.message());
  return folder;
}

// A number that no device has is the default device.
void TakeChosenDevice(LocalFolder& machine, OutputSpec& output) {
  const ChosenDevice chosen = ReadChosenDevices(machine).air;
  output.wholeName = true;
  output.name = chosen.key;
  if (!chosen.key.empty() || chosen.number < 0) return;
  const std::vector<SoundDevice> devices = ListSoundDevices();
  const int place = PlaceOf(chosen, devices);
  if (place < 0) return;
  output.name = devices[static_cast<size_t>(place)].key;
  RememberAirDevice(machine, chosen.number, output.name);
}

}  // namespace

RunFolders MakeRunFolders(const StationOptions& options) {
  const std::string station = MakeStationFolder(options);
  const std::string machine = MakeMachineFolder(options);
  return {station, machine, EngineLock(machine, station)};
}

OutputSpec AskedOutput(const AirOptions& options) {
  auto output = ParseOutputSpec(options.output);
  if (!output)
    throw UsageError("--output: '" + options.output +
                     "' is no output (device, device:NAME, null, file:PATH)");
  return *output;
}

OutputSpec WantedOutput(const AirOptions& options, const std::string& machinePath) {
  OutputSpec output = AskedOutput(options);
  if (options.cut) output.mostFrames = MsToFrames(*options.forMs);
  if (output.kind == OutputSpec::Kind::kDevice && output.name.empty()) {
    LocalFolder machine(machinePath);
    TakeChosenDevice(machine, output);
  }
  return output;
}

}  // namespace zemo
