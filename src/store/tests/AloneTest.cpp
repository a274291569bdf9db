// A base that is kept alone: nobody gets in, and nothing of others is looked for until they may.
#include "store/RowView.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

constexpr const char* kWrite = "UPDATE Discotheque SET TITRE = 'FOREIGN'";

class Alone : public OpenBaseTest {
 protected:
  void SetUp() override {
    AddCard("A");
    Db().KeepAlone();
    ASSERT_TRUE(Db().IsAlone());
  }
  std::string TitleHere() {
    std::string title;
    Db().ReadRows("SELECT TITRE FROM Discotheque",
                  [&](const RowView& row) { title = row.Text(0); });
    return title;
  }
};

TEST_F(Alone, NobodyElseReadsOrWrites) {
  OtherProgram other(BasePath());
  EXPECT_EQ(other.Try(kWrite), "database is locked");
  EXPECT_EQ(other.Try("SELECT * FROM Cnf"), "database is locked");
}

TEST_F(Alone, OwnWritesCountAndThoseOfOthersNeverDo) {
  const int64_t foreign = Db().ForeignCounter();
  int64_t counter = Db().ChangeCounter();
  EXPECT_EQ(Db().ChangeCounter(), counter);
  Db().Execute("UPDATE Discotheque SET TITRE = 'OWN'");
  EXPECT_GT(Db().ChangeCounter(), counter);
  EXPECT_EQ(TitleHere(), "OWN");
  EXPECT_EQ(Db().ForeignCounter(), foreign);
}

TEST_F(Alone, WhatOthersDoWhileTheyAreLetInIsSeen) {
  const int64_t foreign = Db().ForeignCounter();
  {
    const OthersLetIn others(Db());
    EXPECT_FALSE(Db().IsAlone());
    OtherProgram(BasePath()).Do(kWrite);
  }
  EXPECT_TRUE(Db().IsAlone());
  EXPECT_EQ(Db().ForeignCounter(), foreign + 1);
  EXPECT_EQ(TitleHere(), "FOREIGN");
  EXPECT_EQ(OtherProgram(BasePath()).Try(kWrite), "database is locked");
}

TEST_F(Alone, ASettingThatAnotherStoresMeanwhileIsRead) {
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 1600);
  {
    const OthersLetIn others(Db());
    OtherProgram(BasePath()).Do("UPDATE Cnf SET FadeOut = 777");
  }
  base->CheckCnf();
  EXPECT_EQ(base->CnfInt(Cnf::kFadeOut), 777);
}

TEST_F(Alone, ABaseThatIsNotKeptAloneStaysSo) {
  Db().LetOthersIn();
  { const OthersLetIn others(Db()); }
  EXPECT_FALSE(Db().IsAlone());
  OtherProgram(BasePath()).Do(kWrite);
}

TEST_F(Alone, TheNextOpeningLetsOthersIn) {
  Db().Open(false);
  EXPECT_FALSE(Db().IsAlone());
  OtherProgram(BasePath()).Do(kWrite);
}

TEST_F(Alone, WhoMeetsSomebodyAtWorkIsToldAndWorksAsBefore) {
  Db().LetOthersIn();
  OtherProgram other(BasePath());
  other.Do("BEGIN IMMEDIATE");
  base->Waiting().LetEachWait(0);
  EXPECT_EQ(ErrorOf([&] { Db().KeepAlone(); }), kErrLocked);
  EXPECT_FALSE(Db().IsAlone());
  other.Do("UPDATE Discotheque SET TITRE = 'FOREIGN'; COMMIT");
  EXPECT_EQ(TitleHere(), "FOREIGN");
}

// Its memory of the pages is not thrown away, but what another did is never missed for that.
TEST_F(Alone, WhereSomebodyStaysInHeIsLookedFor) {
  OtherProgram other(BasePath());
  base->Waiting().LetEachWait(0);
  {
    const OthersLetIn others(Db());
    other.Do("BEGIN IMMEDIATE");
  }
  EXPECT_FALSE(Db().IsAlone());
  const int64_t foreign = Db().ForeignCounter();
  other.Do("UPDATE Discotheque SET TITRE = 'FOREIGN'; COMMIT");
  EXPECT_EQ(Db().ForeignCounter(), foreign + 1);
}

}  // namespace
}  // namespace zemo
