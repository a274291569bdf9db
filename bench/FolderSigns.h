// What happens to the files of one folder, at the moment at which the system does it.
#pragma once

#include <poll.h>
#include <strings.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>

namespace zemo::bench {

class FolderSigns {
 public:
  using Clock = std::chrono::steady_clock;
  // `mask` is one of inotify's.
  using Wanted = std::function<bool(uint32_t mask, const std::string& name)>;

  explicit FolderSigns(const std::string& folder)
      : signs_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    if (inotify_add_watch(signs_, folder.c_str(), IN_CREATE | IN_DELETE | IN_MOVE) < 0)
      throw std::runtime_error("cannot watch " + folder);
  }
  ~FolderSigns() { close(signs_); }
  FolderSigns(const FolderSigns&) = delete;

  // Forgets what happened so far.
  void Clear() {
    char buffer[4096];
    while (read(signs_, buffer, sizeof buffer) > 0) {
    }
  }

  // True as soon as something wanted happens; false when `latest` comes or `over`, asked at
  // least every 20 ms, says that it is over.
  bool Wait(const Wanted& wanted, Clock::time_point latest, const std::function<bool()>& over) {
    while (Clock::now() < latest && !over()) {
      pollfd ready{signs_, POLLIN, 0};
      if (poll(&ready, 1, 20) == 1 && TakeOne(wanted)) return true;
    }
    return false;
  }

 private:
  bool TakeOne(const Wanted& wanted) {
    alignas(inotify_event) char buffer[4096];
    const ssize_t size = read(signs_, buffer, sizeof buffer);
    for (ssize_t at = 0; at < size;) {
      const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
      if (event->len > 0 && wanted(event->mask, event->name)) return true;
      at += static_cast<ssize_t>(sizeof *event + event->len);
    }
    return false;
  }

  int signs_;
};

// Names of a station's folder know no case.
inline bool SameName(const std::string& a, const char* b) {
  return strcasecmp(a.c_str(), b) == 0;
}

}  // namespace zemo::bench
