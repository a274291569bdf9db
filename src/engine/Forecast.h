// What will air in the next hours, as a simulation of this station tells it: the wish, its lines,
// and who computes them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

struct Station;

enum class ForecastKind { kElement, kPip, kBreak, kList, kGap, kWarning };

struct ForecastLine {
  std::string at;  // "hh:mm:ss"
  ForecastKind kind = ForecastKind::kElement;
  int32_t code = 0;      // of an element
  std::string text;      // title, break, file or fault
  std::string reason;    // of a warning: "missing", "unreadable", "error"
  int64_t lengthMs = 0;  // of an element; of a gap until sound came back, 0 if it did not
};

// From when, how long, and the orders that put the station where it is now: the rows of PL, then
// the start.
struct ForecastWish {
  LocalDateTime from;
  int hours = 3;
  std::string script;
};

// The wish for this station as it stands; reads the library for the rows that are no music. Faults
// are logged and leave a row out.
ForecastWish WishOfNow(Station& station, int hours);

// Computes beside the air, without touching it. Thread: the logic's.
class ForecastSource {
 public:
  enum class State { kIdle, kRunning, kDone, kFailed };
  virtual ~ForecastSource() = default;
  virtual void Start(const ForecastWish& wish) = 0;  // ends one that runs
  virtual State Now() const = 0;
  virtual const std::vector<ForecastLine>& Lines() const = 0;  // as far as they are known
  virtual const std::string& Fault() const = 0;                // one line
};

}  // namespace zemo
