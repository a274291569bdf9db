// Opens the sound files of the air: MPEG audio through libmpg123, Vorbis through libvorbisfile,
// WAV, AIFF, FLAC and Opus through libsndfile, each at 44.1 kHz stereo whatever the file has.
#pragma once

#include "platform/SoundSource.h"

namespace zemo {

// Keeps nothing between two calls; paths are plain system paths. The files stay open while their
// sources live; a source holds 100 to 350 KB and reads in blocks of 64 KB.
class SoundFileOpener : public SoundOpener {
 public:
  std::unique_ptr<SoundSource> Open(const std::string& path) override;
};

}  // namespace zemo
