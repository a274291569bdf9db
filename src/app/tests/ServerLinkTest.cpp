// The link to a real server in real time: what this machine writes gets there once, what others
// write comes here, whatever happens to the server or the program meanwhile.
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>

#include <chrono>
#include <ctime>
#include <fstream>

#include "LinkedMachines.h"
#include "store/DatabaseFiles.h"
#include "store/Recordset.h"
#include "store/StoreError.h"
#include "store/replica/Replica.h"

namespace zemo {
namespace {

class ServerLinkTest : public LinkedMachines {
 protected:
  void MoveTablesAway() const;
};

const char kTitles[] = "SELECT string_agg(\"TITRE\", ' ' ORDER BY \"CODE\") FROM \"Discotheque\"";
constexpr char kTablesThere[] = "SELECT count(*) FROM pg_tables WHERE schemaname = 'public'";

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

// By a command of another machine, which nobody's link hears of.
void ServerLinkTest::MoveTablesAway() const {
  const auto base = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
  base->Open(false);
  base->BeginTrans();
  base->SetTablesAside("aside");
  base->CommitTrans();
}

constexpr char kNoStation[] = " is no station's base; the replica on this machine serves";

TEST_F(ServerLinkTest, AMachineThatWasCutOffWhileTheBaseWasMovedAwayKeepsItsReplica) {
  const std::string path = Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url()));
  {
    const auto air = Link();
    Add(*Open(*air), "a");
    ASSERT_TRUE(Comes([&] { return air->State().reachable && OnServer(kTitles) == "a"; }));
  }
  Replica(path, 2000).SetSeenToBy("an older program");
  MoveTablesAway();
  const auto air = Link();
  std::vector<std::string> lines;
  ASSERT_TRUE(Comes([&] { return !(lines = air->TakeLines()).empty(); }));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_NE(lines[0].find(kNoStation), std::string::npos) << lines[0];
  const auto on = Open(*air);
  EXPECT_EQ(Count(*on), 1);
  Add(*on, "b");
  EXPECT_TRUE(Comes([&] { return air->State().waiting == 1; }));
  EXPECT_FALSE(air->State().reachable || air->State().onlyReads);
  EXPECT_EQ(OnServer(kTablesThere), "0");
}

// What it still has to send is no row that the server refuses.
TEST_F(ServerLinkTest, ABaseThatIsMovedAwayUnderTheLinkIsOneAgainOnceItsTablesAreBack) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  MoveTablesAway();
  Add(*on, "a");
  ASSERT_TRUE(Comes([&] { return !air->State().reachable; }));
  EXPECT_TRUE(Comes([&] { return air->State().waiting == 1; }));
  EXPECT_EQ(OnServer(kTablesThere), "0");
  EXPECT_EQ(Count(*on), 1);
  ASSERT_EQ(TestServer::Get().Try(
                made_,
                "DO $$ DECLARE name text; BEGIN FOR name IN SELECT tablename FROM pg_tables WHERE "
                "schemaname = 'aside' LOOP EXECUTE format('ALTER TABLE aside.%I SET SCHEMA "
                "public', name); END LOOP; END $$"),
            "");
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a" && air->State().reachable; }));
  EXPECT_TRUE(Comes([&] { return on->FileIsLost(); }));  // a fresh one has taken its place
  on->Open(false);
  EXPECT_EQ(Count(*on), 1);
  EXPECT_FALSE(std::filesystem::exists(Folder("air") + "/RefusedRows.Txt"));
}

TEST_F(ServerLinkTest, AFirstStartOnAnEmptiedBaseMakesNone) {
  MoveTablesAway();
  const auto air = Link();
  std::vector<std::string> lines;
  ASSERT_TRUE(Comes([&] { return !(lines = air->TakeLines()).empty(); }));
  EXPECT_NE(lines[0].find(" is no station's base"), std::string::npos) << lines[0];
  EXPECT_FALSE(
      std::filesystem::exists(Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url()))));
  EXPECT_EQ(OnServer(kTablesThere), "0");
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

int64_t MsOf(const std::function<void()>& work) {
  const auto began = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               began)
      .count();
}

constexpr int64_t kEndMs = 2500;  // two seconds for what waits, and what a loaded machine takes

