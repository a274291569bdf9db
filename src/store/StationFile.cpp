#include "store/StationFile.h"

#include <sqlite3.h>

#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include "store/Connection.h"
#include "store/Names.h"
#include "store/Schema.h"

namespace zemo {

namespace {

struct CloseDatabase {
  void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct EndStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Reader = std::unique_ptr<sqlite3, CloseDatabase>;
using Query = std::unique_ptr<sqlite3_stmt, EndStatement>;

// As a file that nobody changes: SQLite takes no lock then, and leaves journals and logs alone.
std::string UnchangingFile(const std::string& path) {
  std::string uri = "file:";
  for (const char c : path) {
    if (c == '%')
      uri += "%25";
    else if (c == '?')
      uri += "%3f";
    else if (c == '#')
      uri += "%23";
    else
      uri += c;
  }
  return uri + "?immutable=1";
}

// First column of every row; false and `fault` for a file that cannot be read.
bool FirstColumn(sqlite3* database, const std::string& sql, const std::string& bound,
                 std::vector<std::string>& values, std::string& fault) {
  sqlite3_stmt* prepared = nullptr;
  int result = sqlite3_prepare_v2(database, sql.c_str(), -1, &prepared, nullptr);
  const Query query(prepared);
  if (result == SQLITE_OK) {
    if (!bound.empty()) sqlite3_bind_text(prepared, 1, bound.c_str(), -1, SQLITE_TRANSIENT);
    while ((result = sqlite3_step(prepared)) == SQLITE_ROW) {
      const auto* text =
          static_cast<const char*>(static_cast<const void*>(sqlite3_column_text(prepared, 0)));
      values.emplace_back(text ? text : "");
    }
    if (result == SQLITE_DONE) return true;
  }
  if (result == SQLITE_NOTADB)
    fault = " is not a database";
  else if (result == SQLITE_CORRUPT)
    fault = " is damaged, or not all of it is there yet";
  else
    fault = std::string(" cannot be read: ") + sqlite3_errmsg(database);
  return false;
}

// None for a view, which takes no rows.
constexpr const char* kFieldsOfTable =
    "SELECT field.name FROM pragma_table_info(?1) field WHERE EXISTS (SELECT 1 FROM sqlite_master "
    "WHERE type = 'table' AND name = ?1 COLLATE NOCASE)";

// What is missing of a table; empty: nothing. Settings are read by their place.
std::string MissingOf(const TableDef& wanted, const std::vector<std::string>& fields) {
  if (fields.empty()) return " lacks the table " + wanted.Name;
  const bool byPlace = SameName(wanted.Name, "Cnf");
  for (size_t i = 0; i < wanted.Fields.size(); ++i) {
    const std::string& name = wanted.Fields[i].Name;
    bool found = false;
    for (size_t j = 0; j < fields.size() && !found; ++j)
      found = SameName(fields[j], name) && (!byPlace || i == j);
    if (!found)
      return " lacks the field " + wanted.Name + "." + name + (byPlace ? " at its place" : "");
  }
  return {};
}

std::string Fault(sqlite3* database) {
  std::string fault;
  std::vector<std::string> lines;
  if (!FirstColumn(database, "SELECT COUNT(*) FROM sqlite_master", {}, lines, fault)) return fault;
  for (const TableDef& table : SchemaTables()) {
    std::vector<std::string> fields;
    if (!FirstColumn(database, kFieldsOfTable, table.Name, fields, fault)) return fault;
    if (fault = MissingOf(table, fields); !fault.empty()) return fault;
  }
  lines.clear();
  if (!FirstColumn(database, "PRAGMA quick_check", {}, lines, fault)) return fault;
  for (const std::string& line : lines)
    if (line != "ok" && !line.starts_with("CHECK constraint failed")) return " is damaged: " + line;
  return {};
}

}  // namespace

std::string WhyNoStationBase(const std::string& path) {
  if (!Connection::FileExists(path)) return path + " is empty, or is not there";
  // A pipe would be waited for until somebody writes into it.
  std::error_code failed;
  if (!std::filesystem::is_regular_file(path, failed)) return path + " is not a regular file";
  for (const char* beside : {"-journal", "-wal"})
    if (Connection::FileExists(path + beside))
      return path + beside + " shows that its writer has not closed it";
  sqlite3* database = nullptr;
  const int result = sqlite3_open_v2(UnchangingFile(path).c_str(), &database,
                                     SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
  const Reader reader(database);
  if (result != SQLITE_OK) return path + " cannot be opened";
  const std::string fault = Fault(database);
  return fault.empty() ? fault : path + fault;
}

}  // namespace zemo
