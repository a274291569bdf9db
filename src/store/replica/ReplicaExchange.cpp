#include "store/replica/ReplicaExchange.h"

#include <optional>

#include "store/StoreError.h"

namespace zemo {

namespace {

// Numbers of one table that a machine gets at a time: a day and more of a station's report, or an
// import of a whole library, while the server is away. Two thousand million are to be had.
constexpr int64_t kNumbers = 50000;
constexpr int64_t kMostWrites = 20000;  // that are sent at a time
constexpr int64_t kMostChanges =
    500;  // that are taken in at a time: the replica is locked meanwhile

// Not the way to the server, but what was sent.
bool IsRefusal(const StoreError& error) {
  return !error.MayPass();
}

}  // namespace

bool ReplicaExchange::Begin() {
  if (const int64_t taken = feed_.TakenFrom(replica_.Machine()); taken > 0) replica_.Sent(taken);
  replica_.SetOnlyReads(!feed_.MayWrite());
  return feed_.GoesOnFrom(replica_.Place());
}

void ReplicaExchange::Send() {
  while (const auto queued = replica_.Queued(kMostWrites)) {
    try {
      feed_.Take(replica_.Machine(), queued->last, queued->changes);
    } catch (const StoreError& error) {
      if (!IsRefusal(error) || !feed_.HasItsFunctions()) throw;
      SendOneByOne();
      continue;
    }
    replica_.Sent(queued->last);
  }
}

// All but the rows that are refused.
void ReplicaExchange::SendOneByOne() {
  while (const auto queued = replica_.Queued(1)) {
    try {
      feed_.Take(replica_.Machine(), queued->last, queued->changes);
      replica_.Sent(queued->last);
    } catch (const StoreError& error) {
      if (!IsRefusal(error) || !feed_.HasItsFunctions()) throw;
      const RefusedRow row = replica_.FirstRow();
      refused_(row, error.what());  // ahead of its end: it is told twice rather than not at all
      replica_.Drop(row);
    }
  }
}

bool ReplicaExchange::TakeIn() {
  for (bool more = true; more;) {
    const FeedPlace place = replica_.Place();
    const ServerChanges changes = feed_.Behind(place, kMostChanges);
    if (changes.place.base != place.base || changes.place.tables != place.tables) return false;
    if (changes.place == place) return true;
    more = replica_.TakeIn(changes.tables, changes.place) ? changes.more : (Send(), true);
  }
  return true;
}

void ReplicaExchange::GiveNumbers() {
  if (replica_.OnlyReads()) return;
  for (const std::string& table : replica_.Tables()) {
    if (replica_.NumbersLeft(table) * 2 > kNumbers) continue;
    const int64_t first = feed_.Reserve(table, kNumbers);
    replica_.AddNumbers(table, first, first + kNumbers - 1);
  }
}

void ReplicaExchange::GiveFreshNumbers(const std::string& table) {
  if (replica_.OnlyReads() || !replica_.NumbersAreBehind(table)) return;
  const int64_t first = feed_.Reserve(table, kNumbers);
  replica_.DropNumbers(table);
  replica_.AddNumbers(table, first, first + kNumbers - 1);
}

}  // namespace zemo
