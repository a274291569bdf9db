// Another process has the base to itself, in real time: the engine on the virtual clock, every wait
// for the lock a real one. What is measured is how long the tick keeps everybody waiting.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <vector>

#include "engine/OperatorControls.h"
#include "engine/StartStop.h"
#include "scheduling/PercentageRequest.h"
#include "support/BaseLock.h"
#include "support/Child.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

using WallClock = std::chrono::steady_clock;

template <typename Work>
int64_t WallMsOf(const Work& work) {
  const auto began = WallClock::now();
  work();
  return std::chrono::duration_cast<std::chrono::milliseconds>(WallClock::now() - began).count();
}

constexpr int64_t kLockedTickMs = 100;
constexpr char kForWriting[] = "BEGIN IMMEDIATE";
// Far above the 100 ms that a tick may wait, for machines with other work; far below the five
// seconds that one operation waits elsewhere.
constexpr int64_t kLongestTickMs = 2000;

// The sqlite3 shell, or a program that writes on the server, holding the base until it goes.
class Holder {
 public:
  Holder(const std::string& path, const std::string& begin) {
    if (TestsAreOnServer()) {
      writer_ = std::make_unique<BaseLock>(path);
      return;
    }
    shell_ = std::make_unique<Child>(std::vector<std::string>{"sqlite3", path});
    shell_->Tell(begin + ";\nSELECT 'held';\n");
    EXPECT_EQ(shell_->Line().value_or(""), "held");
  }

 private:
  std::unique_ptr<Child> shell_;
  std::unique_ptr<BaseLock> writer_;
};

// The real time between two looks a tick apart, over a stretch of virtual time.
class TickWatch {
 public:
  TickWatch(TestStation& on, int64_t fromMs, int64_t toMs) {
    for (int64_t atMs = fromMs; atMs < toMs; atMs += kLockedTickMs) on.At(atMs, [this] { Look(); });
  }
  int64_t LongestMs() const { return longestMs_; }

 private:
  void Look() {
    const auto now = WallClock::now();
    if (last_ != WallClock::time_point{})
      longestMs_ = std::max(
          longestMs_, std::chrono::duration_cast<std::chrono::milliseconds>(now - last_).count());
    last_ = now;
  }
  WallClock::time_point last_{};
  int64_t longestMs_ = 0;
};

class LockedBase : public testing::TestWithParam<const char*> {
 protected:
  LockedBase() : on("2026-11-21 12:05:00") {}
  void SetUp() override {
    if (std::string(GetParam()) != kForWriting) ON_FILES_ALONE("a server lets everybody read");
    on.Load();
    for (int i = 0; i < 4; ++i) on.AppendCard(on.AddCard({.lengthMs = 20000}));
  }
  // Elements begin at 0, 18500, 36900 and 55300 ms.
  void HoldFrom(int64_t atMs, int64_t untilMs) {
    on.At(atMs, [this] { holder_ = std::make_unique<Holder>(on.station.base.Path(), GetParam()); });
    on.At(untilMs, [this] { holder_.reset(); });
  }
  TestStation on;

 private:
  std::unique_ptr<Holder> holder_;
};

TEST_P(LockedBase, NoTickWaitsLongerThanItsGrantWhateverItAsks) {
  on.Sql("INSERT INTO Playlist (LADATE, LHEURE, LIBELLE) VALUES ('JOURNALIER', '12:06', 'DUE')");
  on.Start();
  HoldFrom(5000, 70000);
  const TickWatch watch(on, 6000, 69000);
  on.RunUntil(90000);
  EXPECT_LT(watch.LongestMs(), kLongestTickMs);
  ASSERT_EQ(on.Starts().size(), 4U) << on.Describe();
  EXPECT_EQ(on.Starts()[1].atMs, 18500);
  EXPECT_EQ(on.Starts()[2].atMs, 36900);
  EXPECT_EQ(on.Starts()[3].atMs, 55300);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE TITRE = 'TITLE'"), "4");
}

// Else the wait of the tick before an exit point and that of the tick behind it add up to a
// transition that is later than one tick and one grant.
TEST_P(LockedBase, MostOfAGrantIsSavedForTheTimeBehindTheStartWhereAnElementIsAboutToBegin) {
  struct Grants : EventSink {
    explicit Grants(TestStation& station) : on(station) {}
    void OnEvent(const Event& event) override {
      if (event.name == "start") atStart.push_back(on.station.base.Waiting().LeftMs());
      if (event.name == "onair") onAir.push_back(on.station.base.Waiting().LeftMs());
    }
    TestStation& on;
    std::vector<int> atStart, onAir;
  } grants(on);
  on.Start();
  on.RunUntil(10050);
  on.station.events.SetSink(&grants);
  EXPECT_EQ(on.station.base.Waiting().LeftMs(), 100) << "far from the exit point";
  on.RunUntil(18450);
  EXPECT_EQ(on.station.base.Waiting().LeftMs(), 40) << "the exit point is at 18500";
  on.RunUntil(25000);
  EXPECT_EQ(grants.atStart, std::vector<int>{40});
  EXPECT_EQ(grants.onAir, std::vector<int>{100});
  on.station.events.SetSink(nullptr);
}

