#include "traffic/CampaignGrid.h"

#include <algorithm>
#include <vector>

#include "platform/EventLoop.h"
#include "settings/SideFileIo.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "traffic/CampaignFiles.h"

namespace zemo {

namespace {

constexpr int kMostDays = 365;  // tried for the end date; one column more when it is not met
constexpr int kLastHour = 23, kLastMinute = 59;
constexpr std::string_view kDayLetters = "LMMJVSD";

// By Langue; none for any other.
struct GridWords {
  const char* month = "";
  const char* day = "";
  const char* days = "";
};
constexpr std::array<GridWords, 4> kGridWords = {{{"Mois", "Jour", " jours"},
                                                  {"Month", "Day", " days"},
                                                  {"Mês", "Dia", " dias"},
                                                  {"Mes", "Día", " días"}}};

GridWords WordsOf(int64_t langue) {
  if (langue < 0 || langue >= static_cast<int64_t>(kGridWords.size())) return {};
  return kGridWords[static_cast<size_t>(langue)];
}

std::string DayLetter(int weekday) {
  return std::string(1, kDayLetters[static_cast<size_t>(weekday - 1)]);
}

struct Date {
  int year = 0, month = 0, day = 0;

  bool Valid() const {
    return year >= 0 && year <= 9999 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
  }
  // Every fourth year is a leap year here: there is no century rule.
  int MonthLength() const {
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && year % 4 == 0 ? 29 : kDays[static_cast<size_t>(month - 1)];
  }
  void Next() {
    if (++day <= MonthLength()) return;
    day = 1;
    if (++month <= 12) return;
    month = 1;
    ++year;
  }
  std::string Text() const {
    return TwoDigits(day) + "/" + TwoDigits(month) + "/" + TwoDigits(year / 100) + TwoDigits(year);
  }
};

// First two, middle two and last four characters, whatever stands between them.
Date DateOf(const std::string& text) {
  if (text.size() < 10) return {};
  return {ValInt(text.substr(text.size() - 4)), ValInt(text.substr(3, 2)),
          ValInt(text.substr(0, 2))};
}

// The days from the start to the end, both included.
std::vector<Date> DaysOf(const CampaignForm& form) {
  std::vector<Date> days;
  Date date = DateOf(form.LblDepartPub);
  if (!date.Valid()) return days;
  --date.day;
  for (int n = 1; n <= kMostDays; ++n) {
    date.Next();
    days.push_back(date);
    if (date.Text() == form.LblFinPub) return days;
  }
  date.Next();
  days.push_back(date);
  return days;
}

// Digits alone become two; what else the operator wrote stays.
std::string MarkText(const std::string& mark) {
  const bool number = mark.find_first_not_of("0123456789") == std::string::npos;
  return number ? TwoDigits(ValInt(mark)) : mark;
}

void YieldForRow(Station& station, RowYields yields) {
  if (yields == RowYields::kEach) station.platform.loop.Yield();
}

// Fields of a base that did not keep their widths; empty for those of two characters.
std::string TooLarge(const CampaignForm& form) {
  constexpr int kMostHour = 99;
  constexpr size_t kMostMarkBytes = 8;
  for (const std::string& hour : {form.HDepPub, form.HFinPub})
    if (ValInt(hour) > kMostHour) return WrongMarkFault({hour, true});
  for (const std::string& mark : form.DecoupagePub)
    if (mark.size() > kMostMarkBytes) return WrongMarkFault({mark, false});
  return {};
}

// A row a mark and hour, marks in their order on the screen. The hours do not wrap: an end before
// the start leaves the first hour alone.
void AddMoments(const CampaignForm& form, TextGrid& grid, const std::function<void()>& afterRow) {
  if (!TooLarge(form).empty()) return;
  const int first = std::max(0, ValInt(form.HDepPub));
  const int last = std::max(first, ValInt(form.HFinPub));
  const auto width = static_cast<size_t>(GridColumns(grid));
  const auto marks = form.DecoupagePub;
  for (int hour = first; hour <= last; ++hour)
    for (const std::string& mark : marks) {
      if (Trim(mark).empty()) continue;
      TextGrid::Row row(width);
      row[0] = TwoDigits(hour) + ":" + MarkText(Trim(mark));
      grid.AddRow(std::move(row));
      afterRow();
    }
}

void AddHeadings(TextGrid& grid, size_t columns) {
  for (int row = 0; row < kFirstMomentRow; ++row) grid.AddRow(TextGrid::Row(columns));
}

// What a grid file holds, in one value a line.
struct GridLines {
  std::vector<bool> crosses;
  size_t odd = 0;  // number of the first line that is neither a cross nor nothing; 0: none is
};

GridLines ReadGridLines(std::string_view text) {
  GridLines lines;
  while (!text.empty()) {
    const std::string line = Trim(TakeLine(text));
    lines.crosses.push_back(line == kCross);
    if (line != kCross && !line.empty() && lines.odd == 0) lines.odd = lines.crosses.size();
  }
  return lines;
}

size_t CellCount(const TextGrid& grid) {
  const int rows = grid.RowCount() - kFirstMomentRow, days = GridColumns(grid) - kFirstDayColumn;
  return rows > 0 && days > 0 ? static_cast<size_t>(rows) * static_cast<size_t>(days) : 0;
}

std::string Misfit(const TextGrid& grid, const GridLines& lines) {
  const size_t cells = CellCount(grid);
  if (lines.crosses.size() != cells)
    return "the grid file has " + std::to_string(lines.crosses.size()) +
           " lines, the campaign's grid " + std::to_string(cells) + " cells";
  if (lines.odd != 0)
    return "line " + std::to_string(lines.odd) + " of the grid file is neither X nor empty";
  return {};
}

// Crosses are put into the grid as it stands after each yield: its shape may be another by then.
void PutCrosses(Station& station, CampaignForm& form, const std::vector<bool>& crosses,
                RowYields yields) {
  TextGrid& grid = form.GPub;
  size_t line = 0;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row) {
    for (int column = kFirstDayColumn; column < GridColumns(grid); ++column, ++line) {
      const bool cross = line < crosses.size() && crosses[line];
      if (cross || !grid.Cell(row, column).empty())
        grid.SetCell(row, column, cross ? std::string(kCross) : std::string());
    }
    YieldForRow(station, yields);
  }
}

// A missing file has no cross.
void ReadGridFile(Station& station, CampaignForm& form, const std::string& path, RowYields yields) {
  form.damage = TooLarge(form);
  const CampaignFile file(path);
  GridLines lines;
  if (form.damage.empty() && file.SizeBytes(station) > kMostGridFileBytes) {
    form.damage = "the grid file is larger than any grid: " + path;
  } else if (form.damage.empty()) {
    if (const auto text = file.Read(station)) {
      lines = ReadGridLines(*text);
      form.damage = Misfit(form.GPub, lines);
      if (!form.damage.empty()) form.damage += ": " + path;
    }
  }
  PutCrosses(station, form, lines.crosses, yields);
}

void BuildWeekly(CampaignForm& form, int64_t langue, const std::function<void()>& afterRow) {
  form.LblTotalJours = std::to_string(kWeekDays) + WordsOf(langue).days;
  TextGrid grid;
  AddHeadings(grid, kWeekDays + 1);
  for (int day = 1; day <= kWeekDays; ++day) grid.SetCell(2, day, DayLetter(day));
  AddMoments(form, grid, afterRow);
  form.GPub = std::move(grid);
  form.gridDays.clear();
}

void BuildDated(CampaignForm& form, int64_t langue, const std::function<void()>& afterRow) {
  const GridWords words = WordsOf(langue);
  const std::vector<Date> days = DaysOf(form);
  form.LblTotalJours = std::to_string(days.size()) + words.days;
  TextGrid grid;
  AddHeadings(grid, days.size() + 1);
  grid.SetCell(0, 0, words.month);
  grid.SetCell(1, 0, words.day);
  std::vector<LocalDateTime> gridDays;
  // Counted on from the first day, so that a month without a century rule does not shift them.
  int weekday = 0;
  for (size_t i = 0; i < days.size(); ++i) {
    const Date& day = days[i];
    const int column = static_cast<int>(i) + kFirstDayColumn;
    gridDays.push_back({day.year, day.month, day.day});
    weekday = i == 0 ? CurrentWeekday(gridDays[0]) : weekday % kWeekDays + 1;
    grid.SetCell(0, column, TwoDigits(day.month));
    grid.SetCell(1, column, TwoDigits(day.day));
    grid.SetCell(2, column, DayLetter(weekday));
  }
  AddMoments(form, grid, afterRow);
  form.GPub = std::move(grid);
  form.gridDays = std::move(gridDays);
}

std::function<void()> AfterRow(Station& station, RowYields yields) {
  return [&station, yields] { YieldForRow(station, yields); };
}

bool IsWrong(const std::string& text, int most) {
  return ValInt(text) > most || ValInt(text) < 0;
}

}  // namespace

