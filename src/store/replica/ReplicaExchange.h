// What a replica and its server tell each other, a step a call: whoever keeps them alike calls the
// steps in turn, on a thread that may wait for the network.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "store/StoreError.h"
#include "store/postgres/ServerFeed.h"
#include "store/replica/Replica.h"

namespace zemo {

// A row that was written here and that the server does not take, and why.
using TellRefused = std::function<void(const RefusedRow& row, const std::string& why)>;
// A line about the replica itself.
using TellReplica = std::function<void(const std::string& line)>;

// Neither is owned. Thread: theirs. Steps throw StoreError: where the server is away, or others
// hold it or the replica for too long, the step is to be made again later.
class ReplicaExchange {
 public:
  ReplicaExchange(Replica& replica, ServerFeed& feed, TellRefused refused, TellReplica told)
      : replica_(replica), feed_(feed), refused_(std::move(refused)), told_(std::move(told)) {}

  // What this machine's role may write is known from now on, to the replica too.
  void TakeRights();
  // First on a new line to the server: what it has taken of the queue leaves it, though the answer
  // was lost. False: the replica is of another base, or of another structure, and to be made anew
  // once the queue is sent.
  bool Begin();
  // What waits in the queue is sent, to its end; nothing by who only reads, whose queue stays.
  void Send();
  // What others have stored is taken in; by who only reads without the rows that wait. False as
  // Begin.
  bool TakeIn();
  // Every table has numbers for new rows, most of a block at least; none for who only reads.
  void GiveNumbers();
  // Where the table's next rows would get numbers below that of another machine's row they get
  // others, above all: for a table whose rows are read by the order of their numbers.
  void GiveFreshNumbers(const std::string& table);

 private:
  void GoOnFromAnOlderState(int64_t taken);
  void GiveOnlyNumbersFromNowOn(const std::string& table);
  std::string Refusal(const QueuedWrites& queued);
  bool IsRefusal(const StoreError& error, const QueuedWrites& queued);
  bool IsClosed(const std::string& table) const;
  bool PutIn(const ServerChanges& changes);
  void AddBlock(const std::string& table, int64_t first);

  Replica& replica_;
  ServerFeed& feed_;
  const TellRefused refused_;
  const TellReplica told_;
  std::vector<std::string> closed_;  // tables that this role does not write
};

}  // namespace zemo
