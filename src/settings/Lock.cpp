// The lock of the settings: "ZemoPasseWord.Ini" with its state and the password in plain text.
#include <exception>

#include "platform/Folder.h"
#include "settings/SideFileIo.h"
#include "settings/SideFiles.h"
#include "station/SideFileText.h"
#include "station/Station.h"

namespace zemo {

void LSPasseWord(Station& station, std::string_view action, std::string& password) {
  Folder& folder = station.platform.machineFolder;
  EngineLists& lists = station.lists;
  try {
    if (IsSave(action)) {
      lists.Password = password;
      lists.Locked = !password.empty();
      WriteSideFile(folder, station.files.ZemoPasseWord,
                    BoolField(lists.Locked) + "," + QuotedField(password) + "\r\n");
    }
    if (!IsLoad(action)) return;
    if (const auto text = ReadSideFile(folder, station.files.ZemoPasseWord)) {
      const std::vector<SideField> fields = ReadFields(*text);
      lists.Locked = !fields.empty() && fields[0].AsBool(false);
      lists.Password = fields.size() > 1 ? fields[1].text : std::string();
    }
    password = lists.Password;
  } catch (const std::exception&) {
    LogCurrentException(station, "LSPasseWord");
  }
}

bool LockOpensWith(const Station& station, std::string_view typed) {
  return !station.lists.Locked || typed == station.lists.Password;
}

}  // namespace zemo
