// Where a title begins and ends to the ear, and where the next one may come in, from its power in
// windows of 10 ms (LoudnessMeter.h).
//
// All is measured against the title's own integrated loudness, so that quiet and loud masters are
// cued alike, and against its weighted power, as the ear has it.
// - Sound is what lies less than 45 LU below: noise of a tape or a record does not count.
// - The title ends with its last sound, or where a silence of 5 s or more begins: nobody airs such
//   a one for what is hidden behind it. A silence early in the file, with less than a minute of
//   sound in front of it and more behind, is one within the title.
// - The exit is where the ending falls below a fifth of the title's level (14 LU under it) for
//   good, in the mean of 50 ms ahead. In a slow fade single beats stick out of it long after the
//   music has gone: unless the half second before is loud enough and the ending drops by as much
//   again at once, the mean of a second around has its say, and the earlier one of both counts.
// - So a cold end has its exit at the end; a fade has it as late as its law asks for; a reverb
// rings
//   on under the next title. Applause is of the title while it is louder than a fifth of it, and
//   lies under the next title from there on; a quiet last phrase does too, which an operator may
//   want to move.
#pragma once

#include <cstdint>
#include <span>

namespace zemo {

// ms from the begin of the file, but for exitMs (as SoundMeasures has it).
struct SoundCues {
  int32_t beginMs = 0;
  int32_t endMs = 0;
  // 1 to 32767, what a card's POINTSORTIE takes: 0 would stand for none there.
  int32_t exitMs = 0;
};

// `powers` are of the whole file, `lufs` is what IntegratedLufs says of them. Any thread.
SoundCues FindCues(std::span<const float> powers, double lufs, int32_t lengthMs);

}  // namespace zemo
