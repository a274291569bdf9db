// A station on this machine: everything that a run on air owns, from the ground up.
#pragma once

#include <QCoreApplication>
#include <memory>
#include <string>

#include "platform/LocalValues.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/desktop/RealEventLoop.h"
#include "platform/real/desktop/ScreenlessDesktop.h"
#include "platform/real/files/KnownLengths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"
#include "platform/real/sound/RealSoundChain.h"
#include "station/Station.h"

namespace zemo {

// Thread: the logic's.
class RealStation {
 public:
  // `notice` hears of the output. Throws SoundError when the output's file cannot be made.
  RealStation(const std::string& stationPath, const std::string& machinePath,
              const OutputSpec& output, SoundNotice notice);
  ~RealStation();

 private:
  // Qt's idea of a command line: it has its own already, and must not look at ours.
  struct Arguments {
    int count = 1;
    char name[16] = "zemoradio";
    char* values[2] = {name, nullptr};
  };
  Arguments arguments_;
  QCoreApplication application_;

 public:
  RealClock clock;
  RealEventLoop loop;
  LocalFolder stationFolder;
  LocalFolder machineFolder;
  LocalValues localValues;
  StoredPaths soundFiles;
  SoundFileOpener opener;
  SoundFileLengths lengths;
  std::unique_ptr<RealSoundChain> sound;
  ScreenlessClipboard clipboard;
  ScreenlessMessageBoxes messages;
  ScreenlessKeyboard keyboard;
  RealSystem system;
  Station station;
};

}  // namespace zemo
