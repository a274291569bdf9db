// Each test that stands between a title and the air: its words and the moment it lets go, worked
// out by hand; then whether a real request is of the same opinion.
#include <gtest/gtest.h>

#include "scheduling/TitleEligibility.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

using test::kSaturday;
using test::ParseMoment;
using test::RequestStation;
using test::TitleCard;
using test::TitleElement;

constexpr int kSunday = 7;

std::string MomentOf(const std::optional<LocalDateTime>& at) {
  return at ? DateText(*at) + " " + TimeText(*at) : "never";
}

// A mask of the day with these hours.
std::string Hours(const std::vector<int>& hours) {
  std::string mask(24, '0');
  for (const int hour : hours) mask[static_cast<size_t>(hour)] = '1';
  return mask;
}

class TitleEligibility : public testing::Test {
 protected:
  TitleEligibility() {
    s.Variety("NATIONAL", 100);
    for (int day = 1; day <= 7; ++day) s.Model(day, "POP", 100);
  }
  int32_t Add(const TitleCard& title) {
    const int32_t code = s.Add(title);
    s.Execute("UPDATE Discotheque SET FILENAME = '" + s.MakeSound("title.wav", 1000) + "'");
    return code;
  }
  // The answer about a card with all these marks, at 11:30 of 21 November 2026.
  TitleAnswer Ask(int32_t code, const std::string& at = "2026-11-21 11:30:00") {
    const auto answer = WhyTitle(s.station, code, ParseMoment(at));
    if (!answer) throw std::runtime_error("no such card");
    return *answer;
  }
  TitleAnswer Ask(const TitleCard& title, const std::string& at = "2026-11-21 11:30:00") {
    return Ask(Add(title), at);
  }
  // The one reason of an answer as "test: words; when".
  static std::string Only(const TitleAnswer& answer) {
    return answer.reasons.size() == 1 ? All(answer) : "not one reason:\n" + All(answer);
  }
  static std::string All(const TitleAnswer& answer) {
    std::string text;
    for (const TitleReason& reason : answer.reasons)
      text += (text.empty() ? "" : "\n") + std::string(reason.test) + ": " + reason.words + "; " +
              (reason.after.empty() ? MomentOf(reason.from) : reason.after);
    return text;
  }
  RequestStation s{"2026-11-21 11:30:00"};
};

TEST_F(TitleEligibility, ATitleThatNothingRefusesMayPlayAtOnce) {
  const TitleAnswer answer = Ask(TitleCard{.artist = " ABBA ", .title = "SOS"});
  EXPECT_TRUE(answer.MayPlay()) << All(answer);
  EXPECT_EQ(MomentOf(answer.from), "21/11/2026 11:30:00");
  EXPECT_EQ(answer.artist, "ABBA");
  EXPECT_EQ(answer.title, "SOS");
}

TEST_F(TitleEligibility, ThereIsNoAnswerAboutACardThatIsNotThere) {
  EXPECT_EQ(WhyTitle(s.station, 4711, ParseMoment("2026-11-21 11:30:00")), std::nullopt);
}

TEST_F(TitleEligibility, AGapInMinutesEndsWhenTheMinutesAreFull) {
  const TitleAnswer answer =
      Ask({.passes = 8, .minutes = 120, .diffusions = {"21/11/2026 à 10:00"}});
  EXPECT_EQ(Only(answer),
            "minutes: Ecart minutes pas assez important 120 > 90; 21/11/2026 12:00:00");
  EXPECT_EQ(MomentOf(answer.from), "21/11/2026 12:00:00");
}

// Played at 23:00, asked at 01:00 of the day after: 2760 minutes, which shrink to 1440 at 23:00.
// Past midnight two days and 23 hours count: 2880 + 1380.
TEST_F(TitleEligibility, AGapOverMidnightEndsWhereTheRuleSaysAndNotWhereTheClockDoes) {
  const TitleAnswer answer = Ask(
      {.passes = 8, .minutes = 2800, .diffusions = {"20/11/2026 à 23:00"}}, "2026-11-21 01:00:00");
  EXPECT_EQ(Only(answer),
            "minutes: Ecart minutes pas assez important 2800 > 2760; 22/11/2026 00:00:00");
}

