#include "store/replica/ReplicaExchange.h"

#include <optional>

#include "store/StoreError.h"

namespace zemo {

namespace {

// Numbers of one table that a machine gets at a time: a day and more of a station's report, or an
// import of a whole library, while the server is away. Two thousand million are to be had.
constexpr int64_t kNumbers = 50000;
constexpr int64_t kMostWrites = 20000;  // that are sent at a time
// That are taken in at a time: the replica is locked meanwhile.
constexpr int64_t kMostChanges = 500;

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

// All at once; where something of it is refused, write by write, so that the others go.
void ReplicaExchange::Send() {
  int64_t mostWrites = kMostWrites;
  while (const auto queued = replica_.Queued(mostWrites)) {
    const std::string why = Refusal(*queued);
    if (why.empty()) {
      replica_.Sent(queued->last);
    } else if (mostWrites > 1) {
      mostWrites = 1;
    } else {
      const RefusedRow row = replica_.FirstRow();
      refused_(row, why);  // ahead of its end: it is told twice rather than not at all
      replica_.Drop(row);
    }
  }
}

// Why the server does not take the writes; empty: it has them.
std::string ReplicaExchange::Refusal(const QueuedWrites& queued) {
  try {
    feed_.Take(replica_.Machine(), queued.last, queued.changes);
    return {};
  } catch (const StoreError& error) {
    if (!IsRefusal(error) || !feed_.HasItsFunctions()) throw;
    return error.what();
  }
}

bool ReplicaExchange::TakeIn() {
  for (bool more = true; more;) {
    const FeedPlace place = replica_.Place();
    const ServerChanges changes = feed_.Behind(place, kMostChanges);
    if (!changes.place.IsOfSameBase(place)) return false;
    if (changes.place == place) return true;
    if (replica_.TakeIn(changes.tables, changes.place))
      more = changes.more;
    else
      Send();
  }
  return true;
}

void ReplicaExchange::GiveNumbers() {
  if (replica_.OnlyReads()) return;
  for (const std::string& table : replica_.Tables()) {
    if (replica_.NumbersLeft(table) * 2 <= kNumbers)
      AddBlock(table, feed_.Reserve(table, kNumbers));
  }
}

void ReplicaExchange::GiveFreshNumbers(const std::string& table) {
  if (replica_.OnlyReads() || !replica_.NumbersAreBehind(table)) return;
  const int64_t first = feed_.Reserve(table, kNumbers);
  replica_.DropNumbers(table);
  AddBlock(table, first);
}

void ReplicaExchange::AddBlock(const std::string& table, int64_t first) {
  replica_.AddNumbers(table, first, first + kNumbers - 1);
}

}  // namespace zemo
