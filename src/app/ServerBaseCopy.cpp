#include "app/ServerBaseCopy.h"

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "app/BaseBackup.h"
#include "app/ErrorLine.h"
#include "app/ServerLink.h"
#include "store/CarryOver.h"
#include "store/Database.h"
#include "store/StoreError.h"
#include "store/postgres/ServerFeed.h"
#include "store/replica/Replica.h"

namespace zemo {

namespace fs = std::filesystem;

namespace {

constexpr int kServerWaitMs = 5000;
constexpr int64_t kChangesAtATime = 5000;  // nobody else has the copy

fs::path ReplicaIn(const std::string& machine, const BasePlace& place) {
  return fs::path(machine) / ServerLink::FileName(place);
}

void ReadOver(const BasePlace& place, const std::string& to) {
  fs::remove(to);  // what of a replica was of no use
  const auto server = place.closed(std::make_shared<LockWait>(kServerWaitMs));
  server->Open(false);
  ReadOverToFile(*server, to);
}

std::string WritesOfThisMachine(int64_t count) {
  return std::to_string(count) + (count == 1 ? " write" : " writes") + " of this machine";
}

// False: the server's base is another one, or of another structure.
bool TakesInWhatIsBehind(Replica& copy, ServerFeed& feed) {
  if (!feed.GoesOnFrom(copy.Place())) return false;
  if (const int64_t taken = feed.TakenFrom(copy.Machine()); copy.HasHad(taken)) copy.Sent(taken);
  for (bool more = true; more;) {
    const ServerChanges changes = feed.Behind(copy.Place(), kChangesAtATime);
    if (!changes.place.IsOfSameBase(copy.Place())) return false;
    copy.TakeInBesideQueue(changes.tables, changes.place);
    more = changes.more;
  }
  return true;
}

void TellAway(const std::string& why, Replica& copy) {
  std::string line = why + "; the replica on this machine answers";
  if (const std::string last = copy.Place().mark; !last.empty())
    line += ", with what was stored on the server up to " + last;
  if (const int64_t waiting = copy.Waiting(); waiting > 0)
    line += ", and with " + WritesOfThisMachine(waiting) + " that it has still to take";
  PrintError(line, Gravity::kWarning);
}

// False: only the server knows its base.
bool IsBroughtUpToDate(const BasePlace& place, const std::string& path) {
  Replica copy(path, kServerWaitMs);
  try {
    ServerFeed feed(place.url, std::make_shared<LockWait>(kServerWaitMs));
    if (TakesInWhatIsBehind(copy, feed)) return true;
    if (const int64_t waiting = copy.Waiting(); waiting > 0)
      PrintError(WritesOfThisMachine(waiting) + " are not on the server yet, and not in the answer",
                 Gravity::kWarning);
    return false;
  } catch (const StoreError& error) {
    TellAway(error.what(), copy);
    return true;
  }
}

}  // namespace

void CopyServerBase(const BasePlace& place, const std::string& machine, const std::string& to) {
  if (!place.fault.empty()) throw std::runtime_error(place.fault);
  const fs::path replica = ReplicaIn(machine, place);
  if (machine.empty() || !Replica::IsThere(replica.string()) || !BackUpBase(replica.string(), to))
    return ReadOver(place, to);
  if (fs::is_symlink(replica) || IsBroughtUpToDate(place, to)) return Replica::MakePlain(to);
  ReadOver(place, to);
}

void LinkReplica(const BasePlace& place, const std::string& from, const std::string& to) {
  if (place.isFile) return;
  const fs::path replica = fs::absolute(ReplicaIn(from, place));
  if (fs::exists(replica)) fs::create_symlink(replica, ReplicaIn(to, place));
}

}  // namespace zemo
