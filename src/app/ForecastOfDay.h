// A planned day as a forecast computes it: its titles by the hour in which they start.
#pragma once

#include "engine/Forecast.h"
#include "scheduling/PlannedDay.h"

namespace zemo {

// Thread: the logic's.
class ForecastOfDay : public DayForecast {
 public:
  explicit ForecastOfDay(ForecastSource& source) : source_(source) {}  // not owned, outlives this
  void Start(const PlannedDay& day) override;
  State Now() const override;
  std::vector<AiredTitle> Aired() const override;
  std::string Fault() const override { return source_.Fault(); }

 private:
  ForecastSource& source_;
};

}  // namespace zemo
