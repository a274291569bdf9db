// A station's base to a server and back.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "engine/OperatorControls.h"
#include "engine/Startup.h"
#include "station/BaseMove.h"
#include "support/SomebodyElse.h"
#include "support/TestServer.h"
#include "support/TestStation.h"

namespace zemo {
namespace {

using test::TestServer;
using test::TestStation;

constexpr char kNoon[] = "2026-11-21 12:00:00";

class Move : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
  }
  void TearDown() override {
    if (!made_.empty()) TestServer::Get().Drop(made_);
  }
  // Of an empty base.
  std::string Url() {
    if (!made_.empty()) TestServer::Get().Drop(made_);
    made_ = TestServer::Get().NewBase();
    return TestServer::Get().Url(made_);
  }
  const std::string& Made() const { return made_; }
  static std::string Title(TestStation& on) {
    return AsText(on.station.base.Db().OpenRecordset("SELECT TITRE FROM Discotheque")->Field(0));
  }
  // The folder's station started and ended again; the only title of its library.
  static std::string TitleAtStart(const std::string& folder) {
    TestStation next(kNoon, folder);
    next.Load();
    std::string title = Title(next);
    EndInOrder(next.station);
    return title;
  }
  // With a card and its base closed.
  static void Prepare(TestStation& on) {
    on.Load();
    on.AddCard({.title = "KEPT"});
    EndInOrder(on.station);
  }
  // The same where a move begins: in its file, or on a server.
  void PrepareMove(TestStation& on, bool toServer) {
    Prepare(on);
    const std::string url = Url();
    if (!toServer) MoveBaseToServer(on.station, url, nullptr);
  }
  void MoveBase(TestStation& mover, bool toServer) const {
    if (toServer)
      MoveBaseToServer(mover.station, TestServer::Get().Url(made_), nullptr);
    else
      MoveBaseToFile(mover.station, nullptr);
  }

 private:
  std::string made_;
};

TEST_F(Move, ToAServerAndBackLosesNothingAndKeepsBothAsTheyWere) {
  TestStation on;
  Prepare(on);
  const std::string url = Url();
  const MovedBase there = MoveBaseToServer(on.station, url, nullptr);
  EXPECT_EQ(there.notice, "");
  EXPECT_EQ(there.backup, "Triskin 2026-11-21 120000.BAK");
  EXPECT_EQ(there.to.find("secret"), std::string::npos);
  EXPECT_TRUE(on.stationFolder.Exists(there.backup));
  EXPECT_FALSE(on.stationFolder.Exists("Triskin.MDB"));
  EXPECT_FALSE(on.stationFolder.Exists("Base.New"));
  EXPECT_EQ(on.stationFolder.Read("Base.Ini"), url + "\r\n");

  TestStation next(kNoon, on.stationDir.Path());
  next.Load();
  EXPECT_FALSE(next.station.base.IsFile());
  EXPECT_EQ(Title(next), "KEPT");
  next.station.base.Db().Execute("UPDATE Discotheque SET TITRE = 'CHANGED'");
  EndInOrder(next.station);

  const MovedBase back = MoveBaseToFile(next.station, nullptr);
  EXPECT_EQ(back.notice, "");
  EXPECT_EQ(back.backup, "triskin_2026_11_21_120000");
  EXPECT_EQ(back.to, on.stationDir.Path() + "/Triskin.MDB");
  EXPECT_FALSE(on.stationFolder.Exists("Base.Ini"));
  EXPECT_TRUE(on.stationFolder.Exists("Base 2026-11-21 120000.Ini"));
  EXPECT_EQ(TitleAtStart(on.stationDir.Path()), "CHANGED");
  EXPECT_EQ(
      TestServer::Get().Try(Made(), "DO 'BEGIN ASSERT (SELECT \"TITRE\" = ''CHANGED'' FROM \"" +
                                        back.backup + "\".\"Discotheque\"); END'"),
      "");
  // Its place is free again.
  TestStation last(kNoon, on.stationDir.Path());
  EXPECT_EQ(MoveBaseToServer(last.station, url, nullptr).tables.size(), back.tables.size());
}

TEST_F(Move, EachTableIsToldWithItsRowsAndChecksum) {
  TestStation on;
  Prepare(on);
  std::vector<TableSum> told;
  const MovedBase there =
      MoveBaseToServer(on.station, Url(), [&told](const TableSum& sum) { told.push_back(sum); });
  EXPECT_EQ(told, there.tables);
  TestStation next(kNoon, on.stationDir.Path());
  EXPECT_EQ(MoveBaseToFile(next.station, nullptr).tables, there.tables);
}

