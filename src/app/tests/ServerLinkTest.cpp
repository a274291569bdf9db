// The link to a real server in real time: what this machine writes gets there once, what others
// write comes here, whatever happens to the server or the program meanwhile.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "app/ServerLink.h"
#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/Recordset.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/Awaited.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

using test::Comes;
using test::TestServer;

class ServerLinkTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    std::string path = (std::filesystem::temp_directory_path() / "zemo-link-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    folder_ = path;
    made_ = TestServer::Get().NewBase();
    const auto base = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
    base->Open(true);
    for (const TableDef& table : SchemaTables()) {
      CreateTable(base->Tables(), table.Name);
      CreateIndexes(base->Tables(), table.Name);
    }
  }
  void TearDown() override {
    TestServer::Get().Start();
    if (!made_.empty()) TestServer::Get().Drop(made_);
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }

  std::string Url() const { return TestServer::Get().Url(made_); }
  std::string Folder(const std::string& machine) const {
    std::filesystem::create_directories(folder_ / machine);
    return (folder_ / machine).string();
  }
  std::unique_ptr<ServerLink> Link(const std::string& machine = "air") const {
    return std::make_unique<ServerLink>(ServerPlace(Url()), Folder(machine));
  }
  static std::unique_ptr<Database> Open(ServerLink& link) {
    auto base = link.Place().closed(std::make_shared<LockWait>());
    base->Open(false);
    return base;
  }
  std::string OnServer(const std::string& sql) const { return TestServer::Get().Ask(made_, sql); }
  static int64_t Count(Database& base) {
    return AsInt(base.OpenRecordset("SELECT COUNT(*) FROM Discotheque")->Field(0));
  }
  static void Add(Database& base, const std::string& title) {
    base.Execute("INSERT INTO Discotheque(TITRE) VALUES(?)", {title});
  }

  std::filesystem::path folder_;
  std::string made_;
};

const char kTitles[] = "SELECT string_agg(\"TITRE\", ' ' ORDER BY \"CODE\") FROM \"Discotheque\"";

TEST_F(ServerLinkTest, WhatEitherOfTwoMachinesWritesTheOtherHas) {
  const auto air = Link();
  const auto office = Link("office");
  const auto on = Open(*air);
  const auto beside = Open(*office);
  EXPECT_TRUE(Comes([&] { return air->State().reachable && office->State().reachable; }));
  EXPECT_EQ(OnServer("SELECT count(*) FROM \"Cnf\""), "1");  // the base was seen to
  Add(*on, "a");
  EXPECT_TRUE(Comes([&] { return Count(*beside) == 1; }));
  Add(*beside, "b");
  EXPECT_TRUE(Comes([&] { return Count(*on) == 2; }));
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a b"; }));
  EXPECT_TRUE(Comes([&] { return air->State().waiting == 0; }));
  EXPECT_TRUE(air->TakeLines().empty());
}

TEST_F(ServerLinkTest, AServerThatIsAwayIsToldOnceAndGetsAllOfItWhenItIsBack) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  TestServer::Get().Stop();
  Add(*on, "a");
  EXPECT_TRUE(Comes([&] { return !air->State().reachable && air->State().waiting == 1; }));
  for (const char* title : {"b", "c"}) Add(*on, title);
  EXPECT_TRUE(Comes([&] { return air->State().waiting == 3; }));
  EXPECT_EQ(Count(*on), 3);
  TestServer::Get().Start();
  EXPECT_TRUE(Comes([&] { return air->State().reachable && air->State().waiting == 0; }));
  EXPECT_EQ(OnServer(kTitles), "a b c");
  const std::vector<std::string> lines = air->TakeLines();
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_NE(lines[0].find("; the replica on this machine serves"), std::string::npos) << lines[0];
  EXPECT_NE(lines[1].find(" is reached again"), std::string::npos) << lines[1];
  EXPECT_EQ((lines[0] + lines[1]).find("secret"), std::string::npos);
}

TEST_F(ServerLinkTest, AServerThatDoesNotAnswerIsAwayToo) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  const int line = std::stoi(OnServer(
      "SELECT pid FROM pg_stat_activity WHERE application_name = 'zemoradio' AND datname = '" +
      made_ + "'"));
  kill(line, SIGSTOP);
  for (const char* title : {"a", "b"}) Add(*on, title);
  EXPECT_TRUE(Comes([&] { return !air->State().reachable; }));
  EXPECT_EQ(air->State().waiting, 2);
  std::vector<std::string> away;
  EXPECT_TRUE(Comes([&] { return !(away = air->TakeLines()).empty(); }));
  EXPECT_EQ(away, std::vector<std::string>{ServerPlace(Url()).name +
                                           " does not answer; the replica on this machine serves"});
  kill(line, SIGCONT);
  EXPECT_TRUE(Comes([&] { return air->State().reachable && air->State().waiting == 0; }));
  EXPECT_EQ(OnServer(kTitles), "a b");
  std::vector<std::string> lines;
  EXPECT_TRUE(Comes([&] { return !(lines = air->TakeLines()).empty(); }));
  EXPECT_EQ(lines, std::vector<std::string>{ServerPlace(Url()).name + " is reached again"});
}

