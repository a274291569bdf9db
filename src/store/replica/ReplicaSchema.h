// What a base file has beside its tables that makes it a replica of a server's base: a queue of the
// rows that were written here and not sent yet, the numbers that new rows may have, and triggers
// that keep both within the very transaction that writes the row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "store/TableDefs.h"

namespace zemo {

// Counted up with each change of ReplicaSql. A replica of an older form may hold what was never
// sent: it is brought to this one by RenewedReplicaSql, from the oldest form on that it knows.
inline constexpr int kReplicaForm = 2;
inline constexpr int kOldestReplicaForm = 1;

// Names that begin so are the replica's own, and in no catalogue.
inline constexpr std::string_view kReplicaPrefix = "zemo_";

// What a refused write says; how the store tells it is SqliteError's.
inline constexpr char kNoNumbersLeft[] =
    "the server is away, and all the numbers that it gave for new rows are used up";
inline constexpr char kOnlyReads[] = "this machine's role on the server only reads";
inline constexpr char kTableOnlyRead[] = "this machine's role on the server only reads this table";
inline constexpr char kBaseIsNewer[] =
    "the base on the server was made by a newer version of the program: this one only reads it";

// Whether what is written in a replica is stored, as zemo_replica.onlyReads has it.
enum class Writing { kAllowed = 0, kRoleReads = 1, kNewerBase = 2 };

// SQLite's SQL that makes a base with these tables a replica. One row in zemo_replica:
//   form, machine (by which the server knows it), base (of which it is a replica), place (of the
//   server's changes up to which it has them all) and placeMark, tables (of the server, as a mark
//   of their structure), program (that last saw to the server's base), onlyReads (a Writing); quiet
//   (what is written now is not queued), automatic and given (of the row that is being inserted:
//   whether it gets a number, and which it got).
// zemo_queue: a row each table, row and kind of write ('I', 'U' with the fields that got another
// value, a line each, 'D'), in the order of the writes. zemo_numbers: from `next` to `last` a
// table. zemo_closed: tables that this machine's role does not write.
std::string ReplicaSql(const std::vector<TableDef>& tables);
// The same of a replica of an older form, whose queue and numbers stay.
std::string RenewedReplicaSql(const std::vector<TableDef>& tables);
// Nothing is left that makes it a replica.
std::string PlainFileSql(const std::vector<TableDef>& tables);

}  // namespace zemo
