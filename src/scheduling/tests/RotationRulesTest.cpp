// The rules on one card, with every number worked out by hand; then the artist tests on a report.
#include <gtest/gtest.h>

#include "scheduling/RecentReport.h"
#include "scheduling/RequestError.h"
#include "scheduling/RotationRules.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/BaseFiles.h"
#include "station/TimeForms.h"
#include "store/SeekCode.h"

namespace zemo {
namespace {

using test::ParseMoment;
using test::RequestStation;
using test::TitleCard;

// A card that nothing refuses, and the answer of the rules at a moment.
class RotationRules : public testing::Test {
 protected:
  RotationRules() {
    card.Genre = "POP";
    card.Auteur = " ARTIST ";
    card.Titre = " TITLE ";
    card.NBPASSJOUR = 1;
    card.Tranche = test::kAlways;
  }
  bool At(const std::string& moment, int decalDiff = 0) {
    return RotationAllows(card, RotationMoment(ParseMoment(moment)), decalDiff, line);
  }
  CardRotation card;
  std::string line;
  const std::string head = "21/11/2026 12:00:00 POP\tARTIST TITLE";
};

TEST_F(RotationRules, ANeverPlayedTitlePassesAllGaps) {
  card.ECARTMINUTES = card.ECARTJOURS = 1000;
  EXPECT_TRUE(At("2026-11-21 12:00:00", 3));
  EXPECT_EQ(line, "");
}

TEST_F(RotationRules, ANeverPlayedTitleOutsideItsWindowIsRefusedWithoutALine) {
  card.MMJJDebut = "0601";
  card.MMJJFin = "0831";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, "");
}

TEST_F(RotationRules, ANeverPlayedTitleOutOfRotationIsRefusedWithoutALine) {
  card.NBPASSJOUR = 0;
  card.Diffusion[0] = "   ";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, "");
}

TEST_F(RotationRules, APlayedTitleOutOfRotationIsRefusedWithAllItsReasonsInOneLine) {
  card.NBPASSJOUR = 0;
  card.ECARTMINUTES = 120;
  card.ECARTJOURS = 2;
  card.Diffusion[0] = "21/11/2026 à 11:00";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, head +
                      " >> Rotation = 0 >> Ecart minutes pas assez important 120 > 60"
                      " >> Ecart jours pas assez important 2 > 0");
}

TEST_F(RotationRules, APlayedTitleOutsideItsWindowIsRefusedWithTheBareLine) {
  card.MMJJDebut = "0601";
  card.MMJJFin = "0831";
  card.Diffusion[0] = "20/11/2026 à 11:00";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, head);
}

TEST_F(RotationRules, AWindowHoldsItsFirstAndItsLastDay) {
  card.MMJJDebut = "1121";
  card.MMJJFin = "1122";
  EXPECT_FALSE(At("2026-11-20 23:59:59"));
  EXPECT_TRUE(At("2026-11-21 00:00:00"));
  EXPECT_TRUE(At("2026-11-22 23:59:59"));
  EXPECT_FALSE(At("2026-11-23 00:00:00"));
}

TEST_F(RotationRules, AWindowOverNewYearNeverOpens) {
  card.MMJJDebut = "1201";
  card.MMJJFin = "0131";
  EXPECT_FALSE(At("2026-12-15 12:00:00"));
  EXPECT_FALSE(At("2027-01-15 12:00:00"));
  EXPECT_FALSE(At("2027-06-15 12:00:00"));
}

TEST_F(RotationRules, OneBoundAloneIsNoWindow) {
  card.MMJJDebut = "1201";
  card.MMJJFin = "    ";
  EXPECT_TRUE(At("2026-11-21 12:00:00"));
  card.MMJJDebut = "";
  card.MMJJFin = "0131";
  EXPECT_TRUE(At("2026-11-21 12:00:00"));
}

