// SQLite's results as the store's errors: a number the logic knows, and one line for the error log.
#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace zemo {

// Throws the StoreError for `result`, which SQLite just gave on `database` (may be null). `path`
// names the file in faults of the file, `query` the text in faults of a query (empty: none).
[[noreturn]] void ThrowSqlite(sqlite3* database, int result, const std::string& path,
                              std::string_view query);

// The file is a replica of a server's base (store/replica).
bool IsReplicaFile(sqlite3* database);

}  // namespace zemo
