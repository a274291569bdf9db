// A station on this machine: everything that a run on air owns, from the ground up.
#pragma once

#include <QCoreApplication>
#include <memory>
#include <string>

#include "platform/LocalValues.h"
#include "platform/real/analysis/BackgroundLevelTool.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/desktop/DesktopApplication.h"
#include "platform/real/desktop/RealClock.h"
#include "platform/real/desktop/RealEventLoop.h"
#include "platform/real/desktop/ScreenlessDesktop.h"
#include "platform/real/files/BaseLock.h"
#include "platform/real/files/KnownLengths.h"
#include "platform/real/files/LocalFolder.h"
#include "platform/real/files/StoredPaths.h"
#include "platform/real/joystick/SdlJoystick.h"
#include "platform/real/serial/QtSerialPort.h"
#include "platform/real/sound/MachineDevices.h"
#include "platform/real/sound/MachineSounds.h"
#include "platform/real/sound/RealPrelisten.h"
#include "platform/real/sound/RealPreview.h"
#include "platform/real/sound/RealRecorder.h"
#include "platform/real/sound/RealRoundTrip.h"
#include "platform/real/sound/RealSoundChain.h"
#include "station/Station.h"

namespace zemo {

class ServerLink;

// Who sits at the machine, or nobody. Not owned.
struct DesktopParts {
  Clipboard& clipboard;
  MessageBoxes& messages;
  Keyboard& keyboard;
  System& system;
};

// A machine without a screen, with the application that its event loop needs.
struct ScreenlessMachine {
  int argumentCount = 0;  // of the application, for its whole life
  std::unique_ptr<QCoreApplication> application = MakeApplication(argumentCount);
  std::unique_ptr<Clipboard> clipboard = MakeClipboard();
  ScreenlessMessageBoxes messages;
  ScreenlessKeyboard keyboard;
  RealSystem system;
  DesktopParts Parts() { return {*clipboard, messages, keyboard, system}; }
};

// Needs Qt's application. Thread: the logic's.
class RealStation {
 public:
  // What happens to the output goes to the error log; `notice` hears what there is to say before
  // the station stands. Throws SoundError when the output's file cannot be made.
  RealStation(const std::string& stationPath, const std::string& machinePath,
              const OutputSpec& output, const DesktopParts& desktop, SoundNotice notice);
  ~RealStation();

 private:
  void TellOfServer();

  bool stands_ = false;  // the station does, and its log

 public:
  RealClock clock;
  RealEventLoop loop;
  BaseLock baseLock;
  LocalFolder stationFolder;
  LocalFolder machineFolder;
  std::unique_ptr<ServerLink> serverLink;  // null: the base is the station's own file
  LocalValues localValues;
  StoredPaths soundFiles;
  SoundFileOpener opener;
  SoundFileLengths lengths;
  std::unique_ptr<RealSoundChain> sound;
  RealPrelisten prelisten;
  RealRecorder recorder;
  RealPreview preview;
  BackgroundLevelTool levelTool;
  RealRoundTrip roundTrip;
  MachineSounds soundDevices;
  MachineDevices devices;  // for the settings
  QtSerialPort serial;
  SdlJoystick joystick;
  Station station;
};

}  // namespace zemo
