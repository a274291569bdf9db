// Each peculiarity of the dialect, as the server's SQL that it becomes.
#include <gtest/gtest.h>

#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresQuery.h"

namespace zemo {
namespace {

PostgresQuery Translation(const std::string& query, const Values& values = {}) {
  const auto lookup = [](std::string_view name) -> std::shared_ptr<const TableDef> {
    const TableDef* table = FindSchemaTable(name);
    return table ? std::make_shared<const TableDef>(*table) : nullptr;
  };
  return TranslateForPostgres(query, lookup, values);
}

std::string Condition(const std::string& condition, const Values& values = {}) {
  const std::string sql = Translation("DELETE * FROM vt WHERE " + condition, values).sql;
  const std::string head = "DELETE FROM \"VT\" WHERE ", end = " RETURNING \"CODE\"";
  EXPECT_EQ(sql.substr(0, head.size()), head);
  EXPECT_EQ(sql.substr(sql.size() - end.size()), end);
  return sql.substr(head.size(), sql.size() - head.size() - end.size());
}

TEST(PostgresDialect, NamesAreThoseThatAreStoredWhateverTheirCase) {
  EXPECT_EQ(Translation("SELECT libelle FROM [vt]").sql,
            "SELECT \"LIBELLE\" AS \"LIBELLE\" FROM \"VT\" AS \"vt\" ORDER BY \"vt\".\"CODE\"");
  EXPECT_EQ(Translation("SELECT * FROM VARIETE").sql,
            "SELECT \"VARIETE\".\"POURCENT\", \"VARIETE\".\"VARIETE\" FROM \"Variete\" AS "
            "\"VARIETE\" ORDER BY \"VARIETE\".\"rowid\"");
}

TEST(PostgresDialect, WhereStarSelectsAllRows) {
  EXPECT_EQ(Condition("'*'"), "(true)");
  EXPECT_EQ(Condition("CUT = True"), "(\"CUT\" <> 0)");
  EXPECT_EQ(Condition("CUT <> True"), "(\"CUT\" = 0)");
}

TEST(PostgresDialect, TopGivesTheNewestAmongEqualsAndNullIsBelowEverything) {
  EXPECT_EQ(
      Translation("SELECT TOP 2 CODE FROM Rapport WHERE CODE > 5 ORDER BY DATENUM DESC;").sql,
      "SELECT \"CODE\" AS \"CODE\" FROM \"Rapport\" AS \"Rapport\" WHERE (\"CODE\" > 5) ORDER "
      "BY \"DATENUM\" DESC NULLS LAST, \"Rapport\".\"CODE\" DESC LIMIT nullif(greatest(2, -1), "
      "-1)");
}

TEST(PostgresDialect, RowsByTheirNumberAreReadOffItsIndexWhichKnowsNoNull) {
  const std::string from = "SELECT \"CODE\" AS \"CODE\" FROM \"Rapport\" AS \"Rapport\" ORDER BY ";
  EXPECT_EQ(Translation("SELECT CODE FROM Rapport ORDER BY CODE").sql, from + "\"CODE\"");
  EXPECT_EQ(Translation("SELECT CODE FROM Rapport ORDER BY CODE DESC").sql, from + "\"CODE\" DESC");
}

// Where the table of the number may have no row for the other's.
TEST(PostgresDialect, ANumberOfAJoinMayBeNull) {
  const std::string sql = Translation(
                              "SELECT VT.CODE FROM Rapport LEFT JOIN VT ON VT.CODE = Rapport.CODE "
                              "ORDER BY VT.CODE")
                              .sql;
  EXPECT_TRUE(sql.ends_with(" ORDER BY \"VT\".\"CODE\" ASC NULLS FIRST")) << sql;
}

TEST(PostgresDialect, TextsCompareWithoutCaseAndInTheFrenchOrder) {
  EXPECT_EQ(Condition("LIBELLE = 'a'"),
            "(lower(\"LIBELLE\" COLLATE \"C\") = lower('a'::text COLLATE \"C\"))");
  EXPECT_EQ(Condition("LIBELLE = 'É'"), "(zemo.folded(\"LIBELLE\") = zemo.folded('É'::text))");
  EXPECT_EQ(Condition("LIBELLE < 'a'"),
            "((zemo.letters(\"LIBELLE\") COLLATE \"C\", zemo.accents(\"LIBELLE\") COLLATE \"C\") < "
            "(zemo.letters('a'::text) COLLATE \"C\", zemo.accents('a'::text) COLLATE \"C\"))");
}

TEST(PostgresDialect, LikeTakesItsWildcardsFromStarAndQuestionMark) {
  EXPECT_EQ(Condition("LIBELLE LIKE 'a?*'"),
            "(lower(\"LIBELLE\" COLLATE \"C\") LIKE lower('a_%'::text COLLATE \"C\"))");
  EXPECT_EQ(PostgresPattern("100%_\\*?"), "100\\%\\_\\\\%_");
  EXPECT_EQ(PostgresLiteral("it's \\"), "E'it''s \\\\'");
}

TEST(PostgresDialect, AValueGoesBesideTheTextInTheFormOfItsColumn) {
  const PostgresQuery query =
      Translation("UPDATE VT SET LIBELLE = ?, START = ? WHERE DUREE > ?",
                  {std::string("x'; DROP TABLE VT"), 2.5, std::string("7")});
  EXPECT_EQ(query.sql,
            "UPDATE \"VT\" SET \"LIBELLE\" = $1::text, \"START\" = $2::bigint WHERE (\"DUREE\" > "
            "$3::float8) RETURNING \"CODE\"");
  ASSERT_EQ(query.places.size(), 3U);
  std::string text;
  EXPECT_TRUE(InForm(query.places[1].form, 2.5, text));
  EXPECT_EQ(text, "2");
  EXPECT_TRUE(InForm(query.places[2].form, std::string(" 7"), text));
  EXPECT_EQ(text, "7");
  EXPECT_FALSE(InForm(query.places[0].form, Value(), text));
}

// What a column of whole numbers is compared with in another form costs a look at every row.
TEST(PostgresDialect, AWholeNumberIsComparedAsTheColumnHoldsIt) {
  EXPECT_EQ(Condition("CODE >= ?", {int64_t{5}}), "(\"CODE\" >= $1::bigint)");
  EXPECT_EQ(Condition("? = START", {int64_t{5}}), "($1::bigint = \"START\")");
  EXPECT_EQ(Condition("CODE BETWEEN ? AND ?", {int64_t{5}, int64_t{6}}),
            "((\"CODE\" >= $1::bigint) AND (\"CODE\" <= $2::bigint))");
  EXPECT_EQ(Condition("CODE = ?", {5.5}), "(\"CODE\" = $1::float8)");
  EXPECT_EQ(Translation("DELETE * FROM Rapport WHERE DATENUM < ?", {int64_t{5}}).sql,
            "DELETE FROM \"Rapport\" WHERE (\"DATENUM\" < $1::numeric) RETURNING \"CODE\"");
  EXPECT_EQ(Condition("CODE = ? + 1", {int64_t{5}}), "(\"CODE\" = ($1::numeric + 1))");
}

TEST(PostgresDialect, ATextThatIsNoNumberIsAboveAll) {
  EXPECT_EQ(Condition("START < ?", {std::string("x")}),
            "(CASE WHEN true AND \"START\" IS NOT NULL THEN true END)");
  EXPECT_EQ(Condition("START = ?", {std::string("x")}),
            "(CASE WHEN true AND \"START\" IS NOT NULL THEN false END)");
  EXPECT_EQ(Condition("LIBELLE = ?", {5}),
            "(lower(\"LIBELLE\" COLLATE \"C\") = lower($1::text COLLATE \"C\"))");
}

TEST(PostgresDialect, WhatIsNotUnderstoodSaysWhere) {
  const auto fault = [](const std::string& query) {
    try {
      Translation(query);
    } catch (const StoreError& error) {
      return std::to_string(error.Number()) + ' ' + error.what();
    }
    return std::string();
  };
  EXPECT_EQ(fault("SELECT NONE FROM VT"), "3265 no such column: NONE, in: SELECT NONE FROM VT");
  EXPECT_EQ(fault("SELECT * FROM None"), "3078 no such table: None, in: SELECT * FROM None");
  EXPECT_EQ(fault("SELECT * FROM VT WHERE"), "3075 incomplete input, in: SELECT * FROM VT WHERE");
  EXPECT_EQ(fault("SELECT * FROM VT LIMIT 3"),
            "3075 near \"LIMIT\": syntax error, in: SELECT * FROM VT LIMIT 3");
  EXPECT_EQ(fault("UPDATE VT SET NONE = 1"),
            "3265 table VT has no column named NONE, in: UPDATE VT SET NONE = 1");
}

}  // namespace
}  // namespace zemo