// It takes connections and says nothing, as one whose processes hang.
TEST_F(ServerLinkTest, TheEndDoesNotWaitForAConnectionThatIsJustBeingMade) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), size), 0);
  ASSERT_EQ(listen(listener, 5), 0);
  getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
  const std::string silent =
      "postgresql://radio@127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/base";
  Link();
  std::filesystem::copy_file(Folder("air") + '/' + ServerLink::FileName(ServerPlace(Url())),
                             Folder("air") + '/' + ServerLink::FileName(ServerPlace(silent)));
  auto air = std::make_unique<ServerLink>(ServerPlace(silent), Folder("air"));
  const int line = accept(listener, nullptr, nullptr);
  ASSERT_GE(line, 0);
  EXPECT_LT(MsOf([&] { air.reset(); }), kEndMs);
  close(line);
  close(listener);
}

// Another one than that on which changes are told: the base is seen to, or read over.
TEST_F(ServerLinkTest, TheEndDoesNotWaitForTheOtherConnectionsEither) {
  TestServer::Get().Stop();
  auto air = Link();
  TestServer::Get().Start();
  const auto writer = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
  writer->Open(false);
  writer->BeginTrans();    // a tool that keeps all others off
  ASSERT_TRUE(Comes([&] {  // the tool, the link, and its second connection
    return OnServer("SELECT count(*) FROM pg_stat_activity WHERE datname = '" + made_ +
                    "' AND application_name = 'zemoradio'") == "3";
  }));
  EXPECT_LT(MsOf([&] { air.reset(); }), kEndMs);
}

constexpr char kBrokenIndexes[] = "SELECT count(*) FROM pg_index WHERE NOT indisvalid";

// Somebody reads, in one transaction that goes on.
TEST_F(ServerLinkTest, ACompactionThatWaitsKeepsTheLinkFromNothingAndIsTriedOnce) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  const auto reader = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
  reader->Open(false);
  reader->BeginReading();
  EXPECT_EQ(Count(*reader), 0);
  on->CompactInPlace();
  ASSERT_TRUE(Comes([&] {
    return OnServer(
               "SELECT count(*) FROM pg_stat_activity WHERE state = 'active' AND query LIKE "
               "'REINDEX%'") == "1";
  }));
  Add(*on, "a");
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "a"; }, std::chrono::seconds(5)));
  std::vector<std::string> lines;
  ASSERT_TRUE(Comes([&] { return !(lines = air->TakeLines()).empty(); }));
  EXPECT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].substr(0, 15), "not compacted: ");
  EXPECT_TRUE(air->State().reachable);
  EXPECT_EQ(OnServer(kBrokenIndexes), "1");
  reader->Close();
  on->CompactInPlace();
  EXPECT_TRUE(Comes([&] { return OnServer(kBrokenIndexes) == "0"; }));
  EXPECT_TRUE(air->TakeLines().empty());
}

// As another tool makes them that is interrupted, and as this program did: of a table, and of what
// it keeps its long values in.
TEST_F(ServerLinkTest, ACompactionTakesAwayWhatAnInterruptedOneLeft) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  const auto reader = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
  reader->Open(false);
  reader->BeginReading();
  EXPECT_EQ(Count(*reader), 0);
  ASSERT_EQ(TestServer::Get().Try(
                made_, "ALTER ROLE radio IN DATABASE " + made_ + " SET lock_timeout = '50ms'"),
            "");
  EXPECT_NE(TestServer::Get().Try(made_, "REINDEX TABLE CONCURRENTLY \"Discotheque\""), "");
  ASSERT_EQ(OnServer("SELECT count(DISTINCT relnamespace) FROM pg_index JOIN pg_class ON oid = "
                     "indexrelid WHERE NOT indisvalid"),
            "2");
  reader->Close();
  on->CompactInPlace();
  EXPECT_TRUE(Comes([&] { return OnServer(kBrokenIndexes) == "0"; }));
  EXPECT_TRUE(air->TakeLines().empty());
}

