// The seven searches for a jingle, asked one by one: Saturday 21 November 2026, 12:00:00, which is
// 46347.5 as a day serial.
#include <gtest/gtest.h>

#include "JingleLibrary.h"
#include "scheduling/JingleSelection.h"
#include "station/OnAirColumns.h"
#include "store/Database.h"
#include "store/StoreError.h"
#include "support/BaseFaults.h"

namespace zemo::test {
namespace {

constexpr int32_t kTitle = 7;  // a music code

class JingleSelection : public testing::Test {
 protected:
  void SetUp() override { on.Load(); }
  EngineState& Engine() { return on.station.engine; }
  OnAirList& PL() { return on.station.PL; }
  std::string LastPlayed(int32_t code, const std::string& table = "DiscothequeJingle") {
    return on.SqlText("SELECT LASTDIFF FROM " + table + " WHERE CODE = " + std::to_string(code));
  }
  void Set(const std::string& field, const std::string& value) {
    on.Set(field, value);
    on.station.base.CheckCnf();
  }
  std::string Setting(const std::string& field) {
    return on.SqlText("SELECT " + field + " FROM Cnf");
  }

  BaseFaults base;  // ahead of the station, whose base it may fail
  TestStation on;
};

// --- FindJingle, in the list ---

using FindJingleInList = JingleSelection;

TEST_F(FindJingleInList, TheLeastRecentlyPlayedPlainJingleGoesBeforeTheTitle) {
  AddJingle(on, {.label = "RECENT", .lastPlayed = 46000});
  const int32_t code =
      AddJingle(on, {.label = "RESTED", .lengthMs = 65000, .exitMs = 450, .lastPlayed = 45000});
  PL().Add(RowOf(kTitle));
  FindJingle(on.station, false, 0);
  ASSERT_EQ(Texts(PL()), "RESTED,ARTIST") << on.Describe();
  const OnAirElement& row = PL().Row(1);
  EXPECT_EQ(row.secondLine, "");
  EXPECT_EQ(ColumnText(row, Col::kLength), "01:05");
  EXPECT_EQ(row.genre, "");
  EXPECT_EQ(row.file,
            on.SqlText("SELECT FILENAME FROM DiscothequeJingle WHERE LIBELLE = 'RESTED'"));
  EXPECT_EQ(ColumnText(row, Col::kCode), "-1");
  EXPECT_EQ(ColumnText(row, Col::kLengthMs), "65000");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "450");
  EXPECT_EQ(ColumnText(row, Col::kIntro) + ColumnText(row, Col::kLastPlayed) + row.variety, "");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  const auto told = on.Events("jingle");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0]["routine"], "FindJingle");
  EXPECT_EQ(told[0].Int("code"), code);
  EXPECT_EQ(told[0]["file"], row.file);
  EXPECT_EQ(told[0]["overlay"], "false");
}

TEST_F(FindJingleInList, GoesIntoAnEmptyListToo) {
  AddJingle(on, {});
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "JINGLE");
}

TEST_F(FindJingleInList, ItsCodeIsKeptInTheBaseAndOnlyThere) {
  const int32_t code = AddJingle(on, {});
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Setting("JingleCode"), std::to_string(code));
  EXPECT_EQ(Setting("JingleCodeIntro"), "0");
}

TEST_F(FindJingleInList, TheOnlyJingleNeverComesTwiceRunning) {
  const int32_t only = AddJingle(on, {.label = "ONLY"});
  FindJingle(on.station, false, 0);
  PL().Clear();
  FindJingle(on.station, false, 0);
  EXPECT_TRUE(PL().Empty());
  AddJingle(on, {.label = "SECOND", .lastPlayed = 46347.75});  // played later than the only one
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "SECOND");
  PL().Clear();
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "ONLY");
  EXPECT_EQ(Setting("JingleCode"), std::to_string(only));
}

