#include <gtest/gtest.h>

#include "scheduling/CandidatePool.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/PercentageRequest.h"
#include "scheduling/RecentReport.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/OnAirColumns.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

using test::kSaturday;
using test::RequestStation;
using test::TitleCard;
using test::TitleElement;
using test::WatchedStation;

using Codes = std::vector<int32_t>;

// A title of its own artist, played that many days ago, and long before any gap.
TitleCard Title(const std::string& artist, int daysAgo, int lengthSec = 100) {
  TitleCard card;
  card.artist = artist;
  card.title = "TITLE " + artist;
  card.lengthMs = lengthSec * 1000;
  card.lastdiff = daysAgo == 0 ? 0 : DaySerial(2026, 11, 21) - daysAgo;
  return card;
}

TitleCard Of(TitleCard card, const std::string& genre, const std::string& variety) {
  card.genre = genre;
  card.variety = variety;
  return card;
}

TEST(PercentageQuery, HourZeroHasNoPlaceholderAndHour23Has23) {
  const auto query = [](int weekday, int hour) {
    return QueryOf({.genres = {"POP"}, .hour = {{weekday, hour}}});
  };
  EXPECT_EQ(query(6, 0).text, "Genre In(?) And Tranche06 LIKE ?");
  EXPECT_EQ(query(6, 0).values, (Values{std::string("POP"), std::string("1*")}));
  EXPECT_EQ(query(1, 23).text, "Genre In(?) And Tranche01 LIKE ?");
  EXPECT_EQ(query(1, 23).values,
            (Values{std::string("POP"), std::string("???????????????????????1*")}));
}

TEST(PercentageQuery, EachGenreIsAValue) {
  EXPECT_EQ(QueryOf({.genres = {"POP", "L'ETE"}}).text, "Genre In(?, ?)");
  EXPECT_EQ(QueryOf({.genres = {"POP", "L'ETE"}}).values,
            (Values{std::string("POP"), std::string("L'ETE")}));
}

TEST(PercentageRequest, AnEmptyModelsTableLeavesTheMessageAndTheList) {
  const char* texts[] = {"IL N'Y A PAS DE MODELS DEFINIS", "NO MODELS DEFINED",
                         "NAO HA MODELOS DEFINIDOS", "NAO HA MODELOS DEFINIDOS"};
  RequestStation s;
  s.Add({});
  for (int langue = 0; langue < 4; ++langue) {
    s.SetCnf("Langue", langue);
    s.Request(30);
    EXPECT_EQ(s.station.notices.progress.text, texts[langue]);
    EXPECT_TRUE(s.station.notices.progress.visible);
  }
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_FALSE(s.station.notices.hourglass);
  EXPECT_FALSE(s.Requests().PLHidden);
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
  EXPECT_EQ(s.LastError(), "");
}

TEST(PercentageRequest, AModelWithoutAnyGenreNameSpeaksEnglishInFrenchToo) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "", 50);
  s.Add({});
  s.Request(30);
  EXPECT_EQ(s.station.notices.progress.text, "NO MODELS DEFINED");
  EXPECT_TRUE(s.station.PL.Empty());
}

TEST(PercentageRequest, TheProgressLineSpeaksTheLanguageAndRestsAfterwards) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.Add({});
  s.SetCnf("TempRequette", 30);
  const char* texts[] = {"RECHERCHE DE 30 MINUTES DE MUSIQUE", "SEARCH OF 30 MINUTES OF MUSIC",
                         "PROCURA DE 30 MN DE MUSICA", "ZEMO RADIO"};
  for (int langue = 0; langue < 4; ++langue) {
    s.SetCnf("Langue", langue);
    std::string shown;
    bool held = false;
    s.At(s.loop.MonotonicMs(), [&] {
      shown = s.station.notices.progress.text;
      held = !s.station.engine.MainTimer->Enabled();
    });
    s.Request(15);
    EXPECT_EQ(shown, texts[langue]);
    EXPECT_TRUE(held);
    EXPECT_EQ(s.station.notices.progress.text, "ZEMO RADIO");
    EXPECT_FALSE(s.station.notices.progress.visible);
  }
}

