#include "scheduling/WeekModel.h"

#include "scheduling/LastAnswers.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

// Logs under the name of the routine by which the editor loads its grid.
template <typename Read>
void Logged(Station& station, const char* routine, Read read) {
  try {
    read();
  } catch (const std::exception&) {
    LogCurrentException(station, routine);
  }
}

}  // namespace

std::string HourColumns() {
  std::string columns;
  for (int hour = 0; hour < kHoursOfDay; ++hour)
    columns += (hour == 0 ? "TRANCHE" : ", TRANCHE") + TwoDigits(hour);
  return columns;
}

void ForEachModelRow(Database& database, int day, const Database::TakeRow& take) {
  database.ReadRows(
      "SELECT GENRE, " + HourColumns() + " FROM Models WHERE JOUR = ? ORDER BY CODE ASC;", {day},
      take);
}

void ForEachPosition(Database& database, int day, const Database::TakeRow& take) {
  database.ReadRows(
      "SELECT " + HourColumns() + " FROM ModelSquelette WHERE JOUR = ? ORDER BY CODE ASC;", {day},
      take);
}

void ForEachVariety(Database& database, const Database::TakeRow& take) {
  database.ReadRows("SELECT POURCENT, VARIETE FROM Variete", take);
}

DayModel ReadDayModel(Station& station, int day) {
  DayModel model;
  const auto ask = [&] {
    ForEachModelRow(station.base.Db(), day, [&](const RowView& row) {
      GenreShare& share = model.emplace_back();
      share.genre = row.Text(0);
      for (size_t hour = 0; hour < share.percent.size(); ++hour)
        share.percent[hour] = Val(row.Text(static_cast<int>(hour) + 1));
    });
    return model;
  };
  Logged(station, "LoadGrilleModels", [&] {
    model = AnswerOrLast(station, LastAnswersOf(station).models[static_cast<size_t>(day)], ask);
  });
  return model;
}

DaySkeleton ReadDaySkeleton(Station& station, int day) {
  DaySkeleton skeleton;
  const auto ask = [&] {
    ForEachPosition(station.base.Db(), day, [&](const RowView& row) {
      ByHour<std::string>& position = skeleton.emplace_back();
      for (size_t hour = 0; hour < position.size(); ++hour)
        position[hour] = row.Text(static_cast<int>(hour));
    });
    return skeleton;
  };
  Logged(station, "LoadGrilleSquelette", [&] {
    skeleton =
        AnswerOrLast(station, LastAnswersOf(station).skeletons[static_cast<size_t>(day)], ask);
  });
  return skeleton;
}

std::vector<VarietyShare> ReadVarieties(Station& station) {
  return AnswerOrLast(station, LastAnswersOf(station).varieties, [&] {
    std::vector<VarietyShare> varieties;
    ForEachVariety(station.base.Db(), [&](const RowView& row) {
      varieties.push_back({std::string(row.Text(1)), Val(row.Text(0))});
    });
    return varieties;
  });
}

}  // namespace zemo
