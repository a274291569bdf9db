// Two machines on one server, each with a replica, and a program that works on the server itself:
// all three come to the same, whoever was away meanwhile.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>
#include <map>
#include <random>

#include "store/CarryOver.h"
#include "store/postgres/tests/EngineFixture.h"
#include "store/replica/ReplicaExchange.h"

namespace zemo {
namespace {

class Machine {
 public:
  Machine(const std::string& name, const std::string& url, const std::filesystem::path& folder)
      : name_(name), url_(url), path_((folder / (name + ".MDB")).string()) {
    Make();
    Connect();
    Meet();
    OpenBase();
  }

  Database& Db() { return *db_; }
  Replica& Copy() { return *replica_; }
  ReplicaExchange& Steps() { return *exchange_; }
  ServerFeed& Feed() { return *feed_; }
  const Strings& Refused() const { return refused_; }
  const Strings& Told() const { return told_; }
  const std::string& Path() const { return path_; }
  int Stores() const { return stores_; }
  int Compactions() const { return compactions_; }

  // All that the two have to tell each other, as its keeper does it.
  void Meet() {
    const bool known = exchange_->Begin();
    exchange_->Send();
    if (!known || !exchange_->TakeIn()) MakeAnew();
    exchange_->GiveNumbers();
  }
  void Send() { exchange_->Send(); }
  void Connect() {
    feed_ = std::make_unique<ServerFeed>(url_, std::make_shared<LockWait>(2000));
    exchange_ = std::make_unique<ReplicaExchange>(
        *replica_, *feed_,
        [this](const RefusedRow& row, const std::string& why) {
          refused_.push_back(row.table + '|' + row.values + '|' + why);
        },
        [this](const std::string& line) { told_.push_back(line); });
  }
  void MakeAnew() {
    const std::unique_ptr<Replica> former = std::move(replica_);
    db_.reset();
    const std::string old = path_;
    path_ += '+';
    Make();
    replica_->TakeOver(*former);
    Connect();
    OpenBase();
    std::filesystem::remove(old);
  }

  // With the file changed in between, by whatever `change` does to it.
  void Restart(const std::function<void()>& change) {
    db_.reset();
    exchange_.reset();
    replica_.reset();
    change();
    replica_ = std::make_unique<Replica>(path_, 2000);
    Connect();
    OpenBase();
  }

  Strings Rows(const std::string& sql) {
    Strings rows;
    db_->ReadRows(sql, {}, [&rows](const RowView& row) { rows.emplace_back(row.Text(0)); });
    return rows;
  }

 private:
  void Make() {
    ServerFeed feed(url_, std::make_shared<LockWait>(2000));
    const FeedPlace place = feed.Now();
    const auto server = ClosedPostgresDatabase(url_, std::make_shared<LockWait>(2000));
    server->Open(false);
    Replica::Make(*server, place, name_, path_);
    replica_ = std::make_unique<Replica>(path_, 2000);
  }
  void OpenBase() {
    db_ = DBEngine::ClosedReplica(
        path_, std::make_shared<LockWait>(2000),
        {.stores = [this] { ++stores_; }, .compact = [this] { ++compactions_; }});
    db_->Open(false);
  }

  const std::string name_, url_;
  std::string path_;
  std::unique_ptr<Replica> replica_;
  std::unique_ptr<ServerFeed> feed_;
  std::unique_ptr<ReplicaExchange> exchange_;
  std::unique_ptr<Database> db_;
  Strings refused_, told_;
  int stores_ = 0, compactions_ = 0;
};

class ReplicaTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!test::TestServer::Get().Missing().empty())
      GTEST_SKIP() << test::TestServer::Get().Missing();
    server_ = std::make_unique<EngineBase>(Engine::kServer);
    folder_ =
        std::filesystem::path(testing::TempDir()) / ("zemo_replica_" + std::to_string(getpid()));
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    Server().Execute("INSERT INTO Discotheque(AUTEUR, TITRE) VALUES('ABBA', 'SOS')");
    air_ = std::make_unique<Machine>("air", Url(), folder_);
    office_ = std::make_unique<Machine>("office", Url(), folder_);
  }
  void TearDown() override {
    air_.reset();
    office_.reset();
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }

  std::string Url() const { return test::TestServer::Get().Url(server_->Name()); }
  // The server's own SQL, as another tool's; what is wrong with it.
  std::string ByHand(const std::string& sql) const {
    return test::TestServer::Get().Try(server_->Name(), sql);
  }
  // A role that works in the base, and owns nothing.
  void MakeWorker() const {
    ByHand("CREATE ROLE worker LOGIN");  // there already, from another test
    EXPECT_EQ(ByHand("SELECT zemo.give_rights('worker', 'work')"), "");
  }
  std::string WorkersUrl() const { return test::TestServer::Get().Url(server_->Name(), "worker"); }
  Database& Server() { return server_->Db(); }
  Machine& Air() { return *air_; }
  Machine& Office() { return *office_; }
  Strings OnServer(const std::string& sql) {
    Strings rows;
    Server().ReadRows(sql, {}, [&rows](const RowView& row) { rows.emplace_back(row.Text(0)); });
    return rows;
  }
  std::filesystem::path folder_;

  void ExpectAllAlike() {
    for (const TableDef& table : SchemaTables()) ExpectAlike(table.Name);
  }
  void ExpectAlike(const std::string& table) {
    const Strings server = All(Server(), table);
    EXPECT_EQ(All(Air().Db(), table), server) << table;
    EXPECT_EQ(All(Office().Db(), table), server) << table;
  }

 private:
  static Strings All(Database& base, const std::string& table) {
    Strings rows;
    const size_t fields = base.Tables().Item(table).Fields.size();
    base.ReadTable(table, [&](const RowView& row) {
      std::string line;
      for (int i = 0; i < static_cast<int>(fields); ++i) {
        const RowView::Kind kind = row.KindOf(i);
        line += '|' + (kind == RowView::Kind::kNull   ? "-"
                       : kind == RowView::Kind::kReal ? AsText(row.Real(i))
                                                      : std::string(row.Text(i)));
      }
      rows.push_back(line);
    });
    return rows;
  }

  std::unique_ptr<EngineBase> server_;
  std::unique_ptr<Machine> air_, office_;
};

