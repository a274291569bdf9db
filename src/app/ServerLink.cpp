// What holds at every moment: the replica in the folder is whole, and everything that this machine
// wrote is in it, be it in its queue or known to be the server's. A replica that takes the place of
// another one does so only with the other's queue empty and nobody at work on it.
#include "app/ServerLink.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <random>
#include <set>
#include <utility>

#include "platform/real/files/LocalFolder.h"
#include "station/TextForms.h"
#include "store/DatabaseFiles.h"
#include "store/StoreError.h"
#include "store/postgres/LineKeeper.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/ServerFeed.h"
#include "store/replica/Replica.h"
#include "store/replica/ReplicaExchange.h"
#include "store/replica/ServerUpkeep.h"

namespace zemo {

namespace {

constexpr int kReplicaWaitMs = 2000;  // for the program's own transactions
constexpr int kWritersWaitMs = 10000;
constexpr int kFirstRestMs = 500, kMostRestMs = 5000;  // between two attempts to reach the server
constexpr int kAskMs = 5000;      // a silent server is asked whether it is there
constexpr int kAnswerMs = 20000;  // one that leaves a step without an answer for longer is away
// Until a server that is being connected to answers the next step. Of several addresses of one the
// system has given up one that is silent before (PostgresLine's kUnansweredMs).
constexpr int kConnectStepMs = 12000;
constexpr int kRecheckMs = 20, kRecheckForMs = 1000;  // until what is being stored is stored
constexpr int kLastSendingMs = 2000;                  // of what waits at the end of the program
constexpr int kKnownDays = 8;  // a machine that was off for longer reads the whole base
constexpr int64_t kDayMs = 24LL * 3600 * 1000;
constexpr char kAside[] = ".aside";
constexpr char kReport[] = "Rapport";
constexpr char kRefused[] = "RefusedRows.Txt";

int64_t NowMs() {
  using std::chrono::steady_clock;
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             steady_clock::now().time_since_epoch())
      .count();
}

std::string NewMachineName() {
  std::random_device chance;
  std::string name;
  for (int i = 0; i < 4; ++i) name += HexMark(std::to_string(chance()));
  return name;
}

void RemoveLeftovers(const std::string& path) {
  std::error_code ignored;
  for (const char* ending : {"", "-journal"}) std::filesystem::remove(path + ending, ignored);
}

// A file that is no replica may hold what was never sent. Its journal goes with it, and would be
// played into the one that takes its place.
void PutAside(const std::string& path) {
  std::error_code ignored;
  for (const char* ending : {"-journal", ""})
    std::filesystem::rename(path + ending, path + kAside + ending, ignored);
}

// What was asked for is done, or asked for again where that fails.
template <typename Step>
void ServeWish(std::atomic<bool>& wish, Step step) {
  if (!wish.exchange(false)) return;
  try {
    step();
  } catch (...) {
    wish = true;
    throw;
  }
}

// Nobody else works on the replica; where it is not replaced in the end, others are let in again.
class Alone {
 public:
  explicit Alone(Replica& replica) : replica_(&replica) { replica.KeepAlone(); }
  ~Alone() {
    if (!replica_) return;
    try {
      replica_->LetOthersIn();
    } catch (const StoreError&) {
      // The lock goes with the next reading that gets in.
    }
  }
  Alone(const Alone&) = delete;
  void StayForGood() { replica_ = nullptr; }

 private:
  Replica* replica_;
};

}  // namespace

// The thread's lines to the server, which the end of the program may cut from outside.
class ServerLink::Lines final : public LineKeeper {
 public:
  Lines() : cut_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}
  ~Lines() override { close(cut_); }

  void Cut() {
    const std::lock_guard lock(mutex_);
    isCut_ = true;
    for (const int socket : sockets_) shutdown(socket, SHUT_RDWR);
    const uint64_t one = 1;
    if (write(cut_, &one, sizeof one) < 0) return;  // it was cut already
  }

  bool WaitFor(int socket, bool toWrite) override {
    pollfd awaited[] = {{socket, static_cast<short>(toWrite ? POLLOUT : POLLIN), 0},
                        {cut_, POLLIN, 0}};
    return poll(awaited, 2, kConnectStepMs) > 0 && awaited[1].revents == 0;
  }
  void Opened(int socket) override {
    const std::lock_guard lock(mutex_);
    sockets_.insert(socket);
    if (isCut_) shutdown(socket, SHUT_RDWR);
  }
  void Closed(int socket) override {
    const std::lock_guard lock(mutex_);
    sockets_.erase(socket);
  }

 private:
  const int cut_;  // an event descriptor, readable from the cut on
  std::mutex mutex_;
  std::set<int> sockets_;
  bool isCut_ = false;
};

