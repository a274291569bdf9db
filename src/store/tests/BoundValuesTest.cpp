// Values that are bound to a query: what it answers and stores is what it does with the same values
// as literals in its text.
#include <random>
#include <stdexcept>

#include "store/RowView.h"
#include "store/SqlText.h"
#include "store/tests/StoreFixture.h"

namespace zemo {
namespace {

// Quotes, letters beyond ASCII, wildcards of both languages, brackets, escapes, numbers as texts,
// Null and nothing at all.
const Values& AllKinds() {
  static const Values kValues = {
      Value(),
      std::string(),
      std::string(" "),
      std::string("abba"),
      std::string("ABBA"),
      std::string("L'été"),
      std::string("L'ÉTÉ"),
      std::string("l'ete"),
      std::string("''"),
      std::string("\"x\""),
      std::string("*"),
      std::string("a*"),
      std::string("?b*"),
      std::string("été*"),
      std::string("100% *"),
      std::string("a_b"),
      std::string("a\\_b?"),
      std::string("[a]"),
      std::string("[!a]*"),
      std::string("#1"),
      std::string("?1"),
      std::string("5"),
      std::string("05"),
      std::string("5.0"),
      std::string("1e1"),
      std::string("-1"),
      std::string("日本*"),
      std::string("/music/été_[live]'s 100%.wav"),
      std::string("x; DROP TABLE Discotheque"),
      int64_t{0},
      int64_t{5},
      int64_t{-1},
      int64_t{10},
      5.0,
      0.5,
      -2.25,
      46347.5,
      1e20,
  };
  return kValues;
}

class BoundValues : public OpenBaseTest {
 protected:
  // CODE of the rows, or the error.
  std::string Answer(const std::string& sql, const Values& values = {}) {
    std::string answer;
    const int error = ErrorOf([&] {
      Db().ReadRows(sql, values,
                    [&](const RowView& row) { answer += std::string(row.Text(0)) + ' '; });
    });
    return error == 0 ? answer : "error " + std::to_string(error);
  }
  // A card a value, which stands in two texts and, where they take it, two numbers.
  void FillLibrary() {
    for (const Value& value : AllKinds()) {
      const std::string text = AsText(value).substr(0, 30);
      const int64_t minutes = AsInt(value) % 1000;
      Db().Execute("INSERT INTO Discotheque(AUTEUR, TITRE, ECARTMINUTES, LASTDIFF) VALUES(?,?,?,?)",
                   {IsNull(value) ? value : Value(text), "the " + text, minutes, AsReal(value)});
    }
  }
};

TEST_F(BoundValues, AnswerAsTheirLiteralsDo) {
  FillLibrary();
  const char* conditions[] = {
      "AUTEUR = ?",
      "AUTEUR <> ?",
      "AUTEUR < ?",
      "AUTEUR >= ?",
      "? = AUTEUR",
      "? > AUTEUR",
      "AUTEUR LIKE ?",
      "AUTEUR NOT LIKE ?",
      "ECARTMINUTES = ?",
      "ECARTMINUTES < ?",
      "LASTDIFF >= ?",
      "LASTDIFF LIKE ?",
      "AUTEUR IN(?)",
      "AUTEUR NOT IN(?)",
      "ECARTMINUTES IN(?)",
      "NOT AUTEUR = ? AND CODE > 3",
      "CODE IN (SELECT CODE FROM Discotheque WHERE AUTEUR = ?)",
  };
  for (const char* condition : conditions) {
    const std::string sql = std::string("SELECT CODE FROM Discotheque WHERE ") + condition;
    for (const Value& value : AllKinds())
      EXPECT_EQ(Answer(sql, {value}), Answer(QueryWithValues(sql, {value})))
          << QueryWithValues(sql, {value});
  }
}

TEST_F(BoundValues, SeveralOfAQueryAnswerAsTheirLiteralsDo) {
  FillLibrary();
  const char* queries[] = {
      "SELECT CODE FROM Discotheque WHERE AUTEUR = ? OR TITRE LIKE ? ORDER BY LASTDIFF",
      "SELECT CODE FROM Discotheque WHERE AUTEUR IN(?, ?, 'abba') ORDER BY AUTEUR",
      "SELECT CODE FROM Discotheque WHERE AUTEUR NOT IN(?, ?) AND ECARTMINUTES < ?",
      "SELECT COUNT(*) FROM Discotheque WHERE TITRE LIKE ? AND AUTEUR LIKE ?",
  };
  std::mt19937 chance(20261122);
  const auto any = [&] { return AllKinds()[chance() % AllKinds().size()]; };
  for (const std::string sql : queries) {
    for (int i = 0; i < 200; ++i) {
      Values values;
      for (const char c : sql)
        if (c == '?') values.push_back(any());
      EXPECT_EQ(Answer(sql, values), Answer(QueryWithValues(sql, values)))
          << QueryWithValues(sql, values);
    }
  }
}

// In a text, a whole number, a real and a number of 16 bits; with types and all.
TEST_F(BoundValues, AreStoredAsTheirLiteralsAre) {
  const std::string insert =
      "INSERT INTO Discotheque(AUTEUR, DUREE, LASTDIFF, ECARTMINUTES) VALUES(?,?,?,?)";
  const std::string update =
      "UPDATE Discotheque SET AUTEUR = ?, DUREE = ?, LASTDIFF = ?, "
      "ECARTMINUTES = ? WHERE CODE > 0";
  const auto stored = [&](const std::string& sql, const Values& values) {
    Db().Execute("DELETE * FROM Discotheque");
    Db().Execute("INSERT INTO Discotheque(AUTEUR) VALUES('former')");
    std::string text;
    const int error = ErrorOf([&] { Db().Execute(sql, values); }, &text);
    Strings rows =
        OtherProgram(BasePath())
            .Rows(
                "SELECT quote(AUTEUR), quote(DUREE), quote(LASTDIFF), quote(ECARTMINUTES) "
                "FROM Discotheque");
    if (error != 0) rows.push_back(std::to_string(error) + text);
    return rows;
  };
  for (const std::string& sql : {insert, update})
    for (const Value& value : AllKinds()) {
      const Values values(4, value);
      EXPECT_EQ(stored(sql, values), stored(QueryWithValues(sql, values), {}))
          << QueryWithValues(sql, values);
    }
}

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

TEST_F(BoundValues, ATextWithAZeroCharacterIsRefused) {
  const std::string zero("a\0b", 3);
  EXPECT_EQ(ErrorOf([&] { Query("SELECT CODE FROM Discotheque WHERE AUTEUR = '" + zero + "'"); }),
            kErrSyntax);
  EXPECT_EQ(
      ErrorOf([&] { Db().OpenRecordset("SELECT CODE FROM Discotheque WHERE AUTEUR = ?", {zero}); }),
      kErrSyntax);
}

TEST_F(BoundValues, AreAsManyAsTheQueryHasPlaces) {
  const std::string sql = "SELECT CODE FROM Discotheque WHERE AUTEUR = ?";
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql, {1, 2}); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql, {1}); }), 0);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset("SELECT '?', [CODE] FROM Discotheque"); }), 0)
      << "a question mark in a text is no place";
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

