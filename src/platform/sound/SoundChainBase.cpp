// States of slots and output. Every state is settled before the observer hears of it, so that what
// it reads back is already true.
#include "platform/sound/SoundChainBase.h"

#include <algorithm>

namespace zemo {
namespace {

constexpr int kMaxVolume = 2 * kUnityVolume;
constexpr int kDefaultBufferBytes = 16384;  // until the settings are read: 8 of them are 743 ms
constexpr int kDefaultBuffers = 8;

}  // namespace

SoundChainBase::SoundChainBase(SoundOpener& opener)
    : opener_(opener),
      ringBytes_(2 * kDefaultBuffers * kDefaultBufferBytes),
      outputBufferBytes_(kDefaultBufferBytes),
      outputBuffers_(kDefaultBuffers) {}

void SoundChainBase::SetFileName(int slot, const std::string& path, SlotEnd reason) {
  Slot& s = slots_[slot];
  if (s.state == SlotState::kSounding) EndSounding(slot, reason);
  s.gain = 1.0;
  if (s.state != SlotState::kFree && s.state != SlotState::kAsked) {
    FreeSlot(slot);
    s.state = SlotState::kFree;
    s.file.clear();
    s.lengthFrames = 0;
    s.frame = 0;
  }
  if (path.empty()) return;
  s.state = SlotState::kFree;
  std::unique_ptr<SoundSource> source = opener_.Open(path);
  const int64_t length = source->LengthFrames();
  if (length <= 0) throw SoundError(path + ": holds nothing to play");
  LoadSlot(slot, path, std::move(source));
  s.state = SlotState::kReady;
  s.file = path;
  s.lengthFrames = length;
}

int64_t SoundChainBase::FrameOf(int slot) const {
  const Slot& s = slots_[slot];
  return s.state == SlotState::kSounding ? ReadFrames(slot) : s.frame;
}

int32_t SoundChainBase::Position(int slot) const {
  return static_cast<int32_t>(FramesToMs(FrameOf(slot)));
}

int32_t SoundChainBase::Length(int slot) const {
  return static_cast<int32_t>(FramesToMs(slots_[slot].lengthFrames));
}

void SoundChainBase::SetPosition(int slot, int32_t ms) {
  Slot& s = slots_[slot];
  if (s.file.empty()) return;
  const int64_t frame = std::clamp<int64_t>(MsToFrames(ms), 0, s.lengthFrames);
  const bool atEnd = frame == s.lengthFrames;
  if (s.state == SlotState::kSounding) {
    const int64_t moved = frame - ReadFrames(slot);
    if (atEnd || !SeekSlot(slot, frame)) {
      SilenceSlot(slot);
      SlotEnded(slot, SlotEnd::kFile);
    } else if (s.fadeEndFrame > 0) {
      s.fadeEndFrame += moved;  // the fade goes on over the time it has left
    }
    return;
  }
  if (s.state == SlotState::kWaiting && !atEnd) {
    s.frame = frame;
  } else {
    StandAt(slot, frame);
  }
}

void SoundChainBase::SetVolume(int slot, int volume) {
  Slot& s = slots_[slot];
  const int from = s.volume;
  s.volume = std::clamp(volume, 0, kMaxVolume);
  if (s.volume == from) return;
  VolumeSlot(slot, s.volume);
  if (Sounds(slot) && observer_ != nullptr) observer_->OnVolume(slot, from, s.volume);
}

void SoundChainBase::SetGain(int slot, double gain) {
  slots_[slot].gain = std::clamp(gain, 0.0, kMostGain);
}

void SoundChainBase::FadeOut(int slot, int ms) {
  Slot& s = slots_[slot];
  if (!Sounds(slot)) return;
  const int64_t frames = std::max<int64_t>(0, MsToFrames(ms));
  const int64_t end = ReadFrames(slot) + frames;
  if (s.fadeEndFrame > 0 && s.fadeEndFrame <= end) return;
  s.fadeEndFrame = end;
  if (frames > 0) {
    FadeSlot(slot, frames);
    if (observer_ != nullptr) observer_->OnFade(slot, ms);
  } else {
    if (observer_ != nullptr) observer_->OnFade(slot, 0);
    if (Sounds(slot)) EndSounding(slot, SlotEnd::kFade);
  }
}

bool SoundChainBase::ChannelDone(int slot) const {
  switch (slots_[slot].state) {
    case SlotState::kAsked:
    case SlotState::kWaiting:
    case SlotState::kSounding:
      return false;
    case SlotState::kFree:
    case SlotState::kReady:
    case SlotState::kEnded:
      return true;
  }
  return true;
}

void SoundChainBase::SetChannelDone(int slot, bool done, SlotEnd reason) {
  Slot& s = slots_[slot];
  const bool started = output_ == OutputState::kStarted;
  if (done) {
    if (s.state == SlotState::kSounding) EndSounding(slot, reason);
    if (s.state == SlotState::kWaiting) s.state = SlotState::kReady;
    if (s.state == SlotState::kAsked) s.state = SlotState::kFree;
  } else if (s.state == SlotState::kReady) {
    s.state = SlotState::kWaiting;
    if (started) BeginSounding(slot);
  } else if (s.state == SlotState::kFree && !started) {
    s.state = SlotState::kAsked;
  }
}

void SoundChainBase::SetPaused(bool paused) {
  if (paused == paused_) return;
  paused_ = paused;
  PauseMixer(paused);
}

void SoundChainBase::SetRing(int bufferSizeBytes, int numBuffers) {
  ringBytes_ = std::max(0, bufferSizeBytes) * std::max(0, numBuffers);
}

void SoundChainBase::SetOutputBuffers(int bufferSizeBytes, int numBuffers) {
  outputBufferBytes_ = std::max(0, bufferSizeBytes);
  outputBuffers_ = std::max(0, numBuffers);
}

// The output:
//
//   state     Open          Start                  Stop           Close
//   kClosed   kOpen "open"  kStarted "open start"  -              -
//   kOpen     -             kStarted "start"       -              kClosed "close"
//   kStarted  -             -                      kOpen "stop"   kClosed "stop close"

void SoundChainBase::Open() {
  if (output_ != OutputState::kClosed) return;
  OpenOutput();
  output_ = OutputState::kOpen;
  TellOutput("open");
}

void SoundChainBase::Start() {
  if (output_ == OutputState::kStarted) return;
  Open();
  output_ = OutputState::kStarted;
  for (int slot = 0; slot < kSlots; ++slot) {
    if (slots_[slot].state == SlotState::kWaiting) BeginSounding(slot);
    if (slots_[slot].state == SlotState::kAsked) slots_[slot].state = SlotState::kFree;
  }
  StartOutput();
  TellOutput("start");
}

void SoundChainBase::Stop() {
  if (output_ != OutputState::kStarted) return;
  for (int slot = 0; slot < kSlots; ++slot) {
    if (Sounds(slot)) EndSounding(slot, SlotEnd::kStopped);
  }
  StopOutput();
  output_ = OutputState::kOpen;
  TellOutput("stop");
}

void SoundChainBase::Close() {
  Stop();
  if (output_ != OutputState::kOpen) return;
  CloseOutput();
  output_ = OutputState::kClosed;
  TellOutput("close");
}

int32_t SoundChainBase::OutputPosition() const {
  return output_ == OutputState::kStarted ? static_cast<int32_t>(FramesToMs(PlayedFrames())) : 0;
}

void SoundChainBase::BeginSounding(int slot) {
  Slot& s = slots_[slot];
  s.fadeEndFrame = 0;
  s.state = StartSlot(slot, s.frame) ? SlotState::kSounding : SlotState::kReady;
}

void SoundChainBase::EndSounding(int slot, SlotEnd reason) {
  const int64_t frame = ReadFrames(slot);
  SilenceSlot(slot);
  StandAt(slot, frame);
  TellEnd(slot, reason);
}

void SoundChainBase::SlotEnded(int slot, SlotEnd reason) {
  if (!Sounds(slot)) return;
  StandAt(slot, reason == SlotEnd::kFile ? slots_[slot].lengthFrames : ReadFrames(slot));
  TellEnd(slot, reason);
}

// Where the sound threads are ahead, a slot that is stopped may already stand at its file's end.
void SoundChainBase::StandAt(int slot, int64_t frame) {
  Slot& s = slots_[slot];
  s.frame = frame;
  s.state = frame < s.lengthFrames ? SlotState::kReady : SlotState::kEnded;
  s.fadeEndFrame = 0;
}

void SoundChainBase::TellEnd(int slot, SlotEnd reason) {
  if (observer_ != nullptr) observer_->OnSlotEnd(slot, reason);
}

void SoundChainBase::TellOutput(const char* state) {
  if (observer_ != nullptr) observer_->OnOutput(state);
}

}  // namespace zemo
