// Slots, ramps and the sum. The loops over samples run in stretches over which every gain is one
// straight line, so that none of them asks anything per sample.
#include "platform/sound/MixerCore.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <limits>

namespace zemo {
namespace {

// Level of a stretch: (volume + volumeStep * i) * (fade + fadeStep * i) for frame i, with the gain
// of the source in its volume.
struct Level {
  float volume;
  float volumeStep;
  float fade;
  float fadeStep;

  bool Constant() const { return volumeStep == 0.0f && fadeStep == 0.0f; }
  float At(int i) const {
    const auto x = static_cast<float>(i);
    return (volume + volumeStep * x) * (fade + fadeStep * x);
  }
};

void Scale(float* stereo, int frames, const Level& level) {
  if (level.Constant()) {
    const float factor = level.volume * level.fade;
    if (factor == 1.0f) return;
    for (int i = 0; i < 2 * frames; ++i) stereo[i] *= factor;
    return;
  }
  for (int i = 0; i < frames; ++i) {
    const float factor = level.At(i);
    stereo[2 * i] *= factor;
    stereo[2 * i + 1] *= factor;
  }
}

void Add(const float* stereo, float* sum, int frames) {
  for (int i = 0; i < 2 * frames; ++i) sum[i] += stereo[i];
}

Level LevelOf(float gain, const Ramp& volume, const Ramp& fade) {
  // A frame takes the value behind its step: the first one of a ramp has already moved, the last
  // one is at the target.
  const double volumeStep = volume.FramesLeft() > 0 ? volume.After(1) - volume.Value() : 0.0;
  const double fadeStep = fade.FramesLeft() > 0 ? fade.After(1) - fade.Value() : 0.0;
  return {gain * static_cast<float>(volume.Value() + volumeStep),
          gain * static_cast<float>(volumeStep), static_cast<float>(fade.Value() + fadeStep),
          static_cast<float>(fadeStep)};
}

// The longest stretch within `frames` over which neither ramp ends.
int Stretch(const Ramp& volume, const Ramp& fade, int frames) {
  int64_t stretch = frames;
  if (volume.FramesLeft() > 0) stretch = std::min(stretch, volume.FramesLeft());
  if (fade.FramesLeft() > 0) stretch = std::min(stretch, fade.FramesLeft());
  return static_cast<int>(stretch);
}

}  // namespace

void Ramp::GlideTo(double value, int64_t frames) {
  from_ = Value();
  to_ = value;
  left_ = total_ = frames;
}

void Ramp::Advance(int64_t frames) {
  left_ = std::max<int64_t>(0, left_ - frames);
}

double Ramp::After(int64_t frames) const {
  const int64_t left = left_ - frames;
  if (left <= 0) return to_;
  return to_ + (from_ - to_) * static_cast<double>(left) / static_cast<double>(total_);
}

MixerCore::MixerCore(bool decoding) : decoding_(decoding) {
  for (Slot& slot : slots_) {
    slot.volume.Set(1.0);
    slot.fade.Set(1.0);
  }
}

void MixerCore::SetDecoding(bool decoding) {
  decoding_ = decoding;
  for (Slot& slot : slots_) {
    slot.seekBeforeRead = true;
    slot.tailLeft = 0;
  }
}

void MixerCore::Start(int slot, SoundSource* source, int64_t lengthFrames, int64_t frame,
                      double gain) {
  Slot& s = slots_[slot];
  KeepTail(s);
  s.source = source;
  s.gain = static_cast<float>(gain);
  s.length = lengthFrames;
  s.position = frame;
  s.seekBeforeRead = true;
  s.fading = false;
  s.fade.Set(1.0);
  s.end.reset();
  s.sounded = false;
  s.volume.Set(s.volume.Target());
  if (frame > 0) GlideIn(s);  // the inside of a file begins anywhere in its waves
  CheckInvariants();
}

void MixerCore::Silence(int slot) {
  Slot& s = slots_[slot];
  KeepTail(s);
  s.source = nullptr;
  s.end.reset();
  CheckInvariants();
}

void MixerCore::Seek(int slot, SoundSource* source, int64_t frame) {
  Slot& s = slots_[slot];
  if (s.source == nullptr) return;
  KeepTail(s);
  s.source = source;
  s.position = frame;
  s.seekBeforeRead = true;
  GlideIn(s);
  CheckInvariants();
}

void MixerCore::Fade(int slot, int64_t frames) {
  Slot& s = slots_[slot];
  if (s.source == nullptr || (s.fading && s.fade.FramesLeft() <= frames)) return;
  if (frames <= 0) {
    KeepTail(s);
    Finish(s, End::kFade);
  } else {
    s.fading = true;
    s.fade.GlideTo(0.0, frames);
  }
  CheckInvariants();
}

void MixerCore::SetVolume(int slot, int volume) {
  Slot& s = slots_[slot];
  const double factor = static_cast<double>(volume) / kUnityVolume;
  if (factor == s.volume.Target()) return;
  if (s.source == nullptr || (!s.sounded && s.volume.FramesLeft() == 0)) {
    s.volume.Set(factor);
  } else {
    s.volume.GlideTo(factor, kRampFrames);
  }
  CheckInvariants();
}

void MixerCore::SetRunning(bool running) {
  if (running == running_) return;
  running_ = running;
  for (Slot& s : slots_) {
    if (s.source == nullptr) continue;
    if (!running) {
      KeepTail(s);
    } else if (s.position > 0) {
      GlideIn(s);
    }
  }
}

void MixerCore::Render(float* stereo, int64_t frames) {
  if (stereo == nullptr) {
    for (Slot& s : slots_) {
      s.tailLeft = 0;
      if (!running_ || s.source == nullptr) continue;
      s.seekBeforeRead = true;
      AdvanceSlot(s, std::min(frames, FramesLeft(s)));
    }
  } else {
    while (frames > 0) {
      const int chunk = static_cast<int>(std::min<int64_t>(frames, Limiter::kMaxFrames));
      MixChunk(limiter_.Input(), chunk);
      limiter_.Process(stereo, chunk);
      stereo += 2 * chunk;
      frames -= chunk;
    }
  }
  CheckInvariants();
}

int64_t MixerCore::FramesToNextEvent() const {
  int64_t next = std::numeric_limits<int64_t>::max();
  if (!running_) return next;
  for (const Slot& s : slots_) {
    if (s.source != nullptr) next = std::min(next, FramesLeft(s));
  }
  return next;
}

std::optional<MixerCore::End> MixerCore::TakeEnd(int slot) {
  const std::optional<End> end = slots_[slot].end;
  slots_[slot].end.reset();
  return end;
}

int64_t MixerCore::FramesLeft(const Slot& slot) {
  const int64_t toFileEnd = slot.length - slot.position;
  return slot.fading ? std::min(toFileEnd, slot.fade.FramesLeft()) : toFileEnd;
}

// Sums the next frames of all slots into `sum`, which needs no clearing.
void MixerCore::MixChunk(float* sum, int frames) {
  bool first = true;
  for (Slot& s : slots_) {
    if (!running_ || s.source == nullptr) continue;
    MixSlot(s, sum, frames, first);
    first = false;
  }
  if (first) std::memset(sum, 0, sizeof(float) * 2 * static_cast<size_t>(frames));
  for (Slot& s : slots_) {
    if (s.tailLeft > 0) MixTail(s, sum, frames);
  }
}

// The first slot of a chunk writes into the sum itself, the others add to it.
void MixerCore::MixSlot(Slot& slot, float* sum, int frames, bool first) {
  float* stereo = first ? sum : scratch_.data();
  const int asked = static_cast<int>(std::min<int64_t>(frames, FramesLeft(slot)));
  const int given = ReadSlot(slot, stereo, asked);
  for (int done = 0; done < given;) {
    const int stretch = Stretch(slot.volume, slot.fade, given - done);
    Scale(stereo + 2 * done, stretch, LevelOf(slot.gain, slot.volume, slot.fade));
    AdvanceSlot(slot, stretch);
    done += stretch;
  }
  // A source that dries up before its length is at its end: better than its length in silence.
  if (given < asked && slot.source != nullptr) Finish(slot, End::kFile);
  if (first) {
    std::memset(sum + 2 * given, 0, sizeof(float) * 2 * static_cast<size_t>(frames - given));
  } else {
    Add(stereo, sum, given);
  }
}

// Fewer than `frames` only when the source has no more.
int MixerCore::ReadSlot(Slot& slot, float* stereo, int frames) {
  if (slot.seekBeforeRead) slot.source->Seek(slot.position);
  slot.seekBeforeRead = false;
  int given = 0;
  while (given < frames) {
    const int got = slot.source->Read(stereo + 2 * given, frames - given);
    if (got <= 0) break;
    given += got;
  }
  return given;
}

void MixerCore::MixTail(Slot& slot, float* sum, int frames) {
  const int count = std::min(frames, slot.tailLeft);
  Add(slot.tail.data() + 2 * (kRampFrames - slot.tailLeft), sum, count);
  slot.tailLeft -= count;
}

// `frames` is at most what is left to the next end.
void MixerCore::AdvanceSlot(Slot& slot, int64_t frames) {
  slot.sounded = slot.sounded || frames > 0;
  slot.position += frames;
  slot.volume.Advance(frames);
  slot.fade.Advance(frames);
  if (slot.position >= slot.length) {
    Finish(slot, End::kFile);
  } else if (slot.fading && slot.fade.FramesLeft() == 0) {
    Finish(slot, End::kFade);
  }
}

void MixerCore::Finish(Slot& slot, End end) {
  slot.source = nullptr;
  slot.fading = false;
  slot.fade.Set(1.0);
  slot.end = end;
}

void MixerCore::GlideIn(Slot& slot) {
  const double volume = slot.volume.Target();
  slot.volume.Set(0.0);
  slot.volume.GlideTo(volume, kRampFrames);
}

// Reads on a few frames of what is about to be cut, and keeps them gliding to silence, on top of a
// tail that still runs. The source stands elsewhere afterwards.
void MixerCore::KeepTail(Slot& slot) {
  if (!decoding_ || !slot.sounded || slot.source == nullptr) return;
  slot.sounded = false;
  const int64_t left = FramesLeft(slot);
  const int given =
      ReadSlot(slot, scratch_.data(), static_cast<int>(std::min<int64_t>(left, kRampFrames)));
  slot.seekBeforeRead = true;
  Ramp volume = slot.volume;
  Ramp fade = slot.fade;
  for (int done = 0; done < given;) {
    const int stretch = Stretch(volume, fade, given - done);
    Scale(scratch_.data() + 2 * done, stretch, LevelOf(slot.gain, volume, fade));
    volume.Advance(stretch);
    fade.Advance(stretch);
    done += stretch;
  }
  Ramp cut;
  cut.Set(1.0);
  cut.GlideTo(0.0, kRampFrames);
  Ramp one;
  one.Set(1.0);
  Scale(scratch_.data(), given, LevelOf(1.0F, cut, one));

  float* tail = slot.tail.data();
  const int running = slot.tailLeft;
  std::memmove(tail, tail + 2 * (kRampFrames - running),
               sizeof(float) * 2 * static_cast<size_t>(running));
  std::fill(tail + 2 * running, tail + 2 * kRampFrames, 0.0f);
  Add(scratch_.data(), tail, given);
  slot.tailLeft = kRampFrames;
}

void MixerCore::CheckInvariants() const {
#ifndef NDEBUG
  for (const Slot& s : slots_) {
    if (s.source != nullptr) {
      assert(s.position >= 0 && s.position < s.length);  // 1
      assert(!s.fading || s.fade.FramesLeft() > 0);      // 1
      assert(!s.end.has_value());                        // 5
    }
    assert(s.fade.Value() >= 0.0 && s.fade.Value() <= 1.0);      // 3
    assert(s.fading || s.fade.Value() == s.fade.Target());       // 3
    assert(s.volume.Value() >= 0.0 && s.volume.Value() <= 2.0);  // 4
    assert(s.gain >= 0.0F && s.gain <= kMostGain);               // 4
    assert(s.tailLeft >= 0 && s.tailLeft <= kRampFrames);        // 6
  }
#endif
}

}  // namespace zemo
