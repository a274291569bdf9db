#include "app/TempFolder.h"

#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace zemo {

namespace {
sigset_t EndSignals() {
  sigset_t set;
  sigemptyset(&set);
  for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&set, signal);
  return set;
}

std::runtime_error Failure(const std::string& what) {
  return std::runtime_error(what + ": " + std::strerror(errno));
}
}  // namespace

TempFolder::TempFolder() {
  std::error_code none;
  auto base = std::filesystem::temp_directory_path(none);
  if (none) base = "/tmp";
  path_ = (base / "zemoradio-XXXXXX").string();
  const sigset_t set = EndSignals();
  pthread_sigmask(SIG_BLOCK, &set, nullptr);  // first: no signal finds the folder unwatched
  if (!mkdtemp(path_.data())) throw Failure("cannot make a folder in " + base.string());
  signals_ = signalfd(-1, &set, SFD_CLOEXEC);
  end_ = eventfd(0, EFD_CLOEXEC);
  watcher_ = std::thread([this] { WaitForSignals(); });
}

TempFolder::~TempFolder() {
  const uint64_t one = 1;
  if (write(end_, &one, sizeof one) == sizeof one) watcher_.join();
  close(end_);
  close(signals_);
  Remove();
  const sigset_t set = EndSignals();
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

std::string TempFolder::MakeFolder(const std::string& name) const {
  const std::string path = path_ + "/" + name;
  std::filesystem::create_directory(path);
  return path;
}

void TempFolder::Remove() const {
  // The run may still be writing: what appears meanwhile goes too.
  std::error_code error;
  for (int attempt = 0; attempt < 100; ++attempt) {
    std::filesystem::remove_all(path_, error);
    if (!error) return;
  }
}

void TempFolder::WaitForSignals() const {
  pollfd waits[] = {{.fd = signals_, .events = POLLIN, .revents = 0},
                    {.fd = end_, .events = POLLIN, .revents = 0}};
  while (poll(waits, 2, -1) < 0 && errno == EINTR) {
  }
  signalfd_siginfo signal{};
  if (waits[0].revents == 0 || read(signals_, &signal, sizeof signal) != sizeof signal) return;
  Remove();
  _exit(128 + static_cast<int>(signal.ssi_signo));
}

}  // namespace zemo