std::optional<WrongMark> FindWrongMark(const CampaignForm& form) {
  for (const std::string& hour : {form.HDepPub, form.HFinPub})
    if (IsWrong(hour, kLastHour)) return WrongMark{Trim(hour), true};
  for (const std::string& mark : form.DecoupagePub)
    if (IsWrong(mark, kLastMinute)) return WrongMark{Trim(mark), false};
  return std::nullopt;
}

std::string WrongMarkFault(const WrongMark& wrong) {
  constexpr int kToldWidth = 20;
  const std::string text = FirstCharacters(wrong.text, kToldWidth);
  return wrong.hour ? "there is no hour " + text + " (0 to " + std::to_string(kLastHour) + ")"
                    : "there is no minute " + text + " (0 to " + std::to_string(kLastMinute) + ")";
}

int GridColumns(const TextGrid& grid) {
  return grid.RowCount() == 0 ? 0 : static_cast<int>(grid.At(0).size());
}

void BuildCampaignGrid(CampaignForm& form, int64_t langue, const std::function<void()>& afterRow) {
  if (form.LblDepartPub == kDailyCampaign)
    BuildWeekly(form, langue, afterRow);
  else
    BuildDated(form, langue, afterRow);
}

void BuildDatedGrid(Station& station, CampaignForm& form, RowYields yields) {
  BuildCampaignGrid(form, station.base.CnfInt(Cnf::kLangue), AfterRow(station, yields));
}

