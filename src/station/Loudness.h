// Files of every loudness at one: what was measured of a file and the machine's value
// "LoudnessTarget" make the gain at which its slot plays. Music, jingles, spots, news, pips and
// overlays alike, so that between any two of them the volumes of the settings say how much louder
// one is.
#pragma once

#include <optional>
#include <string_view>

#include "platform/SoundMeasures.h"

namespace zemo {

struct Station;

inline constexpr double kMostTruePeakDb = -1;  // dBTP, of a file with its gain

// dB, up to kMostTruePeakDb. 0 for a file of which loudness or true peak are not known, as silence.
double LoudnessGainDb(double targetLufs, const SoundMeasures& measures);

// LUFS; none: every file plays as it is. What is no target is told once a day.
std::optional<double> TargetLoudness(Station& station);

// For SoundChain::SetGain. 1 without a target, and for a file that was not measured since it
// changed. Stands ahead of what is heard: waits for no lock, a base that is out of reach gives 1 at
// once. Throws nothing.
double LoudnessGain(Station& station, std::string_view storedPath);

}  // namespace zemo
