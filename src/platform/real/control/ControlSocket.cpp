#include "platform/real/control/ControlSocket.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <utility>

namespace zemo {

namespace {

constexpr size_t kToLogicBytes = 256 * 1024;
constexpr size_t kFromLogicBytes = 1024 * 1024;
constexpr int kFullRingMs = 20;  // up to the next look whether the logic has made room
constexpr std::chrono::seconds kTending{1};
constexpr std::chrono::milliseconds kRestsFromAccepting{100};

int MsUntil(ControlTime then, ControlTime now) {
  const auto ms = std::chrono::ceil<std::chrono::milliseconds>(then - now).count();
  return static_cast<int>(std::clamp<int64_t>(ms, 0, 60000));
}

void Drain(int event) {
  uint64_t count = 0;
  [[maybe_unused]] const ssize_t done = read(event, &count, sizeof count);
}

int MakeEvent() {
  const int event = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
  if (event < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  return event;
}

}  // namespace

ControlSocket::ControlSocket(const std::string& folder, ControlWords& words,
                             std::function<void()> arrived, const ControlBounds& bounds,
                             std::optional<uid_t> owner)
    : bounds_(bounds),
      owner_(owner.value_or(geteuid())),
      words_(words),
      arrived_(std::move(arrived)),
      toLogic_(kToLogicBytes),
      fromLogic_(kFromLogicBytes),
      wake_(MakeEvent()),
      place_(folder),
      listening_(place_.Bind()),
      looked_(std::chrono::steady_clock::now()),
      tended_(looked_ - kTending),
      thread_([this] { Run(); }) {}

ControlSocket::~ControlSocket() {
  quit_ = true;
  Wake();
  thread_.join();
  place_.Remove();
  if (listening_ >= 0) close(listening_);
  close(wake_);
}

// --- the logic's end ---

bool ControlSocket::Take(ControlRequest& request) {
  MessageRing::Head head;
  if (!toLogic_.Take(head, request.text)) {
    told_ = false;
    // What came since then told nobody.
    if (!toLogic_.Take(head, request.text)) return false;
  }
  request.client = head.client;
  return true;
}

void ControlSocket::Wake() {
  const uint64_t one = 1;
  // It fails only when the counter is full, and then the wait ends anyway.
  [[maybe_unused]] const ssize_t done = write(wake_, &one, sizeof one);
}

// A client that misses an answer or an event would wait for ever or believe what is not so.
bool ControlSocket::Tell(ControlClient client, uint32_t kind, std::string_view text) {
  const bool put = fromLogic_.Put(client, kind, text);
  if (!put) overflowed_ = true;
  Wake();
  return put;
}

void ControlSocket::Answer(ControlClient client, std::string_view line) {
  Tell(client, kAnswer, line);
}

void ControlSocket::Listen(ControlClient client, ControlChannel channel) {
  const auto at = static_cast<size_t>(channel);
  ++toListen_[at];
  if (!Tell(client, kListen + kKinds * static_cast<uint32_t>(channel), {})) --toListen_[at];
}

void ControlSocket::Publish(ControlChannel channel, std::string_view line) {
  Tell(0, kPublish + kKinds * static_cast<uint32_t>(channel), line);
}

bool ControlSocket::IsListenedTo(ControlChannel channel) const {
  const auto at = static_cast<size_t>(channel);
  return toListen_[at] > 0 || listeners_[at] > 0;
}

ControlFigures ControlSocket::Figures() const {
  ControlFigures figures{.clients = clients_, .accepted = accepted_};
  for (size_t cut = 0; cut < kControlCuts; ++cut) figures.cuts[cut] = cuts_[cut];
  return figures;
}

// --- the thread ---

void ControlSocket::Run() {
  while (!quit_) {
    Wait(std::chrono::steady_clock::now());
    const ControlTime now = std::chrono::steady_clock::now();
    TakeWhatTheLogicSays();
    ringFull_ = false;
    for (const auto& peer : peers_) Serve(*peer, now);
    CutAndForget(now);
    TellGone();
    LookAfter(now);
  }
  peers_.clear();
}

int ControlSocket::WaitMs(ControlTime now) const {
  int ms = MsUntil(looked_ + bounds_.look, now);
  if (acceptsFrom_ > now) ms = std::min(ms, MsUntil(acceptsFrom_, now));
  if (!peers_.empty()) ms = std::min(ms, MsUntil(tended_ + kTending, now));
  if (ringFull_ || !gone_.empty()) ms = std::min(ms, kFullRingMs);
  for (const auto& peer : peers_)
    if (const auto turn = peer->NextTurn(now); turn && !ringFull_)
      ms = std::min(ms, MsUntil(*turn, now));
  return ms;
}

// The sockets are read and written where they are served, whatever they were polled for; only an
// end that no reading would show is noted here.
void ControlSocket::Wait(ControlTime now) {
  const int listening = now < acceptsFrom_ ? -1 : listening_;  // poll passes over -1
  std::vector<pollfd> polled{{wake_, POLLIN, 0}, {listening, POLLIN, 0}};
  for (const auto& peer : peers_) polled.push_back({peer->Socket(), peer->Events(), 0});
  if (poll(polled.data(), polled.size(), WaitMs(now)) <= 0) return;
  Drain(wake_);
  for (size_t i = 0; i < peers_.size(); ++i)
    if ((polled[i + 2].revents & (POLLHUP | POLLERR)) != 0) peers_[i]->HangUp();
  if ((polled[1].revents & POLLIN) != 0) Accept(std::chrono::steady_clock::now());
}

std::optional<ControlCut> ControlSocket::WhyNotLetIn(int socket) const {
  ucred who{};
  socklen_t size = sizeof who;
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &who, &size) != 0) return ControlCut::kUser;
  if (who.uid != owner_ && who.uid != 0) return ControlCut::kUser;
  const auto there =
      std::count_if(peers_.begin(), peers_.end(), [](const auto& peer) { return !peer->Gone(); });
  if (static_cast<size_t>(there) >= bounds_.clients) return ControlCut::kNumber;
  return std::nullopt;
}

