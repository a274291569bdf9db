// The four header bytes of an MPEG audio frame, and the frame of information that encoders put
// before the sound (Xing, Info, VBRI). Pure functions on bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace zemo {

enum class MpegVersion { kMpeg1, kMpeg2, kMpeg25 };

struct MpegHeader {
  MpegVersion version = MpegVersion::kMpeg1;
  int layer = 3;     // 1 to 3
  int rate = 0;      // Hz
  int channels = 0;  // 1 or 2
  int samples = 0;   // frames of sound (a sample a channel) in this MPEG frame
  int bytes = 0;     // size of the MPEG frame, header included
  int bitsPerSecond = 0;

  // Average size of a frame at this bit rate; `bytes` is this rounded down, or one more.
  double MeanBytes() const { return samples / 8.0 * bitsPerSecond / rate; }
};

// Nothing when the bytes are no header. Free-format streams (no bit rate stated) are not known, nor
// is layer 1: no sound files were made with it, and much that is no sound looks like it.
std::optional<MpegHeader> ParseMpegHeader(const uint8_t* fourBytes);

// Frames of one stream: bit rate and mono or stereo may change from frame to frame.
inline bool SameStream(const MpegHeader& a, const MpegHeader& b) {
  return a.version == b.version && a.layer == b.layer && a.rate == b.rate;
}

// What a frame of information states.
struct MpegInfo {
  bool constantRate = false;      // "Info" instead of "Xing"
  std::optional<int64_t> frames;  // frames of sound that follow this one
  std::optional<int64_t> bytes;   // of the stream, this frame included
  bool encoderNamed = false;      // the extension with delay and padding is there
  int delay = 0;                  // samples the encoder put before the sound
  int padding = 0;                // and after it
};

// `frame` are the `size` first bytes of the frame with that header (as many as there are, at most
// the frame). Nothing when it is an ordinary frame. A VBRI frame gives neither frames nor bytes:
// its makers do not agree on what they count.
std::optional<MpegInfo> ParseMpegInfo(const MpegHeader& header, const uint8_t* frame, size_t size);

}  // namespace zemo