TEST_F(RotationRules, TheMinutesGapIsRefusedOneMinuteShortAndPassesWhenEqual) {
  card.ECARTMINUTES = 120;
  card.NBPASSJOUR = 5;
  card.Diffusion[0] = "21/11/2026 à 10:00";
  EXPECT_FALSE(At("2026-11-21 11:59:59"));
  EXPECT_EQ(line,
            "21/11/2026 11:59:59 POP\tARTIST TITLE"
            " >> Ecart minutes pas assez important 120 > 119");
  EXPECT_TRUE(At("2026-11-21 12:00:00"));
}

TEST_F(RotationRules, TitlePlayedYesterdayAt23CountsMinutesUpwards) {
  card.Diffusion[0] = "20/11/2026 à 23:00";
  card.ECARTMINUTES = 2760;  // 1440, and 22 hours between the two times of day
  EXPECT_TRUE(At("2026-11-21 01:00:00"));
  card.ECARTMINUTES = 2761;
  EXPECT_FALSE(At("2026-11-21 01:00:00"));
  EXPECT_NE(line.find(" 2761 > 2760"), std::string::npos) << line;
}

TEST_F(RotationRules, OneDayOfGapPassesForYesterdayAndFailsForToday) {
  card.ECARTJOURS = 1;
  card.NBPASSJOUR = 5;
  card.Diffusion[0] = "20/11/2026 à 23:59";
  EXPECT_TRUE(At("2026-11-21 00:00:00"));
  card.Diffusion[0] = "21/11/2026 à 00:10";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, head + " >> Ecart jours pas assez important 1 > 0");
}

TEST_F(RotationRules, DaysAreCountedOverMonthsAndYears) {
  card.ECARTJOURS = 61;  // 21 November to 21 January
  card.Diffusion[0] = "21/11/2026 à 12:00";
  EXPECT_TRUE(At("2027-01-21 12:00:00"));
  EXPECT_FALSE(At("2027-01-20 12:00:00"));
}

TEST_F(RotationRules, PassesOfTheDayCountEveryBroadcastOfToday) {
  card.NBPASSJOUR = 2;
  card.Diffusion[0] = "21/11/2026 à 08:00";
  card.Diffusion[1] = "20/11/2026 à 08:00";
  EXPECT_TRUE(At("2026-11-21 12:00:00"));
  card.Diffusion[7] = "21/11/2026 à 01:00";
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
  EXPECT_EQ(line, head + " >> Ecart nb passage jour atteint 2 > 2");
}

TEST_F(RotationRules, MoreThanEightPassesADayAreNeverReached) {
  card.NBPASSJOUR = 9;
  card.Diffusion.fill("21/11/2026 à 08:00");
  EXPECT_TRUE(At("2026-11-21 12:00:00"));
  card.NBPASSJOUR = 8;
  EXPECT_FALSE(At("2026-11-21 12:00:00"));
}

TEST_F(RotationRules, TheShiftLooksAtAsManyBroadcastsAsItSays) {
  card.Diffusion = {"20/11/2026 à 08:00", "19/11/2026 à 09:00", "18/11/2026 à 12:59"};
  EXPECT_TRUE(At("2026-11-21 12:00:00", 2));
  EXPECT_FALSE(At("2026-11-21 12:00:00", 3));
  EXPECT_EQ(line, head + " >> pas autorisé dans cette tranche a cause du décalage");
  EXPECT_TRUE(At("2026-11-21 12:00:00", 0));
}

TEST_F(RotationRules, TheShiftStaysBelowTheHoursOfTheTitle) {
  card.Diffusion = {"20/11/2026 à 08:00", "19/11/2026 à 12:00"};
  card.Tranche = "000000001000100000000000";  // two hours: only the newest broadcast is compared
  EXPECT_TRUE(At("2026-11-21 12:00:00", 3));
  EXPECT_FALSE(At("2026-11-21 08:00:00", 3));
  card.Tranche = "000000001000000000000000";  // one hour: no shift
  EXPECT_TRUE(At("2026-11-21 08:00:00", 3));
}

