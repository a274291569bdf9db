// The gain at which whatever starts is played, on the virtual clock. Factors are 10 to the power of
// dB / 20, worked out by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "engine/OverlayButton.h"
#include "scenario/EmergencyStation.h"
#include "station/Loudness.h"
#include "store/SoundMeasuresTable.h"
#include "support/BaseFaults.h"

namespace zemo::test {
namespace {

constexpr double kMinus12Db = 0.251188643, kMinus9Db = 0.354813389, kMinus6Db = 0.501187234,
                 kMinus3Db = 0.707945784, kPlus6Db = 1.995262315;

class LoudnessOnAir : public testing::Test {
 protected:
  LoudnessOnAir() {
    on.listener = [this](const Event& event) {
      if (event.name == "start")
        gains.push_back(on.sound.Gain(static_cast<int>(on.seen.back().Int("slot"))));
      if (event.name == "overlay") gains.push_back(on.sound.Gain(kOverlaySlot));
    };
    on.Load();
    on.localValues.Set("LoudnessTarget", "-18");
  }

  void Measure(const std::string& path, double lufs, double peakDb = -12) {
    SoundMeasures measures;
    measures.loudnessLufs = lufs;
    measures.truePeakDb = peakDb;
    StoreMeasures(on.station.base, path, on.soundFiles.Stamp(path).value(), measures);
  }
  // Measured where a loudness is given.
  void AppendTitle(std::optional<double> lufs, int64_t lengthMs = 10000) {
    const std::string file = on.MakeSound("title" + std::to_string(++titles_) + ".wav", lengthMs);
    if (lufs) Measure(file, *lufs);
    on.AppendCard(on.AddCard({.file = file, .lengthMs = lengthMs}));
  }
  std::string AppendRow(int32_t code, const std::string& name) {
    OnAirElement row;
    row.title = name;
    row.code = code;
    row.file = on.MakeSound(name + ".wav", 5000);
    on.Append(row);
    return row.file;
  }
  void ExpectGains(const std::vector<double>& expected) {
    ASSERT_EQ(gains.size(), expected.size()) << on.Describe();
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(gains[i], expected[i], 1e-8) << i;
  }

  BaseFaults base;
  EmergencyStation on{"2026-11-21 12:00:00"};
  std::vector<double> gains;  // of each start and overlay, at its moment

 private:
  int titles_ = 0;
};

TEST_F(LoudnessOnAir, EveryKindOfElementIsBroughtToTheTarget) {
  AppendTitle(-9);
  Measure(AppendRow(Element::kJingle, "jingle"), -12);
  Measure(AppendRow(Element::kSpot, "spot"), -6);
  Measure(AppendRow(Element::kNews, "news"), -24);
  Measure(AppendRow(Element::kHourPip, "pip"), -15);
  on.Start();
  on.RunUntil(40000);
  ExpectGains({kMinus9Db, kMinus6Db, kMinus12Db, kPlus6Db, kMinus3Db});
}

TEST_F(LoudnessOnAir, TheVolumesOfTheSettingsStayAsTheyAre) {
  AppendTitle(-9);
  Measure(AppendRow(Element::kSpot, "spot"), -6);
  on.Start();
  on.RunUntil(15000);
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_EQ(on.Starts()[0].Int("volume"), 16384);
  EXPECT_EQ(on.Starts()[1].Int("volume"), 18000);
  EXPECT_TRUE(on.Events("volume").empty());
}

TEST_F(LoudnessOnAir, AFileThatWasNotMeasuredOrHasChangedSinceIsPlayedAsItIs) {
  AppendTitle(-9);
  AppendTitle({});
  AppendTitle(-9);
  on.MakeFile("title3.wav", "another sound");
  on.Start();
  on.RunUntil(30000);
  ExpectGains({kMinus9Db, 1, 1});
}

TEST_F(LoudnessOnAir, WithoutATargetEverythingIsPlayedAsItIs) {
  on.localValues.Set("LoudnessTarget", "0");
  AppendTitle(-9);
  on.Start();
  on.RunUntil(5000);
  ExpectGains({1});
}

TEST_F(LoudnessOnAir, AnotherTargetCountsFromTheNextStartOn) {
  AppendTitle(-9);
  AppendTitle(-9);
  on.Start();
  on.At(5000, [&] { on.localValues.Set("LoudnessTarget", "-15"); });
  on.RunUntil(15000);
  ExpectGains({kMinus9Db, kMinus6Db});
}

TEST_F(LoudnessOnAir, ATargetThatIsNoneIsToldOnceAndEverythingIsPlayedAsItIs) {
  on.localValues.Set("LoudnessTarget", "loud");
  AppendTitle(-9);
  AppendTitle(-9);
  on.Start();
  on.RunUntil(15000);
  ExpectGains({1, 1});
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0]["where"], "LoudnessTarget");
}

