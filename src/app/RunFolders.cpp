#include "app/RunFolders.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "app/CommandLine.h"
#include "app/StationPaths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/sound/OutputDevice.h"
#include "station/SideFileText.h"

namespace zemo {

namespace {

std::string MakeStationFolder(const CommandLine& line) {
  const std::string folder = line.station.empty() ? DefaultStationFolder() : line.station;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (!std::filesystem::is_directory(folder))
    throw std::runtime_error("cannot make the station folder " + folder + ": " + error.message());
  return folder;
}

std::string MakeMachineFolder(const CommandLine& line) {
  const std::string folder = line.machine.empty() ? DefaultMachineFolder() : line.machine;
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error)
    std::fprintf(stderr, "zemoradio: cannot make the machine folder %s: %s\n", folder.c_str(),
                 error.message().c_str());
  return folder;
}

std::string ChosenDevice(const LocalFolder& machine) {
  try {
    const auto bytes = machine.Read("ZemoAudio.Ini");
    if (!bytes) return {};
    const std::vector<SideField> fields = ReadFields(DecodeSideFile(*bytes));
    if (fields.empty() || fields[0].AsInt(-1) < 0) return {};
    const std::vector<std::string> names = OutputDeviceNames();
    const auto number = static_cast<size_t>(fields[0].AsInt(-1));
    return number < names.size() ? names[number] : std::string();
  } catch (const FileError&) {
    return {};  // the load of the station tells of it
  }
}

}  // namespace

RunFolders MakeRunFolders(const CommandLine& line) {
  return {MakeStationFolder(line), MakeMachineFolder(line)};
}

OutputSpec WantedOutput(const CommandLine& line, const std::string& machinePath) {
  auto output = ParseOutputSpec(line.output);
  if (!output) throw UsageError("--output: '" + line.output + "' is no output");
  if (output->kind == OutputSpec::Kind::kDevice && output->name.empty())
    output->name = ChosenDevice(LocalFolder(machinePath));
  return *output;
}

}  // namespace zemo
