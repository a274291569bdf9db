// One client of the control socket: what came of it, what is still to be sent to it, and how much
// of either is borne.
#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "platform/ControlLine.h"

namespace zemo {

using ControlTime = std::chrono::steady_clock::time_point;

// What a client may cost; tests have others.
struct ControlBounds {
  size_t clients = 32;
  size_t lineBytes = 64 * 1024;            // of a request
  size_t unreadBytes = 512 * 1024;         // that wait until the client reads them
  size_t unanswered = 8;                   // requests; no more are read from it meanwhile
  double linesASecond = 50;                // in the long run ...
  double linesAtOnce = 100;                // ... and ahead of it
  std::chrono::milliseconds flood{10000};  // slowed for so long without a pause it is cut
  int rubbish = 10;                        // lines that mean nothing, one behind the other
  std::chrono::milliseconds look{5000};  // between two looks whether the socket still stands there
};

// Thread: that of the line.
class ControlPeer {
 public:
  // Owns the socket, which never blocks.
  ControlPeer(ControlClient number, int socket, const ControlBounds& bounds, ControlTime now);
  ~ControlPeer();
  ControlPeer(const ControlPeer&) = delete;

  ControlClient Number() const { return number_; }
  int Socket() const { return socket_; }

  // For poll: whether more is to be read, or something waits to be sent.
  short Events() const;
  // When the line that it has sent may be served; nothing where there is none.
  std::optional<ControlTime> NextTurn(ControlTime now) const;

  void Receive();  // takes in what has come, within its bounds
  void Send();     // as much as it takes
  void Say(std::string_view line);

  // The next whole line, if it may be served now; it holds up to TakeLine, which passes over it.
  std::optional<std::string_view> NextLine(ControlTime now);
  void TakeLine(ControlTime now);
  void Asked() { ++unanswered_, rubbish_ = 0, asked_ = true; }  // the line was a request ...
  void Babbled() { ++rubbish_; }                                // ... or was none
  bool HasAsked() const { return asked_; }                      // ever
  void Answered() {
    if (unanswered_ > 0) --unanswered_;
  }

  bool Listens(ControlChannel channel) const { return listens_[static_cast<size_t>(channel)]; }
  void Listen(ControlChannel channel) { listens_[static_cast<size_t>(channel)] = true; }

  // Why it is to be sent away now.
  std::optional<ControlCut> ToBeCut(ControlTime now) const;
  void HangUp() { gone_ = true; }
  // It has gone, or wants nothing more and has all its answers.
  bool Gone() const;

 private:
  double TokensAt(ControlTime now) const;
  bool Waits() const { return unanswered_ >= bounds_.unanswered; }
  bool HasLine() const { return in_.find('\n') != std::string::npos; }
  void NoteSlowed(ControlTime now);

  ControlClient number_;
  int socket_;
  const ControlBounds& bounds_;
  std::string in_, out_;
  size_t sent_ = 0;  // bytes of out_
  size_t unanswered_ = 0;
  int rubbish_ = 0;
  std::array<bool, kControlChannels> listens_{};
  double tokens_;
  ControlTime tokensAt_;
  std::optional<ControlTime> slowedSince_;
  bool asked_ = false;
  bool ended_ = false;  // it sends nothing more
  bool gone_ = false;
};

}  // namespace zemo
