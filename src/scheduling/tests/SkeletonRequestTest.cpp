#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/Folder.h"
#include "scheduling/SkeletonDialogue.h"
#include "scheduling/SkeletonRequest.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/SideFileText.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

using test::kSaturday;
using test::RequestStation;
using test::TitleCard;
using test::TitleElement;

constexpr int kHour = 10;
constexpr const char* kNoModels = "IL N'Y A PAS DE MODELS DEFINIS";

using Codes = std::vector<int32_t>;

class SkeletonRequest : public testing::Test {
 protected:
  SkeletonRequest() {
    s.SetCnf("Squelette", -1);
    s.SetCnf("CheckNational", 0);
    s.Variety("NATIONAL", 40);
    s.Variety("INTERNATIONAL", 60);
  }
  // A title of its own artist, played that many days ago.
  int32_t Add(int daysAgo, const std::string& genre = "POP",
              const std::string& variety = "NATIONAL", const std::string& artist = "") {
    TitleCard card;
    card.artist = artist.empty() ? "ARTIST " + std::to_string(++artists) : artist;
    card.title = "TITLE " + std::to_string(daysAgo);
    card.genre = genre;
    card.variety = variety;
    card.lastdiff = DaySerial(2026, 11, 21) - daysAgo;
    return s.Add(card);
  }
  void Skeleton(const std::vector<std::string>& genres) {
    for (const std::string& genre : genres) s.Position(kSaturday, kHour, genre);
  }
  Folder& Refusals() { return s.stationFolder.Subfolder("refusrequette"); }

  RequestStation s;
  int artists = 0;
};

TEST_F(SkeletonRequest, AnEmptyTableSaysSoInFrenchWhateverTheLanguage) {
  for (int langue = 0; langue < 4; ++langue) {
    s.SetCnf("Langue", langue);
    s.Request(30);
    EXPECT_EQ(s.station.notices.progress.text, kNoModels);
  }
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
  EXPECT_FALSE(s.station.notices.hourglass);
}

TEST_F(SkeletonRequest, PositionsAreFilledInOrderAndOverAndOver) {
  Skeleton({"POP", "ROCK", "POP"});
  const Codes pop = {Add(9), Add(8), Add(7), Add(6), Add(5), Add(4), Add(3), Add(2)};
  const Codes rock = {Add(9, "ROCK"), Add(8, "ROCK"), Add(7, "ROCK"), Add(6, "ROCK")};
  s.Request(30);
  // Nine titles of 3 minutes make 27 minutes after the third pass, twelve make 36 after the fourth.
  EXPECT_EQ(s.Listed(), (Codes{pop[0], rock[0], pop[1], pop[2], rock[1], pop[3], pop[4], rock[2],
                               pop[5], pop[6], rock[3], pop[7]}));
  const auto request = s.Events("request").back();
  EXPECT_EQ(request["kind"], "skeleton");
  EXPECT_EQ(request["rows"], "12");
}

TEST_F(SkeletonRequest, ExactlyTheMinutesAreNotEnough) {
  Skeleton({"POP"});
  for (int i = 0; i < 15; ++i) Add(20 - i);
  s.Request(30);
  EXPECT_EQ(s.station.PL.Count(), 11);  // ten titles are 30 minutes, and not above
}

TEST_F(SkeletonRequest, NothingIsShuffledAfterwards) {
  Skeleton({"POP", "POP", "ROCK"});
  const Codes pop = {Add(9), Add(8)};
  const Codes rock = {Add(9, "ROCK")};
  s.Request(5);
  EXPECT_EQ(s.Listed(), (Codes{pop[0], pop[1], rock[0]}));
}

TEST_F(SkeletonRequest, APositionWithoutTitleOrGenreIsSkippedWithoutALine) {
  s.Execute("UPDATE Cnf SET TempRequette = 3");
  Skeleton({"JAZZ", "  ", "POP"});
  const int32_t pop = Add(9);
  s.Request(2);
  EXPECT_EQ(s.Listed(), Codes{pop});
  EXPECT_TRUE(s.Requests().ListAutorisation.All().empty());
}

TEST_F(SkeletonRequest, TheHourReadsItsOwnColumn) {
  s.Position(kSaturday, 9, "NINE");
  s.Position(kSaturday, 10, "TEN");
  s.Position(kSaturday, 11, "ELEVEN");
  Add(9, "NINE");
  const int32_t ten = Add(8, "TEN");
  Add(7, "ELEVEN");
  s.Request(2);
  EXPECT_EQ(s.Listed(), Codes{ten});
}

