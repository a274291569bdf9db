// One opened sound file as the mixer sees it: 44.1 kHz stereo frames of a known number.
// Implementations: decoders (platform/real), silent sources that only know their length.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>

namespace zemo {

inline constexpr int kSampleRate = 44100;  // frames a second, everywhere behind a source
inline constexpr int kChannels = 2;        // interleaved left, right

// Frames of the mixer to whole milliseconds and back, to the nearest.
constexpr int64_t FramesToMs(int64_t frames) {
  return (frames * 1000 + kSampleRate / 2) / kSampleRate;
}
constexpr int64_t MsToFrames(int64_t ms) {
  return (ms * kSampleRate + 500) / 1000;
}

// A sound file or device that cannot be used; what() is one line for the log, with the path.
struct SoundError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Not shared: one thread at a time, handed over by the sound chain.
class SoundSource {
 public:
  virtual ~SoundSource() = default;

  // Frames at kSampleRate: exact to the sample for PCM, to the frame for MP3, encoder delay and
  // padding taken off where the file states them.
  virtual int64_t LengthFrames() const = 0;

  // Fills `stereo` (2 * frames floats, full scale 1.0) from the read position and moves it. Returns
  // the frames given: fewer than asked at the end of the file, or where the file is damaged.
  virtual int Read(float* stereo, int frames) = 0;

  // Moves the read position; clamped to the file. Exact to the frame.
  virtual void Seek(int64_t frame) = 0;

  // Another one of the same opened file, that another thread may use beside this one; null where
  // there is none. Throws SoundError. Thread: that of this one.
  virtual std::unique_ptr<SoundSource> Twin() const { return nullptr; }
};

// Opens sound files. Thread: the logic's.
class SoundOpener {
 public:
  virtual ~SoundOpener() = default;
  // Throws SoundError when the file is missing, is no sound, or holds nothing to play.
  virtual std::unique_ptr<SoundSource> Open(const std::string& path) = 0;
};

}  // namespace zemo