TEST_P(LockedBase, ARequestOfTheOperatorIsOverAtOnce) {
  on.Start();
  HoldFrom(5000, 12000);
  int64_t tookMs = 0;
  on.At(10000, [&] { tookMs = WallMsOf([&] { OnAir::CmdRequette_Click(on.station); }); });
  on.RunUntil(15000);
  EXPECT_LT(tookMs, kLongestTickMs);
  EXPECT_EQ(on.station.engine.mainTimerHolds, 0);
}

// The library is known, the week's model and the small tables as they were read last.
TEST_P(LockedBase, ARequestListsTitlesFromMemory) {
  on.Sql(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 3000) INSERT INTO "
      "Discotheque (FILENAME, DUREE, AUTEUR, TITRE, GENRE, VARIETE, NBPASSJOUR, TRANCHE06) SELECT "
      "'/lost', 180000, 'ARTIST ' || i, 'TITLE', 'POP', 'NATIONAL', 1, "
      "'111111111111111111111111' FROM n");
  on.ModelOfOneGenre("POP");
  const auto request = [this] {
    on.station.PL.Clear();
    int16_t minutes = 30;
    RequestMusic(on.station, minutes);
    return on.station.PL.Count();
  };
  int before = 0, locked = 0;
  int64_t tookMs = 0;
  on.At(4000, [&] { before = request(); });
  HoldFrom(5000, 30000);
  on.At(10000, [&] { tookMs = WallMsOf([&] { locked = request(); }); });
  const TickWatch watch(on, 6000, 29000);
  on.RunUntil(31000);
  EXPECT_GT(before, 2);
  EXPECT_EQ(locked, before);
  EXPECT_LT(tookMs, kLongestTickMs);
  EXPECT_LT(watch.LongestMs(), kLongestTickMs);
  for (const auto& error : on.Events("error")) EXPECT_NE(error["where"], "RequetePlaylist");
}

TEST_P(LockedBase, AStartOrderIsOverAtOnceAndPlaysWhatTheListHolds) {
  HoldFrom(1000, 12000);
  int64_t tookMs = 0;
  on.At(5000, [&] { tookMs = WallMsOf([&] { StartStopZemoRadio(on.station, true); }); });
  on.RunUntil(15000);
  EXPECT_LT(tookMs, kLongestTickMs);
  EXPECT_EQ(on.Starts().size(), 1U) << on.Describe();
}

// One skeleton position that the station's only title fills.
void AddSkeleton(TestStation& on) {
  std::string masks;
  for (int day = 1; day <= 7; ++day)
    masks += ", TRANCHE0" + std::to_string(day) + " = '111111111111111111111111'";
  on.Sql("UPDATE Discotheque SET NBPASSJOUR = 100" + masks);
  on.Sql("INSERT INTO ModelSquelette (JOUR, TRANCHE12) VALUES (6, 'POP')");  // a Saturday
  on.Set("Squelette", "-1");
  on.Set("TempRequette", "1");
}

// Held for two minutes from before the start; the request of the start is all that fills a list
// before its first element.
TEST(LockedBaseAtTheStart, TheListIsAskedForAgainUntilTheBaseIsFree) {
  ON_FILES_ALONE("a server lets everybody read");
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  on.AddCard({.lengthMs = 20000});
  AddSkeleton(on);
  std::unique_ptr<Holder> holder;
  on.At(4000,
        [&] { holder = std::make_unique<Holder>(on.station.base.Path(), "BEGIN EXCLUSIVE"); });
  on.At(5000, [&] { StartStopZemoRadio(on.station, true); });
  on.At(125000, [&] { holder.reset(); });
  on.RunUntil(124000);
  EXPECT_TRUE(on.Starts().empty());
  // One try a second, and none in between.
  EXPECT_NEAR(static_cast<double>(on.Events("request").size()), 119, 2) << on.Describe();
  on.RunUntil(132000);
  ASSERT_FALSE(on.Starts().empty()) << on.Describe();
  // A second up to the next try, and a tick.
  EXPECT_LE(on.Starts()[0].atMs, 125000 + 1000 + 200);
}

// A library that has nothing to play is no such case: the start asks once.
TEST(LockedBaseAtTheStart, NothingOfAGrantIsSavedWhereNoElementCanStart) {
  TestStation on;
  on.Load();
  on.Start();
  on.RunUntil(150);
  ASSERT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(on.station.base.Waiting().LeftMs(), 100);
}

TEST(LockedBaseAtTheStart, AnEmptyLibraryIsAskedOnce) {
  TestStation on("2026-11-21 12:05:00");
  on.Load();
  on.Start();
  on.RunUntil(20000);
  EXPECT_EQ(on.Events("request").size(), 1U) << on.Describe();
}

INSTANTIATE_TEST_SUITE_P(Held, LockedBase,
                         testing::Values("BEGIN EXCLUSIVE", kForWriting,
                                         "BEGIN; SELECT '' FROM Toph WHERE HEURE = 99"),
                         [](const auto& held) {
                           const std::string begin = held.param;
                           return begin.size() == 5            ? "ByAWriter"
                                  : begin == "BEGIN EXCLUSIVE" ? "Wholly"
                                  : begin == "BEGIN IMMEDIATE" ? "ForWriting"
                                                               : "ByAReader";
                         });

}  // namespace
}  // namespace zemo::test
