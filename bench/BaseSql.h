// What benchmarks do to a station's base from outside, past the program.
#pragma once

#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

namespace zemo::bench {

// Without waiting for the disk: for bases that are being made. Ends the program at an error.
inline void Execute(const std::string& base, const std::vector<std::string>& statements) {
  sqlite3* db = nullptr;
  if (sqlite3_open(base.c_str(), &db) != SQLITE_OK) std::abort();
  sqlite3_exec(db, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  for (const std::string& statement : statements)
    if (sqlite3_exec(db, statement.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
      std::fprintf(stderr, "%s in %s\n", sqlite3_errmsg(db), statement.c_str());
      std::abort();
    }
  sqlite3_close(db);
}

// The rows of a query, every value as text. Throws std::runtime_error, also for a file that is not
// there.
inline std::vector<std::vector<std::string>> Ask(const std::string& base, const std::string& sql) {
  sqlite3* db = nullptr;
  sqlite3_stmt* query = nullptr;
  std::vector<std::vector<std::string>> rows;
  int result = sqlite3_open_v2(base.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
  if (result == SQLITE_OK) {
    sqlite3_busy_timeout(db, 5000);
    result = sqlite3_prepare_v2(db, sql.c_str(), -1, &query, nullptr);
  }
  while (result == SQLITE_OK || result == SQLITE_ROW) {
    result = sqlite3_step(query);
    if (result != SQLITE_ROW) break;
    auto& row = rows.emplace_back();
    for (int column = 0; column < sqlite3_column_count(query); ++column) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(query, column));
      row.emplace_back(text ? text : "");
    }
  }
  const std::string fault = sqlite3_errmsg(db);
  sqlite3_finalize(query);
  sqlite3_close(db);
  if (result != SQLITE_DONE) throw std::runtime_error(base + ": " + fault);
  return rows;
}

}  // namespace zemo::bench