TEST_F(SkeletonRequest, AnEmptyColumnFailsUnderTheRequestsName) {
  s.Position(kSaturday, 9, "NINE");
  s.Request(30);
  EXPECT_EQ(s.LastError().substr(0, 18), "RequetteSquelette:");
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
  EXPECT_TRUE(s.station.notices.hourglass);
  EXPECT_TRUE(s.Requests().PLHidden);
  EXPECT_EQ(s.station.notices.progress.text, "ZEMO RADIO");
}

TEST_F(SkeletonRequest, APoolTooSmallEndsAfterTwoPassesWithoutATitle) {
  Skeleton({"POP"});
  const int32_t only = Add(9);
  const int64_t before = s.loop.MonotonicMs();
  s.Request(30);
  EXPECT_EQ(s.Listed(), Codes{only});
  EXPECT_EQ(s.loop.MonotonicMs() - before, 3);  // a millisecond a pass, and one listed the title
}

TEST_F(SkeletonRequest, DoublesOfAnArtistAreCutAndListed) {
  Skeleton({"POP"});
  const int32_t oldest = Add(9, "POP", "NATIONAL", "Zoé");
  Add(5, "POP", "NATIONAL", "ZOÉ");
  s.Request(2);
  EXPECT_EQ(s.Listed(), Codes{oldest});
  EXPECT_EQ(s.Requests().ListAutorisation.All(),
            std::vector<std::string>{
                "21/11/2026 10:55:00 POP\tZOÉ\tTITLE 5 supprimé car doublon d'artiste"});
}

TEST_F(SkeletonRequest, OfTwoTitlesTheOneWithMorePassesADaySurvivesTheCut) {
  Skeleton({"POP"});
  Add(9, "POP", "NATIONAL", "SAME");
  const int32_t more = Add(5, "POP", "NATIONAL", "SAME");
  s.Execute("UPDATE Discotheque SET NBPASSJOUR = 3 WHERE CODE = " + std::to_string(more));
  s.Request(2);
  EXPECT_EQ(s.Listed(), Codes{more});
}

TEST_F(SkeletonRequest, TheLastPlayOrdersThePoolWhateverThePassesADay) {
  Skeleton({"POP", "POP"});
  const int32_t recent = Add(2), old = Add(9);
  s.Execute("UPDATE Discotheque SET NBPASSJOUR = 5 WHERE CODE = " + std::to_string(recent));
  s.Request(5);
  EXPECT_EQ(s.Listed(), (Codes{old, recent}));
}

TEST_F(SkeletonRequest, WithDoublesLetInTwoTitlesOfAnArtistMayCome) {
  s.localValues.Set("CheckDoublonYN", "1");
  Skeleton({"POP", "POP"});
  const Codes codes = {Add(9, "POP", "NATIONAL", "SAME"), Add(5, "POP", "NATIONAL", "SAME")};
  s.Request(5);
  EXPECT_EQ(s.Listed(), codes);
  EXPECT_TRUE(s.Requests().ListAutorisation.All().empty());
}

// --- the alternation ---

TEST_F(SkeletonRequest, TheLimitsAreATwentiethOfTheSharesRoundedToEvenAndAtLeastOne) {
  const auto limits = [this](int first, int last) {
    s.Execute("DELETE * FROM Variete");
    s.Variety("A", first);
    s.Variety("MIDDLE", 77);
    s.Variety("B", last);
    const Alternation read = ReadAlternation(s.station);
    return std::pair(read.mostNat, read.mostInt);
  };
  EXPECT_EQ(limits(100, 0), std::pair(5, 1));
  EXPECT_EQ(limits(40, 60), std::pair(2, 3));
  EXPECT_EQ(limits(50, 70), std::pair(2, 4));  // 2.5 and 3.5
  EXPECT_EQ(limits(30, 10), std::pair(2, 1));  // 1.5 and 0.5
}

TEST_F(SkeletonRequest, NoMoreTitlesOfAnOriginInARowThanItsLimit) {
  s.SetCnf("CheckNational", 1);
  Skeleton({"POP"});
  const Codes nat = {Add(20), Add(19), Add(18), Add(17)};
  const Codes foreign = {Add(9, "POP", "INTERNATIONAL"), Add(8, "POP", "INTERNATIONAL")};
  s.Request(16);
  EXPECT_EQ(s.Listed(), (Codes{nat[0], nat[1], foreign[0], nat[2], nat[3], foreign[1]}));
}

TEST_F(SkeletonRequest, RefusedTitlesCountInTheRunSoThatOnlyTheOtherOriginEndsIt) {
  s.SetCnf("CheckNational", 1);
  Skeleton({"POP", "ROCK"});
  const Codes nat = {Add(20), Add(19), Add(18)};
  const int32_t rock = Add(5, "ROCK", "OTHER"), rock2 = Add(4, "ROCK", "OTHER");
  s.Request(60);
  // The third NAT title is refused in each pass; a variety of neither origin changes no run.
  EXPECT_EQ(s.Listed(), (Codes{nat[0], rock, nat[1], rock2}));
}