TEST_F(TitleEligibility, AGapInDaysEndsAtMidnight) {
  EXPECT_EQ(Only(Ask({.passes = 8, .days = 2, .diffusions = {"20/11/2026 à 23:00"}})),
            "days: Ecart jours pas assez important 2 > 1; 22/11/2026 00:00:00");
}

TEST_F(TitleEligibility, TheLongestGapInDaysIsStillFound) {
  // 32,767 days after 21 November 2026 are 8 August 2116.
  EXPECT_EQ(Only(Ask({.passes = 8, .days = 32767, .diffusions = {"21/11/2026 à 08:00"}})),
            "days: Ecart jours pas assez important 32767 > 0; 08/08/2116 00:00:00");
}

TEST_F(TitleEligibility, PassesOfTheDayBeginAnewAtMidnight) {
  EXPECT_EQ(Only(Ask({.passes = 2, .diffusions = {"21/11/2026 à 08:00", "21/11/2026 à 03:00"}})),
            "passes: Ecart nb passage jour atteint 2 > 2; 22/11/2026 00:00:00");
}

TEST_F(TitleEligibility, ATitleOutOfRotationNeverPlaysWhetherItWasPlayedOrNot) {
  const TitleAnswer answer = Ask({.passes = 0});
  EXPECT_EQ(Only(answer), "rotation: Rotation = 0; never");
  EXPECT_TRUE(answer.reasons.at(0).Never());
  EXPECT_EQ(MomentOf(answer.from), "never");
  EXPECT_EQ(Only(Ask({.passes = 0, .diffusions = {"01/11/2026 à 08:00"}})),
            "rotation: Rotation = 0; never");
}

TEST_F(TitleEligibility, AWindowOpensOnItsFirstDay) {
  EXPECT_EQ(Only(Ask({.firstDay = "0301", .lastDay = "0331"})),
            "window: outside of its days, 0301 to 0331 (MMDD); 01/03/2027 00:00:00");
}

TEST_F(TitleEligibility, AWindowOverNewYearNeverOpens) {
  EXPECT_EQ(Only(Ask({.firstDay = "1201", .lastDay = "0131"})),
            "window: outside of its days, 1201 to 0131 (MMDD): a window over New Year never opens; "
            "never");
}

// The next 29 February on a Sunday after 2026 is that of 2032.
TEST_F(TitleEligibility, ALeapDayOnTheOneWeekdayAllowedIsFoundYearsAhead) {
  const int32_t code = Add({.firstDay = "0229", .lastDay = "0229"});
  s.Execute(
      "UPDATE Discotheque SET TRANCHE01 = '0', TRANCHE02 = '0', TRANCHE03 = '0', TRANCHE04 = "
      "'0', TRANCHE05 = '0', TRANCHE06 = '0'");
  EXPECT_EQ(MomentOf(Ask(code).from), "29/02/2032 00:00:00");
}

TEST_F(TitleEligibility, AnHourThatIsNotAllowedIsToldWithTheNextOneThatIs) {
  EXPECT_EQ(Only(Ask({.hours = Hours({9, 14})})),
            "hours: not allowed at 11h on a Saturday (TRANCHE06); 21/11/2026 14:00:00");
  EXPECT_EQ(Only(Ask({.hours = Hours({9})})),
            "hours: not allowed at 11h on a Saturday (TRANCHE06); 22/11/2026 09:00:00");
}

TEST_F(TitleEligibility, ATitleWithoutAnyHourNeverPlays) {
  EXPECT_EQ(Only(Ask({.hours = Hours({})})),
            "hours: not allowed at 11h on a Saturday (TRANCHE06); never");
}

