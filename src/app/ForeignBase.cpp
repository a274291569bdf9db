#include "app/ForeignBase.h"

#include <sqlite3.h>

#include <memory>
#include <optional>

#include "app/Orders.h"
#include "store/StationBase.h"
#include "store/TableDefs.h"

namespace zemo {

namespace {
constexpr int kLockWaitMs = 5000;

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close(connection); }
};
struct Finalize {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using OwnConnection = std::unique_ptr<sqlite3, CloseConnection>;

int WaitAsTheBaseDoes(void* wait, int times) {
  return static_cast<LockWait*>(wait)->WaitOnce(times) ? 1 : 0;
}

OwnConnection Connect(const std::string& path) {
  sqlite3* opened = nullptr;
  const int result = sqlite3_open_v2(path.c_str(), &opened, SQLITE_OPEN_READWRITE, nullptr);
  OwnConnection connection(opened);
  if (result != SQLITE_OK) throw OrderError(sqlite3_errstr(result), result);
  return connection;
}

// The statements are in SQLite's dialect.
void RequireFile(const StationBase& base) {
  if (!base.IsFile()) throw OrderError("the base stands on a server", kErrOther);
}

// Others come in while what this makes is there.
std::optional<OthersLetIn> LetInto(StationBase& base) {
  if (!base.IsOpen()) return std::nullopt;
  return std::optional<OthersLetIn>(std::in_place, base.Db());
}
}  // namespace

void ExecuteFromOutside(StationBase& base, const std::string& statement) {
  RequireFile(base);
  const std::optional<OthersLetIn> others = LetInto(base);
  const OwnConnection connection = Connect(base.Path());
  sqlite3_busy_timeout(connection.get(), kLockWaitMs);
  const int result = sqlite3_exec(connection.get(), statement.c_str(), nullptr, nullptr, nullptr);
  if (result != SQLITE_OK) throw OrderError(sqlite3_errmsg(connection.get()), result);
}

// On air the tick waits for whoever gives this order: it has the tick's grant and no more.
void SetCnfFromOutside(StationBase& base, const Field& field, const std::string& value) {
  RequireFile(base);
  const std::optional<OthersLetIn> others = LetInto(base);
  const OwnConnection connection = Connect(base.Path());
  sqlite3_busy_handler(connection.get(), WaitAsTheBaseDoes, &base.Waiting());
  base.Waiting().Begin(true);
  sqlite3_stmt* prepared = nullptr;
  int result =
      sqlite3_prepare_v2(connection.get(), ("UPDATE Cnf SET \"" + field.Name + "\" = ?").c_str(),
                         -1, &prepared, nullptr);
  const std::unique_ptr<sqlite3_stmt, Finalize> statement(prepared);
  if (result == SQLITE_OK) {
    sqlite3_bind_text(statement.get(), 1, value.c_str(), -1, SQLITE_TRANSIENT);
    result = sqlite3_step(statement.get());
  }
  base.Waiting().End(true, result == SQLITE_BUSY);
  if (result != SQLITE_DONE) throw OrderError(sqlite3_errmsg(connection.get()), result);
}

}  // namespace zemo
