// A seeded corpus of titles with endings of every kind (MadeTitles.h), each with its known exit.
#pragma once

#include <cstdint>
#include <random>

#include "platform/SoundMeasures.h"
#include "support/MadeTitles.h"

namespace zemo::test {

// Evenly between the bounds, the same on every machine.
class Chance {
 public:
  explicit Chance(uint32_t seed) : random_(seed) {}
  double Between(double low, double high) {
    return low + (high - low) * static_cast<double>(random_()) / 4294967296.0;
  }
  int Below(int count) { return static_cast<int>(Between(0, count)); }

 private:
  std::mt19937 random_;
};

// Of any material, between very quiet and at full scale, `least` seconds long or up to twice as
// long, most of them with up to 4 s of silence behind.
KnownTitle RandomFade(Chance& chance, double least);  // of 2 to 20 s
KnownTitle RandomCold(Chance& chance, double least);
KnownTitle RandomReverb(Chance& chance, double least);  // 0.5 to 6 s to -60 dB
// Of the title's spectrum, so that the ear's level of both is known: too quiet to count, or half as
// loud as the title; fading evenly.
KnownTitle RandomApplause(Chance& chance, double least);
// Behind a fade and 5.5 to 15 s of silence another piece.
KnownTitle RandomHidden(Chance& chance, double least);

// What a card can hold of the known exit, ms before the end.
double KnownExitMs(const KnownTitle& title);
// Positive where the measured exit is later than the known one.
double ErrorSeconds(const KnownTitle& title, const SoundMeasures& measures);

}  // namespace zemo::test
