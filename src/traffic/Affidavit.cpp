#include "traffic/Affidavit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/Folder.h"
#include "reports/ReportPurge.h"
#include "reports/ReportRows.h"
#include "station/DayGrid.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Collation.h"
#include "store/RowView.h"
#include "traffic/CampaignArchive.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

constexpr int64_t kDaySec = 86400;
constexpr int64_t kLatestSec = 3 * 3600;  // that a row proves a cross behind its minute
constexpr int64_t kSilentSec = 30 * 60;   // without a row on both sides: nothing was on air
constexpr int64_t kCodesOfSlice = 40000;  // of the report, some 10 ms
constexpr size_t kPlaces = GridCol::kLastElement - GridCol::kFirstElement + 1;  // of a break

// Seconds since day 0 of the serials, which makes rows and crosses comparable.
int64_t SecondOf(double serial) {
  return std::llround(serial * kDaySec);
}
int64_t SecondOf(const LocalDateTime& moment) {
  return SecondOf(DateSerial(WholeSeconds(moment)));
}
LocalDateTime MomentOf(int64_t second) {
  return FromDateSerial(static_cast<double>(second) / kDaySec);
}

// Hour and minute of a grid's moment; none for one that no clock shows.
bool ReadMoment(const std::string& moment, int& hour, int& minute) {
  if (!IsClockTime(moment)) return false;
  hour = ValInt(moment.substr(0, 2));
  minute = ValInt(moment.substr(3, 2));
  return true;
}

// The report of the days, by time.
struct Aired {
  std::vector<int64_t> all;   // every row
  std::vector<int64_t> ours;  // spots and news of the advertiser
};

std::optional<int64_t> NextCode(Station& station, int64_t from) {
  std::optional<int64_t> code;
  station.base.Db().ReadRows("SELECT TOP 1 CODE FROM Rapport WHERE CODE >= ? ORDER BY CODE", {from},
                             [&](const RowView& row) { code = row.Int(0); });
  return code;
}

Aired ReadReport(Station& station, const std::string& advertiser, int64_t from, int64_t to,
                 const Pause& pause) {
  Aired aired;
  const auto take = [&](const RowView& row) {
    const int64_t second = SecondOf(row.Real(0));
    aired.all.push_back(second);
    const std::string_view genre = row.Text(1);
    if ((EqualNoCase(genre, "PUB") || EqualNoCase(genre, "Rubrique")) &&
        EqualNoCase(Trim(row.Text(2)), advertiser))
      aired.ours.push_back(second);
  };
  constexpr int64_t kLastCode = std::numeric_limits<int64_t>::max();
  for (auto code = NextCode(station, std::numeric_limits<int64_t>::min()); code;) {
    const int64_t last = *code < kLastCode - kCodesOfSlice ? *code + kCodesOfSlice - 1 : kLastCode;
    station.base.Db().ReadRows(
        "SELECT DATENUM, GENRE, AUTEUR FROM Rapport WHERE CODE >= ? AND CODE <= ? AND "
        "DATENUM >= ? AND DATENUM < ?",
        {*code, last, static_cast<double>(from) / kDaySec, static_cast<double>(to) / kDaySec},
        take);
    pause();
    code = last == kLastCode ? std::nullopt : NextCode(station, last + 1);
  }
  std::sort(aired.all.begin(), aired.all.end());
  std::sort(aired.ours.begin(), aired.ours.end());
  return aired;
}

// Calls `take` for each moment at which the campaign in `form` has a cross on that day.
template <typename Take>
void ForEachCross(const CampaignForm& form, const LocalDateTime& day, Take take) {
  const int column = ColumnOfDay(form, day);
  if (column == 0) return;
  for (int row = kFirstMomentRow; row < form.GPub.RowCount(); ++row)
    if (form.GPub.Cell(row, column) == kCross) take(form.GPub.Cell(row, 0));
}

// Its dates may have been changed since it was archived.
bool SameCodeAndFile(const CampaignForm& a, const CampaignForm& b) {
  return a.LblCode == b.LblCode && a.FichierAudio == b.FichierAudio;
}

// Those of the table and of the archive in the order of passage, without their grids. One that is
// in both, since it could not be deleted, counts as the table has it.
std::vector<CampaignForm> CampaignsInOrder(Station& station) {
  std::vector<CampaignForm> campaigns;
  const auto table = station.base.Db().OpenRecordset("SELECT * FROM GrillePub");
  for (; !table->Eof(); table->MoveNext()) ReadCampaignRecord(*table, campaigns.emplace_back());
  const size_t inTable = campaigns.size();
  for (CampaignForm& ended : ArchivedCampaigns(station)) {
    const auto end = campaigns.begin() + static_cast<std::ptrdiff_t>(inTable);
    if (std::none_of(campaigns.begin(), end,
                     [&](const auto& c) { return SameCodeAndFile(c, ended); }))
      campaigns.push_back(std::move(ended));
  }
  const auto passage = [](const CampaignForm& form) {
    return std::pair(ValInt(form.ComboPriority), ValInt(form.LblCode));
  };
  std::stable_sort(campaigns.begin(), campaigns.end(),
                   [&](const auto& a, const auto& b) { return passage(a) < passage(b); });
  return campaigns;
}

