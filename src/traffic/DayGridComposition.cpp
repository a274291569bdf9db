#include "traffic/DayGridComposition.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <unordered_map>

#include "platform/SoundLengths.h"
#include "reports/ReportPurge.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignGrid.h"
#include "traffic/CampaignPurge.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "MakeGrillePubGeneral";
constexpr size_t kMostMoments = 401;  // of a day
// Stands in the stamp's cell during a composition: whoever empties the cell meanwhile has changed
// the campaigns, and the grid is to be composed again.
constexpr const char* kComposing = "--/--/--";

// One composition on its way.
struct Composition {
  explicit Composition(Station& given)
      : station(given), now(given.Now()), today(DateKey(now)), campaigns(OpenCampaigns(given)) {}

  // A snapshot, since editors move the table's cursor while the walks yield.
  static std::unique_ptr<Recordset> OpenCampaigns(Station& station) {
    return station.base.Db().OpenRecordset("SELECT * FROM GrillePub ORDER BY PRIORITY, CODE");
  }

  Station& station;
  LocalDateTime now;
  std::string today;                          // "yyyymmdd"
  std::unique_ptr<Recordset> campaigns;       // in the order of passage
  CampaignForm form;                          // the campaign loaded last
  std::map<std::string, bool> moments;        // "HH:MM", and whether its first campaign is a spot
  std::unordered_map<std::string, int> rows;  // of the grid, by moment
  int32_t spots = 0;
  int32_t news = 0;
};

// Hands each moment of today that a campaign has a cross at to `take`, campaign by campaign; the
// campaign stands in c.form.
template <typename Take>
void WalkCrosses(Composition& c, Take take) {
  for (c.campaigns->MoveFirst(); !c.campaigns->Eof(); c.campaigns->MoveNext()) {
    c.station.platform.loop.Yield();
    if (!WorksOn(c.campaigns->Text("CAMPAGNEDEPART"), c.campaigns->Text("CAMPAGNEFIN"), c.today))
      continue;
    LoadCampaign(c.station, *c.campaigns, c.form, RowYields::kNone);
    const int column = ColumnOfDay(c.form, c.now);
    if (column == 0) continue;
    const TextGrid& grid = c.form.GPub;
    for (int row = kFirstMomentRow; row < grid.RowCount(); ++row)
      if (grid.Cell(row, column) == kCross) take(grid.Cell(row, 0));
  }
}

// --- pass 1: the moments and the type of each break, which its first campaign decides ---

void CollectMoments(Composition& c) {
  WalkCrosses(c, [&](const std::string& moment) {
    if (!c.moments.emplace(moment, c.form.OptPub[0]).second) return;
    if (c.moments.size() > kMostMoments)
      throw std::length_error("a day has more than " + std::to_string(kMostMoments) + " moments");
  });
}

void AppendBreaks(Composition& c) {
  DayGrid& grid = c.station.GPubJour;
  for (const auto& [moment, spot] : c.moments) {
    const int row = grid.RowCount();
    c.rows.emplace(moment, row);
    grid.SetCell(row, GridCol::kMoment, moment);
    grid.SetCell(row, GridCol::kType, spot ? "Pubs" : "Rubriques");
  }
}

// --- pass 2: the elements ---

// The first empty cell. Behind the 47 elements of a full row there are three cells more, which
// nobody reads, and then those of the files.
int FreeColumn(const DayGrid& grid, int row) {
  for (int column = GridCol::kFirstElement; column < GridCol::kCount; ++column)
    if (grid.Cell(row, column).empty()) return column;
  return 0;
}

// A grid file that changed between the two passes has crosses at moments without a row.
void AppendUnexpected(Composition& c, const std::string& moment) {
  DayGrid& grid = c.station.GPubJour;
  const int row = grid.RowCount();
  c.rows.emplace(moment, row);
  grid.SetCell(row, GridCol::kMoment, moment);
  grid.SetCell(row, GridCol::kType, c.form.FichierAudio);
  ++c.spots;
}

void PlaceElement(Composition& c, const std::string& moment) {
  DayGrid& grid = c.station.GPubJour;
  const auto found = c.rows.find(moment);
  if (found == c.rows.end()) return AppendUnexpected(c, moment);
  const int column = FreeColumn(grid, found->second);
  if (column == 0) return;
  grid.SetCell(found->second, column, c.form.ChAnnonceur);
  if (column + GridCol::kFileOffset < GridCol::kCount)
    grid.SetCell(found->second, column + GridCol::kFileOffset, c.form.FichierAudio);
  ++(c.form.OptPub[0] ? c.spots : c.news);
}

// --- behind the passes ---

