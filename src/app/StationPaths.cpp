#include "app/StationPaths.h"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string_view>

#include "app/ErrorLine.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/NoCaseNames.h"
#include "station/BaseFiles.h"
#include "station/BasePlaces.h"

namespace zemo {

namespace {
constexpr const char* kOurs = "/ZemoKaluri/ZemoRadio";

// The folder that the variable names, else the one below the home folder. Only an absolute path
// counts in these variables.
std::string UserFolder(const char* variable, const char* belowHome) {
  const char* named = std::getenv(variable);
  if (named && named[0] == '/') return named + std::string(kOurs);
  const char* home = std::getenv("HOME");
  if (home && home[0] == '/') return std::string(home) + belowHome + kOurs;
  throw std::runtime_error(std::string("neither ") + variable +
                           " nor HOME is set: name the folders with --station and --machine");
}

void RequireFolder(const std::string& folder) {
  std::error_code error;
  if (!std::filesystem::is_directory(folder, error))
    throw std::runtime_error("there is no station folder " + folder);
}
}  // namespace

std::string DefaultStationFolder() {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::string beside = error ? std::string() : executable.parent_path().string();
  if (!beside.empty() && NamesBase(LocalFolder(beside))) return beside;
  return UserFolder("XDG_DATA_HOME", "/.local/share");
}

std::string DefaultMachineFolder() {
  return UserFolder("XDG_CONFIG_HOME", "/.config");
}

void RefuseIrregularBase(const std::string& folder) {
  const std::string name = EntryNamed(folder, BaseFile::kBase);
  const std::string path = (std::filesystem::path(folder) / name).string();
  std::error_code error;
  const auto status = std::filesystem::status(path, error);
  if (name.empty() || std::filesystem::is_regular_file(status) || !std::filesystem::exists(status))
    return;
  throw std::runtime_error(path + " is not a regular file: it cannot be a base");
}

std::string AskedStationFolder(const std::string& named) {
  std::string folder = named.empty() ? DefaultStationFolder() : named;
  RequireFolder(folder);
  RefuseIrregularBase(folder);
  return folder;
}

std::string AskedMachineFolder(const std::string& named) {
  if (named.empty()) return DefaultMachineFolder();
  std::error_code error;
  if (!std::filesystem::is_directory(named, error))
    PrintError("there is no machine folder " + named + " yet: going on air makes it");
  return named;
}

void RequireStation(const std::string& folder) {
  RequireFolder(folder);
  RefuseIrregularBase(folder);
  const LocalFolder station(folder);
  if (!NamesBase(station))
    throw std::runtime_error("there is no base in " + folder +
                             ": neither a Triskin.MDB nor a Base.Ini that names one on a server");
  if (const BasePlace place = PlaceOfBase(station); !place.fault.empty())
    throw std::runtime_error(place.fault);
}

}  // namespace zemo
