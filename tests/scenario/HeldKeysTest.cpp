// Keys held on the main screen, on the virtual clock: every tick looks at them. An element of
// minutes is on air from the tick at 100 ms.
#include <gtest/gtest.h>

#include "engine/OperatorControls.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int kSpace = 32, kNumPad0 = 96;

class HeldKeys : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    on.AppendCard(on.AddCard({}));
    on.Start();
    on.RunUntil(1050);
  }
  void ShortcutOf(const std::string& touche) {
    const std::string file = on.MakeSound("key" + touche + ".wav", 2000);
    on.station.lists.Touches.push_back({touche, file});
  }
  // Until after the next tick.
  void Press(int key) {
    on.keyboard.Press(key);
    on.RunUntil(1150);
    on.keyboard.Release(key);
  }
  TestStation on;
};

TEST_F(HeldKeys, TheNumberOfAShortcutPlaysItOverTheAir) {
  ShortcutOf("3");
  Press(kNumPad0 + 3);
  EXPECT_EQ(on.Events("overlay").size(), 1U) << on.Describe();
}

// As the table has them sorted, those without a number are no shortcuts.
TEST_F(HeldKeys, ShortcutsBehindOneWithoutANumberAreNotHeard) {
  for (const char* touche : {"3", "", "5"}) ShortcutOf(touche);
  Press(kNumPad0 + 5);
  EXPECT_TRUE(on.Events("overlay").empty()) << on.Describe();
}

TEST_F(HeldKeys, TheZeroEndsTheElementAndTheFittingOfTheHour) {
  on.station.engine.FittingActive = true;
  Press(kNumPad0);
  EXPECT_EQ(on.Events("fade").size(), 1U) << on.Describe();
  EXPECT_FALSE(on.station.engine.FittingActive);
}

TEST_F(HeldKeys, AShortcutIsForgottenOnceItIsSilentThoughTheKeysAreNotArmed) {
  ShortcutOf("3");
  Press(kNumPad0 + 3);
  EXPECT_EQ(std::string(on.station.engine.OverlayKey), "3");
  on.station.engine.HotKeysArmed = false;
  on.RunUntil(3500);  // 2 s of sound from 1100 ms on
  EXPECT_EQ(std::string(on.station.engine.OverlayKey), "");
}

// Pressed a second before midnight, and again behind it.
TEST_F(HeldKeys, TheSpaceOfTheDayBeforeHoldsNone) {
  on.station.engine.LastSpacePressTimer = 86399;
  Press(kSpace);
  EXPECT_FALSE(on.station.engine.IsRunning);
}

}  // namespace
}  // namespace zemo::test
