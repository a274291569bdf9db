// See VorbisSource.h.
#include "platform/real/decoders/VorbisSource.h"

#include <sndfile.h>

namespace zemo {
namespace {

// vorbisfile.h defines unused sets of callbacks; ours work on a ByteStream.
size_t ReadStream(void* to, size_t size, size_t count, void* stream) {
  return size == 0 ? 0 : static_cast<ByteStream*>(stream)->Read(to, size * count) / size;
}

int SeekStream(void* stream, ogg_int64_t offset, int whence) {
  return static_cast<ByteStream*>(stream)->Seek(offset, whence) < 0 ? -1 : 0;
}

long TellStream(void* stream) {
  return static_cast<ByteStream*>(stream)->Tell();
}

// The order of Vorbis, which puts the centre between left and right.
std::vector<int> VorbisPlaces(int channels) {
  constexpr int kL = SF_CHANNEL_MAP_LEFT, kR = SF_CHANNEL_MAP_RIGHT, kC = SF_CHANNEL_MAP_CENTER;
  constexpr int kLow = SF_CHANNEL_MAP_LFE, kBack = SF_CHANNEL_MAP_REAR_CENTER;
  constexpr int kRl = SF_CHANNEL_MAP_REAR_LEFT, kRr = SF_CHANNEL_MAP_REAR_RIGHT;
  constexpr int kSl = SF_CHANNEL_MAP_SIDE_LEFT, kSr = SF_CHANNEL_MAP_SIDE_RIGHT;
  switch (channels) {
    case 3:
      return {kL, kC, kR};
    case 5:
      return {kL, kC, kR, kRl, kRr};
    case 6:
      return {kL, kC, kR, kRl, kRr, kLow};
    case 7:
      return {kL, kC, kR, kSl, kSr, kBack, kLow};
    case 8:
      return {kL, kC, kR, kSl, kSr, kRl, kRr, kLow};
    default:
      return {};
  }
}

}  // namespace

VorbisSource::VorbisSource(ByteStream bytes) : bytes_(std::move(bytes)) {
  const ov_callbacks callbacks{ReadStream, SeekStream, nullptr, TellStream};
  if (ov_open_callbacks(&bytes_, &vorbis_, nullptr, 0, callbacks) != 0) {
    throw CannotPlay(bytes_.Path(), "its Vorbis stream is damaged");
  }
  rate_ = static_cast<int>(ov_info(&vorbis_, 0)->rate);
  for (int link = 0; link < ov_streams(&vorbis_); ++link) {
    if (ov_info(&vorbis_, link)->rate != rate_) break;
    length_ += std::max<int64_t>(0, ov_pcm_total(&vorbis_, link));
  }
  Seek(0);  // opening may end in the second link
}

VorbisSource::~VorbisSource() {
  ov_clear(&vorbis_);
}

void VorbisSource::EnterLink(int link) {
  const int channels = ov_info(&vorbis_, link)->channels;
  fold_ = FoldToStereo(channels, VorbisPlaces(channels));
  link_ = link;
}

int VorbisSource::Read(float* stereo, int frames) {
  const auto wanted = static_cast<int>(std::min<int64_t>(frames, length_ - position_));
  int given = 0;
  while (given < wanted) {
    float** channels = nullptr;
    int link = 0;
    const long got = ov_read_float(&vorbis_, &channels, wanted - given, &link);
    if (got == OV_HOLE) continue;  // damaged pages were passed over
    if (got <= 0) break;
    if (link != link_) EnterLink(link);
    float* out = stereo + 2 * given;
    for (long i = 0; i < got; ++i, out += 2) {
      float left = 0;
      float right = 0;
      for (size_t c = 0; c < fold_.size(); ++c) {
        left += fold_[c].left * channels[c][i];
        right += fold_[c].right * channels[c][i];
      }
      out[0] = left;
      out[1] = right;
    }
    given += static_cast<int>(got);
  }
  position_ += given;
  return given;
}

void VorbisSource::Seek(int64_t frame) {
  position_ = std::clamp<int64_t>(frame, 0, length_);
  if (position_ < length_ && ov_pcm_seek(&vorbis_, position_) != 0) position_ = length_;
}

}  // namespace zemo
