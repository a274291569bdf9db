// A station on the virtual platform: everything that a simulation owns, from the ground up.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/OfficeDesk.h"
#include "app/PrivateCopy.h"
#include "platform/LocalValues.h"
#include "platform/real/analysis/RealLevelTool.h"
#include "platform/real/files/BaseLock.h"
#include "platform/real/files/KnownLengths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimLoop.h"
#include "platform/sim/SimPrelisten.h"
#include "platform/sim/SimPreview.h"
#include "platform/sim/SimRecorder.h"
#include "platform/sim/SimRoundTrip.h"
#include "platform/sim/SimSoundChain.h"
#include "platform/sim/SimSounds.h"
#include "platform/sim/SimWires.h"
#include "station/Station.h"

namespace zemo {

// The folders that a simulation works in.
struct SimFolders {
  std::string station;  // the one worked on: the station's or its copy
  std::string machine;
  // Of a private copy: the station's own folder, and where changed sound files go; both end in '/'.
  // Empty when the station itself is worked on.
  std::string copiedFrom;
  std::string changed;
  bool asProgram = false;  // works on the station itself, and may want its base alone
};

// Thread: the logic's, which is the only one.
class SimStation {
 public:
  SimStation(const SimFolders& folders, const LocalDateTime& begin,
             std::unique_ptr<SoundOpener> opener);

  // What another program does to the station's folder, sound files of a private copy included. Both
  // throw FileError.
  void DropFile(const std::string& name, std::string_view bytes);
  void RemoveFile(const std::string& name);

  SimLoop loop;
  std::optional<BaseLock> baseLock;  // where the station itself is worked on
  LocalFolder stationFolder;
  LocalFolder machineFolder;
  LocalValues localValues;
  std::unique_ptr<SoundFiles> soundFiles;
  std::unique_ptr<SoundOpener> opener;
  SoundFileLengths lengths;
  SimSoundChain sound;
  SimPrelisten prelisten;
  SimRecorder recorder;
  SimPreview preview;
  SimRoundTrip roundTrip;
  SimSounds soundDevices;
  RealLevelTool levelTool;
  SimClipboard clipboard;
  SimMessageBoxes messages;
  SimKeyboard keyboard;
  SimSystem system;
  SimAutomaton automaton;
  SimJoystick joystick;
  Station station;
  OfficeDesk desk;
  std::function<void()> killed;  // the process is to end on the spot; where a script may say so

 private:
  std::string stationPath_;  // the folder as cards name it, ending in '/'
};

}  // namespace zemo
