// Values that are bound to a query of a file whose columns are another tool's, and what the file
// alone does with them; what every engine does is in store/postgres/tests.
#include "store/RowView.h"
#include "store/SqlText.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

class BoundValues : public OpenBaseTest {};

// A column of no type, as another tool may leave one, keeps what it is given.
TEST_F(BoundValues, AWholeRealIsStoredAsTheIntegerThatItsLiteralIs) {
  base->Close();
  OtherProgram(BasePath()).Do("CREATE TABLE Loose(X)");
  base->OpenOrCreateDatabase();
  Db().Execute("INSERT INTO Loose(X) VALUES(?)", {46347.0});
  Db().Execute("INSERT INTO Loose(X) VALUES(?)", {46347.5});
  EXPECT_EQ(OtherProgram(BasePath()).Rows("SELECT typeof(X), X FROM Loose"),
            (Strings{"integer|46347", "real|46347.5"}));
}

TEST_F(BoundValues, OfColumnsThatTheFileHasNotAreLeftOut) {
  base->Close();
  OtherProgram(BasePath())
      .Do("ALTER TABLE Discotheque DROP COLUMN COMMENTAIRE; "
          "ALTER TABLE Discotheque DROP COLUMN LASTDIFF");
  base->OpenOrCreateDatabase();
  base->OpenAllTables();
  Db().Execute("INSERT INTO Discotheque(COMMENTAIRE, AUTEUR, TITRE, LASTDIFF) VALUES(?,?,?,?)",
               {std::string("gone"), std::string("A"), std::string("T"), 1.5});
  Db().Execute("UPDATE Discotheque SET COMMENTAIRE = ?, AUTEUR = ? WHERE TITRE = ?",
               {std::string("gone"), std::string("B"), std::string("T")});
  EXPECT_EQ(OtherProgram(BasePath()).One("SELECT AUTEUR, TITRE FROM Discotheque"), "B|T");
}

TEST_F(BoundValues, AFaultWhileItIsAnsweredTellsTheQueryWithThem) {
  AddCard("A");
  std::string text;
  const Value pattern = "?" + std::string(60000, 'a');
  ErrorOf(
      [&] {
        Db().ReadRows("SELECT CODE FROM Discotheque WHERE AUTEUR LIKE ?", {pattern},
                      [](const RowView&) {});
      },
      &text);
  EXPECT_NE(text.find("LIKE '_aaaa"), std::string::npos) << text;
}

TEST_F(BoundValues, PlacesAreNotSoughtInTextsAndNames) {
  EXPECT_EQ(QueryWithValues("SELECT [a?], '?', \"?\" FROM T WHERE X = ?", {1}),
            "SELECT [a?], '?', \"?\" FROM T WHERE X = 1");
}

TEST_F(BoundValues, AKeptQuerySeesTheColumnsThatAnotherProgramMadeMeanwhile) {
  AddCard("A");
  const std::string sql = "SELECT * FROM Discotheque WHERE AUTEUR = ?";
  const int fields = Db().OpenRecordset(sql, {std::string("A")})->FieldCount();
  OtherProgram(BasePath()).Do("ALTER TABLE Discotheque ADD COLUMN Extra TEXT DEFAULT 'new'");
  const auto cards = Db().OpenRecordset(sql, {std::string("A")});
  EXPECT_EQ(cards->FieldCount(), fields + 1);
  EXPECT_EQ(cards->Text("Extra"), "new");
}

// What is sorted as text hangs on the column's type.
TEST_F(BoundValues, AKeptQueryIsTranslatedAnewOnceTheTableIsKnownToBeAnother) {
  base->Close();
  OtherProgram(BasePath()).Do("CREATE TABLE Loose(X INTEGER); INSERT INTO Loose VALUES(2), (1)");
  base->OpenOrCreateDatabase();
  const std::string sql = "SELECT X FROM Loose ORDER BY X";
  EXPECT_EQ(AnswerOf(Db(), sql), "1 2 ");
  OtherProgram(BasePath())
      .Do("DROP TABLE Loose; CREATE TABLE Loose(X TEXT); "
          "INSERT INTO Loose VALUES('f'), ('é'), ('e')");
  Db().FindTable("Loose");
  EXPECT_EQ(AnswerOf(Db(), sql), "e é f ");
}

TEST_F(BoundValues, ABaseClosedInsideAWalkIsFreeWhenTheWalkEnds) {
  for (const char* artist : {"A", "B"}) AddCard(artist);
  ErrorOf([&] {
    Db().ReadRows("SELECT CODE FROM Discotheque WHERE CODE > ?", {0},
                  [&](const RowView&) { base->Close(); });
  });
  EXPECT_FALSE(base->IsOpen());
  OtherProgram(BasePath()).Do("BEGIN EXCLUSIVE; COMMIT");
}

}  // namespace
}  // namespace zemo
