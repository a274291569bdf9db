// The logic's part of the control socket: it answers what is asked, gives the orders at the first
// free moment, and tells those who listen what happens.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>

#include "app/ControlSources.h"
#include "app/ControlWords.h"
#include "app/StatusPicture.h"
#include "platform/ControlLine.h"
#include "platform/EventLoop.h"
#include "station/EngineEvents.h"

namespace zemo {

struct Station;

// Thread: the logic's. The station outlives it.
class ControlServer : public EventSink {
 public:
  static constexpr int64_t kOrderWaitsMs = 10000;  // for a free moment; then it is refused

  ControlServer(Station& station, ControlSources sources);
  ~ControlServer() override;

  // What its line calls, on any thread, when something has arrived; it holds longer than this.
  std::function<void()> Arrival();
  void SetLine(std::unique_ptr<ControlLine> line) { line_ = std::move(line); }

  void OnEvent(const Event& event) override;

 private:
  struct Waiting {
    ControlClient client = 0;
    std::string id;
    std::vector<std::string> words;
    int64_t untilMs = 0;  // monotonic
  };

  void Serve();
  void ServeRequests();
  void ServeRequest(const ControlRequest& request);
  void ServeAsk(ControlClient client, ControlAsk& ask);
  void Watch(ControlClient client, const std::string& id, ControlChannel channel);
  void Forget(ControlClient client);
  void ServeOrders();
  void RefuseLate();
  std::string AnswerOf(const Waiting& order);
  void TellStatus();

  Station& station_;
  ControlSources sources_;
  StatusPicture picture_;
  std::deque<Waiting> orders_;            // oldest first
  bool ordering_ = false;                 // one is being carried out, maybe up the stack
  std::unique_ptr<LoopTimer> serving_;    // while more requests may have come than were served
  std::unique_ptr<LoopTimer> asking_;     // while orders wait
  std::unique_ptr<LoopTimer> telling_;    // while somebody listens to the status
  std::string told_;                      // the picture that they had last
  std::string shown_;                     // the picture that those who ask at this moment get
  std::shared_ptr<ControlServer*> self_;  // for what is posted; null behind its end
  std::unique_ptr<ControlLine> line_;     // may be null; goes first
};

}  // namespace zemo