LocalDateTime DayAt(int64_t dayNumber) {
  return FromDateSerial(static_cast<double>(dayNumber));
}

void AddCrosses(const CampaignForm& form, const LocalDateTime& day,
                std::vector<AffidavitLine>& lines) {
  ForEachCross(form, day, [&](const std::string& moment) {
    AffidavitLine line;
    line.campaign = ValInt(form.LblCode);
    line.file = form.FichierAudio;
    line.spot = form.OptPub[0];
    line.moment = moment;
    line.due = day;
    if (!ReadMoment(moment, line.due.hour, line.due.minute))
      line.missed = "no clock shows " + moment;
    lines.push_back(line);
  });
}

// Whether the campaign works on a day from the first to the last.
bool WorksWithin(const CampaignForm& form, int64_t firstDay, int64_t lastDay) {
  for (int64_t number = firstDay; number <= lastDay; ++number)
    if (WorksOn(form.LblDepartPub, form.LblFinPub, DateKey(DayAt(number)))) return true;
  return false;
}

std::vector<AffidavitDamage> ReadDamages(Station& station,
                                         const std::vector<CampaignForm>& campaigns,
                                         const std::string& advertiser, int64_t firstDay,
                                         int64_t lastDay, const Pause& pause) {
  std::vector<AffidavitDamage> damages;
  for (const CampaignForm& record : campaigns) {
    pause();
    if (!EqualNoCase(Trim(record.ChAnnonceur), advertiser) ||
        !WorksWithin(record, firstDay, lastDay))
      continue;
    CampaignForm form = record;
    LoadCampaignGrid(station, form, RowYields::kNone);
    if (!form.damage.empty())
      damages.push_back({ValInt(form.LblCode), form.OptPub[0], form.FichierAudio, form.damage});
  }
  return damages;
}

std::vector<AffidavitLine> ReadCrosses(Station& station, const std::vector<CampaignForm>& campaigns,
                                       const std::string& advertiser, int64_t firstDay,
                                       int64_t lastDay, const Pause& pause) {
  std::vector<AffidavitLine> lines;
  for (const CampaignForm& record : campaigns) {
    pause();
    if (!EqualNoCase(Trim(record.ChAnnonceur), advertiser)) continue;
    CampaignForm form = record;
    LoadCampaignGrid(station, form, RowYields::kNone);
    for (int64_t number = firstDay; number <= lastDay; ++number) {
      const LocalDateTime day = DayAt(number);
      if (WorksOn(form.LblDepartPub, form.LblFinPub, DateKey(day))) AddCrosses(form, day, lines);
    }
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const auto& a, const auto& b) { return SecondOf(a.due) < SecondOf(b.due); });
  return lines;
}

// --- matching ---

void Prove(AffidavitLine& line, int64_t second) {
  line.aired = MomentOf(second);
  line.lateSec = second - SecondOf(line.due);
}

bool Open(const AffidavitLine& line) {
  return !line.aired && line.missed.empty();
}

// The latest open cross that was due by then; of several at one moment the first in passage.
AffidavitLine* LatestDue(std::vector<AffidavitLine>& lines, int64_t second) {
  AffidavitLine* found = nullptr;
  for (AffidavitLine& line : lines) {
    const int64_t due = SecondOf(line.due);
    if (due > second) break;
    if (!Open(line) || second - due > kLatestSec) continue;
    if (!found || SecondOf(found->due) < due) found = &line;
  }
  return found;
}

// The next open cross of the same hour, which a fitting brought forward.
AffidavitLine* BroughtForward(std::vector<AffidavitLine>& lines, int64_t second) {
  for (AffidavitLine& line : lines) {
    const int64_t due = SecondOf(line.due);
    if (due > second && due / 3600 == second / 3600 && Open(line)) return &line;
  }
  return nullptr;
}

// Returns the rows that prove no cross.
std::vector<int64_t> Match(std::vector<AffidavitLine>& lines, const std::vector<int64_t>& rows,
                           AffidavitLine* (*find)(std::vector<AffidavitLine>&, int64_t)) {
  std::vector<int64_t> left;
  for (const int64_t second : rows) {
    if (AffidavitLine* line = find(lines, second))
      Prove(*line, second);
    else
      left.push_back(second);
  }
  return left;
}

// --- why a cross did not air ---

