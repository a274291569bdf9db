// What a server's base has beside its tables: the functions by which texts compare as
// store/Collation has them, and the triggers that keep writers apart, count what is stored and keep
// numbers from being given twice. All of it in SQL, in a schema of its own: a server needs no
// extension.
#pragma once

#include <string>

namespace zemo {

// Of what stands in the schema zemo: counted up with each change of PostgresSchemaSql, by which a
// base that has older functions gets these.
inline constexpr int kFunctionsVersion = 4;
// Of the base: counted up when a program that does not know the change may not write any more. The
// server refuses its writes; it may read.
inline constexpr int kBaseForm = 1;

// Makes the schema zemo, or brings it to this version; changes nothing where it is of this one.
std::string PostgresSchemaSql();
// The table is watched from now on.
std::string PostgresWatchSql(const std::string& table);

// States of what a query's own function refuses: a value out of its range, one of another kind.
inline constexpr char kRangeState[] = "ZE006";
inline constexpr char kKindState[] = "ZE317";
// And a write of a program that is older than the base.
inline constexpr char kFormState[] = "ZE027";

// Who holds it has the base to write to himself, up to the end of his transaction.
inline constexpr char kWriterLock[] = "1514490191";

}  // namespace zemo