TEST_F(RotationRules, AShiftOfAsManyHoursAsTheTitleHasComparesThemAll) {
  card.Diffusion = {"20/11/2026 à 08:00", "19/11/2026 à 12:00"};
  card.Tranche = "000000001000100000000000";
  EXPECT_FALSE(At("2026-11-21 12:00:00", 2));
}

TEST_F(RotationRules, AShiftAboveEightBroadcastsIsAnErrorOnlyWhenNoneOfThemHits) {
  card.Diffusion.fill("20/11/2026 à 08:00");
  EXPECT_THROW(At("2026-11-21 12:00:00", 9), StoreError);
  EXPECT_FALSE(At("2026-11-21 08:00:00", 9));
  EXPECT_TRUE(At("2026-11-21 12:00:00", 8));
}

TEST_F(RotationRules, ABroadcastThatIsNoDateIsAnError) {
  for (const char* text : {"31/02/2026 à 10:00", "yesterday", "2026-11-20 à 10:00",
                           "20/11/2026 à 24:00", "20/11/2026 à 10", "20/11/2026"}) {
    card.Diffusion[0] = text;
    EXPECT_THROW(At("2026-11-21 12:00:00"), RequestError) << text;
  }
}

TEST_F(RotationRules, ReasonsComeInTheOrderOfTheTests) {
  card.ECARTMINUTES = 90;
  card.ECARTJOURS = 1;
  card.Diffusion[0] = "21/11/2026 à 12:00";
  EXPECT_FALSE(At("2026-11-21 12:30:00", 1));
  EXPECT_EQ(line,
            "21/11/2026 12:30:00 POP\tARTIST TITLE"
            " >> Ecart minutes pas assez important 90 > 30"
            " >> Ecart jours pas assez important 1 > 0"
            " >> Ecart nb passage jour atteint 1 > 1"
            " >> pas autorisé dans cette tranche a cause du décalage");
}

// Summer time ended at 03:00, which was 02:00 again. Played in the first 02:45, asked in the second
// 02:50: five minutes by the wall clock, and really 65.
TEST_F(RotationRules, WhereTheClockWentBackATitleRestsFromWhenItReallyAired) {
  card.NBPASSJOUR = 8;
  card.ECARTMINUTES = 65;
  card.Diffusion[0] = "25/10/2026 à 02:45";
  EXPECT_FALSE(At("2026-10-25 02:50:00"));
  card.restedMinutes = 65;
  EXPECT_TRUE(At("2026-10-25 02:50:00")) << line;
  EXPECT_EQ(line, "");
  card.restedMinutes = 64;
  EXPECT_FALSE(At("2026-10-25 02:49:00"));
  EXPECT_EQ(line,
            "25/10/2026 02:49:00 POP\tARTIST TITLE >> Ecart minutes pas assez important 65 > 64");
}

// Two hours by the wall clock, three by the other one, and by the rule without a sign 22 hours and
// a day: 2760 minutes.
TEST_F(RotationRules, AClockThatWentBackMakesNoTitleYoungerThanTheRuleSays) {
  card.NBPASSJOUR = 8;
  card.ECARTMINUTES = 200;
  card.Diffusion[0] = "24/10/2026 à 23:00";
  card.restedMinutes = 180;
  EXPECT_TRUE(At("2026-10-25 01:00:00")) << line;
}

// The wall clock counts where it has more: it was set forward, or the machine slept.
TEST_F(RotationRules, AClockThatWentOnIsTakenAtItsWord) {
  card.NBPASSJOUR = 8;
  card.ECARTMINUTES = 120;
  card.Diffusion[0] = "25/10/2026 à 10:00";
  card.restedMinutes = 60;
  EXPECT_TRUE(At("2026-10-25 12:00:00")) << line;
}

