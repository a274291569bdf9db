// Tags by TagLib: MP3 (ID3v2.2 to 2.4, APE, ID3v1), FLAC, Ogg Vorbis and Opus, WAV and AIFF.
#pragma once

#include "platform/SoundTags.h"

namespace zemo {

// A file is known by its first bytes, not by its name. Where it has several tags, each text is of
// the first one that has it, in the order above; in WAV an ID3 tag goes before INFO. Bytes that
// are no UTF-8 where it ought to be are taken as Latin-1. Keeps nothing between two calls.
class TagReader : public SoundTags {
 public:
  std::optional<TagTexts> Read(const std::string& path) override;
};

}  // namespace zemo
