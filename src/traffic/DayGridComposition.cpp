#include "traffic/DayGridComposition.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <utility>

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
      : station(given), now(given.Now()), today(DateKey(now)), campaigns(OpenCampaigns(given)) {
    grid.SetCell(0, GridCol::kDateStamp, "");  // the heading's row, before those of the moments
  }

  // A snapshot, since editors move the table's cursor while the walks yield.
  static std::unique_ptr<Recordset> OpenCampaigns(Station& station) {
    return station.base.Db().OpenRecordset("SELECT * FROM GrillePub ORDER BY PRIORITY, CODE");
  }

  Station& station;
  DayGrid grid;  // made aside: GPubJour stands until it is whole
  LocalDateTime now;
  std::string today;                          // "yyyymmdd"
  std::unique_ptr<Recordset> campaigns;       // in the order of passage
  CampaignForm form;                          // the campaign loaded last
  std::map<std::string, bool> moments;        // "HH:MM", and whether its first campaign is a spot
  std::unordered_map<std::string, int> rows;  // of the grid, by moment
  std::set<std::string> told;                 // campaigns whose damage was logged, by CODE
  int32_t spots = 0;
  int32_t news = 0;
};

// A campaign that lost its grid is told; what its file still has airs.
void TellDamage(Composition& c) {
  if (!c.form.damage.empty() && c.told.insert(c.form.LblCode).second)
    LogError(c.station, kRoutine, kErrFile, DamageOf(c.form));
}

// Hands each moment of today that a campaign has a cross at to `take`, campaign by campaign; the
// campaign stands in c.form.
template <typename Take>
void WalkCrosses(Composition& c, Take take) {
  for (c.campaigns->MoveFirst(); !c.campaigns->Eof(); c.campaigns->MoveNext()) {
    c.station.platform.loop.Yield();
    if (!WorksOn(c.campaigns->Text("CAMPAGNEDEPART"), c.campaigns->Text("CAMPAGNEFIN"), c.today))
      continue;
    LoadCampaignOrFail(c.station, *c.campaigns, c.form);
    const int column = ColumnOfDay(c.form, c.now);
    if (column == 0) continue;
    TellDamage(c);
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
  DayGrid& grid = c.grid;
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
  DayGrid& grid = c.grid;
  const int row = grid.RowCount();
  c.rows.emplace(moment, row);
  grid.SetCell(row, GridCol::kMoment, moment);
  grid.SetCell(row, GridCol::kType, c.form.FichierAudio);
  ++c.spots;
}

void PlaceElement(Composition& c, const std::string& moment) {
  DayGrid& grid = c.grid;
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
int64_t BreakLengthMs(const Composition& c, int row) {
  int64_t totalMs = 0;
  for (int column = GridCol::kFirstElement + GridCol::kFileOffset;; ++column) {
    const std::string& file = c.grid.Cell(row, column);
    if (file.empty()) return totalMs;
    totalMs += c.station.platform.lengths.LengthMs(file);
  }
}

void WriteLengths(Composition& c) {
  DayGrid& grid = c.grid;
  for (int row = 1; row < grid.RowCount(); ++row) {
    grid.SetCell(row, GridCol::kLength, FormatDuration(BreakLengthMs(c, row)));
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
  DayGrid& grid = c.grid;
  const std::string cells[] = {words.moment,
                               words.length,
                               words.type,
                               words.gridOf + HeadingDate(c.now, langue),
                               std::to_string(c.spots) + words.spots,
                               std::to_string(c.news) + words.news};
  int column = 0;
  for (const std::string& cell : cells) grid.SetCell(0, column++, cell);
}

// The grid of another day goes before anything can fail: its breaks must not air today.
void MarkComposing(DayGrid& grid, const std::string& today) {
  if (grid.Day() != today) grid.Clear();
  grid.SetCell(0, GridCol::kDateStamp, kComposing);
}

// Whoever changed campaigns meanwhile has emptied the stamp: it stays so, and the grid is composed
// again.
void PutOnAir(Composition& c) {
  DayGrid& grid = c.station.GPubJour;
  const bool changed = grid.Cell(0, GridCol::kDateStamp).empty();
  c.grid.SetCell(0, GridCol::kDateStamp, changed ? std::string() : ShortDateText(c.now));
  c.grid.SetDay(c.today);
  grid = std::move(c.grid);
}

// Goes on at the same pace whatever the date is set to: a jump of it is one of the date.
double ClockOffsetDays(const Station& station) {
  constexpr double kDayMs = 86400000;
  return DateSerial(station.Now()) -
         static_cast<double>(station.platform.clock.MonotonicMs()) / kDayMs;
}

bool DateIsFalse(Station& station) {
  std::optional<double>& before = station.engine.clockBeforePreview;
  if (before && std::fabs(ClockOffsetDays(station) - *before) < 0.5) before.reset();
  return before.has_value();
}

void Compose(Station& station) {
  station.base.CheckCnf();
  const bool purges = !DateIsFalse(station);
  if (purges && station.base.CnfInt(Cnf::kSuppressionPub) == 1) PurgeEndedCampaigns(station);
  station.base.RequireTable("GrillePub");
  MarkComposing(station.GPubJour, DateKey(station.Now()));
  Composition c(station);
  CollectMoments(c);
  AppendBreaks(c);
  WalkCrosses(c, [&](const std::string& moment) { PlaceElement(c, moment); });
  WriteLengths(c);
  station.base.CheckCnf();
  WriteHeading(c);
  station.base.RequireTable("GrillePub");  // it may have gone in a yield
  PutOnAir(c);
  station.events.Grid(station.GPubJour.RowCount() - 1, c.spots, c.news);
  if (purges) PurgeReport(station, station.base.CnfInt(Cnf::kPurgeRapport));
}

// False when the former grid stands.
bool ComposeOnce(Station& station) {
  const std::string former = station.GPubJour.Cell(0, GridCol::kDateStamp);
  try {
    Compose(station);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
    const bool today = former == ShortDateText(station.Now());
    station.GPubJour.SetCell(0, GridCol::kDateStamp, today ? std::string() : former);
    return false;
  }
}

// What is shown and known while a composition runs.
class Composing {
 public:
  explicit Composing(Station& station) : station_(station) {
    station_.engine.composing = true;
    station_.notices.hourglass = true;
    station_.notices.progress.text = "COMPOSITION DES PUBS EN COURS...";
    station_.notices.progress.visible = true;
  }
  ~Composing() {
    station_.engine.composing = false;
    station_.notices.hourglass = false;
    station_.notices.progress.text = "ZEMO RADIO PRO";
    station_.notices.progress.visible = false;
  }
  Composing(const Composing&) = delete;

 private:
  Station& station_;
};

}  // namespace

bool ComposeDayGrid(Station& station) {
  EngineState& engine = station.engine;
  engine.composeAgain = engine.composing;
  if (engine.composing) return false;
  const Composing composing(station);
  bool whole = false;
  do {
    engine.composeAgain = false;
    whole = ComposeOnce(station);
  } while (engine.composeAgain);
  return whole;
}

void BeginPreview(Station& station) {
  if (!DateIsFalse(station)) station.engine.clockBeforePreview = ClockOffsetDays(station);
}

bool ComposeTodaysGrid(Station& station) {
  return ComposeDayGrid(station);
}

}  // namespace zemo
