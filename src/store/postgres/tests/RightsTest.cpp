// What roles of a real server may do in a base whose owner is no superuser.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "store/Recordset.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/postgres/ServerFeed.h"
#include "store/tests/StoreAnswers.h"
#include "support/TestServer.h"

namespace zemo {
namespace {

using test::TestServer;

class RightsTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    for (const std::string role : {"owner", "desk", "second"})
      ASSERT_EQ(Radio("CREATE ROLE " + role + " LOGIN"), "");
    base_ = TestServer::Get().NewBase();
    ASSERT_EQ(Radio("ALTER DATABASE " + base_ + " OWNER TO owner"), "");
    owner_ = ClosedPostgresDatabase(UrlOf("owner"), std::make_shared<LockWait>());
    owner_->Open(true);
    for (const char* table : {"VT", "Cnf"}) CreateTable(owner_->Tables(), table);
    owner_->Execute("INSERT INTO VT(LIBELLE) VALUES('first')");
  }
  void TearDown() override {
    owner_.reset();
    if (base_.empty()) return;
    TestServer::Get().Drop(base_);
    Radio("DROP ROLE desk");
    Radio("DROP ROLE second");
    Radio("DROP ROLE owner");
  }

  static std::string Radio(const std::string& sql) {
    return TestServer::Get().Try("postgres", sql);
  }
  std::string UrlOf(const std::string& role) const { return TestServer::Get().Url(base_, role); }
  std::unique_ptr<ServerDatabase> OpenAs(const std::string& role) const {
    auto base = ClosedPostgresDatabase(UrlOf(role), std::make_shared<LockWait>());
    base->Open(false);
    return base;
  }
  std::unique_ptr<ServerFeed> FeedOf(const std::string& role) const {
    return std::make_unique<ServerFeed>(UrlOf(role), std::make_shared<LockWait>());
  }
  // The server's own SQL under a role; what is wrong with it.
  std::string As(const std::string& role, const std::string& sql) const {
    return TestServer::Get().Try(base_, sql, role);
  }
  static int64_t RowsOf(Database& base) {
    return AsInt(base.OpenRecordset("SELECT COUNT(*) FROM VT")->Field(0));
  }

  std::string base_;
  std::unique_ptr<ServerDatabase> owner_;
};

const char kOneMore[] = "INSERT INTO VT(LIBELLE) VALUES('more')";

TEST_F(RightsTest, ARoleWithoutAnyDoesNotOpenTheBase) {
  EXPECT_NE(ErrorOf([&] { OpenAs("desk"); }), 0);
}

