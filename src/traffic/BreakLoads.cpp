#include "traffic/BreakLoads.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <string_view>
#include <utility>

#include "platform/Folder.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"
#include "traffic/CampaignArchive.h"
#include "traffic/CampaignFiles.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

constexpr int kDayMinutes = 24 * 60, kHourMinutes = 60;
constexpr int64_t kMinuteMs = 60000;
constexpr int kWeek = 7;                                     // days
constexpr int kMonthDays = 31, kYearDays = 12 * kMonthDays;  // every day of every month
constexpr int kPageRows = 20;
// A slice, in crosses and cells; a campaign costs some of them whatever it holds. 2 ms on the
// machines that we know.
constexpr int64_t kSliceCells = 30000, kRowCells = 500;

// A day by month and day alone, as a grid names it.
int DayOfYear(int month, int day) {
  return (month - 1) * kMonthDays + day - 1;
}

bool IsDayOfYear(int month, int day) {
  return month >= 1 && month <= 12 && day >= 1 && day <= kMonthDays;
}

// Of "HH:MM"; -1 for what is no time of a day.
int MinuteOf(const std::string& moment) {
  if (!IsClockTime(moment)) return -1;
  return ValInt(moment.substr(0, 2)) * kHourMinutes + ValInt(moment.substr(3, 2));
}

std::string ComparedAdvertiser(const CampaignForm& form) {
  return UpperLatin(Trim(form.ChAnnonceur));
}

}  // namespace

// The campaign whose days are looked at.
struct BreakLoads::Shown {
  int64_t code = 0;
  std::string advertiser;
  std::vector<std::string> keys;  // of the columns' days, "yyyymmdd"
  bool operator==(const Shown&) const = default;

  static std::vector<LocalDateTime> DaysOf(const Station& station, const CampaignForm& form);
  static Shown Of(const Station& station, const CampaignForm& form) {
    Shown shown{ValInt(form.LblCode), ComparedAdvertiser(form), {}};
    for (const LocalDateTime& day : DaysOf(station, form)) shown.keys.push_back(DateKey(day));
    return shown;
  }
};

// Of a weekly grid the coming days, by weekday; of an empty one none.
std::vector<LocalDateTime> BreakLoads::Shown::DaysOf(const Station& station,
                                                     const CampaignForm& form) {
  if (!form.gridDays.empty() || form.GPub.Cell(2, kFirstDayColumn).empty()) return form.gridDays;
  const LocalDateTime now = station.Now();
  const double today = DaySerial(now.year, now.month, now.day);
  const int weekday = CurrentWeekday(now);
  std::vector<LocalDateTime> days;
  for (int day = 1; day <= kWeek; ++day)
    days.push_back(FromDateSerial(today + (day - weekday + kWeek) % kWeek));
  return days;
}

// Another campaign, as far as it matters here.
struct BreakLoads::Campaign {
  struct Day {
    int day;  // weekday of a weekly campaign, else DayOfYear
    std::vector<int16_t> minutes;
  };
  std::string state;  // record and grid file, by which it is known again
  std::string depart, fin;
  std::string advertiser;
  int64_t lengthMs = 0;
  std::vector<Day> days;  // with crosses
  int64_t cells = 0;      // what reading it cost

  bool Weekly() const { return depart == kDailyCampaign; }
  void TakeCrosses(const CampaignForm& form);
};

// The columns' moments with crosses. Of two columns of one day the first counts, as on air.
void BreakLoads::Campaign::TakeCrosses(const CampaignForm& form) {
  const TextGrid& grid = form.GPub;
  std::vector<int16_t> minutes;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row)
    minutes.push_back(static_cast<int16_t>(MinuteOf(grid.Cell(row, 0))));
  std::bitset<kYearDays> seen;
  for (int column = kFirstDayColumn; column < GridColumns(grid); ++column) {
    Day day{column, {}};
    if (!Weekly()) {
      const LocalDateTime& date = form.gridDays[static_cast<size_t>(column - kFirstDayColumn)];
      if (!IsDayOfYear(date.month, date.day)) continue;
      day.day = DayOfYear(date.month, date.day);
      if (seen.test(static_cast<size_t>(day.day))) continue;
      seen.set(static_cast<size_t>(day.day));
    }
    for (size_t row = 0; row < minutes.size(); ++row)
      if (minutes[row] >= 0 && grid.Cell(kFirstMomentRow + static_cast<int>(row), column) == kCross)
        day.minutes.push_back(minutes[row]);
    if (!day.minutes.empty()) days.push_back(std::move(day));
  }
  cells = static_cast<int64_t>(minutes.size()) * GridColumns(grid);
}