// A genre at 20 % with a variety at 60 % of 30 minutes gets 20 % of 1080 s.
TEST(PercentageRequest, APairIsClosedByTheTitleThatTakesItPastItsShare) {
  RequestStation s;
  s.Variety("NATIONAL", 60);
  s.Variety("INTERNATIONAL", 40);
  s.Model(kSaturday, "POP", 20);
  Codes national, international;
  for (int i = 1; i <= 5; ++i) {
    national.push_back(s.Add(Title("N" + std::to_string(i), 20 - i)));
    international.push_back(
        s.Add(Of(Title("I" + std::to_string(i), 10 - i), "POP", "INTERNATIONAL")));
  }
  s.Request(30);
  // 100 and 200 of 1080 s are below 20 %, 300 are 27.8 %; 100 of 720 s are 13.9 %, 200 are 27.8 %.
  EXPECT_EQ(s.Listed(),
            (Codes{national[0], national[1], national[2], international[0], international[1]}));
  const auto requests = s.Events("request");
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0]["kind"], "percentage");
  EXPECT_EQ(requests[0]["minutes"], "30");
  EXPECT_EQ(requests[0]["rows"], "5");
  EXPECT_EQ(requests[0]["refused"], "0");
}

TEST(PercentageRequest, AShareReachedExactlyIsFull) {
  RequestStation s;
  s.Variety("NATIONAL", 60);
  s.Model(kSaturday, "POP", 20);
  for (int i = 1; i <= 3; ++i) s.Add(Title("N" + std::to_string(i), 10 - i, 108));
  s.Request(30);
  EXPECT_EQ(s.station.PL.Count(), 2);  // 216 s are 20 % of 1080 s
}

TEST(PercentageRequest, OnlyWholeSecondsCount) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 10);
  for (int i = 1; i <= 9; ++i) {
    TitleCard card = Title("N" + std::to_string(i), 10 - i);
    card.lengthMs = 1999;
    s.Add(card);
  }
  s.Request(1);
  EXPECT_EQ(s.station.PL.Count(), 6);  // six times 1 s are 10 % of 60 s
}

TEST(PercentageRequest, ARequestOfNoMinutesIsOneOf60) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 10);
  for (int i = 1; i <= 5; ++i) s.Add(Title("N" + std::to_string(i), 10 - i, 120));
  s.Request(0);
  EXPECT_EQ(s.station.PL.Count(), 3);  // 10 % of 3600 s
  EXPECT_EQ(s.Requests().MinutesRequete, 60);
}

TEST(PercentageRequest, ARowOfTheListHoldsTheCard) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  TitleCard card;
  card.artist = "  L'Artiste ";
  card.title = "Été";
  card.lengthMs = 185400;
  card.lastdiff = DaySerial(2026, 11, 1) + 0.5;
  const int32_t code = s.Add(card);
  s.Request(30);
  ASSERT_EQ(s.station.PL.Count(), 1);
  EXPECT_EQ(
      ColumnsOf(s.station.PL.Row(1)),
      (Cells{"L'Artiste", "Été", "03:05", "POP", "NATIONAL", "/music/Été.mp3", std::to_string(code),
             "10 h 55 ' 00", "185400", "1500", "12", "2026/11/01  12:00:00"}));
}

TEST(PercentageRequest, ACardWithoutArtistIsListedByItsNumberAndIsNoDouble) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  const int32_t first = s.Add(Title("", 3)), second = s.Add(Title("  ", 2));
  s.Request(30);
  EXPECT_EQ(s.Listed(), (Codes{first, second}));
  EXPECT_EQ(s.station.PL.Row(1).title, "Code " + std::to_string(first));
  EXPECT_EQ(s.station.PL.Row(2).title, "Code " + std::to_string(second));
}

TEST(PercentageRequest, TheNeverPlayedComeFirstByArtistThenTheStalest) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  const int32_t recent = s.Add(Title("A", 1)), stale = s.Add(Title("Z", 9));
  const int32_t neverB = s.Add(Title("bravo", 0)), neverA = s.Add(Title("ALPHA", 0));
  const int32_t neverC = s.Add(Title("CHARLIE", 0));
  s.Request(30);
  EXPECT_EQ(s.Listed(), (Codes{neverA, neverB, neverC, stale, recent}));
}

TEST(PercentageRequest, OfTwoTitlesOfAnArtistTheOnePlayedLongestAgoStays) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.Add(Title("Same", 2));
  const int32_t oldest = s.Add(Title("SAME", 5));
  s.Add(Title("same", 3));
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{oldest});
}

