// Writes the sound of the air to a WAV or FLAC file: 16-bit, 44.1 kHz, stereo.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/real/sound/WavFile.h"

struct sf_private_tag;  // libsndfile's SNDFILE

namespace zemo {

// The ending of the path, .wav or .flac in any case, tells the form. One thread at a time.
class SoundFileWriter {
 public:
  static constexpr int64_t kUnbounded = INT64_MAX;

  // Replaces the file; throws SoundError. A WAV file is plain PCM; one that may come to more than 4
  // GB, as any for which `mostFrames` is not given, has room for 64-bit sizes if it must.
  explicit SoundFileWriter(const std::string& path, int64_t mostFrames = kUnbounded);
  ~SoundFileWriter();  // closes; what fails then goes unheard
  SoundFileWriter(const SoundFileWriter&) = delete;
  SoundFileWriter& operator=(const SoundFileWriter&) = delete;

  // Throw SoundError when not all of it could be written, as on a full disk.
  void Write(const float* stereo, int frames);  // full scale 1.0
  void Write(const int16_t* stereo, int frames);
  void Close();  // completes the file; nothing can be written afterwards

  const std::string& Path() const { return path_; }
  int64_t Frames() const { return frames_; }  // written so far

 private:
  std::string path_;
  std::unique_ptr<WavFile> wav_;  // one of the two, null once it is closed
  sf_private_tag* flac_ = nullptr;
  int64_t frames_ = 0;
  int64_t headerFrames_ = 0;  // written when the header was last brought up to date
  std::vector<int16_t> samples_;
};

}  // namespace zemo
