// Stored lists that take the air at their minute. Stations start at 17:59:50 with a title of two
// minutes on air from 100 ms; 18:00:00 is 10000 ms.
#include <gtest/gtest.h>

#include "engine/PlaylistWatcher.h"
#include "engine/StartStop.h"
#include "station/OnAirColumns.h"
#include "support/TestStation.h"

namespace zemo::test {
namespace {

constexpr int64_t kDueMs = 10000;
constexpr int64_t kDatedTickMs = 100;

class DatedList : public testing::Test {
 protected:
  explicit DatedList(const std::string& begin = "2026-11-21 17:59:50") : on(begin) {}
  void SetUp() override {
    on.Load();
    on.Sql("INSERT INTO DiscothequeJingle (FILENAME, DUREE, LIBELLE, POINTSORTIE) VALUES ('" +
           on.MakeSound("jingle.wav", 5000) + "', 5000, 'JINGLE', 300)");
    listed = on.AddCard({.lengthMs = 20000, .artist = "LISTED", .exitMs = 500});
  }
  // A list of the card `listed` and the jingle.
  void Store(int32_t code, const std::string& date, const std::string& time, int option) {
    const std::string key = std::to_string(code), card = std::to_string(listed);
    on.Sql("INSERT INTO Playlist (CODE, LADATE, LHEURE, LIBELLE, NOJINGLE) VALUES (" + key + ",'" +
           date + "','" + time + "','LIST " + key + "'," + std::to_string(option) + ")");
    on.Sql("INSERT INTO Pls (NUMPLS, DISCOTHEQUE, FICHE) VALUES (" + key + "," + card + "," + card +
           "),(" + key + ",-1,1)");
  }
  void PutTitleOnAir() {
    on.AppendCard(on.AddCard({.lengthMs = 120000}));
    on.Start();
  }
  void ExpectTaken(int32_t code, int64_t atMs) {
    const auto lists = on.Events("list");
    ASSERT_EQ(lists.size(), 1U) << on.Describe();
    EXPECT_EQ(lists[0].Int("code"), code);
    EXPECT_GE(lists[0].atMs, atMs);
    EXPECT_LT(lists[0].atMs, atMs + kDatedTickMs);
  }
  const OnAirRow& Row(int row) { return on.station.PL.Row(row); }
  TestStation on;
  int32_t listed = 0;
};

TEST_F(DatedList, TakesTheAirAtItsMinuteBetweenItsMarkers) {
  Store(1, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  on.AppendCard(on.AddCard({.artist = "DISPLACED"}));
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
  EXPECT_EQ((*on.First("list"))["title"], "LIST 1");
  EXPECT_EQ((*on.First("list"))["option"], "0");
  ASSERT_EQ(on.station.PL.Count(), 4);
  EXPECT_EQ(Row(1).title, "Start Playlist");
  EXPECT_EQ(Row(1).secondLine, "LIST 1");
  EXPECT_EQ(Row(1).genre, "PLAYLIST");
  EXPECT_EQ(Row(1).code, -10);
  EXPECT_EQ(Row(1).file, "");
  EXPECT_EQ(Row(2).title, "LISTED");
  EXPECT_EQ(Row(3).genre, "JINGLE");
  EXPECT_EQ(Row(4).title, "End Playlist");
  EXPECT_EQ(Row(4).secondLine, "LIST 1");
  EXPECT_EQ(Row(4).code, -20);
  EXPECT_TRUE(on.station.engine.PlaylistRunning);
}

TEST_F(DatedList, MusicRowsOfADatedListDoNotSayWhenTheyPlayedLast) {
  Store(1, "21/11/2026", "18:00", 0);
  on.Sql("UPDATE Discotheque SET LASTDIFF = 46347.5");
  PutTitleOnAir();
  on.RunUntil(kDueMs + 1000);
  EXPECT_EQ(Row(2).title, "LISTED");
  EXPECT_EQ(ColumnText(Row(2), Col::kLastPlayed), "");
}

TEST_F(DatedList, AirsItsElementsAndReportsBothMarkers) {
  Store(1, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(180000);
  const auto markers = on.Events("marker");
  ASSERT_EQ(markers.size(), 2U) << on.Describe();
  EXPECT_EQ(markers[0]["title"], "Start Playlist  LIST 1");
  EXPECT_EQ(markers[1]["title"], "End Playlist  LIST 1");
  EXPECT_GT(markers[0].atMs, 110000);  // the title on air was not cut
  const auto starts = on.Starts();
  ASSERT_EQ(starts.size(), 3U) << on.Describe();
  EXPECT_EQ(starts[1].Int("code"), listed);
  EXPECT_EQ(starts[2]["code"], "-1");
  EXPECT_GT(markers[1].atMs, starts[2].atMs);
  EXPECT_FALSE(on.station.engine.PlaylistRunning);
  EXPECT_EQ(on.SqlText("SELECT group_concat(GENRE || '/' || AUTEUR || '/' || TITRE, ' ') FROM "
                       "(SELECT * FROM Rapport WHERE GENRE = 'PLAYLIST' ORDER BY CODE) r"),
            "PLAYLIST/Start Playlist/LIST 1 PLAYLIST/End Playlist/LIST 1");
}

struct OptionCase {
  int option;
  bool silent, cutsIn;
};

class DatedListOption : public DatedList, public testing::WithParamInterface<OptionCase> {};

TEST_P(DatedListOption, SetsJinglesPipAndCut) {
  Store(1, "21/11/2026", "18:00", GetParam().option);
  PutTitleOnAir();
  bool silent = !GetParam().silent;
  on.At(kDueMs + 50, [&] {
    const EngineState& engine = on.station.engine;
    silent = engine.NoJingleActive;
    EXPECT_EQ(engine.HourBlockHandled, silent);
    EXPECT_EQ(engine.PipSuppressed, silent);
  });
  on.RunUntil(kDueMs + 3000);
  EXPECT_EQ(silent, GetParam().silent);
  ExpectTaken(1, kDueMs);
  const auto starts = on.Starts();
  if (!GetParam().cutsIn) {
    EXPECT_EQ(starts.size(), 1U) << on.Describe();
    return;
  }
  // The normal fade, and the list's first element within the next ticks.
  ASSERT_EQ(starts.size(), 2U) << on.Describe();
  EXPECT_EQ(starts[1].Int("code"), listed);
  EXPECT_LT(starts[1].atMs, kDueMs + 3 * kDatedTickMs);
  ASSERT_EQ(on.Events("fade").size(), 1U);
  EXPECT_EQ(on.First("fade")->Int("ms"), 1600);  // FadeOut
}

INSTANTIATE_TEST_SUITE_P(Options, DatedListOption,
                         testing::Values(OptionCase{0, false, false}, OptionCase{1, false, true},
                                         OptionCase{2, true, false}, OptionCase{3, true, true}));

TEST_F(DatedList, AnOptionOutOfTheFourLeavesTheFlags) {
  Store(1, "21/11/2026", "18:00", 7);
  PutTitleOnAir();
  on.station.engine.NoJingleActive = true;
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
  EXPECT_TRUE(on.station.engine.NoJingleActive);
  EXPECT_FALSE(on.station.engine.PipSuppressed);
}

TEST_F(DatedList, AfterItsEndJinglesAndPipAreBack) {
  Store(1, "21/11/2026", "18:00", 3);
  PutTitleOnAir();
  on.RunUntil(60000);
  const EngineState& engine = on.station.engine;
  EXPECT_FALSE(engine.PlaylistRunning);
  EXPECT_FALSE(engine.NoJingleActive);
  EXPECT_FALSE(engine.PipSuppressed);
}

TEST_F(DatedList, ADailyListIsTakenOnceInItsMinute) {
  Store(1, "JOURNALIER", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 75000);
  ExpectTaken(1, kDueMs);
}

class DailyList : public DatedList, public testing::WithParamInterface<const char*> {
 protected:
  DailyList() : DatedList(std::string(GetParam()) + " 17:59:50") {}
};

TEST_P(DailyList, IsDueOnAnyDay) {
  Store(1, "JOURNALIER", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
}

INSTANTIATE_TEST_SUITE_P(Days, DailyList,
                         testing::Values("2026-12-31", "2027-01-01", "2028-02-29", "2026-11-23"));

TEST_F(DatedList, OfTwoAtOneMinuteTheFirstOfTheTableIsTaken) {
  Store(1, "21/11/2026", "18:00", 0);
  Store(2, "JOURNALIER", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
}

TEST_F(DatedList, ADailyListStoredBeforeADatedOneWins) {
  Store(1, "JOURNALIER", "18:00", 0);
  Store(2, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
}

TEST_F(DatedList, OtherDaysAndDamagedDatesAreNotDue) {
  Store(1, "22/11/2026", "18:00", 0);
  Store(2, "JJ/MM/ANNE", "18:00", 0);
  Store(3, "", "18:00", 0);
  Store(4, "21-11-2026", "18:00", 0);
  Store(5, "21/11/2026", "hh:mn", 0);
  Store(6, "21/11/2025", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 70000);
  EXPECT_TRUE(on.Events("list").empty()) << on.Describe();
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(DatedList, AMinuteThatPassedWithTheEngineStoppedIsLost) {
  Store(1, "21/11/2026", "18:00", 0);
  on.At(kDueMs + 60000, [&] { on.Start(); });
  on.RunUntil(kDueMs + 70000);
  EXPECT_TRUE(on.Events("list").empty()) << on.Describe();
}

TEST_F(DatedList, TheStartOfTheEngineTakesAListThatIsDue) {
  Store(1, "21/11/2026", "18:00", 0);
  const int64_t odd = kDueMs + 33000;  // 18:00:33 is no second of the watcher
  on.At(odd, [&] { on.Start(); });
  on.RunUntil(odd + 1000);
  ExpectTaken(1, odd);
}

// Another program stores it between two looks of the same minute.
TEST_F(DatedList, OneThatIsStoredInItsMinuteIsTakenAtTheNextLook) {
  PutTitleOnAir();
  on.At(kDueMs + 22000, [&] { Store(1, "21/11/2026", "18:00", 0); });
  on.RunUntil(kDueMs + 30000);
  ExpectTaken(1, kDueMs + 25000);
}

TEST_F(DatedList, OneThatAnotherProgramMovesOrDeletesIsTakenWhereItStandsNow) {
  Store(1, "21/11/2026", "18:00", 0);
  Store(2, "21/11/2026", "18:05", 0);
  PutTitleOnAir();
  on.At(7000, [&] {  // the look of 17:59:55 knew both
    on.Sql("DELETE FROM Playlist WHERE CODE = 1");
    on.Sql("UPDATE Playlist SET LHEURE = '18:01' WHERE CODE = 2");
  });
  on.RunUntil(kDueMs + 70000);
  ExpectTaken(2, kDueMs + 60000);
}

TEST_F(DatedList, ACardThatIsGoneIsLeftOut) {
  Store(1, "21/11/2026", "18:00", 0);
  on.Sql("DELETE FROM Discotheque");
  PutTitleOnAir();
  on.Sql("DELETE FROM Discotheque WHERE AUTEUR = 'LISTED'");
  on.RunUntil(kDueMs + 1000);
  ASSERT_EQ(on.station.PL.Count(), 3);
  EXPECT_EQ(Row(2).genre, "JINGLE");
  EXPECT_TRUE(on.Events("error").empty());
}

TEST_F(DatedList, AListThatCannotBeReadLeavesTheAirAsItIs) {
  Store(1, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  OnAirElement waiting;  // no music: the new hour leaves it in the list
  waiting.title = "WAITING";
  waiting.code = -1;
  on.Append(waiting);
  on.At(9000, [&] { on.Sql("ALTER TABLE Pls RENAME TO Elsewhere"); });
  on.At(17000, [&] { on.Sql("ALTER TABLE Elsewhere RENAME TO Pls"); });
  on.RunUntil(16000);
  EXPECT_TRUE(on.Events("list").empty());
  ASSERT_TRUE(on.First("error"));
  EXPECT_EQ((*on.First("error"))["where"], "SurveillePlaylist");
  ASSERT_GE(on.station.PL.Count(), 1);
  EXPECT_EQ(Row(1).title, "WAITING");
  EXPECT_FALSE(on.station.engine.PlaylistRunning);
  EXPECT_TRUE(on.station.engine.MainTimer->Enabled());
  on.RunUntil(21000);
  ExpectTaken(1, 20000);  // the next second of the watcher in the list's minute
}

// It is seen first: the hour changes only once it is over, in the first minute of an hour.
TEST_F(DatedList, OfTheFullHourHoldsTheChangeOfTheHour) {
  Store(1, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 1000);
  ExpectTaken(1, kDueMs);
  EXPECT_EQ(on.station.engine.LastHour, 17);
}

// Four lists of one morning, dated and daily, one of each option, over the change of the hour.
class MorningOfLists : public DatedList {
 protected:
  MorningOfLists() : DatedList("2026-11-21 10:49:50") {}
};

TEST_F(MorningOfLists, EachOptionTakesTheAirInItsTurn) {
  Store(1, "21/11/2026", "10:50", 0);
  Store(2, "JOURNALIER", "10:55", 1);
  Store(3, "21/11/2026", "11:00", 2);
  Store(4, "JOURNALIER", "11:05", 3);
  for (int i = 0; i < 30; ++i) on.AddCard({.lengthMs = 60000});
  on.AppendCard(on.AddCard({.lengthMs = 120000}));
  on.Start();
  on.RunUntil(20 * 60000);
  const auto lists = on.Events("list");
  ASSERT_EQ(lists.size(), 4U) << on.Describe();
  for (size_t i = 0; i < 4; ++i) {
    const int64_t dueMs = kDueMs + static_cast<int64_t>(i) * 5 * 60000;
    EXPECT_EQ(lists[i].Int("code"), static_cast<int64_t>(i) + 1);
    EXPECT_EQ(lists[i].Int("option"), static_cast<int64_t>(i));
    EXPECT_GE(lists[i].atMs, dueMs);
    EXPECT_LT(lists[i].atMs, dueMs + kDatedTickMs);
  }
  // Each one aired between its markers, and left nothing of its own behind.
  EXPECT_EQ(on.Events("marker").size(), 8U);
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE GENRE = 'PLAYLIST'"), "8");
  EXPECT_EQ(on.SqlText("SELECT COUNT(*) FROM Rapport WHERE AUTEUR = 'LISTED'"), "4");
  const EngineState& engine = on.station.engine;
  EXPECT_FALSE(engine.PlaylistRunning);
  EXPECT_FALSE(engine.NoJingleActive);
  EXPECT_FALSE(engine.PipSuppressed);
  EXPECT_TRUE(on.Events("error").empty());
}

class ListAtMidnight : public DatedList {
 protected:
  ListAtMidnight() : DatedList("2026-11-21 23:59:50") {}
};

TEST_F(ListAtMidnight, ADatedListIsTakenAtTheFirstTickOfItsDay) {
  Store(1, "22/11/2026", "00:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 3000);
  ExpectTaken(1, kDueMs);
}

TEST_F(ListAtMidnight, TheListOfTheLastMinuteDoesNotHoldItOff) {
  Store(1, "JOURNALIER", "23:59", 0);
  Store(2, "JOURNALIER", "00:00", 0);
  PutTitleOnAir();
  on.RunUntil(kDueMs + 3000);
  const auto lists = on.Events("list");
  ASSERT_EQ(lists.size(), 2U) << on.Describe();
  EXPECT_EQ(lists[0].Int("code"), 1);
  EXPECT_EQ(lists[1].Int("code"), 2);
  EXPECT_LT(lists[1].atMs, kDueMs + kDatedTickMs);
}

TEST_F(DatedList, WhatItDisplacesIsNoOrderToTakeBack) {
  Store(1, "21/11/2026", "18:00", 0);
  PutTitleOnAir();
  on.At(1000, [&] {
    const ListOrder order(on.station);
    on.station.PL.Add({});
  });
  on.RunUntil(kDueMs - kDatedTickMs);
  EXPECT_TRUE(on.station.listUndo);
  on.RunUntil(kDueMs + 1000);
  EXPECT_FALSE(UndoListOrder(on.station));
}

}  // namespace
}  // namespace zemo::test
