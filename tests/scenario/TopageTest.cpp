// Topage: a time of the day gives the air away, and a word on the clipboard hands it back.
// 21 November 2026 is a Saturday, day 5. The drain lasts 2.5 s.
#include <gtest/gtest.h>

#include "engine/MainScreenPicture.h"
#include "scenario/TriggerStation.h"

namespace zemo::test {
namespace {

class TopageHandOver : public testing::Test {
 protected:
  void PutOnAir(TriggerStation& on, int64_t lengthMs = 20000) {
    on.Load();
    on.AppendJingle(lengthMs);
    on.AppendJingle(60000);
    on.Start();
  }
  static void Neighbour(TriggerStation& on, int64_t atMs, const std::string& text) {
    on.At(atMs, [&on, text] { on.clipboard.SetText(text); });
  }
};

TEST_F(TopageHandOver, TheWordsHandTheAirBack) {
  TriggerStation on("2026-11-21 12:00:50", {});
  on.MakeFile("Topage.5", "\"12:01\"\r\n");
  PutOnAir(on);
  Neighbour(on, 40000, "Zemo Play Now");
  bool shown = false;
  on.At(30050,
        [&] { shown = PictureOf(on.station).LblTopage.visible; });  // 12:01:20, an even second
  on.RunUntil(41000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off; 40000 on") << on.Describe();
  EXPECT_EQ(on.Words(), "10000 12:01:00; 22600 Topage; 40000 Zemo Play Now");
  EXPECT_EQ(on.stationFolder.Read("CheckTopage.Dat"), "Topage          ");
  EXPECT_TRUE(shown);
  EXPECT_FALSE(PictureOf(on.station).LblTopage.visible);
  EXPECT_FALSE(on.station.engine.TopagePending);
  ASSERT_EQ(on.Starts().size(), 2U);
  EXPECT_EQ(on.Starts()[1].atMs, 40000);  // the stopped tick that reads them goes on to the start
}

TEST_F(TopageHandOver, OnlyExactlyThoseWordsDo) {
  TriggerStation on("2026-11-21 12:00:50", {});
  on.MakeFile("Topage.5", "\"12:01\"\r\n");
  PutOnAir(on);
  int64_t atMs = 30000;
  for (const char* text :
       {"zemo play now", "Zemo Play Now ", " Zemo Play Now", "Zemo Play Now\r\n", "Zemo Play", ""})
    Neighbour(on, atMs += 1000, text);
  on.RunUntil(50000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off");
  EXPECT_TRUE(on.station.engine.TopagePending);
}

TEST_F(TopageHandOver, TheWordsDoNothingWhileItIsNotPending) {
  TriggerStation on("2026-11-21 12:00:00", {});
  on.Load();
  on.AppendJingle(60000);
  Neighbour(on, 5000, "Zemo Play Now");
  on.RunUntil(10000);
  EXPECT_EQ(on.EngineTurns(), "");
  EXPECT_TRUE(on.Starts().empty());
}

TEST_F(TopageHandOver, TheAirCanBeHandedBackBeforeTheElementEnds) {
  TriggerStation on("2026-11-21 12:00:50", {});
  on.MakeFile("Topage.5", "\"12:01\"\r\n");
  PutOnAir(on);
  Neighbour(on, 15000, "Zemo Play Now");
  on.RunUntil(30000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off; 15000 on");
  EXPECT_EQ(on.Words(), "10000 12:01:00; 15000 Zemo Play Now");  // no drain, no "Topage"
  EXPECT_FALSE(on.stationFolder.Exists("CheckTopage.Dat"));
  ASSERT_EQ(on.Starts().size(), 2U) << on.Describe();
  EXPECT_LE(on.Starts()[1].atMs, 20100);  // behind the first, without a gap
}

TEST_F(TopageHandOver, EachTimeOfTheDayIsServedOnce) {
  TriggerStation on("2026-11-21 12:00:50", {});
  on.MakeFile("Topage.5", "\"12:01\"\r\n\"12:02\"\r\n");
  PutOnAir(on, 300000);
  Neighbour(on, 11000, "Zemo Play Now");
  Neighbour(on, 80000, "Zemo Play Now");
  on.RunUntil(100000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off; 11000 on; 70000 off; 80000 on") << on.Describe();
}

TEST_F(TopageHandOver, ATimeAtTheHourIsLoadedAndServed) {
  TriggerStation on("2026-11-21 12:59:50", {});
  PutOnAir(on, 60000);
  on.MakeFile("Topage.5", "\"13:00\"\r\n");  // edited since the start
  on.RunUntil(20000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off");
  EXPECT_EQ(on.Words(), "10000 13:00:00");
}

TEST_F(TopageHandOver, IsPendingOverMidnightAndTheNewDayHasItsOwnTimes) {
  TriggerStation on("2026-11-21 23:58:50", {});
  on.MakeFile("Topage.5", "\"23:59\"\r\n");
  on.MakeFile("Topage.6", "\"00:01\"\r\n");
  PutOnAir(on, 300000);
  Neighbour(on, 100000, "Zemo Play Now");  // 00:00:30
  on.RunUntil(135000);
  EXPECT_EQ(on.EngineTurns(), "0 on; 10000 off; 100000 on; 130000 off") << on.Describe();
  EXPECT_EQ(on.Words(), "10000 23:59:00; 100000 Zemo Play Now; 130000 00:01:00");
}

TEST_F(TopageHandOver, AnElementStartedByAPulseMeanwhileLeavesItPending) {
  TriggerStation on("2026-11-21 12:00:50", {{"PortCom", 1}});
  on.MakeFile("Topage.5", "\"12:01\"\r\n");
  PutOnAir(on, 5000);
  on.Contact(30000, 3, true);
  on.Contact(30050, 3, false);
  on.RunUntil(31000);
  EXPECT_TRUE(on.station.engine.TopagePending);
  EXPECT_FALSE(on.station.engine.IsRunning);
}

}  // namespace
}  // namespace zemo::test
