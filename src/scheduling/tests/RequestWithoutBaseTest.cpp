// Requests while the base is out of reach: they list what they would have listed with it.
#include <gtest/gtest.h>

#include <filesystem>

#include "library/KnownCards.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/BaseFiles.h"
#include "support/BaseFaults.h"

namespace zemo {
namespace {

using test::BaseFault;
using test::BaseFaults;
using test::BasePoint;
using test::kSaturday;
using test::RequestStation;

using Codes = std::vector<int32_t>;

struct Outage {
  const char* name;
  BasePoint point;
  BaseFault fault;
};

class WithoutBase : public testing::TestWithParam<Outage> {
 protected:
  void SetUp() override {
    s.Variety("NATIONAL", 60);
    s.Variety("INTERNATIONAL", 40);
    for (int i = 1; i <= 12; ++i)
      s.Add({.artist = "ARTIST " + std::to_string(i),
             .title = "TITLE " + std::to_string(i),
             .genre = i % 3 ? "POP" : "ROCK",
             .variety = i % 4 ? "NATIONAL" : "INTERNATIONAL",
             .lastdiff = 46000.0 + i});
    s.Model(kSaturday, "POP", 50);
    s.Model(kSaturday, "ROCK", 50);
    s.Position(kSaturday, 10, "POP");
    s.Position(kSaturday, 10, "ROCK");
    s.SetCnf("CheckNational", 0);
    s.SetCnf("EcartArtiste", 2);
    s.Report("ARTIST 1", 46300);
    s.Report("ARTIST 4", 46301);
    s.Execute("INSERT INTO Playlist (LADATE, LHEURE) VALUES ('JOURNALIER', '23:00')");
    s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (1, 2)");
  }
  void Lose() { base.Arm(GetParam().point, GetParam().fault); }
  // The titles of a request into an empty list.
  Codes Asked() {
    s.station.PL.Clear();
    s.Request(15);
    return Listed();
  }
  Codes Listed() { return s.Listed(); }
  // In the error log.
  int TimesTold() {
    const std::string log = s.stationFolder.Read("Messages.Txt").value_or("");
    const std::string line = "the base cannot be read, the request goes by what was read last";
    int times = 0;
    for (size_t at = log.find(line); at != std::string::npos; at = log.find(line, at + 1)) ++times;
    return times;
  }

  BaseFaults base;  // ahead of the station, whose base it may fail
  RequestStation s;
};

TEST_P(WithoutBase, ARequestByPercentagesListsWhatItWouldWithIt) {
  const Codes before = Asked();
  ASSERT_GT(before.size(), 2U);
  EXPECT_EQ(std::count(before.begin(), before.end(), 2), 0) << "it stands in a list of tonight";
  EXPECT_EQ(std::count(before.begin(), before.end(), 4), 0) << "its artist was just on air";
  Lose();
  EXPECT_EQ(Asked(), before);
  EXPECT_EQ(s.LastError(), "");
  EXPECT_EQ(s.station.requests.askAgainMs, -1);
}

TEST_P(WithoutBase, ARequestAlongASkeletonListsWhatItWouldWithIt) {
  s.SetCnf("Squelette", -1);
  for (const int alternate : {0, 1}) {
    s.SetCnf("CheckNational", alternate);
    const Codes before = Asked();
    ASSERT_GT(before.size(), 2U);
    Lose();
    EXPECT_EQ(Asked(), before);
    EXPECT_EQ(s.LastError(), "");
    base.Disarm();
  }
}

// An artist of its own gap: of the report as it was read last, and of what was aired since.
TEST_P(WithoutBase, AnArtistOfTheReportIsKeptToItsGap) {
  s.Execute("UPDATE Discotheque SET ECARTARTISTE = 5 WHERE CODE IN (1, 4, 7)");
  const Codes before = Asked();
  ASSERT_GT(before.size(), 2U);
  EXPECT_EQ(std::count(before.begin(), before.end(), 1), 0);
  EXPECT_EQ(std::count(before.begin(), before.end(), 4), 0);
  EXPECT_EQ(std::count(before.begin(), before.end(), 7), 1);
  s.Report("ARTIST 7", 46302);
  Lose();
  const Codes after = Asked();
  EXPECT_EQ(std::count(after.begin(), after.end(), 1), 0);
  EXPECT_EQ(std::count(after.begin(), after.end(), 4), 0);
}

TEST_P(WithoutBase, OneLineTellsOfARequestByWhatWasReadLast) {
  Asked();
  EXPECT_EQ(TimesTold(), 0);
  Lose();
  Asked();
  Asked();
  EXPECT_EQ(TimesTold(), 1);
}

TEST_P(WithoutBase, CardsThatChangedJustBeforeAreTakenAsTheyWereReadLast) {
  const Codes before = Asked();
  s.Sql("UPDATE Discotheque SET GENRE = 'JAZZ'");
  ASSERT_FALSE(CardsListedAlready(s.station)) << "the write is seen, and not taken in yet";
  Lose();
  EXPECT_EQ(Asked(), before);
  base.Disarm();
  EXPECT_EQ(Asked(), Codes{});
}

TEST_P(WithoutBase, WhatIsStoredCountsAgainOnceTheBaseIsBack) {
  Asked();
  Lose();
  ASSERT_FALSE(Asked().empty());
  base.Disarm();
  s.Execute("DELETE FROM Models WHERE GENRE = 'ROCK'");
  for (const int32_t code : Asked()) EXPECT_NE(code % 3, 0) << "of genre ROCK";
}

TEST_P(WithoutBase, WhatWasNeverReadIsAFaultAsBefore) {
  Lose();
  EXPECT_EQ(Asked(), Codes{});
  EXPECT_NE(s.LastError(), "");
  EXPECT_NE(s.station.requests.askAgainMs, -1);
  base.Disarm();
  EXPECT_GT(Asked().size(), 2U);
}

// Its cards have other codes, its week another model.
TEST_P(WithoutBase, NothingIsListedByWhatAnotherBaseAnswered) {
  ASSERT_GT(Asked().size(), 2U);
  const std::string path = s.station.base.Path();
  std::filesystem::copy_file(path, path + ".copy");
  std::filesystem::rename(path + ".copy", path);
  ASSERT_TRUE(OpenLostBase(s.station));
  Lose();
  EXPECT_EQ(Asked(), Codes{});
  EXPECT_NE(s.LastError(), "");
  base.Disarm();
  EXPECT_GT(Asked().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(
    Outages, WithoutBase,
    testing::Values(Outage{"Locked", BasePoint::kLockToRead, BaseFault::kLocked},
                    Outage{"Broken", BasePoint::kLockToRead, BaseFault::kBroken}),
    [](const auto& outage) { return outage.param.name; });

}  // namespace
}  // namespace zemo