const char kTitles[] = "SELECT TITRE FROM Discotheque ORDER BY TITRE";

TEST_F(ReplicaTest, HoldsTheWholeBaseAndShowsNothingOfItsOwn) {
  EXPECT_EQ(Air().Rows(kTitles), Strings{"SOS"});
  EXPECT_EQ(Air().Db().Tables().Count(), Server().Tables().Count());
  EXPECT_EQ(Air().Rows("SELECT HEURE FROM Toph").size(), 24U);
  ExpectAllAlike();
}

TEST_F(ReplicaTest, WhatOneMachineWritesTheOthersHave) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'Waterloo' WHERE TITRE = 'SOS'");
  Air().Db().Execute("INSERT INTO Discotheque(AUTEUR, TITRE) VALUES('Queen', 'Jealousy')");
  EXPECT_EQ(OnServer(kTitles), Strings{"SOS"});
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"Jealousy", "Waterloo"}));
  Office().Meet();
  EXPECT_EQ(Office().Rows(kTitles), (Strings{"Jealousy", "Waterloo"}));
  Office().Db().Execute("DELETE * FROM Discotheque WHERE TITRE = 'Jealousy'");
  Office().Meet();
  Air().Meet();
  EXPECT_EQ(Air().Rows(kTitles), Strings{"Waterloo"});
  EXPECT_EQ(Air().Copy().Waiting(), 0);
  ExpectAllAlike();
}

TEST_F(ReplicaTest, WhatAnyProgramWritesOnTheServerIsTakenIn) {
  Server().Execute("UPDATE Cnf SET LANGUE = 2");
  Server().Execute("DELETE * FROM Toph WHERE HEURE > 3");
  EXPECT_EQ(ByHand("INSERT INTO \"Discotheque\" (\"TITRE\") VALUES ('by hand')"), "");
  Air().Meet();
  Office().Meet();
  EXPECT_EQ(Air().Rows("SELECT LANGUE FROM Cnf"), Strings{"2"});
  EXPECT_EQ(Air().Rows("SELECT HEURE FROM Toph").size(), 4U);
  ExpectAllAlike();
}

TEST_F(ReplicaTest, NewRowsGetNumbersThatNobodyElseGets) {
  for (Machine* machine : {&Air(), &Office()}) {
    for (int i = 0; i < 3; ++i) machine->Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('T')");
    const int64_t last = machine->Db().LastInsertCode();
    EXPECT_EQ(machine->Rows("SELECT TITRE FROM Discotheque WHERE CODE = " + std::to_string(last)),
              Strings{"T"});
    const auto cursor = machine->Db().OpenTable("Discotheque");
    cursor->AddNew();
    cursor->Set("TITRE", std::string("C"));
    cursor->Update();
    EXPECT_EQ(machine->Db().LastInsertCode(), last + 1);
  }
  Server().Execute("INSERT INTO Discotheque(TITRE) VALUES('S')");
  Air().Meet();
  Office().Meet();
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles).size(), 10U);
  ExpectAllAlike();
}

// A row that comes back under the number that it had.
TEST_F(ReplicaTest, ARowKeepsTheNumberThatItIsGiven) {
  Air().Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('a', 7)");
  EXPECT_EQ(Air().Db().LastInsertCode(), 7);
  Air().Meet();
  Air().Db().Execute("DELETE * FROM VT WHERE CODE = 7");
  Air().Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('b', 7)");
  Air().Meet();
  EXPECT_EQ(OnServer("SELECT FILENAME FROM VT WHERE CODE = 7"), Strings{"b"});
  Office().Meet();
  ExpectAllAlike();
}

