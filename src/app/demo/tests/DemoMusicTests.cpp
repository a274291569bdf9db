// The sounds of the demo station, before they become files.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>

#include "app/demo/Composer.h"
#include "app/demo/DemoCatalogue.h"
#include "app/demo/SoundEncoder.h"
#include "platform/real/decoders/SoundFileOpener.h"
#include "platform/real/files/tests/TemporaryFolder.h"

namespace zemo {
namespace {

constexpr Manner kAnyManner{100, 110, false, 2, true, false};

// The loudest sample between two moments.
float PeakIn(const StereoBuffer& sound, double fromSec, double toSec) {
  float peak = 0;
  const auto begin = static_cast<size_t>(fromSec * kDemoRate) * 2;
  const auto end = std::min(static_cast<size_t>(toSec * kDemoRate) * 2, sound.samples.size());
  for (size_t i = begin; i < end; ++i) peak = std::max(peak, std::abs(sound.samples[i]));
  return peak;
}

TEST(DemoMusic, TheSameSeedGivesTheSamePieceAndAnotherAnother) {
  const Piece piece = Compose(7, kAnyManner, 20);
  EXPECT_EQ(piece.sound.samples, Compose(7, kAnyManner, 20).sound.samples);
  EXPECT_NE(piece.sound.samples, Compose(8, kAnyManner, 20).sound.samples);
}

TEST(DemoMusic, APieceHasItsLengthToTheFrame) {
  EXPECT_EQ(Compose(7, kAnyManner, 21.5).sound.Frames(), 948150);  // 21.5 * 44100
  const Manner fading{100, 110, false, 2, true, true};
  EXPECT_EQ(Compose(7, fading, 10).sound.Frames(), 441000);
}

TEST(DemoMusic, APieceSoundsFromItsBeginningAndNeverClips) {
  for (uint64_t seed = 1; seed <= 4; ++seed) {
    const Piece piece = Compose(seed, kAnyManner, 30);
    for (double at = 0; at < 24; at += 0.5)
      EXPECT_GT(PeakIn(piece.sound, at, at + 0.5), 0.01F) << at;
    EXPECT_LT(PeakIn(piece.sound, 0, 30), 0.95F);
    EXPECT_LT(PeakIn(piece.sound, 29.99, 30), 0.01F) << "it ends in silence";
  }
}

TEST(DemoMusic, TheExitPointAndTheIntroLieInsideThePiece) {
  for (const DemoTitle& title : DemoTitles()) {
    const Piece piece = Compose(3, title.manner, 30);
    EXPECT_LE(piece.introSec, 20) << title.title;
    EXPECT_LE(piece.exitPointMs, 5000) << title.title;
    EXPECT_EQ(piece.introSec > 0, title.manner.tune) << title.title;
  }
}

TEST(DemoMusic, TheHourHasFiveShortPipsAndALongOneASecondApart) {
  const DemoShort pip{ShortKind::kPip, "", 6.9, SoundForm::kWav, "", false};
  const StereoBuffer sound = MakeShort(pip, 1);
  ASSERT_EQ(sound.Frames(), 304290);  // 6.9 * 44100
  EXPECT_EQ(PeakIn(sound, 0, 0.68), 0.0F);
  for (int i = 0; i < 6; ++i) {
    const double at = 0.68 + i;
    const double length = i < 5 ? 0.1 : 0.5;
    EXPECT_NEAR(PeakIn(sound, at, at + length), 0.4, 0.01) << i;
    EXPECT_EQ(PeakIn(sound, at + length + 0.001, at + 1), 0.0F) << i;
  }
}

TEST(DemoMusic, EveryShortElementHasItsLengthAndIsHeard) {
  for (const DemoShort& element : DemoShorts()) {
    const StereoBuffer sound = MakeShort(element, 11);
    EXPECT_EQ(sound.Frames(), std::llround(element.lengthSec * 44100)) << element.label;
    EXPECT_GT(PeakIn(sound, 0, element.lengthSec), 0.3F) << element.label;
    EXPECT_LT(PeakIn(sound, 0, element.lengthSec), 0.95F) << element.label;
  }
}

TEST(DemoMusic, EncodedSoundsKeepTheirLengthToTheFrame) {
  const TemporaryFolder folder;
  const StereoBuffer sound = Compose(5, kAnyManner, 3.3).sound;
  const std::string wav = folder.Put("a.wav", EncodeSound(sound, SoundForm::kWav));
  const std::string mp3 = folder.Put("a.mp3", EncodeSound(sound, SoundForm::kMp3));
  EXPECT_EQ(SoundFileOpener().Open(wav)->LengthFrames(), 145530);  // 3.3 * 44100
  EXPECT_EQ(SoundFileOpener().Open(mp3)->LengthFrames(), 145530);
}

TEST(DemoModels, TheGenresShareEveryHourOfTheWeekInFull) {
  for (int day = 1; day <= 7; ++day) {
    for (int hour = 0; hour < 24; ++hour) {
      int sum = 0;
      for (size_t genre = 0; genre < DemoGenres().size(); ++genre)
        sum += DemoShare(genre, day, hour);
      EXPECT_EQ(sum, 100) << "day " << day << ", hour " << hour;
    }
  }
}

TEST(DemoModels, EveryGenreHasTitles) {
  for (const std::string genre : DemoGenres()) {
    EXPECT_TRUE(std::any_of(DemoTitles().begin(), DemoTitles().end(), [&](const DemoTitle& title) {
      return title.genre == genre;
    })) << genre;
  }
}

}  // namespace
}  // namespace zemo