// The days of the grid that is shown, minute by minute.
struct BreakLoads::Days {
  struct Minute {
    int64_t lengthMs = 0;
    int32_t elements = 0, ofAdvertiser = 0;
  };
  struct Column {
    std::string key;
    int weekday = 0;
    std::vector<Minute> minutes;  // all of the day, or none where nothing is in it
    Minute At(int minute) const {
      return minutes.empty() ? Minute() : minutes[static_cast<size_t>(minute)];
    }
    int ofAdvertiser = 0;
  };
  std::vector<Column> columns;
  std::array<std::vector<int>, kYearDays> ofDayOfYear;  // columns
  std::array<std::vector<int>, kWeek + 1> ofWeekday;    // columns, from 1 on
  std::array<std::bitset<24 + 1>, kWeek + 1> pipHours;  // 1 to 24, by weekday from 1 on

  explicit Days(const std::vector<LocalDateTime>& days);
  void ReadPips(Station& station);
};

BreakLoads::Days::Days(const std::vector<LocalDateTime>& days) : columns(days.size()) {
  for (size_t at = 0; at < days.size(); ++at) {
    const LocalDateTime& day = days[at];
    const int weekday = CurrentWeekday(day);
    columns[at].key = DateKey(day);
    columns[at].weekday = weekday;
    ofWeekday[static_cast<size_t>(weekday)].push_back(static_cast<int>(at));
    if (IsDayOfYear(day.month, day.day))
      ofDayOfYear[static_cast<size_t>(DayOfYear(day.month, day.day))].push_back(
          static_cast<int>(at));
  }
}

// A pip belongs to the day of the hour ahead of it: that of midnight to the day that ends.
void BreakLoads::Days::ReadPips(Station& station) {
  station.base.Db().ReadRows("SELECT HEURE, JourSemaine, FICHIER FROM Toph",
                             [&](const RowView& row) {
                               const int64_t hour = row.Int(0);
                               const std::string_view weekdays = row.Text(1);
                               if (hour < 0 || hour > 23 || Trim(row.Text(2)).empty()) return;
                               for (size_t day = 1; day <= kWeek; ++day)
                                 if (day <= weekdays.size() && weekdays[day - 1] == 'X')
                                   pipHours[day].set(hour == 0 ? 24 : static_cast<size_t>(hour));
                             });
}

BreakLoads::BreakLoads() = default;
BreakLoads::~BreakLoads() = default;

void BreakLoads::Begin(Station& station, const CampaignForm& shown) {
  Shown next = Shown::Of(station, shown);
  if (!shown_ || shown_->keys != next.keys || shown_->code != next.code) known_.reset();
  shown_ = std::make_unique<Shown>(std::move(next));
  making_ = std::make_shared<Days>(Shown::DaysOf(station, shown));
  page_.reset();
  lastCode_ = std::numeric_limits<int64_t>::min();
}

bool BreakLoads::IsOf(const Station& station, const CampaignForm& shown) const {
  return shown_ && *shown_ == Shown::Of(station, shown);
}

bool BreakLoads::Slice(Station& station) {
  if (!making_) return true;
  for (int64_t cells = 0; cells < kSliceCells;) {
    if (!page_) {
      ReadPage(station);
      cells += kPageRows * kRowCells;
    }
    if (page_->Eof() && page_->Bof()) {
      making_->ReadPips(station);
      known_ = std::exchange(making_, nullptr);
      page_.reset();
      return true;
    }
    lastCode_ = page_->Int("CODE");
    cells += Take(station, *page_);
    page_->MoveNext();
    if (page_->Eof()) page_.reset();
  }
  return false;
}

// The file is not held between two pages.
void BreakLoads::ReadPage(Station& station) {
  page_ = station.base.Db().OpenRecordset(
      "SELECT TOP ? * FROM GrillePub WHERE CODE > ? ORDER BY CODE", {kPageRows, lastCode_});
}