std::string ServerLink::FileName(const BasePlace& server) {
  return kReplicaName + HexMark(server.name) + ".MDB";
}

int64_t ServerLink::WaitingIn(const std::string& machinePath, const BasePlace& server) {
  const std::string path = (std::filesystem::path(machinePath) / FileName(server)).string();
  return Replica::IsThere(path) ? Replica(path, kReplicaWaitMs).Waiting() : 0;
}

ServerLink::ServerLink(const BasePlace& server, const std::string& machinePath)
    : server_(server),
      machinePath_(machinePath),
      path_((std::filesystem::path(machinePath) / FileName(server)).string()),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      lines_(std::make_unique<Lines>()) {
  if (!Replica::IsThere(path_)) {
    try {
      SeeToTheServer();
      ServerFeed feed(server_.url, std::make_shared<LockWait>(kWritersWaitMs), lines_.get());
      MakeReplica(feed, NewMachineName(), path_);
      GiveFirstNumbers(feed, path_);
      Replica(path_, kReplicaWaitMs).SetSeenToBy(ProgramMark());
    } catch (const std::exception& error) {
      SetReachable(false, error.what());
    }
  }
  thread_ = std::thread([this] { Run(); });
}

ServerLink::~ServerLink() {
  ends_ = true;
  Wake();
  {
    std::unique_lock lock(mutex_);
    const auto limit = std::chrono::milliseconds(state_.reachable ? kLastSendingMs : 0);
    ended_.wait_for(lock, limit, [this] { return hasEnded_; });
  }
  lines_->Cut();
  thread_.join();
  if (compaction_.joinable()) compaction_.join();
  close(wake_);
}

BasePlace ServerLink::Place() {
  BasePlace place = server_;
  place.closed = [this](std::shared_ptr<LockWait> wait) {
    return DBEngine::ClosedReplica(path_, std::move(wait),
                                   {.stores =
                                        [this] {
                                          ++stored_;
                                          Wake();
                                        },
                                    .compact =
                                        [this] {
                                          compact_ = true;
                                          Wake();
                                        }});
  };
  return place;
}

BaseLinkState ServerLink::State() const {
  const bool silent = IsSilent();
  const std::lock_guard lock(mutex_);
  BaseLinkState state = state_;
  if (silent) {
    state.reachable = false;
    state.waiting += stored_;
  }
  return state;
}

// The thread waits for an answer, and cannot tell.
bool ServerLink::IsSilent() const {
  const int64_t askedMs = askedMs_;
  return askedMs != 0 && NowMs() - askedMs > kAnswerMs;
}

void ServerLink::GoesOnAir() {
  freshReport_ = true;
  Wake();
}

std::vector<std::string> ServerLink::TakeLines() {
  const bool silent = IsSilent();
  const std::lock_guard lock(mutex_);
  if (silent) TellAway(server_.name + " does not answer");
  return std::exchange(told_, {});
}

void ServerLink::Wake() const {
  const uint64_t one = 1;
  if (write(wake_, &one, sizeof one) < 0) return;  // it is awake already
}

void ServerLink::Tell(const std::string& line) {
  const std::lock_guard lock(mutex_);
  told_.push_back(line);
}

void ServerLink::SetReachable(bool reachable, const std::string& why) {
  const std::lock_guard lock(mutex_);
  if (!reachable) TellAway(why);
  if (reachable && toldAway_) told_.push_back(server_.name + " is reached again");
  toldAway_ = !reachable;
  state_.reachable = reachable;
}