TEST_F(FindJingleInList, OverlaysGenreJinglesAndAnnouncementsAreNoPlainOnes) {
  AddJingle(on, {.label = "OVERLAY", .overlay = true});
  AddJingle(on, {.label = "GENRE", .genre = "POP"});
  AddJingle(on, {.label = "EXTRACT", .extract = 1});
  FindJingle(on.station, false, 0);
  EXPECT_TRUE(PL().Empty());
}

TEST_F(FindJingleInList, NeedsTheHourOfTheWeekday) {
  std::string notNow(24, '1');
  notNow[12] = '0';
  AddJingle(on, {.label = "NOT NOW", .hours = notNow});
  const int32_t sunday = AddJingle(on, {.label = "SUNDAY", .lastPlayed = 1});
  on.Sql("UPDATE DiscothequeJingle SET TRANCHE06 = '" + std::string(24, '0') +
         "' WHERE CODE = " + std::to_string(sunday));
  std::string nowOnly(24, '0');
  nowOnly[12] = '1';
  AddJingle(on, {.label = "NOW", .hours = nowOnly, .lastPlayed = 2});
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "NOW");
}

TEST_F(FindJingleInList, AJingleOutsideItsDatesIsPassedOver) {
  AddJingle(on, {.label = "SUMMER", .from = "0601", .to = "0831"});
  AddJingle(on, {.label = "NEW YEAR", .from = "1120", .to = "0115", .lastPlayed = 1});
  AddJingle(on, {.label = "TODAY", .from = "1121", .to = "1121", .lastPlayed = 2});
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "TODAY");
}

TEST_F(FindJingleInList, OneDateAloneIsNoWindow) {
  AddJingle(on, {.label = "FROM ALONE", .from = "1201", .to = "    "});
  FindJingle(on.station, false, 0);
  EXPECT_EQ(Texts(PL()), "FROM ALONE");
}

TEST_F(FindJingleInList, NoneWhoseDatesAreOpenLeavesAllAsItWas) {
  const int32_t code = AddJingle(on, {.from = "0601", .to = "0831"});
  FindJingle(on.station, false, 0);
  EXPECT_TRUE(PL().Empty());
  EXPECT_EQ(LastPlayed(code), "0.0");
  EXPECT_EQ(Setting("JingleCode"), "0");
}

TEST_F(FindJingleInList, NothingGoesBeforeARowThatIsNoMusic) {
  AddJingle(on, {});
  AddJingle(on, {.overlay = true});
  for (const int32_t code : {Element::kJingle, Element::kSpot, Element::kHourPip, Element::kNews,
                             Element::kOther, Element::kStartPlaylist}) {
    PL().Clear();
    PL().Add(RowOf(code, "ROW"));
    FindJingle(on.station, false, 0);
    FindJingle(on.station, true, 0);
    EXPECT_EQ(Texts(PL()), "ROW") << code;
  }
  EXPECT_TRUE(on.Events("jingle").empty()) << on.Describe();
}

TEST_F(FindJingleInList, AFailedQueryIsLoggedAndTheCallerGoesOn) {
  AddJingle(on, {});
  on.Sql("DROP TABLE DiscothequeJingle");
  FindJingle(on.station, false, 0);
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0]["where"], "FindJingle");
  EXPECT_NE(errors[0]["text"].find("Code = 0"), std::string::npos) << errors[0]["text"];
}

// A pick writes twice; elsewhere each of the two could wait five seconds for the lock.
TEST_F(FindJingleInList, AllThatAPickAsksOfALockedBaseWaitsForTheTicksGrantTogether) {
  AddJingle(on, {});
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  on.station.base.Waiting().LetAllWait(kTickWaitMs);
  FindJingle(on.station, false, 0);
  EXPECT_EQ(base.WaitedMs(), kTickWaitMs);
  EXPECT_EQ(Texts(PL()), "JINGLE");  // it plays, only what is kept of it cannot be written
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0].Int("number"), kErrLocked);
}

