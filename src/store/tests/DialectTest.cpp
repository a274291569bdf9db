// Each peculiarity of the dialect, as the SQL that it becomes.
#include <gtest/gtest.h>

#include "store/Dialect.h"
#include "store/Schema.h"
#include "store/StoreError.h"

namespace zemo {
namespace {

TranslatedQuery Translation(const std::string& query, const Values& values = {}) {
  std::vector<ValueKind> kinds;
  for (const Value& value : values) kinds.push_back(KindOf(value));
  const auto lookup = [](std::string_view name) -> std::shared_ptr<const TableDef> {
    const TableDef* table = FindSchemaTable(name);
    return table ? std::make_shared<const TableDef>(*table) : nullptr;
  };
  return TranslateQuery(query, lookup, kinds);
}

std::string Translated(const std::string& query, const Values& values = {}) {
  return Translation(query, values).sql;
}

struct Case {
  const char* dialect;
  const char* sql;
};

void ExpectTranslations(std::initializer_list<Case> cases) {
  for (const Case& c : cases) EXPECT_EQ(Translated(c.dialect), c.sql) << c.dialect;
}

TEST(Dialect, DeleteStarLosesItsStar) {
  ExpectTranslations({
      {"DELETE * FROM Pls WHERE NUMPLS = 3", "DELETE FROM Pls WHERE NUMPLS = 3"},
      {"delete * from Pls", "delete from Pls"},
      {"DELETE FROM Pls", "DELETE FROM Pls"},
  });
}

TEST(Dialect, WhereStarSelectsAllRows) {
  ExpectTranslations({
      {"SELECT Touche ,FileName FROM DiscothequeVirgule WHERE '*'",
       "SELECT Touche ,FileName FROM DiscothequeVirgule WHERE 1 ORDER BY \"CODE\""},
      {"SELECT * FROM VT WHERE '*' AND CUT = 0",
       "SELECT * FROM VT WHERE 1 AND CUT = 0 ORDER BY \"CODE\""},
      {"SELECT * FROM VT WHERE LIBELLE = '*'",
       "SELECT * FROM VT WHERE LIBELLE = '*' ORDER BY \"CODE\""},
      {"SELECT * FROM VT WHERE LIBELLE IN ('*')",
       "SELECT * FROM VT WHERE LIBELLE IN ('*') ORDER BY \"CODE\""},
  });
}

TEST(Dialect, TopBecomesALimitWithTheNewestFirstAmongEquals) {
  ExpectTranslations({
      {"SELECT TOP 1 CODE FROM Rapport ORDER BY CODE DESC;",
       "SELECT CODE FROM Rapport ORDER BY CODE DESC LIMIT 1"},
      {"SELECT TOP 1 Auteur, CODE FROM Rapport Where Auteur = 'x' ORDER BY DATENUM DESC",
       "SELECT Auteur, CODE FROM Rapport Where Auteur = 'x' ORDER BY DATENUM DESC, \"CODE\" DESC "
       "LIMIT 1"},
      {"SELECT TOP 20 * FROM Rapport WHERE Code > 0 ORDER BY DATENUM DESC;",
       "SELECT * FROM Rapport WHERE Code > 0 ORDER BY DATENUM DESC, \"CODE\" DESC LIMIT 20"},
      {"SELECT TOP 2 * FROM Variete ORDER BY POURCENT",
       "SELECT * FROM Variete ORDER BY POURCENT, rowid DESC LIMIT 2"},
      {"SELECT TOP 3 * FROM Rapport", "SELECT * FROM Rapport ORDER BY \"CODE\" LIMIT 3"},
  });
}

TEST(Dialect, LikeTakesItsWildcardsFromStarAndQuestionMark) {
  ExpectTranslations({
      {"SELECT * FROM Toph WHERE Heure = 00 AND JourSemaine Like '??X*'",
       "SELECT * FROM Toph WHERE Heure = 00 AND JourSemaine Like '__X%' ORDER BY \"CODE\""},
      {"DELETE * FROM VT WHERE LIBELLE NOT LIKE 'a*'",
       "DELETE FROM VT WHERE LIBELLE NOT LIKE 'a%'"},
      {"DELETE * FROM VT WHERE FILENAME LIKE 'C:\\\\x\\50%_[a]*'",
       "DELETE FROM VT WHERE FILENAME LIKE 'C:\\\\\\\\x\\\\50\\%\\_[a]%' ESCAPE '\\'"},
      {"DELETE * FROM VT WHERE FILENAME LIKE '\\\\srv\\x*'",
       "DELETE FROM VT WHERE FILENAME LIKE '\\\\srv\\x%'"},
      {"DELETE * FROM VT WHERE FILENAME LIKE 'l''a*'",
       "DELETE FROM VT WHERE FILENAME LIKE 'l''a%'"},
  });
}

TEST(Dialect, LikeWithAccentsOrComputedPatternsIsOurOwnMatch) {
  ExpectTranslations({
      {"DELETE * FROM VT WHERE LIBELLE LIKE 'é*'", "DELETE FROM VT WHERE LIBELLE REGEXP 'é*'"},
      {"DELETE * FROM VT WHERE LIBELLE NOT LIKE 'é%'",
       "DELETE FROM VT WHERE LIBELLE NOT REGEXP 'é%'"},
      {"DELETE * FROM VT WHERE LIBELLE LIKE FILENAME",
       "DELETE FROM VT WHERE LIBELLE REGEXP FILENAME"},
      {"DELETE * FROM VT WHERE LIBELLE LIKE 'a' || '*'",
       "DELETE FROM VT WHERE LIBELLE REGEXP 'a' || '*'"},
  });
}

TEST(Dialect, LiteralsWithAccentsAreComparedWithoutCase) {
  ExpectTranslations({
      {"DELETE * FROM VT WHERE LIBELLE = 'a' AND FILENAME = 'É'",
       "DELETE FROM VT WHERE LIBELLE = 'a' AND FILENAME <> 'É' COLLATE FR_CASE = 0"},
      {"DELETE * FROM VT WHERE 'É' <> LIBELLE",
       "DELETE FROM VT WHERE 'É' COLLATE FR_CASE <> + LIBELLE"},
      {"DELETE * FROM VT WHERE LIBELLE In('A','É') AND CODE > 1",
       "DELETE FROM VT WHERE LIBELLE COLLATE FR_CASE In('A','É') AND CODE > 1"},
      {"DELETE * FROM VT WHERE LIBELLE NOT In('É')",
       "DELETE FROM VT WHERE LIBELLE COLLATE FR_CASE NOT In('É')"},
      {"DELETE * FROM VT WHERE LIBELLE IN ('A', 'B')",
       "DELETE FROM VT WHERE LIBELLE IN ('A', 'B')"},
  });
}

TEST(Dialect, StoredLiteralsAreLeftAlone) {
  ExpectTranslations({
      {"INSERT INTO VT(LIBELLE) VALUES('É* TOP 1 -- True')",
       "INSERT INTO VT(LIBELLE) VALUES('É* TOP 1 -- True')"},
      {"UPDATE VT SET LIBELLE = 'É', CUT = True WHERE CODE = 1",
       "UPDATE VT SET LIBELLE = 'É', CUT = -1 WHERE CODE = 1"},
  });
}

TEST(Dialect, TextsCompareAboveAndBelowInTheOrderOfListings) {
  ExpectTranslations({{"DELETE * FROM VT WHERE LIBELLE >= 'e' AND CODE < 5",
                       "DELETE FROM VT WHERE LIBELLE >= 'e' COLLATE FR_ORDER AND CODE < 5"}});
}

TEST(Dialect, TrueIsAnythingButZero) {
  ExpectTranslations({
      {"DELETE * FROM VT WHERE CUT = True", "DELETE FROM VT WHERE CUT <> 0"},
      {"DELETE * FROM VT WHERE CUT <> true", "DELETE FROM VT WHERE CUT = 0"},
      {"DELETE * FROM VT WHERE CUT = False", "DELETE FROM VT WHERE CUT = 0"},
      {"INSERT INTO VT(CUT) VALUES(True)", "INSERT INTO VT(CUT) VALUES(-1)"},
  });
}

TEST(Dialect, TextInDoubleQuotesAndNamesInBracketsAreUnderstood) {
  ExpectTranslations({
      {"DELETE * FROM [VT] WHERE [LIBELLE] = \"it's \"\"it\"\"\"",
       "DELETE FROM \"VT\" WHERE \"LIBELLE\" = 'it''s \"it\"'"},
  });
}

TEST(Dialect, TextIsOrderedInFrenchAndNumbersByTheirIndex) {
  ExpectTranslations({
      {"SELECT * FROM DiscothequeJingle ORDER BY LIBELLE",
       "SELECT * FROM DiscothequeJingle ORDER BY LIBELLE COLLATE FR_ORDER, \"CODE\""},
      {"Select * From Discotheque ORDER BY NBPASSJOUR DESC , Lastdiff ASC;",
       "Select * From Discotheque ORDER BY NBPASSJOUR DESC , Lastdiff ASC, \"CODE\""},
      {"SELECT * FROM Discotheque ORDER BY Discotheque.AUTEUR DESC, [titre]",
       "SELECT * FROM Discotheque ORDER BY Discotheque.AUTEUR COLLATE FR_ORDER DESC, \"titre\" "
       "COLLATE "
       "FR_ORDER, \"CODE\""},
      {"SELECT * FROM Models WHERE JOUR = 1 ORDER BY CODE ASC;",
       "SELECT * FROM Models WHERE JOUR = 1 ORDER BY CODE ASC"},
  });
}

TEST(Dialect, RowsWithoutAnOrderComeAsTheyWereStored) {
  ExpectTranslations({
      {"SELECT * FROM Discotheque ", "SELECT * FROM Discotheque ORDER BY \"CODE\""},
      {"SELECT * FROM CNF", "SELECT * FROM CNF ORDER BY rowid"},
  });
}

TEST(Dialect, RowsThatAreNoneOfATableKeepTheOrderTheyHave) {
  ExpectTranslations({
      {"SELECT COUNT(*) FROM Toph ", "SELECT COUNT(*) FROM Toph"},
      {"SELECT DISTINCT GENRE FROM Discotheque ORDER BY GENRE",
       "SELECT DISTINCT GENRE FROM Discotheque ORDER BY GENRE COLLATE FR_ORDER"},
      {"SELECT GENRE FROM Discotheque GROUP BY GENRE",
       "SELECT GENRE FROM Discotheque GROUP BY GENRE"},
      {"SELECT * FROM Playlist, Pls WHERE NUMPLS = Playlist.CODE",
       "SELECT * FROM Playlist, Pls WHERE NUMPLS = Playlist.CODE"},
      {"SELECT 1", "SELECT 1"},
      {"SELECT * FROM NoTable", "SELECT * FROM NoTable"},
  });
}

TEST(Dialect, ACopyOfATableMatchesFieldsByName) {
  const auto old = std::make_shared<TableDef>();
  old->Name = "TBTEMP";
  for (const char* name : {"VARIETE", "Gone"}) {
    Field field;
    field.Name = name;
    old->Fields.push_back(field);
  }
  const auto lookup = [&](std::string_view name) -> std::shared_ptr<const TableDef> {
    if (name == "TBTEMP") return old;
    return std::make_shared<const TableDef>(*FindSchemaTable(name));
  };
  EXPECT_EQ(
      TranslateQuery("INSERT INTO Variete SELECT * FROM TBTEMP ORDER BY TBTEMP.VARIETE", lookup)
          .sql,
      "INSERT INTO Variete (\"VARIETE\") SELECT \"VARIETE\" FROM TBTEMP ORDER BY TBTEMP.VARIETE "
      "COLLATE FR_ORDER, rowid");
}

TEST(Dialect, TwoMinusSignsAreNoComment) {
  EXPECT_EQ(Translated("DELETE * FROM VT WHERE START = 5--3"),
            "DELETE FROM VT WHERE START = 5- -3");
  EXPECT_EQ(Translated("DELETE * FROM VT WHERE START = 6/*2"),
            "DELETE FROM VT WHERE START = 6/ *2");
}

TEST(Dialect, NumbersKeepTheirForm) {
  EXPECT_EQ(Translated("DELETE * FROM VT WHERE START = 1.5e-3 OR START = .5"),
            "DELETE FROM VT WHERE START = 1.5e-3 OR START = .5");
}

TEST(Dialect, AnOpenQuoteIsAnError) {
  for (const char* query : {"SELECT * FROM VT WHERE LIBELLE = 'x", "SELECT \"", "SELECT [a"}) {
    try {
      Translated(query);
      FAIL() << query;
    } catch (const StoreError& error) {
      EXPECT_EQ(error.Number(), kErrSyntax);
    }
  }
}

TEST(Dialect, AValueIsTreatedAsItsLiteralIs) {
  const Value ascii = std::string("x"), wide = std::string("é"), percent = std::string("5%");
  const std::string end = " ORDER BY \"CODE\"";
  const std::string equals = "SELECT * FROM VT WHERE LIBELLE = ?";
  EXPECT_EQ(Translated(equals, {ascii}), "SELECT * FROM VT WHERE LIBELLE = ?1" + end);
  EXPECT_EQ(Translated(equals, {wide}),
            "SELECT * FROM VT WHERE LIBELLE <> ?1 COLLATE FR_CASE = 0" + end);
  EXPECT_EQ(Translated("SELECT * FROM VT WHERE LIBELLE < ?", {ascii}),
            "SELECT * FROM VT WHERE LIBELLE < ?1 COLLATE FR_ORDER" + end);
  EXPECT_EQ(Translated("SELECT * FROM VT WHERE CUT < ?", {5}),
            "SELECT * FROM VT WHERE CUT < ?1" + end);
  const std::string like = "SELECT * FROM VT WHERE LIBELLE LIKE ?";
  EXPECT_EQ(Translated(like, {ascii}), "SELECT * FROM VT WHERE LIBELLE LIKE ?1" + end);
  EXPECT_EQ(Translated(like, {percent}),
            "SELECT * FROM VT WHERE LIBELLE LIKE ?1 ESCAPE '\\'" + end);
  EXPECT_EQ(Translated(like, {wide}), "SELECT * FROM VT WHERE LIBELLE REGEXP ?1" + end);
  EXPECT_EQ(Translation(like, {percent}).patterns, std::vector<size_t>{0});
  EXPECT_TRUE(Translation(like, {wide}).patterns.empty());
  EXPECT_EQ(Translated("SELECT TOP ? CODE FROM VT WHERE LIBELLE IN(?, ?)", {3, ascii, wide}),
            "SELECT CODE FROM VT WHERE LIBELLE COLLATE FR_CASE IN(?2, ?3)" + end + " LIMIT ?1");
}

TEST(Dialect, ThePatternOfAValueHasTheWildcardsOfSqlite) {
  EXPECT_EQ(LikePattern("a*b?"), "a%b_");
  EXPECT_EQ(LikePattern("a\\*"), "a\\%");
  EXPECT_EQ(LikePattern("100%_\\?"), "100\\%\\_\\\\_");
}

TEST(Dialect, AnEmptyQueryStaysEmpty) {
  EXPECT_EQ(Translated("  ;; "), "");
}

}  // namespace
}  // namespace zemo