// The sum of a row's lengths, up to the first cell without a file.
int64_t BreakLengthMs(Station& station, int row) {
  int64_t totalMs = 0;
  for (int column = GridCol::kFirstElement + GridCol::kFileOffset;; ++column) {
    const std::string file = station.GPubJour.Cell(row, column);
    if (file.empty()) return totalMs;
    totalMs += station.platform.lengths.LengthMs(file);
  }
}

void WriteLengths(Composition& c) {
  DayGrid& grid = c.station.GPubJour;
  for (int row = 1; row < grid.RowCount(); ++row) {
    grid.SetCell(row, GridCol::kLength, FormatDuration(BreakLengthMs(c.station, row)));
    c.station.platform.loop.Yield();  // files of which the length is not known yet take their time
  }
}

struct HeadingWords {
  const char *moment, *length, *type, *gridOf, *spots, *news;
};
constexpr std::array<HeadingWords, 3> kHeadings = {
    {{"HEURE", "TEMPS", "PUB/RUB", "Grille du ", " Messages Pubs", " Rubriques"},
     {"HOUR", "TIME", "SPOT/NEWS", "Grid of the", " Spots", " News"},
     {"Hora", "Duração", "PUB/INT", "Tabela de ", " Total anúncios", " Intercalares"}}};
constexpr int64_t kSpanish = 3;

// The date in the running text of a heading: only English days begin with a capital.
std::string HeadingDate(const LocalDateTime& now, int64_t langue) {
  std::string date = LongDateText(now, static_cast<int>(langue));
  if (langue != 1 && !date.empty() && date[0] >= 'A' && date[0] <= 'Z')
    date[0] = static_cast<char>(date[0] - 'A' + 'a');
  return date;
}

void WriteHeading(Composition& c) {
  const int64_t langue = c.station.base.CnfInt(Cnf::kLangue);
  if (langue == kSpanish) return;  // it has no heading
  const HeadingWords& words =
      kHeadings[langue == 1 || langue == 2 ? static_cast<size_t>(langue) : 0];
  DayGrid& grid = c.station.GPubJour;
  const std::string cells[] = {words.moment,
                               words.length,
                               words.type,
                               words.gridOf + HeadingDate(c.now, langue),
                               std::to_string(c.spots) + words.spots,
                               std::to_string(c.news) + words.news};
  int column = 0;
  for (const std::string& cell : cells) grid.SetCell(0, column++, cell);
}

void Compose(Station& station) {
  station.base.CheckCnf();
  if (station.base.CnfInt(Cnf::kSuppressionPub) == 1) SuppresionPub(station);
  station.base.Tables().GrillePub->SetIndex("PRIORITY");
  DayGrid& grid = station.GPubJour;
  grid.Clear();
  grid.SetCell(0, GridCol::kDateStamp, kComposing);
  Composition c(station);
  CollectMoments(c);
  AppendBreaks(c);
  WalkCrosses(c, [&](const std::string& moment) { PlaceElement(c, moment); });
  WriteLengths(c);
  station.base.CheckCnf();
  WriteHeading(c);
  if (!grid.Cell(0, GridCol::kDateStamp).empty())
    grid.SetCell(0, GridCol::kDateStamp, ShortDateText(c.now));
  station.base.Tables().GrillePub->SetIndex("PRIORITY");
  station.events.Grid(grid.RowCount() - 1, c.spots, c.news);
  PurgeRapport(station, station.base.CnfInt(Cnf::kPurgeRapport));
}

void ComposeOnce(Station& station) {
  const std::string former = station.GPubJour.Cell(0, GridCol::kDateStamp);
  try {
    Compose(station);
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
    const bool today = former == ShortDateText(station.Now());
    station.GPubJour.SetCell(0, GridCol::kDateStamp, today ? std::string() : former);
  }
}

// What is shown and known while a composition runs.
class Composing {
 public:
  explicit Composing(Station& station) : station_(station) {
    station_.engine.composing = true;
    station_.screen.hourglass = true;
    station_.screen.LblProgression = "COMPOSITION DES PUBS EN COURS...";
    station_.screen.LblProgression.visible = true;
  }
  ~Composing() {
    station_.engine.composing = false;
    station_.screen.hourglass = false;
    station_.screen.LblProgression = "ZEMO RADIO PRO";
    station_.screen.LblProgression.visible = false;
  }
  Composing(const Composing&) = delete;

 private:
  Station& station_;
};

}  // namespace

void MakeGrillePubGeneral(Station& station) {
  EngineState& engine = station.engine;
  engine.composeAgain = engine.composing;
  if (engine.composing) return;
  const Composing composing(station);
  do {
    engine.composeAgain = false;
    ComposeOnce(station);
  } while (engine.composeAgain);
}

void MakePubduJour(Station& station) {
  MakeGrillePubGeneral(station);
}

}  // namespace zemo
