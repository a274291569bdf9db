// The mixer of every mode: three slots summed in 32-bit float, each with the gain of its file, its
// volume and its fade, and a limiter on the sum. Moved by whoever renders: the mixer thread (real),
// the virtual clock (simulated).
//
// Invariants. CheckInvariants asserts after each change in debug builds what a moment can show of
// them (1 and 3 to 6); the tests prove the others over time:
//  1. A slot plays exactly while it has a source; it is then neither at its file's end nor at its
//     fade's end: position < length and, while fading, at least one frame of the fade is left.
//  2. Position moves by the frames rendered while running, by nothing else but Start and Seek.
//  3. The fade's factor lies within 0..1 and only falls; its end only moves nearer.
//  4. The level of a slot never jumps while it plays: a new volume is a ramp of kRampFrames, and a
//     gain comes with Start alone, behind the tail of what played.
//  5. Each Start ends at most once: an end waits for TakeEnd only while the slot does not play.
//  6. A tail (the last kRampFrames of what was silenced) has 0..kRampFrames frames left.
//  7. Rendering null moves positions, fades and ends by the same frames as rendering sound.
//  8. What comes out is the limited sum, delayed by exactly kLatencyFrames.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/SoundChain.h"
#include "platform/SoundSource.h"
#include "platform/sound/Limiter.h"

namespace zemo {

// A value on a straight line in equal steps a frame, then constant.
class Ramp {
 public:
  void Set(double value) { from_ = to_ = value, left_ = total_ = 0; }
  void GlideTo(double value, int64_t frames);
  void Advance(int64_t frames);
  double Value() const { return After(0); }
  double After(int64_t frames) const;  // the value `frames` later
  double Target() const { return to_; }
  int64_t FramesLeft() const { return left_; }

 private:
  double from_ = 0.0;
  double to_ = 0.0;
  int64_t left_ = 0;
  int64_t total_ = 0;
};

// Never allocates. One thread at a time.
class MixerCore {
 public:
  static constexpr int kRampFrames =
      441;  // 10 ms: volume steps, what is cut, what starts inside a file
  static constexpr int kLatencyFrames = Limiter::kLatencyFrames;
  enum class End { kFile, kFade };

  // Decoding: whether Render(sound) will be asked, so that what is cut is read for its tail.
  explicit MixerCore(bool decoding);
  void SetDecoding(bool decoding);

  // Plays `source` (not owned; until Silence, an end, or another Start) from `frame`, at once, at
  // the slot's volume and, ahead of it, `gain`: 1.0 leaves every sample as it is. What played in
  // the slot is cut. `frame` < `lengthFrames`.
  void Start(int slot, SoundSource* source, int64_t lengthFrames, int64_t frame, double gain = 1.0);
  void Silence(int slot);  // at once for the slot; rendered sound glides out over kRampFrames
  void Seek(int slot, SoundSource* source,
            int64_t frame);  // of a slot that plays; `frame` < its length
  // To silence in `frames` equal steps, then the slot ends; a running fade keeps the earlier end.
  // 0 frames or less end the slot now. Nothing on a slot that does not play.
  void Fade(int slot, int64_t frames);
  void SetVolume(int slot, int volume);  // kUnityVolume is 1.0
  void SetRunning(bool running);         // not running: nothing is read, silence is rendered

  // Moves on by `frames`; `stereo` takes 2 * frames floats within -1..1, null renders nothing and
  // costs the same for any number of frames.
  void Render(float* stereo, int64_t frames);

  bool Running() const { return running_; }
  bool Plays(int slot) const { return slots_[slot].source != nullptr; }
  int64_t Position(int slot) const { return slots_[slot].position; }  // frames; stays after an end
  int64_t FramesToNextEvent() const;     // to the next end of a file or fade; INT64_MAX for none
  std::optional<End> TakeEnd(int slot);  // how the slot ended by itself since the last call, once
  const Limiter& SumLimiter() const { return limiter_; }

 private:
  struct Slot {
    SoundSource* source = nullptr;
    int64_t length = 0;
    int64_t position = 0;
    bool seekBeforeRead = false;  // the source does not stand at `position`
    bool sounded = false;         // moved on since Start, Seek or a pause
    float gain = 1.0F;            // of the source
    Ramp volume;
    Ramp fade;  // 1, or on its way to 0
    bool fading = false;
    std::optional<End> end;
    int tailLeft = 0;  // frames at the end of `tail` still to be mixed
    std::array<float, 2 * kRampFrames> tail;
  };

  void MixChunk(float* sum, int frames);
  void MixSlot(Slot& slot, float* sum, int frames, bool first);
  int ReadSlot(Slot& slot, float* stereo, int frames);
  void MixTail(Slot& slot, float* sum, int frames);
  void AdvanceSlot(Slot& slot, int64_t frames);
  void Finish(Slot& slot, End end);
  void KeepTail(Slot& slot);
  static void GlideIn(Slot& slot);
  void CheckInvariants() const;

  static int64_t FramesLeft(const Slot& slot);

  bool decoding_;
  bool running_ = false;
  std::array<Slot, kSlots> slots_;
  Limiter limiter_;
  std::array<float, 2 * Limiter::kMaxFrames> scratch_;
};

}  // namespace zemo