TEST(PercentageRequest, AGenreWithoutPercentageReachesThePoolAndIsNotTaken) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 0);
  s.Model(kSaturday, "ROCK", 50);
  s.Add(Title("A", 9));
  const int32_t rock = s.Add(Of(Title("B", 8), "ROCK", "NATIONAL"));
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{rock});
  EXPECT_EQ(s.Requests().ListView1.size(), 2U);
}

TEST(PercentageRequest, AnHourWithoutPercentagesTakesNothing) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 50, 11);
  s.Add(Title("A", 9));
  s.Request(30);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.LastError(), "");
}

// The second title of the pool would be a fault: its variety has no share of the time.
TEST(PercentageRequest, AnHourWithoutPercentagesEndsTheChoosingAtTheFirstTitle) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Variety("NOTHING", 0);
  s.Model(kSaturday, "POP", 50, 11);
  s.Add(Title("A", 9));
  s.Add(Of(Title("B", 8), "POP", "NOTHING"));
  s.Request(30);
  EXPECT_EQ(s.Requests().ListView1.size(), 2U);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.LastError(), "");
}

TEST(PercentageRequest, TheFirstAndTheLastHourOfTheDayAreReadFromTheirEndsOfTheMask) {
  const std::string firstHour = "1" + std::string(23, '0'), lastHour = std::string(23, '0') + "1";
  const auto listed = [&](const std::string& begin) {
    RequestStation s(begin);
    s.Variety("NATIONAL", 100);
    s.Model(kSaturday, "POP", 100);
    for (const std::string& hours : {firstHour, lastHour}) {
      TitleCard card = Title(hours == firstHour ? "EARLY" : "LATE", 9);
      card.hours = hours;
      s.Add(card);
    }
    s.Request(30);
    return s.station.PL.Count() == 1 ? s.station.PL.Row(1).title : "";
  };
  EXPECT_EQ(listed("2026-11-21 00:00:00"), "EARLY");
  EXPECT_EQ(listed("2026-11-21 23:59:59"), "LATE");
}

TEST(PercentageRequest, AtFiveToElevenTheColumnOfTenHoursHoldsForAllTitles) {
  RequestStation s("2026-11-21 10:55:00");
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100, 10);
  s.Model(kSaturday, "ROCK", 100, 11);
  Codes pop;
  for (int i = 1; i <= 4; ++i) pop.push_back(s.Add(Title("P" + std::to_string(i), 20 - i, 300)));
  s.Add(Of(Title("ROCKER", 30), "ROCK", "NATIONAL"));
  s.Request(30);
  EXPECT_EQ(s.Listed(), pop);
}

TEST(PercentageRequest, TheHourOfTheWeekdayMustBeAllowedOnTheCard) {
  RequestStation s("2026-11-21 00:10:00");
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  TitleCard midnight = Title("A", 9), never = Title("B", 8);
  midnight.hours = "1" + std::string(23, '0');
  never.hours = "0" + std::string(23, '1');
  const int32_t code = s.Add(midnight);
  s.Add(never);
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{code});
}

TEST(PercentageRequest, TheModelOfAnotherDayDoesNotCount) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(5, "POP", 100);
  s.Add(Title("A", 9));
  s.Request(30);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.station.notices.progress.text, "NO MODELS DEFINED");
}

TEST(PercentageRequest, ATitleOfAnUnknownVarietyNeverGetsIn) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.Add(Of(Title("A", 9), "POP", "national"));
  s.Add(Of(Title("B", 8), "POP", "OTHER"));
  s.Request(30);
  EXPECT_TRUE(s.station.PL.Empty());
}

TEST(PercentageRequest, AGenreOfOtherCaseIsFoundByTheQueryAndNotByTheModel) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.Add(Of(Title("A", 9), "Pop", "NATIONAL"));
  s.Request(30);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.Requests().ListView1.size(), 1U);
}

TEST(PercentageRequest, AVarietyWithoutShareEndsTheRequestAtItsTitleWithTheRowsSoFar) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Variety("NONE", 0);
  s.Model(kSaturday, "POP", 100);
  const int32_t first = s.Add(Title("A", 9));
  s.Add(Of(Title("B", 8), "POP", "NONE"));
  s.Add(Title("C", 7));
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{first});
  EXPECT_EQ(s.LastError().substr(0, 16), "RequetePlaylist:");
  EXPECT_EQ(s.Events("error").back()["number"], "11");
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
  EXPECT_TRUE(s.station.notices.hourglass);
  EXPECT_TRUE(s.Requests().PLHidden);
  EXPECT_EQ(s.station.notices.progress.text, "ZEMO RADIO");
  EXPECT_FALSE(s.station.notices.progress.visible);
}

