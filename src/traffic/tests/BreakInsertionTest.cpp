// The inserters of breaks, one by one, on a station at 12:00:00 of Saturday, 21 November 2026,
// whose engine does not run. Settings are the standard ones but for those that a test sets:
// PmixPubs 100, PmixJingles 500.
#include <gtest/gtest.h>

#include "station/OnAirColumns.h"
#include "station/PlanTimes.h"
#include "station/TextForms.h"
#include "store/SqlText.h"
#include "support/Campaigns.h"
#include "traffic/BreakInsertion.h"
#include "traffic/SpotTitle.h"

namespace zemo::test {
namespace {

class BreakInsertion : public testing::Test {
 protected:
  void SetUp() override {
    on.Load();
    Set("PmixPubs", "100");
    Set("PmixJingles", "500");
    on.seen.clear();
  }
  void Set(const std::string& field, const std::string& value) {
    on.Set(field, value);
    on.station.base.CheckCnf();
  }
  void Jingles() {
    before = on.MakeSound("before.wav", 4000);
    after = on.MakeSound("after.wav", 3000);
    Set("JingleAvantPubs", "'" + before + "'");
    Set("JingleApresPubs", "'" + after + "'");
  }
  // A break of these elements in row 1 of the grid; "" is a hole. Each lasts 10 s.
  void Break(const std::vector<std::string>& elements, const std::string& type = "Pubs") {
    DayGrid& grid = on.station.GPubJour;
    grid.SetCell(1, 0, "12:30");
    grid.SetCell(1, 1, "00:20");
    grid.SetCell(1, 2, type);
    int column = 3;
    for (const std::string& element : elements) {
      if (!element.empty()) {
        grid.SetCell(1, column, element);
        grid.SetCell(1, column + 50, on.MakeSound(element + ".wav", 10000));
      }
      ++column;
    }
  }
  std::string FileOf(const std::string& element) {
    return on.stationDir.Path() + "/" + element + ".wav";
  }
  void InList(int32_t code, const std::string& text) {
    OnAirElement element;
    element.title = text;
    element.code = code;
    on.Append(element);
  }
  std::string Texts() const {
    std::string texts;
    for (const OnAirRow& row : on.station.PL) texts += (texts.empty() ? "" : ",") + row.title;
    return texts;
  }
  const OnAirRow& Row(int row) { return on.station.PL.Row(row); }
  // A title of that genre that may play at any hour; CODE.
  int32_t Title(const std::string& artist, const std::string& genre, double lastPlayed) {
    const int32_t code =
        on.AddCard({.artist = artist, .genre = genre, .exitMs = 1200, .introSec = 7});
    on.Sql("UPDATE Discotheque SET LASTDIFF = " + SqlNumber(lastPlayed) +
           " WHERE CODE = " + std::to_string(code));
    return code;
  }
  void TiedSpot(const std::string& element, const std::string& genre) {
    AddCampaign(on, {.advertiser = element, .file = FileOf(element), .genre = genre});
  }
  TestStation on;
  std::string before, after;
};

// --- spots at the head of the list ---

TEST_F(BreakInsertion, ASpotBreakStandsInTheOrderOfItsColumnsBetweenItsJingles) {
  Jingles();
  Break({"A", "B", "C"});
  InList(5, "TITLE");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "Jingle avant Pubs,A,B,C,Jingle après Pubs,TITLE");
  const OnAirElement& jingle = Row(1);
  EXPECT_EQ(jingle.genre, "Jingle");
  EXPECT_EQ(jingle.file, before);
  EXPECT_EQ(ColumnText(jingle, Col::kCode), "-1");
  EXPECT_EQ(ColumnText(jingle, Col::kLength), "00:04");
  EXPECT_EQ(ColumnText(jingle, Col::kLengthMs), "4000");
  EXPECT_EQ(ColumnText(jingle, Col::kExitMs), "");
  const OnAirElement& spot = Row(2);
  EXPECT_EQ(spot.genre, "Pub");
  EXPECT_EQ(spot.file, FileOf("A"));
  EXPECT_EQ(ColumnText(spot, Col::kCode), "-2");
  EXPECT_EQ(ColumnText(spot, Col::kLength), "00:10");
  EXPECT_EQ(ColumnText(spot, Col::kLengthMs), "10000");
  EXPECT_EQ(spot.secondLine + ColumnText(spot, Col::kExitMs), "");
  EXPECT_EQ(Row(5).file, after);
}

TEST_F(BreakInsertion, TheEventTellsPlaceAndRows) {
  Jingles();
  Break({"A", "B"});
  InsertSpotBreak(on.station, 1);
  const auto told = on.Events("break");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0]["routine"] + " " + told[0]["moment"] + " " + told[0]["type"],
            "AjoutPubPlaylist 12:30 Pubs");
  EXPECT_EQ(told[0]["position"] + "," + told[0]["rows"], "1,4");
}

