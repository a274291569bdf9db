// What a server's base has beside its tables: the functions by which texts compare as
// store/Collation has them, and the triggers that keep writers apart, count what is stored and keep
// numbers from being given twice. All of it in SQL, in a schema of its own: a server needs no
// extension.
#pragma once

#include <string>

namespace zemo {

// Makes the schema zemo; a statement that changes nothing where it is there.
std::string PostgresSchemaSql();
// The table is watched from now on; `key` numbers its rows.
std::string PostgresWatchSql(const std::string& table, const std::string& key);

// States of what a query's own function refuses: a value out of its range, one of another kind.
inline constexpr char kRangeState[] = "ZE006";
inline constexpr char kKindState[] = "ZE317";

// Who holds it has the base to write to himself, up to the end of his transaction.
inline constexpr char kWriterLock[] = "1514490191";

}  // namespace zemo
