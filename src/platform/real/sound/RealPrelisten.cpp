#include "platform/real/sound/RealPrelisten.h"

#include <algorithm>
#include <utility>

#include "platform/EventLoop.h"
#include "platform/real/sound/AirSink.h"
#include "platform/real/sound/RealSoundChain.h"
#include "platform/real/sound/SoundDevices.h"

namespace zemo {
namespace {

// The output ring: enough for a busy machine, little enough to begin soon.
constexpr int kListenFrames = 2048;
constexpr int kListenBuffers = 4;
constexpr int kBufferBytes = kListenFrames * kChannels * static_cast<int>(sizeof(int16_t));
constexpr auto kRingMs = static_cast<int32_t>(FramesToMs(kListenBuffers * kListenFrames));
constexpr int32_t kJoinSlackMs = 25;
constexpr int32_t kLevelMs = 100;  // of the sound, that a level is the highest of

}  // namespace

WishedDevice PrelistenDevice(const std::string& key, int number) {
  if (number < 0) throw SoundError("no sound device is chosen for prelistening");
  WishedDevice wished;
  if (!key.empty())
    wished.systems = MakeOutputDevices({key, true, true});
  else
    wished.systems.push_back(MakeNumberedDevice(number));
  wished.identity = key.empty() ? "number " + std::to_string(number) : key;
  return wished;
}

RealPrelisten::RealPrelisten(EventLoop& loop, SoundOpener& opener, DeviceOf deviceOf,
                             std::chrono::milliseconds patience)
    : loop_(loop), opener_(opener), deviceOf_(std::move(deviceOf)), patience_(patience) {}

RealPrelisten::~RealPrelisten() {
  Close();
  if (chain_ != nullptr) leaving_.push_back(std::move(chain_));
  PartFrom(std::move(leaving_));
}

void RealPrelisten::SetDevice(int number) {
  if (state_ == State::kClosed) device_ = number;
}

void RealPrelisten::Open(const std::string& path) {
  std::string file = path;  // which may be the name of the file that closes
  Close();
  const int64_t frames = opener_.Open(file)->LengthFrames();
  if (frames <= 0) throw SoundError(file + ": holds nothing to play");
  file_ = std::move(file);
  lengthMs_ = static_cast<int32_t>(FramesToMs(frames));
  gain_ = 1;
  state_ = State::kOpen;
}

void RealPrelisten::Follow(const Following& following) {
  if (state_ != State::kOpen && state_ != State::kPaused) return;
  next_.reset();
  const int64_t frames = opener_.Open(following.path)->LengthFrames();
  if (frames <= 0) throw SoundError(following.path + ": holds nothing to play");
  gain_ = following.openGain;
  next_ = Next{following.path, static_cast<int32_t>(FramesToMs(frames)), following.atMs,
               following.fadeMs, following.gain};
}

void RealPrelisten::Start() {
  if (state_ == State::kOpen || state_ == State::kPaused) Play();
}

void RealPrelisten::Pause() {
  if (state_ != State::kPlaying) return;
  fromMs_ = PositionMs();
  Silence();
  state_ = State::kPaused;
}

void RealPrelisten::Restart() {
  if (state_ == State::kPaused) Play();
}

void RealPrelisten::Stop() {
  if (state_ == State::kClosed) return;
  Silence();
  state_ = State::kOpen;
  fromMs_ = 0;
  next_.reset();
}

void RealPrelisten::Close() {
  Stop();
  if (chain_ != nullptr) FreeSlots(*chain_);
  slot_ = 0;
  state_ = State::kClosed;
  file_.clear();
  lengthMs_ = 0;
}

int32_t RealPrelisten::PositionMs() const {
  if (state_ != State::kPlaying) return fromMs_;
  return std::clamp(fromMs_ + HeardMs(), 0, lengthMs_);
}

void RealPrelisten::SetPositionMs(int32_t ms) {
  const int32_t to = std::clamp(ms, 0, lengthMs_);
  if (state_ == State::kPlaying)
    PlayFrom(to);
  else
    fromMs_ = to;
}

Prelisten::Levels RealPrelisten::HeardLevels() const {
  Levels most;
  if (state_ != State::kPlaying || chain_->DeviceState() != DeviceThread::State::kRunning)
    return most;
  const int32_t heard = HeardMs();
  if (heard == 0) return most;
  for (const MixedLevels& mixed : levels_) {
    most.left = std::max(most.left, mixed.levels.left);
    most.right = std::max(most.right, mixed.levels.right);
    if (mixed.atMs >= heard) break;
  }
  return most;
}

void RealPrelisten::Play() {
  TakeChain(deviceOf_(device_));
  LoadSlots();
  PlayFrom(fromMs_);
  if (fromMs_ < lengthMs_ && !chain_->Sounds(slot_)) {
    Silence();
    throw SoundError(file_ + ": cannot be read");
  }
  playedAt_ = std::chrono::steady_clock::now();
  state_ = State::kPlaying;
}

// A device is opened by the thread that closed it, so that it never finds itself in use.
void RealPrelisten::TakeChain(WishedDevice wished) {
  const bool serves = chain_ != nullptr && chainDevice_ == device_ &&
                      chain_->DeviceState() != DeviceThread::State::kLost;
  if (chain_ != nullptr && !serves) {
    FreeSlots(*chain_);
    leaving_.push_back(std::move(chain_));
  }
  chainDevice_ = device_;
  if (chain_ != nullptr) {
    chain_->ChooseDevice(std::move(wished));
    return;
  }
  chain_ = std::make_unique<RealSoundChain>(opener_, std::move(wished), nullptr, "", nullptr, false,
                                            Unheard::kWaits);
  chain_->SetOutputBuffers(kBufferBytes, kListenBuffers);
}

void RealPrelisten::LoadSlots() {
  chain_->SetFileName(slot_, file_);
  chain_->SetGain(slot_, gain_);
  chain_->SetFileName(1 - slot_, next_ ? next_->file : "");
  if (next_) chain_->SetGain(1 - slot_, next_->gain);
}

// What the output ring still holds is given up.
void RealPrelisten::PlayFrom(int32_t ms) {
  chain_->Stop();
  chain_->SetPosition(slot_, ms);
  chain_->SetPosition(1 - slot_, 0);
  chain_->SetChannelDone(slot_, false);
  chain_->Start();
  ++playing_;
  fromMs_ = ms;
  endMs_ = -1;
  nextAtMs_ = -1;
  levels_.clear();
}

void RealPrelisten::Silence() {
  ++playing_;
  nextAtMs_ = -1;
  levels_.clear();
  if (chain_ != nullptr) chain_->Close();
}

// What was given to the device, without what is still on its way there.
int32_t RealPrelisten::HeardMs() const {
  return std::max(0, chain_->GivenMs() - chain_->DelayMs());
}

// As HeardMs, of what is on its way there.
int32_t RealPrelisten::MixedMs() const {
  if (nextAtMs_ >= 0) return nextAtMs_ + chain_->Position(1 - slot_);
  return chain_->Position(slot_) - fromMs_;
}

bool RealPrelisten::Poll() {
  Reap();
  if (chain_ == nullptr) return !Rests();
  chain_->Poll();
  if (state_ == State::kPlaying && ending_ != playing_) {
    BringNextIn();
    NoteLevels();
    WatchEnd();
  }
  return true;
}

void RealPrelisten::Reap() {
  DropRested(leaving_);
  if (chain_ != nullptr && state_ == State::kClosed && chain_->Rests()) chain_.reset();
}

// It is mixed over the end of the file first, and is the file that plays once it is heard.
void RealPrelisten::BringNextIn() {
  if (next_ && nextAtMs_ < 0) BeginNext();
  if (!next_ || nextAtMs_ < 0 || HeardMs() < nextAtMs_) return;
  slot_ = 1 - slot_;
  file_ = std::move(next_->file);
  lengthMs_ = next_->lengthMs;
  gain_ = next_->gain;
  fromMs_ = -nextAtMs_;
  nextAtMs_ = -1;
  next_.reset();
}

void RealPrelisten::BeginNext() {
  const bool sounds = chain_->Sounds(slot_);
  if (sounds && chain_->Position(slot_) < next_->atMs) return;
  // A file that is cut short stands at its end, which was never mixed.
  const int32_t atMs = sounds ? MixedMs() : std::min(MixedMs(), chain_->GivenMs() + kRingMs);
  chain_->SetChannelDone(1 - slot_, false);
  if (!chain_->Sounds(1 - slot_)) return next_.reset();
  if (next_->fadeMs) chain_->FadeOut(slot_, *next_->fadeMs);
  nextAtMs_ = atMs;
}

void RealPrelisten::NoteLevels() {
  const int32_t oldest = HeardMs() - kLevelMs;
  while (!levels_.empty() && levels_.front().atMs < oldest) levels_.pop_front();
  const int32_t mixed = MixedMs();
  if (!levels_.empty() && levels_.back().atMs == mixed) return;
  const SoundHealth health = chain_->TakeHealth();
  levels_.push_back({mixed, {health.peakLeft, health.peakRight}});
}

void RealPrelisten::WatchEnd() {
  const auto now = std::chrono::steady_clock::now();
  const DeviceThread::State device = chain_->DeviceState();
  if (device == DeviceThread::State::kRunning) playedAt_ = now;
  // A file that is cut short has an end that its length does not tell: behind what the ring holds.
  if (endMs_ < 0 && !next_ && !chain_->Sounds(slot_)) {
    const int32_t slackMs = fromMs_ < 0 ? kJoinSlackMs : 0;
    endMs_ = std::min(lengthMs_ - fromMs_ + slackMs, chain_->GivenMs() + kRingMs);
  }
  if (endMs_ >= 0 && HeardMs() >= endMs_)
    EndLater(false);
  else if (device == DeviceThread::State::kLost || now - playedAt_ > patience_)
    EndLater(true);
}

// As an event of its own, unless it is silenced or begins anew meanwhile.
void RealPrelisten::EndLater(bool lost) {
  ending_ = playing_;
  loop_.Post([this, lost, which = playing_, alive = std::weak_ptr<int>(alive_)] {
    if (alive.expired() || which != playing_) return;
    Stop();
    // What it does may set another one.
    if (const auto ended = ended_; ended) ended(lost);
  });
}

}  // namespace zemo
