// What is heard: stations of tones, rendered by the program, each element told by its frequency.
#include <gtest/gtest.h>

#include "RenderedStation.h"

namespace zemo {
namespace {

using namespace hearing;

class Rendered : public RenderedStation {
 protected:
  struct Tone {
    double hertz;
    double level = 0.25;
    double seconds = 10;
    int exitMs = 0;
    bool spot = false;
  };
  // A station whose list holds the tones; what is heard of it in that many seconds.
  Recording Hear(const std::vector<Tone>& tones, int seconds, const std::string& moreOrders = {},
                 const std::string& settings = {}) {
    int number = 0;
    for (const Tone& tone : tones) {
      const std::string file = Path("station/tone" + std::to_string(number++) + ".wav");
      WriteTone(file, tone.hertz, tone.level, tone.seconds);
      if (tone.spot)
        AddSpot(file, tone.seconds);
      else
        AddTitle(file, tone.seconds, tone.exitMs);
    }
    MakeBase(settings);
    return Render(seconds, moreOrders);
  }
};

// The steepest step of a tone from one sample to the next.
float Slope(double hertz, double level) {
  return static_cast<float>(level * 2 * std::numbers::pi * hertz / kRate);
}

TEST_F(Rendered, ShortOverlapIsNotFadedAndLastsPmixDef) {
  const Recording heard = Hear({{.hertz = 1000}, {.hertz = 2000}}, 20);
  EXPECT_NEAR(heard.Seconds(), 20, 0.001);
  EXPECT_EQ(Peak(heard, 0, 0.099), 0);
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 1000, 0.25)), 100, 10);
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, 0.25)), 8500, 10);
  EXPECT_NEAR(static_cast<double>(EndsMs(heard, 1000, 0.25, 9000)), 10100, 10);
  EXPECT_NEAR(static_cast<double>(EndsMs(heard, 2000, 0.25, 12000)), 18500, 10);
  for (double at : {0.2, 4.0, 8.4, 9.0, 10.0})
    EXPECT_NEAR(Level(heard, 1000, at), 0.25, 0.0025) << at;
  for (double at : {8.6, 9.0, 12.0, 18.4}) EXPECT_NEAR(Level(heard, 2000, at), 0.25, 0.0025) << at;
  EXPECT_LE(LongestSilenceMs(heard, 0.11, 18.49), 20);
}

TEST_F(Rendered, LongOverlapIsFadedEvenlyWithoutAClick) {
  const Recording heard = Hear({{.hertz = 1000, .exitMs = 5000}, {.hertz = 2000}}, 16);
  // The exit point is met at 5000 ms of position; the old tone is silent 1600 ms later.
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, 0.25)), 5100, 10);
  EXPECT_NEAR(Level(heard, 1000, 5.09), 0.25, 0.003);
  double former = 0.26;
  for (int step = 0; step < 160; ++step) {
    const double level = Level(heard, 1000, 5.1 + step * 0.01);
    EXPECT_LT(level, former + 1e-4) << step;
    former = level;
  }
  EXPECT_NEAR(Level(heard, 1000, 5.9), 0.125, 0.004);  // half of the way
  EXPECT_LT(Level(heard, 1000, 6.71), 1e-4);
  EXPECT_LT(LargestStep(heard, 0, 16), 1.05F * (Slope(1000, 0.25) + Slope(2000, 0.25)));
}

TEST_F(Rendered, ElementShorterThanTheOverlapFadesTheOldOneInItsOwnLength) {
  const Recording heard =
      Hear({{.hertz = 1000, .exitMs = 5000}, {.hertz = 2000, .seconds = 1}}, 12);
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, 0.25)), 5100, 10);
  EXPECT_GT(Level(heard, 1000, 6.0), 0.005);
  EXPECT_LT(Level(heard, 1000, 6.11), 1e-4);  // 1000 ms, not 1600
}

TEST_F(Rendered, SpotsHaveTheirOwnVolume) {
  const Recording heard = Hear({{.hertz = 1000}, {.hertz = 2000, .spot = true}}, 16);
  EXPECT_NEAR(Level(heard, 1000, 4), 0.25, 0.0025);
  EXPECT_NEAR(Level(heard, 2000, 12), 0.25 * 18000 / 16384, 0.003);
}

