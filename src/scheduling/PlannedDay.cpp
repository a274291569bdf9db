#include "scheduling/PlannedDay.h"

#include <algorithm>
#include <map>
#include <utility>

#include "scheduling/GenreSupply.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/WeekModel.h"
#include "station/SideFileText.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr double kAllOfTheDay = 100;

// --- the orders, which a script gives as a line of text each: there is nothing to bind ---

std::string TextInScript(const std::string& text) {
  std::string quoted = "'";
  for (const char c : OneLine(text)) quoted += c == '\'' ? "''" : std::string(1, c);
  return quoted + "'";
}

// "(6, 'POP', 40)"
std::string InBrackets(const std::vector<std::string>& values) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "(" : ", ") + value;
  return list + ")";
}

std::string RowInScript(const ModelEditor& editor, const TextGrid::Row& row) {
  std::vector<std::string> values{std::to_string(editor.JourSemaine)};
  for (size_t column = 0; column < row.size(); ++column)
    values.push_back(editor.skeleton || column == 0 ? TextInScript(row[column]) : row[column]);
  const std::string columns = editor.skeleton ? "ModelSquelette(JOUR, " : "Models(JOUR, GENRE, ";
  return "+0 sql INSERT INTO " + columns + HourColumns() + ") VALUES " + InBrackets(values) + "\n";
}

// What one genre gets in each hour, in percentages, positions, time or titles.
using GenreHours = std::map<std::string, ByHour<double>, std::less<>>;

struct GridPlan {
  std::vector<std::string> order;  // of the genres
  GenreHours hours;
};

GridPlan PlanOfGrid(const ModelEditor& editor) {
  GridPlan plan;
  const auto add = [&](const std::string& genre, size_t hour, double weight) {
    const auto [entry, fresh] = plan.hours.try_emplace(genre);
    if (fresh) plan.order.push_back(genre);
    entry->second[hour] += weight;
  };
  for (const TextGrid::Row& row : StoredRows(editor))
    for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
      if (!editor.skeleton)
        add(row[0], hour, std::max(0.0, Val(row[hour + 1])));
      else if (!Trim(row[hour]).empty())
        add(row[hour], hour, 1);
    }
  return plan;
}

double SumOfHour(const GenreHours& hours, size_t hour) {
  double sum = 0;
  for (const auto& [genre, weights] : hours) sum += weights[hour];
  return sum;
}

// The mean of the hours' shares, over the hours in which anything is planned.
double PlannedShare(const GenreHours& plan, const ByHour<double>& weights) {
  double shares = 0;
  int hours = 0;
  for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
    const double sum = SumOfHour(plan, hour);
    if (sum <= 0) continue;
    shares += weights[hour] / sum;
    ++hours;
  }
  return hours == 0 ? 0 : kAllOfTheDay * shares / hours;
}

GenreHours GivenHours(const ModelEditor& editor, std::span<const AiredTitle> aired) {
  GenreHours given;
  if (!editor.supply) return given;
  for (const AiredTitle& title : aired) {
    if (title.hour < 0 || title.hour >= kHoursOfDay) continue;
    const auto genre = std::string(editor.supply->GenreOf(title.code));
    given[genre][static_cast<size_t>(title.hour)] +=
        editor.skeleton ? 1 : static_cast<double>(title.lengthMs);
  }
  return given;
}

std::vector<RepeatedTitle> RepeatsOf(std::span<const AiredTitle> aired) {
  std::map<int32_t, RepeatedTitle> titles;
  for (const AiredTitle& title : aired) {
    RepeatedTitle& entry = titles[title.code];
    entry.text = title.text;
    ++entry.times;
  }
  std::vector<RepeatedTitle> repeats;
  for (auto& [code, title] : titles)
    if (title.times > 1) repeats.push_back(std::move(title));
  std::stable_sort(repeats.begin(), repeats.end(),
                   [](const auto& a, const auto& b) { return a.times > b.times; });
  return repeats;
}

}  // namespace

PlannedDay PlanOf(const ModelEditor& editor, const LocalDateTime& today) {
  PlannedDay plan;
  const int ahead =
      (editor.JourSemaine - CurrentWeekday(today) + kDaysOfWeek - 1) % kDaysOfWeek + 1;
  plan.from = FromDateSerial(DaySerial(today.year, today.month, today.day) + ahead);
  const std::string table = editor.skeleton ? "ModelSquelette" : "Models";
  plan.script = "+0 set Squelette " + std::string(editor.skeleton ? "-1" : "0") +
                "\n+0 sql DELETE FROM " + table + " WHERE JOUR IN " +
                InBrackets({std::to_string(editor.JourSemaine)}) + "\n";
  for (const TextGrid::Row& row : StoredRows(editor)) plan.script += RowInScript(editor, row);
  plan.script += "+0 start\n";
  return plan;
}

DayOutlook OutlookOf(const ModelEditor& editor, std::span<const AiredTitle> aired) {
  GridPlan plan = PlanOfGrid(editor);
  const GenreHours given = GivenHours(editor, aired);
  for (const auto& [genre, hours] : given)
    if (plan.hours.try_emplace(genre).second) plan.order.push_back(genre);
  double total = 0;
  for (size_t hour = 0; hour < kHoursOfDay; ++hour) total += SumOfHour(given, hour);
  DayOutlook outlook;
  outlook.titles = static_cast<int>(aired.size());
  outlook.repeats = RepeatsOf(aired);
  for (const std::string& genre : plan.order) {
    const ByHour<double>& wanted = plan.hours.find(genre)->second;
    const auto found = given.find(genre);
    const ByHour<double> got = found == given.end() ? ByHour<double>{} : found->second;
    GenreOutlook line{genre, PlannedShare(plan.hours, wanted), 0, {}};
    double sum = 0;
    for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
      sum += got[hour];
      if (wanted[hour] > 0 && got[hour] == 0) line.dryHours.push_back(static_cast<int>(hour));
    }
    if (total > 0) line.reached = kAllOfTheDay * sum / total;
    if (line.planned > 0 || line.reached > 0) outlook.genres.push_back(std::move(line));
  }
  return outlook;
}

}  // namespace zemo
