#include "engine/Forecast.h"

#include <cmath>

#include "engine/NextUp.h"
#include "library/OnAirRows.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/Snapshot.h"

namespace zemo {

namespace {

// The word and the CODE of a row's library record as a script names them; empty for a row that has
// none (pips and markers come again by themselves).
std::string LibraryOrder(Station& station, const OnAirRow& row) {
  const int32_t code = row.code;
  if (code > 0) return "insert music " + std::to_string(code);
  const char* lookUp = nullptr;
  const char* word = nullptr;
  switch (code) {
    case Element::kJingle:
      lookUp = "SELECT Code FROM DiscothequeJingle WHERE FileName = ?";
      word = "insert jingle ";
      break;
    case Element::kSpot:
    case Element::kNews:
      lookUp = "SELECT Code FROM GRILLEPUB WHERE FileNameAudio = ?";
      word = "insert spot ";
      break;
    case Element::kOther:
      lookUp = "SELECT Code FROM DiscothequeVirgule WHERE FileName = ?";
      word = "insert other ";
      break;
    case Element::kBeginExtract:
      return "insert extract";
    default:
      return {};
  }
  const auto found = station.base.Db().OpenRecordset(lookUp, {row.file});
  return found->Eof() ? std::string() : word + std::to_string(found->Int("Code"));
}

// When the first row of PL takes the air.
LocalDateTime NextTransition(const Station& station) {
  const EngineState& engine = station.engine;
  LocalDateTime now = WholeSeconds(station.Now());
  if (!engine.IsRunning) return now;
  const auto untilMs = static_cast<double>(MsToNextStart(engine));
  constexpr double kDaySec = 86400;
  return WholeSeconds(FromDateSerial(DateSerial(now) + std::round(untilMs / 1000) / kDaySec));
}

}  // namespace

ForecastWish WishOfNow(Station& station, int hours) {
  ForecastWish wish;
  wish.from = NextTransition(station);
  wish.hours = hours;
  for (const OnAirRow& row : station.PL) {
    try {
      const std::string order = LibraryOrder(station, row);
      if (!order.empty()) wish.script += "+0 " + order + "\n";
    } catch (const std::exception&) {
      LogCurrentException(station, "WishOfNow");
    }
  }
  wish.script += "+0 start\n";
  return wish;
}

}  // namespace zemo
