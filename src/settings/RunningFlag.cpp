// The flag by which a machine that lost its power on air goes on air again, and the choice of audio
// outputs: what the machine remembers for itself.
#include <exception>
#include <optional>

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"

namespace zemo {

namespace {

// False when the file holds something else than two numbers.
bool ReadAudioChoice(Station& station, std::string_view text) {
  const std::vector<SideField> fields = ReadFields(text);
  if (fields.size() < 2) return false;
  const std::optional<int32_t> air = fields[0].Number(), prelisten = fields[1].Number();
  if (!air || !prelisten) return false;
  station.lists.AudioOutID = *air;
  station.lists.AudioOutPFLID = *prelisten;
  return true;
}

}  // namespace

bool LoadSavePlay(Station& station, std::string_view action) {
  Folder& folder = station.platform.machineFolder;
  try {
    if (IsSave(action))
      WriteSideFileDurably(folder, station.files.ZemoPlay,
                           BoolField(station.engine.IsRunning) + "\r\n");
    if (!IsLoad(action)) return false;
    const auto text = ReadSideFile(folder, station.files.ZemoPlay);
    const std::vector<SideField> fields = ReadFields(text.value_or(std::string()));
    return !fields.empty() && fields.front().AsBool(false);
  } catch (const std::exception&) {
    if (IsSave(action)) LogCurrentException(station, "LoadSavePlay");
    return false;  // what cannot be read leaves the machine idle
  }
}

void LoadSaveAudio(Station& station, std::string_view action) {
  Folder& folder = station.platform.machineFolder;
  try {
    if (IsSave(action))
      WriteSideFileDurably(folder, station.files.ZemoAudio,
                           std::to_string(station.lists.AudioOutID) + "," +
                               std::to_string(station.lists.AudioOutPFLID) + "\r\n");
    if (!IsLoad(action)) return;
    const auto text = ReadSideFile(folder, station.files.ZemoAudio);
    if (!text || ReadAudioChoice(station, *text)) return;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSaveAudio");
    if (!IsLoad(action)) return;
  }
  station.platform.messages.Show("Alerte", "Erreur de séléction de sortie audio", Buttons::kOk);
}

}  // namespace zemo
