#include "store/replica/ReplicaExchange.h"

#include <algorithm>
#include <optional>

namespace zemo {

namespace {

// Numbers of one table that a machine gets at a time: a day and more of a station's report, or an
// import of a whole library, while the server is away. Two thousand million are to be had.
constexpr int64_t kNumbers = 50000;
constexpr int64_t kMostWrites = 5000;  // that are sent at a time
// That are taken in at a time: the replica is locked meanwhile.
constexpr int64_t kMostChanges = 100;

}  // namespace

void ReplicaExchange::TakeRights() {
  closed_ = feed_.ClosedTables();
  const Writing writing = !feed_.IsOfThisVersion() ? Writing::kNewerBase
                          : feed_.MayWrite()       ? Writing::kAllowed
                                                   : Writing::kRoleReads;
  replica_.SetWriting(writing, closed_);
}

bool ReplicaExchange::Begin() {
  TakeRights();
  const int64_t taken = feed_.TakenFrom(replica_.Machine());
  const bool isOlderState = !replica_.HasHad(taken);
  if (isOlderState && !replica_.OnlyReads()) GoOnFromAnOlderState(taken);
  if (!isOlderState && taken > 0) replica_.Sent(taken);
  return feed_.GoesOnFrom(replica_.Place());
}

// The server has taken more of this machine than its queue has ever had: what is in the queue was
// written since the older state was put back, and may stand under numbers that were given before.
// What the server has had since then it tells as any other change.
void ReplicaExchange::GoOnFromAnOlderState(int64_t taken) {
  for (const auto& [table, numbers] : replica_.NewRows()) {
    if (IsClosed(table)) continue;
    const ServerRows there = feed_.RowsOf(table, numbers);
    if (there.rows.empty()) continue;
    replica_.GiveOtherNumbers(there, feed_.Reserve(table, static_cast<int64_t>(there.rows.size())));
  }
  for (const std::string& table : replica_.Tables()) GiveOnlyNumbersFromNowOn(table);
  replica_.GoOnBehind(taken);
  told_(
      "the replica of this machine was put back to an older state: what was written in it since "
      "is sent");
}

// All at once; where something of it is refused, write by write, so that the others go.
void ReplicaExchange::Send() {
  if (replica_.OnlyReads()) return;
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
    if (!IsRefusal(error, queued) || !feed_.HasItsFunctions() || !feed_.HoldsStation()) throw;
    return error.what();
  }
}

// Not the way to the server, but what was sent. Who may write nothing at all keeps all that he has.
bool ReplicaExchange::IsRefusal(const StoreError& error, const QueuedWrites& queued) {
  if (error.Number() != kErrReadOnly) return !error.MayPass();
  closed_ = feed_.ClosedTables();
  return feed_.MayWrite() && std::any_of(queued.tables.begin(), queued.tables.end(),
                                         [this](const auto& table) { return IsClosed(table); });
}

bool ReplicaExchange::IsClosed(const std::string& table) const {
  return std::find(closed_.begin(), closed_.end(), table) != closed_.end();
}

bool ReplicaExchange::TakeIn() {
  for (bool more = true; more;) {
    const FeedPlace place = replica_.Place();
    const ServerChanges changes = feed_.Behind(place, kMostChanges);
    if (!changes.place.IsOfSameBase(place)) return false;
    if (changes.place == place) return true;
    if (PutIn(changes))
      more = changes.more;
    else
      Send();
  }
  return true;
}

// False: something is to be sent first. What cannot be sent keeps nobody from reading.
bool ReplicaExchange::PutIn(const ServerChanges& changes) {
  if (!replica_.OnlyReads()) return replica_.TakeIn(changes.tables, changes.place);
  replica_.TakeInBesideQueue(changes.tables, changes.place);
  return true;
}

void ReplicaExchange::GiveNumbers() {
  if (replica_.OnlyReads()) return;
  for (const std::string& table : replica_.Tables()) {
    if (!IsClosed(table) && replica_.NumbersLeft(table) * 2 <= kNumbers)
      AddBlock(table, feed_.Reserve(table, kNumbers));
  }
}

void ReplicaExchange::GiveFreshNumbers(const std::string& table) {
  if (replica_.NumbersAreBehind(table)) GiveOnlyNumbersFromNowOn(table);
}

void ReplicaExchange::GiveOnlyNumbersFromNowOn(const std::string& table) {
  if (replica_.OnlyReads() || IsClosed(table)) return;
  const int64_t first = feed_.Reserve(table, kNumbers);
  replica_.DropNumbers(table);
  AddBlock(table, first);
}

void ReplicaExchange::AddBlock(const std::string& table, int64_t first) {
  replica_.AddNumbers(table, first, first + kNumbers - 1);
}

}  // namespace zemo
