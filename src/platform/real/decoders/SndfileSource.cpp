// See SndfileSource.h.
#include "platform/real/decoders/SndfileSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace zemo {
namespace {

constexpr int kScratchFrames = 1024;

// Opus needs a while after a seek until it decodes as from the start.
constexpr int kOpusPreRoll = 4800;
constexpr float kLoudest = 16;  // 24 dB over full scale: nothing above is meant

float Sane(float sample) {
  return std::isfinite(sample) ? std::clamp(sample, -kLoudest, kLoudest) : 0.0F;
}

}  // namespace

SndfileSource::SndfileSource(ByteStream bytes, int64_t zeroLengthAt)
    : bytes_(std::move(bytes)), zeroLengthAt_(zeroLengthAt) {
  OpenDecoder();
  const int encoding = info_.format & SF_FORMAT_SUBMASK;
  mayHoldNonsense_ = encoding == SF_FORMAT_FLOAT || encoding == SF_FORMAT_DOUBLE;
  if (encoding == SF_FORMAT_OPUS) preRoll_ = kOpusPreRoll;
  if (info_.channels > 2) ChooseFold();
  length_ = info_.frames;
  if (length_ <= 0 || length_ >= SF_COUNT_MAX) {
    length_ = CountFrames();
    OpenDecoder();
  }
}

void SndfileSource::OpenDecoder() {
  static_assert(sizeof(sf_count_t) == sizeof(int64_t));
  SF_VIRTUAL_IO io{StreamSize, SeekStream, ReadStream, WriteStream, TellStream};
  bytes_.Seek(0, SEEK_SET);
  info_ = {};
  sound_.reset(sf_open_virtual(&io, SFM_READ, &info_, this));
  if (!sound_) throw CannotPlay(bytes_.Path(), sf_strerror(nullptr));
}

void SndfileSource::ChooseFold() {
  const auto channels = static_cast<size_t>(info_.channels);
  std::vector<int> map(channels);
  const int bytes = static_cast<int>(channels * sizeof(int));
  const bool stated =
      sf_command(sound_.get(), SFC_GET_CHANNEL_MAP_INFO, map.data(), bytes) == SF_TRUE;
  if (!stated) map.clear();
  fold_ = FoldToStereo(info_.channels, map);
  scratch_.resize(kScratchFrames * channels);
}

int64_t SndfileSource::CountFrames() {
  const auto channels = static_cast<size_t>(info_.channels);
  std::vector<float> dropped(kScratchFrames * channels);
  int64_t count = 0;
  for (;;) {
    const sf_count_t got = sf_readf_float(sound_.get(), dropped.data(), kScratchFrames);
    if (got <= 0) return count;
    count += got;
  }
}

int SndfileSource::Read(float* stereo, int frames) {
  const int wanted = static_cast<int>(std::min<int64_t>(frames, length_ - position_));
  if (wanted <= 0) return 0;
  const int given = fold_.empty() ? ReadRaw(stereo, wanted) : ReadFolded(stereo, wanted);
  if (mayHoldNonsense_) std::transform(stereo, stereo + 2 * given, stereo, Sane);
  position_ += given;
  return given;
}

int SndfileSource::ReadRaw(float* stereo, int frames) {
  if (info_.channels == 2) {
    return static_cast<int>(std::max<sf_count_t>(0, sf_readf_float(sound_.get(), stereo, frames)));
  }
  // One channel: read into the upper half, spread from there; the writer never passes the reader.
  const float* mono = stereo + frames;
  const int given = static_cast<int>(
      std::max<sf_count_t>(0, sf_readf_float(sound_.get(), stereo + frames, frames)));
  for (int i = 0; i < given; ++i) {
    const float sample = mono[i];
    stereo[2 * i] = sample;
    stereo[2 * i + 1] = sample;
  }
  return given;
}

int SndfileSource::ReadFolded(float* stereo, int frames) {
  int given = 0;
  while (given < frames) {
    const int ask = std::min(frames - given, kScratchFrames);
    const sf_count_t got = sf_readf_float(sound_.get(), scratch_.data(), ask);
    const float* in = scratch_.data();
    for (sf_count_t i = 0; i < got; ++i, ++given) {
      float left = 0;
      float right = 0;
      for (const ChannelGain& gain : fold_) {
        const float sample = mayHoldNonsense_ ? Sane(*in) : *in;
        left += gain.left * sample;
        right += gain.right * sample;
        ++in;
      }
      stereo[2 * given] = left;
      stereo[2 * given + 1] = right;
    }
    if (got < ask) break;
  }
  return given;
}

void SndfileSource::Seek(int64_t frame) {
  const int64_t target = std::clamp<int64_t>(frame, 0, length_);
  const int64_t from = target == length_ ? target : std::max<int64_t>(0, target - preRoll_);
  position_ = from;
  if (from == length_) return;  // some decoders refuse it
  if (sf_seek(sound_.get(), from, SEEK_SET) != from) position_ = length_;
  std::array<float, 2 * kScratchFrames> dropped;
  while (position_ < target) {
    const auto ask = std::min<int64_t>(kScratchFrames, target - position_);
    if (Read(dropped.data(), static_cast<int>(ask)) == 0) position_ = length_;
  }
}

sf_count_t SndfileSource::StreamSize(void* self) {
  return static_cast<SndfileSource*>(self)->bytes_.Size();
}

sf_count_t SndfileSource::SeekStream(sf_count_t offset, int whence, void* self) {
  return static_cast<SndfileSource*>(self)->bytes_.Seek(offset, whence);
}

sf_count_t SndfileSource::ReadStream(void* to, sf_count_t count, void* self) {
  auto& me = *static_cast<SndfileSource*>(self);
  if (count <= 0) return 0;
  const int64_t from = me.bytes_.Tell();
  const auto got = static_cast<sf_count_t>(me.bytes_.Read(to, static_cast<size_t>(count)));
  if (me.zeroLengthAt_ < 0) return got;
  // A length of 0 is shown as the one that stands for "up to the end".
  for (int64_t i = 0; i < 4; ++i) {
    const int64_t at = me.zeroLengthAt_ + i - from;
    if (at >= 0 && at < got) static_cast<uint8_t*>(to)[at] = 0xFF;
  }
  return got;
}

sf_count_t SndfileSource::WriteStream(const void*, sf_count_t, void*) {
  return 0;
}

sf_count_t SndfileSource::TellStream(void* self) {
  return static_cast<SndfileSource*>(self)->bytes_.Tell();
}

}  // namespace zemo
