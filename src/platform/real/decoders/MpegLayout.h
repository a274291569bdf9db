// Where the frames of an MPEG audio stream lie in a file and how much sound they hold, without
// decoding: tags, information frames, junk between frames, a cut end.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/real/decoders/FileBytes.h"
#include "platform/real/decoders/MpegHeader.h"

namespace zemo {

struct MpegLayout {
  MpegHeader first;             // of the first frame of sound
  std::vector<ByteSpan> spans;  // whole frames only, in order; never empty
  ByteSpan area;                // from the first frame of sound to where tags begin
  std::optional<MpegInfo> info;
  int64_t frames = 0;    // MPEG frames in `spans`
  bool scanned = false;  // false: taken on trust from the information frame
  // No frame is shorter, as far as one can know without looking at all; 0: that is not known.
  int leastBytes = 0;

  // In frames of sound at first.rate, as the decoder counts them.
  int64_t SoundBegin() const;  // behind decoder and encoder delay, 0 where none is stated
  int64_t SoundEnd() const;    // before the encoder's padding
};

// Nothing when the bytes of `within` hold no MPEG audio: a few frames must follow one another
// within the first kMpegSearchBytes (or up to the end of a shorter file). Reads the whole file only
// where the information frame is missing or does not agree with the file's size.
inline constexpr int64_t kMpegSearchBytes = 256 * 1024;
std::optional<MpegLayout> LayOutMpeg(FileBytes& file, ByteSpan within);

// Walks all frames from layout.area.begin and sets spans and frames to what is there. The result
// may be empty when the file changed.
void ScanMpeg(FileBytes& file, MpegLayout& layout);

// First byte behind the ID3v2 tags that begin at `offset`; `offset` where there is none.
int64_t SkipId3v2(FileBytes& file, int64_t offset);

}  // namespace zemo