// A clock that stood a year ahead: the broadcast lies in the future. A day of rest is 24 hours.
TEST_F(RotationRules, ABroadcastInTheFutureKeepsATitleNoLongerThanItsGaps) {
  card.ECARTMINUTES = 120;
  card.ECARTJOURS = 1;
  card.Diffusion[0] = "21/11/2027 à 12:00";
  EXPECT_FALSE(At("2026-11-21 14:00:00"));
  card.restedMinutes = 1439;
  EXPECT_FALSE(At("2026-11-22 11:59:00"));
  card.restedMinutes = 1440;
  EXPECT_TRUE(At("2026-11-22 12:00:00")) << line;
}

// The first 02:45 was 01:45 by the clock of the second hour; ten minutes ago is 02:35 by either.
TEST_F(RotationRules, TheShiftTakesTheFirstOfTwoEqualHoursForTheHourBefore) {
  card.NBPASSJOUR = 8;
  card.Diffusion[0] = "25/10/2026 à 02:45";
  EXPECT_FALSE(At("2026-10-25 02:50:00", 1));
  card.restedMinutes = 65;
  EXPECT_TRUE(At("2026-10-25 02:50:00", 1)) << line;
  card.Diffusion[0] = "25/10/2026 à 02:40";
  card.restedMinutes = 10;
  EXPECT_FALSE(At("2026-10-25 02:50:00", 1));
}

// --- on a base ---

TEST(RotationRulesOnABase, TheCursorsCardIsTestedAndItsRefusalLogged) {
  RequestStation s;
  const int32_t free = s.Add({});
  TitleCard played;
  played.minutes = 120;
  played.passes = 3;
  played.diffusions = {"21/11/2026 à 10:00"};
  const int32_t refused = s.Add(played);
  const auto cards = s.station.base.Table("Discotheque");
  ASSERT_TRUE(SeekCode(*cards, free));
  EXPECT_TRUE(CheckRotation(s.station, *cards));
  ASSERT_TRUE(SeekCode(*cards, refused));
  EXPECT_FALSE(CheckRotation(s.station, *cards));
  ASSERT_EQ(s.Requests().ListAutorisation.Count(), 1U);
  EXPECT_EQ(s.Requests().ListAutorisation.All()[0],
            "21/11/2026 10:55:00 POP\tARTIST TITLE"
            " >> Ecart minutes pas assez important 120 > 55");
}

// The clock went back from 12:00 to 10:55: what aired before that has the newest moments. A search
// among A, C and D never meets the first line.
TEST(RotationRulesOnABase, TheRecentArtistsAreThoseThatAiredLastThoughTheClockWentBack) {
  RequestStation s;
  s.Execute("DELETE * FROM Rapport");
  const auto air = [&](const char* artist, double hour) {
    s.Execute("INSERT INTO Rapport (AUTEUR, GENRE, DATENUM) VALUES ('" + std::string(artist) +
              "', 'POP', " + std::to_string(46347 + hour / 24) + ")");
  };
  air("OLD", 9.0);
  air("BEFORE", 11.8);
  air("BEFORE TOO", 11.9);
  air("D", 10.7);
  air("A", 10.8);
  air("C", 10.9);
  s.SetCnf("EcartArtiste", 3);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, (std::vector<std::string>{"A", "C", "D"}));
}

TEST(RotationRulesOnABase, OnlyTheBroadcastThatThisRunAiredIsTimedByItsOwnClock) {
  RequestStation s("2026-11-21 10:00:00");
  TitleCard played;
  played.minutes = 30;
  played.diffusions = {"21/11/2026 à 10:05"};  // the clock goes back behind it
  const int32_t code = s.Add(played);
  s.Requests().airings[code] = {0, "21/11/2026 à 10:05"};
  const auto cards = s.station.base.Table("Discotheque");
  const auto allowed = [&] {
    EXPECT_TRUE(SeekCode(*cards, code));
    return CheckRotation(s.station, *cards);
  };
  s.Execute("UPDATE Discotheque SET NBPASSJOUR = 8");
  s.RunUntil(29 * 60000 + 59000);
  s.loop.SetWallClock(ParseMoment("2026-11-21 10:10:00"));
  EXPECT_FALSE(allowed());
  s.RunUntil(30 * 60000);
  s.loop.SetWallClock(ParseMoment("2026-11-21 10:10:00"));
  EXPECT_TRUE(allowed());
  s.Execute("UPDATE Discotheque SET DIFFUSION01 = '21/11/2026 à 10:06'");  // another machine
  EXPECT_FALSE(allowed());
  EXPECT_EQ(s.Requests().ListAutorisation.Count(), 2U);
}