TEST_F(FindJingleInList, WhatALockedBaseCannotTakeOfAPickIsWrittenWhenItIsFree) {
  const int32_t code = AddJingle(on, {});
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  FindJingle(on.station, false, 0);
  ASSERT_EQ(Texts(PL()), "JINGLE");
  const auto errors = on.Events("error");
  ASSERT_EQ(errors.size(), 1U) << on.Describe();
  EXPECT_EQ(errors[0]["where"], "FindJingle");
  EXPECT_NE(errors[0]["text"].find("Code = " + std::to_string(code)), std::string::npos)
      << errors[0]["text"];
  base.Disarm();
  EXPECT_EQ(LastPlayed(code), "0.0");
  on.RunUntil(6000);                       // the tick tries again after 5 s
  EXPECT_EQ(LastPlayed(code), "46347.5");  // the moment of the pick, not of the writing
  EXPECT_EQ(Setting("JingleCode"), std::to_string(code));
}

TEST_F(JingleSelection, EveryJingleBeforeATitleGoesInThoughTheBaseIsLocked) {
  const int32_t before = AddJingle(on, {.label = "BEFORE", .titleCode = kTitle});
  const int32_t behind = AddJingle(on, {.label = "BEHIND", .titleCode = kTitle, .endOfTitle = 1});
  PL().Add(RowOf(kTitle));
  base.Arm(BasePoint::kLockToWrite, BaseFault::kLocked);
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "BEFORE,BEHIND,ARTIST");
  base.Disarm();
  on.RunUntil(6000);
  EXPECT_EQ(LastPlayed(before), "46347.5");
  EXPECT_EQ(LastPlayed(behind), "46347.5");
}

// --- FindJingle, over the introduction ---

using FindJingleOverlay = JingleSelection;

TEST_F(FindJingleOverlay, OneAsLongAsTheIntroductionIsNeverChosen) {
  AddJingle(on, {.label = "AS LONG", .lengthMs = 12000, .overlay = true});
  AddJingle(on, {.label = "LONGER", .lengthMs = 12001, .overlay = true});
  FindJingle(on.station, true, 12000);
  EXPECT_TRUE(on.Events("jingle").empty()) << on.Describe();
  const int32_t code =
      AddJingle(on, {.label = "SHORTER", .lengthMs = 11999, .overlay = true, .lastPlayed = 46000});
  FindJingle(on.station, true, 12000);
  ASSERT_EQ(on.Events("jingle").size(), 1U);
  EXPECT_EQ(on.Events("jingle")[0].Int("code"), code);
}

TEST_F(FindJingleOverlay, WithoutAMaximumAnyLengthWillDo) {
  AddJingle(on, {.lengthMs = 60000, .overlay = true});
  FindJingle(on.station, true, 0);
  EXPECT_EQ(on.Events("jingle").size(), 1U);
}

TEST_F(FindJingleOverlay, ArmedAtTheEndOfTheIntroductionItWaitsOnSlot2) {
  const int32_t code = AddJingle(on, {.label = "OVER", .lengthMs = 5000, .overlay = true});
  Set("VolumeMusiqueSurImpression", "12000");
  FindJingle(on.station, true, 20000);
  EXPECT_TRUE(Engine().IntroOverlayPending);
  EXPECT_EQ(Engine().IntroArmedTimer, 43200.0F);
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "OVER");
  EXPECT_TRUE(on.station.engine.IntroOverlayPending);
  EXPECT_EQ(on.sound.Length(kOverlaySlot), 5000);
  EXPECT_EQ(on.sound.Volume(kOverlaySlot), 12000);
  EXPECT_TRUE(on.sound.ChannelDone(kOverlaySlot));
  EXPECT_TRUE(on.Events("overlay").empty());
  EXPECT_TRUE(PL().Empty());
  EXPECT_EQ(Setting("JingleCodeIntro"), std::to_string(code));
  EXPECT_EQ(Setting("JingleCode"), "0");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["overlay"], "true");
}

