// The emergency folder of the machine: whether it can do what it is there for.
#include <filesystem>

#include "app/check/CheckParts.h"
#include "app/check/SoundFileCheck.h"
#include "engine/EmergencyFolder.h"

namespace zemo {

void CheckEmergencyFolder(Folder& machine, Findings& findings) {
  const Folder& folder = machine.Subfolder(kEmergencyFolder);
  std::error_code failed;
  if (!std::filesystem::exists(machine.PathOf(kEmergencyFolder), failed)) return;
  bool playable = false;
  try {
    for (const std::string& name : EmergencyFiles(machine)) {
      const SoundFileLook look = LookAtSoundFile(folder.PathOf(name));
      playable = playable || look.lengthMs > 0;
      for (const SoundFault& fault : look.faults)
        findings.Warning("emergency", std::string(kEmergencyFolder) + "/" + name, fault.why);
    }
  } catch (const FileError& error) {
    findings.Error("emergency", kEmergencyFolder, error.what());
    return;
  }
  if (!playable)
    findings.Error("emergency", kEmergencyFolder, "the folder holds no sound file that can play");
}

}  // namespace zemo