// A machine whose role worked, and only reads since something waits in its replica.
class ReadersLinkTest : public LinkedMachines {
 protected:
  void SetUp() override {
    LinkedMachines::SetUp();
    if (IsSkipped()) return;
    TestServer::Get().Try(made_, "CREATE ROLE reader LOGIN");  // there already, from another test
    Give("work");
    link_ = MakeLink();
    ASSERT_TRUE(Comes([&] { return link_->State().reachable; }));
    TestServer::Get().Stop();
    Add(*Open(*link_), "waits");
    link_.reset();
    TestServer::Get().Start();
    Give("read");
    link_ = MakeLink();
    base_ = Open(*link_);
  }
  void TearDown() override {
    base_.reset();
    link_.reset();
    LinkedMachines::TearDown();
  }
  std::unique_ptr<ServerLink> MakeLink() const {
    return std::make_unique<ServerLink>(ServerPlace(TestServer::Get().Url(made_, "reader")),
                                        Folder("desk"));
  }
  void Give(const std::string& rights) const {
    ASSERT_EQ(TestServer::Get().Try(made_, "SELECT zemo.give_rights('reader', '" + rights + "')"),
              "");
  }
  // Until the link, of which nobody wants anything, asks the server whether it is there.
  void AwaitItsNextQuestion() const {
    const std::string asked =
        "(SELECT max(query_start) FROM pg_stat_activity WHERE usename = 'reader')";
    ASSERT_EQ(TestServer::Get().Try(made_, "DO $$ DECLARE before timestamptz := " + asked +
                                               "; BEGIN FOR i IN 1..400 LOOP "
                                               "PERFORM pg_sleep(0.05), pg_stat_clear_snapshot(); "
                                               "IF " +
                                               asked +
                                               " > before THEN RETURN; END IF; END LOOP; "
                                               "RAISE EXCEPTION 'it does not ask'; END $$"),
              "");
  }
  std::unique_ptr<ServerLink> link_;
  std::unique_ptr<Database> base_;
};

TEST_F(ReadersLinkTest, ReadsOnAndRestsInBetween) {
  ASSERT_TRUE(Comes([&] { return link_->State().reachable; }));
  OnServer("INSERT INTO \"Discotheque\" (\"TITRE\") VALUES ('theirs')");
  EXPECT_TRUE(Comes([&] { return Count(*base_) == 2; }));
  EXPECT_TRUE(link_->State().onlyReads);
  EXPECT_EQ(link_->State().waiting, 1);
  const clock_t before = clock();  // of the processor, by all threads
  AwaitItsNextQuestion();
  EXPECT_LT(clock() - before, CLOCKS_PER_SEC / 2);
  EXPECT_EQ(OnServer(kTitles), "theirs");
  EXPECT_TRUE(link_->TakeLines().empty());
}

// What came since the structure changed cannot be told, and a fresh replica would not have what
// waits.
TEST_F(ReadersLinkTest, KeepsItsReplicaWhereItIsToBeMadeAnewUntilItMaySendAgain) {
  ASSERT_TRUE(Comes([&] { return link_->State().reachable; }));
  ASSERT_EQ(TestServer::Get().Try(made_, "ALTER TABLE \"Variete\" ADD COLUMN \"MORE\" text"), "");
  std::vector<std::string> lines;
  ASSERT_TRUE(Comes([&] { return !(lines = link_->TakeLines()).empty(); }));
  EXPECT_EQ(lines, std::vector<std::string>{
                       "what this machine has to send keeps its replica as it is: it needs a role "
                       "that writes, and a program as new as the base; the replica on this machine "
                       "serves"});
  EXPECT_EQ(Count(*base_), 1);
  EXPECT_EQ(link_->State().waiting, 1);
  Give("work");
  EXPECT_TRUE(Comes([&] { return OnServer(kTitles) == "waits" && base_->FileIsLost(); }));
  base_->Open(false);
  EXPECT_EQ(Count(*base_), 1);
  EXPECT_TRUE(Comes([&] { return link_->State().reachable && link_->State().waiting == 0; }));
}

// What was asked for while the server was not there.
TEST_F(ServerLinkTest, WhatFailsOnceIsDoneOnTheNextLine) {
  const auto air = Link();
  const auto on = Open(*air);
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  ASSERT_EQ(TestServer::Get().Try(made_,
                                  "INSERT INTO \"Rapport\" (\"CODE\", \"TITRE\") VALUES (900000, "
                                  "'another machine on air'); ALTER FUNCTION zemo.reserve(text, "
                                  "bigint) RENAME TO gone"),
            "");
  const auto count = [&] {
    return AsInt(on->OpenRecordset("SELECT COUNT(*) FROM Rapport")->Field(0));
  };
  ASSERT_TRUE(Comes([&] { return count() == 1; }));
  air->GoesOnAir();
  ASSERT_TRUE(Comes([&] { return !air->State().reachable; }));
  ASSERT_EQ(
      TestServer::Get().Try(made_, "ALTER FUNCTION zemo.gone(text, bigint) RENAME TO reserve"), "");
  ASSERT_TRUE(Comes([&] { return air->State().reachable; }));
  on->Execute("INSERT INTO Rapport(TITRE) VALUES('T')");
  EXPECT_GT(on->LastInsertCode(), 900000);
}

}  // namespace
}  // namespace zemo