TEST_F(ReplicaTest, TwoWhoChangeOneRowEachKeepTheirFields) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'one'");
  Office().Db().Execute("UPDATE Discotheque SET AUTEUR = 'two'");
  Air().Meet();
  Office().Meet();
  Air().Meet();
  EXPECT_EQ(OnServer("SELECT TITRE FROM Discotheque"), Strings{"one"});
  EXPECT_EQ(OnServer("SELECT AUTEUR FROM Discotheque"), Strings{"two"});
  ExpectAllAlike();
}

TEST_F(ReplicaTest, ALetterInAnotherCaseIsAnotherValue) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'sos'");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), Strings{"sos"});
}

TEST_F(ReplicaTest, AWriteThatIsTakenBackIsNotQueued) {
  Air().Db().BeginTrans();
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('gone')");
  Air().Db().RollbackTrans();
  EXPECT_EQ(Air().Copy().Waiting(), 0);
  Air().Db().Execute("UPDATE Discotheque SET TITRE = TITRE");
  EXPECT_EQ(Air().Copy().Waiting(), 0);
}

// The answer to the sending was lost on the way.
TEST_F(ReplicaTest, WhatTheServerHasTakenIsNotTakenTwice) {
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('once')");
  const auto queued = Air().Copy().Queued(1000);
  ASSERT_TRUE(queued);
  ServerFeed feed(Url(), std::make_shared<LockWait>(2000));
  feed.Take("air", queued->last, queued->changes);
  feed.Take("air", queued->last, queued->changes);
  EXPECT_EQ(Air().Copy().Waiting(), 1);
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'later' WHERE TITRE = 'once'");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"later", "SOS"}));
  EXPECT_EQ(Air().Copy().Waiting(), 0);
}

TEST_F(ReplicaTest, NothingIsTakenInOverWhatWaits) {
  Server().Execute("UPDATE Discotheque SET TITRE = 'server'");
  ServerFeed feed(Url(), std::make_shared<LockWait>(2000));
  const ServerChanges changes = feed.Behind(Air().Copy().Place(), 100);
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'here'");
  EXPECT_FALSE(Air().Copy().TakeIn(changes.tables, changes.place));
  EXPECT_EQ(Air().Rows(kTitles), Strings{"here"});
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), Strings{"here"});
}

TEST_F(ReplicaTest, ARowThatTheServerDoesNotTakeIsToldAndTheOthersGo) {
  EXPECT_EQ(ByHand("ALTER TABLE \"Discotheque\" ADD CHECK (\"TITRE\" <> 'bad')"), "");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('good')");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('bad')");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('better')");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"better", "good", "SOS"}));
  ASSERT_EQ(Air().Refused().size(), 1U);
  EXPECT_EQ(Air().Refused()[0].substr(0, 12), "Discotheque|");
  EXPECT_NE(Air().Refused()[0].find("\"TITRE\":\"bad\""), std::string::npos);
  Air().Meet();
  Office().Meet();
  ExpectAllAlike();
}

// As a restore over the base does it for some seconds.
TEST_F(ReplicaTest, ABaseWithoutItsFunctionsRefusesNothing) {
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('kept')");
  EXPECT_EQ(ByHand("ALTER FUNCTION zemo.take(text, bigint, jsonb) RENAME TO gone"), "");
  EXPECT_NE(ErrorOf([&] { Air().Send(); }), 0);
  EXPECT_TRUE(Air().Refused().empty());
  EXPECT_EQ(ByHand("ALTER FUNCTION zemo.gone(text, bigint, jsonb) RENAME TO take"), "");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"kept", "SOS"}));
}

TEST_F(ReplicaTest, ABaseWhoseTablesWereMovedAwayRefusesNothing) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'waits'");
  Server().BeginTrans();
  dynamic_cast<ServerDatabase&>(Server()).SetTablesAside("aside");
  Server().CommitTrans();
  EXPECT_EQ(ErrorOf([&] { Air().Send(); }), kErrNoSuchTable);
  EXPECT_EQ(Air().Refused(), Strings{});
  EXPECT_EQ(Air().Copy().Waiting(), 1);
}

TEST_F(ReplicaTest, TwoRowsMayExchangeWhatOnlyOneCanHave) {
  EXPECT_EQ(ByHand("CREATE UNIQUE INDEX once ON \"Variete\" (\"POURCENT\")"), "");
  EXPECT_EQ(ErrorOf([&] {
              Server().BeginTrans();
              Server().Execute("UPDATE Variete SET POURCENT = 50 WHERE VARIETE = 'NATIONAL'");
              Server().Execute("UPDATE Variete SET POURCENT = 40 WHERE VARIETE = 'INTERNATIONAL'");
              Server().Execute("UPDATE Variete SET POURCENT = 60 WHERE VARIETE = 'NATIONAL'");
              Server().CommitTrans();
            }),
            0);
  Air().Meet();
  EXPECT_EQ(Air().Rows("SELECT POURCENT FROM Variete WHERE VARIETE = 'NATIONAL'"), Strings{"60"});
}

