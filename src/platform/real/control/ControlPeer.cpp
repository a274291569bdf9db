#include "platform/real/control/ControlPeer.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace zemo {

namespace {
constexpr size_t kPieceBytes = 16 * 1024;
}

ControlPeer::ControlPeer(ControlClient number, int socket, const ControlBounds& bounds,
                         ControlTime now)
    : number_(number),
      socket_(socket),
      bounds_(bounds),
      tokens_(bounds.linesAtOnce),
      tokensAt_(now) {}

ControlPeer::~ControlPeer() {
  close(socket_);
}

short ControlPeer::Events() const {
  const bool reads = !ended_ && !Waits() && !HasLine();
  return static_cast<short>((reads ? POLLIN : 0) | (sent_ < out_.size() ? POLLOUT : 0));
}

double ControlPeer::TokensAt(ControlTime now) const {
  const std::chrono::duration<double> since = now - tokensAt_;
  return std::min(bounds_.linesAtOnce, tokens_ + since.count() * bounds_.linesASecond);
}

std::optional<ControlTime> ControlPeer::NextTurn(ControlTime now) const {
  if (Waits() || !HasLine()) return std::nullopt;
  const double missing = std::max(0.0, 1 - TokensAt(now));
  return now + std::chrono::duration_cast<ControlTime::duration>(
                   std::chrono::duration<double>(missing / bounds_.linesASecond));
}

void ControlPeer::Receive() {
  while (!ended_ && !gone_ && !HasLine() && in_.size() <= bounds_.lineBytes) {
    const size_t had = in_.size();
    in_.resize(had + kPieceBytes);
    const ssize_t count = recv(socket_, in_.data() + had, kPieceBytes, 0);
    const int error = errno;
    in_.resize(had + static_cast<size_t>(std::max<ssize_t>(count, 0)));
    if (count == 0) ended_ = true;
    if (count >= 0) continue;
    gone_ = error != EAGAIN && error != EINTR;
    return;
  }
}

void ControlPeer::Send() {
  while (sent_ < out_.size() && !gone_) {
    const ssize_t count = send(socket_, out_.data() + sent_, out_.size() - sent_, MSG_NOSIGNAL);
    if (count >= 0) {
      sent_ += static_cast<size_t>(count);
    } else {
      gone_ = errno != EAGAIN && errno != EINTR;
      break;
    }
  }
  if (sent_ == out_.size()) {
    out_.clear();
    sent_ = 0;
  }
}

void ControlPeer::Say(std::string_view line) {
  if (sent_ > 0) out_.erase(0, sent_);
  sent_ = 0;
  out_ += line;
  out_ += '\n';
  Send();
}

// One that sends again as soon as it may is slowed all that time; a pause ends that.
void ControlPeer::NoteSlowed(ControlTime now) {
  const bool slowed = HasLine() && TokensAt(now) < 1;
  if (slowed && !slowedSince_) slowedSince_ = now;
  if (!slowed && TokensAt(now) >= bounds_.linesAtOnce / 2) slowedSince_.reset();
}

std::optional<std::string_view> ControlPeer::NextLine(ControlTime now) {
  if (Waits()) {
    slowedSince_.reset();  // whether it pauses meanwhile is not seen
    return std::nullopt;
  }
  Receive();
  NoteSlowed(now);
  const size_t end = in_.find('\n');
  if (end == std::string::npos || end > bounds_.lineBytes || TokensAt(now) < 1) return std::nullopt;
  std::string_view line = std::string_view(in_).substr(0, end);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

void ControlPeer::TakeLine(ControlTime now) {
  tokens_ = TokensAt(now) - 1;
  tokensAt_ = now;
  in_.erase(0, in_.find('\n') + 1);
}

std::optional<ControlCut> ControlPeer::ToBeCut(ControlTime now) const {
  if (out_.size() - sent_ > bounds_.unreadBytes) return ControlCut::kSlow;
  if (rubbish_ >= bounds_.rubbish) return ControlCut::kRubbish;
  if (std::min(in_.find('\n'), in_.size()) > bounds_.lineBytes) return ControlCut::kRubbish;
  if (slowedSince_ && now - *slowedSince_ >= bounds_.flood) return ControlCut::kFlood;
  return std::nullopt;
}

bool ControlPeer::Gone() const {
  if (gone_) return true;
  const bool listens = std::find(listens_.begin(), listens_.end(), true) != listens_.end();
  return ended_ && !HasLine() && unanswered_ == 0 && out_.empty() && !listens;
}

}  // namespace zemo