// A share below 0 lets no INT title in at all, but a look at one ends the run of NAT titles: the
// second pass lists nothing, the third does.
TEST_F(SkeletonRequest, OnePassWithoutATitleIsNotTheEnd) {
  s.SetCnf("CheckNational", 1);
  s.Sql("UPDATE Variete SET POURCENT = -20 WHERE VARIETE = 'INTERNATIONAL'");
  Skeleton({"POP", "POP", "ROCK"});
  const Codes nat = {Add(20), Add(19), Add(18)};
  const int32_t rock = Add(9, "ROCK", "OTHER");
  Add(8, "ROCK", "INTERNATIONAL");
  s.Request(60);
  EXPECT_EQ(s.Listed(), (Codes{nat[0], nat[1], rock, nat[2]}));
}

TEST_F(SkeletonRequest, WithoutCheckNationalRunsAreEndless) {
  Skeleton({"POP"});
  const Codes nat = {Add(20), Add(19), Add(18), Add(17)};
  s.Request(11);
  EXPECT_EQ(s.Listed(), nat);
}

// --- the refusal file ---

TEST_F(SkeletonRequest, RefusalsAreWrittenToTheFileOfTheDayAndAddedTo) {
  s.localValues.Set("RapportSquelette", "1");
  Skeleton({"POP"});
  Add(9);
  Add(5, "POP", "NATIONAL", "ARTIST 1");
  s.Request(2);
  const std::string line =
      "21/11/2026 10:55:00 POP\tARTIST 1\tTITLE 5 supprimé car doublon d'artiste";
  ASSERT_TRUE(Refusals().Exists("20261121.txt"));
  EXPECT_EQ(DecodeSideFile(*Refusals().Read("20261121.txt")), line + "\r\n");
  s.station.PL.Clear();
  s.Request(2);
  EXPECT_EQ(DecodeSideFile(*Refusals().Read("20261121.txt")), line + "\r\n" + line + "\r\n");
}

// A file stands where the folder should be.
TEST_F(SkeletonRequest, ARefusalFileThatCannotBeWrittenChangesNothingElseAndIsToldOnce) {
  s.localValues.Set("RapportSquelette", "1");
  s.MakeFile("refusrequette", "no folder");
  for (const int hour : {kHour, kHour + 1, kHour + 2}) s.Position(kSaturday, hour, "POP");
  const int32_t only = Add(9);
  Add(5, "POP", "NATIONAL", "ARTIST 1");
  for (int times = 1; times <= 3; ++times) {
    s.station.PL.Clear();
    s.Request(2);
    EXPECT_EQ(s.Listed(), Codes{only});
    EXPECT_EQ(s.Events("request").size(), static_cast<size_t>(times));
    EXPECT_FALSE(s.station.notices.hourglass);
    s.RunUntil(times * 3600000);  // the log's own patience with one fault is shorter
  }
  ASSERT_EQ(s.Events("error").size(), 1U);
  EXPECT_EQ(s.Events("error")[0]["where"], "RequetteSquelette");
  EXPECT_NE(s.LastError().find("refusrequette"), std::string::npos) << s.LastError();
}

TEST_F(SkeletonRequest, WithoutTheSettingNoFileAndNoFolderIsMade) {
  Skeleton({"POP"});
  Add(9);
  Add(5, "POP", "NATIONAL", "ARTIST 1");
  s.Request(2);
  EXPECT_EQ(s.Requests().ListAutorisation.Count(), 1U);
  EXPECT_FALSE(Refusals().Exists("20261121.txt"));
  EXPECT_NE(access((s.stationDir.Path() + "/refusrequette").c_str(), F_OK), 0);
}

TEST_F(SkeletonRequest, WithoutRefusalsNoFolderIsMadeEither) {
  s.localValues.Set("RapportSquelette", "1");
  Skeleton({"POP"});
  Add(9);
  s.Request(2);
  EXPECT_NE(access((s.stationDir.Path() + "/refusrequette").c_str(), F_OK), 0);
}

TEST_F(SkeletonRequest, AVarietyTableWithoutRowsFailsUnderTheRequestsName) {
  s.Execute("DELETE * FROM Variete");
  Skeleton({"POP"});
  Add(9);
  s.Request(2);
  EXPECT_EQ(s.LastError().substr(0, 18), "RequetteSquelette:");
  EXPECT_TRUE(s.station.PL.Empty());
}

// --- the dialogue ---

