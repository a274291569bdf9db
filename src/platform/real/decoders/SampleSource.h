// A decoder as it is inside this folder: a SoundSource but for its rate, which is the file's own.
// SoundFileOpener puts a resampler behind those that are not at kSampleRate.
#pragma once

#include <cstdint>
#include <memory>

namespace zemo {

// Not shared: one thread at a time. Frames are stereo, at Rate().
class SampleSource {
 public:
  virtual ~SampleSource() = default;
  virtual int Rate() const = 0;  // Hz
  virtual int64_t LengthFrames() const = 0;
  // As SoundSource::Read.
  virtual int Read(float* stereo, int frames) = 0;
  // Exact to the frame; `frame` lies within the file.
  virtual void Seek(int64_t frame) = 0;
  // As SoundSource::Twin.
  virtual std::unique_ptr<SampleSource> Twin() const { return nullptr; }
};

}  // namespace zemo