TEST_F(FindJingleOverlay, OtherwiseItStartsAtOnce) {
  AddJingle(on, {.overlay = true});
  Set("JingleEnFinIntro", "0");
  FindJingle(on.station, true, 20000);
  EXPECT_FALSE(Engine().IntroOverlayPending);
  EXPECT_FALSE(on.sound.ChannelDone(kOverlaySlot));
  ASSERT_EQ(on.Events("overlay").size(), 1U);
  EXPECT_EQ(on.Events("overlay")[0]["reason"], "jingle");
  EXPECT_EQ(on.Events("overlay")[0].Int("volume"), 16384);
}

TEST_F(FindJingleOverlay, TheOnlyOneNeverComesTwiceRunning) {
  AddJingle(on, {.overlay = true});
  FindJingle(on.station, true, 20000);
  FindJingle(on.station, true, 20000);
  FindJingle(on.station, true, 0);
  EXPECT_EQ(on.Events("jingle").size(), 1U) << on.Describe();
}

TEST_F(FindJingleOverlay, ALostFileIsLoggedAndGivesUpItsTurn) {
  const int32_t lost = AddJingle(on, {.file = "/nowhere/lost.wav", .overlay = true});
  AddJingle(on, {.label = "SOUND", .overlay = true, .lastPlayed = 46000});
  FindJingle(on.station, true, 20000);
  ASSERT_EQ(on.Events("error").size(), 1U) << on.Describe();
  EXPECT_EQ(on.Events("error")[0]["where"], "FindJingle");
  EXPECT_NE(on.Events("error")[0]["text"].find("Code = " + std::to_string(lost)),
            std::string::npos);
  EXPECT_FALSE(Engine().IntroOverlayPending);
  EXPECT_TRUE(on.Events("jingle").empty());
  FindJingle(on.station, true, 20000);
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "SOUND");
}

// --- FindAssociatedJingle ---

using JingleOfTheTitle = JingleSelection;

TEST_F(JingleOfTheTitle, ItsOverlayIsArmedWithoutLookingAtHoursDatesOrLength) {
  AddJingle(on, {.label = "OTHER TITLE", .overlay = true, .titleCode = 8});
  AddJingle(on, {.label = "IN THE LIST", .titleCode = kTitle});
  const int32_t code = AddJingle(on, {.label = "ITS OWN",
                                      .lengthMs = 90000,
                                      .overlay = true,
                                      .hours = std::string(24, '0'),
                                      .titleCode = kTitle,
                                      .from = "0601",
                                      .to = "0602",
                                      .lastPlayed = 46000});
  EXPECT_TRUE(FindAssociatedJingle(on.station, kTitle));
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "ITS OWN");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["routine"], "FindJingleAssocie");
  EXPECT_EQ(Setting("JingleCodeIntro"), "0");  // only FindJingle keeps what it chose
}

TEST_F(JingleOfTheTitle, TheLeastRecentlyPlayedOfSeveralAndAgainWhenItIsTheOnlyOne) {
  AddJingle(on, {.label = "RECENT", .overlay = true, .titleCode = kTitle, .lastPlayed = 46000});
  AddJingle(on, {.label = "RESTED", .overlay = true, .titleCode = kTitle, .lastPlayed = 45000});
  EXPECT_TRUE(FindAssociatedJingle(on.station, kTitle));
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "RESTED");
  EXPECT_TRUE(FindAssociatedJingle(on.station, kTitle));
  EXPECT_EQ(on.station.engine.IntroOverlayLabel, "RECENT");
  EXPECT_TRUE(FindAssociatedJingle(on.station, kTitle));
}

TEST_F(JingleOfTheTitle, NoneOfItsOwnIsNotFound) {
  AddJingle(on, {.overlay = true});
  EXPECT_FALSE(FindAssociatedJingle(on.station, kTitle));
  EXPECT_TRUE(on.Events("jingle").empty());
}

TEST_F(JingleOfTheTitle, ALostFileIsNotFound) {
  AddJingle(on, {.file = "/nowhere/lost.wav", .overlay = true, .titleCode = kTitle});
  EXPECT_FALSE(FindAssociatedJingle(on.station, kTitle));
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "FindJingleAssocie");
}

// --- FindJingleBeforeTitle ---