// Two hours, so only the last broadcast counts: it was at 11 h, and another one will have to be
// first.
TEST_F(TitleEligibility, TheShiftLetsGoAtAnotherHour) {
  s.SetCnf("DecalDiff", 3);
  const TitleAnswer answer = Ask({.hours = Hours({11, 15}), .diffusions = {"20/11/2026 à 11:40"}});
  EXPECT_EQ(Only(answer),
            "shift: pas autorisé dans cette tranche a cause du décalage; 21/11/2026 12:00:00");
  EXPECT_EQ(MomentOf(answer.from), "21/11/2026 15:00:00");
}

TEST_F(TitleEligibility, SeveralReasonsAreAllToldAndTheMomentIsThatOfAllOfThem) {
  const TitleAnswer answer = Ask(
      {.passes = 1, .minutes = 120, .hours = Hours({7, 20}), .diffusions = {"21/11/2026 à 10:00"}});
  EXPECT_EQ(All(answer),
            "minutes: Ecart minutes pas assez important 120 > 90; 21/11/2026 12:00:00\n"
            "passes: Ecart nb passage jour atteint 1 > 1; 22/11/2026 00:00:00\n"
            "hours: not allowed at 11h on a Saturday (TRANCHE06); 21/11/2026 20:00:00");
  EXPECT_EQ(MomentOf(answer.from), "22/11/2026 07:00:00");
}

TEST_F(TitleEligibility, ABroadcastThatIsNoDateIsTheOneReasonInPlaceOfTheGaps) {
  const TitleAnswer answer = Ask({.minutes = 120, .days = 3, .diffusions = {"yesterday"}});
  EXPECT_EQ(
      Only(answer),
      "broadcast: \"yesterday\" is no broadcast date: a request that comes to this title ends "
      "there; never");
}

TEST_F(TitleEligibility, AGenreOutsideTheWeeksModelsNeverPlays) {
  EXPECT_EQ(Only(Ask({.genre = "ROCK"})),
            "model: genre ROCK is not in the model of Saturday; never");
  EXPECT_EQ(Only(Ask({.genre = "Pop"})),
            "model: genre Pop is not in the model of Saturday, which writes it POP; never");
}

TEST_F(TitleEligibility, AGenreWithoutAShareWaitsForTheHourThatHasOne) {
  s.Model(kSaturday, "JAZZ", 30, 22);
  s.Model(kSunday, "SWING", 30, 4);
  EXPECT_EQ(
      Only(Ask({.genre = "JAZZ"})),
      "model: genre JAZZ has 0 per cent at 11h in the model of Saturday; 21/11/2026 22:00:00");
  EXPECT_EQ(Only(Ask({.genre = "SWING"})),
            "model: genre SWING is not in the model of Saturday; 22/11/2026 04:00:00");
}

TEST_F(TitleEligibility, AGenreBelowThe20thRowOfItsModelEndsTheRequest) {
  for (int row = 2; row <= 20; ++row) s.Model(kSaturday, "G" + std::to_string(row), 1);
  s.Model(kSaturday, "LATE", 10);
  EXPECT_TRUE(Ask(TitleCard{.artist = "A", .genre = "G20"}).MayPlay());
  EXPECT_EQ(
      Only(Ask({.artist = "B", .genre = "LATE"})),
      "model: genre LATE stands in the model of Saturday below row 20: a request that comes to "
      "this title ends there; never");
}

TEST_F(TitleEligibility, AVarietyThatIsUnknownOrHasNothingNeverPlays) {
  s.Variety("INTERNATIONAL", 0);
  EXPECT_EQ(Only(Ask({.variety = "LOCAL"})),
            "variety: variety LOCAL is none of the table Variete; never");
  EXPECT_EQ(
      Only(Ask({.variety = "INTERNATIONAL"})),
      "variety: variety INTERNATIONAL has 0 per cent: a request that comes to this title ends "
      "there; never");
}

