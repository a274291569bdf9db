// The tone by which an output is tried out.
#pragma once

#include <string>

namespace zemo {

// A WAV file: 1000 Hz on both sides for ten seconds, 18 dB below full scale.
std::string TestToneWav();

}  // namespace zemo
