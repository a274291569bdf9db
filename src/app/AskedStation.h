// A station that is only asked: its base and side files are copied, and nothing that is done to the
// copy reaches it.
#pragma once

#include <memory>
#include <string>

#include "app/SimStation.h"
#include "app/TempFolder.h"
#include "app/Trace.h"

namespace zemo {

struct StationOptions;

class AskedStation {
 public:
  // `machine` need not exist. Throws std::runtime_error with one line.
  AskedStation(const std::string& station, const std::string& machine);
  // The folders that were asked for, or the default ones (AskedMachineFolder).
  explicit AskedStation(const StationOptions& asked);

  const SimFolders& Folders() const { return folders_; }
  // What stands in errors for the copies.
  ShownPaths Paths() const;

 private:
  TempFolder temp_;
  std::string machine_;
  SimFolders folders_;
};

// The station on the copies at a moment, with its base open and nothing else of what a start does.
// Throws std::exception with one line.
std::unique_ptr<SimStation> OpenAsked(const AskedStation& asked, const LocalDateTime& at);

}  // namespace zemo