TEST_F(ReplicaTest, AnotherBaseOrAnotherStructureMakesItAnew) {
  EXPECT_EQ(ByHand("ALTER TABLE \"Discotheque\" ADD COLUMN \"MORE\" text"), "");
  EXPECT_EQ(ByHand("UPDATE \"Discotheque\" SET \"MORE\" = 'x'"), "");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('kept')");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"kept", "SOS"}));
  EXPECT_EQ(Air().Rows("SELECT MORE FROM Discotheque WHERE TITRE = 'SOS'"), Strings{"x"});
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('numbered on')");
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles).size(), 3U);
}

TEST_F(ReplicaTest, ChangesThatTheServerHasForgottenMakeItAnew) {
  Server().Execute("UPDATE Discotheque SET TITRE = 'first'");
  Air().Meet();
  const FeedPlace place = Air().Copy().Place();
  Server().Execute("UPDATE Discotheque SET TITRE = 'second'");
  Server().Execute("UPDATE Discotheque SET TITRE = 'third'");
  ServerFeed feed(Url(), std::make_shared<LockWait>(2000));
  EXPECT_TRUE(feed.GoesOnFrom(place));
  feed.ForgetChanges(0);
  EXPECT_FALSE(feed.GoesOnFrom(place));
  Air().Meet();
  EXPECT_EQ(Air().Rows(kTitles), Strings{"third"});
}

TEST_F(ReplicaTest, OfWhomOnlyReadsNothingIsStored) {
  Air().Copy().SetWriting(Writing::kRoleReads, {});
  std::string why;
  EXPECT_EQ(ErrorOf([&] { Air().Db().Execute("UPDATE Discotheque SET TITRE = 'x'"); }, &why),
            kErrReadOnly);
  EXPECT_EQ(why, "this machine's role on the server only reads");
  EXPECT_EQ(ErrorOf([&] { Air().Db().Execute("INSERT INTO Toph(HEURE) VALUES(5)"); }),
            kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { Air().Db().Execute("DELETE * FROM Toph"); }), kErrReadOnly);
  EXPECT_EQ(Air().Rows(kTitles), Strings{"SOS"});
}

TEST_F(ReplicaTest, WithoutNumbersARowIsKeptForLater) {
  Air().Copy().DropNumbers("Rapport");
  Air().Copy().AddNumbers("Rapport", 900, 901);
  const auto insert = [&] { Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('T')"); };
  EXPECT_EQ(ErrorOf(insert), 0);
  EXPECT_EQ(ErrorOf(insert), 0);
  std::string why;
  EXPECT_EQ(ErrorOf(insert, &why), kErrReadOnly);
  EXPECT_EQ(why, "the server is away, and all the numbers that it gave for new rows are used up");
  EXPECT_EQ(Air().Rows("SELECT CODE FROM Rapport"), (Strings{"900", "901"}));
  Air().Meet();
  EXPECT_EQ(ErrorOf(insert), 0);
}

// Another machine was on air since.
TEST_F(ReplicaTest, AReportGoesOnBehindWhatAnotherMachineHasWritten) {
  Office().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('T')");
  const int64_t first = Office().Db().LastInsertCode();
  Office().Meet();
  Air().Meet();
  Air().Steps().GiveFreshNumbers("Rapport");
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('T')");
  EXPECT_GT(Air().Db().LastInsertCode(), first);
}

TEST_F(ReplicaTest, ItsKeeperHearsOfStoresAndCompactions) {
  const int before = Air().Stores();
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'x'");
  EXPECT_EQ(Air().Stores(), before + 1);
  EXPECT_TRUE(Air().Db().CompactInPlace());
  EXPECT_EQ(Air().Compactions(), 1);
  EXPECT_EQ(ErrorOf([&] { Air().Db().Tables().Delete("VT"); }), kErrReadOnly);
}

// The queue goes out in parts: a row that one part removes and the next one makes again.
TEST_F(ReplicaTest, ARowThatIsMadeAgainBehindACutOfTheQueueIsNotRefused) {
  Air().Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('a', 7)");
  Air().Meet();
  EXPECT_EQ(ByHand("ALTER TABLE \"Discotheque\" ADD CHECK (\"TITRE\" <> 'bad')"), "");
  Air().Db().Execute("DELETE * FROM VT WHERE CODE = 7");
  Air().Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('b', 7)");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('bad')");
  Air().Meet();
  EXPECT_EQ(Air().Refused().size(), 1U);
  EXPECT_EQ(OnServer("SELECT FILENAME FROM VT WHERE CODE = 7"), Strings{"b"});
}

// After a restore the server sets numbers apart once more that it had set apart before.
TEST_F(ReplicaTest, AReplicaOfAnotherBaseGivesNoNumbersOfTheFormerOne) {
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('before')");
  const int64_t before = Air().Db().LastInsertCode();
  Air().Meet();
  EXPECT_EQ(ByHand("UPDATE zemo.base SET identity = 'restored'"), "");
  Air().Meet();
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('behind')");
  EXPECT_GT(Air().Db().LastInsertCode(), before + 50000);
}

