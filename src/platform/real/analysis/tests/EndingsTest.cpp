// Exits of made titles, of which it is known where they fall below a fifth of their own level.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "platform/real/analysis/SoundAnalyser.h"
#include "support/Cases.h"
#include "support/TitleCorpus.h"

namespace zemo {
namespace {

using test::KnownTitle;
using test::Law;
using test::Material;
using test::Section;

SoundMeasures Measured(const KnownTitle& title) {
  test::MadeOpener opener(title);
  return MeasureSound(opener, "made").value();
}

KnownTitle Title(std::vector<Section> sections) {
  KnownTitle title;
  title.sections = std::move(sections);
  return title;
}

// How many in a hundred of `count` titles have their exit within `seconds` of the known one.
double PerCentWithin(double seconds, int count, const std::function<KnownTitle()>& next) {
  int within = 0;
  for (int i = 0; i < count; ++i) {
    const KnownTitle title = next();
    const double error = test::ErrorSeconds(title, Measured(title));
    if (std::fabs(error) <= seconds) ++within;
  }
  return 100.0 * within / count;
}

// 80 s, of which 10 s fade: a fifth is left 2 s before the end.
TEST(Endings, AFadeEvenInAmplitudeHasItsExitWhereAFifthIsLeft) {
  const SoundMeasures measures = Measured(Title({{70, 1}, {10, 1, Law::kLinear}}));
  EXPECT_EQ(measures.lengthMs, 80'000);
  EXPECT_NEAR(measures.exitMs, 2000, 100);
}

// A fifth is 13.98 dB down: 2.33 s into 10 s that fall by 60 dB.
TEST(Endings, AFadeEvenInDecibelsHasItsExitEarly) {
  const SoundMeasures measures = Measured(Title({{70, 1}, {10, 1, Law::kDecibels}}));
  EXPECT_NEAR(measures.exitMs, 7670, 100);
}

TEST(Endings, ATitleThatEndsAtOnceHasItsExitAtItsEndAndNotNone) {
  EXPECT_EQ(Measured(Title({{30, 1}})).exitMs, 1);
  EXPECT_NEAR(Measured(Title({{30, 1}, {3, 0}})).exitMs, 3000, 10);
}

TEST(Endings, QuietAndLoudMastersOfOneTitleHaveTheSameExit) {
  KnownTitle title = Title({{60, 1}, {8, 1, Law::kLinear}, {1, 0}});
  title.level = 0.9;
  const SoundMeasures loud = Measured(title);
  title.level = 0.01;
  const SoundMeasures quiet = Measured(title);
  EXPECT_EQ(quiet.exitMs, loud.exitMs);
  EXPECT_EQ(quiet.soundEndMs, loud.soundEndMs);
  // 20 * log10(0.9 / 0.01) = 39.08
  EXPECT_NEAR(*loud.loudnessLufs - *quiet.loudnessLufs, 39.08, 0.01);
}

// The weighting rings on for some hundredths of a second.
TEST(Endings, SilenceAroundATitleIsNoSound) {
  const SoundMeasures measures = Measured(Title({{1.5, 0}, {30, 1}, {2.5, 0}}));
  EXPECT_EQ(measures.soundBeginMs, 1500);
  EXPECT_NEAR(measures.soundEndMs, 31'500, 40);
}

// The noise of a tape 50 dB below the title, in front of it and behind.
TEST(Endings, TheNoiseOfATapeIsNoSound) {
  const SoundMeasures measures = Measured(Title({{2, 0.003}, {30, 1}, {4, 0.003}}));
  EXPECT_EQ(measures.soundBeginMs, 2000);
  EXPECT_NEAR(measures.soundEndMs, 32'000, 40);
  EXPECT_NEAR(measures.exitMs, 4000, 10);
}

TEST(Endings, AHiddenTrackBehindALongSilenceLiesBehindTheExit) {
  const SoundMeasures measures = Measured(Title({{70, 1}, {8, 0}, {12, 1}}));
  EXPECT_NEAR(measures.exitMs, 20'000, 10);
  EXPECT_EQ(measures.soundEndMs, 90'000);
}

TEST(Endings, AHiddenTrackLongerThanTheTitleLiesBehindTheExitToo) {
  const SoundMeasures measures = Measured(Title({{61, 1}, {6, 0}, {20, 1}, {6, 0}, {90, 1}}));
  EXPECT_EQ(measures.exitMs, 32'767);  // 122 s: more than a card takes
}

TEST(Endings, APauseOfLessThan5SecondsIsOneWithinTheTitle) {
  EXPECT_EQ(Measured(Title({{70, 1}, {4.5, 0}, {12, 1}})).exitMs, 1);
}

TEST(Endings, WordsAheadOfALongSilenceAreNoTitle) {
  EXPECT_EQ(Measured(Title({{10, 1}, {8, 0}, {40, 1}})).exitMs, 1);
}

// Half as loud as the title, fading evenly: at a fifth of the title's after 0.6 of its 10 s.
TEST(Endings, LoudApplauseIsOfTheTitleUntilItFades) {
  const SoundMeasures measures = Measured(Title({{60, 1}, {10, 0.5, Law::kLinear}}));
  EXPECT_NEAR(measures.exitMs, 4000, 100);
}

TEST(Endings, QuietApplauseLiesUnderTheNextTitle) {
  const SoundMeasures measures = Measured(Title({{60, 1}, {10, 0.15, Law::kLinear}}));
  EXPECT_NEAR(measures.exitMs, 10'000, 20);
}

TEST(Endings, ASoundOfATwentiethOfASecondIsMeasured) {
  const SoundMeasures measures = Measured(Title({{0.05, 1}}));
  EXPECT_EQ(measures.lengthMs, 50);
  EXPECT_TRUE(measures.loudnessLufs);
  EXPECT_EQ(measures.soundBeginMs, 0);
  EXPECT_EQ(measures.soundEndMs, 50);
  EXPECT_EQ(measures.exitMs, 1);
}

TEST(Endings, SilenceHasNoLoudnessNoPeakAndNoExit) {
  const SoundMeasures measures = Measured(Title({{5, 0}}));
  EXPECT_FALSE(measures.loudnessLufs);
  EXPECT_FALSE(measures.truePeakDb);
  EXPECT_EQ(measures.lengthMs, 5000);
  EXPECT_EQ(measures.soundBeginMs, 0);
  EXPECT_EQ(measures.soundEndMs, 0);
  EXPECT_EQ(measures.exitMs, 0);
  EXPECT_EQ(measures.peaks, WavePeaks(kWavePeaks, 0));
}

constexpr int kTitles = test::Cases(20);  // each a minute of sound

// The larger corpus, with its histogram, is bench/CueBench.
TEST(Endings, NinetyFiveFadesOfAHundredHaveTheirExitWithinThreeTenthsOfASecond) {
  test::Chance chance(1);
  EXPECT_GE(PerCentWithin(0.3, 3 * kTitles, [&] { return test::RandomFade(chance, 45); }), 95);
}

TEST(Endings, OtherEndingsHaveTheirExitAsNear) {
  test::Chance chance(2);
  EXPECT_EQ(PerCentWithin(0.05, kTitles / 2, [&] { return test::RandomCold(chance, 30); }), 100);
  EXPECT_GE(PerCentWithin(0.3, kTitles, [&] { return test::RandomReverb(chance, 45); }), 95);
  EXPECT_GE(PerCentWithin(0.3, kTitles, [&] { return test::RandomApplause(chance, 45); }), 95);
  EXPECT_GE(PerCentWithin(0.3, kTitles, [&] { return test::RandomHidden(chance, 45); }), 95);
}

}  // namespace
}  // namespace zemo