// Once up to its return. With the mutex.
void ServerLink::TellAway(const std::string& why) {
  if (!std::exchange(toldAway_, true))
    told_.push_back(why + "; the replica on this machine serves");
}

void ServerLink::CountWaiting() {
  stored_ = 0;
  const int64_t waiting = replica_->Waiting();
  const std::lock_guard lock(mutex_);
  state_.waiting = waiting;
}

// The line in the file is there before the row leaves the queue.
void ServerLink::KeepRefused(const std::string& table, const std::string& values,
                             const std::string& why) {
  LocalFolder(machinePath_).AppendDurably(kRefused, table + '\t' + why + '\t' + values + "\r\n");
  Tell("a row of " + table + " is refused by the server, and kept in " + kRefused + ": " + why);
}

void ServerLink::Run() {
  int restMs = kFirstRestMs;
  while (!ends_) {
    const int64_t beganMs = NowMs();
    try {
      Meet();
    } catch (const std::exception& error) {
      if (!ends_) SetReachable(false, error.what());
    }
    askedMs_ = 0;
    if (NowMs() - beganMs > kMostRestMs) restMs = kFirstRestMs;
    try {
      Rest(restMs);
    } catch (const std::exception& error) {
      if (!ends_) SetReachable(false, error.what());  // the replica is held, or cannot be read
    }
    restMs = std::min(2 * restMs, kMostRestMs);
  }
  const std::lock_guard lock(mutex_);
  hasEnded_ = true;
  ended_.notify_all();
}

// What is written meanwhile does not end the rest, and is counted.
void ServerLink::Rest(int ms) {
  for (const int64_t untilMs = NowMs() + ms; !ends_ && NowMs() < untilMs;) {
    if (replica_) CountWaiting();
    pollfd woken{wake_, POLLIN, 0};
    uint64_t count = 0;
    if (poll(&woken, 1, std::min<int>(ms, 500)) > 0 && read(wake_, &count, sizeof count) < 0)
      return;
  }
}

// One line to the server, up to its end.
void ServerLink::Meet() {
  if (!replica_ && Replica::IsThere(path_))
    replica_ = std::make_unique<Replica>(path_, kReplicaWaitMs);
  ServerFeed feed(server_.url, std::make_shared<LockWait>(kWritersWaitMs), lines_.get());
  feed.RequireStation();  // ahead of all that would take it for one
  if (!replica_ || replica_->SeenToBy() != ProgramMark()) SeeToTheServer();
  if (!replica_) {
    MakeReplica(feed, NewMachineName(), path_);
    replica_ = std::make_unique<Replica>(path_, kReplicaWaitMs);
  }
  replica_->SetSeenToBy(ProgramMark());
  ReplicaExchange steps(
      *replica_, feed,
      [this](const RefusedRow& row, const std::string& why) {
        KeepRefused(row.table, row.values, why);
      },
      [this](const std::string& told) { Tell(told); });
  feed.Listen();
  const bool known = steps.Begin();
  {
    const bool onlyReads = replica_->OnlyReads();
    const std::lock_guard lock(mutex_);
    state_.onlyReads = onlyReads;
  }
  steps.Send();
  if (!known) return MakeAnew(feed, steps);
  Serve(steps, feed);
}

void ServerLink::Serve(ReplicaExchange& steps, ServerFeed& feed) {
  forgotMs_ = NowMs() - kDayMs;
  for (bool news = true; !ends_; news = Await(feed)) {
    askedMs_ = NowMs();
    steps.Send();
    askedMs_ = NowMs();
    if (news && !steps.TakeIn()) return MakeAnew(feed, steps);
    askedMs_ = NowMs();
    if (!replica_->OnlyReads()) SeeToWriting(steps, feed);
    askedMs_ = 0;
    SetReachable(true, "");
  }
  steps.Send();
}

void ServerLink::SeeToWriting(ReplicaExchange& steps, ServerFeed& feed) {
  steps.GiveNumbers();
  ServeWish(freshReport_, [&] { steps.GiveFreshNumbers(kReport); });
  BeginCompaction();
  if (NowMs() - forgotMs_ < kDayMs) return;
  feed.ForgetChanges(kKnownDays);
  forgotMs_ = NowMs();
}