TEST_F(BreakInsertion, WithoutJinglesInTheSettingsThereAreNone) {
  Break({"A"});
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A");
}

TEST_F(BreakInsertion, APipOrAJingleInRow1StaysInFront) {
  for (const int32_t code : {-3, -1}) {
    on.station.PL.Clear();
    InList(code, "FRONT");
    InList(5, "TITLE");
    Break({"A"});
    InsertSpotBreak(on.station, 1);
    EXPECT_EQ(Texts(), "FRONT,A,TITLE") << code;
  }
  on.station.PL.Clear();
  InList(-2, "SPOT");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,SPOT");
}

TEST_F(BreakInsertion, HolesAreSkipped) {
  Break({"A", "", "C"});
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,C");
}

TEST_F(BreakInsertion, ElementsInColumns50To52AreNotInserted) {
  Break({});
  for (int column = 50; column <= 52; ++column) on.station.GPubJour.SetCell(1, column, "NEVER");
  InsertSpotBreak(on.station, 1);
  EXPECT_TRUE(on.station.PL.Empty());
  EXPECT_EQ(on.Events("break").at(0)["rows"], "0");
}

TEST_F(BreakInsertion, All47ElementsOfABreakAreInserted) {
  std::vector<std::string> elements;
  std::string expected;
  for (int i = 1; i <= 47; ++i) {
    elements.push_back("E" + std::to_string(i));
    expected += (i == 1 ? "" : ",") + elements.back();
  }
  Break(elements);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), expected);
}

TEST_F(BreakInsertion, AMissingFileGetsItsRowWithoutALength) {
  Break({});
  on.station.GPubJour.SetCell(1, 3, "GONE");
  on.station.GPubJour.SetCell(1, 53, "/nowhere/gone.wav");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "GONE");
  EXPECT_EQ(ColumnText(Row(1), Col::kLength), "--:--");
  EXPECT_EQ(ColumnText(Row(1), Col::kLengthMs), "0");
}

TEST_F(BreakInsertion, WithPriorityTheElementOnAirGivesWay) {
  Break({"A"});
  InsertSpotBreak(on.station, 1);
  EXPECT_FALSE(on.station.engine.NextRequested);
  Set("PrioriteRubriques", "1");  // that of the news
  InsertSpotBreak(on.station, 1);
  EXPECT_FALSE(on.station.engine.NextRequested);
  Set("PrioritePubs", "1");
  InsertSpotBreak(on.station, 1);
  EXPECT_TRUE(on.station.engine.NextRequested);
}

TEST_F(BreakInsertion, NoAutomaticJingleFollowsAtOnceAndThePlanIsReckonedAnew) {
  Break({"A"});
  on.station.engine.LastJingleTimer = 0;
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43200.0F);  // 12:00:00
  EXPECT_EQ(ColumnText(Row(1), Col::kPlanned).substr(0, 4), "12 h");
  EXPECT_EQ(ListTotalSec(on.station), 10);
  EXPECT_EQ(on.station.engine.mainTimerHolds, 0);
}

// --- news ---

TEST_F(BreakInsertion, ANewsBreakHasNoJinglesAndItsOwnKind) {
  Jingles();
  Set("JingleExtraitYN", "1");
  Set("ExtraitAuto", "1");
  Break({"A", "B"}, "Rubriques");
  InList(5, "TITLE");
  InsertNewsBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,B,TITLE");
  EXPECT_EQ(Row(1).genre, "Rubrique");
  EXPECT_EQ(ColumnText(Row(1), Col::kCode), "-4");
  EXPECT_EQ(ColumnText(Row(1), Col::kExitMs), "");
  const Seen* told = on.First("break");
  ASSERT_NE(told, nullptr);
  EXPECT_EQ((*told)["routine"] + (*told)["type"] + (*told)["rows"],
            "AjoutRubriquePlaylistRubriques2");
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43200.0F);
}

TEST_F(BreakInsertion, NewsHaveAPriorityOfTheirOwn) {
  Break({"A"}, "Rubriques");
  Set("PrioritePubs", "1");
  InsertNewsBreak(on.station, 1);
  EXPECT_FALSE(on.station.engine.NextRequested);
  Set("PrioriteRubriques", "1");
  InsertNewsBreak(on.station, 1);
  EXPECT_TRUE(on.station.engine.NextRequested);
}

