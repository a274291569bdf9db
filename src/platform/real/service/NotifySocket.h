// The service manager of the machine, systemd or one that speaks as it does: it is told through the
// datagram socket that its environment names (sd_notify(3)).
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/ServiceManager.h"

namespace zemo {

// Without libsystemd, whose call waits where the manager does not read: a datagram that finds no
// room is left out here, and sent by a later turn of the tick. Thread: the logic's.
class NotifySocket final : public ServiceManager {
 public:
  // Where NOTIFY_SOCKET, WATCHDOG_USEC and WATCHDOG_PID say; nothing is told where they do not.
  NotifySocket();
  ~NotifySocket() override;
  NotifySocket(const NotifySocket&) = delete;

  void Ready() override;
  void Alive() override;  // told four times within the time that the manager allows
  void Stopping() override;

 private:
  void Tell(std::string_view words);
  void SendWaiting();
  bool Send(std::string_view words) const;

  std::string address_;  // as the system wants it; empty: nobody to tell
  int socket_ = -1;
  std::string waiting_;                     // lines that found no room
  std::chrono::microseconds aliveEvery_{};  // 0: nobody waits for it
  std::chrono::steady_clock::time_point nextAlive_{};
};

}  // namespace zemo
