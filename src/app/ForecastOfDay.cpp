#include "app/ForecastOfDay.h"

#include "station/TextForms.h"

namespace zemo {

void ForecastOfDay::Start(const PlannedDay& day) {
  constexpr int kHours = 24;
  source_.Start({day.from, kHours, day.script});
}

DayForecast::State ForecastOfDay::Now() const {
  switch (source_.Now()) {
    case ForecastSource::State::kRunning:
      return State::kRunning;
    case ForecastSource::State::kDone:
      return State::kDone;
    case ForecastSource::State::kFailed:
      return State::kFailed;
    case ForecastSource::State::kIdle:
      break;
  }
  return State::kIdle;
}

std::vector<AiredTitle> ForecastOfDay::Aired() const {
  std::vector<AiredTitle> aired;
  for (const ForecastLine& line : source_.Lines())
    if (line.kind == ForecastKind::kElement && line.code > 0)
      aired.push_back({ValInt(line.at.substr(0, 2)), line.code, line.text, line.lengthMs});
  return aired;
}

}  // namespace zemo