TEST_F(ServerLinkTest, AStartNeedsNoServerWhereTheMachineHasAReplica) {
  Link();
  TestServer::Get().Stop();
  {
    const auto air = Link();
    const auto on = Open(*air);
    Add(*on, "a");
    EXPECT_FALSE(air->State().reachable);
  }
  EXPECT_EQ(ServerLink::WaitingIn(Folder("air"), ServerPlace(Url())), 1);
  TestServer::Get().Start();
  const auto air = Link();
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a"; }));
}

TEST_F(ServerLinkTest, WithoutBothTheBaseIsThereOnceTheServerIs) {
  TestServer::Get().Stop();
  const auto air = Link();
  const auto base = air->Place().closed(std::make_shared<LockWait>());
  const auto number = [&] {
    try {
      base->Open(false);
    } catch (const StoreError& error) {
      return error.Number();
    }
    return 0;
  };
  EXPECT_EQ(number(), kErrOther);
  TestServer::Get().Start();
  EXPECT_TRUE(Comes([&] { return number() == 0; }));
  EXPECT_EQ(Count(*base), 0);
}

TEST_F(ServerLinkTest, AnotherStructureOnTheServerIsTakenOverUnderTheProgram) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  ASSERT_EQ(TestServer::Get().Try(made_,
                                  "ALTER TABLE \"Variete\" ADD COLUMN \"MORE\" text; "
                                  "UPDATE \"Variete\" SET \"MORE\" = 'x'"),
            "");
  EXPECT_TRUE(Comes([&] { return on->FileIsLost(); }));
  on->Open(false);
  EXPECT_EQ(AsText(on->OpenRecordset("SELECT MORE FROM Variete")->Field(0)), "x");
  Add(*on, "a");
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a"; }));
}

TEST_F(ServerLinkTest, AReplicaThatAnotherToolLocksIsWaitedFor) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  const std::string path = Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url()));
  {
    const HeldDatabase held(path, 2000);
    TestServer::Get().Stop();
    EXPECT_TRUE(Comes([&] { return !air->State().reachable; }));
    TestServer::Get().Start();
    EXPECT_TRUE(Comes([&] { return air->TakeLines().size() == 1; }));
  }
  Add(*on, "a");
  EXPECT_TRUE(Comes([&] { return air->State().reachable && OnServer(kTitles) == "a"; }));
}

// Held by another tool for longer than a start waits, or damaged: what it holds is not thrown away.
TEST_F(ServerLinkTest, AReplicaThatCannotBeReadIsNeverReplacedByAFreshOne) {
  const std::string path = Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url()));
  Link();
  TestServer::Get().Stop();
  {
    const auto air = Link();
    Add(*Open(*air), "a");
  }
  TestServer::Get().Start();
  std::unique_ptr<ServerLink> air;
  {
    const HeldDatabase held(path, 2000);
    air = Link();
  }
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a"; }));
  air.reset();
  std::ofstream(path, std::ios::trunc)
      << "no database, and long enough to be looked at as one, or so";
  air = Link();
  EXPECT_EQ(Count(*Open(*air)), 1);
  EXPECT_TRUE(std::filesystem::exists(path + ".aside"));
}

// A writer that is killed at any moment, again and again: the server has each of its rows once.
TEST_F(ServerLinkTest, KilledAtAnyMomentNothingIsLostAndNothingComesTwice) {
  Link();
  constexpr int kRounds = 8;
  int lines[2];
  ASSERT_EQ(pipe(lines), 0);
  int stored = 0;
  for (int round = 0; round < kRounds; ++round) {
    const int child = fork();
    if (child == 0) {
      const auto air = Link();
      const auto on = Open(*air);
      for (int row = 0;; ++row) {
        Add(*on, "r");
        if (write(lines[1], "x", 1) != 1) _exit(1);
      }
    }
    char mark = 0;
    for (int row = 0; row < 5 + 3 * round; ++row) ASSERT_EQ(read(lines[0], &mark, 1), 1);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    stored += 5 + 3 * round;
  }
  close(lines[1]);
  char mark = 0;
  while (read(lines[0], &mark, 1) == 1) ++stored;
  close(lines[0]);
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable && air->State().waiting == 0; }));
  const int64_t here = Count(*on);
  EXPECT_GE(here, stored);
  EXPECT_LE(here, stored + kRounds);  // one a round that was stored and not told
  EXPECT_EQ(OnServer("SELECT count(*) FROM \"Discotheque\""), std::to_string(here));
  EXPECT_EQ(OnServer("SELECT count(DISTINCT \"CODE\") FROM \"Discotheque\""), std::to_string(here));
}

}  // namespace
}  // namespace zemo
