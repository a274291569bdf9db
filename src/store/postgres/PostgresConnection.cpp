// The connection. What holds at every moment between two calls of the store's operations:
//
//  1. Either no transaction is open, or one that Begin opened and that holds the writers' lock: its
//     beginning alone waits for others. In it a savepoint stands behind the last statement that
//     succeeded, so that one that fails takes back itself alone, as on the file.
//  2. A transaction that could not be committed is rolled back.
//  3. Whoever cannot have the lock is told so by the server at once; the wait is ours, between two
//     attempts, in LockWait.
#include "store/postgres/PostgresConnection.h"

#include <utility>

#include "store/Names.h"
#include "store/SqlText.h"
#include "store/StoreError.h"
#include "store/postgres/ClientLibrary.h"
#include "store/postgres/PostgresErrors.h"
#include "store/postgres/PostgresFunctions.h"
#include "store/postgres/PostgresRowStream.h"

namespace zemo {

namespace {

constexpr char kTimeouts[] = "SET lock_timeout = '20ms'; SET statement_timeout = '30s'";

// Behind the last statement of a transaction that succeeded.
constexpr char kSetPoint[] = "SAVEPOINT z";
constexpr char kMovePoint[] = "RELEASE z; SAVEPOINT z";
constexpr char kBackToPoint[] = "ROLLBACK TO z";

void RefuseZeros(const PostgresParameters& parameters, int number) {
  for (const auto& parameter : parameters)
    if (parameter && parameter->find('\0') != std::string::npos)
      throw StoreError(number, "a query cannot hold a zero character");
}

}  // namespace

// --- Opening ---

PostgresConnection::PostgresConnection(const std::string& url, bool create,
                                       std::shared_ptr<LockWait> wait, LineKeeper* keeper)
    : wait_(std::move(wait)),
      line_(url, keeper),
      catalogue_([this](const std::string& sql) { return Run(sql, {}, false); }) {
  name_ = "the base " + line_.Base() + " on " + line_.Host();
  if (!line_.IsUp()) FailConnection("cannot be reached");
  SetUp(create);
}

void PostgresConnection::SetUp(bool create) {
  line_.ExecuteNow(std::string(kTimeouts) +
                   "; SET standard_conforming_strings = on; SET extra_float_digits = 1; "
                   "SET zemo.form = '" +
                   std::to_string(kBaseForm) + "'");
  const std::string encoding = line_.Setting("server_encoding");
  if (!encoding.empty() && encoding != "UTF8")
    throw StoreError(kErrBadDatabase,
                     name_ + " keeps its texts as " + encoding + ": a station's base needs UTF8");
  const PostgresResult there = line_.ExecuteNow("SELECT to_regclass('zemo.base') IS NOT NULL");
  if (there.IsRefusal() && line_.IsUp()) Fail(there, {});
  if (there.Rows() != 1) FailConnection("does not answer");
  if (there.Text(0, 0) != "t") {
    if (!create) throw StoreError(kErrNoSuchFile, name_ + kNoStationsBase);
    return RenewFunctions();
  }
  ActAsOwner();
  const PostgresResult base = Run("SELECT functions, form FROM zemo.base", {}, false);
  if (base.Rows() != 1) throw StoreError(kErrBadDatabase, name_ + " has lost its zemo.base");
  if (base.Int(0, 1) > kBaseForm)
    whyReadOnly_ = name_ + kNewerForm;
  else if (base.Int(0, 0) < kFunctionsVersion)
    RenewFunctions();
}

// What a member of the owner makes is the owner's, and not the member's.
void PostgresConnection::ActAsOwner() {
  Run("SELECT set_config('role', rolname, false) FROM pg_namespace JOIN pg_roles r ON r.oid = "
      "nspowner WHERE nspname = 'zemo' AND rolname <> current_user AND "
      "pg_has_role(nspowner, 'MEMBER')",
      {}, false);
}

void PostgresConnection::RenewFunctions() {
  try {
    Begin();
    Change(PostgresSchemaSql());
    Commit();
  } catch (const StoreError& error) {
    Rollback();
    if (error.Number() != kErrReadOnly) throw;
    throw StoreError(kErrReadOnly, name_ +
                                       " needs functions of this version, which its owner makes by "
                                       "opening it once: " +
                                       error.what());
  }
}

PostgresConnection::~PostgresConnection() {
  Close();
}

void PostgresConnection::Close() {
  if (!line_.IsOpen()) return;
  try {
    Commit();
  } catch (const StoreError&) {
    // Rolled back; nobody is left to hear of it.
  }
  catalogue_.ForgetQueries();
  line_.Close();
}

void PostgresConnection::Check() const {
  if (!line_.IsOpen()) throw StoreError(kErrClosed, name_ + " is not open");
}

void PostgresConnection::RequireWritable() const {
  if (!whyReadOnly_.empty()) throw StoreError(kErrReadOnly, whyReadOnly_);
}

bool PostgresConnection::IsLost() const {
  return line_.IsOpen() && (lost_ || !line_.IsUp());
}

void PostgresConnection::FailConnection(const std::string& what) {
  lost_ = true;
  inTransaction_ = onlyReads_ = false;
  throw StoreError(kErrOther, name_ + ' ' + what + ": " + line_.Fault());
}

void PostgresConnection::Fail(const PostgresResult& result, std::string_view shown) {
  const bool told = result.IsOutOfTime() || (result.IsRefusal() && line_.IsUp());
  if (!told) FailConnection("is gone");
  ThrowRefusal(result, name_, shown, [this](std::string_view name) { return FindTable(name); });
}

// --- Statements ---

// It stands, whatever the next one does.
void PostgresConnection::KeepStatement() {
  ++ownChanges_;
  if (inTransaction_) line_.ExecuteNow(kMovePoint);
}

void PostgresConnection::TakeBackStatement() {
  if (inTransaction_ && line_.IsUp()) line_.ExecuteNow(kBackToPoint);
}

// `prepared` null: the statement is not kept.
PostgresResult PostgresConnection::Attempt(const std::string& sql, const Parameters* prepared,
                                           bool writes, std::string_view shown) {
  wait_->Begin(writes);
  bool plannedAnew = false;
  for (int times = 0;;) {
    PostgresResult result = prepared ? line_.Execute(sql, *prepared) : line_.ExecuteNow(sql);
    if (result.Succeeded()) {
      wait_->End(writes, false);
      if (writes) KeepStatement();
      return result;
    }
    TakeBackStatement();
    if (prepared && result.IsOldPlan() && !std::exchange(plannedAnew, true)) {
      line_.Forget(sql);
      continue;
    }
    const bool locked = result.IsLocked();
    if (locked && wait_->WaitOnce(times++)) continue;
    wait_->End(writes, locked);
    Fail(result, shown);
  }
}

PostgresResult PostgresConnection::Run(const std::string& sql, const Parameters& parameters,
                                       bool writes, std::string_view shown) {
  Check();
  RefuseZeros(parameters, shown.empty() ? kErrValueRefused : kErrSyntax);
  if (writes) RequireWritable();
  return Attempt(sql, &parameters, writes, shown.empty() ? std::string_view(sql) : shown);
}

void PostgresConnection::Change(const std::string& sql) {
  Check();
  RequireWritable();
  Attempt(sql, nullptr, true, sql);
}

int PostgresConnection::Socket() const {
  return line_.Socket();
}

bool PostgresConnection::TakeNotices() {
  Check();
  const bool any = line_.TakeNotices();
  if (!line_.IsUp()) FailConnection("is lost");
  return any;
}

// --- Queries of the dialect ---

// Another program may have changed the tables since the query was translated.
template <typename Work>
auto PostgresConnection::WithStructure(Work work) {
  try {
    return work();
  } catch (const StoreError& error) {
    const bool named = error.Number() == kErrNoSuchField || error.Number() == kErrNoSuchTable;
    if (!named || !StructureIsOld()) throw;
  }
  AllTables();
  return work();
}

PostgresResult PostgresConnection::RunDialect(std::string_view sql, const Values& values,
                                              bool forRows) {
  Check();
  return WithStructure([&] { return RunTranslated(sql, values, forRows); });
}

PostgresResult PostgresConnection::RunTranslated(std::string_view sql, const Values& values,
                                                 bool forRows) {
  const auto query = catalogue_.Translated(sql, values, forRows);
  PostgresResult result = Run(query->sql, ParametersOf(*query, values), !query->written.empty(),
                              QueryWithValues(sql, values));
  if (query->written.empty()) return result;
  if (query->movesKeys) NoteAll();
  for (int row = 0; row < result.Rows(); ++row) Note(query->written, result.Int(row, 0));
  if (query->inserts && result.Rows() > 0) lastInsertCode_ = result.Int(result.Rows() - 1, 0);
  return result;
}

void PostgresConnection::ReadDialect(std::string_view sql, const Values& values,
                                     const TakeResult& take) {
  Check();
  WithStructure([&] { ReadTranslated(sql, values, take); });
}

void PostgresConnection::ReadTranslated(std::string_view sql, const Values& values,
                                        const TakeResult& take) {
  const auto query = catalogue_.Translated(sql, values, true);
  const Parameters parameters = ParametersOf(*query, values);
  RefuseZeros(parameters, kErrSyntax);
  for (bool plannedAnew = false;; plannedAnew = true) {
    wait_->Begin(false);
    PostgresRowStream stream(line_, query->sql, parameters);
    const bool taken = TakeRows(stream, take);
    const PostgresResult& end = stream.End();
    wait_->End(false, end.IsLocked());
    if (end.Succeeded()) return;
    TakeBackStatement();
    if (!end.IsOldPlan() || plannedAnew || taken) Fail(end, QueryWithValues(sql, values));
    line_.Forget(query->sql);
  }
}

// Whether there was one.
bool PostgresConnection::TakeRows(PostgresRowStream& stream, const TakeResult& take) {
  bool taken = false;
  try {
    while (const auto row = stream.Next()) {
      taken = true;
      take(*row);
    }
  } catch (...) {
    if (stream.CutOff()) TakeBackStatement();
    wait_->End(false, false);
    throw;
  }
  return taken;
}

// --- Rows of another base ---

void PostgresConnection::BeginCopy(const std::string& sql) {
  Check();
  // As long as the table is.
  line_.ExecuteNow("SET LOCAL statement_timeout = 0");
  const PostgresResult result = line_.ExecuteNow(sql);
  if (!result.IsCopying()) Fail(result, sql);
}

void PostgresConnection::PutCopy(const std::string& rows) {
  if (!line_.PutCopy(rows)) FailConnection("is gone");
}

void PostgresConnection::EndCopy() {
  const PostgresResult result = line_.EndCopy();
  if (result.Succeeded()) return KeepStatement();
  TakeBackStatement();
  const std::string where = result.Detail(PG_DIAG_CONTEXT);  // "COPY Table, line 3: ..."
  const size_t line = where.find(", line ");
  const std::string row =
      line == std::string::npos
          ? ""
          : ", in row " +
                std::to_string(NumberIn<int64_t>(std::string_view(where).substr(line + 7))) +
                " of the table";
  try {
    Fail(result, "COPY");
  } catch (const StoreError& error) {
    throw StoreError(error.Number(), error.what() + row);
  }
}

void PostgresConnection::GiveUpCopy() {
  line_.GiveUpCopy();
  TakeBackStatement();
}

// --- Upkeep ---

// Neither keeps anybody from reading or writing: an index is made anew beside the one that it
// replaces, and no end of a file is cut off. One at a time: a table's all together would take those
// of its long values along, which an owner cannot take away where they were interrupted.
void PostgresConnection::Compact() {
  Check();
  line_.ExecuteNow("SET statement_timeout = 0; SET lock_timeout = '10s'");
  try {
    DropBrokenIndexes();
    for (const auto& table : std::vector(AllTables())) {
      ChangeOnce("VACUUM (ANALYZE, TRUNCATE false) " + QuotedName(table->Name));
      const PostgresResult indexes = Run(
          "SELECT indexrelid::regclass FROM pg_index WHERE indrelid = $1::regclass AND indisvalid",
          {QuotedName(table->Name)}, false);
      for (int row = 0; row < indexes.Rows(); ++row)
        ChangeOnce("REINDEX INDEX CONCURRENTLY " + std::string(indexes.Text(row, 0)));
    }
  } catch (const StoreError&) {
    line_.ExecuteNow(kTimeouts);
    throw;
  }
  line_.ExecuteNow(kTimeouts);
}

// Those that were interrupted, of the tables and of what keeps their long values.
void PostgresConnection::DropBrokenIndexes() {
  const PostgresResult broken =
      Run("SELECT indexrelid::regclass FROM pg_index JOIN pg_class t ON indrelid IN (t.oid, "
          "t.reltoastrelid) JOIN pg_class i ON i.oid = indexrelid WHERE NOT indisvalid AND "
          "t.relnamespace = quote_ident(current_schema())::regnamespace AND "
          "has_schema_privilege(i.relnamespace, 'USAGE')",
          {}, false);
  for (int row = 0; row < broken.Rows(); ++row)
    ChangeOnce("DROP INDEX CONCURRENTLY " + std::string(broken.Text(row, 0)));
}

// The server has waited already, and an attempt may leave a half-made index: there is no second.
void PostgresConnection::ChangeOnce(const std::string& sql) {
  Check();
  RequireWritable();
  const PostgresResult result = line_.ExecuteNow(sql);
  if (!result.Succeeded()) Fail(result, sql);
  KeepStatement();
}

// --- Transactions ---

void PostgresConnection::TakeBackTransaction() {
  if (line_.IsUp()) line_.ExecuteNow("ROLLBACK");
}

void PostgresConnection::Begin() {
  Check();
  if (inTransaction_) return;
  RequireWritable();
  const std::string sql =
      std::string("BEGIN; SELECT pg_try_advisory_xact_lock(") + kWriterLock + ")";
  wait_->Begin(true);
  for (int times = 0;;) {
    const PostgresResult result = line_.ExecuteNow(sql);
    if (!result.Succeeded()) {
      wait_->End(true, false);
      TakeBackTransaction();
      Fail(result, sql);
    }
    if (result.Text(0, 0) == "t") break;
    TakeBackTransaction();
    if (wait_->WaitOnce(times++)) continue;
    wait_->End(true, true);
    throw StoreError(kErrLocked, name_ + " is locked by another program");
  }
  wait_->End(true, false);
  line_.ExecuteNow(kSetPoint);
  inTransaction_ = true;
}

void PostgresConnection::BeginReading() {
  Check();
  if (inTransaction_) return;
  const PostgresResult result = line_.ExecuteNow(
      std::string("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY; ") + kSetPoint);
  if (!result.Succeeded()) Fail(result, "BEGIN");
  inTransaction_ = onlyReads_ = true;
}

void PostgresConnection::Commit() {
  Check();
  if (!inTransaction_) return;
  inTransaction_ = onlyReads_ = false;
  const PostgresResult result = line_.ExecuteNow("COMMIT");
  if (!result.Succeeded()) {
    TakeBackTransaction();
    Fail(result, "COMMIT");
  }
  if (result.Done() != "COMMIT") throw StoreError(kErrOther, name_ + " took a transaction back");
}

void PostgresConnection::Rollback() {
  if (!line_.IsOpen() || !inTransaction_) return;
  inTransaction_ = false;
  TakeBackTransaction();
  if (std::exchange(onlyReads_, false)) return;
  ++ownChanges_;
  catalogue_.Forget();
}

// --- Changes ---

void PostgresConnection::StructureChanged() {
  NoteAll();
  catalogue_.ForgetStandIns();
  ++ownChanges_;
}

std::vector<std::string> PostgresConnection::PutStandIns() {
  auto told = catalogue_.PutStandIns();
  NoteAll();  // read otherwise from now on
  return told;
}

void PostgresConnection::Note(const std::string& table, int64_t row) {
  if (book_) book_->Note(table, row);
}

void PostgresConnection::NoteAll() {
  if (book_) book_->NoteAll();
}

// Own changes are counted here, the others' by the server: of each transaction that wrote one, less
// those of this connection. One question and its answer, no lock.
int64_t PostgresConnection::ChangeCounter() {
  Check();
  const PostgresResult counted = Run("SELECT writes - zemo.own() FROM zemo.base", {}, false);
  const int64_t writes = counted.Rows() == 1 ? counted.Int(0, 0) : 0;
  if (foreignWrites_ >= 0 && writes != foreignWrites_) ++foreignCounter_;
  foreignWrites_ = writes;
  return ownChanges_ + catalogue_.TimesRead() + foreignCounter_;
}

}  // namespace zemo
