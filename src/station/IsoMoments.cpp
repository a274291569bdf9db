#include "station/IsoMoments.h"

#include "station/TimeForms.h"

namespace zemo {

std::string IsoDay(const LocalDateTime& moment) {
  const std::string key = DateKey(moment);  // yyyymmdd
  return key.substr(0, 4) + "-" + key.substr(4, 2) + "-" + key.substr(6, 2);
}

std::string IsoMoment(const LocalDateTime& moment, char between) {
  return IsoDay(moment) + between + TimeText(moment);
}

}  // namespace zemo