// Whoever has read that he is in, or out, finds himself in the figures: they are noted first.
void ControlSocket::SendAway(int socket, ControlCut why) {
  Count(why);
  const std::string line = words_.Farewell(why) + "\n";
  [[maybe_unused]] const ssize_t sent = send(socket, line.data(), line.size(), MSG_NOSIGNAL);
  close(socket);
}

// As many as there may be come in at a time. Whoever knocks without end, and a process that has no
// handle left, would keep the thread from all else: who knocks then waits a moment.
void ControlSocket::Accept(ControlTime now) {
  for (size_t count = 0; count < bounds_.clients; ++count) {
    const int socket = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (socket < 0 && errno == EAGAIN) return;
    if (socket < 0) break;
    if (const auto why = WhyNotLetIn(socket))
      SendAway(socket, *why);
    else
      LetIn(socket, now);
  }
  acceptsFrom_ = now + kRestsFromAccepting;
}

void ControlSocket::LetIn(int socket, ControlTime now) {
  if (peers_.empty()) Tend(now);  // ahead of the first request
  peers_.push_back(std::make_unique<ControlPeer>(++last_, socket, bounds_, now));
  ++accepted_;
  clients_ = peers_.size();
  peers_.back()->Say(words_.Greeting());
}

ControlPeer* ControlSocket::Find(ControlClient client) {
  const auto found = std::find_if(peers_.begin(), peers_.end(),
                                  [&](const auto& peer) { return peer->Number() == client; });
  return found == peers_.end() ? nullptr : found->get();
}

void ControlSocket::TakeWhatTheLogicSays() {
  MessageRing::Head head;
  while (fromLogic_.Take(head, text_)) CarryOut(head, text_);
}

void ControlSocket::CarryOut(const MessageRing::Head& head, const std::string& text) {
  const auto channel = static_cast<ControlChannel>(head.kind / kKinds);
  ControlPeer* peer = Find(head.client);
  switch (head.kind % kKinds) {
    case kAnswer:
      if (!peer) return;
      peer->Answered();
      return peer->Say(text);
    case kListen:
      if (peer) peer->Listen(channel);
      CountListeners();
      --toListen_[static_cast<size_t>(channel)];
      return;
    default:
      for (const auto& one : peers_)
        if (one->Listens(channel)) one->Say(text);
  }
}

void ControlSocket::Serve(ControlPeer& peer, ControlTime now) {
  peer.Send();
  while (const auto line = peer.NextLine(now)) {
    if (peer.ToBeCut(now)) return;
    if (!toLogic_.HasRoom(line->size() + ControlWords::kMostLonger)) {
      ringFull_ = true;
      return;
    }
    ServeLine(peer, *line, now);
  }
}

void ControlSocket::ServeLine(ControlPeer& peer, std::string_view line, ControlTime now) {
  const ControlWords::Understood understood = words_.Understand(line);
  peer.TakeLine(now);
  if (understood.forLogic.empty()) {
    peer.Babbled();
    return peer.Say(understood.answer);
  }
  peer.Asked();
  toLogic_.Put(peer.Number(), 0, understood.forLogic);
  if (!told_.exchange(true)) arrived_();
}

void ControlSocket::CutAndForget(ControlTime now) {
  const bool overflowed = overflowed_.exchange(false);
  for (const auto& peer : peers_) {
    const auto why = overflowed ? std::optional(ControlCut::kFull) : peer->ToBeCut(now);
    if (peer->Gone() || !why) continue;
    Count(*why);
    if (*why != ControlCut::kSlow) peer->Say(words_.Farewell(*why));
    peer->HangUp();
  }
  const auto gone = [this](const std::unique_ptr<ControlPeer>& peer) {
    if (!peer->Gone()) return false;
    if (peer->HasAsked()) gone_.push_back(peer->Number());
    return true;
  };
  if (std::erase_if(peers_, gone) == 0) return;
  clients_ = peers_.size();
  CountListeners();
}

// The logic has to know, as it may hold an order of theirs.
void ControlSocket::TellGone() {
  while (!gone_.empty() && toLogic_.Put(gone_.front(), 0, {})) {
    gone_.pop_front();
    if (!told_.exchange(true)) arrived_();
  }
}

void ControlSocket::Tend(ControlTime now) {
  tended_ = now;
  words_.EverySecond();
}

// A socket that somebody took away is made again; until that can be, nobody new comes in.
void ControlSocket::LookAfter(ControlTime now) {
  if (!peers_.empty() && now - tended_ >= kTending) Tend(now);
  if (now - looked_ < bounds_.look) return;
  looked_ = now;
  if (place_.StandsThere()) return;
  if (listening_ >= 0) close(listening_);
  try {
    listening_ = -1;
    listening_ = place_.Bind();
  } catch (const ControlError&) {
    return;  // looked after again in a while
  }
}

void ControlSocket::CountListeners() {
  for (size_t channel = 0; channel < kControlChannels; ++channel)
    listeners_[channel] =
        static_cast<int>(std::count_if(peers_.begin(), peers_.end(), [&](const auto& peer) {
          return peer->Listens(static_cast<ControlChannel>(channel));
        }));
}

void ControlSocket::Count(ControlCut why) {
  ++cuts_[static_cast<size_t>(why)];
}

}  // namespace zemo
