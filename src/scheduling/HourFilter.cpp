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
  return HourFilter(JourSemaineCourant(station.Now()), HeureCourante(station));
}

bool InDateWindow(std::string_view mmjjDebut, std::string_view mmjjFin,
                  const LocalDateTime& today) {
  if (Trim(mmjjDebut).empty() || Trim(mmjjFin).empty()) return true;
  const std::string mmdd = TwoDigits(today.month) + TwoDigits(today.day);
  return mmdd >= mmjjDebut && mmdd <= mmjjFin;
}

}  // namespace zemo
