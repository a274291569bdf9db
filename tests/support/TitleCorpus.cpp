#include "support/TitleCorpus.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zemo::test {

namespace {

constexpr double kFifth = 0.2;

// The body of a title of any material, between very quiet and at full scale, `least` seconds or up
// to twice as long.
KnownTitle RandomBody(Chance& chance, double least) {
  KnownTitle title;
  title.seed = static_cast<uint32_t>(chance.Below(1 << 30));
  title.material = static_cast<Material>(chance.Below(4));
  title.mono = chance.Below(4) == 0;
  title.level = std::pow(10.0, chance.Between(-32, 0) / 20);
  title.sections = {{chance.Between(least, 2 * least), 1, Law::kSteady}};
  return title;
}

// With up to 4 s of silence behind, or none.
void AddSilence(KnownTitle& title, Chance& chance) {
  const double seconds = chance.Between(-2, 4);
  if (seconds > 0) title.sections.push_back({seconds, 0, Law::kSteady});
}

}  // namespace

KnownTitle RandomFade(Chance& chance, double least) {
  KnownTitle title = RandomBody(chance, least);
  const auto law = static_cast<Law>(1 + chance.Below(3));
  const double seconds = chance.Between(2, 20);
  title.kind = law == Law::kLinear     ? "fade, even in amplitude"
               : law == Law::kDecibels ? "fade, even in dB"
                                       : "fade, cosine";
  title.exitSeconds = title.Seconds() + seconds * ShareAt(law, kFifth);
  title.sections.push_back({seconds, 1, law});
  AddSilence(title, chance);
  return title;
}

KnownTitle RandomCold(Chance& chance, double least) {
  KnownTitle title = RandomBody(chance, least);
  title.kind = "cold end";
  if (title.material == Material::kWords) title.material = Material::kNoise;  // ends in a pause
  title.exitSeconds = title.Seconds();
  AddSilence(title, chance);
  return title;
}

// A room that rings for 0.5 to 6 s to -60 dB.
KnownTitle RandomReverb(Chance& chance, double least) {
  KnownTitle title = RandomBody(chance, least);
  title.kind = "reverb";
  const double seconds = chance.Between(0.5, 6);
  title.exitSeconds = title.Seconds() + seconds * ShareAt(Law::kDecibels, kFifth);
  title.sections.push_back({seconds, 1, Law::kDecibels});
  AddSilence(title, chance);
  return title;
}

// Behind a title of the same spectrum, so that both levels are known to the ear: too quiet to
// count, or half as loud as the title and fading evenly.
KnownTitle RandomApplause(Chance& chance, double least) {
  KnownTitle title = RandomBody(chance, least);
  title.material = Material::kNoise;
  title.exitSeconds = title.Seconds();
  const double seconds = chance.Between(3, 10);
  if (chance.Below(2) == 0) {
    title.kind = "applause, quiet";
    title.sections.push_back({seconds, chance.Between(0.02, 0.15), Law::kLinear});
  } else {
    title.kind = "applause, loud";
    constexpr double kLevel = 0.5;
    title.exitSeconds += seconds * ShareAt(Law::kLinear, kFifth / kLevel);
    title.sections.push_back({seconds, kLevel, Law::kLinear});
  }
  AddSilence(title, chance);
  return title;
}

// Behind 5 to 15 s of silence another piece, short enough for the exit to be told.
KnownTitle RandomHidden(Chance& chance, double least) {
  KnownTitle title = RandomFade(chance, least);
  title.sections.resize(2);
  title.kind = "hidden track";
  title.sections.push_back({chance.Between(5.5, 15), 0, Law::kSteady});
  title.sections.push_back({chance.Between(1, 8), chance.Between(0.1, 1), Law::kSteady});
  return title;
}

// What a card can hold of the known exit, ms before the end.
double KnownExitMs(const KnownTitle& title) {
  const double exitMs = 1000 * (title.Seconds() - title.exitSeconds);
  return std::clamp(exitMs, 1.0, static_cast<double>(std::numeric_limits<int16_t>::max()));
}

// Positive where the measured exit is later than the known one.
double ErrorSeconds(const KnownTitle& title, const SoundMeasures& measures) {
  return (KnownExitMs(title) - measures.exitMs) / 1000;
}

}  // namespace zemo::test
