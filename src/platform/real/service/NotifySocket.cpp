#include "platform/real/service/NotifySocket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace zemo {

namespace {

constexpr int kTurnsAllowed = 4;  // a turn that comes late, or is lost, does not end the program

std::string_view Variable(const char* name) {
  const char* value = std::getenv(name);
  return value ? std::string_view(value) : std::string_view();
}

// 0 where it is no number.
int64_t NumberIn(std::string_view text) {
  int64_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? number : 0;
}

// A path, or behind an @ a name that no file bears, for which the system wants a null byte.
std::string AddressOf(std::string_view named) {
  if (named.size() < 2 || named.size() >= sizeof(sockaddr_un::sun_path)) return {};
  std::string address(named);
  if (address[0] == '@') address[0] = '\0';
  return address[0] == '\0' || address[0] == '/' ? address : std::string();
}

// Another process's watchdog is not ours: a shell between the manager and us hands it on.
std::chrono::microseconds AliveEvery() {
  const int64_t allowed = NumberIn(Variable("WATCHDOG_USEC"));
  const std::string_view whose = Variable("WATCHDOG_PID");
  if (allowed <= 0 || (!whose.empty() && NumberIn(whose) != getpid())) return {};
  return std::chrono::microseconds(allowed / kTurnsAllowed);
}

}  // namespace

NotifySocket::NotifySocket() : address_(AddressOf(Variable("NOTIFY_SOCKET"))) {
  if (address_.empty()) return;
  socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  aliveEvery_ = AliveEvery();
}

NotifySocket::~NotifySocket() {
  if (socket_ >= 0) close(socket_);
}

void NotifySocket::Ready() {
  Tell("READY=1\n");
}

void NotifySocket::Stopping() {
  Tell("STOPPING=1\n");
}

void NotifySocket::Alive() {
  if (socket_ < 0) return;
  SendWaiting();
  const auto now = std::chrono::steady_clock::now();
  if (aliveEvery_.count() == 0 || now < nextAlive_) return;
  if (Send("WATCHDOG=1\n")) nextAlive_ = now + aliveEvery_;
}

void NotifySocket::Tell(std::string_view words) {
  if (socket_ < 0) return;
  waiting_ += words;
  SendWaiting();
}

void NotifySocket::SendWaiting() {
  if (!waiting_.empty() && Send(waiting_)) waiting_.clear();
}

bool NotifySocket::Send(std::string_view words) const {
  sockaddr_un to{};
  to.sun_family = AF_UNIX;
  std::memcpy(to.sun_path, address_.data(), address_.size());
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + address_.size());
  return sendto(socket_, words.data(), words.size(), MSG_DONTWAIT | MSG_NOSIGNAL,
                reinterpret_cast<const sockaddr*>(&to),  // as the call wants it
                length) == static_cast<ssize_t>(words.size());
}

}  // namespace zemo
