#include "app/EndSignals.h"

#include <pthread.h>
#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <utility>

namespace zemo {

namespace {
sigset_t Signals() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGINT);
  sigaddset(&set, SIGTERM);
  return set;
}
}  // namespace

EndSignals::EndSignals() {
  const sigset_t set = Signals();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  signals_ = signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK);
}

EndSignals::~EndSignals() {
  notifier_.reset();
  close(signals_);
  const sigset_t set = Signals();
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

void EndSignals::Deliver(std::function<void()> asked) {
  notifier_ = std::make_unique<QSocketNotifier>(signals_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this, asked = std::move(asked)] {
    signalfd_siginfo signal{};
    while (read(signals_, &signal, sizeof signal) == sizeof signal) asked();
  });
}

}  // namespace zemo
