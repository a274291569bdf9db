// The event counter behind WakeUp.
#include "platform/real/sound/WakeUp.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <system_error>

namespace zemo {

WakeUp::WakeUp() : event_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  if (event_ < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
}

WakeUp::~WakeUp() {
  close(event_);
}

void WakeUp::Signal() {
  const uint64_t one = 1;
  // It fails only when the counter is full, and then the wait ends anyway.
  [[maybe_unused]] const ssize_t done = write(event_, &one, sizeof one);
}

void WakeUp::Wait(int ms) {
  pollfd waited{event_, POLLIN, 0};
  poll(&waited, 1, ms);
  uint64_t count = 0;
  [[maybe_unused]] const ssize_t done = read(event_, &count, sizeof count);
}

}  // namespace zemo