class SkeletonDialogue : public SkeletonRequest {
 protected:
  SkeletonDialogue() {
    s.station.storedList.open = true;
    s.station.storedList.ChHeure = "10:30";
    Skeleton::Open(s.station);
  }
  auto& Dialog() { return s.Requests().SkeletonDialog; }
  std::vector<std::string> Grid() {
    std::vector<std::string> genres;
    for (int row = 0; row < Dialog().SquelettePLS.RowCount(); ++row)
      genres.push_back(Dialog().SquelettePLS.Cell(row, 0));
    return genres;
  }
};

TEST_F(SkeletonDialogue, OffersTheGenreListAndTakesItsGenresByDoubleClick) {
  EXPECT_TRUE(Dialog().open);
  EXPECT_EQ(Dialog().ListGenre,
            (std::vector<std::string>{"INSTRUMENTAL", "STARTER", "PLAYLIST", "GOLD N-1", "GOLD N-2",
                                      "GOLD N-3", "GOLD N-4"}));
  Skeleton::ListGenre_DblClick(s.station, "STARTER");
  Skeleton::ListGenre_DblClick(s.station, "STARTER");
  EXPECT_EQ(Grid(), (std::vector<std::string>{"STARTER", "STARTER"}));
}

TEST_F(SkeletonDialogue, TheDeleteKeyLeavesTheLastRow) {
  Skeleton::ListGenre_DblClick(s.station, "A");
  Skeleton::ListGenre_DblClick(s.station, "B");
  Dialog().selectedRow = 0;
  Skeleton::SquelettePLS_KeyDelete(s.station);
  Skeleton::SquelettePLS_KeyDelete(s.station);
  EXPECT_EQ(Grid(), std::vector<std::string>{"B"});
}

TEST_F(SkeletonDialogue, ADaysSkeletonComesFromTheHourOfTheStoredList) {
  s.Position(1, 10, "POP");
  s.Position(1, 11, "ROCK");
  s.Position(1, 10, "JAZZ");
  s.Position(2, 10, "OTHER DAY");
  EXPECT_TRUE(Skeleton::MnuDay_Click(s.station, 1));
  EXPECT_EQ(Grid(), (std::vector<std::string>{"POP", "", "JAZZ"}));
  EXPECT_FALSE(Skeleton::MnuDay_Click(s.station, 7));
  EXPECT_EQ(Grid().size(), 3U);  // a day without any changes nothing
}

TEST_F(SkeletonDialogue, AnEmptyFirstRowSaysThatThereAreNoModels) {
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.station.notices.progress.text, kNoModels);
  EXPECT_FALSE(Dialog().open);
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
  EXPECT_FALSE(s.Requests().PLHidden);
}

TEST_F(SkeletonDialogue, RotationArtistsAndHoursAreNotAsked) {
  Skeleton::ListGenre_DblClick(s.station, "POP");
  Skeleton::ListGenre_DblClick(s.station, "POP");
  TitleCard barred;
  barred.passes = 0;
  barred.hours = std::string(24, '0');
  barred.diffusions = {"21/11/2026 à 10:50"};
  barred.lastdiff = 46000;
  const int32_t first = s.Add(barred);
  barred.lastdiff = 46001;
  const int32_t second = s.Add(barred);  // of the same artist
  Dialog().SpinMinutes = 5;
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.Listed(), (Codes{first, second}));
  EXPECT_TRUE(s.Requests().ListAutorisation.All().empty());
  const auto request = s.Events("request").back();
  EXPECT_EQ(request["kind"], "dialog");
  EXPECT_EQ(request["minutes"], "5");
  EXPECT_EQ(request["refused"], "0");
}

TEST_F(SkeletonDialogue, TitlesInUseComeOnlyWithRedondanceTicked) {
  const int32_t stored = Add(9), free = Add(5);
  s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (3, " + std::to_string(stored) + ")");
  Skeleton::ListGenre_DblClick(s.station, "POP");
  Dialog().SpinMinutes = 2;
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.Listed(), Codes{free});
  s.station.PL.Clear();
  Dialog().Redondance = true;
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.Listed(), Codes{stored});
}

TEST_F(SkeletonDialogue, TheAlternationPlaysNoPart) {
  s.SetCnf("CheckNational", 1);
  const Codes nat = {Add(20), Add(19), Add(18), Add(17)};
  Skeleton::ListGenre_DblClick(s.station, "POP");
  Dialog().SpinMinutes = 11;
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.Listed(), nat);
}

TEST_F(SkeletonDialogue, AFailureIsLoggedUnderTheGridsName) {
  Skeleton::ListGenre_DblClick(s.station, "POP");
  s.Execute("ALTER TABLE Discotheque RENAME TO Gone");
  Skeleton::BtnOk_Click(s.station);
  EXPECT_EQ(s.LastError().substr(0, 13), "SquelettePLS:");
  EXPECT_TRUE(s.station.engine.MainTimer->Enabled());
}

}  // namespace
}  // namespace zemo