TEST_F(RightsTest, WhoReadsHasAllRowsAndFollowsTheChangesAndStoresNothing) {
  owner_->GiveRights(Rights::kRead, "desk");
  const auto desk = OpenAs("desk");
  EXPECT_EQ(RowsOf(*desk), 1);
  EXPECT_EQ(desk->Tables().LastNumber("VT"), 1);
  EXPECT_EQ(ErrorOf([&] { desk->Execute(kOneMore); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { desk->Tables().Delete("VT"); }), kErrReadOnly);
  const auto feed = FeedOf("desk");
  EXPECT_FALSE(feed->MayWrite());
  feed->Listen();
  const FeedPlace before = feed->Now();
  owner_->Execute(kOneMore);
  EXPECT_EQ(feed->Behind(before, 10).tables.size(), 1U);
  EXPECT_EQ(feed->TakenFrom("air"), 0);
  EXPECT_EQ(ErrorOf([&] { feed->Take("desk", 1, "[]"); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { feed->Reserve("VT", 10); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { feed->ForgetChanges(0); }), kErrReadOnly);
}

TEST_F(RightsTest, WhoWorksStoresRowsThatOthersHearOf) {
  owner_->GiveRights(Rights::kWork, "desk");
  const auto desk = OpenAs("desk");
  const auto feed = FeedOf("owner");
  const FeedPlace before = feed->Now();
  desk->Execute(kOneMore);
  EXPECT_EQ(desk->LastInsertCode(), 2);
  desk->Execute("INSERT INTO VT(CODE, LIBELLE) VALUES(9, 'given')");
  desk->Execute("UPDATE VT SET LIBELLE = 'changed' WHERE CODE = 2");
  desk->Execute("DELETE FROM VT WHERE CODE = 1");
  owner_->Execute(kOneMore);
  EXPECT_EQ(owner_->LastInsertCode(), 10);  // behind the number that was given
  const ServerChanges changes = feed->Behind(before, 100);
  ASSERT_EQ(changes.tables.size(), 1U);
  EXPECT_EQ(changes.tables[0].numbers, (std::vector<int64_t>{1, 2, 9, 10}));
  const auto own = FeedOf("desk");
  EXPECT_TRUE(own->MayWrite());
  const int64_t first = own->Reserve("VT", 100);
  EXPECT_EQ(first, 11);
  own->Take("m1", 5,
            R"([{"table":"VT","key":"CODE","gone":[],"changed":[],)"
            R"("new":[{"CODE":11,"LIBELLE":"sent"}]}])");
  EXPECT_EQ(own->TakenFrom("m1"), 5);
  EXPECT_EQ(RowsOf(*owner_), 4);
  own->ForgetChanges(8);
}

TEST_F(RightsTest, WhoWorksChangesNeitherStructureNorWhatTheBaseNotes) {
  owner_->GiveRights(Rights::kWork, "desk");
  const auto desk = OpenAs("desk");
  EXPECT_EQ(ErrorOf([&] { desk->Tables().Delete("VT"); }), kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { CreateTable(desk->Tables(), "Toph"); }), kErrReadOnly);
  FeedOf("owner")->Take("air", 7, "[]");
  for (const char* forged :
       {"UPDATE zemo.machines SET sent = 99", "DELETE FROM zemo.changes",
        "UPDATE zemo.base SET form = 99", "SELECT machine FROM zemo.machines",
        "INSERT INTO zemo.changes (tablename) VALUES ('VT')", "SELECT zemo.begin_filling()",
        "SELECT setval(pg_get_serial_sequence('\"VT\"', 'CODE'), 1)",
        "SELECT zemo.reserve_numbers('zemo.changes', 10)", "SELECT zemo.reserve('VT', -5)",
        "TRUNCATE \"VT\"", "ALTER TABLE \"VT\" DISABLE TRIGGER USER"}) {
    EXPECT_NE(As("desk", forged), "") << forged;
  }
  EXPECT_EQ(FeedOf("owner")->TakenFrom("air"), 7);
}

// A write that others do not hear of is for who owns the base and fills it.
TEST_F(RightsTest, WhoWorksHidesNoWrite) {
  owner_->GiveRights(Rights::kWork, "desk");
  const auto feed = FeedOf("owner");
  const FeedPlace before = feed->Now();
  ASSERT_EQ(
      TestServer::Get().Try(
          base_, "SET zemo.filling = 'on'; INSERT INTO \"VT\"(\"LIBELLE\") VALUES('x')", "desk"),
      "");
  EXPECT_EQ(feed->Behind(before, 10).tables.size(), 1U);
}

// A session's own tables come first where the search path does not say otherwise.
TEST_F(RightsTest, ATableOfTheCallersStandsForNoneOfTheServers) {
  owner_->GiveRights(Rights::kWork, "desk");
  const auto feed = FeedOf("owner");
  const FeedPlace before = feed->Now();
  ASSERT_EQ(As("desk",
               "CREATE TEMP TABLE pg_namespace AS SELECT 'zemo'::name AS nspname, "
               "'desk'::regrole::oid AS nspowner; GRANT SELECT ON pg_temp.pg_namespace TO PUBLIC; "
               "SET zemo.filling = 'on'; INSERT INTO \"VT\"(\"LIBELLE\") VALUES('x')"),
            "");
  EXPECT_EQ(feed->Behind(before, 10).tables.size(), 1U);
}

TEST_F(RightsTest, TablesThatAreMadeLaterHaveThemToo) {
  owner_->GiveRights(Rights::kRead, "desk");
  owner_->GiveRights(Rights::kWork, "second");
  CreateTable(owner_->Tables(), "Toph");
  EXPECT_EQ(OpenAs("desk")->OpenRecordset("SELECT * FROM Toph")->RecordCount(), 0);
  const auto second = OpenAs("second");
  second->Execute("INSERT INTO Toph(HEURE) VALUES(7)");
  EXPECT_EQ(second->LastInsertCode(), 1);
  EXPECT_TRUE(FeedOf("second")->MayWrite());
}

TEST_F(RightsTest, WhatAMemberOfTheOwnerMakesIsTheOwners) {
  OpenAs("radio")->GiveRights(Rights::kOwn, "desk");
  owner_->GiveRights(Rights::kRead, "second");
  const auto desk = OpenAs("desk");
  CreateTable(desk->Tables(), "Toph");
  owner_->Execute("INSERT INTO Toph(HEURE) VALUES(7)");
  EXPECT_EQ(OpenAs("second")->OpenRecordset("SELECT * FROM Toph")->RecordCount(), 1);
  owner_->Tables().Delete("Toph");
  EXPECT_TRUE(desk->CompactInPlace());
}

TEST_F(RightsTest, FewerOnesTakeTheOthersBack) {
  OpenAs("radio")->GiveRights(Rights::kOwn, "desk");
  OpenAs("radio")->GiveRights(Rights::kWork, "desk");
  EXPECT_EQ(ErrorOf([&] { CreateTable(OpenAs("desk")->Tables(), "Toph"); }), kErrReadOnly);
  OpenAs("desk")->Execute(kOneMore);
  owner_->GiveRights(Rights::kRead, "desk");
  EXPECT_EQ(ErrorOf([&] { OpenAs("desk")->Execute(kOneMore); }), kErrReadOnly);
  CreateTable(owner_->Tables(), "Toph");
  EXPECT_EQ(ErrorOf([&] { OpenAs("desk")->Execute("INSERT INTO Toph(HEURE) VALUES(7)"); }),
            kErrReadOnly);
  EXPECT_EQ(ErrorOf([&] { FeedOf("desk")->Take("desk", 1, "[]"); }), kErrReadOnly);
}

TEST_F(RightsTest, TheOwnersMembershipIsGivenByWhoMayGrantIt) {
  std::string text;
  EXPECT_EQ(ErrorOf([&] { owner_->GiveRights(Rights::kOwn, "desk"); }, &text), kErrReadOnly);
  EXPECT_NE(text.find("admin option"), std::string::npos) << text;
  EXPECT_NE(ErrorOf([&] { OpenAs("desk"); }), 0);  // and nothing else was given
  ASSERT_EQ(Radio("GRANT owner TO second WITH ADMIN OPTION"), "");
  OpenAs("second")->GiveRights(Rights::kOwn, "desk");
  CreateTable(OpenAs("desk")->Tables(), "Toph");
}

TEST_F(RightsTest, OnlyWhoOwnsGivesThemAndToARoleThatIsThere) {
  owner_->GiveRights(Rights::kWork, "desk");
  EXPECT_EQ(ErrorOf([&] { OpenAs("desk")->GiveRights(Rights::kWork, "second"); }), kErrReadOnly);
  std::string text;
  EXPECT_NE(ErrorOf([&] { owner_->GiveRights(Rights::kRead, "nobody"); }, &text), 0);
  EXPECT_NE(text.find("there is no role \"nobody\""), std::string::npos) << text;
  EXPECT_NE(ErrorOf([&] { owner_->GiveRights(Rights::kRead, "owner"); }, &text), 0);
  EXPECT_NE(text.find("role \"owner\" owns the base"), std::string::npos) << text;
}

TEST_F(RightsTest, ANameOfAnyLettersIsOneRole) {
  const std::string odd = "Jean \"Zo\"; DROP TABLE \"VT\" --";
  ASSERT_EQ(Radio("CREATE ROLE \"Jean \"\"Zo\"\"; DROP TABLE \"\"VT\"\" --\" LOGIN"), "");
  owner_->GiveRights(Rights::kRead, odd);
  EXPECT_EQ(As("Jean%20%22Zo%22%3B%20DROP%20TABLE%20%22VT%22%20--", "SELECT * FROM \"VT\""), "");
  EXPECT_EQ(RowsOf(*owner_), 1);
  owner_.reset();
  TestServer::Get().Drop(base_);
  EXPECT_EQ(Radio("DROP ROLE \"Jean \"\"Zo\"\"; DROP TABLE \"\"VT\"\" --\""), "");
}

// They act as their owner: hung on a table of one's own they would write the base's notes.
TEST_F(RightsTest, TheFunctionsThatNoteWritesAreHungOnNoOtherTable) {
  owner_->GiveRights(Rights::kRead, "desk");
  for (const std::string name : {"begin_write", "keep_numbers", "note_rows"}) {
    const std::string why = As("desk",
                               "CREATE TEMP TABLE own (n int); CREATE TRIGGER t AFTER TRUNCATE ON "
                               "own EXECUTE FUNCTION zemo." +
                                   name + "()");
    EXPECT_NE(why.find("permission denied for function zemo." + name), std::string::npos) << why;
  }
}

TEST_F(RightsTest, ARoleWithoutAnyIsToldThatAndNotThatTheServerIsAway) {
  std::string text;
  EXPECT_EQ(ErrorOf([&] { OpenAs("second"); }, &text), kErrReadOnly);
  EXPECT_EQ(text.find("does not answer"), std::string::npos) << text;
  EXPECT_NE(text.find("permission denied for schema zemo"), std::string::npos) << text;
}

}  // namespace
}  // namespace zemo