TEST(RecentArtists, AreThoseOfTheNewestRowsWithoutSpotsJinglesAndPipsAndOfTheWholeList) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 2);
  s.Report("OLD", 46000.1);
  s.Report("middle", 46000.2);
  s.Report("NEW", 46000.3);
  s.Report("PIP", 46000.4, "TOP-H");
  s.Report("JINGLE", 46000.5, "JINGLE");
  s.Report("SPOT", 46000.6, "PUB");
  s.station.PL.Add(test::TitleElement(1, "LISTED"));
  s.station.PL.Add(test::TitleElement(-1, "a jingle"));
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste,
            (std::vector<std::string>{"a jingle", "LISTED", "middle", "NEW"}));
}

TEST(RecentArtists, AGapOfZeroTakesNoneOfTheReport) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 0);
  s.Report("NEW", 46000.3);
  LoadRecentArtists(s.station);
  EXPECT_TRUE(s.Requests().ECArtiste.empty());
}

TEST(RecentArtists, OfOneMomentTheHighestCodeComesFirst) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 1);
  s.Report("FIRST", 46000.5);
  s.Report("SECOND", 46000.5);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, std::vector<std::string>{"SECOND"});
}

// 2,000 rows of which only the newest are read; `late` is the moment of row 10.
void FillLongReport(RequestStation& s, double late) {
  Transaction all(s.station.base.Db());
  for (int i = 1; i <= 2000; ++i)
    s.Report("ARTIST " + std::to_string(i), i == 10 ? late : 46000 + i / 10000.0);
  all.Commit();
  OpenBaseAgain(s.station);  // what is known of it from now on is its last rows, and bounds
}

TEST(RecentArtists, ALongReportGivesTheSameAsReadingAllOfIt) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 3);
  FillLongReport(s, 46000);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste,
            (std::vector<std::string>{"ARTIST 1998", "ARTIST 1999", "ARTIST 2000"}));
}

TEST(RecentArtists, AMomentFromBeforeTheClockWasSetBackIsStillTheNewest) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 2);
  FillLongReport(s, 46001);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, (std::vector<std::string>{"ARTIST 10", "ARTIST 2000"}));
  s.Report("ARTIST 10", 46000.21);  // newer by its CODE, older by its moment
  LoadNewestReportCode(s.station);
  bool allowed = true;
  CheckArtistGapInReport(s.station, "ARTIST 10", 5, allowed);
  EXPECT_TRUE(allowed);
}

// Today is day 46347.
TEST(RecentArtists, BehindAMomentAheadOfTheClockThoseAiredLastCountHoweverLongAgoThatWas) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 2);
  FillLongReport(s, 46400);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, (std::vector<std::string>{"ARTIST 1999", "ARTIST 2000"}));
}

TEST(RecentArtists, RowsAddedAfterwardsAndPurgedOnesAreSeen) {
  RequestStation s;
  s.SetCnf("EcartArtiste", 2);
  FillLongReport(s, 46000);
  LoadRecentArtists(s.station);
  s.Report("NEWEST", 46000.9);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, (std::vector<std::string>{"ARTIST 2000", "NEWEST"}));
  s.Execute("DELETE * FROM Rapport WHERE CODE > 5");
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, (std::vector<std::string>{"ARTIST 4", "ARTIST 5"}));
}

