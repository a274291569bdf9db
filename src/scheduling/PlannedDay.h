// How a day would air with the model that is being edited: the orders that put it, unsaved, into a
// copy of the station, and what the simulation of that day gave against what was planned.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "station/ModelEditor.h"

namespace zemo {

// A simulation of 24 hours from that moment, with these orders of a script.
struct PlannedDay {
  LocalDateTime from;
  std::string script;
};
// The next such weekday behind `today`.
PlannedDay PlanOf(const ModelEditor& editor, const LocalDateTime& today);

struct AiredTitle {
  int hour = 0;
  int32_t code = 0;  // of its card
  std::string text;
  int64_t lengthMs = 0;
};

// Simulates a planned day beside the air, without touching it. Thread: the logic's.
class DayForecast {
 public:
  enum class State { kIdle, kRunning, kDone, kFailed };
  virtual ~DayForecast() = default;
  virtual void Start(const PlannedDay& day) = 0;  // ends one that runs
  virtual State Now() const = 0;
  virtual std::vector<AiredTitle> Aired() const = 0;  // as far as it is known
  virtual std::string Fault() const = 0;              // one line
};

struct GenreOutlook {
  std::string genre;
  double planned = 0, reached = 0;  // of the day's music, per cent
  std::vector<int> dryHours;        // planned for, and nothing aired
};

struct RepeatedTitle {
  std::string text;
  int times = 0;
};

struct DayOutlook {
  std::vector<GenreOutlook> genres;    // those of the grid in its order, then others that aired
  std::vector<RepeatedTitle> repeats;  // the most often first
  int titles = 0;                      // aired
};
// Shares of a percentage model are shares of time, those of a skeleton of titles. An hour's plan is
// what it asks of each genre in proportion, whatever its total.
DayOutlook OutlookOf(const ModelEditor& editor, std::span<const AiredTitle> aired);

}  // namespace zemo
