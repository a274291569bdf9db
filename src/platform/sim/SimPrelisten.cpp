#include "platform/sim/SimPrelisten.h"

#include <algorithm>
#include <utility>

#include "platform/Clock.h"
#include "platform/EventLoop.h"
#include "platform/SoundSource.h"

namespace zemo {

SimPrelisten::SimPrelisten(EventLoop& loop, const Clock& clock, SoundOpener& opener)
    : loop_(loop), clock_(clock), opener_(opener) {}

SimPrelisten::~SimPrelisten() = default;

void SimPrelisten::SetDevice(int number) {
  if (state_ == State::kClosed) device_ = number;
}

void SimPrelisten::Open(const std::string& path) {
  std::string file = path;  // which may be the name of the file that closes
  Close();
  const int64_t frames = opener_.Open(file)->LengthFrames();
  if (frames <= 0) throw SoundError(file + ": holds nothing to play");
  file_ = std::move(file);
  lengthMs_ = static_cast<int32_t>(FramesToMs(frames));
  StandAt(State::kOpen, 0);
}

void SimPrelisten::Start() {
  if (state_ == State::kClosed || state_ == State::kPlaying) return;
  if (device_ < 0 || device_ >= kOutputs) {
    Tell("refused");
    throw SoundError("output " + std::to_string(device_) + " does not open");
  }
  Play();
  Tell("play");
}

void SimPrelisten::Pause() {
  if (state_ != State::kPlaying) return;
  StandAt(State::kPaused, PositionMs());
  Tell("pause");
}

void SimPrelisten::Restart() {
  if (state_ != State::kPaused) return;
  Play();
  Tell("play");
}

void SimPrelisten::Stop() {
  if (state_ == State::kClosed) return;
  const bool heard = state_ != State::kOpen;
  StandAt(State::kOpen, 0);
  next_.reset();
  if (heard) Tell("stop");
}

void SimPrelisten::Close() {
  Stop();
  StandAt(State::kClosed, 0);
  file_.clear();
  lengthMs_ = 0;
}

void SimPrelisten::Follow(const Following& following) {
  if (state_ != State::kOpen && state_ != State::kPaused) return;
  next_.reset();
  const int64_t frames = opener_.Open(following.path)->LengthFrames();
  if (frames <= 0) throw SoundError(following.path + ": holds nothing to play");
  next_ = Next{following.path, static_cast<int32_t>(FramesToMs(frames)), following.atMs};
}

int32_t SimPrelisten::PositionMs() const {
  if (state_ != State::kPlaying) return fromMs_;
  const int64_t ms = fromMs_ + clock_.MonotonicMs() - begunMs_;
  return static_cast<int32_t>(std::min<int64_t>(ms, lengthMs_));
}

void SimPrelisten::SetPositionMs(int32_t ms) {
  StandAt(state_, std::clamp(ms, 0, lengthMs_));
  if (state_ == State::kPlaying) Play();
}

void SimPrelisten::Play() {
  state_ = State::kPlaying;
  begunMs_ = clock_.MonotonicMs();
  const int32_t untilMs = next_ ? std::clamp(next_->atMs, fromMs_, lengthMs_) : lengthMs_;
  atEnd_ = loop_.MakeTimer(untilMs - fromMs_, [this] { next_ ? BringNextIn() : OnFileEnd(); });
  atEnd_->SetEnabled(true);
}

void SimPrelisten::BringNextIn() {
  file_ = next_->file;
  lengthMs_ = next_->lengthMs;
  next_.reset();
  StandAt(State::kPlaying, 0);
  Play();
  Tell("play");
}

void SimPrelisten::StandAt(State state, int32_t ms) {
  atEnd_.reset();
  state_ = state;
  fromMs_ = ms;
}

void SimPrelisten::OnFileEnd() {
  StandAt(State::kOpen, 0);
  Tell("end");
  // What it does may set another one.
  if (const auto ended = ended_; ended) ended(false);
}

void SimPrelisten::Tell(const char* state) const {
  if (told) told(state, file_, device_);
}

}  // namespace zemo
