// See SoundContent.h.
#include "platform/real/decoders/SoundContent.h"

#include <algorithm>
#include <cstring>

#include "platform/real/decoders/MpegLayout.h"

namespace zemo {
namespace {

constexpr int kTagMpeg = 0x0050;  // layers 1 and 2
constexpr int kTagMpegLayer3 = 0x0055;
constexpr int kOggPacketAt = 28;   // behind the header of a page with one packet
constexpr int kMostChunks = 1000;  // before the sound; more are rubbish

bool Is(const uint8_t* at, const char* fourCharacters) {
  return std::memcmp(at, fourCharacters, 4) == 0;
}

int64_t LittleEndian32(const uint8_t* at) {
  return int64_t{at[0]} | int64_t{at[1]} << 8 | int64_t{at[2]} << 16 | int64_t{at[3]} << 24;
}

// True when nothing but chunks, as they stand behind the sound of a WAV file, lies from `at` to the
// end.
bool IsChunksToTheEnd(FileBytes& file, int64_t at, int64_t end) {
  for (int chunks = 0; chunks < kMostChunks && at < end; ++chunks) {
    const uint8_t* chunk = file.Peek(at, 8);
    if (!chunk || !std::all_of(chunk, chunk + 4, [](uint8_t c) { return c >= ' ' && c <= '~'; })) {
      return false;
    }
    const int64_t size = LittleEndian32(chunk + 4);
    at += 8 + size + (size & 1);
  }
  return at == end || at == end + 1;  // the last chunk's filling byte is often missing
}

// The chunks of a WAV file up to its sound.
SoundContent IdentifyWave(FileBytes& file, ByteSpan bytes) {
  bool mpeg = false;
  int64_t at = bytes.begin + 12;
  for (int chunks = 0; chunks < kMostChunks; ++chunks) {
    const uint8_t* chunk = file.Peek(at, 10);
    if (!chunk) break;
    const int64_t size = LittleEndian32(chunk + 4);
    if (Is(chunk, "fmt ")) {
      const int tag = chunk[8] | chunk[9] << 8;
      mpeg = tag == kTagMpeg || tag == kTagMpegLayer3;
    }
    if (Is(chunk, "data")) {
      const int64_t begin = at + 8;
      const bool unstated = size == 0 && !IsChunksToTheEnd(file, begin, bytes.end);
      if (!mpeg) return {SoundKind::kSndfile, bytes, unstated ? at + 4 - bytes.begin : -1};
      return {SoundKind::kMpeg, {begin, unstated ? bytes.end : std::min(begin + size, bytes.end)}};
    }
    at += 8 + size + (size & 1);
  }
  return {SoundKind::kSndfile, bytes};
}

}  // namespace

SoundContent IdentifySound(FileBytes& file) {
  const ByteSpan bytes{std::min(SkipId3v2(file, 0), file.Size()), file.Size()};
  const uint8_t* head = file.Peek(bytes.begin, 12);
  if (!head) return {SoundKind::kUnknown, bytes};
  const bool wave = Is(head + 8, "WAVE");
  if (wave && (Is(head, "RIFF") || Is(head, "RF64"))) return IdentifyWave(file, bytes);
  if (Is(head, "OggS")) {
    const uint8_t* packet = file.Peek(bytes.begin + kOggPacketAt, 7);
    const bool vorbis = packet && std::memcmp(packet, "\x01vorbis", 7) == 0;
    return {vorbis ? SoundKind::kVorbis : SoundKind::kSndfile, bytes};
  }
  const bool aiff = Is(head, "FORM") && (Is(head + 8, "AIFF") || Is(head + 8, "AIFC"));
  const bool known = aiff || (wave && Is(head, "RIFX")) || Is(head, "fLaC") || Is(head, "caff") ||
                     Is(head, ".snd") || Is(head, "riff");
  return {known ? SoundKind::kSndfile : SoundKind::kUnknown, bytes};
}

}  // namespace zemo
