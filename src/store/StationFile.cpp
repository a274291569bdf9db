#include "store/StationFile.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <string>
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

// Settings are read by their place. Those of an older version are brought up to date by their
// names.
bool SettingsMisplaced(const std::vector<std::string>& fields) {
  const std::vector<Field>& wanted = FindSchemaTable("Cnf")->Fields;
  return fields.size() == wanted.size() &&
         !std::equal(fields.begin(), fields.end(), wanted.begin(),
                     [](const std::string& name, const Field& field) {
                       return SameName(name, field.Name);
                     });
}

std::string Fault(sqlite3* database) {
  std::string fault;
  std::vector<std::string> lines;
  if (!FirstColumn(database, "SELECT COUNT(*) FROM sqlite_master", {}, lines, fault)) return fault;
  for (const TableDef& table : SchemaTables()) {
    std::vector<std::string> fields;
    if (!FirstColumn(database, kFieldsOfTable, table.Name, fields, fault)) return fault;
    if (fields.empty()) return " lacks the table " + table.Name;
    if (SameName(table.Name, "Cnf") && SettingsMisplaced(fields))
      return " has the fields of Cnf in another order";
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