TEST_F(BreakInsertion, NewsTakeTheTitleTiedToThem) {
  Break({"A"}, "Rubriques");
  TiedSpot("A", "POP");
  Title("ARTIST", "POP", 46000);
  InsertNewsBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,ARTIST");
}

// --- by the operator ---

TEST_F(BreakInsertion, TheOperatorsBreakGoesInAtTheSelectedRowAsSpots) {
  Jingles();
  Set("PrioritePubs", "1");
  Break({"A", "B"}, "Rubriques");
  TiedSpot("A", "POP");
  Title("ARTIST", "POP", 46000);
  InList(5, "ONE");
  InList(6, "TWO");
  on.station.engine.LastJingleTimer = 7;
  InsertBreakAtRow(on.station, 1, 2);
  EXPECT_EQ(Texts(), "ONE,Jingle avant Pubs,A,B,Jingle après Pubs,TWO");
  EXPECT_EQ(Row(3).genre + ColumnText(Row(3), Col::kCode), "Pub-2");
  EXPECT_FALSE(on.station.engine.NextRequested);
  EXPECT_EQ(on.station.engine.LastJingleTimer, 7.0F);
  EXPECT_EQ(ListTotalSec(on.station), 27);  // 4 + 10 + 10 + 3
  const Seen* told = on.First("break");
  ASSERT_NE(told, nullptr);
  EXPECT_EQ((*told)["routine"] + " " + (*told)["position"] + " " + (*told)["rows"],
            "InsertPubPlaylist 2 4");
}

TEST_F(BreakInsertion, WithoutASelectedRowItGoesToTheHeadWhateverStandsThere) {
  Break({"A"});
  InList(-3, "PIP");
  InsertBreakAtRow(on.station, 1, 0);
  EXPECT_EQ(Texts(), "A,PIP");
  on.station.PL.Clear();
  InsertBreakAtRow(on.station, 1, 4);
  EXPECT_EQ(Texts(), "A");
}

// --- by the fitting ---

TEST_F(BreakInsertion, TheFittingsSpotsCarryTheirExitPoints) {
  Jingles();
  Set("PrioritePubs", "1");
  Break({"A", "B"});
  TiedSpot("A", "POP");
  Title("ARTIST", "POP", 46000);
  InList(5, "ONE");
  InList(6, "TWO");
  InsertBreakForFitting(on.station, 1, 2, "PUBS");
  EXPECT_EQ(Texts(), "ONE,Jingle avant Pubs,A,B,Jingle après Pubs,TWO");
  EXPECT_EQ(ColumnText(Row(2), Col::kExitMs) + "," + ColumnText(Row(3), Col::kExitMs) + "," +
                ColumnText(Row(4), Col::kExitMs) + "," + ColumnText(Row(5), Col::kExitMs),
            "500,100,100,500");
  EXPECT_FALSE(on.station.engine.NextRequested);
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43200.0F);
  EXPECT_EQ(ColumnText(Row(2), Col::kPlanned), "");  // the fitting reckons the plan itself
  EXPECT_TRUE(on.Events("break").empty());           // and tells it
}

TEST_F(BreakInsertion, AnyOtherWordOfTheFittingIsNews) {
  Jingles();
  Break({"A", "B"});
  InsertBreakForFitting(on.station, 1, 1, "RUBRIQUES");
  EXPECT_EQ(Texts(), "A,B");
  EXPECT_EQ(Row(1).genre + ColumnText(Row(1), Col::kCode) + " " + ColumnText(Row(1), Col::kExitMs),
            "Rubrique-4 100");
  EXPECT_EQ(on.station.engine.LastJingleTimer, 43200.0F);
}

// --- titles tied to spots ---

TEST_F(BreakInsertion, ATiedTitleFollowsItsSpot) {
  Break({"A", "B"});
  TiedSpot("A", "POP");
  const int32_t code = Title("ARTIST", "POP", 46000.5);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,ARTIST,B");
  const OnAirElement& title = Row(2);
  EXPECT_EQ(title.secondLine, "TITLE");
  EXPECT_EQ(title.genre + "," + title.variety, "POP,NATIONAL");
  EXPECT_EQ(ColumnText(title, Col::kCode), std::to_string(code));
  EXPECT_EQ(ColumnText(title, Col::kExitMs) + "," + ColumnText(title, Col::kIntro), "1200,7");
  EXPECT_EQ(ColumnText(title, Col::kLastPlayed), "2025/12/09  12:00:00");  // day 46000 and a half
  EXPECT_EQ(on.Events("break").at(0)["rows"], "3");
}