TEST_F(TitleEligibility, AlongASkeletonThePositionsOfTheHourCountAndTheVarietyDoesNot) {
  s.SetCnf("Squelette", -1);
  s.Position(kSaturday, 11, "JAZZ");
  s.Position(kSaturday, 18, "POP");
  EXPECT_TRUE(Ask(TitleCard{.genre = "JAZZ", .variety = "LOCAL"}).MayPlay());
  EXPECT_EQ(
      Only(Ask({.genre = "POP"})),
      "model: genre POP has no position at 11h in the skeleton of Saturday; 21/11/2026 18:00:00");
}

TEST_F(TitleEligibility, ATitleOfAStoredListStillToComeIsFreeAtTheListsMinute) {
  const int32_t code = Add({});
  s.Execute(
      "INSERT INTO Playlist (LIBELLE, LADATE, LHEURE) VALUES ('NOON', '21/11/2026', '12:15')");
  s.Execute(
      "INSERT INTO Playlist (LIBELLE, LADATE, LHEURE) VALUES ('DAWN', 'JOURNALIER', '06:00')");
  for (int list = 1; list <= 2; ++list)
    s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (" + std::to_string(list) + ", " +
              std::to_string(code) + ")");
  EXPECT_EQ(Only(Ask(code)),
            "waiting: waits in the stored list NOON (21/11/2026 12:15); 21/11/2026 12:15:00");
  EXPECT_EQ(Only(Ask(code, "2026-11-22 05:59:30")),
            "waiting: waits in the stored list DAWN (JOURNALIER 06:00); 22/11/2026 06:00:00");
}

TEST_F(TitleEligibility, ATitleInTheListOnAirIsFreeWhenItHasPlayed) {
  const int32_t code = Add({});
  s.station.PL.Add(TitleElement(99, "A"));
  s.station.PL.Add(TitleElement(code, "B"));
  EXPECT_EQ(Only(Ask(code)), "waiting: waits in the on-air list, row 2; when it has played");
}

// The report's highest CODE is 5 and the artist's row 2: three rows back.
TEST_F(TitleEligibility, AnArtistTooNearInTheReportIsFreeAfterTheRowsThatLack) {
  s.Report("OTHER", 1);
  s.Report("L'ARTIST", 2);
  for (int i = 3; i <= 5; ++i) s.Report("OTHER", i);
  const TitleAnswer answer = Ask(TitleCard{.artist = "L'ARTIST", .artistGap = 10});
  EXPECT_EQ(
      Only(answer),
      "artist: artist L'ARTIST is 3 rows back in the report, less than ECARTARTISTE 10; after 7 "
      "more rows of the report");
  EXPECT_FALSE(answer.reasons.at(0).Never());
  EXPECT_TRUE(Ask(TitleCard{.artist = "L'ARTIST", .artistGap = 3}).MayPlay());
  EXPECT_EQ(Ask(TitleCard{.artist = "L'ARTIST", .artistGap = 4}).reasons.at(0).after,
            "after 1 more row of the report");
}

// The newest are ABBA, Zappa, BEATLES, BEATLES: with four more titles Zappa is the sixth, and five
// count. The first of the alphabet is never met.
TEST_F(TitleEligibility, ARecentArtistIsFreeWhenAsManyOthersHavePlayed) {
  s.SetCnf("EcartArtiste", 5);
  int moment = 0;
  for (const char* artist : {"BEATLES", "BEATLES", "Zappa", "ABBA"}) s.Report(artist, ++moment);
  EXPECT_EQ(
      Only(Ask(TitleCard{.artist = "ZAPPA"})),
      "artist: artist ZAPPA is among the recent artists (EcartArtiste 5); after 4 more titles on "
      "air");
  EXPECT_TRUE(Ask(TitleCard{.artist = "ABBA"}).MayPlay());
}

TEST_F(TitleEligibility, ALostSoundFileIsAReason) {
  const int32_t code = s.Add({});
  s.Execute("UPDATE Discotheque SET FILENAME = '/nowhere/x.wav'");
  EXPECT_EQ(Only(Ask(code)), "file: no sound file /nowhere/x.wav; when the file is there");
  s.Execute("UPDATE Discotheque SET FILENAME = ''");
  EXPECT_EQ(Only(Ask(code)), "file: the card names no sound file; when the file is there");
}

