// Hour mask and date window of a card.
#include "scheduling/HourFilter.h"

#include "scheduling/RotationRules.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

BoundQuery HourFilter(int weekday, int hour) {
  const std::string hoursBefore(static_cast<size_t>(hour), '?');
  return {" And Tranche" + TwoDigits(weekday) + " LIKE ?", {hoursBefore + "1*"}};
}

BoundQuery HourFilterOfNow(Station& station) {
  return HourFilter(CurrentWeekday(station.Now()), CurrentHour(station));
}

bool InDateWindow(std::string_view mmjjDebut, std::string_view mmjjFin,
                  std::string_view mmjjToday) {
  const auto blank = [](std::string_view day) {
    return day.find_first_not_of(' ') == std::string_view::npos;
  };
  if (blank(mmjjDebut) || blank(mmjjFin)) return true;
  return mmjjToday >= mmjjDebut && mmjjToday <= mmjjFin;
}

std::string MonthDay(const LocalDateTime& today) {
  return TwoDigits(today.month) + TwoDigits(today.day);
}

}  // namespace zemo
