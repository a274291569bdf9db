// A station's base on a PostgreSQL server.
#pragma once

#include <memory>
#include <string>

#include "store/Database.h"

namespace zemo {

// One that is not open yet. `url` as the server's own tools take it,
// "postgresql://radio@host/base"; the password comes by their means. Open(true) makes the base's
// own functions in a database that has none, never the database itself; Open(false) throws
// kErrNoSuchFile there.
//
// What differs from the file: a column of numbers holds numbers alone (a text, or a part behind the
// point in a whole number's field, is refused or rounded to the nearest even); texts are whole
// UTF-8 without a zero character; numbers given to rows that were taken back are not given again. A
// column that the schema has and the base has not is told by PutStandIns and read by nobody: a
// query that names it fails.
std::unique_ptr<Database> ClosedPostgresDatabase(std::string url, std::shared_ptr<LockWait> wait);

}  // namespace zemo
