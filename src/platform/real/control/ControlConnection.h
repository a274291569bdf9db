// The other end of a control socket: for a program that asks one on air.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/real/control/ControlPlace.h"

namespace zemo {

// Waits for what it asks. Thread: one. Throws ControlError.
class ControlConnection {
 public:
  explicit ControlConnection(const std::string& folder);
  ~ControlConnection();
  ControlConnection(const ControlConnection&) = delete;

  void Say(std::string_view line);
  // The next line, without its end; nullopt: the other end has closed. Throws where none comes
  // within that time, ms; negative: without a bound.
  std::optional<std::string> Line(int withinMs);

 private:
  bool Wait(short events, int withinMs) const;

  int socket_;
  std::string in_;
};

}  // namespace zemo