TEST_F(ReplicaTest, AMachineThatOnlyReadsNeedsNoNumbers) {
  Air().Copy().SetWriting(Writing::kRoleReads, {});
  Air().Copy().DropNumbers("Rapport");
  Air().Steps().GiveNumbers();
  Air().Steps().GiveFreshNumbers("Rapport");
  EXPECT_EQ(Air().Copy().NumbersLeft("Rapport"), 0);
}

TEST_F(ReplicaTest, ACopyOfItMadePlainIsABaseAsAnyOther) {
  Office().Copy().DropNumbers("Rapport");  // others than the file itself would give
  Office().Copy().AddNumbers("Rapport", 70000, 70100);
  Office().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('removed')");
  Office().Db().Execute("DELETE * FROM Rapport");
  const std::string path = Office().Path() + ".copy";
  std::filesystem::copy_file(Office().Path(), path);
  Replica::MakePlain(path);
  EXPECT_FALSE(Replica::IsThere(path));
  const auto plain = DBEngine::OpenDatabase(path);
  EXPECT_EQ(
      plain->OpenRecordset("SELECT name FROM sqlite_master WHERE name LIKE 'zemo*'")->RecordCount(),
      0);
  EXPECT_EQ(plain->Tables().Count(), Server().Tables().Count());
  plain->Execute("INSERT INTO Rapport(TITRE) VALUES('new')");
  EXPECT_EQ(plain->LastInsertCode(), 70001);  // the removed one's is not given again
  plain->Execute("UPDATE Discotheque SET TITRE = 'new'");
  plain->Tables().DeleteField("VT", "LIBELLE");
}

TEST_F(ReplicaTest, ACopyTakesInWhatIsBehindBesideWhatItCannotSend) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'here'");
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('new here')");
  Server().Execute("UPDATE Discotheque SET TITRE = 'server'");
  Server().Execute("INSERT INTO Discotheque(TITRE) VALUES('new there')");
  const ServerChanges changes = Air().Feed().Behind(Air().Copy().Place(), 100);
  Air().Copy().TakeInBesideQueue(changes.tables, changes.place);
  EXPECT_EQ(Air().Rows(kTitles), (Strings{"here", "new here", "new there"}));
  EXPECT_EQ(Air().Copy().Place(), changes.place);
}

// As a machine folder that is restored from a backup has it.
TEST_F(ReplicaTest, AnOlderStateThatWasPutBackLosesNothingThatIsWrittenInIt) {
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('first')");
  Air().Meet();
  const std::string old = Air().Path() + ".old";
  Air().Restart([&] { std::filesystem::copy_file(Air().Path(), old); });
  for (const char* title : {"second", "third", "fourth"})
    Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES(?)", {title});
  Air().Meet();
  Air().Restart([&] { std::filesystem::rename(old, Air().Path()); });
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('after')");
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'after'");
  Air().Meet();
  EXPECT_EQ(OnServer("SELECT TITRE FROM Rapport ORDER BY TITRE"),
            (Strings{"after", "first", "fourth", "second", "third"}));
  EXPECT_EQ(OnServer(kTitles), Strings{"after"});
  EXPECT_EQ(Air().Refused(), Strings{});
  EXPECT_EQ(Air().Told(), Strings{"the replica of this machine was put back to an older state: "
                                  "what was written in it since is sent"});
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('and on')");
  Air().Meet();
  Office().Meet();
  EXPECT_EQ(OnServer("SELECT TITRE FROM Rapport").size(), 6U);
  EXPECT_EQ(Air().Told().size(), 1U);
  ExpectAllAlike();
}

// What the older state had still to send was sent since.
TEST_F(ReplicaTest, WhatAnOlderStateHadInItsQueueComesNotTwice) {
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('once')");
  const std::string old = Air().Path() + ".old";
  Air().Restart([&] { std::filesystem::copy_file(Air().Path(), old); });
  Air().Db().Execute("INSERT INTO Rapport(TITRE) VALUES('twice')");
  Air().Meet();
  Air().Restart([&] { std::filesystem::rename(old, Air().Path()); });
  Air().Meet();
  EXPECT_EQ(OnServer("SELECT TITRE FROM Rapport ORDER BY TITRE"), (Strings{"once", "twice"}));
  EXPECT_EQ(Air().Refused(), Strings{});
  Office().Meet();
  ExpectAllAlike();
}

TEST_F(ReplicaTest, InfinityIsAValueAndAZeroCharacterIsRefused) {
  const auto cursor = Air().Db().OpenTable("Discotheque");
  cursor->Edit();
  cursor->Set("LASTDIFF", std::numeric_limits<double>::infinity());
  cursor->Update();
  cursor->AddNew();
  cursor->Set("LASTDIFF", -std::numeric_limits<double>::infinity());
  cursor->Update();
  Air().Meet();
  Office().Meet();
  EXPECT_EQ(ByHand("DO $$ BEGIN ASSERT (SELECT min(\"LASTDIFF\") = '-Infinity' AND "
                   "max(\"LASTDIFF\") = 'Infinity' FROM \"Discotheque\"); END $$"),
            "");
  ExpectAllAlike();
  cursor->AddNew();
  cursor->Set("TITRE", std::string("a\0b", 3));
  cursor->Update();
  Air().Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('good')");
  Air().Meet();
  ASSERT_EQ(Air().Refused().size(), 1U);
  EXPECT_NE(Air().Refused()[0].find("a\\u0000b"), std::string::npos) << Air().Refused()[0];
  EXPECT_EQ(OnServer("SELECT TITRE FROM Discotheque WHERE TITRE = 'good'").size(), 1U);
}