// The other base has as many rows and was changed more often; its newest row is one of the first.
TEST(RecentArtists, OfAnotherBaseAreReadAnew) {
  RequestStation other;
  other.SetCnf("EcartArtiste", 1);
  FillLongReport(other, 46001);
  for (int i = 0; i < 3; ++i) other.SetCnf("Veille", i);
  RequestStation s;
  s.SetCnf("EcartArtiste", 1);
  FillLongReport(s, 46000);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, std::vector<std::string>{"ARTIST 2000"});
  s.station.base.Close();
  s.stationFolder.Write("Triskin.MDB", *other.stationFolder.Read("Triskin.MDB"));
  OpenBaseAgain(s.station);
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, std::vector<std::string>{"ARTIST 10"});
}

TEST(RecentArtists, AReportThatCannotBeReadLeavesTheArtistsOfTheList) {
  RequestStation s;
  s.Execute("ALTER TABLE Rapport RENAME TO Gone");
  s.station.PL.Add(test::TitleElement(1, "LISTED"));
  LoadRecentArtists(s.station);
  EXPECT_EQ(s.Requests().ECArtiste, std::vector<std::string>{"LISTED"});
  bool allowed = true;
  CheckArtistGapInReport(s.station, "LISTED", 5, allowed);
  EXPECT_TRUE(allowed);
}

bool RecentlyHeard(RequestStation& s, std::string artist) {
  bool allowed = true;
  CheckRecentArtist(s.station, artist, allowed);
  return !allowed;
}

TEST(RecentArtistTest, TheFirstOfTheAlphabetIsLetThroughAndTheOthersAreRefused) {
  RequestStation s;
  for (const char* artist : {"Delta", "alpha", "CHARLIE", "Bravo"})
    s.station.PL.Add(test::TitleElement(1, artist));
  LoadRecentArtists(s.station);
  EXPECT_FALSE(RecentlyHeard(s, "ALPHA"));
  EXPECT_TRUE(RecentlyHeard(s, "bravo"));
  EXPECT_TRUE(RecentlyHeard(s, "Charlie"));
  EXPECT_TRUE(RecentlyHeard(s, "DELTA"));
  EXPECT_FALSE(RecentlyHeard(s, "ECHO"));
}

TEST(RecentArtistTest, AListOfOneArtistRefusesNobody) {
  RequestStation s;
  s.station.PL.Add(test::TitleElement(1, "ALPHA"));
  LoadRecentArtists(s.station);
  EXPECT_FALSE(RecentlyHeard(s, "ALPHA"));
}

TEST(RecentArtistTest, TheArtistComesBackInCapitals) {
  RequestStation s;
  std::string artist = "Zoé";
  bool allowed = true;
  CheckRecentArtist(s.station, artist, allowed);
  EXPECT_EQ(artist, "ZOÉ");
  EXPECT_TRUE(allowed);
}

TEST(ReportGap, CountsAllRowsOfTheReport) {
  RequestStation s;
  s.Report("ARTIST", 46000.1);
  s.Report("OTHER", 46000.2);
  s.Report("SPOT", 46000.3, "PUB");
  LoadNewestReportCode(s.station);
  bool allowed = true;
  CheckArtistGapInReport(s.station, "artist", 2, allowed);  // two rows lie behind it
  EXPECT_TRUE(allowed);
  CheckArtistGapInReport(s.station, "artist", 3, allowed);
  EXPECT_FALSE(allowed);
}

TEST(ReportGap, NeverSetsTheFlagAndPassesAnUnknownArtist) {
  RequestStation s;
  s.Report("ARTIST", 46000.1);
  LoadNewestReportCode(s.station);
  bool allowed = true;
  CheckArtistGapInReport(s.station, "UNKNOWN", 30000, allowed);
  EXPECT_TRUE(allowed);
  allowed = false;
  CheckArtistGapInReport(s.station, "UNKNOWN", 30000, allowed);
  EXPECT_FALSE(allowed);
}

TEST(ReportGap, AnApostropheInTheArtistIsNoEndOfText) {
  RequestStation s;
  s.Report("L'ARTISTE", 46000.1);
  LoadNewestReportCode(s.station);
  bool allowed = true;
  CheckArtistGapInReport(s.station, "L'Artiste", 1, allowed);
  EXPECT_FALSE(allowed);
}