using JingleAroundTheTitle = JingleSelection;

TEST_F(JingleAroundTheTitle, ThePlainJingleOfTheTitleGoesBeforeIt) {
  PL().Add(RowOf(kTitle));
  AddJingle(on, {.label = "OVERLAY", .overlay = true, .titleCode = kTitle});
  AddJingle(on, {.label = "RECENT", .titleCode = kTitle, .lastPlayed = 46000});
  const int32_t code = AddJingle(on, {.label = "RESTED",
                                      .hours = std::string(24, '0'),
                                      .titleCode = kTitle,
                                      .from = "0601",
                                      .to = "0602",
                                      .lastPlayed = 45000});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "RESTED,ARTIST");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["routine"], "FindJingleAssocieAvantTitre");
  EXPECT_EQ(on.Events("jingle").size(), 1U);
}

TEST_F(JingleAroundTheTitle, OneForTheEndGoesBehindIt) {
  PL().Add(RowOf(kTitle));
  PL().Add(RowOf(8, "NEXT"));
  AddJingle(on, {.label = "END", .titleCode = kTitle, .endOfTitle = 1});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "ARTIST,END,NEXT");
}

TEST_F(JingleAroundTheTitle, OneForTheEndGoesBehindAJingleThatFollowsAlready) {
  PL().Add(RowOf(kTitle));
  PL().Add(RowOf(Element::kJingle, "THERE"));
  PL().Add(RowOf(8, "NEXT"));
  AddJingle(on, {.label = "END", .titleCode = kTitle, .endOfTitle = 1});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "ARTIST,THERE,END,NEXT");
}

TEST_F(JingleAroundTheTitle, ASpotThatFollowsIsNoJingle) {
  PL().Add(RowOf(kTitle));
  PL().Add(RowOf(Element::kSpot, "SPOT"));
  AddJingle(on, {.label = "END", .titleCode = kTitle, .endOfTitle = 1});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "ARTIST,END,SPOT");
}

TEST_F(JingleAroundTheTitle, AfterOneBeforeTheTitleTheEndJingleStandsAtRow2AllTheSame) {
  PL().Add(RowOf(kTitle));
  AddJingle(on, {.label = "BEFORE", .titleCode = kTitle, .lastPlayed = 1});
  AddJingle(on, {.label = "END", .titleCode = kTitle, .endOfTitle = 1, .lastPlayed = 2});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "BEFORE,END,ARTIST");
}

TEST_F(JingleAroundTheTitle, AnEndJinglePlacedFirstStaysBehindTheTitle) {
  PL().Add(RowOf(kTitle));
  AddJingle(on, {.label = "BEFORE", .titleCode = kTitle, .lastPlayed = 2});
  AddJingle(on, {.label = "END", .titleCode = kTitle, .endOfTitle = 1, .lastPlayed = 1});
  AddJingle(on, {.label = "END TOO", .titleCode = kTitle, .endOfTitle = 1, .lastPlayed = 3});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "BEFORE,ARTIST,END");
}

TEST_F(JingleAroundTheTitle, TheArtistsJingleIsLookedForOnlyWithoutOneOfTheTitle) {
  AddJingle(on, {.label = "OF THE TITLE", .titleCode = kTitle, .lastPlayed = 46000});
  AddJingle(on, {.label = "OF THE ARTIST", .artist = "L'ARTISTE", .lastPlayed = 1});
  PL().Add(RowOf(kTitle, "L'ARTISTE"));
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "OF THE TITLE,L'ARTISTE");
  PL().Clear();
  PL().Add(RowOf(8, "L'ARTISTE"));
  FindJingleBeforeTitle(on.station, 8);
  EXPECT_EQ(Texts(PL()), "OF THE ARTIST,L'ARTISTE");
}

TEST_F(JingleAroundTheTitle, AnOverlayOfTheTitleDoesNotHideTheArtistsJingle) {
  AddJingle(on, {.label = "OVERLAY", .overlay = true, .titleCode = kTitle});
  AddJingle(on, {.label = "OF THE ARTIST", .artist = "ARTIST"});
  PL().Add(RowOf(kTitle));
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "OF THE ARTIST,ARTIST");
}

