// A station's base on a PostgreSQL server.
#pragma once

#include <memory>
#include <string>

#include "store/BasePlace.h"
#include "store/Database.h"

namespace zemo {

class LineKeeper;

enum class Rights { kRead, kWork, kOwn };

// What only a base on a server can do.
class ServerDatabase : public Database {
 public:
  // Inside a transaction: its tables, with all that belongs to them, stand in a new schema of this
  // name from then on, and the base has none.
  virtual void SetTablesAside(const std::string& schema) = 0;
  // A line that names another program of ours that has the base open, as far as the server tells
  // it; empty: nobody.
  virtual std::string OtherUser() = 0;
  // Another role of the server may read the base, work in it (store rows), or own it as this one
  // does, with the tables that are made later. What it might before and these rights have not is
  // taken from it. For who owns the base; kOwn is membership of its owner, and for who may grant
  // and revoke that: a superuser, or a member with the admin option.
  virtual void GiveRights(Rights rights, const std::string& role) = 0;
};

// One that is not open yet. `url` as the server's own tools take it,
// "postgresql://radio@host/base", without a fault (WhyNoServerUrl); the password comes by their
// means. Open(true) makes the base's own functions in a database that has none, never the database
// itself; Open(false) throws kErrNoSuchFile there.
//
// What differs from the file: a column of numbers holds numbers alone (a text, or a part behind the
// point in a whole number's field, is refused or rounded to the nearest even); texts are whole
// UTF-8 without a zero character; numbers given to rows that were taken back are not given again.
// `keeper` may give up its lines; null: nobody does. Not owned.
std::unique_ptr<ServerDatabase> ClosedPostgresDatabase(std::string url,
                                                       std::shared_ptr<LockWait> wait,
                                                       LineKeeper* keeper = nullptr);

BasePlace ServerPlace(const std::string& url, LineKeeper* keeper = nullptr);

}  // namespace zemo
