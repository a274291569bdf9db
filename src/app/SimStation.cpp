#include "app/SimStation.h"

#include <utility>

#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/files/StoredPaths.h"

namespace zemo {

namespace {
std::unique_ptr<SoundFiles> MakeSoundFiles(const SimFolders& folders, Folder& station,
                                           Folder& machine) {
  if (folders.copiedFrom.empty()) return std::make_unique<StoredPaths>(machine);
  return std::make_unique<PrivateFiles>(machine, folders.copiedFrom, station, folders.changed);
}

// A copy goes with its run: nothing waits for the disk.
const DiskSync& DiskOf(const SimFolders& folders) {
  return folders.copiedFrom.empty() ? kDiskSync : kNoDiskSync;
}

// Nobody else has a private copy.
std::optional<BaseLock> LockOf(const SimFolders& folders) {
  if (!folders.copiedFrom.empty()) return std::nullopt;
  return std::optional<BaseLock>(
      std::in_place, folders.station,
      folders.asProgram ? BaseLock::Kind::kProgram : BaseLock::Kind::kGuest);
}
}  // namespace

SimStation::SimStation(const SimFolders& folders, const LocalDateTime& begin,
                       std::unique_ptr<SoundOpener> soundOpener)
    : loop(begin),
      baseLock(LockOf(folders)),
      stationFolder(folders.station, DiskOf(folders)),
      machineFolder(folders.machine, DiskOf(folders)),
      localValues(machineFolder),
      soundFiles(MakeSoundFiles(folders, stationFolder, machineFolder)),
      opener(std::move(soundOpener)),
      lengths(*opener, *soundFiles),
      sound(*opener),
      prelisten(loop, loop, *opener),
      recorder(loop, loop),
      preview(*opener),
      soundDevices(loop),
      levelTool(std::make_unique<SoundFileOpener>()),
      system(loop),
      station(Platform{.clock = loop,
                       .loop = loop,
                       .sound = sound,
                       .stationFolder = stationFolder,
                       .machineFolder = machineFolder,
                       .soundFiles = *soundFiles,
                       .lengths = lengths,
                       .localValues = localValues,
                       .clipboard = clipboard,
                       .messages = messages,
                       .keyboard = keyboard,
                       .system = system,
                       .serial = automaton,
                       .joystick = joystick,
                       .baseUse = baseLock ? &*baseLock : nullptr,
                       .prelisten = &prelisten,
                       .recorder = &recorder,
                       .preview = &preview,
                       .levelTool = &levelTool,
                       .roundTrip = &roundTrip,
                       .soundDevices = &soundDevices}),
      desk(station),
      stationPath_(folders.copiedFrom.empty() ? stationFolder.Path() : folders.copiedFrom) {
  loop.SetSound(&sound);
  loop.SetPreview(&preview.Sound());
  prelisten.told = [this](const char* state, const std::string& file, int device) {
    station.events.Prelisten(state, file, device);
  };
  clipboard.changed = [this](const std::string& text) { station.events.Clipboard(text); };
  messages.shown = [this](const std::string& title, const std::string& text, Buttons buttons,
                          Answer answer) {
    station.events.Message(title, text, ButtonsWord(buttons), AnswerWord(answer));
  };
  system.ordered = [this](const char* action, const std::string& value) {
    station.events.System(action, value);
  };
}

void SimStation::DropFile(const std::string& name, std::string_view bytes) {
  stationFolder.Write(name, bytes);
}

void SimStation::RemoveFile(const std::string& name) {
  stationFolder.Remove(name);
  soundFiles->Remove(stationPath_ + name);
}

}  // namespace zemo