// Beside the link's work, which minutes of waiting must not keep from the server.
void ServerLink::BeginCompaction() {
  if (compacts_ || !compact_.exchange(false)) return;
  if (compaction_.joinable()) compaction_.join();
  compacts_ = true;
  compaction_ = std::thread([this] {
    Compact();
    compacts_ = false;
  });
}

// Once, whatever becomes of it: the next month asks again. Who only works in the base leaves it to
// who owns it.
void ServerLink::Compact() {
  try {
    ServerFeed(server_.url, std::make_shared<LockWait>(kWritersWaitMs), lines_.get()).Compact();
  } catch (const std::exception& error) {
    if (!ends_) Tell(std::string("not compacted: ") + error.what());
  }
}

// Until there is something to do, which the end of the program is too. True: others may have stored
// something.
bool ServerLink::Await(ServerFeed& feed) {
  askedMs_ = 0;
  CountWaiting();
  if (state_.waiting > 0 && !state_.onlyReads) return false;
  pollfd awaited[] = {{wake_, POLLIN, 0}, {feed.Socket(), POLLIN, 0}};
  const int ready = poll(awaited, 2, NowMs() < recheckUntilMs_ ? kRecheckMs : kAskMs);
  uint64_t count = 0;
  if (awaited[0].revents != 0 && read(wake_, &count, sizeof count) > 0)
    recheckUntilMs_ = NowMs() + kRecheckForMs;
  return feed.TakeNotices() || (ready == 0 && NowMs() >= recheckUntilMs_);
}

void ServerLink::SeeToTheServer() {
  BringBaseUpToDate(
      server_.url, [this](const std::string& line) { Tell(line); }, lines_.get());
}

void ServerLink::MakeReplica(ServerFeed& feed, const std::string& machine,
                             const std::string& path) {
  askedMs_ = 0;                        // it may take its time
  const FeedPlace place = feed.Now();  // ahead of the copy: what comes meanwhile is taken in later
  const auto base =
      ClosedPostgresDatabase(server_.url, std::make_shared<LockWait>(kWritersWaitMs), lines_.get());
  base->Open(false);
  const std::string fresh = path_ + ".new";
  RemoveLeftovers(fresh);
  PutAside(path);
  Replica::Make(*base, place, machine, fresh);
  feed.RequireStation();  // it was not moved away ahead of the copy
  std::filesystem::rename(fresh, path);
}

// What the program wrote while the copy was made is sent before the former replica goes.
void ServerLink::MakeAnew(ServerFeed& feed, ReplicaExchange& steps) {
  const std::string whole = path_ + ".whole";
  RequireSending();
  // A structure that somebody changed under the program is his affair up to the next start.
  if (feed.Now().base != replica_->Place().base) SeeToTheServer();
  RemoveLeftovers(whole);
  MakeReplica(feed, replica_->Machine(), whole);
  GiveFirstNumbers(feed, whole);
  while (!TakesItsPlace(whole)) {
    if (ends_) return;
    RequireSending();
    steps.Send();
  }
}

// A fresh replica would not have what waits.
void ServerLink::RequireSending() {
  if (replica_->OnlyReads() && replica_->Waiting() > 0)
    throw StoreError(kErrReadOnly,
                     "what this machine has to send keeps its replica as it is: it needs a role "
                     "that writes, and a program as new as the base");
}

void ServerLink::GiveFirstNumbers(ServerFeed& feed, const std::string& path) {
  Replica fresh(path, kReplicaWaitMs);
  ReplicaExchange steps(fresh, feed, nullptr, nullptr);
  steps.TakeRights();
  steps.GiveNumbers();
}

// False: something was written in the former replica meanwhile.
bool ServerLink::TakesItsPlace(const std::string& whole) {
  Alone alone(*replica_);
  if (replica_->Waiting() != 0) return false;
  Replica(whole, kReplicaWaitMs).TakeOver(*replica_);
  std::filesystem::rename(whole, path_);
  alone.StayForGood();
  replaced_.push_back(std::move(replica_));
  return true;
}

}  // namespace zemo
