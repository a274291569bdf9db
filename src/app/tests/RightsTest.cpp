// `zemoradio rights`, and the program under roles of a real server that may read, or work.
#include <gtest/gtest.h>

#include "BlackBox.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

using test::TestServer;

constexpr char kDay[] = " --from 2026-11-21 --to 2026-11-21";

class RightsCommand : public BlackBox {
 protected:
  void SetUp() override {
    BlackBox::SetUp();
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    for (const std::string role : {"owner", "desk"})
      ASSERT_EQ(TestServer::Get().Try("postgres", "CREATE ROLE " + role + " LOGIN"), "");
    made_ = TestServer::Get().NewBase();
    ASSERT_EQ(TestServer::Get().Try("postgres", "ALTER DATABASE " + made_ + " OWNER TO owner"), "");
    std::filesystem::create_directory(root_ / "desk");  // its machine
    MakeStation({1, 1, 1}, true);
    const Result moved =
        Run("move --station station --machine machine --to '" + UrlOf("owner") + "'");
    ASSERT_EQ(moved.status, 0) << moved.err;
  }
  void TearDown() override {
    if (!made_.empty()) TestServer::Get().Drop(made_);
    for (const std::string role : {"owner", "desk"})
      TestServer::Get().Try("postgres", "DROP ROLE " + role);
    BlackBox::TearDown();
  }

  std::string UrlOf(const std::string& role) const { return TestServer::Get().Url(made_, role); }
  Result Give(const std::string& rights) const {
    return Run("rights --station station " + rights + " desk");
  }
  void ComeAsDesk() const { Put("station/Base.Ini", UrlOf("desk") + "\n"); }
  Result OnStation(const std::string& command) const {
    return Run(command + " --station station --machine desk");
  }
  std::string OnServer(const std::string& sql) const { return TestServer::Get().Ask(made_, sql); }
  std::string Log() const { return ReadText(root_ / "station/Messages.Txt"); }

  std::string made_;
};

TEST_F(RightsCommand, WhoReadsAsksEverythingAndStoresNothing) {
  const Result given = Give("read");
  EXPECT_EQ(given.status, 0) << given.err;
  EXPECT_EQ(given.out.rfind("desk may read postgresql://owner@/" + made_, 0), 0U) << given.out;
  ComeAsDesk();
  for (const std::string asked :
       {std::string("report") + kDay, std::string("why --code 1"), std::string("grid"),
        std::string("settings get FadeOut"), std::string("campaign list")}) {
    const Result answer = OnStation(asked);
    EXPECT_EQ(answer.status, 0) << asked << ": " << answer.err;
  }
  const Result check = OnStation("check");
  EXPECT_EQ(check.err, "");
  const Result set = OnStation("settings set FadeOut 1234");
  EXPECT_EQ(set.status, 1);
  ExpectOneError(set.err);
  EXPECT_NE(set.err.find("permission denied"), std::string::npos) << set.err;
  EXPECT_EQ(OnServer("SELECT count(*) FROM \"Cnf\" WHERE \"FadeOut\" = 1234"), "0");
}

// What it has aired waits in its folder for a role that may store it.
TEST_F(RightsCommand, AMachineWhoseRoleReadsStartsAndAirsAndKeepsItsRows) {
  ASSERT_EQ(Give("read").status, 0);
  ComeAsDesk();
  const Result air = OnStation("run --output null --for 4");
  EXPECT_EQ(air.status, 1);
  EXPECT_NE(air.err.find(" rows: they are written at the next start"), std::string::npos)
      << air.err;
  EXPECT_NE(Log().find("this machine's role on the server only reads"), std::string::npos) << Log();
  EXPECT_EQ(OnServer("SELECT count(*) FROM \"Rapport\""), "0");
  EXPECT_EQ(OnServer("SELECT count(*) FROM zemo.machines"), "0");
  Put("station/Base.Ini", UrlOf("owner") + "\n");
  ASSERT_EQ(Give("work").status, 0);
  ComeAsDesk();
  const Result later = OnStation("run --output null --for 1");
  EXPECT_EQ(later.status, 0) << later.err;
  EXPECT_NE(OnServer("SELECT count(*) FROM \"Rapport\""), "0");
}

TEST_F(RightsCommand, AMachineWhoseRoleWorksAirsSetsAndImports) {
  ASSERT_EQ(Give("work").status, 0);
  ComeAsDesk();
  const Result air = OnStation("run --output null --for 4");
  EXPECT_EQ(air.status, 0) << air.err << Log();
  EXPECT_NE(OnServer("SELECT count(*) FROM \"Rapport\""), "0");
  EXPECT_EQ(Log().find("leaves the base as it is"), std::string::npos) << Log();
  EXPECT_NE(Log().find("not compacted: "), std::string::npos) << Log();
  const Result set = OnStation("settings set FadeOut 1234");
  EXPECT_EQ(set.status, 0) << set.err;
  EXPECT_EQ(OnServer("SELECT \"FadeOut\" FROM \"Cnf\""), "1234");
  PutWav("new.wav", 2);
  const Result added = OnStation("import new.wav");
  EXPECT_EQ(added.status, 0) << added.err;
  EXPECT_EQ(OnServer("SELECT count(*) FROM \"Discotheque\""), "4");
}

// A table that a newer version has, and that only who owns the base can make.
TEST_F(RightsCommand, AMachineWhoseRoleOnlyWorksPassesOverAStructureThatIsNotWhole) {
  ASSERT_EQ(Give("work").status, 0);
  ASSERT_EQ(TestServer::Get().Try(made_, "DROP TABLE \"VT\""), "");
  ComeAsDesk();
  const Result air = OnStation("run --output null --for 4");
  EXPECT_EQ(air.status, 0) << air.err << Log();
  EXPECT_NE(OnServer("SELECT count(*) FROM \"Rapport\""), "0") << air.err << Log();
  const std::string told = "this role leaves the base as it is: ";
  ASSERT_NE(Log().find(told), std::string::npos) << Log();
  EXPECT_EQ(Log().find(told), Log().rfind(told)) << Log();
}

TEST_F(RightsCommand, WhoOwnsBringsTheBaseUpToDate) {
  Put("station/Base.Ini", UrlOf("radio") + "\n");  // who may grant it
  ASSERT_EQ(Give("own").status, 0);
  ASSERT_EQ(TestServer::Get().Try(made_, "DROP TABLE \"Playlist\""), "");
  ComeAsDesk();
  const Result air = OnStation("run --output null --for 1");
  EXPECT_EQ(air.status, 0) << air.err << Log();
  EXPECT_EQ(OnServer("SELECT tableowner FROM pg_tables WHERE tablename = 'Playlist'"), "owner");
  EXPECT_EQ(OnStation("compact").status, 0);
}

TEST_F(RightsCommand, OnlyWhoOwnsTheBaseGivesThem) {
  ASSERT_EQ(Give("work").status, 0);
  ComeAsDesk();
  const Result given = Give("own");
  EXPECT_EQ(given.status, 1);
  ExpectOneError(given.err);
  EXPECT_NE(given.err.find("only who owns the base gives rights"), std::string::npos) << given.err;
}

TEST_F(RightsCommand, AFileHasNone) {
  ASSERT_EQ(Run("move --station station --machine machine --to file").status, 0);
  const Result given = Give("read");
  EXPECT_EQ(given.status, 1);
  ExpectOneError(given.err);
  EXPECT_NE(given.err.find("is a file: its rights are the folder's"), std::string::npos);
  EXPECT_EQ(Run("rights --station station paint desk").status, 2);
}

}  // namespace
}  // namespace zemo