// What the row's campaign has in the days, and what that cost. The grid file of one that works on
// none of them is not read.
int64_t BreakLoads::Take(Station& station, const Recordset& row) {
  const std::string depart = row.Text("CAMPAGNEDEPART"), fin = row.Text("CAMPAGNEFIN");
  const auto& columns = making_->columns;
  const bool works = std::ranges::any_of(
      columns, [&](const Days::Column& column) { return WorksOn(depart, fin, column.key); });
  if (lastCode_ == shown_->code || !works) return kRowCells;
  CampaignForm form;
  ReadCampaignRecord(row, form);
  std::string state = CampaignRecordText(form) + CampaignFile(form.FILENAMEGRILLE).Stamp(station);
  auto& known = campaigns_[lastCode_];
  if (known && known->state == state) return Add(*known);
  known = std::make_unique<Campaign>();
  known->depart = depart;
  known->fin = fin;
  known->advertiser = ComparedAdvertiser(form);
  known->lengthMs = std::max(0, ValInt(form.Longeur));
  try {
    LoadCampaignOrFail(station, row, form);
    known->TakeCrosses(form);
    known->state = std::move(state);
  } catch (const FileError&) {
    return kRowCells;  // the composition of the day tells it; asked again the next time
  }
  return known->cells + Add(*known);
}

int64_t BreakLoads::Add(const Campaign& campaign) {
  int64_t added = kRowCells;
  const bool sameAdvertiser =
      !campaign.advertiser.empty() && campaign.advertiser == shown_->advertiser;
  for (const Campaign::Day& day : campaign.days) {
    const auto at = static_cast<size_t>(day.day);
    for (const int number : campaign.Weekly() ? making_->ofWeekday[at] : making_->ofDayOfYear[at]) {
      Days::Column& column = making_->columns[static_cast<size_t>(number)];
      if (!WorksOn(campaign.depart, campaign.fin, column.key)) continue;
      added += static_cast<int64_t>(day.minutes.size());
      column.minutes.resize(kDayMinutes);
      for (const int16_t minute : day.minutes) {
        Days::Minute& load = column.minutes[static_cast<size_t>(minute)];
        load.lengthMs += campaign.lengthMs;
        ++load.elements;
        if (sameAdvertiser) ++load.ofAdvertiser;
      }
      if (sameAdvertiser) column.ofAdvertiser += static_cast<int>(day.minutes.size());
    }
  }
  return added;
}

// From midnight backwards: the next break or pip behind each minute.
std::vector<BreakLoad> BreakLoads::OfDay(const TextGrid& grid, int column) const {
  const auto at = static_cast<size_t>(column - kFirstDayColumn);
  if (!known_ || column < kFirstDayColumn || at >= known_->columns.size()) return {};
  const Days::Column& day = known_->columns[at];
  const auto& pips = known_->pipHours[static_cast<size_t>(day.weekday)];
  std::vector<int> rows;
  std::bitset<kDayMinutes> own;
  for (int row = kFirstMomentRow; row < grid.RowCount(); ++row) {
    rows.push_back(MinuteOf(grid.Cell(row, 0)));
    if (rows.back() >= 0 && grid.Cell(row, column) == kCross)
      own.set(static_cast<size_t>(rows.back()));
  }
  std::array<int, kDayMinutes> next{};
  int coming = kDayMinutes;
  for (int minute = kDayMinutes - 1; minute >= 0; --minute) {
    const int behind = minute + 1;
    if (behind % kHourMinutes == 0 && pips.test(static_cast<size_t>(behind / kHourMinutes)))
      coming = behind;
    next[static_cast<size_t>(minute)] = coming;
    if (own.test(static_cast<size_t>(minute)) || day.At(minute).elements > 0) coming = minute;
  }
  std::vector<BreakLoad> loads;
  for (const int minute : rows) {
    if (minute < 0) {
      loads.emplace_back();
      continue;
    }
    const Days::Minute load = day.At(minute);
    loads.push_back({load.lengthMs, load.elements, load.ofAdvertiser,
                     (next[static_cast<size_t>(minute)] - minute) * kMinuteMs});
  }
  return loads;
}

int BreakLoads::OfAdvertiser(int column) const {
  const auto at = static_cast<size_t>(column - kFirstDayColumn);
  if (!known_ || column < kFirstDayColumn || at >= known_->columns.size()) return 0;
  return known_->columns[at].ofAdvertiser;
}

}  // namespace zemo