// A tool's own, beside the station's: the machine works, and what it may not write it does not.
TEST_F(ReplicaTest, ATableThatTheRoleDoesNotWriteRefusesItsOwnRowsAlone) {
  MakeWorker();
  ASSERT_EQ(ByHand("CREATE TABLE \"Tool\" (\"NAME\" text, \"ID\" int GENERATED BY DEFAULT AS "
                   "IDENTITY); CREATE TABLE \"Hidden\" (LIKE \"Tool\" INCLUDING ALL); "
                   "CREATE TABLE \"Numberless\" (\"NAME\" text); "
                   "INSERT INTO \"Tool\" VALUES ('theirs'); "
                   "REVOKE ALL ON \"Tool\", \"Hidden\" FROM worker; "
                   "GRANT SELECT ON \"Tool\" TO worker"),
            "");
  Machine desk("desk", WorkersUrl(), folder_);
  EXPECT_TRUE(desk.Feed().MayWrite());
  EXPECT_EQ(desk.Feed().ClosedTables(), (Strings{"Hidden", "Numberless", "Tool"}));
  EXPECT_EQ(desk.Db().Tables().Count(), static_cast<int>(SchemaTables().size()) + 1);
  EXPECT_FALSE(desk.Copy().OnlyReads());
  EXPECT_EQ(desk.Rows("SELECT NAME FROM Tool"), Strings{"theirs"});
  std::string why;
  EXPECT_EQ(ErrorOf([&] { desk.Db().Execute("INSERT INTO Tool(NAME) VALUES('x')"); }, &why),
            kErrReadOnly);
  EXPECT_EQ(why, "this machine's role on the server only reads this table");
  desk.Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('taken')");
  desk.Meet();
  EXPECT_EQ(OnServer(kTitles), (Strings{"SOS", "taken"}));
}

// It was taken from the role while rows were on their way.
TEST_F(ReplicaTest, WhatWaitsForATableThatTheRoleMayNotWriteAnyMoreKeepsNobodyBack) {
  MakeWorker();
  Machine desk("desk", WorkersUrl(), folder_);
  desk.Db().Execute("UPDATE Toph SET FICHIER = 'x' WHERE HEURE = 1");
  desk.Db().Execute("INSERT INTO Discotheque(TITRE) VALUES('taken')");
  ASSERT_EQ(ByHand("REVOKE UPDATE ON \"Toph\" FROM worker"), "");
  desk.Send();
  EXPECT_EQ(OnServer(kTitles), (Strings{"SOS", "taken"}));
  ASSERT_EQ(desk.Refused().size(), 1U);
  EXPECT_EQ(desk.Refused()[0].substr(0, 5), "Toph|");
  EXPECT_EQ(desk.Copy().Waiting(), 0);
}

TEST_F(ReplicaTest, WhoMayWriteNothingAnyMoreKeepsAllThatHeHasToSend) {
  MakeWorker();
  Machine desk("desk", WorkersUrl(), folder_);
  desk.Db().Execute("UPDATE Toph SET FICHIER = 'x' WHERE HEURE = 1");
  ASSERT_EQ(ByHand("SELECT zemo.give_rights('worker', 'read')"), "");
  EXPECT_EQ(ErrorOf([&] { desk.Send(); }), kErrReadOnly);
  EXPECT_TRUE(desk.Refused().empty());
  EXPECT_EQ(desk.Copy().Waiting(), 1);
}

// Rows that wait are passed over meanwhile: once they are sent the replica is made anew, though the
// program ends in between.
TEST_F(ReplicaTest, WhoMayWriteNothingAnyMoreReadsOnAndHasAllOnceHeMayAgain) {
  MakeWorker();
  Machine desk("desk", WorkersUrl(), folder_);
  desk.Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('v', 7)");
  desk.Meet();
  desk.Db().Execute("UPDATE VT SET FILENAME = 'waits' WHERE CODE = 7");
  ASSERT_EQ(ByHand("SELECT zemo.give_rights('worker', 'read')"), "");
  Server().Execute("INSERT INTO Discotheque(TITRE) VALUES('new')");
  Server().Execute("DELETE * FROM VT WHERE CODE = 7");
  desk.Meet();
  EXPECT_EQ(desk.Rows(kTitles), (Strings{"new", "SOS"}));
  EXPECT_EQ(desk.Rows("SELECT FILENAME FROM VT"), Strings{"waits"});
  EXPECT_EQ(desk.Copy().Waiting(), 1);
  ASSERT_EQ(ByHand("SELECT zemo.give_rights('worker', 'work')"), "");
  desk.Steps().TakeRights();
  desk.Restart([] {});
  desk.Meet();
  EXPECT_EQ(desk.Copy().Waiting(), 0);
  EXPECT_EQ(desk.Rows("SELECT FILENAME FROM VT"), Strings{});
}

