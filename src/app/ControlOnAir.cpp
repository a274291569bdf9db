#include "app/ControlOnAir.h"

#include <filesystem>
#include <utility>

#include "app/RunFolders.h"
#include "platform/real/control/ControlSocket.h"
#include "station/Station.h"

namespace zemo {

ControlOnAir::ControlOnAir(Station& station, const RunFolders& folders,
                           std::function<SoundHealth()> output)
    : words_(space_), server_(station, {.output = std::move(output), .space = space_}) {
  std::error_code error;
  space_.station = std::filesystem::absolute(folders.station, error).string();
  space_.machine = std::filesystem::absolute(folders.machine, error).string();
  try {
    server_.SetLine(std::make_unique<ControlSocket>(folders.machine, words_, server_.Arrival()));
  } catch (const std::exception& fault) {
    LogError(station, "Control", kErrFile, fault.what());
  }
}

}  // namespace zemo