TEST_F(JingleAroundTheTitle, TheArtistIsMatchedAsTheRowNamesIt) {
  AddJingle(on, {.label = "OF THE ARTIST", .artist = "BAND"});
  PL().Add(RowOf(kTitle, "BAND FEAT. GUEST"));
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Texts(PL()), "BAND FEAT. GUEST");
}

TEST_F(JingleAroundTheTitle, ARowWithoutAnArtistLinksNoJingle) {
  AddJingle(on, {.label = "OF NOBODY", .artist = ""});
  AddJingle(on, {.label = "OF BLANKS", .artist = "  "});
  for (const char* artist : {"", "  "}) {
    PL().Clear();
    PL().Add(RowOf(kTitle, artist));
    FindJingleBeforeTitle(on.station, kTitle);
    EXPECT_EQ(Texts(PL()), artist);
  }
  EXPECT_EQ(Engine().LastJingleTimer, 0.0F);
}

TEST_F(JingleAroundTheTitle, ItCountsAsTheJingleOfTheMoment) {
  PL().Add(RowOf(kTitle));
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Engine().LastJingleTimer, 0.0F);  // nothing found, nothing reset
  AddJingle(on, {.titleCode = kTitle});
  FindJingleBeforeTitle(on.station, kTitle);
  EXPECT_EQ(Engine().LastJingleTimer, 43200.0F);
  EXPECT_EQ(Engine().LastIntroJingleTimer, 43200.0F);
  EXPECT_EQ(Engine().LastAssociationTimer, 43200.0);
}

// --- FindGenreJingle ---

using JingleOfTheGenre = JingleSelection;

TEST_F(JingleOfTheGenre, TheLeastRecentlyPlayedOfTheGenreGoesBeforeTheTitle) {
  PL().Add(RowOf(kTitle));
  AddJingle(on, {.label = "PLAIN"});
  AddJingle(on, {.label = "OVERLAY", .overlay = true, .genre = "ROCK'N'ROLL"});
  AddJingle(on, {.label = "RECENT", .genre = "ROCK'N'ROLL", .lastPlayed = 46000});
  const int32_t code =
      AddJingle(on, {.label = "RESTED", .genre = "ROCK'N'ROLL", .lastPlayed = 45000});
  EXPECT_TRUE(FindGenreJingle(on.station, "ROCK'N'ROLL"));
  EXPECT_EQ(Texts(PL()), "RESTED,ARTIST");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["routine"], "FindJingleAssocieGenre");
  EXPECT_EQ(Setting("JingleCode"), "0");
}

TEST_F(JingleOfTheGenre, NeedsHourAndDate) {
  PL().Add(RowOf(kTitle));
  std::string notNow(24, '1');
  notNow[12] = '0';
  AddJingle(on, {.label = "NOT NOW", .hours = notNow, .genre = "POP"});
  AddJingle(on, {.label = "SUMMER", .genre = "POP", .from = "0601", .to = "0831"});
  EXPECT_FALSE(FindGenreJingle(on.station, "POP"));
  AddJingle(on, {.label = "ALLOWED", .genre = "POP", .lastPlayed = 46000});
  EXPECT_TRUE(FindGenreJingle(on.station, "POP"));
  EXPECT_EQ(Texts(PL()), "ALLOWED,ARTIST");
}

TEST_F(JingleOfTheGenre, ARowWithoutAGenreHasNone) {
  PL().Add(RowOf(kTitle));
  AddJingle(on, {});
  EXPECT_FALSE(FindGenreJingle(on.station, ""));
  EXPECT_EQ(Texts(PL()), "ARTIST");
}

TEST_F(JingleOfTheGenre, AFailedQueryNamesTheGenre) {
  on.Sql("DROP TABLE DiscothequeJingle");
  EXPECT_FALSE(FindGenreJingle(on.station, "POP"));
  ASSERT_EQ(on.Events("error").size(), 1U);
  EXPECT_EQ(on.Events("error")[0]["where"], "FindJingleAssocieGenre");
  EXPECT_NE(on.Events("error")[0]["text"].find("Genre = POP"), std::string::npos);
}

