// The test tone on the simulated outputs, of which there are four.
#include <QTest>

#include "settings/screens/OutputTrial.h"
#include "settings/tests/SettingsStation.h"

namespace zemo::test {
namespace {

struct OutputTrials : SettingsStation {
  OutputTrials() { on.opener.lengthsMs[trial.TonePath().toStdString()] = 10000; }
  Prelisten& Player() { return on.prelisten; }
  OutputTrial trial{station};
};

TEST_F(OutputTrials, PlayOnTheOutputAndGiveThePlayerBack) {
  Player().SetDevice(1);
  EXPECT_EQ(trial.Begin(2, 3), TrialResult::kPlays);
  EXPECT_EQ(Player().Device(), 2);
  EXPECT_EQ(Player().PlayerState(), Prelisten::State::kPlaying);
  EXPECT_EQ(Player().LengthMs(), 10000);
  trial.End();
  EXPECT_EQ(Player().PlayerState(), Prelisten::State::kClosed);
  EXPECT_EQ(Player().Device(), 1);
}

TEST_F(OutputTrials, AreRefusedWithoutAnOutputOnOneThatRefusesAndOnThatOfTheAir) {
  EXPECT_EQ(trial.Begin(-1, 3), TrialResult::kNone);
  EXPECT_EQ(trial.Begin(7, 3), TrialResult::kRefused);
  EXPECT_EQ(Player().PlayerState(), Prelisten::State::kClosed);
  EXPECT_EQ(trial.Begin(2, 2), TrialResult::kPlays);
  trial.End();
  on.sound.Start();
  EXPECT_EQ(trial.Begin(2, 2), TrialResult::kInUse);
  EXPECT_EQ(trial.Begin(1, -1), TrialResult::kInUse);
  EXPECT_EQ(trial.Begin(1, 2), TrialResult::kPlays);
}

TEST_F(OutputTrials, LeaveAloneAPlayerThatIsInUse) {
  Player().SetDevice(0);
  Player().Open(on.MakeSound("other.wav", 5000));
  EXPECT_EQ(trial.Begin(1, 3), TrialResult::kInUse);
  EXPECT_EQ(Player().PlayerState(), Prelisten::State::kOpen);
  EXPECT_EQ(Player().Device(), 0);
}

TEST_F(OutputTrials, EndWithTheToneAndWithTheirOwner) {
  bool told = false;
  trial.ended = [&told](bool refused) { told = !refused; };
  ASSERT_EQ(trial.Begin(0, 3), TrialResult::kPlays);
  Player().Stop();
  for (int wait = 0; wait < 100 && trial.Plays(); ++wait) QTest::qWait(20);
  EXPECT_TRUE(told);
  {
    OutputTrial other(station);
    on.opener.lengthsMs[other.TonePath().toStdString()] = 10000;
    ASSERT_EQ(other.Begin(0, 3), TrialResult::kPlays);
  }
  EXPECT_EQ(Player().PlayerState(), Prelisten::State::kClosed);
}

}  // namespace
}  // namespace zemo::test
