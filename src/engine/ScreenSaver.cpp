#include "engine/ScreenSaver.h"

#include <cmath>

#include "engine/OperatorControls.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

void DeclencheVeille(Station& station) {
  MainScreen& screen = station.screen;
  if (!station.engine.HotKeysArmed || screen.SaverVisible) return;
  screen.TextVeille = Trim(station.base.CnfText(Cnf::kTextVeille));
  screen.SaverVisible = true;
}

void ServeScreenSaver(Station& station) {
  const int64_t minutes = station.base.CnfInt(Cnf::kVeille);
  const double idleSec = station.Timer() - station.engine.LastActivityTimer;
  if (minutes > 0 && std::floor(idleSec) > static_cast<double>(minutes * 60))
    DeclencheVeille(station);
}

std::string SaverText(const Station& station) {
  const MainScreen& screen = station.screen;
  return screen.TextVeille.empty() ? screen.LblArtiste.text : screen.TextVeille;
}

void CloseVeille(Station& station) {
  RecordActivity(station);
  station.screen.SaverVisible = false;
}

}  // namespace zemo