// --- FindExtractJingle ---

using JingleOfExtracts = JingleSelection;

TEST_F(JingleOfExtracts, TheAnnouncementGoesIntoTheGivenRow) {
  PL().Add(RowOf(kTitle, "FIRST"));
  PL().Add(RowOf(8, "SECOND"));
  AddJingle(on, {.label = "PLAIN"});
  const int32_t code = AddJingle(on, {.label = "COMING UP",
                                      .lengthMs = 4000,
                                      .extract = 1,
                                      .exitMs = 300,
                                      .from = "0601",
                                      .to = "0602"});
  FindExtractJingle(on.station, 2);
  ASSERT_EQ(Texts(PL()), "FIRST,Jingle annonce extrait,SECOND");
  const OnAirElement& row = PL().Row(2);
  EXPECT_EQ(row.secondLine, "COMING UP");
  EXPECT_EQ(ColumnText(row, Col::kLength), "00:04");
  EXPECT_EQ(row.genre, "Jingle");
  EXPECT_FALSE(row.file.empty());
  EXPECT_EQ(ColumnText(row, Col::kCode), "-1");
  EXPECT_EQ(ColumnText(row, Col::kLengthMs), "4000");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "300");
  EXPECT_EQ(LastPlayed(code), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["routine"], "FindJingleExtrait");
}

TEST_F(JingleOfExtracts, WithoutOneTheRowSaysSo) {
  AddJingle(on, {.hours = std::string(24, '0'), .extract = 1});
  FindExtractJingle(on.station, 1);
  ASSERT_EQ(Texts(PL()), "Jingle annonce extrait");
  const OnAirElement& row = PL().Row(1);
  EXPECT_EQ(row.secondLine, "NO JINGLE");
  EXPECT_EQ(ColumnText(row, Col::kLength), "--:--");
  EXPECT_EQ(row.genre, "Jingle");
  EXPECT_EQ(row.file, "");
  EXPECT_EQ(ColumnText(row, Col::kCode), "-1");
  EXPECT_EQ(ColumnText(row, Col::kLengthMs), "0");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "0");
  EXPECT_TRUE(on.Events("jingle").empty());
}

// --- FindLinkJingle ---

using LinkingElement = JingleSelection;

TEST_F(LinkingElement, TheLeastRecentlyPlayedGoesFirst) {
  PL().Add(RowOf(Element::kSpot, "SPOT"));
  AddLinkingElement(on, "NO LINK", 0, 0);
  AddLinkingElement(on, "RECENT", 1, 46000);
  const int32_t code = AddLinkingElement(on, "RESTED", 1, 45000, 250);
  EXPECT_TRUE(FindLinkJingle(on.station));
  ASSERT_EQ(Texts(PL()), "RESTED,SPOT");
  const OnAirElement& row = PL().Row(1);
  EXPECT_EQ(row.secondLine + row.genre, "");
  EXPECT_EQ(ColumnText(row, Col::kLength), "00:03");
  EXPECT_EQ(ColumnText(row, Col::kCode), "-5");
  EXPECT_EQ(ColumnText(row, Col::kLengthMs), "3000");
  EXPECT_EQ(ColumnText(row, Col::kExitMs), "250");
  EXPECT_EQ(LastPlayed(code, "DiscothequeVirgule"), "46347.5");
  EXPECT_EQ(on.Events("jingle").at(0)["routine"], "FindJingleRacro");
  EXPECT_EQ(on.Events("jingle").at(0).Int("code"), code);
}

TEST_F(LinkingElement, WithoutOneNothingIsDone) {
  AddLinkingElement(on, "NO LINK", 0, 0);
  EXPECT_FALSE(FindLinkJingle(on.station));
  EXPECT_TRUE(PL().Empty());
}

// --- ComposerOfJingle ---

