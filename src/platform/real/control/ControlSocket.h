// The control socket of a machine's folder, kept by a thread of its own: it lets clients in, reads
// their lines, has them understood, and writes to them what the logic has to say. Nobody waits for
// a client, and the logic for nobody.
#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/ControlLine.h"
#include "platform/real/control/ControlPeer.h"
#include "platform/real/control/ControlPlace.h"
#include "platform/real/control/MessageRing.h"

namespace zemo {

// Made and asked by the logic's thread.
class ControlSocket : public ControlLine {
 public:
  // `words` are the thread's from here on; `arrived` is called on it when something waits to be
  // taken, and not again until Take has said that there is nothing. Who may connect besides root is
  // `owner`, else the user that this program runs as. Throws ControlError.
  ControlSocket(const std::string& folder, ControlWords& words, std::function<void()> arrived,
                const ControlBounds& bounds = {}, std::optional<uid_t> owner = {});
  ~ControlSocket() override;  // sends away all clients, and takes the socket away
  ControlSocket(const ControlSocket&) = delete;

  bool Take(ControlRequest& request) override;
  void Answer(ControlClient client, std::string_view line) override;
  void Listen(ControlClient client, ControlChannel channel) override;
  void Publish(ControlChannel channel, std::string_view line) override;
  bool IsListenedTo(ControlChannel channel) const override;
  ControlFigures Figures() const override;

 private:
  // What the logic says, by the kind of its message; the channel stands above it.
  enum Kind : uint32_t { kAnswer, kListen, kPublish, kKinds };

  bool Tell(ControlClient client, uint32_t kind, std::string_view text);
  void Run();
  int WaitMs(ControlTime now) const;
  void Wait(ControlTime now);
  void Wake();
  void Accept(ControlTime now);
  std::optional<ControlCut> WhyNotLetIn(int socket) const;
  void SendAway(int socket, ControlCut why);
  void LetIn(int socket, ControlTime now);
  void TakeWhatTheLogicSays();
  void CarryOut(const MessageRing::Head& head, const std::string& text);
  void Serve(ControlPeer& peer, ControlTime now);
  void ServeLine(ControlPeer& peer, std::string_view line, ControlTime now);
  void CutAndForget(ControlTime now);
  void TellGone();
  void Tend(ControlTime now);
  void LookAfter(ControlTime now);
  void CountListeners();
  void Count(ControlCut why);
  ControlPeer* Find(ControlClient client);

  const ControlBounds bounds_;
  const uid_t owner_;
  ControlWords& words_;
  const std::function<void()> arrived_;
  MessageRing toLogic_, fromLogic_;
  std::atomic<bool> quit_ = false, told_ = false, overflowed_ = false;
  std::array<std::atomic<int>, kControlChannels> listeners_{}, toListen_{};
  std::atomic<uint64_t> clients_ = 0, accepted_ = 0;
  std::array<std::atomic<uint64_t>, kControlCuts> cuts_{};
  int wake_;  // an event counter: the logic has said something

  // The thread's own.
  ControlPlace place_;
  int listening_;  // -1 while it could not be made again
  std::vector<std::unique_ptr<ControlPeer>> peers_;
  std::deque<ControlClient> gone_;  // of whom the logic does not know it yet
  ControlClient last_ = 0;          // number that was given
  bool ringFull_ = false;           // a line waits for room on the way to the logic
  ControlTime looked_, tended_, acceptsFrom_;
  std::string text_;
  std::thread thread_;  // last: it uses all the others
};

}  // namespace zemo