TEST_F(Move, OfABaseThatSomebodyElseHasIsRefused) {
  TestStation on;
  Prepare(on);
  test::SomebodyElse other;
  other.there = true;
  on.station.platform.baseUse = &other;
  const std::string url = Url();
  EXPECT_THROW(MoveBaseToServer(on.station, url, nullptr), StoreError);
  EXPECT_TRUE(on.stationFolder.Exists("Triskin.MDB"));
  other.there = false;
  MoveBaseToServer(on.station, url, nullptr);

  TestStation air(kNoon, on.stationDir.Path());
  air.Load();
  TestStation mover(kNoon, on.stationDir.Path());
  try {
    MoveBaseToFile(mover.station, nullptr);
    FAIL() << "moved";
  } catch (const StoreError& error) {
    EXPECT_EQ(error.Number(), kErrLocked);
    EXPECT_NE(std::string(error.what()).find("is open in another program"), std::string::npos);
  }
  EXPECT_EQ(Title(air), "KEPT");
}

TEST_F(Move, ToABaseThatHoldsTablesIsRefused) {
  TestStation on;
  Prepare(on);
  const std::string url = Url();
  TestServer::Get().Try(Made(), "CREATE TABLE \"Other\"(\"A\" text)");
  EXPECT_THROW(MoveBaseToServer(on.station, url, nullptr), StoreError);
  EXPECT_EQ(TitleAtStart(on.stationDir.Path()), "KEPT");
  EXPECT_FALSE(on.stationFolder.Exists("Base.New"));
}

TEST_F(Move, ThatIsDoneAlreadyIsSaid) {
  TestStation on;
  Prepare(on);
  EXPECT_THROW(MoveBaseToFile(on.station, nullptr), std::runtime_error);
  const std::string url = Url();
  MoveBaseToServer(on.station, url, nullptr);
  TestStation next(kNoon, on.stationDir.Path());
  EXPECT_THROW(MoveBaseToServer(next.station, url, nullptr), std::runtime_error);
}

TEST_F(Move, ThatIsKilledAtAnyStepLeavesAWholeBase) {
  for (const bool toServer : {true, false}) {
    int switched = 0;
    for (int step = 1;; ++step) {
      TestStation on;
      PrepareMove(on, toServer);
      TestStation mover(kNoon, on.stationDir.Path());
      mover.stationFolder.fault.count = 0;
      const pid_t child = fork();
      if (child == 0) {
        mover.stationFolder.fault.number = step;
        mover.stationFolder.fault.instead = [] { _exit(9); };
        MoveBase(mover, toServer);
        _exit(0);
      }
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      ASSERT_TRUE(WIFEXITED(status)) << step;
      EXPECT_EQ(TitleAtStart(on.stationDir.Path()), "KEPT") << step;
      const bool onServer = on.stationFolder.Exists("Base.Ini");
      EXPECT_NE(onServer, on.stationFolder.Exists("Triskin.MDB")) << step;
      if (onServer == toServer) ++switched;
      if (WEXITSTATUS(status) == 0) {
        EXPECT_EQ(onServer, toServer);
        break;
      }
    }
    EXPECT_GT(switched, 1) << "no step was behind the switch";
  }
}

TEST_F(Move, ThatFailsAtAnyStepLeavesAWholeBaseAndCanBeTriedAgain) {
  for (const bool toServer : {true, false}) {
    for (int step = 1;; ++step) {
      TestStation on;
      PrepareMove(on, toServer);
      TestStation mover(kNoon, on.stationDir.Path());
      mover.stationFolder.fault.count = 0;
      mover.stationFolder.fault.number = step;
      bool failed = false;
      try {
        MoveBase(mover, toServer);
      } catch (const FileError&) {
        failed = true;
      }
      mover.stationFolder.fault.number = 0;
      if (failed) {
        EXPECT_EQ(on.stationFolder.Exists("Triskin.MDB"), toServer) << step;
        TestStation again(kNoon, on.stationDir.Path());
        MoveBase(again, toServer);
      }
      EXPECT_EQ(TitleAtStart(on.stationDir.Path()), "KEPT") << step;
      EXPECT_EQ(on.stationFolder.Exists("Base.Ini"), toServer) << step;
      if (mover.stationFolder.fault.count < step) break;
    }
  }
}

}  // namespace
}  // namespace zemo
