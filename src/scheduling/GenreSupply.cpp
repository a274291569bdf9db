#include "scheduling/GenreSupply.h"

#include "scheduling/HourFilter.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/BoundQuery.h"
#include "store/RowView.h"

namespace zemo {

namespace {

enum SupplyColumn {
  kSupplyCode,
  kSupplyGenre,
  kSupplyLength,
  kSupplyPasses,
  kSupplyFirstDay,
  kSupplyLastDay,
  kSupplyFirstMask
};

BoundQuery SupplySliceQuery(bool begun, int64_t lastCode) {
  std::string text = "SELECT TOP ? CODE, GENRE, DUREE, NBPASSJOUR, MMJJDebut, MMJJFin";
  for (int day = 1; day <= kDaysOfWeek; ++day) text += ", TRANCHE" + TwoDigits(day);
  BoundQuery query{text + " FROM Discotheque ", {GenreSupply::kSliceRows}};
  if (begun) query.Add("WHERE CODE > ? ", {lastCode});
  return query.Add("ORDER BY CODE");
}

}  // namespace

GenreSupply::GenreSupply(const LocalDateTime& today) {
  const double serial = DaySerial(today.year, today.month, today.day);
  for (int ahead = 0; ahead < kDaysOfWeek; ++ahead) {
    const LocalDateTime date = FromDateSerial(serial + ahead);
    monthDays_[static_cast<size_t>(CurrentWeekday(date) - 1)] = MonthDay(date);
  }
}

void GenreSupply::ReadSlice(Database& db) {
  if (complete_) return;
  int read = 0;
  const BoundQuery query = SupplySliceQuery(begun_, lastCode_);
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    Take(row);
    begun_ = true;
    ++read;
  });
  complete_ = read < kSliceRows;
}

void GenreSupply::Take(const RowView& row) {
  lastCode_ = row.Int(kSupplyCode);
  auto found = genres_.find(row.Text(kSupplyGenre));
  if (found == genres_.end()) found = genres_.emplace(row.Text(kSupplyGenre), Genre{}).first;
  genreOfCode_.emplace(static_cast<int32_t>(lastCode_), found->first);
  Genre& genre = found->second;
  ++genre.titles;
  if (!row.IsNull(kSupplyPasses) && row.Int(kSupplyPasses) == 0) return;
  for (size_t day = 0; day < kDaysOfWeek; ++day) {
    if (!InDateWindow(row.Text(kSupplyFirstDay), row.Text(kSupplyLastDay), monthDays_[day]))
      continue;
    const std::string_view mask = row.Text(kSupplyFirstMask + static_cast<int>(day));
    for (size_t hour = 0; hour < kHoursOfDay && hour < mask.size(); ++hour) {
      if (mask[hour] != '1') continue;
      ++genre.days[day][hour].titles;
      genre.days[day][hour].lengthMs += row.Int(kSupplyLength);
    }
  }
}

GenreSupply::Hour GenreSupply::At(std::string_view genre, int day, int hour) const {
  const auto found = genres_.find(genre);
  if (found == genres_.end()) return {};
  return found->second.days.at(static_cast<size_t>(day - 1)).at(static_cast<size_t>(hour));
}

std::string_view GenreSupply::GenreOf(int32_t code) const {
  const auto found = genreOfCode_.find(code);
  return found == genreOfCode_.end() ? std::string_view() : found->second;
}

}  // namespace zemo
