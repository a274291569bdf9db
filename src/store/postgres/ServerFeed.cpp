#include "store/postgres/ServerFeed.h"

#include <algorithm>
#include <map>
#include <utility>

#include "store/Names.h"
#include "store/Reading.h"
#include "store/Schema.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresConnection.h"
#include "store/postgres/PostgresErrors.h"
#include "store/postgres/PostgresValues.h"

namespace zemo {

namespace {

using Parameters = PostgresConnection::Parameters;

// Columns by their tables' own numbers: one that was made anew is another one.
constexpr char kNow[] =
    "SELECT b.identity || '/' || (SELECT oid FROM pg_database WHERE datname = current_database()), "
    "coalesce(c.place, 0), coalesce(c.at::text, ''), "
    "(SELECT coalesce(md5(string_agg(t.oid || ' ' || t.relname || ' ' || a.attname || ' ' || "
    "a.atttypid, ',' ORDER BY t.oid, a.attnum)), '') FROM pg_class t JOIN pg_attribute a ON "
    "a.attrelid = t.oid WHERE t.relkind = 'r' AND t.relnamespace = current_schema()::regnamespace "
    "AND a.attnum > 0 AND NOT a.attisdropped) FROM zemo.base b LEFT JOIN zemo.changes c ON "
    "c.place = (SELECT max(place) FROM zemo.changes)";

std::string ListOf(const std::vector<int64_t>& numbers) {
  std::string list = "{";
  for (const int64_t number : numbers)
    list += (list.size() == 1 ? "" : ",") + std::to_string(number);
  return list + '}';
}

}  // namespace

ServerFeed::ServerFeed(const std::string& url, std::shared_ptr<LockWait> wait, LineKeeper* keeper)
    : connection_(std::make_unique<PostgresConnection>(url, false, std::move(wait), keeper)) {}

ServerFeed::~ServerFeed() = default;

FeedPlace ServerFeed::Now() {
  const PostgresResult now = connection_->Run(kNow, {}, false);
  if (now.Rows() != 1)
    throw StoreError(kErrBadDatabase, connection_->Name() + " has lost its zemo.base");
  return {std::string(now.Text(0, 0)), now.Int(0, 1), std::string(now.Text(0, 2)),
          std::string(now.Text(0, 3))};
}

bool ServerFeed::GoesOnFrom(const FeedPlace& place) {
  if (!Now().IsOfSameBase(place)) return false;
  if (place.place == 0) {
    const PostgresResult first =
        connection_->Run("SELECT coalesce(min(place), 1) FROM zemo.changes", {}, false);
    return first.Int(0, 0) == 1;
  }
  const PostgresResult same = connection_->Run(
      "SELECT 1 FROM zemo.changes WHERE place = $1::bigint AND at::text = $2::text",
      {std::to_string(place.place), place.mark}, false);
  return same.Rows() == 1;
}

bool ServerFeed::HoldsStation() {
  const auto& tables = connection_->AllTables();
  return std::any_of(tables.begin(), tables.end(),
                     [](const auto& table) { return FindSchemaTable(table->Name) != nullptr; });
}

void ServerFeed::RequireStation() {
  if (!HoldsStation()) throw StoreError(kErrNoSuchFile, connection_->Name() + kNoStationsBase);
}

bool ServerFeed::IsOfThisVersion() {
  return connection_->WhyReadOnly().empty();
}

// Tables of others may stand beside the station's.
bool ServerFeed::MayWrite() {
  if (!IsOfThisVersion()) return false;
  const std::vector<std::string> closed = ClosedTables();
  const auto& tables = connection_->AllTables();
  return std::any_of(tables.begin(), tables.end(), [&closed](const auto& table) {
    return FindSchemaTable(table->Name) &&
           std::find(closed.begin(), closed.end(), table->Name) == closed.end();
  });
}

std::vector<std::string> ServerFeed::ClosedTables() {
  const PostgresResult closed = connection_->Run(
      "SELECT relname FROM pg_class WHERE relkind = 'r' AND relnamespace = "
      "current_schema()::regnamespace AND NOT (has_table_privilege(oid, 'INSERT') AND "
      "has_table_privilege(oid, 'UPDATE') AND has_table_privilege(oid, 'DELETE') AND "
      "EXISTS (SELECT 1 FROM pg_trigger WHERE tgrelid = pg_class.oid AND tgname = "
      "'zemo_begin_write')) ORDER BY 1",
      {}, false);
  std::vector<std::string> tables;
  for (int i = 0; i < closed.Rows(); ++i) tables.emplace_back(closed.Text(i, 0));
  return tables;
}

ServerRows ServerFeed::RowsOf(const std::string& table, const std::vector<int64_t>& numbers) {
  ServerRows rows;
  rows.table = table;
  rows.numbers = numbers;
  ReadTable(rows);
  return rows;
}

ServerChanges ServerFeed::Behind(const FeedPlace& place, int64_t mostChanges) {
  ServerChanges changes;
  const Reading moment(*connection_);
  changes.place = Now();
  if (!changes.place.IsOfSameBase(place)) return changes;  // of another structure, perhaps
  const int64_t newest = changes.place.place;
  const PostgresResult noted = connection_->Run(
      "SELECT tablename, number, place, at::text FROM zemo.changes WHERE place > $1::bigint "
      "ORDER BY place LIMIT $2::bigint",
      {std::to_string(place.place), std::to_string(mostChanges)}, false);
  std::map<std::string, ServerRows> tables;
  for (int i = 0; i < noted.Rows(); ++i) {
    ServerRows& rows = tables[std::string(noted.Text(i, 0))];
    if (noted.IsNull(i, 1))
      rows.all = true;
    else
      rows.numbers.push_back(noted.Int(i, 1));
  }
  if (noted.Rows() > 0) {
    changes.place.place = noted.Int(noted.Rows() - 1, 2);
    changes.place.mark = noted.Text(noted.Rows() - 1, 3);
  }
  changes.more = changes.place.place < newest;
  for (auto& [name, rows] : tables) {
    rows.table = name;
    ReadTable(rows);
    changes.tables.push_back(std::move(rows));
  }
  return changes;
}

// A table that is gone has no rows; whoever has it still finds its structure changed.
void ServerFeed::ReadTable(ServerRows& rows) {
  std::sort(rows.numbers.begin(), rows.numbers.end());
  rows.numbers.erase(std::unique(rows.numbers.begin(), rows.numbers.end()), rows.numbers.end());
  const auto def = connection_->FindTable(rows.table);
  if (!def) return;
  const std::string key = NumberColumn(*def);
  std::string sql = "SELECT " + QuotedName(key);
  for (const Field& field : def->Fields) {
    if (field.Name == key) continue;
    rows.fields.push_back(field.Name);
    sql += ", " + QuotedName(field.Name);
  }
  sql += " FROM " + QuotedName(def->Name);
  Parameters parameters;
  if (!rows.all) {
    sql += " WHERE " + QuotedName(key) + " = ANY($1::bigint[])";
    parameters.emplace_back(ListOf(rows.numbers));
  }
  const PostgresResult result =
      connection_->Run(sql + " ORDER BY " + QuotedName(key), parameters, false);
  for (int i = 0; i < result.Rows(); ++i) {
    StoredRow row;
    row.number = result.Int(i, 0);
    for (int column = 1; column < result.Columns(); ++column)
      row.values.push_back(result.Read(i, column));
    rows.rows.push_back(std::move(row));
  }
}

bool ServerFeed::HasItsFunctions() {
  return connection_
             ->Run(
                 "SELECT to_regprocedure('zemo.take(text,bigint,jsonb)') IS NOT NULL AND "
                 "to_regclass('zemo.changes') IS NOT NULL",
                 {}, false)
             .Text(0, 0) == "t";
}

int64_t ServerFeed::TakenFrom(const std::string& machine) {
  return connection_->Run("SELECT coalesce(zemo.place_of($1::text), 0)", {machine}, false)
      .Int(0, 0);
}

void ServerFeed::Take(const std::string& machine, int64_t upTo, const std::string& changes) {
  connection_->Run("SELECT zemo.take($1::text, $2::bigint, $3::jsonb)",
                   {machine, std::to_string(upTo), changes}, true, "what a machine has written");
}

int64_t ServerFeed::Reserve(const std::string& table, int64_t count) {
  return connection_
      ->Run("SELECT zemo.reserve($1::text, $2::bigint)", {table, std::to_string(count)}, true)
      .Int(0, 0);
}

void ServerFeed::ForgetChanges(int days) {
  connection_->Run("SELECT zemo.forget_changes($1::int)", {std::to_string(days)}, true);
}

void ServerFeed::Compact() {
  connection_->Compact();
}

void ServerFeed::Listen() {
  connection_->Run("LISTEN zemo_changes", {}, false);
}

int ServerFeed::Socket() {
  return connection_->Socket();
}

bool ServerFeed::TakeNotices() {
  return connection_->TakeNotices();
}

}  // namespace zemo
