// The comments of Vorbis, Opus and FLAC as they stand in the file: TagLib drops a text that is no
// valid UTF-8, of which there are many.
#pragma once

#include <taglib/tbytevector.h>

#include <string>

#include "platform/real/analysis/TagText.h"

namespace zemo {

// From the vendor's text on; up to where they are damaged.
TagFields ReadVorbisComments(const TagLib::ByteVector& bytes);

// The comments of a FLAC file, also behind an ID3 tag; empty without them.
TagLib::ByteVector FlacComments(const std::string& path);

}  // namespace zemo
