// The tone for an output: 20 ms of it hold 20 whole waves, that is 882 frames.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>

#include "settings/TestTone.h"

namespace zemo::test {
namespace {

constexpr size_t kHead = 44, kFrame = 4;

int16_t Sample(const std::string& wav, size_t frame, size_t channel) {
  const size_t at = kHead + frame * kFrame + channel * 2;
  return static_cast<int16_t>(static_cast<uint8_t>(wav[at]) | static_cast<uint8_t>(wav[at + 1])
                                                                  << 8);
}

TEST(TestTone, LastsTenSecondsInStereo) {
  EXPECT_EQ(TestToneWav().size(), kHead + 441000 * kFrame);
  EXPECT_EQ(TestToneWav().substr(0, 4), "RIFF");
}

TEST(TestTone, IsAThousandHertzEighteenDecibelsBelowFullScale) {
  const std::string wav = TestToneWav();
  int highest = 0, crossings = 0;
  for (size_t frame = 0; frame < 882; ++frame) {
    EXPECT_EQ(Sample(wav, frame, 0), Sample(wav, frame, 1));
    highest = std::max<int>(highest, Sample(wav, frame, 0));
    crossings += Sample(wav, frame, 0) <= 0 && Sample(wav, frame + 1, 0) > 0;
  }
  EXPECT_NEAR(highest, 4125, 25);
  EXPECT_EQ(crossings, 20);
}

}  // namespace
}  // namespace zemo::test