// What tells why, for all crosses.
struct Evidence {
  const std::vector<CampaignForm>& campaigns;  // in the order of passage
  const std::vector<int64_t>& rows;            // of the whole report around
  ReportSpan report;
  const Pause& pause;
};

// Whether the campaign's place in the break is behind the last that a break has.
bool BreakIsFull(Station& station, const Evidence& evidence, const AffidavitLine& line) {
  size_t before = 0;
  for (const CampaignForm& record : evidence.campaigns) {
    if (ValInt(record.LblCode) == line.campaign && record.FichierAudio == line.file) break;
    if (!WorksOn(record.LblDepartPub, record.LblFinPub, DateKey(line.due))) continue;
    evidence.pause();
    CampaignForm form = record;
    LoadCampaignGrid(station, form, RowYields::kNone);
    ForEachCross(form, line.due,
                 [&](const std::string& moment) { before += moment == line.moment; });
  }
  return before >= kPlaces;
}

std::string HourMinute(int64_t second) {
  return TimeText(MomentOf(second)).substr(0, 5);
}

// Empty where the report shows that the engine was on air around that moment.
std::string NothingOnAir(const std::vector<int64_t>& rows, int64_t due) {
  const auto next = std::upper_bound(rows.begin(), rows.end(), due);
  const bool before = next != rows.begin() && due - *(next - 1) <= kSilentSec;
  const bool after = next != rows.end() && *next - due <= kSilentSec;
  if (before || after) return {};
  std::string text = "engine stopped: the report has nothing";
  if (next != rows.begin())
    text += " from " + DateText(MomentOf(*(next - 1))) + " " + HourMinute(*(next - 1));
  if (next != rows.end()) text += " up to " + DateText(MomentOf(*next)) + " " + HourMinute(*next);
  return text;
}

std::string WhyMissed(Station& station, const Evidence& evidence, const AffidavitLine& line) {
  if (line.moment == "00:00") return "a break at 00:00 never fires";
  if (!evidence.report.Covers(DateSerial(line.due)))
    return "report purged: it has nothing left of that time";
  if (!station.platform.soundFiles.Exists(line.file)) return "file missing: " + line.file;
  if (BreakIsFull(station, evidence, line)) return "the break is full";
  const std::string stopped = NothingOnAir(evidence.rows, SecondOf(line.due));
  return stopped.empty() ? "minute lost: the station was on air" : stopped;
}

}  // namespace

Affidavit MakeAffidavit(Station& station, const std::string& advertiser, const LocalDateTime& from,
                        const LocalDateTime& to, const Pause& pause) {
  const auto firstDay = static_cast<int64_t>(DaySerial(from.year, from.month, from.day));
  const auto lastDay = static_cast<int64_t>(DaySerial(to.year, to.month, to.day));
  const int64_t begin = firstDay * kDaySec, end = (lastDay + 1) * kDaySec;
  const auto asked = [&](int64_t second) { return second >= begin && second < end; };
  const std::string wanted = Trim(advertiser);
  const std::vector<CampaignForm> campaigns = CampaignsInOrder(station);
  const Aired aired = ReadReport(station, wanted, begin - kDaySec, end + kLatestSec, pause);
  std::vector<AffidavitLine> lines =
      ReadCrosses(station, campaigns, wanted, firstDay - 1, lastDay + 1, pause);
  const std::vector<int64_t> left =
      Match(lines, Match(lines, aired.ours, LatestDue), BroughtForward);
  Affidavit affidavit;
  affidavit.damages = ReadDamages(station, campaigns, wanted, firstDay, lastDay, pause);
  for (const int64_t second : left)
    if (asked(second)) affidavit.extras.push_back(MomentOf(second));
  const Evidence evidence{campaigns, aired.all, ReportSpan(station), pause};
  const int64_t now = SecondOf(station.Now());
  for (AffidavitLine& line : lines) {
    if (!asked(SecondOf(line.due))) continue;
    if (Open(line)) {
      line.isDue = SecondOf(line.due) <= now;
      if (line.isDue) line.missed = WhyMissed(station, evidence, line);
    }
    affidavit.lines.push_back(std::move(line));
  }
  return affidavit;
}

std::vector<std::string> Advertisers(Station& station) {
  std::vector<std::string> names;
  for (const CampaignForm& campaign : CampaignsInOrder(station))
    if (std::string name = Trim(campaign.ChAnnonceur); !name.empty())
      names.push_back(std::move(name));
  std::stable_sort(names.begin(), names.end(),
                   [](const auto& a, const auto& b) { return CompareFrenchOrder(a, b) < 0; });
  names.erase(std::unique(names.begin(), names.end(),
                          [](const auto& a, const auto& b) { return EqualNoCase(a, b); }),
              names.end());
  return names;
}

}  // namespace zemo
