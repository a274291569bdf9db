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
#include "store/postgres/PostgresValues.h"

namespace zemo {

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

// The values in the forms of the query's places.
PostgresParameters ParametersOf(const PostgresQuery& query, const Values& values);

}  // namespace zemo
