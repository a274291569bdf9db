#include "engine/OverlayButton.h"

#include <exception>

#include "engine/OperatorControls.h"
#include "station/BrowseList.h"
#include "station/Overlay.h"
#include "station/Station.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
// Column of the file in each list's rows; -1 for rows that are no files.
int FileColumn(BrowseList list) {
  switch (list) {
    case BrowseList::kMusic:
      return 5;
    case BrowseList::kJingles:
    case BrowseList::kSpots:
      return 3;
    case BrowseList::kOthers:
      return 2;
    case BrowseList::kToday:
      return -1;
  }
  return -1;
}
}  // namespace

std::string OnAir::FileOfBrowseRow(const BrowseRows& browsed, int row) {
  const int column = FileColumn(browsed.list);
  if (column < 0 || row < 0 || row >= static_cast<int>(browsed.rows.size())) return {};
  return browsed.rows.Cell(static_cast<size_t>(row), column);
}

void OnAir::PlayOverAir(Station& station, const std::string& storedPath) {
  SoundChain& sound = station.Sound();
  const auto volume = static_cast<int>(station.base.CnfInt(Cnf::kVolumeMusiqueSurImpression));
  sound.SetChannelDone(kOverlaySlot, true);
  sound.SetVolume(kOverlaySlot, volume);
  LoadOverlay(station, storedPath);
  StartOverlay(station, "key");
}

bool OnAir::PlayShortcut(Station& station, int key) {
  for (const EngineLists::Shortcut& shortcut : station.lists.Touches) {
    if (static_cast<int>(Val(shortcut.Touche)) != key) continue;
    PlayOverAir(station, shortcut.FileName);
    station.engine.OverlayKey = shortcut.Touche;
    return true;
  }
  return false;
}

void OnAir::BtnSurImpression_Click(Station& station, int browseRow) {
  RecordActivity(station);
  try {
    const std::string file = FileOfBrowseRow(station.browse.ListRech, browseRow);
    if (!file.empty()) PlayOverAir(station, file);
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnSurImpression");
  }
}

}  // namespace zemo
