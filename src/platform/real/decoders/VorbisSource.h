// Ogg Vorbis through libvorbisfile: libsndfile reads it too, but lands beside the frame asked for
// in some seeks.
#pragma once

#include <vorbis/vorbisfile.h>

#include <memory>
#include <vector>

#include "platform/real/decoders/ByteStream.h"
#include "platform/real/decoders/ChannelFold.h"
#include "platform/real/decoders/SampleSource.h"

namespace zemo {

class VorbisSource : public SampleSource {
 public:
  // Throws SoundError when there is no Vorbis stream.
  explicit VorbisSource(ByteStream bytes);
  ~VorbisSource() override;
  VorbisSource(const VorbisSource&) = delete;
  VorbisSource& operator=(const VorbisSource&) = delete;

  int Rate() const override { return rate_; }
  int64_t LengthFrames() const override { return length_; }
  int Read(float* stereo, int frames) override;
  void Seek(int64_t frame) override;

 private:
  // Streams put one behind the other in a file are its links. Sets fold_ for the link that `link`
  // numbers; the channels of two links may differ.
  void EnterLink(int link);

  ByteStream bytes_;
  OggVorbis_File vorbis_{};
  int rate_ = 0;
  int64_t length_ = 0;  // of the links up to one of another rate
  int64_t position_ = 0;
  int link_ = -1;
  std::vector<ChannelGain> fold_;
};

}  // namespace zemo