TEST_F(ReplicaTest, AnOlderStateThatMayWriteNothingReadsOnAndSendsOnceItMay) {
  MakeWorker();
  Machine desk("desk", WorkersUrl(), folder_);
  const std::string old = desk.Path() + ".old";
  desk.Restart([&] { std::filesystem::copy_file(desk.Path(), old); });
  for (const char* title : {"before", "later"})
    desk.Db().Execute("INSERT INTO Rapport(TITRE) VALUES(?)", {title});
  desk.Meet();
  desk.Restart([&] { std::filesystem::rename(old, desk.Path()); });
  desk.Db().Execute("INSERT INTO Rapport(TITRE) VALUES('put back')");
  ASSERT_EQ(ByHand("SELECT zemo.give_rights('worker', 'read')"), "");
  Server().Execute("INSERT INTO Discotheque(TITRE) VALUES('new')");
  desk.Meet();
  EXPECT_EQ(desk.Rows(kTitles), (Strings{"new", "SOS"}));
  EXPECT_EQ(desk.Copy().Waiting(), 1);
  EXPECT_EQ(desk.Told(), Strings{});
  ASSERT_EQ(ByHand("SELECT zemo.give_rights('worker', 'work')"), "");
  desk.Meet();
  const std::string report = "SELECT TITRE FROM Rapport ORDER BY TITRE";
  EXPECT_EQ(OnServer(report), (Strings{"before", "later", "put back"}));
  EXPECT_EQ(desk.Rows(report), (Strings{"before", "later", "put back"}));
  EXPECT_EQ(desk.Told().size(), 1U);
}

TEST_F(ReplicaTest, AProgramThatIsOlderThanTheBaseIsToldSo) {
  EXPECT_EQ(ByHand("UPDATE zemo.base SET form = form + 1"), "");
  Air().Connect();
  Air().Meet();
  EXPECT_TRUE(Air().Copy().OnlyReads());
  std::string why;
  EXPECT_EQ(ErrorOf([&] { Air().Db().Execute("UPDATE Discotheque SET TITRE = 'x'"); }, &why),
            kErrReadOnly);
  EXPECT_EQ(why,
            "the base on the server was made by a newer version of the program: this one only "
            "reads it");
}

// Another machine's rows may stand under numbers that this one was to give.
TEST_F(ReplicaTest, NumbersThatAreTakenArePassedOver) {
  Air().Copy().DropNumbers("VT");
  Air().Copy().AddNumbers("VT", 100, 104);
  Air().Copy().AddNumbers("VT", 200, 209);
  const auto given = [&] {
    Air().Db().Execute("INSERT INTO VT(FILENAME) VALUES('v')");
    return Air().Db().LastInsertCode();
  };
  EXPECT_EQ(given(), 100);
  for (const int64_t code : {101, 102, 104})
    Office().Db().Execute("INSERT INTO VT(FILENAME, CODE) VALUES('o', ?)", {code});
  Office().Meet();
  Air().Meet();
  EXPECT_EQ(given(), 103);
  EXPECT_EQ(given(), 200);
  EXPECT_EQ(given(), 201);
  Air().Meet();
  Office().Meet();
  EXPECT_EQ(Air().Refused(), Strings{});
  ExpectAllAlike();
}

// By a program of the version before, which was ended with the server away.
TEST_F(ReplicaTest, OneOfAnOlderFormKeepsItsQueue) {
  Air().Db().Execute("UPDATE Discotheque SET TITRE = 'kept'");
  Air().Restart([&] {
    DBEngine::ExecuteNative(Air().Path(),
                            "DROP TABLE zemo_closed; DROP TRIGGER zemo_VT_insert; "
                            "DROP TRIGGER zemo_VT_number; UPDATE zemo_replica SET form = 1");
    EXPECT_TRUE(Replica::IsThere(Air().Path()));
  });
  Air().Db().Execute("INSERT INTO VT(FILENAME) VALUES('v')");
  EXPECT_EQ(Air().Copy().Waiting(), 2);
  Air().Meet();
  EXPECT_EQ(OnServer(kTitles), Strings{"kept"});
  EXPECT_EQ(OnServer("SELECT FILENAME FROM VT"), Strings{"v"});
}

// Random work of two machines and of a program on the server. AUTEUR says which row it is and never
// changes; a machine removes, makes again and numbers anew rows of its own, and anybody changes
// all.
class RandomWork {
 public:
  RandomWork(unsigned seed, int& names) : chance_(seed), names_(names) {}

