// See MpegHeader.h.
#include "platform/real/decoders/MpegHeader.h"

#include <cstring>

namespace zemo {
namespace {

// kbit/s by index; MPEG-1 layer 2, MPEG-1 layer 3, both layers of MPEG-2.
constexpr int kBitRates[3][15] = {
    {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
    {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}};

constexpr int kRates[3] = {44100, 48000, 32000};  // MPEG-1; half in MPEG-2, a quarter in 2.5

// Layout of the extension, counted from the name of the encoder.
constexpr size_t kDelayOffset = 21;
constexpr size_t kExtensionSize = 24;

int SamplesOf(MpegVersion version, int layer) {
  return layer == 3 && version != MpegVersion::kMpeg1 ? 576 : 1152;
}

int64_t BigEndian32(const uint8_t* at) {
  return int64_t{at[0]} << 24 | int64_t{at[1]} << 16 | int64_t{at[2]} << 8 | int64_t{at[3]};
}

// `at` is behind "Xing" or "Info", `size` what is left there.
MpegInfo ParseXing(bool constantRate, const uint8_t* at, size_t size) {
  MpegInfo info;
  info.constantRate = constantRate;
  if (size < 4) return info;
  const int64_t flags = BigEndian32(at);
  size_t offset = 4;
  const auto field = [&](int64_t flag, size_t bytes) -> const uint8_t* {
    if (!(flags & flag) || offset + bytes > size) return nullptr;
    offset += bytes;
    return at + offset - bytes;
  };
  if (const uint8_t* frames = field(1, 4)) info.frames = BigEndian32(frames);
  if (const uint8_t* bytes = field(2, 4)) info.bytes = BigEndian32(bytes);
  field(4, 100);  // seek table
  field(8, 4);    // quality
  const uint8_t* extension = at + offset;
  if (offset + kExtensionSize > size || extension[0] == 0) return info;
  info.encoderNamed = true;
  const uint8_t* gap = extension + kDelayOffset;
  info.delay = gap[0] << 4 | gap[1] >> 4;
  info.padding = (gap[1] & 0x0F) << 8 | gap[2];
  return info;
}

}  // namespace

std::optional<MpegHeader> ParseMpegHeader(const uint8_t* b) {
  if (b[0] != 0xFF || (b[1] & 0xE0) != 0xE0) return std::nullopt;
  const int versionBits = b[1] >> 3 & 3;
  const int layer = 4 - (b[1] >> 1 & 3);
  const int bitRateIndex = b[2] >> 4;
  const int rateIndex = b[2] >> 2 & 3;
  if (versionBits == 1 || layer == 1 || layer == 4 || bitRateIndex == 0 || bitRateIndex == 15 ||
      rateIndex == 3 || (b[3] & 3) == 2) {
    return std::nullopt;
  }
  MpegHeader h;
  h.version = versionBits == 3   ? MpegVersion::kMpeg1
              : versionBits == 2 ? MpegVersion::kMpeg2
                                 : MpegVersion::kMpeg25;
  h.layer = layer;
  const bool mpeg1 = h.version == MpegVersion::kMpeg1;
  h.rate = kRates[rateIndex] >> (mpeg1 ? 0 : h.version == MpegVersion::kMpeg2 ? 1 : 2);
  const int row = mpeg1 ? h.layer - 2 : 2;
  h.bitsPerSecond = kBitRates[row][bitRateIndex] * 1000;
  h.channels = b[3] >> 6 == 3 ? 1 : 2;
  h.samples = SamplesOf(h.version, h.layer);
  const int padding = b[2] >> 1 & 1;
  h.bytes = h.samples / 8 * h.bitsPerSecond / h.rate + padding;
  return h;
}

std::optional<MpegInfo> ParseMpegInfo(const MpegHeader& header, const uint8_t* frame, size_t size) {
  if (header.layer != 3) return std::nullopt;
  const bool mono = header.channels == 1;
  const size_t side = header.version == MpegVersion::kMpeg1 ? (mono ? 17 : 32) : (mono ? 9 : 17);
  // Behind the side information; two bytes further where an encoder counted the checksum.
  for (const size_t offset : {4 + side, 4 + side + 2}) {
    if (offset + 8 > size) break;
    const bool constantRate = std::memcmp(frame + offset, "Info", 4) == 0;
    if (constantRate || std::memcmp(frame + offset, "Xing", 4) == 0) {
      return ParseXing(constantRate, frame + offset + 4, size - offset - 4);
    }
  }
  constexpr size_t kVbri = 4 + 32;
  if (kVbri + 4 <= size && std::memcmp(frame + kVbri, "VBRI", 4) == 0) return MpegInfo{};
  return std::nullopt;
}

}  // namespace zemo