void BuildWeeklyGrid(Station& station, CampaignForm& form, RowYields yields) {
  BuildWeekly(form, station.base.CnfInt(Cnf::kLangue), AfterRow(station, yields));
}

std::string GridFileText(const TextGrid& grid, const std::function<void()>& afterRow) {
  std::vector<std::string> lines;
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): it may change between two rows
  const TextGrid asItIs = grid;
  for (int row = kFirstMomentRow; row < asItIs.RowCount(); ++row) {
    for (int column = kFirstDayColumn; column < GridColumns(asItIs); ++column)
      lines.push_back(asItIs.Cell(row, column));
    afterRow();
  }
  return JoinLines(lines);
}

bool LoadSaveCampaignGrid(Station& station, CampaignForm& form, std::string_view action,
                          const std::string& path, RowYields yields) {
  bool done = true;
  try {
    if (IsSave(action)) {
      CampaignFile(path).Write(station, GridFileText(form.GPub, AfterRow(station, yields)));
    } else if (IsLoad(action)) {
      ReadGridFile(station, form, path, yields);
    }
  } catch (const std::exception&) {
    LogCurrentException(station, "LSGrillePub");
    done = false;
  }
  form.LblTotalMsg = std::to_string(CountCrosses(form));
  return done;
}

std::string DamageOf(const CampaignForm& form) {
  if (form.damage.empty()) return {};
  return "campaign " + form.LblCode + ", " + form.ChAnnonceur + ": " + form.damage;
}

int CrossesInColumn(const TextGrid& grid, int column) {
  int crosses = 0;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row)
    if (grid.Cell(row, column) == kCross) ++crosses;
  return crosses;
}

int CountCrosses(const CampaignForm& form) {
  int crosses = 0;
  for (int column = kFirstDayColumn; column < GridColumns(form.GPub); ++column)
    crosses += CrossesInColumn(form.GPub, column);
  return crosses;
}

