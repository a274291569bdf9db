// A private copy of a station for a question: nothing of the station or its machine is changed.
#pragma once

#include <string>

#include "app/SimStation.h"
#include "app/TempFolder.h"
#include "app/Trace.h"

namespace zemo {

struct CommandLine;

// Copies of the station and the machine of the command line, gone with the object, and their paths
// as errors are to show them.
class AskedStation {
 public:
  // Throws std::runtime_error with one line where there is no station, base or machine folder.
  explicit AskedStation(const CommandLine& line);
  const SimFolders& Folders() const { return folders_; }
  ShownPaths Paths() const;

 private:
  TempFolder temp_;
  std::string from_, machine_;
  SimFolders folders_;
};

// The base alone: nothing of what a start does to a station.
void OpenForQuestion(Station& station);

}  // namespace zemo
