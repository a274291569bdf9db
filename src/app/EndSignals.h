// SIGINT and SIGTERM as events of the loop.
#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace zemo {

// From the moment it is made the signals no longer end the process. Made before other threads are,
// which then leave the signals to it; Deliver needs the application's event loop.
class EndSignals {
 public:
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  // `asked` is called on the loop's thread at each signal, also at one that came before.
  void Deliver(std::function<void()> asked);

 private:
  int signals_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace zemo
