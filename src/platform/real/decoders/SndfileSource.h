// WAV, AIFF, FLAC, Opus and the other formats that libsndfile reads.
#pragma once

#include <sndfile.h>

#include <memory>
#include <vector>

#include "platform/real/decoders/ByteStream.h"
#include "platform/real/decoders/ChannelFold.h"
#include "platform/real/decoders/SampleSource.h"

namespace zemo {

class SndfileSource : public SampleSource {
 public:
  // `zeroLengthAt` as in SoundContent. Throws SoundError when libsndfile finds no sound.
  SndfileSource(ByteStream bytes, int64_t zeroLengthAt);

  int Rate() const override { return info_.samplerate; }
  int64_t LengthFrames() const override { return length_; }
  int Read(float* stereo, int frames) override;
  void Seek(int64_t frame) override;

 private:
  struct Closer {
    void operator()(SNDFILE* sound) const { sf_close(sound); }
  };

  // libsndfile's view of the file; `self` is the SndfileSource.
  static sf_count_t StreamSize(void* self);
  static sf_count_t SeekStream(sf_count_t offset, int whence, void* self);
  static sf_count_t ReadStream(void* to, sf_count_t count, void* self);
  static sf_count_t WriteStream(const void* from, sf_count_t count, void* self);
  static sf_count_t TellStream(void* self);

  void OpenDecoder();
  void ChooseFold();
  // Frames there really are, for files that do not state a number. Moves the read position.
  int64_t CountFrames();
  int ReadRaw(float* stereo, int frames);
  int ReadFolded(float* stereo, int frames);

  ByteStream bytes_;
  int64_t zeroLengthAt_;  // as in SoundContent
  SF_INFO info_{};
  int64_t length_ = 0;
  int64_t position_ = 0;
  int64_t preRoll_ = 0;                     // frames to read and drop after a seek
  bool mayHoldNonsense_ = false;            // floating point: infinities, not-a-numbers
  std::vector<ChannelGain> fold_;           // of files with more than two channels
  std::vector<float> scratch_;              // their frames as they are in the file
  std::unique_ptr<SNDFILE, Closer> sound_;  // last: it calls the stream
};

}  // namespace zemo
