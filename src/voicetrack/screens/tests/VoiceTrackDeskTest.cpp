// The desk of the voice tracks: one window, over the one that its list is in.
#include "voicetrack/screens/VoiceTrackDesk.h"
#include "voicetrack/screens/tests/VoiceTrackWindowFixture.h"

namespace zemo::test {
namespace {

using VoiceTrackDeskTest = VoiceTrackScreenTest;

TEST_F(VoiceTrackDeskTest, OneWindowOpensOnTheRowAndAClosedOneIsMadeAnew) {
  VoiceTrackDesk desk(on.station, {&shapes});
  EXPECT_TRUE(desk.Leave());
  desk.Open(*over, on.station.PL.Row(1).key);
  VoiceTrackWindow* const first = desk.Window();
  ASSERT_TRUE(first && first->isVisible());
  EXPECT_EQ(first->parentWidget(), over.get());
  desk.Open(*over, on.station.PL.Row(2).key);
  EXPECT_EQ(desk.Window(), first);
  EXPECT_EQ(first->Editor().Avant, "BOB  TUNE");
  EXPECT_TRUE(desk.Leave());
  EXPECT_FALSE(first->IsOpen());
  on.Set("Langue", "1");
  desk.Open(*over, on.station.PL.Row(1).key);
  EXPECT_EQ(desk.Window()->windowTitle(), QStringLiteral("Voice track"));
  EXPECT_TRUE(desk.Leave());
}

TEST_F(VoiceTrackDeskTest, AWindowThatWentWithTheOneBelowItIsMadeAnew) {
  VoiceTrackDesk desk(on.station, {&shapes});
  desk.Open(*over, on.station.PL.Row(1).key);
  EXPECT_TRUE(desk.Leave());
  over = std::make_unique<QWidget>();
  EXPECT_FALSE(desk.Window());
  desk.Open(*over, on.station.PL.Row(1).key);
  EXPECT_TRUE(desk.Window()->isVisible());
  EXPECT_TRUE(desk.Leave());
}

}  // namespace
}  // namespace zemo::test