// Music at -9 and a key's sound at -15 both come to -18: between them stand the volumes alone.
TEST_F(LoudnessOnAir, AnOverlayIsBroughtToTheTargetByItself) {
  AppendTitle(-9);
  const std::string key = on.MakeSound("key.wav", 2000);
  Measure(key, -15);
  const std::string other = on.MakeSound("other.wav", 2000);
  on.Start();
  on.At(1000, [&] { OnAir::PlayOverAir(on.station, key); });
  on.At(4000, [&] { OnAir::PlayOverAir(on.station, other); });
  on.RunUntil(6000);
  ExpectGains({kMinus9Db, kMinus3Db, 1});
  EXPECT_NEAR(on.sound.Gain(0), kMinus9Db, 1e-8);
}

// At 8.5 s the second title would pass CycleMaxi: it begins on a fresh output, at 12 s.
TEST_F(LoudnessOnAir, ARestartOfTheOutputKeepsTheGainOfTheElement) {
  on.Set("CycleMaxi", "15000");
  AppendTitle(-9);
  AppendTitle(-12);
  on.Start();
  on.RunUntil(13000);
  ExpectGains({kMinus9Db, kMinus6Db});
  EXPECT_EQ(on.Starts()[1].atMs, 12000);
}

TEST_F(LoudnessOnAir, TheEmergencyFolderIsBroughtToTheTargetAsWell) {
  Measure(on.PutEmergency("Musique.mp3", 30000), -12);
  on.Start();
  on.RunUntil(5000);
  ExpectGains({kMinus6Db});
}

// Another process has the base to itself from 5 to 15 s; the second title begins at 8.5 s.
TEST_F(LoudnessOnAir, ALockedBaseDelaysNothingAndTheFileIsPlayedAsItIs) {
  ON_FILES_ALONE("a server lets everybody read");
  for (int i = 0; i < 3; ++i) AppendTitle(-9);
  on.Start();
  on.At(5000, [&] { base.Arm(BasePoint::kLockToRead, BaseFault::kLocked); });
  on.At(15000, [&] { base.Disarm(); });
  on.RunUntil(20000);
  ExpectGains({kMinus9Db, 1, kMinus9Db});
  EXPECT_EQ(on.Starts()[1].atMs, 8500);
  EXPECT_EQ(on.First("error", "where", "LoudnessTarget"), nullptr) << on.Describe();
}

TEST_F(LoudnessOnAir, NoLockIsWaitedFor) {
  ON_FILES_ALONE("a server lets everybody read");
  const std::string file = on.MakeSound("a.wav", 1000);
  Measure(file, -9);
  on.station.base.Waiting().LetAllWait(100);
  base.Arm(BasePoint::kLockToRead, BaseFault::kLocked);
  EXPECT_EQ(LoudnessGain(on.station, file), 1);
  EXPECT_EQ(base.WaitedMs(), 0);
  EXPECT_EQ(on.station.base.Waiting().LeftMs(), 100);
  base.Disarm();
  EXPECT_NEAR(LoudnessGain(on.station, file), kMinus9Db, 1e-8);
}

TEST_F(LoudnessOnAir, ATableThatAnotherToolDamagedCostsTheGainAndOneLine) {
  AppendTitle(-9);
  AppendTitle(-9);
  on.Sql("ALTER TABLE \"Mesures\" DROP COLUMN \"LUFS\"");
  on.Start();
  on.RunUntil(15000);
  ExpectGains({1, 1});
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0]["where"], "LoudnessTarget");
  EXPECT_NE(errors[0]["text"].find("LUFS"), std::string::npos);
}

}  // namespace
}  // namespace zemo::test
