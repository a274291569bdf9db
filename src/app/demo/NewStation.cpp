#include "app/demo/NewStation.h"

#include <filesystem>
#include <stdexcept>

#include "app/demo/DemoBase.h"
#include "app/demo/DemoSideFiles.h"
#include "platform/real/files/LocalFolder.h"
#include "station/BaseFiles.h"
#include "store/StationBase.h"

namespace zemo {
namespace {

namespace fs = std::filesystem;

constexpr const char* kNewPartName = "New.part";  // the base while it grows

void FillNew(const std::string& path) {
  LocalFolder station(path);
  for (const SideFile& file : NewSideFiles()) station.Write(file.name, file.bytes);
  MakeBase(station.PathOf(kNewPartName), [](StationBase&) {});
  station.Rename(kNewPartName, BaseFile::kBase);
}

// Nothing but what FillNew wrote, and the folder where that was missing.
void TakeAway(const fs::path& path, bool wasThere) {
  std::error_code stays;
  for (const SideFile& file : NewSideFiles()) fs::remove(path / file.name, stays);
  for (const char* ending : {"", BaseFile::kJournal})
    fs::remove(path / (kNewPartName + std::string(ending)), stays);
  if (!wasThere) fs::remove(path, stays);
}

std::string MakeStation(const fs::path& path) {
  const bool wasThere = fs::exists(path);
  if (wasThere && !fs::is_directory(path))
    throw std::runtime_error(path.string() + " is no folder; nothing was changed");
  if (wasThere && !fs::is_empty(path))
    throw std::runtime_error(path.string() + " is not empty; nothing was changed");
  try {
    fs::create_directories(path);
    FillNew(path.string());
  } catch (const std::exception&) {
    TakeAway(path, wasThere);
    throw;
  }
  return path.string();
}

}  // namespace

std::string MakeNewStation(const std::string& dir) {
  try {
    fs::path path = fs::weakly_canonical(fs::absolute(dir));
    if (!path.has_filename()) path = path.parent_path();  // without the slash behind it
    return MakeStation(path);
  } catch (const fs::filesystem_error& error) {
    throw std::runtime_error(error.path1().string() + ": " + error.code().message());
  }
}

}  // namespace zemo
