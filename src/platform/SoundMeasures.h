// What one reading of a whole sound file says about it: how loud it is, where it begins and ends to
// the ear, and how it looks.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/Waveforms.h"

namespace zemo {

// Positions are ms from the begin of the file.
struct SoundMeasures {
  int32_t lengthMs = 0;
  std::optional<double> loudnessLufs{};  // integrated, EBU R 128; none for silence
  std::optional<double> truePeakDb{};    // dBTP, of the louder channel; none for silence
  int32_t soundBeginMs = 0;              // the first sound
  int32_t soundEndMs = 0;                // the last one
  // Proposed POINTSORTIE: ms before the end of the file, 1 to 32767; 0 for silence.
  int32_t exitMs = 0;
  WavePeaks peaks{};
};

}  // namespace zemo