TEST(PercentageRequest, TwentyGenresAreAllThatTheBudgetsHold) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  for (int i = 1; i <= 20; ++i) s.Model(kSaturday, "G" + std::to_string(i), 5);
  s.Add(Of(Title("A", 9), "G20", "NATIONAL"));
  s.Request(30);
  EXPECT_EQ(s.station.PL.Count(), 1);
  s.Model(kSaturday, "G21", 5);
  s.Add(Of(Title("B", 10), "G21", "NATIONAL"));
  s.station.PL.Clear();
  s.Request(30);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.Events("error").back()["number"], "9");
}

TEST(PercentageRequest, ABroadcastThatIsNoDateEndsTheRequestUnderItsName) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  TitleCard broken = Title("A", 9);
  broken.diffusions = {"no date at all"};
  s.Add(broken);
  s.Request(30);
  EXPECT_EQ(s.LastError(), "RequetePlaylist: \"no date at all\" is no broadcast date");
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
}

TEST(PercentageRequest, RefusedTitlesAreListedWithTheirReasons) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  TitleCard played = Title("A", 9);
  played.diffusions = {"21/11/2026 à 10:00"};
  s.Add(played);
  s.Request(30);
  EXPECT_EQ(s.Requests().ListAutorisation.All(),
            std::vector<std::string>{"21/11/2026 10:55:00 POP\tA TITLE A"
                                     " >> Ecart nb passage jour atteint 1 > 1"});
  EXPECT_EQ(s.Events("request").back()["refused"], "1");
  s.Execute("DELETE * FROM Discotheque");
  s.Request(30);
  EXPECT_TRUE(s.Requests().ListAutorisation.All().empty());
}

TEST(PercentageRequest, TitlesThatWaitInTheListAreNotTakenAgain) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  const int32_t waiting = s.Add(Title("B", 9)), free = s.Add(Title("C", 8));
  s.station.PL.Add(TitleElement(waiting, "SOMEBODY ELSE"));
  s.Request(30);
  EXPECT_EQ(s.Listed(), (Codes{waiting, free}));
}

TEST(PercentageRequest, TitlesOfStoredListsLaterTodayCountAsInUse) {
  RequestStation s("2026-11-21 10:55:00");
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  Codes codes;
  for (int i = 0; i < 5; ++i) codes.push_back(s.Add(Title("A" + std::to_string(i), 20 - i)));
  const char* lists[][2] = {{"21/11/2026", "10:56"},
                            {"21/11/2026", "10:55"},
                            {"JOURNALIER", "23:00"},
                            {"22/11/2026", "12:00"}};
  for (int i = 0; i < 4; ++i) {
    s.Execute("INSERT INTO Playlist (LADATE, LHEURE) VALUES ('" + std::string(lists[i][0]) +
              "', '" + lists[i][1] + "')");
    s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (" + std::to_string(i + 1) + ", " +
              std::to_string(codes[static_cast<size_t>(i)]) + ")");
  }
  s.Request(30);
  EXPECT_EQ(s.Listed(), (Codes{codes[1], codes[3], codes[4]}));
}

TEST(PercentageRequest, WithTheStoredListPanelOpenAllStoredListsCount) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  const int32_t stored = s.Add(Title("A", 9)), free = s.Add(Title("B", 8));
  s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (77, " + std::to_string(stored) + ")");
  s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (77, -1)");
  s.station.storedList.open = true;
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{free});
}

TEST(PercentageRequest, ThePerTitleGapAsksTheReportAndTheOthersTheRecentArtists) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  s.SetCnf("EcartArtiste", 10);
  for (const char* artist : {"AAA", "NEAR", "FAR", "RECENT"}) s.Report(artist, 46000);
  TitleCard near = Title("NEAR", 9), far = Title("FAR", 8);
  near.artistGap = 3;  // two rows lie behind NEAR
  far.artistGap = 1;   // one behind FAR
  s.Add(near);
  const int32_t taken = s.Add(far);
  s.Add(Title("RECENT", 7));
  const int32_t first = s.Add(Title("AAA", 6));  // the first of the alphabet is let through
  s.Request(30);
  EXPECT_EQ(s.Listed(), (Codes{taken, first}));
}