TEST_F(Rendered, TwoLoudElementsOverEachOtherDoNotClip) {
  const Recording heard =
      Hear({{.hertz = 1000, .level = 0.98}, {.hertz = 1300, .level = 0.98}}, 16);
  // 0.98 and 0.98 add up to 1.96 in the overlap from 8.5 to 10.1 s.
  EXPECT_LE(Peak(heard, 8.5, 10.1), 1.0F);
  EXPECT_GT(Peak(heard, 8.5, 10.1), 0.9F);
  size_t flat = 0;  // a clipped wave stands at full scale for several samples
  for (size_t i = static_cast<size_t>(8.5 * kRate) + 1; i < static_cast<size_t>(10.1 * kRate); ++i)
    if (std::fabs(heard.left[i]) > 0.9999F && heard.left[i] == heard.left[i - 1]) ++flat;
  EXPECT_LT(flat, 5U);
  // Elsewhere the limiter leaves no trace.
  EXPECT_NEAR(Level(heard, 1000, 7), 0.98, 0.003);
  EXPECT_NEAR(Level(heard, 1300, 14), 0.98, 0.003);
}

TEST_F(Rendered, ForcedNextFadesOverFadeOut) {
  const Recording heard = Hear({{.hertz = 1000, .seconds = 30}, {.hertz = 2000}}, 12, "+4 next\n");
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, 0.25)), 4000, 10);
  EXPECT_NEAR(Level(heard, 1000, 4.8), 0.125, 0.004);
  EXPECT_LT(Level(heard, 1000, 5.61), 1e-4);
}

TEST_F(Rendered, StoppedStationPlaysItsElementOutAndIsSilentThen) {
  const Recording heard = Hear({{.hertz = 1000}, {.hertz = 2000}}, 16, "+4 stop\n");
  EXPECT_NEAR(static_cast<double>(EndsMs(heard, 1000, 0.25, 4000)), 10100, 10);
  EXPECT_EQ(Peak(heard, 10.11, 16), 0);
}

// Silence is seen at 100 ms; PmixDef is 1600 ms, so that each tone of 10 s gives way 8400 ms behind
// its start. Its machine folder is only read.
TEST_F(Rendered, EmergencyFolderIsHeardWhereNothingElseCanPlay) {
  std::filesystem::create_directories(Path("machine/Secours"));
  WriteTone(Path("machine/Secours/a.wav"), 1000, 0.25, 10);
  WriteTone(Path("machine/Secours/b.WAV"), 2000, 0.25, 10);
  const auto before = Files("machine");
  const Result result = Run(
      "render --station station --machine machine --from '2026-11-21 10:00:00' --for 40 --trace "
      "trace --audio heard.wav");
  ASSERT_EQ(result.status, 0) << result.err;
  const Recording heard = ReadWav(Path("heard.wav"));
  EXPECT_EQ(Peak(heard, 0, 2.0), 0);
  EXPECT_LE(LongestSilenceMs(heard, 2.2, 40), 20);
  const double first = Level(heard, 1000, 4) > 0.1 ? 1000 : 2000;
  const double second = 3000 - first;
  EXPECT_NEAR(Level(heard, first, 4), 0.25, 0.003);
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, first, 0.25)), 2100, 10);
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, second, 0.25)), 10500, 10);
  EXPECT_NEAR(static_cast<double>(EndsMs(heard, first, 0.25, 11000)), 12100, 10);
  EXPECT_NE(ReadText(root_ / "trace").find("\"file\":\"" + Path("machine/Secours/a.wav") + "\""),
            std::string::npos);
  EXPECT_EQ(Files("machine"), before);
}

TEST_F(Rendered, RestartOfTheOutputLeavesItsOwnGapAndNoClick) {
  const Recording heard =
      Hear({{.hertz = 1000}, {.hertz = 2000}}, 22, "", "+0 set CycleMaxi 15000\n");
  // At 8.5 s the output would run too long: a fade over the 2 s of the buffers, cut short by the
  // end of the file at 10.1 s, and the next element 3.5 s after.
  EXPECT_NEAR(static_cast<double>(BeginsMs(heard, 2000, 0.25)), 12000, 10);
  EXPECT_LT(Level(heard, 1000, 10.0), 0.08);
  EXPECT_LT(LargestStep(heard, 0, 21), 0.06F + Slope(2000, 0.25));
}

}  // namespace
}  // namespace zemo
