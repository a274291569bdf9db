// The two small files through which a neighbouring program is told what happens on air. Both are
// written in place, since the neighbour may hold them open.
#include <exception>

#include "platform/Folder.h"
#include "settings/SideFiles.h"
#include "station/Station.h"

namespace zemo {

void WriteZemoOnOff(Station& station, char state) {
  if (station.engine.ReportsDisabled) return;
  try {
    station.platform.stationFolder.PutBytes(station.files.ZemoOnOff, 0,
                                            std::string_view(&state, 1));
  } catch (const std::exception&) {
    LogCurrentException(station, "WriteZemoOnOff");
  }
}

void WriteCheckTopage(Station& station) {
  constexpr size_t kRecordBytes = 16;
  std::string record = "Topage";
  record.resize(kRecordBytes, ' ');
  try {
    station.platform.stationFolder.PutBytes(station.files.CheckTopage, 0, record);
  } catch (const std::exception&) {
    LogCurrentException(station, "WriteCheckTopage");
  }
}

}  // namespace zemo