TEST(ReportGap, AWideGapReachesFarBackInALongReport) {
  RequestStation s;
  FillLongReport(s, 46000.001);
  LoadNewestReportCode(s.station);
  bool allowed = true;
  CheckArtistGapInReport(s.station, "ARTIST 100", 1900, allowed);  // exactly 1,900 rows behind
  EXPECT_TRUE(allowed);
  CheckArtistGapInReport(s.station, "ARTIST 100", 1901, allowed);
  EXPECT_FALSE(allowed);
}

// Of 30,000 rows, of which a look reads a third at most.
struct LongReportWatched : testing::Test {
  void SetUp() override {
    s.Sql(
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) INSERT "
        "INTO Rapport (AUTEUR, DATENUM) SELECT 'ARTIST ' || i, 46000 + i / 1000.0 FROM n");
    watched.loop.onYield = [this] {
      ++yields;
      EXPECT_GT(watched.station.engine.mainTimerHolds, 0);
      if (someoneWrites)
        s.Sql("UPDATE Rapport SET LABEL = 'L" + std::to_string(yields) + "' WHERE CODE % 50 = 1");
    };
  }
  bool Allowed(const std::string& artist, int16_t gap) {
    LoadNewestReportCode(watched.station);
    bool allowed = true;
    CheckArtistGapInReport(watched.station, artist, gap, allowed);
    return allowed;
  }
  RequestStation s;
  test::WatchedStation watched{s};
  int yields = 0;
  bool someoneWrites = false;
};

TEST_F(LongReportWatched, IsReadWithYieldsAndTheTickHeld) {
  KnowReport(watched.station);
  EXPECT_GE(yields, 3);
  EXPECT_FALSE(Allowed("ARTIST 29990", 11));  // ten rows behind
  EXPECT_TRUE(watched.station.requests.reportInMemory);
  EXPECT_TRUE(Allowed("ARTIST 29990", 10));
}

TEST_F(LongReportWatched, IsLeftToTheBaseWhereSomebodyWritesInEachYield) {
  someoneWrites = true;
  KnowReport(watched.station);
  EXPECT_FALSE(Allowed("ARTIST 29990", 11));
  EXPECT_FALSE(watched.station.requests.reportInMemory);
  EXPECT_TRUE(Allowed("ARTIST 29990", 10));
}

// More rows than are noted one by one, in a yield of a request.
TEST(ReportGap, HoldsBehindAWriteToAllOfALongReport) {
  RequestStation s;
  s.Sql(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 25000) INSERT INTO "
      "Rapport (AUTEUR, DATENUM) SELECT 'ARTIST ' || i, 46000 + i / 1000.0 FROM n");
  KnowReport(s.station);
  LoadNewestReportCode(s.station);
  ASSERT_TRUE(s.Requests().reportInMemory);
  s.Execute("UPDATE Rapport SET LABEL = 'OTHER'");
  bool allowed = true;
  CheckArtistGapInReport(s.station, "ARTIST 24990", 11, allowed);  // ten rows behind
  EXPECT_FALSE(allowed);
}

TEST(ReportGap, TheReportsHeadStaysWhereItWasWhenTheTableIsEmpty) {
  RequestStation s;
  s.Report("ARTIST", 46000.1);
  LoadNewestReportCode(s.station);
  EXPECT_EQ(s.Requests().DernierCodeRapport, 1);
  s.Execute("DELETE * FROM Rapport");
  LoadNewestReportCode(s.station);
  EXPECT_EQ(s.Requests().DernierCodeRapport, 1);
}

TEST(RequestClock, TheHourOfTheClockSetsTheLengthTo60Minutes) {
  RequestStation s("2026-11-21 23:59:59");
  s.Requests().MinutesRequete = 15;
  EXPECT_EQ(CurrentHour(s.station), 23);
  EXPECT_EQ(s.Requests().MinutesRequete, 60);
}

}  // namespace
}  // namespace zemo
