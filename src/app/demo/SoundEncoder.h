// Sound files as bytes: WAV (16 bits) and MP3, encoded in memory so that one write puts them on
// disk.
#pragma once

#include <string>

#include "app/demo/Voices.h"

namespace zemo {

enum class SoundForm { kWav, kMp3 };

// The file's bytes, at kDemoRate, stereo. Throws DemoError when the encoder fails.
std::string EncodeSound(const StereoBuffer& sound, SoundForm form);

}  // namespace zemo
