// The line on which other programs of this machine ask the program and give it orders. The logic
// has one end of it; who keeps the clients at the other one is a thread of its own, for which the
// logic never waits.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zemo {

using ControlClient = uint64_t;  // numbered as they come, from 1; never twice in a run

// What a client can listen to.
enum class ControlChannel { kEvents, kStatus };
inline constexpr size_t kControlChannels = 2;

struct ControlRequest {
  ControlClient client = 0;
  std::string text{};  // as the words gave it; empty: the client has gone
};

// Why a client was sent away.
enum class ControlCut {
  kUser,     // it is neither the owner of the program nor root
  kNumber,   // there were as many as there may be
  kSlow,     // it did not read what it was sent
  kFlood,    // it went on sending more than it may
  kRubbish,  // what it sent was no request, again and again, or had no end
  kFull,     // what there was to say found no room on the way
};
inline constexpr size_t kControlCuts = 6;

struct ControlFigures {
  uint64_t clients = 0;   // now
  uint64_t accepted = 0;  // since the beginning, as the others
  std::array<uint64_t, kControlCuts> cuts{};
};

// The logic's end. Lines are without their end. Thread: the logic's.
class ControlLine {
 public:
  virtual ~ControlLine() = default;

  // The oldest request that was not taken; false: there is none. Each but "gone" gets one answer.
  virtual bool Take(ControlRequest& request) = 0;
  // To a client that has gone: nothing. What finds no room on the way costs the clients their line.
  virtual void Answer(ControlClient client, std::string_view line) = 0;
  virtual void Listen(ControlClient client, ControlChannel channel) = 0;
  virtual void Publish(ControlChannel channel, std::string_view line) = 0;
  // From Listen on, up to the last one's end.
  virtual bool IsListenedTo(ControlChannel channel) const = 0;
  virtual ControlFigures Figures() const = 0;
};

// What is said on the line. Thread: that of the line.
class ControlWords {
 public:
  virtual ~ControlWords() = default;

  // The first line that a client gets.
  virtual std::string Greeting() = 0;
  // One of the two: what a line means, for the logic, and then at most kMostLonger bytes longer
  // than the line; or the answer that it gets at once, since it means nothing.
  struct Understood {
    std::string forLogic{}, answer{};
  };
  static constexpr size_t kMostLonger = 200;
  virtual Understood Understand(std::string_view line) = 0;
  // The last line of a client that is sent away.
  virtual std::string Farewell(ControlCut why) = 0;
  virtual void EverySecond() = 0;  // while anybody is there; may wait for a disk
};

}  // namespace zemo
