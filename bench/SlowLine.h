// A line to a server that can be made slow, silent or cut: a process that takes connections at one
// socket of the local machine and hands every byte on to another one, both ways, in its order.
#pragma once

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <deque>
#include <list>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zemo::bench {

// Shared memory, written by who makes the troubles.
struct LineBoard {
  std::atomic<int> delayMs;  // of each byte, each way
  std::atomic<bool> silent;  // nothing goes on, and nothing is closed
  std::atomic<int> cuts;     // counted up: every connection is closed
};

class SlowLine {
 public:
  // Sockets by their paths. Throws std::runtime_error.
  SlowLine(const std::string& from, std::string to, LineBoard& board)
      : to_(std::move(to)), board_(board), listener_(Socket()) {
    const sockaddr_un address = Address(from);
    if (bind(listener_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener_, 64) != 0)
      throw std::runtime_error(from + ": " + std::strerror(errno));
  }
  SlowLine(const SlowLine&) = delete;

  // Up to the end of its process.
  [[noreturn]] void Serve() {
    for (;;) {
      if (board_.cuts != cuts_) Cut();
      Await();
      if (board_.silent) continue;
      Accept();
      for (auto pair = pairs_.begin(); pair != pairs_.end();) {
        const bool there = Pass(pair->there) && Pass(pair->back);
        if (!there) Close(*pair);
        pair = there ? std::next(pair) : pairs_.erase(pair);
      }
    }
  }

 private:
  using Clock = std::chrono::steady_clock;
  struct Piece {
    Clock::time_point due;
    std::string bytes;  // none: the end
  };
  struct Way {
    int from, to;
    std::deque<Piece> pieces;
    bool ended;
  };
  struct Pair {
    Way there, back;
  };
  static constexpr int kLookMs = 2;
  static constexpr size_t kMostPieces = 256;  // of kPiece bytes at most, on their way

  static int Socket() { return socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0); }
  static sockaddr_un Address(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path) throw std::runtime_error("too long: " + path);
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
  }

  void Await() {
    std::vector<pollfd> sockets = {{listener_, POLLIN, 0}};
    bool waits = board_.silent;
    for (const Pair& pair : pairs_)
      for (const Way* way : {&pair.there, &pair.back}) {
        waits = waits || !way->pieces.empty();
        if (!way->ended) sockets.push_back({way->from, POLLIN, 0});
      }
    if (board_.silent)
      poll(nullptr, 0, kLookMs);
    else
      poll(sockets.data(), sockets.size(), waits ? kLookMs : 10 * kLookMs);
  }

  void Accept() {
    const int near = accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (near < 0) return;
    const int far = Socket();
    const sockaddr_un address = Address(to_);
    if (connect(far, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
      close(near);
      close(far);
      return;
    }
    pairs_.push_back({{near, far, {}, false}, {far, near, {}, false}});
  }

  // False: it has come to its end.
  bool Pass(Way& way) {
    char bytes[1 << 16];
    while (!way.ended && way.pieces.size() < kMostPieces) {
      const ssize_t size = read(way.from, bytes, sizeof bytes);
      if (size < 0 && (errno == EAGAIN || errno == EINTR)) break;
      way.ended = size <= 0;
      way.pieces.push_back({Clock::now() + std::chrono::milliseconds(board_.delayMs),
                            std::string(bytes, static_cast<size_t>(way.ended ? 0 : size))});
    }
    while (!way.pieces.empty() && way.pieces.front().due <= Clock::now()) {
      std::string& piece = way.pieces.front().bytes;
      if (piece.empty()) return false;
      const ssize_t size = send(way.to, piece.data(), piece.size(), MSG_NOSIGNAL);
      if (size < 0) return errno == EAGAIN || errno == EINTR;
      piece.erase(0, static_cast<size_t>(size));
      if (!piece.empty()) return true;
      way.pieces.pop_front();
    }
    return true;
  }

  static void Close(const Pair& pair) {
    close(pair.there.from);
    close(pair.there.to);
  }
  void Cut() {
    cuts_ = board_.cuts;
    for (const Pair& pair : pairs_) Close(pair);
    pairs_.clear();
  }

  const std::string to_;
  LineBoard& board_;
  const int listener_;
  int cuts_ = 0;
  std::list<Pair> pairs_;
};

}  // namespace zemo::bench