// The report holds what airs without an artist; its rows are as near as any gap.
TEST(PercentageRequest, WithoutTheColumnOfTheArtistsNoArtistTestRefusesATitle) {
  for (const bool missing : {false, true}) {
    RequestStation s;
    s.Variety("NATIONAL", 100);
    s.Model(kSaturday, "POP", 100);
    s.SetCnf("EcartArtiste", 10);
    for (int i = 0; i < 3; ++i) s.Report("", 46000);
    TitleCard recent = Title("", 9), byReport = Title("", 8);
    byReport.artistGap = 3;
    const Codes both = {s.Add(recent), s.Add(byReport)};
    if (missing) s.RenameColumn("Discotheque", "AUTEUR");
    s.Request(30);
    EXPECT_EQ(s.Listed(), missing ? both : Codes{});
  }
}

TEST(PercentageRequest, WithoutTheColumnOfTheFilesEachKindListsNothingAndRests) {
  for (const int skeleton : {0, -1}) {
    RequestStation s;
    s.Variety("NATIONAL", 100);
    s.Model(kSaturday, "POP", 100);
    s.Position(kSaturday, 10, "POP");
    s.SetCnf("Squelette", skeleton);
    s.Add(Title("A", 9));
    s.RenameColumn("Discotheque", "FILENAME");
    s.Request(30);
    EXPECT_EQ(s.Listed(), Codes{});
    EXPECT_EQ(s.Requests().restUntilMs, s.loop.MonotonicMs() + 10000);
    EXPECT_EQ(s.LastError(),
              "OpenAllTables: Discotheque has no column FILENAME: read as by default");
  }
}

TEST(PercentageRequest, LectureBaseStopsOneTitleAboveItsLimit) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  Transaction all(s.station.base.Db());
  for (int i = 0; i < 460; ++i) s.Add(Title("ARTIST " + std::to_string(i), 1 + i % 300));
  all.Commit();
  s.station.lists.LectureBase = 15;
  s.Request(30);
  EXPECT_EQ(s.Requests().ListView1.size(), 451U);
  s.station.PL.Clear();
  s.station.lists.LectureBase = 0;
  s.Request(30);
  EXPECT_EQ(s.Requests().ListView1.size(), 460U);
}

TEST(PercentageRequest, WithSqueletteOnTheSkeletonAnswers) {
  RequestStation s;
  s.SetCnf("Squelette", -1);
  s.Request(30);
  EXPECT_EQ(s.Events("request").back()["kind"], "skeleton");
}

TEST(PercentageRequest, TheAutomaticRequestAsksForTempRequetteMinutes) {
  RequestStation s;
  s.SetCnf("TempRequette", 7);
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  AutomaticRequest(s.station);
  EXPECT_EQ(s.Events("request").back()["minutes"], "7");
}

TEST(PercentageRequest, TheChoosingEndsAfterTwoSecondsWithWhatItHas) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  for (int i = 1; i <= 4; ++i) s.Add(Title("A" + std::to_string(i), 20 - i));
  WatchedStation w(s);
  w.loop.onYield = [&] {
    const int64_t until = s.loop.MonotonicMs() + 1000;
    while (s.loop.MonotonicMs() < until) s.loop.WaitYield();
  };
  int16_t minutes = 30;
  RequestMusic(w.station, minutes);
  // A second goes by before each title: 2.0 s are not more than 2.0 s, 3.0 s are.
  EXPECT_EQ(w.station.PL.Count(), 3);
}

// He is at Monday, and Saturday's request comes.
TEST(PercentageRequest, WhatAnEditorIsAtWorkOnHasNoPartInARequestAndStaysAsItIs) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(1, "ROCK", 20);
  s.Model(kSaturday, "POP", 100);
  const int32_t title = s.Add(Title("A", 3));
  WatchedStation w(s);
  ModelEditor& editor = w.station.modelEditor;
  SelectWeekday(w.station, 1);
  editor.Models.SetCell(1, 1, "55");
  w.loop.onYield = [&] {
    editor.Models.SetCell(1, 0, "JAZZ");
    editor.GVariete.SetCell(1, 1, "NO VARIETY");
  };
  int16_t minutes = 30;
  RequestMusic(w.station, minutes);
  EXPECT_EQ(w.station.PL.Codes(), Codes{title});
  EXPECT_EQ(editor.JourSemaine, 1);
  EXPECT_EQ(editor.Models.Cell(1, 0), "JAZZ");
  EXPECT_EQ(editor.Models.Cell(1, 1), "55");
  EXPECT_EQ(editor.GVariete.Cell(1, 1), "NO VARIETY");
}

