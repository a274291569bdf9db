// What a station does with a base on a server where its file has an answer of its own: starts,
// compaction, a base that is handed over.
#include <gtest/gtest.h>

#include "engine/BaseMaintenance.h"
#include "engine/Startup.h"
#include "station/BaseCompaction.h"
#include "station/BaseMove.h"
#include "support/TestServer.h"
#include "support/TestStation.h"

namespace zemo {
namespace {

using test::TestServer;
using test::TestStation;

constexpr char kServerNoon[] = "2026-11-21 12:00:00";

class OnServer : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    made = TestServer::Get().NewBase();
    file.Load();
    file.AddCard({.title = "KEPT"});
    EndInOrder(file.station);
    MoveBaseToServer(file.station, TestServer::Get().Url(made), nullptr);
    on = std::make_unique<TestStation>(kServerNoon, file.stationDir.Path());
  }
  void TearDown() override {
    on.reset();
    if (!made.empty()) TestServer::Get().Drop(made);
  }
  void ExpectNoPassword() const {
    EXPECT_EQ(on->Describe().find("secret"), std::string::npos) << on->Describe();
    EXPECT_EQ(on->stationFolder.Read("Messages.Txt").value_or("").find("secret"),
              std::string::npos);
  }
  std::string made;
  TestStation file;  // of which only the folder goes on
  std::unique_ptr<TestStation> on;
};

TEST_F(OnServer, AStartOpensTheBaseAndTellsNoPassword) {
  on->Load();
  ASSERT_NE(on->First("base", "state", "opened"), nullptr) << on->Describe();
  EXPECT_FALSE(on->stationFolder.Exists("Triskin.MDB"));
  EXPECT_EQ(on->station.base.CountRecords("Discotheque"), 1);
  ExpectNoPassword();
}

TEST_F(OnServer, AStartBringsAnInterruptedMoveToItsEnd) {
  on->stationFolder.Rename("Base.Ini", "Base.New");
  TestStation next(kServerNoon, file.stationDir.Path());
  next.Load();
  EXPECT_TRUE(next.stationFolder.Exists("Base.Ini"));
  EXPECT_FALSE(next.stationFolder.Exists("Base.New"));
  EXPECT_EQ(next.station.base.CountRecords("Discotheque"), 1);
}

TEST_F(OnServer, ABaseThatIsNoneIsNotMade) {
  on->stationFolder.Write("Base.Ini", TestServer::Get().Url("postgres"));
  TestStation next(kServerNoon, file.stationDir.Path());
  try {
    next.Load();
    FAIL() << "it starts";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.Number(), kErrNoSuchFile);
    EXPECT_NE(std::string(error.what()).find("is no station's base"), std::string::npos);
    EXPECT_EQ(std::string(error.what()).find("secret"), std::string::npos);
  }
}

TEST_F(OnServer, TheMonthlyCompactionRunsOnTheServer) {
  on->stationFolder.Remove("Triskin.BAK");
  on->Load();
  ASSERT_NE(on->First("base", "state", "compacted"), nullptr) << on->Describe();
  EXPECT_EQ(on->LoggedTexts(), std::vector<std::string>{});
  EXPECT_TRUE(CompactStationBase(on->station));
  EXPECT_EQ(on->station.base.CountRecords("Discotheque"), 1);
  EXPECT_FALSE(on->stationFolder.Exists("Triskin.BAK"));
}

TEST_F(OnServer, ADroppedBaseIsNotTakenAndThatIsToldOnce) {
  on->Load();
  on->MakeFile("New.mdb", "base");
  on->stationFolder.Write("New.mdb", "base");
  TakeDroppedBase(on->station);
  TakeDroppedBase(on->station);
  EXPECT_EQ(on->LoggedTexts(),
            std::vector<std::string>{file.stationDir.Path() +
                                     "/New.mdb is not taken: the base stands on a server, where "
                                     "all machines work on one"});
  EXPECT_TRUE(on->stationFolder.Exists("New.mdb"));
  EXPECT_EQ(on->station.base.CountRecords("Discotheque"), 1);
}

TEST_F(OnServer, AServerThatGoesAwayIsToldWithoutThePassword) {
  on->Load();
  TestServer::Get().Stop();
  on->RunUntil(5000);
  EXPECT_FALSE(on->LoggedTexts().empty());
  ExpectNoPassword();
  TestServer::Get().Start();
  on->RunUntil(120000);
  EXPECT_TRUE(on->station.base.IsOpen());
  EXPECT_EQ(on->station.base.CountRecords("Discotheque"), 1);
}

}  // namespace
}  // namespace zemo
