// Virtual time turned into frames of the mixer, one step for each thing that ends.
#include "platform/sim/SimSoundChain.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zemo {
namespace {

constexpr int kBlockFrames = 4608;  // above the 4410 frames between two ticks

// 44.1 frames a millisecond: frame f lies within [f, f + 1) * 10 / 441 ms.
int64_t FrameAt(int64_t ms) {
  return ms * 441 / 10;
}

int64_t FirstMsOf(int64_t frame) {
  return (frame * 10 + 440) / 441;
}

}  // namespace

SimSoundChain::SimSoundChain(SoundOpener& opener) : SoundChainBase(opener), core_(false) {}

SimSoundChain::~SimSoundChain() = default;

void SimSoundChain::SetSink(Sink sink) {
  sink_ = std::move(sink);
  core_.SetDecoding(sink_ != nullptr);
  skipFrames_ = MixerCore::kLatencyFrames;
  if (sink_) block_.resize(static_cast<size_t>(2) * kBlockFrames);
}

void SimSoundChain::FlushSink() {
  if (!sink_) return;
  core_.SetRunning(false);  // whatever sounds on gets no further: these frames lie behind the end
  core_.Render(block_.data(), MixerCore::kLatencyFrames);
  GiveSink(MixerCore::kLatencyFrames);
  core_.SetRunning(started_ && !paused_);
  skipFrames_ = MixerCore::kLatencyFrames;
}

void SimSoundChain::AdvanceTo(int64_t virtualMs) {
  const int64_t target = FrameAt(virtualMs);
  while (frame_ < target) {
    const int64_t step = std::min(target - frame_, core_.FramesToNextEvent());
    Render(step);
    for (int slot = 0; slot < kSlots; ++slot) {
      const auto end = core_.TakeEnd(slot);
      if (!end.has_value()) continue;
      SlotEnded(slot, *end == MixerCore::End::kFile ? SlotEnd::kFile : SlotEnd::kFade);
    }
  }
}

int64_t SimSoundChain::NextDueMs() const {
  const int64_t frames = core_.FramesToNextEvent();
  if (frames == std::numeric_limits<int64_t>::max()) return frames;
  return FirstMsOf(frame_ + frames);
}

void SimSoundChain::Render(int64_t frames) {
  frame_ += frames;
  if (!sink_) {
    core_.Render(nullptr, frames);
    return;
  }
  while (frames > 0) {
    const int block = static_cast<int>(std::min<int64_t>(frames, kBlockFrames));
    core_.Render(block_.data(), block);
    GiveSink(block);
    frames -= block;
  }
}

// The limiter gives each frame later than it took it; without its first ones the sink's frames are
// those of the virtual time.
void SimSoundChain::GiveSink(int frames) {
  const int skip = std::min(frames, skipFrames_);
  skipFrames_ -= skip;
  if (frames > skip) sink_(block_.data() + 2 * skip, frames - skip);
}

void SimSoundChain::LoadSlot(int slot, const std::string&, std::unique_ptr<SoundSource> source) {
  sources_[slot] = std::move(source);
}

void SimSoundChain::FreeSlot(int slot) {
  sources_[slot].reset();
}

bool SimSoundChain::StartSlot(int slot, int64_t frame) {
  core_.Start(slot, sources_[slot].get(), sources_[slot]->LengthFrames(), frame, Gain(slot));
  return true;
}

void SimSoundChain::SilenceSlot(int slot) {
  core_.Silence(slot);
}

bool SimSoundChain::SeekSlot(int slot, int64_t frame) {
  core_.Seek(slot, sources_[slot].get(), frame);
  return true;
}

void SimSoundChain::FadeSlot(int slot, int64_t frames) {
  core_.Fade(slot, frames);
}

void SimSoundChain::VolumeSlot(int slot, int volume) {
  core_.SetVolume(slot, volume);
}

int64_t SimSoundChain::ReadFrames(int slot) const {
  return core_.Position(slot);
}

void SimSoundChain::PauseMixer(bool paused) {
  paused_ = paused;
  core_.SetRunning(started_ && !paused_);
}

void SimSoundChain::StartOutput() {
  started_ = true;
  startFrame_ = frame_;
  core_.SetRunning(!paused_);
}

void SimSoundChain::StopOutput() {
  started_ = false;
  core_.SetRunning(false);
}

}  // namespace zemo
