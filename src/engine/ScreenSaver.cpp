#include "engine/ScreenSaver.h"

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

std::string SaverText(const Station& station) {
  const MainScreen& screen = station.screen;
  return screen.TextVeille.empty() ? screen.LblArtiste.text : screen.TextVeille;
}

void CloseVeille(Station& station) {
  RecordActivity(station);
  station.screen.SaverVisible = false;
}

}  // namespace zemo
