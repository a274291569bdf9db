#include "platform/real/control/ControlConnection.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>

namespace zemo {

namespace {

constexpr size_t kPiece = 64 * 1024;
constexpr int kSayMs = 10000;
constexpr int kKnocks = 100, kBetweenKnocksMs = 50;

using std::chrono::steady_clock;

// Where as many wait to be let in as may, it lets them in within a moment.
int Knock(const ControlPlace& place) {
  for (int knock = 1; knock < kKnocks; ++knock) {
    const int made = place.Connect();
    if (made >= 0 || errno != EAGAIN) return made;
    poll(nullptr, 0, kBetweenKnocksMs);
  }
  return place.Connect();
}

int ConnectTo(const std::string& folder) {
  const int made = Knock(ControlPlace(folder));
  if (made >= 0) return made;
  if (errno == ENOENT || errno == ECONNREFUSED)
    throw ControlError("nothing is on air with the machine folder " + folder);
  throw ControlError("cannot connect to " + folder + "/" + kControlSocketName + ": " +
                     std::strerror(errno));
}

}  // namespace

ControlConnection::ControlConnection(const std::string& folder) : socket_(ConnectTo(folder)) {}

ControlConnection::~ControlConnection() {
  close(socket_);
}

bool ControlConnection::Wait(short events, int withinMs) const {
  pollfd waited{socket_, events, 0};
  const int ready = poll(&waited, 1, withinMs);
  return ready > 0 || (ready < 0 && errno == EINTR);
}

void ControlConnection::Say(std::string_view line) {
  std::string text(line);
  text += '\n';
  for (size_t sent = 0; sent < text.size();) {
    const ssize_t count = send(socket_, text.data() + sent, text.size() - sent, MSG_NOSIGNAL);
    if (count >= 0)
      sent += static_cast<size_t>(count);
    else if (errno != EAGAIN && errno != EINTR)
      return;  // it has closed: its last words can still be read
    else if (!Wait(POLLOUT, kSayMs))
      throw ControlError("the program on air takes no request");
  }
}

std::optional<std::string> ControlConnection::Line(int withinMs) {
  const auto latest = steady_clock::now() + std::chrono::milliseconds(withinMs);
  for (;;) {
    if (const size_t end = in_.find('\n'); end != std::string::npos) {
      std::string line = in_.substr(0, end);
      in_.erase(0, end + 1);
      return line;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(latest - steady_clock::now());
    if (withinMs >= 0 && left.count() <= 0)
      throw ControlError("the program on air does not answer");
    if (!Wait(POLLIN, withinMs < 0 ? -1 : static_cast<int>(left.count()))) continue;
    const size_t had = in_.size();
    in_.resize(had + kPiece);
    const ssize_t count = recv(socket_, in_.data() + had, kPiece, 0);
    const int error = errno;
    in_.resize(had + static_cast<size_t>(count > 0 ? count : 0));
    if (count == 0 || (count < 0 && error != EAGAIN && error != EINTR)) return std::nullopt;
  }
}

}  // namespace zemo