TEST_F(TitleEligibility, AskingChangesNothingOfTheBaseTheListOrTheRefusals) {
  s.Requests().ListAutorisation.Add("of the last request");
  const int64_t counter = s.station.base.Db().ChangeCounter();
  const int32_t code = Add({.passes = 0});
  const int64_t added = s.station.base.Db().ChangeCounter();
  EXPECT_NE(counter, added);
  Ask(code);
  EXPECT_EQ(s.station.base.Db().ChangeCounter(), added);
  EXPECT_TRUE(s.station.PL.Empty());
  EXPECT_EQ(s.Requests().ListAutorisation.All(), std::vector<std::string>{"of the last request"});
}

// A small generator, the same numbers everywhere.
class Numbers {
 public:
  explicit Numbers(uint32_t seed) : state_(seed * 2654435761U + 1) {}
  int Below(int bound) {
    state_ = state_ * 1664525U + 1013904223U;
    return static_cast<int>((state_ >> 8) % static_cast<uint32_t>(bound));
  }

 private:
  uint32_t state_;
};

TitleCard AnyTitle(Numbers& any) {
  TitleCard card;
  card.passes = any.Below(4);
  card.minutes = any.Below(3) * 400;
  card.days = any.Below(3);
  card.genre = any.Below(8) == 0 ? "ROCK" : "POP";
  card.variety = any.Below(8) == 0 ? "LOCAL" : "NATIONAL";
  for (char& hour : card.hours) hour = any.Below(4) == 0 ? '0' : '1';
  if (any.Below(5) == 0) card.firstDay = "1122", card.lastDay = any.Below(2) ? "1130" : "0105";
  int day = 21, minute = 11 * 60;
  for (int i = any.Below(6); i > 0; --i) {
    minute -= any.Below(700);
    if (minute < 0) minute += 1440, --day;
    card.diffusions.push_back(TwoDigits(day) + "/11/2026 à " + TwoDigits(minute / 60) + ":" +
                              TwoDigits(minute % 60));
  }
  return card;
}

// Of a library of one title a request takes it or not, and that is the answer; and at the moment
// told the title may play, and not a minute earlier.
TEST(TitleEligibilityProperty, ARequestTakesWhatMayPlayAndNothingElse) {
  int played = 0, later = 0, never = 0;
  for (uint32_t seed = 1; seed <= 60; ++seed) {
    Numbers any(seed);
    RequestStation s("2026-11-21 11:30:00");
    s.Variety("NATIONAL", 100);
    for (int day = 1; day <= 7; ++day) s.Model(day, "POP", 100);
    s.SetCnf("DecalDiff", any.Below(4));
    const int32_t code = s.Add(AnyTitle(any));
    s.Execute("UPDATE Discotheque SET FILENAME = '" + s.MakeSound("title.wav", 1000) + "'");
    const LocalDateTime now = s.station.Now();
    const auto answer = WhyTitle(s.station, code, now);
    ASSERT_TRUE(answer) << seed;
    ASSERT_EQ(answer->MayPlay(), answer->from == now) << seed;
    if (!answer->from) {
      ++never;
    } else if (!answer->MayPlay()) {
      ++later;
      EXPECT_TRUE(WhyTitle(s.station, code, *answer->from)->MayPlay()) << seed;
      const LocalDateTime before = FromDateSerial(DateSerial(*answer->from) - 1.0 / 1440);
      EXPECT_FALSE(WhyTitle(s.station, code, before)->MayPlay()) << seed;
    }
    s.Request(60);
    EXPECT_EQ(s.Listed(), answer->MayPlay() ? std::vector<int32_t>{code} : std::vector<int32_t>{})
        << seed;
    played += answer->MayPlay();
  }
  EXPECT_GT(played, 5);
  EXPECT_GT(later, 5);
  EXPECT_GT(never, 5);
}

}  // namespace
}  // namespace zemo
