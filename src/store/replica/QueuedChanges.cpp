#include "store/replica/QueuedChanges.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

#include "store/Connection.h"
#include "store/Names.h"
#include "store/Reading.h"
#include "store/postgres/PostgresValues.h"

namespace zemo {

namespace {

using nlohmann::json;

// While so many are read a writer waits: some milliseconds.
constexpr int kRowsAtATime = 500;

// What became of a row since the server heard of it last.
struct RowWrites {
  bool isNew = false;  // the server has not had it
  bool again = false;  // it was removed and made again: the server may have the former one
  bool gone = false;   // the last of these writes removed it, though a later one may make it again
  std::set<std::string> fields{};  // that got another value
};
using TableWrites = std::map<int64_t, RowWrites>;

void AddFields(const std::string& lines, std::set<std::string>& fields) {
  size_t begin = 0;
  for (size_t end = lines.find('\n'); end != std::string::npos; end = lines.find('\n', begin)) {
    fields.insert(lines.substr(begin, end - begin));
    begin = end + 1;
  }
}

std::map<std::string, TableWrites> WritesUpTo(Connection& replica, int64_t last) {
  std::map<std::string, TableWrites> tables;
  Statement queue = replica.Prepare(
      "SELECT tableName, act, number, fields FROM zemo_queue WHERE place <= ?1 ORDER BY place");
  queue.Bind(1, last);
  while (queue.Step()) {
    const std::string act = queue.Text(1);
    auto [found, first] = tables[queue.Text(0)].try_emplace(queue.Int(2));
    RowWrites& row = found->second;
    if (act == "I") (first ? row.isNew : row.again) = true;
    row.gone = act == "D";
    if (act == "U") AddFields(queue.Text(3), row.fields);
  }
  return tables;
}

// A whole number's field holds nothing else on the server.
json InJson(const Field& field, const Value& value) {
  if (IsNull(value)) return nullptr;
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  const auto* real = std::get_if<double>(&value);
  if (!real) return std::get<int64_t>(value);
  if (!std::isfinite(*real)) return *real < 0 ? "-Infinity" : "Infinity";  // no number of JSON
  if (field.Type == FieldType::kFloat64) return *real;
  return AsInt(value);
}

class TableChanges {
 public:
  TableChanges(Connection& replica, const std::string& name)
      : replica_(replica), name_(name), def_(replica.FindTable(name)) {
    if (!def_) return;
    key_ = NumberColumn(*def_);
    select_ = "SELECT " + (def_->AutoField() ? QuotedName(key_) : "rowid");
    for (const Field& field : def_->Fields) select_ += ", " + QuotedName(field.Name);
    select_ += " FROM main." + QuotedName(def_->Name) + " WHERE " +
               (def_->AutoField() ? QuotedName(key_) : "rowid") + " = ?1";
  }

  json From(const TableWrites& writes) {
    json gone = json::array(), made = json::array(), changed = json::array();
    std::map<std::set<std::string>, json> byFields;
    std::optional<Reading<Connection>> reading;
    int read = 0;
    for (const auto& [number, row] : writes) {
      if (read++ % kRowsAtATime == 0) {
        reading.reset();
        reading.emplace(replica_);
      }
      const json values = Row(number);
      const bool isThere = !values.is_null() && !row.gone;
      if ((!isThere && !row.isNew) || row.again) gone.push_back(number);
      if (!isThere) continue;
      if (row.isNew || row.again)
        made.push_back(values);
      else
        byFields[row.fields].push_back(values);
    }
    for (auto& [fields, rows] : byFields)
      changed.push_back({{"fields", fields}, {"rows", std::move(rows)}});
    return {{"table", name_}, {"key", key_}, {"gone", gone}, {"changed", changed}, {"new", made}};
  }

 private:
  json Row(int64_t number) {
    if (!def_) return nullptr;
    Statement query = replica_.Prepare(select_);
    query.Bind(1, number);
    if (!query.Step()) return nullptr;
    json row;
    row[key_] = number;
    Value value;
    for (size_t i = 0; i < def_->Fields.size(); ++i) {
      const Field& field = def_->Fields[i];
      query.Read(static_cast<int>(i) + 1, value);
      if (field.Name != key_) row[field.Name] = InJson(field, value);
    }
    return row;
  }

  Connection& replica_;
  const std::string name_;
  const std::shared_ptr<const TableDef> def_;  // null: the table is gone
  std::string key_, select_;
};

}  // namespace

QueuedWrites ChangesUpTo(Connection& replica, int64_t last) {
  QueuedWrites queued;
  queued.last = last;
  json changes = json::array();
  for (const auto& [table, writes] : WritesUpTo(replica, last)) {
    queued.rows += static_cast<int64_t>(writes.size());
    queued.tables.push_back(table);
    changes.push_back(TableChanges(replica, table).From(writes));
  }
  // Bytes that are no UTF-8 are kept by no server: the sign of replacement takes their place.
  queued.changes = changes.dump(-1, ' ', false, json::error_handler_t::replace);
  return queued;
}

std::string RowInWords(Connection& replica, std::string_view table, int64_t number) {
  const json row = TableChanges(replica, std::string(table)).From({{number, {.isNew = true}}});
  const json& rows = row["new"];
  return rows.empty() ? std::string()
                      : rows[0].dump(-1, ' ', false, json::error_handler_t::replace);
}

}  // namespace zemo