using JingleComposer = JingleSelection;

TEST_F(JingleComposer, IsThatOfTheJingleWithTheFile) {
  AddJingle(on, {.file = "/jingles/other.wav", .composer = "OTHER"});
  AddJingle(on, {.file = "/jingles/l'heure.wav", .composer = "DUPONT"});
  EXPECT_EQ(ComposerOfJingle(on.station, "/jingles/l'heure.wav"), "DUPONT");
  EXPECT_EQ(ComposerOfJingle(on.station, "/jingles/L'HEURE.WAV"), "DUPONT");
  EXPECT_EQ(ComposerOfJingle(on.station, "/jingles/none.wav"), "");
}

TEST_F(JingleComposer, AFailedQueryIsLoggedAndEmpty) {
  on.Sql("DROP TABLE DiscothequeJingle");
  EXPECT_EQ(ComposerOfJingle(on.station, "/jingles/other.wav"), "");
  EXPECT_EQ(on.Events("error").at(0)["where"], "FindJingleCompositeur");
}

// --- guards: which flag stops which routine ---

struct Guard {
  const char* name;
  void (*set)(EngineState&);
  bool plain, overlay, title, around, genre;  // true: the routine still finds its jingle
};

void PrintTo(const Guard& guard, std::ostream* out) {
  *out << guard.name;
}

class JingleGuards : public JingleSelection, public testing::WithParamInterface<Guard> {};

TEST_P(JingleGuards, StopWhatTheyShouldAndNothingElse) {
  AddJingle(on, {.label = "PLAIN"});
  AddJingle(on, {.label = "OVERLAY", .overlay = true});
  AddJingle(on, {.label = "OF TITLE", .overlay = true, .titleCode = kTitle});
  AddJingle(on, {.label = "AROUND", .titleCode = kTitle});
  AddJingle(on, {.label = "GENRE", .genre = "POP"});
  AddJingle(on, {.label = "EXTRACT", .extract = 1});
  AddLinkingElement(on, "LINK", 1, 0);
  GetParam().set(Engine());
  const auto picks = [&](auto search) {
    PL().Clear();
    PL().Add(RowOf(kTitle));
    on.seen.clear();
    search();
    return !on.Events("jingle").empty();
  };
  EXPECT_EQ(picks([&] { FindJingle(on.station, false, 0); }), GetParam().plain);
  EXPECT_EQ(picks([&] { FindJingle(on.station, true, 0); }), GetParam().overlay);
  EXPECT_EQ(picks([&] { FindAssociatedJingle(on.station, kTitle); }), GetParam().title);
  EXPECT_EQ(picks([&] { FindJingleBeforeTitle(on.station, kTitle); }), GetParam().around);
  EXPECT_EQ(picks([&] { FindGenreJingle(on.station, "POP"); }), GetParam().genre);
  EXPECT_TRUE(picks([&] { FindExtractJingle(on.station, 1); }));
  EXPECT_TRUE(picks([&] { FindLinkJingle(on.station); }));
}

INSTANTIATE_TEST_SUITE_P(
    Flags, JingleGuards,
    testing::Values(Guard{"None", [](EngineState&) {}, true, true, true, true, true},
                    Guard{"NoJingleActive", [](EngineState& e) { e.NoJingleActive = true; }, false,
                          false, false, false, false},
                    Guard{"VoiceTrackArmed", [](EngineState& e) { e.VoiceTrackState = -1; }, false,
                          false, false, false, false},
                    Guard{"VoiceTrackOnAir", [](EngineState& e) { e.VoiceTrackState = -2; }, false,
                          false, false, false, false},
                    Guard{"CheckExtrait", [](EngineState& e) { e.CheckExtrait = true; }, false,
                          false, false, false, false},
                    Guard{"FittingActive", [](EngineState& e) { e.FittingActive = true; }, false,
                          false, true, true, false},
                    Guard{"NoMusicOnAir", [](EngineState& e) { e.CodeEnCours = -2; }, true, true,
                          true, false, false}),
    [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace zemo::test
