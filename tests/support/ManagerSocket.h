// The socket of a service manager of a test's own.
#pragma once

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace zemo::test {

class ManagerSocket {
 public:
  // A path, or behind an @ a name that no file bears.
  explicit ManagerSocket(const std::string& name)
      : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un own{};
    own.sun_family = AF_UNIX;
    if (name.size() >= sizeof own.sun_path) throw std::runtime_error(name + " is too long");
    std::memcpy(own.sun_path, name.data(), name.size());
    if (name[0] == '@') own.sun_path[0] = '\0';
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    if (bind(socket_, reinterpret_cast<const sockaddr*>(&own), length) != 0)
      throw std::runtime_error("cannot bind " + name);
  }
  ~ManagerSocket() { close(socket_); }
  ManagerSocket(const ManagerSocket&) = delete;

  // The next datagram; "" where none comes within that time.
  std::string Next(std::chrono::milliseconds within) const {
    pollfd ready{.fd = socket_, .events = POLLIN, .revents = 0};
    if (poll(&ready, 1, static_cast<int>(within.count())) != 1) return {};
    char bytes[256];
    const ssize_t count = recv(socket_, bytes, sizeof bytes, 0);
    return count > 0 ? std::string(bytes, static_cast<size_t>(count)) : std::string();
  }
  // Reads on until this datagram comes; false where it has not within that time.
  bool Comes(const std::string& datagram, std::chrono::milliseconds within) const {
    const auto end = std::chrono::steady_clock::now() + within;
    for (;;) {
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
          end - std::chrono::steady_clock::now());
      if (left.count() <= 0) return false;
      if (Next(left) == datagram) return true;
    }
  }

 private:
  int socket_;
};

}  // namespace zemo::test
