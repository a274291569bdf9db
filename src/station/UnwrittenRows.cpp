#include "station/UnwrittenRows.h"

#include "platform/Clock.h"
#include "station/Station.h"
#include "store/StoreError.h"

namespace zemo {

namespace {
constexpr int64_t kRetryMs = 5000;

std::string Behind(const std::string& detail) {
  return detail.empty() ? detail : " - " + detail;
}

bool MendsByWaiting(const StoreError& error) {
  switch (error.Number()) {
    case kErrLocked:
    case kErrDiskFull:
    case kErrReadOnly:
    case kErrClosed:
    case kErrOther:
      return true;
    default:
      return false;
  }
}

// Writes what is kept, oldest first, until the base refuses; what waiting does not mend is logged
// and given up.
void WriteUntilRefused(Station& station) {
  auto& kept = station.engine.unwrittenRows;
  while (!kept.empty()) {
    try {
      kept.front().write(station);
    } catch (const StoreError& error) {
      if (MendsByWaiting(error)) return;
      LogError(station, kept.front().where, error.Number(),
               error.what() + Behind(kept.front().detail));
    } catch (const std::exception&) {
      LogCurrentException(station, kept.front().where, kept.front().detail);
    }
    kept.pop_front();
  }
}

}  // namespace

void WriteOrKeep(Station& station, const std::string& where, std::function<void(Station&)> write,
                 const std::string& detail) {
  auto& kept = station.engine.unwrittenRows;
  if (kept.empty()) {
    try {
      write(station);
      return;
    } catch (const StoreError& error) {
      const bool mends = MendsByWaiting(error);
      LogError(station, where, error.Number(),
               error.what() + Behind(detail) + (mends ? " (kept, written later)" : ""));
      if (!mends) return;
      station.engine.unwrittenRetryMs = station.platform.clock.MonotonicMs() + kRetryMs;
    }
  }
  kept.push_back({where, detail, std::move(write)});
}

void WriteKeptRows(Station& station) {
  EngineState& engine = station.engine;
  const int64_t nowMs = station.platform.clock.MonotonicMs();
  if (engine.unwrittenRows.empty() || nowMs < engine.unwrittenRetryMs || !station.base.IsOpen())
    return;
  engine.unwrittenRetryMs = nowMs + kRetryMs;
  const NoLockWait atOnce(station.base.Waiting());
  WriteUntilRefused(station);
}

void WriteKeptRowsAtTheEnd(Station& station) {
  auto& kept = station.engine.unwrittenRows;
  if (kept.empty() || !station.base.IsOpen()) return;
  WriteUntilRefused(station);
  if (!kept.empty())
    LogError(station, kept.front().where, kErrLocked,
             std::to_string(kept.size()) + " kept rows could not be written before the end");
  kept.clear();
}

}  // namespace zemo