  void Step(Machine& machine, const std::string& who) {
    Database& base = machine.Db();
    switch (Below(11)) {
      case 0:
      case 1:
        Insert(base, who, 0);
        break;
      case 2:
        Update(base);
        break;
      case 3:
        Remove(base, who);
        break;
      case 4:
        if (const int64_t code = Remove(base, who)) Insert(base, who, code);
        break;
      case 5:
        Renumber(base, who, machine.Feed().Reserve("Discotheque", 1));
        break;
      case 6:
        TakenBack(base);
        break;
      case 7:  // a part is sent
        if (const auto queued = machine.Copy().Queued(1 + Below(4))) {
          Take(machine, *queued);
          machine.Copy().Sent(queued->last);
        }
        break;
      case 8:  // its answer is lost, and with it the line
        if (const auto queued = machine.Copy().Queued(1 + Below(4))) Take(machine, *queued);
        machine.Connect();
        machine.Steps().Begin();
        break;
      case 9:
        machine.Send();
        machine.Connect();
        break;
      default:
        machine.Meet();
    }
  }
  void StepOnServer(Database& base) {
    if (Below(2) == 0)
      Insert(base, "server", 0);
    else
      Update(base);
    if (Below(4) == 0) Remove(base, "server");
  }
  size_t Below(size_t end) { return chance_() % end; }
  const std::map<std::string, std::string>& Owners() const { return owners_; }

 private:
  static void Take(Machine& machine, const QueuedWrites& queued) {
    machine.Feed().Take(machine.Copy().Machine(), queued.last, queued.changes);
  }
  void Insert(Database& base, const std::string& who, int64_t code) {
    const std::string name = who + std::to_string(++names_);
    if (code == 0)
      base.Execute("INSERT INTO Discotheque(AUTEUR, TITRE) VALUES(?, 't')", {name});
    else
      base.Execute("INSERT INTO Discotheque(AUTEUR, TITRE, CODE) VALUES(?, 't', ?)", {name, code});
    owners_[name] = who;
  }
  void Update(Database& base) {
    const std::string value = "v" + std::to_string(Below(1000));
    const std::string field = Below(2) == 0 ? "TITRE" : "GENRE";
    const auto rows = base.OpenRecordset("SELECT CODE FROM Discotheque ORDER BY CODE");
    for (size_t skipped = Below(6); skipped > 0 && !rows->Eof(); --skipped) rows->MoveNext();
    if (!rows->Eof())
      base.Execute("UPDATE Discotheque SET " + field + " = ? WHERE CODE = ?",
                   {value, rows->Field(0)});
  }
  // One of this writer's; 0: none.
  int64_t CodeOf(Database& base, const std::string& who, std::string& name) {
    Strings names;
    for (const auto& [its, owner] : owners_)
      if (owner == who) names.push_back(its);
    if (names.empty()) return 0;
    name = names[Below(names.size())];
    const auto row = base.OpenRecordset("SELECT CODE FROM Discotheque WHERE AUTEUR = ?", {name});
    return row->Eof() ? 0 : AsInt(row->Field(0));
  }
  int64_t Remove(Database& base, const std::string& who) {
    std::string name;
    const int64_t code = CodeOf(base, who, name);
    if (code == 0) return 0;
    base.Execute("DELETE * FROM Discotheque WHERE CODE = ?", {code});
    owners_.erase(name);
    return code;
  }
  void Renumber(Database& base, const std::string& who, int64_t number) {
    std::string name;
    if (const int64_t code = CodeOf(base, who, name))
      base.Execute("UPDATE Discotheque SET CODE = ? WHERE CODE = ?", {number, code});
  }
  void TakenBack(Database& base) {
    base.BeginTrans();
    base.Execute("INSERT INTO Discotheque(AUTEUR) VALUES('taken back')");
    Update(base);
    base.RollbackTrans();
  }

  std::mt19937 chance_;
  int& names_;
  std::map<std::string, std::string> owners_;  // of each row that was stored and not removed
};

TEST_F(ReplicaTest, WhateverTheyDoAllComeToTheSameAndNothingIsMissing) {
  int names = 0;
  for (unsigned seed = 1; seed <= 200 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    Server().Execute("DELETE * FROM Discotheque");
    Air().Meet();
    Office().Meet();
    RandomWork work(seed, names);
    for (int step = 0; step < 24; ++step) {
      const size_t who = work.Below(5);
      if (who == 0)
        work.StepOnServer(Server());
      else
        work.Step(who < 3 ? Air() : Office(), who < 3 ? "air" : "office");
    }
    Air().Meet();
    Office().Meet();
    Air().Meet();
    ExpectAlike("Discotheque");
    Strings expected;
    for (const auto& [name, owner] : work.Owners()) expected.push_back(name);
    Strings stored = OnServer("SELECT AUTEUR FROM Discotheque");
    std::sort(stored.begin(), stored.end());
    EXPECT_EQ(stored, expected);
    EXPECT_EQ(Air().Refused(), Strings{});
    EXPECT_EQ(Office().Refused(), Strings{});
  }
}

}  // namespace
}  // namespace zemo
