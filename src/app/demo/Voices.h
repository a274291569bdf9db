// The instruments of the demo music: each adds one note or stroke to a stereo buffer.
#pragma once

#include <cstdint>
#include <vector>

namespace zemo {

inline constexpr int kDemoRate = 44100;  // frames a second

// Interleaved left, right; grows as notes are added.
struct StereoBuffer {
  std::vector<float> samples;

  int64_t Frames() const { return static_cast<int64_t>(samples.size() / 2); }
  void Need(int64_t frames);  // at least that long, the rest silent
  void Cut(int64_t frames);   // exactly that long
  void Add(const StereoBuffer& other);
};

// Numbers without a pattern, the same on every machine for the same seed.
class DemoRandom {
 public:
  explicit DemoRandom(uint64_t seed) : state_(seed) {}
  uint32_t Next();
  int Below(int n) { return static_cast<int>(Next() % static_cast<uint32_t>(n)); }
  float Unit() { return static_cast<float>(Next() >> 8) / 16777216.0F; }  // 0 to below 1
  bool Chance(float probability) { return Unit() < probability; }

 private:
  uint64_t state_;
};

enum class Voice { kPad, kBass, kPluck, kLead, kBell, kSine };

struct Note {
  double atSec = 0;
  double lengthSec = 1;  // until the release begins
  double pitch = 60;     // MIDI note number; 69 is 440 Hz
  float level = 0.2F;    // of the peak, before the voice's own envelope
  float pan = 0;         // -1 left to 1 right
};

void AddNote(StereoBuffer& to, Voice voice, const Note& note);

enum class Drum { kKick, kSnare, kHat, kTick };
void AddDrum(StereoBuffer& to, Drum drum, double atSec, float level, DemoRandom& random);

// A tone of constant level with edges of 2 ms, as a time signal has it.
void AddTone(StereoBuffer& to, double atSec, double lengthSec, double frequency, float level);

// Repeats in the distance, from side to side.
void AddEcho(StereoBuffer& to, double delaySec, float level, float feedback);

// The same loudness for every element (`rms` of full scale), peaks rounded off below full scale.
void Level(StereoBuffer& to, float rms);
void FadeEnd(StereoBuffer& to, double lengthSec);

}  // namespace zemo