TEST_F(BoundValues, AFaultTellsTheQueryWithThem) {
  std::string text;
  EXPECT_EQ(ErrorOf(
                [&] {
                  Db().OpenRecordset("SELECT NONE FROM VT WHERE LIBELLE = ? AND CUT = ?",
                                     {std::string("it's"), 3});
                },
                &text),
            kErrNoSuchField);
  EXPECT_EQ(text,
            "no such column: NONE, in: SELECT NONE FROM VT WHERE LIBELLE = 'it''s' AND CUT = 3");
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

// The same text inside its own walk, with another value.
TEST_F(BoundValues, AQueryIsAskedInsideItsOwnWalk) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE, AUTEUR FROM Discotheque WHERE CODE > ?";
  std::string seen;
  Db().ReadRows(sql, {1}, [&](const RowView& outer) {
    seen += std::string(outer.Text(1)) + ":";
    Db().ReadRows(sql, {outer.Int(0)}, [&](const RowView& inner) { seen += inner.Text(1); });
    seen += ' ';
  });
  EXPECT_EQ(seen, "B:C C: ");
}

TEST_F(BoundValues, NoLockStaysBehindAWalkThatItsReaderBreaksOff) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE FROM Discotheque WHERE CODE > ?";
  EXPECT_THROW(Db().ReadRows(sql, {0}, [](const RowView&) { throw std::runtime_error("reader"); }),
               std::runtime_error);
  OtherProgram other(BasePath());
  other.Do("BEGIN EXCLUSIVE");
  other.Do("UPDATE Discotheque SET AUTEUR = 'Z'");
  other.Do("COMMIT");
  EXPECT_EQ(Answer(sql, {1}), "2 3 ");
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
  EXPECT_EQ(Answer(sql), "1 2 ");
  OtherProgram(BasePath())
      .Do("DROP TABLE Loose; CREATE TABLE Loose(X TEXT); "
          "INSERT INTO Loose VALUES('f'), ('é'), ('e')");
  Db().FindTable("Loose");
  EXPECT_EQ(Answer(sql), "e é f ");
}

// What an asking leaves bound must not answer for the next one, nor a value that was refused.
TEST_F(BoundValues, EachAskingIsAnsweredByItsOwnValues) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE FROM Discotheque WHERE AUTEUR LIKE ? AND CODE > ?";
  const auto answer = [&](const Value& artist, const Value& code) {
    return Answer(sql, {artist, code});
  };
  EXPECT_EQ(answer(std::string("*"), 1), "2 3 ");
  EXPECT_EQ(answer(std::string("*"), 2), "3 ");
  EXPECT_EQ(answer(std::string("b"), 1), "2 ");
  EXPECT_EQ(answer(std::string("b\0", 2), 1), "error " + std::to_string(kErrSyntax));
  EXPECT_EQ(answer(std::string("*"), 1), "2 3 ");
  EXPECT_EQ(answer(std::string("*"), Value()), "");
  EXPECT_EQ(answer(std::string("*"), 1), "2 3 ");
}

// More texts than are kept, then the first again.
TEST_F(BoundValues, AQueryThatWasForgottenIsAskedAnew) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE FROM Discotheque WHERE CODE > ?";
  EXPECT_EQ(Answer(sql, {2}), "3 ");
  for (int i = 0; i < 300; ++i)
    EXPECT_EQ(Answer(sql + " AND CODE <> " + std::to_string(1000 + i), {1}), "2 3 ");
  EXPECT_EQ(Answer(sql, {2}), "3 ");
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
