// The station's query dialect, translated to PostgreSQL's SQL. Texts, numbers and Null answer as
// they do on the file: who compares with whom decides how, so that the translation knows the
// columns' types and the kinds of the values.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/Dialect.h"
#include "store/TableDefs.h"
#include "store/Value.h"

namespace zemo {

// The form in which a place of the translated query takes a value.
struct PostgresPlace {
  enum Form {
    kNumber,
    kWhole,  // to the nearest even
    kText,
    kPattern  // of LIKE
  };
  size_t value = 0;  // from 0, of the query's own
  Form form = kText;
};

struct PostgresQuery {
  std::string sql;  // the place n, from 1, is $n
  std::vector<PostgresPlace> places;
  bool givesRows = false;
  std::string written;     // table that it writes to; empty: it reads
  bool inserts = false;    // what is returned are the numbers of the rows written, in any case
  bool movesKeys = false;  // the rows may have other numbers afterwards
};

// Throws StoreError: kErrSyntax, kErrNoSuchTable, kErrNoSuchField, and what a value is refused with
// that its field can never hold.
PostgresQuery TranslateForPostgres(std::string_view query, const TableLookup& tables,
                                   const Values& values);

// What the translation depends on beside the text: a letter a value.
std::string KindsOf(const Values& values);
// The value in its form; nothing for Null.
bool InForm(PostgresPlace::Form form, const Value& value, std::string& text);

// The column that numbers the rows: the key, or one of the engine's own that no query shows.
inline constexpr char kHiddenNumber[] = "rowid";
std::string NumberColumn(const TableDef& table);

// PostgreSQL's pattern for one of the dialect.
std::string PostgresPattern(std::string_view written);
// 'text', whatever stands in it.
std::string PostgresLiteral(std::string_view text);

}  // namespace zemo
