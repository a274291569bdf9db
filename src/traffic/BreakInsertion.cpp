#include "traffic/BreakInsertion.h"

#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

#include "platform/SoundLengths.h"
#include "settings/SideFileIo.h"
#include "station/PlanTimes.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "traffic/SpotTitle.h"
#include "traffic/TitleAnnouncement.h"

namespace zemo {

namespace {

// A row of the grid as it stood when its break fired: a composition can run inside a yield.
struct GridBreak {
  struct Part {
    std::string advertiser;
    std::string file;  // stored path
  };
  std::string moment, type;
  std::vector<Part> parts;  // in the order of passage
};

GridBreak ReadBreak(const DayGrid& grid, int row) {
  GridBreak found{grid.Cell(row, GridCol::kMoment), grid.Cell(row, GridCol::kType), {}};
  for (int column = GridCol::kFirstElement; column <= GridCol::kLastElement; ++column)
    if (!grid.Cell(row, column).empty())
      found.parts.push_back(
          {grid.Cell(row, column), grid.Cell(row, column + GridCol::kFileOffset)});
  return found;
}

// What distinguishes the blocks of the inserters.
struct BlockStyle {
  int32_t code;  // kSpot or kNews
  bool jingles = false;
  bool titles = false;      // the music titles tied to spots
  bool exitPoints = false;  // column 9, for the fitting's reckoning
};

OnAirElement BlockRow(Station& station, std::string text, const char* kind, int32_t code,
                      const std::string& file) {
  OnAirElement element;
  element.title = std::move(text);
  element.genre = kind;
  element.code = code;
  element.file = file;
  const int32_t lengthMs = station.platform.lengths.LengthMs(file);
  element.lengthMs = lengthMs;
  return element;
}

// Puts a jingle around the break; without a file in the settings there is none. Rows added.
int PutJingle(Station& station, Cnf::Field setting, const char* text, int position,
              const BlockStyle& style) {
  const std::string file = station.base.CnfText(setting);
  if (Trim(file).empty()) return 0;
  OnAirElement element = BlockRow(station, text, "Jingle", Element::kJingle, file);
  if (style.exitPoints) element.exitMs = station.base.CnfInt(Cnf::kPmixJingles);
  station.PL.Insert(position, std::move(element));
  return 1;
}

int PutElement(Station& station, const GridBreak::Part& part, int position,
               const BlockStyle& style) {
  // The title first: what is put in last at a place stands first there.
  const int titles = style.titles && InsertTitleOfSpot(station, part.file, position) ? 1 : 0;
  const char* kind = style.code == Element::kSpot ? "Pub" : "Rubrique";
  OnAirElement element = BlockRow(station, part.advertiser, kind, style.code, part.file);
  if (style.exitPoints) element.exitMs = station.base.CnfInt(Cnf::kPmixPubs);
  station.PL.Insert(position, std::move(element));
  station.platform.loop.Yield();
  station.base.CheckCnf();
  return titles + 1;
}

// Builds the block at one place, from its end to its begin. Rows added.
int InsertBlock(Station& station, const GridBreak& wanted, int position, const BlockStyle& style) {
  int rows = 0;
  if (style.jingles)
    rows += PutJingle(station, Cnf::kJingleApresPubs, "Jingle après Pubs", position, style);
  for (auto part = wanted.parts.rbegin(); part != wanted.parts.rend(); ++part)
    rows += PutElement(station, *part, position, style);
  if (style.jingles)
    rows += PutJingle(station, Cnf::kJingleAvantPubs, "Jingle avant Pubs", position, style);
  return rows;
}

// A pip or a jingle at the head of the list stays there.
int PositionAtHead(const Station& station) {
  if (station.PL.Empty()) return 1;
  const int32_t code = station.PL.Row(1).code;
  return code == Element::kHourPip || code == Element::kJingle ? 2 : 1;
}

// The break is in the list whatever becomes of its announcement.
int Announce(Station& station, int position, const char* routine) {
  try {
    if (station.base.CnfInt(Cnf::kJingleExtraitYN) != 1) return 0;
    return AnnounceComingTitles(station, position);
  } catch (const std::exception&) {
    LogCurrentException(station, routine);
    return 0;
  }
}

void InsertAtHead(Station& station, int gridRow, const char* routine, const BlockStyle& style,
                  Cnf::Field priority) {
  const GridBreak wanted = ReadBreak(station.GPubJour, gridRow);
  const int position = PositionAtHead(station);
  int rows = InsertBlock(station, wanted, position, style);
  if (style.jingles) rows += Announce(station, position, routine);
  station.events.Break(routine, wanted.moment, wanted.type, position, rows);
  if (station.base.CnfInt(priority) == 1) station.engine.NextRequested = true;
  station.engine.LastJingleTimer = station.Timer();  // no automatic jingle follows at once
}

}  // namespace

void InsertSpotBreak(Station& station, int gridRow) {
  constexpr const char* kRoutine = "AjoutPubPlaylist";
  const MainTimerHold hold(station);
  try {
    InsertAtHead(station, gridRow, kRoutine,
                 {.code = Element::kSpot, .jingles = true, .titles = true}, Cnf::kPrioritePubs);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
  RefreshPlanTimes(station);
}

void InsertNewsBreak(Station& station, int gridRow) {
  constexpr const char* kRoutine = "AjoutRubriquePlaylist";
  const MainTimerHold hold(station);
  try {
    InsertAtHead(station, gridRow, kRoutine, {.code = Element::kNews, .titles = true},
                 Cnf::kPrioriteRubriques);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
  RefreshPlanTimes(station);
}

void InsertBreakAtRow(Station& station, int gridRow, int selectedRow) {
  constexpr const char* kRoutine = "InsertPubPlaylist";
  try {
    const GridBreak wanted = ReadBreak(station.GPubJour, gridRow);
    const bool selected = selectedRow >= 1 && selectedRow <= station.PL.Count();
    const int position = selected ? selectedRow : 1;
    const int rows =
        InsertBlock(station, wanted, position, {.code = Element::kSpot, .jingles = true});
    station.events.Break(kRoutine, wanted.moment, wanted.type, position, rows);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
  RefreshPlanTimes(station);
}

void InsertBreakForFitting(Station& station, int gridRow, int position, const std::string& word) {
  try {
    const bool spots = word == "PUBS";
    InsertBlock(
        station, ReadBreak(station.GPubJour, gridRow), position,
        {.code = spots ? Element::kSpot : Element::kNews, .jingles = spots, .exitPoints = true});
    station.engine.LastJingleTimer = station.Timer();
  } catch (const std::exception&) {
    LogCurrentException(station, "AjoutPubRubFinHeure");
  }
}

void ComputeBreakAirTime(Station& station, double& seconds, int gridRow) {
  StationBase& base = station.base;
  try {
    for (const Cnf::Field setting : {Cnf::kJingleApresPubs, Cnf::kJingleAvantPubs}) {
      const std::string file = base.CnfText(setting);
      if (Trim(file).empty()) continue;
      seconds += station.platform.lengths.LengthMs(file) / 1000.0 -
                 static_cast<double>(base.CnfInt(Cnf::kPmixJingles)) / 1000;
    }
    seconds = std::nearbyint(seconds);
    const auto parts = static_cast<double>(ReadBreak(station.GPubJour, gridRow).parts.size());
    seconds -= parts * static_cast<double>(base.CnfInt(Cnf::kPmixPubs)) / 1000;
  } catch (const std::exception&) {
    LogCurrentException(station, "CalculJinglePubs");
  }
}

void TellBreakElement(Station& station, const OnAirElement& element) {
  if (station.engine.ReportsDisabled) return;
  try {
    WriteSideFile(station.platform.stationFolder, station.files.ArtisteTitre,
                  JoinLines({OneLine(element.title)}));
  } catch (const std::exception&) {
    LogCurrentException(station, "FindInfoPubRub");
  }
}

}  // namespace zemo
