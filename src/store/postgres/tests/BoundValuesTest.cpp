// Values that are bound to a query: what it answers and stores is what it does with the same values
// as literals in its text.
#include <random>
#include <stdexcept>

#include "store/postgres/tests/EngineFixture.h"

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

// A query for each way to compare with a value.
Strings Comparisons() {
  Strings queries;
  for (const char* condition : {
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
           "ECARTMINUTES > ?",
           "? <> ECARTMINUTES",
           "LASTDIFF >= ?",
           "LASTDIFF LIKE ?",
           "AUTEUR IN(?)",
           "AUTEUR NOT IN(?)",
           "ECARTMINUTES IN(?)",
           "NOT AUTEUR = ? AND CODE > 3",
           "CODE IN (SELECT CODE FROM Discotheque WHERE AUTEUR = ?)",
       })
    queries.push_back(std::string("SELECT CODE FROM Discotheque WHERE ") + condition);
  return queries;
}

class BoundValues : public EngineTest {
 protected:
  std::string Answer(const std::string& sql, const Values& values = {}) {
    return AnswerOf(Db(), sql, values);
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
ON_EVERY_ENGINE(BoundValues);

TEST_P(BoundValues, AnswerAsTheirLiteralsDo) {
  FillLibrary();
  for (const std::string& sql : Comparisons()) {
    for (const Value& value : AllKinds())
      EXPECT_EQ(Answer(sql, {value}), Answer(QueryWithValues(sql, {value})))
          << QueryWithValues(sql, {value});
  }
}

TEST_P(BoundValues, SeveralOfAQueryAnswerAsTheirLiteralsDo) {
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
TEST_P(BoundValues, AreStoredAsTheirLiteralsAre) {
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
    Strings rows = Other().Rows(
        "SELECT AUTEUR, DUREE, LASTDIFF, ECARTMINUTES, LENGTH(AUTEUR) FROM Discotheque");
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

TEST_P(BoundValues, ATextWithAZeroCharacterIsRefused) {
  const std::string zero("a\0b", 3);
  EXPECT_EQ(ErrorOf([&] { Query("SELECT CODE FROM Discotheque WHERE AUTEUR = '" + zero + "'"); }),
            kErrSyntax);
  EXPECT_EQ(
      ErrorOf([&] { Db().OpenRecordset("SELECT CODE FROM Discotheque WHERE AUTEUR = ?", {zero}); }),
      kErrSyntax);
}

TEST_P(BoundValues, AreAsManyAsTheQueryHasPlaces) {
  const std::string sql = "SELECT CODE FROM Discotheque WHERE AUTEUR = ?";
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql, {1, 2}); }), kErrSyntax);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset(sql, {1}); }), 0);
  EXPECT_EQ(ErrorOf([&] { Db().OpenRecordset("SELECT '?', [CODE] FROM Discotheque"); }), 0)
      << "a question mark in a text is no place";
}

TEST_P(BoundValues, AFaultTellsTheQueryWithThem) {
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

// The same text inside its own walk, with another value.
TEST_P(BoundValues, AQueryIsAskedInsideItsOwnWalk) {
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

TEST_P(BoundValues, NoLockStaysBehindAWalkThatItsReaderBreaksOff) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE FROM Discotheque WHERE CODE > ?";
  EXPECT_THROW(Db().ReadRows(sql, {0}, [](const RowView&) { throw std::runtime_error("reader"); }),
               std::runtime_error);
  Other().Db().BeginTrans();
  Other().Do("UPDATE Discotheque SET AUTEUR = 'Z'");
  Other().Db().CommitTrans();
  EXPECT_EQ(Answer(sql, {1}), "2 3 ");
}

// What an asking leaves bound must not answer for the next one, nor a value that was refused.
TEST_P(BoundValues, EachAskingIsAnsweredByItsOwnValues) {
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
TEST_P(BoundValues, AQueryThatWasForgottenIsAskedAnew) {
  for (const char* artist : {"A", "B", "C"}) AddCard(artist);
  const std::string sql = "SELECT CODE FROM Discotheque WHERE CODE > ?";
  EXPECT_EQ(Answer(sql, {2}), "3 ");
  for (int i = 0; i < 300; ++i)
    EXPECT_EQ(Answer(sql + " AND CODE <> " + std::to_string(1000 + i), {1}), "2 3 ");
  EXPECT_EQ(Answer(sql, {2}), "3 ");
}

// The same of the one engine as of the other.
TEST(BoundValuesOfBothEngines, AreAnsweredAndStoredAlike) {
  if (!test::TestServer::Get().Missing().empty()) GTEST_SKIP() << test::TestServer::Get().Missing();
  EngineBase file(Engine::kFile), server(Engine::kServer);
  const auto onBoth = [&](const std::string& sql, const Values& values) {
    int errors[2];
    int at = 0;
    for (Database* base : {&file.Db(), &server.Db()})
      errors[at++] = ErrorOf([&] { base->Execute(sql, values); });
    EXPECT_EQ(errors[0], errors[1]) << QueryWithValues(sql, values);
  };
  for (const Value& value : AllKinds()) {
    const int64_t minutes = AsInt(value) % 1000;
    onBoth("INSERT INTO Discotheque(AUTEUR, TITRE, ECARTMINUTES, LASTDIFF) VALUES(?,?,?,?)",
           {value, "the " + AsText(value).substr(0, 30), minutes, AsReal(value)});
  }
  EXPECT_EQ(AnswerOf(file.Db(), "SELECT AUTEUR FROM Discotheque"),
            AnswerOf(server.Db(), "SELECT AUTEUR FROM Discotheque"));
  for (const std::string& sql : Comparisons()) {
    for (const Value& value : AllKinds())
      EXPECT_EQ(AnswerOf(file.Db(), sql, {value}), AnswerOf(server.Db(), sql, {value}))
          << QueryWithValues(sql, {value});
  }
}

}  // namespace
}  // namespace zemo