TEST_F(BreakInsertion, ATiedTitlesLengthIsThatOfItsFile) {
  Break({"A"});
  TiedSpot("A", "POP");
  const std::string file = on.MakeSound("title.wav", 65000);
  on.AddCard({.file = file, .lengthMs = 180000, .artist = "ARTIST"});
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(ColumnText(Row(2), Col::kLength) + " " + ColumnText(Row(2), Col::kLengthMs),
            "01:05 65000");
}

TEST_F(BreakInsertion, TheTitleThatRestedLongestIsTakenForEachSpotOfTheGenre) {
  Break({"A", "B"});
  TiedSpot("A", "POP");
  TiedSpot("B", "POP");
  Title("RECENT", "POP", 46300);
  Title("RESTED", "POP", 46000);
  Title("OTHER", "ROCK", 40000);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,RESTED,B,RESTED");
}

TEST_F(BreakInsertion, OnlyATitleWithPassesAllowedAtThisHourAndOnThisDayIsTied) {
  Break({"A"});
  TiedSpot("A", "POP");
  const auto with = [&](const std::string& artist, double last, const std::string& set) {
    on.Sql("UPDATE Discotheque SET " + set +
           " WHERE CODE = " + std::to_string(Title(artist, "POP", last)));
  };
  with("NO PASSES", 1, "NBPASSJOUR = 0");
  with("NOT AT NOON", 2, "TRANCHE06 = '111111111111011111111111'");
  with("OVER", 3, "MMJJDEBUT = '1101', MMJJFIN = '1120'");
  with("NO LAST DAY", 4, "MMJJDEBUT = '1101', MMJJFIN = ''");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A");
  on.station.PL.Clear();
  with("LAST DAY IS TODAY", 5, "MMJJDEBUT = '1101', MMJJFIN = '1121'");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,LAST DAY IS TODAY");
  on.station.PL.Clear();
  with("NO FIRST DAY", 4.5, "MMJJDEBUT = '', MMJJFIN = '0101'");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,NO FIRST DAY");
}

TEST_F(BreakInsertion, AtMidnightTheFirstHourOfTheMaskCounts) {
  on.loop.SetWallClock(ParseMoment("2026-11-21 00:30:00"));
  Break({"A"});
  TiedSpot("A", "POP");
  const int32_t code = Title("NIGHT", "POP", 46000);
  on.Sql("UPDATE Discotheque SET TRANCHE06 = '100000000000000000000000' WHERE CODE = " +
         std::to_string(code));
  EXPECT_TRUE(InsertTitleOfSpot(on.station, FileOf("A"), 1));
  on.Sql("UPDATE Discotheque SET TRANCHE06 = '011111111111111111111111' WHERE CODE = " +
         std::to_string(code));
  EXPECT_FALSE(InsertTitleOfSpot(on.station, FileOf("A"), 1));
}

TEST_F(BreakInsertion, ASpotWithoutACampaignOrGenreOrTitleIsInsertedAlone) {
  Break({"A", "B", "C"});
  TiedSpot("B", "  ");
  TiedSpot("C", "JAZZ");
  Title("ARTIST", "POP", 46000);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,B,C");
}

TEST_F(BreakInsertion, AnApostropheInAFileIsNoFault) {
  Break({"L'ARTISAN"});
  TiedSpot("L'ARTISAN", "POP");
  Title("ARTIST", "POP", 46000);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "L'ARTISAN,ARTIST");
}

TEST_F(BreakInsertion, AFailingQueryLeavesTheSpotWithoutItsTitle) {
  Break({"A", "B"});
  TiedSpot("A", "POP");
  on.Sql("DROP TABLE Discotheque");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "A,B");
  EXPECT_EQ(on.Events("error").at(0)["where"], "SearchPubAssocie") << on.Describe();
}

// --- announcement of coming titles ---

class Announcement : public BreakInsertion {
 protected:
  void SetUp() override {
    BreakInsertion::SetUp();
    Set("JingleExtraitYN", "1");
    Break({"SPOT"});
    for (const char* artist : {"ONE", "TWO", "THREE"})
      on.AppendCard(on.AddCard(
          {.file = on.MakeSound(std::string(artist) + ".wav", 60000), .artist = artist}));
  }
  void Mark(const std::string& artist, const std::string& marks) {
    on.MakeFile(artist + ".mar", marks);
  }
};

