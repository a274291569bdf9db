// The tables of a base on a PostgreSQL server as one connection knows them, and the queries of the
// dialect as they were translated for them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "store/TableDefs.h"
#include "store/Value.h"
#include "store/postgres/PostgresQuery.h"
#include "store/postgres/PostgresResult.h"

namespace zemo {

// Operations throw StoreError: what `ask` throws, and a query's faults. Thread: the connection's.
class PostgresCatalogue {
 public:
  using Tables = std::vector<std::shared_ptr<const TableDef>>;
  // Asks the server a query of PostgreSQL's SQL.
  using Ask = std::function<PostgresResult(const std::string& sql)>;

  explicit PostgresCatalogue(Ask ask) : ask_(std::move(ask)) {}

  std::shared_ptr<const TableDef> FindTable(std::string_view name);  // null: no such table
  const Tables& AllTables();  // as they stand now, whoever changed them
  // The stand-in of the table, else the table itself; null: no such table.
  std::shared_ptr<const TableDef> FindReadTable(std::string_view name);
  bool IsOld();  // somebody changed the structure since it was read
  int64_t TimesRead() const { return timesRead_; }

  // Stand-ins for the tables that are not the schema's, up to the next change of the structure; a
  // line a fault.
  std::vector<std::string> PutStandIns();
  bool StandInsAreOld();  // somebody changed the structure since

  void Forget();          // the tables; they are read again when they are asked for
  void ForgetStandIns();  // these as well
  void ForgetQueries();

  // Kept by its text and its values' kinds. kErrSyntax for one that gives no rows to who wants
  // some.
  std::shared_ptr<const PostgresQuery> Translated(std::string_view sql, const Values& values,
                                                  bool forRows);

 private:
  std::string Mark() const;

  const Ask ask_;
  Tables tables_;          // as a whole of the structure that structure_ is the mark of
  std::string structure_;  // empty: none read
  int64_t timesRead_ = 0;
  Tables standIns_;
  std::string standInStructure_;  // that they were made for; empty: none were asked for
  std::unordered_map<std::string, std::shared_ptr<const PostgresQuery>> translations_;
};

}  // namespace zemo