void ReadCampaignRecord(const Recordset& grillePub, CampaignForm& form) {
  form.LblCode = grillePub.Text("CODE");
  form.LblDepartPub = grillePub.Text("CAMPAGNEDEPART");
  form.LblFinPub = grillePub.Text("CAMPAGNEFIN");
  form.HDepPub = grillePub.Text("HDEPART");
  form.HFinPub = grillePub.Text("HFIN");
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i)
    form.DecoupagePub[i] = grillePub.Text("DECOUPEH" + std::to_string(i + 1));
  form.FichierAudio = grillePub.Text("FILENAMEAUDIO");
  form.Longeur = std::to_string(grillePub.Int("DUREE"));
  form.LblTemp = FormatDuration(grillePub.Int("DUREE"));
  form.ChAnnonceur = grillePub.Text("ANNONCEUR");
  form.Categorie = grillePub.Text("CATEGORIE");
  form.FILENAMEGRILLE = grillePub.Text("FILENAMEGRILLE");
  form.ComboPriority = grillePub.Text("PRIORITY");
  form.ChContact = Trim(grillePub.Text("CONTACT"));
  form.OptPub = {grillePub.Bool("PUB"), !grillePub.Bool("PUB")};
  form.GenreAssocie = grillePub.Text("GENREASSOCIE");
}

void LoadCampaignGrid(Station& station, CampaignForm& form, RowYields yields) {
  BuildDatedGrid(station, form, yields);
  LoadSaveCampaignGrid(station, form, "Load", form.FILENAMEGRILLE, yields);
}

void LoadCampaign(Station& station, const Recordset& grillePub, CampaignForm& form,
                  RowYields yields) {
  ReadCampaignRecord(grillePub, form);
  LoadCampaignGrid(station, form, yields);
}

void LoadCampaignOrFail(Station& station, const Recordset& grillePub, CampaignForm& form) {
  ReadCampaignRecord(grillePub, form);
  BuildDatedGrid(station, form, RowYields::kNone);
  ReadGridFile(station, form, form.FILENAMEGRILLE, RowYields::kNone);
  form.LblTotalMsg = std::to_string(CountCrosses(form));
}

void WriteCampaign(const CampaignForm& form, Recordset& grillePub) {
  grillePub.Set("CAMPAGNEDEPART", form.LblDepartPub);
  grillePub.Set("CAMPAGNEFIN", form.LblFinPub);
  grillePub.Set("HDEPART", form.HDepPub);
  grillePub.Set("HFIN", form.HFinPub);
  for (size_t i = 0; i < form.DecoupagePub.size(); ++i)
    grillePub.Set("DECOUPEH" + std::to_string(i + 1), form.DecoupagePub[i]);
  grillePub.Set("FILENAMEAUDIO", form.FichierAudio);
  grillePub.Set("DUREE", int64_t{ValInt(form.Longeur)});
  grillePub.Set("ANNONCEUR", form.ChAnnonceur);
  grillePub.Set("CATEGORIE", form.Categorie);
  grillePub.Set("FILENAMEGRILLE", form.FILENAMEGRILLE);
  grillePub.Set("PRIORITY", int64_t{ValInt(form.ComboPriority)});
  grillePub.Set("CONTACT", form.ChContact);
  grillePub.Set("PUB", int64_t{form.OptPub[0] ? -1 : 0});
  grillePub.Set("GENREASSOCIE", form.GenreAssocie);
}

std::string TurnedDate(std::string_view ddmmyyyy) {
  const auto part = [&](size_t from, size_t length) {
    return from < ddmmyyyy.size() ? std::string(ddmmyyyy.substr(from, length)) : std::string();
  };
  return part(6, 4) + part(3, 2) + part(0, 2);
}

// Dates compare as turned texts, "JOURNALIER" behind every date.
bool WorksOn(const std::string& campagneDepart, const std::string& campagneFin,
             const std::string& day) {
  return (campagneDepart == kDailyCampaign || day >= TurnedDate(campagneDepart)) &&
         day <= TurnedDate(campagneFin);
}

int ColumnOfDay(const CampaignForm& form, const LocalDateTime& day) {
  if (form.LblDepartPub == kDailyCampaign) return CurrentWeekday(day);
  const std::string monthAndDay = TwoDigits(day.month) + TwoDigits(day.day);
  for (int column = kFirstDayColumn; column < GridColumns(form.GPub); ++column)
    if (form.GPub.Cell(0, column) + form.GPub.Cell(1, column) == monthAndDay) return column;
  return 0;
}

}  // namespace zemo
