#include "engine/DayGridControls.h"

#include <exception>

#include "engine/OperatorControls.h"
#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "station/Station.h"
#include "traffic/BreakInsertion.h"
#include "traffic/DayGridComposition.h"

namespace zemo {

namespace {

constexpr const char* kPurgeIsOn =
    "Vous devez désactiver l'option suppression des pubs\r\n"
    "en fin de campagne avant d'éffectuer cette opération";
constexpr const char* kSetTheDateBack = "Pensez à remettre la date du jour après cette opération";
constexpr const char* kSetTheDateBackPortuguese =
    "Não esquecer de actualizar a data depois da pesquisa";
constexpr int64_t kPortuguese = 2;

bool HasRow(const Station& station, int gridRow) {
  return gridRow >= 1 && gridRow < station.GPubJour.RowCount();
}

void ShowListAgain(GridFrame& frame) {
  frame.forInsertion = false;
  frame.open = false;
}

}  // namespace

void OnAir::GPubJour_Click(Station& station, int gridRow) {
  RecordActivity(station);
  if (!HasRow(station, gridRow)) return;
  station.gridFrame.chosenMoment = station.GPubJour.Cell(gridRow, GridCol::kMoment);
  station.gridFrame.chosenIsSpots = station.GPubJour.IsSpots(gridRow);
}

std::string OnAir::FileOfGridCell(const Station& station, int gridRow, int column) {
  if (column < GridCol::kFirstElement || column > GridCol::kLastElement) return {};
  std::string file = station.GPubJour.Cell(gridRow, column + GridCol::kFileOffset);
  return !file.empty() && station.platform.soundFiles.Exists(file) ? file : std::string();
}

void OnAir::OpenGridForInsertion(Station& station) {
  RecordActivity(station);
  station.gridFrame.forInsertion = true;
  station.gridFrame.open = true;
}

bool OnAir::BtnCopyPub_Click(Station& station, int gridRow, int selectedRow) {
  RecordActivity(station);
  const bool there = HasRow(station, gridRow);
  const ListOrder order(station);
  if (!station.gridFrame.forInsertion) {
    if (there) InsertSpotBreak(station, gridRow);
    return there;
  }
  if (there) InsertBreakAtRow(station, gridRow, selectedRow);
  ShowListAgain(station.gridFrame);
  return there;
}

bool OnAir::BtnPubJourX_Click(Station& station) {
  RecordActivity(station);
  try {
    MessageBoxes& messages = station.platform.messages;
    if (station.base.CnfInt(Cnf::kSuppressionPub) == 1) {
      messages.Show("Alerte", kPurgeIsOn, Buttons::kOk);
      return false;
    }
    const bool portuguese = station.base.CnfInt(Cnf::kLangue) == kPortuguese;
    messages.Show("Alerte", portuguese ? kSetTheDateBackPortuguese : kSetTheDateBack, Buttons::kOk);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnPubJourX");
    return false;
  }
}

void OnAir::PickPreviewDay(Station& station, const LocalDateTime& day) {
  RecordActivity(station);
  try {
    LocalDateTime moment = station.Now();
    moment.year = day.year;
    moment.month = day.month;
    moment.day = day.day;
    BeginPreview(station);
    station.platform.system.SetDate(moment);
    ComposeDayGrid(station);
  } catch (const std::exception&) {
    LogCurrentException(station, "BtnPubJourX");
  }
}

}  // namespace zemo