TEST_F(Announcement, CopiesOfTheNextTwoTitlesWithMarksStandBeforeTheBreak) {
  Mark("ONE", "1000\r\n9000\r\n");
  Mark("TWO", "0\r\n9000\r\n");  // no start
  Mark("THREE", "500,9000");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "Jingle annonce extrait,ONE,THREE,SPOT,ONE,TWO,THREE");
  OnAirElement copy = Row(2);
  copy.plannedMs = Row(5).plannedMs;  // reckoned for each row
  EXPECT_EQ(copy, static_cast<const OnAirElement&>(Row(5)));
  EXPECT_EQ(Row(1).secondLine, "NO JINGLE");
  EXPECT_EQ(on.Events("break").at(0)["rows"], "4");
}

TEST_F(Announcement, TheAutomaticExtractTakesTheFirstTwoTitles) {
  Set("ExtraitAuto", "1");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "Jingle annonce extrait,ONE,TWO,SPOT,ONE,TWO,THREE");
}

TEST_F(Announcement, OneTitleIsAnnouncedAlone) {
  Mark("TWO", "1000,9000");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "Jingle annonce extrait,TWO,SPOT,ONE,TWO,THREE");
}

TEST_F(Announcement, WithoutMarksThereIsNone) {
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "SPOT,ONE,TWO,THREE");
}

TEST_F(Announcement, WithoutTheSettingThereIsNone) {
  Set("JingleExtraitYN", "0");
  Set("ExtraitAuto", "1");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "SPOT,ONE,TWO,THREE");
}

TEST_F(Announcement, ItStandsBehindAPipInRow1) {
  OnAirElement pip;
  pip.title = "PIP";
  pip.code = -3;
  on.station.PL.Insert(1, pip);
  Mark("ONE", "1000,9000");
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "PIP,Jingle annonce extrait,ONE,SPOT,ONE,TWO,THREE");
}

TEST_F(Announcement, ATitleTiedToASpotOfTheBreakIsAComingTitleToo) {
  on.Sql("DELETE FROM Discotheque");
  on.station.PL.Clear();
  Set("ExtraitAuto", "1");
  TiedSpot("SPOT", "POP");
  Title("TIED", "POP", 46000);
  InsertSpotBreak(on.station, 1);
  EXPECT_EQ(Texts(), "Jingle annonce extrait,TIED,SPOT,TIED");
}

// --- the block's air time ---

TEST_F(BreakInsertion, TheAirTimeTakesTheMixOfEachElementOff) {
  Jingles();  // 4 and 3 s, each 0.5 s less
  Break({"A", "", "C"});
  double seconds = 20;
  ComputeBreakAirTime(on.station, seconds, 1);
  EXPECT_DOUBLE_EQ(seconds, 20 + 3.5 + 2.5 - 2 * 0.1);
}

TEST_F(BreakInsertion, TheAirTimeIsRoundedBeforeTheElementsMixIsTakenOff) {
  Set("JingleAvantPubs", "'" + on.MakeSound("before.wav", 4300) + "'");
  Break({"A"});
  double seconds = 10;
  ComputeBreakAirTime(on.station, seconds, 1);
  EXPECT_DOUBLE_EQ(seconds, 14 - 0.1);  // 10 + 4.3 - 0.5 = 13.8
}

TEST_F(BreakInsertion, WithoutJinglesTheAirTimeIsTheElementsAlone) {
  Break({"A", "B"});
  double seconds = 20;
  ComputeBreakAirTime(on.station, seconds, 1);
  EXPECT_DOUBLE_EQ(seconds, 19.8);
}

// --- what the outside reads ---

TEST_F(BreakInsertion, TheOutsideIsToldTheAdvertiser) {
  InList(-2, "CAFÉ DU PORT");
  TellBreakElement(on.station, on.station.PL.Row(1));
  EXPECT_EQ(on.stationFolder.Read("Artiste-Titre.Txt"), "CAF\xC9 DU PORT\r\n");
}

TEST_F(BreakInsertion, AMachineWithoutReportsTellsNothing) {
  on.station.engine.ReportsDisabled = true;
  InList(-2, "ADVERTISER");
  TellBreakElement(on.station, on.station.PL.Row(1));
  EXPECT_FALSE(on.stationFolder.Exists("Artiste-Titre.Txt"));
}

}  // namespace
}  // namespace zemo::test
