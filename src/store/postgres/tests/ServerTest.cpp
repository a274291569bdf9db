// What only a server can do to its stations: go away, be somebody else's, refuse.
#include "store/postgres/tests/EngineFixture.h"

namespace zemo {
namespace {

using test::TestServer;

class ServerBase : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    made = std::make_unique<EngineBase>(Engine::kServer);
  }
  Database& Db() { return made->Db(); }
  std::unique_ptr<EngineBase> made;
};

TEST_F(ServerBase, ThatWentAwayIsToldAndServesAgainWhenItIsOpenedAgain) {
  Db().Execute("INSERT INTO VT(LIBELLE) VALUES('kept')");
  Db().BeginTrans();
  Db().Execute("INSERT INTO VT(LIBELLE) VALUES('lost')");
  TestServer::Get().Stop();
  std::string text;
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset("SELECT * FROM VT"); }, &text), kErrOther);
  EXPECT_EQ(text.find("secret"), std::string::npos) << text;
  EXPECT_TRUE(Db().FileIsLost());
  EXPECT_FALSE(Db().InTransaction());
  EXPECT_EQ(ErrorOf([&] { Db().Open(false); }, &text), kErrOther);
  EXPECT_EQ(text.find("secret"), std::string::npos) << text;
  TestServer::Get().Start();
  Db().Open(false);
  EXPECT_FALSE(Db().FileIsLost());
  const auto rows = Db().OpenRecordset("SELECT LIBELLE FROM VT");
  EXPECT_EQ(ColumnOf(*rows, "LIBELLE"), Strings{"kept"});
}

TEST_F(ServerBase, OfSomethingElseIsNoStationsBase) {
  const auto wait = std::make_shared<LockWait>();
  const std::string url = TestServer::Get().Url(TestServer::Get().NewBase());
  std::string text;
  EXPECT_EQ(ErrorOf([&] { ClosedPostgresDatabase(url, wait)->Open(false); }, &text),
            kErrNoSuchFile);
  EXPECT_EQ(text.find("secret"), std::string::npos) << text;
  const auto base = ClosedPostgresDatabase(url, wait);
  base->Open(true);
  EXPECT_EQ(base->Tables().Count(), 0);
  base->Open(true);  // changes nothing
  base->Open(false);
}

TEST_F(ServerBase, ThatIsNowhereIsToldWithoutThePassword) {
  std::string text;
  const auto wait = std::make_shared<LockWait>();
  EXPECT_EQ(
      ErrorOf(
          [&] {
            ClosedPostgresDatabase("postgresql://radio:secret@/x?host=/nowhere", wait)->Open(false);
          },
          &text),
      kErrOther);
  EXPECT_EQ(text.find("secret"), std::string::npos) << text;
  EXPECT_NE(text.find("/nowhere"), std::string::npos) << text;
}

TEST_F(ServerBase, ThatMayOnlyBeReadTellsItAtEveryWrite) {
  auto& server = TestServer::Get();
  ASSERT_EQ(
      server.Try(made->Name(),
                 "DROP ROLE IF EXISTS reader; CREATE ROLE reader LOGIN; GRANT USAGE ON SCHEMA "
                 "zemo TO reader; GRANT SELECT ON ALL TABLES IN SCHEMA zemo, public TO reader"),
      "");
  std::string url = server.Url(made->Name());
  url.replace(url.find("radio"), 5, "reader");
  const auto base = ClosedPostgresDatabase(url, std::make_shared<LockWait>());
  base->Open(false);
  EXPECT_EQ(base->OpenRecordset("SELECT * FROM Toph")->RecordCount(), 24);
  EXPECT_EQ(ErrorOf([&] { base->Execute("INSERT INTO VT(LIBELLE) VALUES('x')"); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { base->Tables().Delete("VT"); }), kErrReadOnly);
  EXPECT_GE(base->ChangeCounter(), 0);
  base->Close();
  server.Try(made->Name(), "DROP OWNED BY reader; DROP ROLE reader");
}

TEST_F(ServerBase, WritesOfTheServersOwnToolsCountAndKeepTheRules) {
  auto& server = TestServer::Get();
  const int64_t before = Db().ForeignCounter();
  ASSERT_EQ(server.Try(made->Name(), "INSERT INTO \"VT\"(\"CODE\") VALUES(70)"), "");
  EXPECT_GT(Db().ForeignCounter(), before);
  Db().Execute("INSERT INTO VT(LIBELLE) VALUES('next')");
  EXPECT_EQ(Db().LastInsertCode(), 71);
  EXPECT_NE(server.Try(made->Name(), "UPDATE \"VT\" SET \"LIBELLE\" = repeat('x', 41)"), "");
  Db().BeginTrans();
  EXPECT_NE(server.Try(made->Name(), "DELETE FROM \"VT\"").find("another program writes"),
            std::string::npos);
  Db().RollbackTrans();
}

TEST_F(ServerBase, ATextThatIsNoUtf8OrHoldsAZeroIsRefused) {
  EXPECT_EQ(
      ErrorOf([&] { Db().Execute("INSERT INTO VT(LIBELLE) VALUES(?)", {std::string("caf\xE9")}); }),
      kErrValueRefused);
  EXPECT_EQ(ErrorOf([&] {
              const auto row = Db().OpenTable("VT");
              row->AddNew();
              row->Set("LIBELLE", std::string("a\0b", 3));
              row->Update();
            }),
            kErrValueRefused);
}

TEST_F(ServerBase, APartBehindThePointOfAWholeNumberGoesToTheNearestEven) {
  Db().Execute("INSERT INTO VT(START, DUREE) VALUES(2.5, ?)", {3.5});
  const auto row = Db().OpenRecordset("SELECT START, DUREE FROM VT");
  EXPECT_EQ(row->Field("START"), Value(int64_t{2}));
  EXPECT_EQ(row->Field("DUREE"), Value(int64_t{4}));
}

TEST_F(ServerBase, ATextIsRefusedByAFieldOfRealsOrOfYesAndNo) {
  std::string text;
  EXPECT_EQ(ErrorOf([&] { Db().Execute("INSERT INTO Discotheque(LASTDIFF) VALUES('x')"); }, &text),
            kErrValueRefused);
  EXPECT_EQ(text, "Discotheque.LASTDIFF holds a number, not a text");
  EXPECT_EQ(ErrorOf([&] { Db().Execute("INSERT INTO VT(CUT) VALUES(?)", {std::string("yes")}); }),
            kErrValueRefused);
}

TEST_F(ServerBase, AColumnThatIsMissingIsTold) {
  TestServer::Get().Try(made->Name(), "ALTER TABLE \"Discotheque\" DROP COLUMN \"LABEL\"");
  EXPECT_EQ(Db().PutStandIns(), Strings{"Discotheque.LABEL is missing"});
  EXPECT_FALSE(Db().HasColumn("Discotheque", "LABEL"));
  EXPECT_EQ(Db().OpenRecordset("SELECT * FROM Discotheque")->FieldCount(), 36);
}

}  // namespace
}  // namespace zemo
