// The lock of the settings: "ZemoPasseWord.Ini" with its state and the password in plain text. It
// is written for the machine; a machine without one reads the station's.
#include <exception>

#include "platform/Folder.h"
#include "settings/LockDialogue.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"

namespace zemo {

namespace {

void Save(Station& station, const std::string& password) {
  EngineLists& lists = station.lists;
  lists.Password = password;
  lists.Locked = !password.empty();
  station.platform.machineFolder.WriteSecret(
      station.files.ZemoPasseWord,
      EncodeSideFile(BoolField(lists.Locked) + "," + QuotedField(password) + "\r\n"));
}

// The machine's own, else one for all machines of the station.
std::optional<std::string> ReadLock(Station& station) {
  const std::string& name = station.files.ZemoPasseWord;
  auto text = ReadSideFile(station.platform.machineFolder, name);
  return text ? text : ReadSideFile(station.platform.stationFolder, name);
}

void Load(Station& station, std::string& password) {
  EngineLists& lists = station.lists;
  if (const auto text = ReadLock(station)) {
    const std::vector<SideField> fields = ReadFields(*text);
    lists.Locked = !fields.empty() && fields[0].AsBool(false);
    lists.Password = fields.size() > 1 ? fields[1].text : std::string();
  }
  password = lists.Password;
}

}  // namespace

void LoadSavePassword(Station& station, std::string_view action, std::string& password) {
  try {
    if (IsSave(action)) Save(station, password);
    if (IsLoad(action)) Load(station, password);
  } catch (const std::exception&) {
    LogCurrentException(station, "LSPasseWord");
  }
  Lock::ShowLock(station);
}

bool LockOpensWith(const Station& station, std::string_view typed) {
  return !station.lists.Locked || typed == station.lists.Password;
}

}  // namespace zemo
