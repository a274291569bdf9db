#include "engine/ScreenSaver.h"

#include <cmath>

#include "engine/OperatorControls.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

void OpenScreenSaver(Station& station) {
  if (!station.engine.HotKeysArmed || station.saver.open) return;
  station.saver.TextVeille = Trim(station.base.CnfText(Cnf::kTextVeille));
  station.saver.open = true;
}

void ServeScreenSaver(Station& station) {
  const int64_t minutes = station.base.CnfInt(Cnf::kVeille);
  const double idleSec = station.Timer() - station.engine.LastActivityTimer;
  if (minutes > 0 && std::floor(idleSec) > static_cast<double>(minutes * 60))
    OpenScreenSaver(station);
}

std::string SaverText(const Station& station) {
  const std::string& text = station.saver.TextVeille;
  return text.empty() ? station.notices.titleOnAir : text;
}

void CloseScreenSaver(Station& station) {
  OnAir::RecordActivity(station);
  station.saver.open = false;
}

}  // namespace zemo