TEST(PercentageRequest, ARequestInsideARequestAndAClearedListDoNoHarm) {
  RequestStation s;
  s.Variety("NATIONAL", 100);
  s.Model(kSaturday, "POP", 100);
  for (int i = 1; i <= 9; ++i) s.Add(Title("A" + std::to_string(i), 20 - i));
  WatchedStation w(s);
  int depth = 0;
  w.loop.onYield = [&] {
    if (depth > 0) return;
    ++depth;
    w.station.PL.Clear();
    int16_t inner = 5;
    RequestMusic(w.station, inner);
    --depth;
  };
  int16_t minutes = 30;
  RequestMusic(w.station, minutes);
  EXPECT_FALSE(w.station.PL.Empty());
  EXPECT_EQ(s.LastError(), "");
}

// --- MixGenres ---

std::string Genres(const RequestStation& s) {
  std::string genres;
  for (const OnAirRow& row : s.station.PL) genres += row.genre;
  return genres;
}

void List(RequestStation& s, const std::string& genres) {
  s.station.PL.Clear();
  int32_t code = 0;
  for (const char genre : genres) {
    ++code;
    s.station.PL.Add(TitleElement(code, "ARTIST " + std::to_string(code), std::string(1, genre)));
  }
}

TEST(MixGenres, PartsEqualNeighboursWithTheNextOtherGenre) {
  RequestStation s;
  List(s, "AAABBC");
  int16_t first = 1;
  MixGenres(s.station, first);
  EXPECT_EQ(first, 2);
  EXPECT_EQ(Genres(s), "ABABAC");
  // Row 2 takes row 4, and what came to row 4 takes row 5; texts and codes go with their genre.
  EXPECT_EQ(s.Listed(), (Codes{1, 4, 3, 5, 2, 6}));
  EXPECT_EQ(s.station.PL.Row(2).title, "ARTIST 4");
}

TEST(MixGenres, AListOfOneGenreStaysAsItIs) {
  RequestStation s;
  List(s, "AAAA");
  int16_t first = 1;
  MixGenres(s.station, first);
  EXPECT_EQ(s.Listed(), (Codes{1, 2, 3, 4}));
}

TEST(MixGenres, CaseMakesAnotherGenre) {
  RequestStation s;
  List(s, "AaAA");
  int16_t first = 1;
  MixGenres(s.station, first);
  EXPECT_EQ(s.Listed(), (Codes{1, 2, 3, 4}));
}

TEST(MixGenres, RowsBeforeTheFirstNewOneStayAndTheFirstIsComparedWithThem) {
  RequestStation s;
  List(s, "AAAB");
  int16_t first = 3;
  MixGenres(s.station, first);
  EXPECT_EQ(s.Listed(), (Codes{1, 2, 4, 3}));
}

TEST(MixGenres, ARowBehindTheEndDoesNothing) {
  RequestStation s;
  List(s, "AA");
  int16_t first = 3;
  MixGenres(s.station, first);
  EXPECT_EQ(s.Listed(), (Codes{1, 2}));
  EXPECT_EQ(s.LastError(), "");
}

// Half an hour: a tenth of it for NATIONAL is one title of three minutes, a fifth is two.
TEST(PercentageRequestShares, AreReadAtEachRequest) {
  RequestStation s;
  s.Variety("NATIONAL", 10);
  s.Model(6, "POP", 100);
  for (const char* artist : {"A", "B", "C", "D"}) s.Add({.artist = artist});
  s.Request(30);
  EXPECT_EQ(s.Listed().size(), 1U);
  s.station.PL.Clear();
  s.Sql("UPDATE Variete SET POURCENT = 20");  // by another machine
  s.Request(30);
  EXPECT_EQ(s.Listed().size(), 2U);
  s.station.PL.Clear();
  s.Sql("UPDATE Variete SET VARIETE = 'OTHER'");
  s.Request(30);
  EXPECT_EQ(s.Listed().size(), 0U);
}

}  // namespace
}  // namespace zemo
