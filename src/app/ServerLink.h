// The link to the server on which the station's base stands: a thread that keeps a replica in the
// machine folder and the server alike. The program works on the replica, and waits for nothing.
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "platform/BaseLink.h"
#include "store/BasePlace.h"

namespace zemo {

class Folder;
class Replica;
class ReplicaExchange;
class ServerFeed;

inline constexpr char kReplicaName[] = "Replica-";  // begins the names of its files

class ServerLink final : public BaseLink {
 public:
  // The replica's name in the machine folder.
  static std::string FileName(const BasePlace& server);
  // Writes that a replica of that base in the machine folder still has to send; 0 without one.
  static int64_t WaitingIn(const std::string& machinePath, const BasePlace& server);

  // `server` is a server's base. Where the machine has no replica yet it is made now, if the server
  // answers: the time of a copy.
  ServerLink(const BasePlace& server, const std::string& machinePath);
  ~ServerLink() override;  // what is on its way is given up; what waits is sent at the next run

  BasePlace Place();  // of the replica, under the name of the server's base

  BaseLinkState State() const override;
  void GoesOnAir() override;
  // What there is to tell, a line each, since the last asking.
  std::vector<std::string> TakeLines();

 private:
  class Lines;

  void Run();
  void Meet();
  void Serve(ReplicaExchange& steps, ServerFeed& feed);
  void SeeToWriting(ReplicaExchange& steps, ServerFeed& feed);
  void BeginCompaction();
  void Compact();
  bool Await(ServerFeed& feed);
  void Rest(int ms);
  void SeeToTheServer();
  void MakeReplica(ServerFeed& feed, const std::string& machine, const std::string& path);
  void MakeAnew(ServerFeed& feed, ReplicaExchange& steps);
  void RequireSending();
  static void GiveFirstNumbers(ServerFeed& feed, const std::string& path);
  bool TakesItsPlace(const std::string& whole);
  void KeepRefused(const std::string& table, const std::string& values, const std::string& why);
  void Tell(const std::string& line);
  void SetReachable(bool reachable, const std::string& why);
  void CountWaiting();
  bool IsSilent() const;
  void TellAway(const std::string& why);
  void Wake() const;

  const BasePlace server_;
  const std::string machinePath_, path_;
  const int wake_;                      // an event descriptor: something was stored, or asked for
  const std::unique_ptr<Lines> lines_;  // to the server, which the end cuts
  std::atomic<bool> ends_ = false;
  std::atomic<bool> freshReport_ = false;
  std::atomic<bool> compact_ = false;
  std::atomic<bool> compacts_ = false;
  std::atomic<int64_t> askedMs_ = 0;  // since when the server is to answer; 0: nothing is asked
  std::atomic<int64_t> stored_ = 0;   // writes that began since those that wait were counted

  // The thread's.
  std::unique_ptr<Replica> replica_;                // null: none yet
  std::vector<std::unique_ptr<Replica>> replaced_;  // kept from others for good
  int64_t recheckUntilMs_ = 0;                      // something was about to be stored
  int64_t forgotMs_ = 0;                            // old changes, the last time on this line

  mutable std::mutex mutex_;  // of what follows
  BaseLinkState state_;
  bool toldAway_ = false;  // that the server is
  std::vector<std::string> told_;
  bool hasEnded_ = false;
  std::condition_variable ended_;

  std::thread compaction_;  // the thread's, which alone begins it
  std::thread thread_;      // last: it uses all the others
};

}  // namespace zemo
