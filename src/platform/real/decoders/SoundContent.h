// What kind of sound a file holds, told by its first bytes and never by its name.
#pragma once

#include "platform/real/decoders/FileBytes.h"

namespace zemo {

enum class SoundKind {
  kUnknown,  // MPEG audio has no mark of its own: it is looked for in such files
  kMpeg,     // MPEG audio in a WAV file
  kVorbis,   // Vorbis in Ogg
  kSndfile,  // a container that libsndfile knows
};

struct SoundContent {
  SoundKind kind = SoundKind::kUnknown;
  ByteSpan bytes;  // kMpeg: the stream alone; else the file without ID3v2 tags before it
  // Where a WAV file states 0 bytes of sound though sound follows (a recording that was never
  // closed); -1 elsewhere. In bytes from bytes.begin.
  int64_t zeroLengthAt = -1;
};

SoundContent IdentifySound(FileBytes& file);

}  // namespace zemo
