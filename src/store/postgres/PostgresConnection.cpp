// The connection. What holds at every moment between two calls of the store's operations:
//
//  1. Either no transaction is open, or one that Begin opened and that holds the writers' lock:
//  only
//     its beginning waits for others. In it a savepoint stands behind the last statement that
//     succeeded, so that one that fails takes back itself alone, as on the file.
//  2. A transaction that could not be committed is rolled back.
//  3. tables_ shows the structure of the mark structure_ as a whole, or that is empty.
//  4. Whoever cannot have the lock is told so by the server at once; the wait is ours, between two
//     attempts, in LockWait.
#include "store/postgres/PostgresConnection.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "store/Names.h"
#include "store/Schema.h"
#include "store/SqlText.h"
#include "store/StandIns.h"
#include "store/StoreError.h"
#include "store/postgres/ClientLibrary.h"
#include "store/postgres/PostgresFunctions.h"

namespace zemo {

namespace {

constexpr size_t kMostPrepared = 128;
constexpr size_t kMostTranslations = 512;
constexpr char kConnectSeconds[] = "5";
constexpr char kTimeouts[] = "SET lock_timeout = '20ms'; SET statement_timeout = '30s'";
constexpr char kOtherPlan[] = "0A000";
constexpr char kUnansweredMs[] = "10000";  // of sent bytes, after which the line is given up

constexpr char kNewerForm[] = " was made by a newer version of the program: this one only reads it";

// Of the server's types.
constexpr Oid kBoolType = 16, kInt8Type = 20, kInt2Type = 21, kInt4Type = 23, kFloat4Type = 700,
              kFloat8Type = 701, kNumericType = 1700;

std::string ServerLine(std::string text) {
  for (char& c : text)
    if (c == '\n' || c == '\r' || c == '\t') c = ' ';
  while (!text.empty() && text.back() == ' ') text.pop_back();
  return text;
}

std::string Detail(const PGresult* result, int field) {
  const char* text = result ? Pq().PQresultErrorField(result, field) : nullptr;
  return text ? text : "";
}

bool Succeeded(const PGresult* result) {
  const ExecStatusType status = Pq().PQresultStatus(result);
  return status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK || status == PGRES_EMPTY_QUERY;
}

// Another one writes, or changes the structure, or two would wait for each other.
bool IsLockState(const std::string& state) {
  return state == "55P03" || state == "40P01" || state == "40001";
}

template <typename Number>
Number NumberIn(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

Value DefaultIn(const Field& field, const std::string& sql) {
  if (sql.empty()) return {};
  std::string value;
  if (sql.front() == '\'') {
    for (size_t i = 1; i < sql.size(); ++i) {
      if (sql[i] == '\'' && (i + 1 >= sql.size() || sql[i + 1] != '\'')) break;
      if (sql[i] == '\'') ++i;
      value += sql[i];
    }
  } else {
    value = sql.substr(0, sql.find(':'));
    value.erase(
        std::remove_if(value.begin(), value.end(), [](char c) { return c == '(' || c == ')'; }),
        value.end());
  }
  if (HoldsText(field)) return value;
  if (!ReadsAsNumber(value)) return {};
  const double real = AsReal(value);
  const int64_t whole = AsInt(value);
  return static_cast<double>(whole) == real ? Value(whole) : Value(real);
}

// Rules are named for what they say of a field: "007 width 40 AUTEUR", "012 range 16 INTRO". The
// number keeps them in the fields' order, in which the server asks them.
struct Rule {
  bool isWidth = false;
  int number = 0;  // characters or bits
  std::string field;
};
std::optional<Rule> RuleNamed(const std::string& name) {
  const size_t word = name.find(' ');
  if (word == std::string::npos) return std::nullopt;
  const size_t number = name.find(' ', word + 1);
  if (number == std::string::npos) return std::nullopt;
  const size_t field = name.find(' ', number + 1);
  if (field == std::string::npos) return std::nullopt;
  Rule rule;
  const std::string kind = name.substr(word + 1, number - word - 1);
  if (kind != "width" && kind != "range") return std::nullopt;
  rule.isWidth = kind == "width";
  rule.number = NumberIn<int>(std::string_view(name).substr(number + 1, field - number - 1));
  rule.field = name.substr(field + 1);
  return rule;
}

void RefuseZeros(const PostgresConnection::Parameters& parameters, int number) {
  for (const auto& parameter : parameters)
    if (parameter && parameter->find('\0') != std::string::npos)
      throw StoreError(number, "a query cannot hold a zero character");
}

[[noreturn]] void FailWithoutRows(std::string_view sql) {
  throw StoreError(kErrSyntax, "a query without rows cannot be opened: " + std::string(sql));
}

void TypeOf(std::string_view type, bool identity, Field& field) {
  if (identity) {
    field.AutoIncrement = true;
    field.Type = FieldType::kInt32;
  } else if (type == "int2") {
    field.Type = FieldType::kBool;
  } else if (type == "int8" || type == "int4") {
    field.Type = FieldType::kInt32;
  } else if (type == "float8" || type == "float4" || type == "numeric") {
    field.Type = FieldType::kFloat64;
  } else {
    field.Type = FieldType::kMemo;
  }
}

class PostgresStandIns final : public StandInSql {
 public:
  std::string Constant(const Field& field, const std::string& literal) const override {
    if (HoldsText(field)) return "CAST(" + literal + " AS text)";
    return "CAST(" + literal +
           (field.Type == FieldType::kFloat64 ? " AS double precision)" : " AS bigint)");
  }
  // A text that begins as a number is that number, as elsewhere.
  std::string InType(const Field& field, const std::string& column) const override {
    if (HoldsText(field)) return "zemo.digits(" + column + ')';
    const std::string number =
        "coalesce(substring(" + column + " from '^ *[-+]?[0-9]+[.]?[0-9]*'), '0')";
    return field.Type == FieldType::kFloat64
               ? "CAST(" + number + " AS double precision)"
               : "CAST(trunc(CAST(" + number + " AS numeric)) AS bigint)";
  }
  std::string Number(const TableDef& present) const override {
    return QuotedName(NumberColumn(present));
  }
  std::string Table(std::string_view name) const override { return QuotedName(name); }
};

}  // namespace

// --- Result ---

PostgresResult::~PostgresResult() {
  Pq().PQclear(result_);
}

int PostgresResult::Rows() const {
  return Pq().PQntuples(result_);
}

int PostgresResult::Columns() const {
  return Pq().PQnfields(result_);
}

std::string PostgresResult::ColumnName(int column) const {
  const char* name = Pq().PQfname(result_, column);
  return name ? name : "";
}

bool PostgresResult::IsNull(int row, int column) const {
  return Pq().PQgetisnull(result_, row, column) != 0;
}

std::string_view PostgresResult::Text(int row, int column) const {
  return {Pq().PQgetvalue(result_, row, column),
          static_cast<size_t>(Pq().PQgetlength(result_, row, column))};
}

int64_t PostgresResult::Int(int row, int column) const {
  return NumberIn<int64_t>(Text(row, column));
}

RowView::Kind PostgresResult::Kind(int row, int column) const {
  if (IsNull(row, column)) return RowView::Kind::kNull;
  switch (Pq().PQftype(result_, column)) {
    case kBoolType:
    case kInt2Type:
    case kInt4Type:
    case kInt8Type:
      return RowView::Kind::kInteger;
    case kFloat4Type:
    case kFloat8Type:
      return RowView::Kind::kReal;
    case kNumericType:
      return Text(row, column).find('.') == std::string_view::npos ? RowView::Kind::kInteger
                                                                   : RowView::Kind::kReal;
    default:
      return RowView::Kind::kText;
  }
}

Value PostgresResult::Read(int row, int column) const {
  switch (Kind(row, column)) {
    case RowView::Kind::kNull:
      return {};
    case RowView::Kind::kInteger:
      return Int(row, column);
    case RowView::Kind::kReal:
      return NumberIn<double>(Text(row, column));
    default:
      return std::string(Text(row, column));
  }
}

int64_t PostgresResult::RowsChanged() const {
  return NumberIn<int64_t>(Pq().PQcmdTuples(result_));
}

// --- Opening ---

PostgresConnection::PostgresConnection(const std::string& url, bool create,
                                       std::shared_ptr<LockWait> wait)
    : wait_(std::move(wait)) {
  const char* const keys[] = {"dbname",          "connect_timeout",  "tcp_user_timeout",
                              "client_encoding", "application_name", nullptr};
  const char* const values[] = {url.c_str(), kConnectSeconds, kUnansweredMs,
                                "UTF8",      kProgramName,    nullptr};
  connection_ = Pq().PQconnectdbParams(keys, values, 1);
  const char* host = Pq().PQhost(connection_);
  const char* base = Pq().PQdb(connection_);
  name_ = "the base " + std::string(base ? base : "") + " on " + std::string(host ? host : "");
  try {
    if (Pq().PQstatus(connection_) != CONNECTION_OK) FailConnection("cannot be reached");
    Pq().PQsetNoticeProcessor(
        connection_, [](void*, const char*) {}, nullptr);
    SetUp(create);
  } catch (...) {
    Pq().PQfinish(connection_);
    connection_ = nullptr;
    throw;
  }
}

void PostgresConnection::SetUp(bool create) {
  PostgresResult(ExecuteNow(std::string(kTimeouts) +
                            "; SET standard_conforming_strings = on; SET extra_float_digits = 1; "
                            "SET zemo.form = '" +
                            std::to_string(kBaseForm) + "'"));
  const char* encoding = Pq().PQparameterStatus(connection_, "server_encoding");
  if (encoding && std::string_view(encoding) != "UTF8")
    throw StoreError(kErrBadDatabase,
                     name_ + " keeps its texts as " + encoding + ": a station's base needs UTF8");
  const PostgresResult there(ExecuteNow("SELECT to_regclass('zemo.base') IS NOT NULL"));
  if (there.Rows() != 1) FailConnection("does not answer");
  if (there.Text(0, 0) != "t") {
    if (!create) throw StoreError(kErrNoSuchFile, name_ + " is no station's base");
    return RenewFunctions();
  }
  const PostgresResult base = Run("SELECT functions, form FROM zemo.base", {}, false);
  if (base.Rows() != 1) throw StoreError(kErrBadDatabase, name_ + " has lost its zemo.base");
  if (base.Int(0, 1) > kBaseForm)
    whyReadOnly_ = name_ + kNewerForm;
  else if (base.Int(0, 0) < kFunctionsVersion)
    RenewFunctions();
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
  if (!connection_) return;
  try {
    Commit();
  } catch (const StoreError&) {
    // Rolled back; nobody is left to hear of it.
  }
  ForgetPrepared();
  translations_.clear();
  Pq().PQfinish(connection_);
  connection_ = nullptr;
}

void PostgresConnection::Check() const {
  if (!connection_) throw StoreError(kErrClosed, name_ + " is not open");
}

void PostgresConnection::RequireWritable() const {
  if (!whyReadOnly_.empty()) throw StoreError(kErrReadOnly, whyReadOnly_);
}

bool PostgresConnection::IsLost() const {
  return connection_ && (lost_ || Pq().PQstatus(connection_) != CONNECTION_OK);
}

void PostgresConnection::FailConnection(const std::string& what) {
  lost_ = true;
  inTransaction_ = false;
  throw StoreError(kErrOther,
                   name_ + ' ' + what + ": " + ServerLine(Pq().PQerrorMessage(connection_)));
}

// --- Statements ---

pg_result* PostgresConnection::ExecuteNow(const std::string& sql) {
  KeepRestOfStream();
  return Pq().PQexec(connection_, sql.c_str());
}

void PostgresConnection::ForgetPrepared() {
  preparedBySql_.clear();
  prepared_.clear();
  if (connection_ && Pq().PQstatus(connection_) == CONNECTION_OK && !inTransaction_)
    PostgresResult(ExecuteNow("DEALLOCATE ALL"));
}

void PostgresConnection::Forget(const std::string& sql) {
  preparedBySql_.erase(sql);
  prepared_.remove_if([&sql](const Prepared& kept) { return kept.sql == sql; });
}

// Empty where it cannot be prepared: `failed` says why then.
std::string PostgresConnection::NameOf(const std::string& sql, pg_result*& failed) {
  if (const auto found = preparedBySql_.find(sql); found != preparedBySql_.end()) {
    prepared_.splice(prepared_.begin(), prepared_, found->second);
    return prepared_.front().name;
  }
  std::string name = "z" + std::to_string(++names_);
  pg_result* result = Pq().PQprepare(connection_, name.c_str(), sql.c_str(), 0, nullptr);
  if (!Succeeded(result)) {
    failed = result;
    return {};
  }
  Pq().PQclear(result);
  prepared_.push_front({sql, name});
  preparedBySql_.emplace(prepared_.front().sql, prepared_.begin());
  if (prepared_.size() > kMostPrepared) {
    PostgresResult(ExecuteNow("DEALLOCATE " + prepared_.back().name));
    preparedBySql_.erase(prepared_.back().sql);
    prepared_.pop_back();
  }
  return name;
}

pg_result* PostgresConnection::Execute(const std::string& sql, const Parameters& parameters) {
  KeepRestOfStream();
  pg_result* failed = nullptr;
  const std::string name = NameOf(sql, failed);
  if (failed) return failed;
  std::vector<const char*> values;
  for (const auto& parameter : parameters)
    values.push_back(parameter ? parameter->c_str() : nullptr);
  return Pq().PQexecPrepared(connection_, name.c_str(), static_cast<int>(values.size()),
                             values.data(), nullptr, nullptr, 0);
}

PostgresResult PostgresConnection::Run(const std::string& sql, const Parameters& parameters,
                                       bool writes, std::string_view shown) {
  Check();
  RefuseZeros(parameters, shown.empty() ? kErrValueRefused : kErrSyntax);
  if (writes) RequireWritable();
  wait_->Begin(writes);
  bool planned = false;
  for (int times = 0;;) {
    PostgresResult result(nullptr);
    pg_result* raw = Execute(sql, parameters);
    result = PostgresResult(raw);
    if (Succeeded(raw)) {
      wait_->End(writes, false);
      if (writes) {
        ++ownChanges_;
        if (inTransaction_) PostgresResult(ExecuteNow("RELEASE z; SAVEPOINT z"));
      }
      return result;
    }
    const std::string state = Detail(raw, PG_DIAG_SQLSTATE);
    if (inTransaction_ && Pq().PQstatus(connection_) == CONNECTION_OK)
      PostgresResult(ExecuteNow("ROLLBACK TO z"));
    // The table is another one than when the statement was planned.
    if (state == kOtherPlan && !planned) {
      planned = true;
      Forget(sql);
      continue;
    }
    const bool locked = IsLockState(state);
    if (locked && wait_->WaitOnce(times++)) continue;
    wait_->End(writes, locked);
    Fail(raw, shown.empty() ? std::string_view(sql) : shown);
  }
}

void PostgresConnection::Change(const std::string& sql) {
  Check();
  RequireWritable();
  wait_->Begin(true);
  for (int times = 0;;) {
    PostgresResult result(nullptr);
    pg_result* raw = ExecuteNow(sql);
    result = PostgresResult(raw);
    if (Succeeded(raw)) {
      wait_->End(true, false);
      ++ownChanges_;
      if (inTransaction_) PostgresResult(ExecuteNow("RELEASE z; SAVEPOINT z"));
      return;
    }
    const std::string state = Detail(raw, PG_DIAG_SQLSTATE);
    if (inTransaction_ && Pq().PQstatus(connection_) == CONNECTION_OK)
      PostgresResult(ExecuteNow("ROLLBACK TO z"));
    const bool locked = IsLockState(state);
    if (locked && wait_->WaitOnce(times++)) continue;
    wait_->End(true, locked);
    Fail(raw, sql);
  }
}

std::shared_ptr<const PostgresQuery> PostgresConnection::Translated(std::string_view sql,
                                                                    const Values& values) {
  std::string key = std::string(sql) + '\0' + KindsOf(values);
  if (const auto found = translations_.find(key); found != translations_.end())
    return found->second;
  auto query = std::make_shared<const PostgresQuery>(TranslateForPostgres(
      sql, [this](std::string_view name) { return FindReadTable(name); }, values));
  if (translations_.size() >= kMostTranslations) translations_.clear();
  translations_.emplace(std::move(key), query);
  return query;
}

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
  const auto query = Translated(sql, values);
  if (forRows && !query->givesRows) FailWithoutRows(sql);
  PostgresResult result = Run(query->sql, ParametersOf(*query, values), !query->written.empty(),
                              QueryWithValues(sql, values));
  if (query->written.empty()) return result;
  if (query->movesKeys) NoteAll();
  for (int row = 0; row < result.Rows(); ++row) Note(query->written, result.Int(row, 0));
  if (query->inserts && result.Rows() > 0) lastInsertCode_ = result.Int(result.Rows() - 1, 0);
  return result;
}

// --- Rows one by one ---

// Another statement can only be sent behind the last row: the rest comes into memory.
void PostgresConnection::KeepRestOfStream() {
  Stream* stream = std::exchange(stream_, nullptr);
  if (!stream) return;
  while (pg_result* raw = Pq().PQgetResult(connection_)) {
    if (Pq().PQresultStatus(raw) == PGRES_SINGLE_TUPLE) {
      stream->kept.emplace_back(raw);
    } else {
      Pq().PQclear(stream->end);
      stream->end = raw;
    }
  }
}

// What the reader does not want any more is not sent either.
void PostgresConnection::EndStream(Stream& stream) {
  if (stream_ == &stream) {
    stream_ = nullptr;
    char message[256];
    if (PGcancel* cancel = Pq().PQgetCancel(connection_)) {
      Pq().PQcancel(cancel, message, sizeof message);
      Pq().PQfreeCancel(cancel);
    }
    while (pg_result* raw = Pq().PQgetResult(connection_)) Pq().PQclear(raw);
    if (inTransaction_ && Pq().PQstatus(connection_) == CONNECTION_OK)
      PostgresResult(ExecuteNow("ROLLBACK TO z"));
  }
  Pq().PQclear(stream.end);
  stream.end = nullptr;
}

bool PostgresConnection::SendForRows(const PostgresQuery& query, const Parameters& parameters,
                                     pg_result*& failed) {
  KeepRestOfStream();
  const std::string name = NameOf(query.sql, failed);
  if (failed) return false;
  std::vector<const char*> values;
  for (const auto& parameter : parameters)
    values.push_back(parameter ? parameter->c_str() : nullptr);
  return Pq().PQsendQueryPrepared(connection_, name.c_str(), static_cast<int>(values.size()),
                                  values.data(), nullptr, nullptr, 0) == 1 &&
         Pq().PQsetSingleRowMode(connection_) == 1;
}

void PostgresConnection::ReadDialect(std::string_view sql, const Values& values,
                                     const TakeResult& take) {
  Check();
  WithStructure([&] { ReadTranslated(sql, values, take); });
}

void PostgresConnection::ReadTranslated(std::string_view sql, const Values& values,
                                        const TakeResult& take) {
  const auto query = Translated(sql, values);
  if (!query->givesRows) FailWithoutRows(sql);
  const Parameters parameters = ParametersOf(*query, values);
  RefuseZeros(parameters, kErrSyntax);
  for (bool planned = false;; planned = true) {
    Stream stream;
    int64_t taken = 0;
    wait_->Begin(false);
    if (SendForRows(*query, parameters, stream.end)) {
      stream_ = &stream;
      try {
        for (;;) {
          PostgresResult row(nullptr);
          if (!stream.kept.empty()) {
            row = std::move(stream.kept.front());
            stream.kept.pop_front();
          } else if (stream_ == &stream) {
            pg_result* raw = Pq().PQgetResult(connection_);
            if (!raw || Pq().PQresultStatus(raw) != PGRES_SINGLE_TUPLE) {
              stream.end = raw;
              stream_ = nullptr;
              while (pg_result* left = raw ? Pq().PQgetResult(connection_) : nullptr)
                Pq().PQclear(left);
              break;
            }
            row = PostgresResult(raw);
          } else {
            break;
          }
          ++taken;
          take(row);
        }
      } catch (...) {
        EndStream(stream);
        wait_->End(false, false);
        throw;
      }
    }
    const PostgresResult end(std::exchange(stream.end, nullptr));
    const std::string state = Detail(end.Handle(), PG_DIAG_SQLSTATE);
    wait_->End(false, IsLockState(state));
    if (Succeeded(end.Handle())) return;
    if (inTransaction_ && Pq().PQstatus(connection_) == CONNECTION_OK)
      PostgresResult(ExecuteNow("ROLLBACK TO z"));
    // The table is another one than when the statement was planned.
    if (state == kOtherPlan && !planned && taken == 0) {
      Forget(query->sql);
      continue;
    }
    Fail(end.Handle(), QueryWithValues(sql, values));
  }
}

// --- Rows of another base ---

void PostgresConnection::BeginCopy(const std::string& sql) {
  Check();
  // As long as the table is.
  PostgresResult(ExecuteNow("SET LOCAL statement_timeout = 0"));
  const PostgresResult result(ExecuteNow(sql));
  if (Pq().PQresultStatus(result.Handle()) != PGRES_COPY_IN) Fail(result.Handle(), sql);
}

void PostgresConnection::PutCopy(const std::string& rows) {
  if (Pq().PQputCopyData(connection_, rows.data(), static_cast<int>(rows.size())) != 1)
    FailConnection("is gone");
}

void PostgresConnection::EndCopy() {
  Pq().PQputCopyEnd(connection_, nullptr);
  const PostgresResult result(Pq().PQgetResult(connection_));
  while (pg_result* left = Pq().PQgetResult(connection_)) Pq().PQclear(left);
  if (Succeeded(result.Handle())) {
    ++ownChanges_;
    PostgresResult(ExecuteNow("RELEASE z; SAVEPOINT z"));
    return;
  }
  if (Pq().PQstatus(connection_) == CONNECTION_OK) PostgresResult(ExecuteNow("ROLLBACK TO z"));
  const std::string where = Detail(result.Handle(), PG_DIAG_CONTEXT);  // "COPY Table, line 3: ..."
  const size_t line = where.find(", line ");
  const std::string row =
      line == std::string::npos
          ? ""
          : ", in row " +
                std::to_string(NumberIn<int64_t>(std::string_view(where).substr(line + 7))) +
                " of the table";
  try {
    Fail(result.Handle(), "COPY");
  } catch (const StoreError& error) {
    throw StoreError(error.Number(), error.what() + row);
  }
}

void PostgresConnection::GiveUpCopy() {
  Pq().PQputCopyEnd(connection_, "given up");
  while (pg_result* left = Pq().PQgetResult(connection_)) Pq().PQclear(left);
  if (Pq().PQstatus(connection_) == CONNECTION_OK && inTransaction_)
    PostgresResult(ExecuteNow("ROLLBACK TO z"));
}

// --- Upkeep ---

// Neither keeps anybody from reading or writing: an index is made anew beside the one that it
// replaces, and no end of a file is cut off. An index that was interrupted is taken away first.
void PostgresConnection::Compact() {
  Check();
  PostgresResult(ExecuteNow("SET statement_timeout = 0; SET lock_timeout = '10s'"));
  try {
    const PostgresResult broken =
        Run("SELECT quote_ident(relname) FROM pg_index JOIN pg_class ON oid = indexrelid WHERE "
            "NOT indisvalid AND relnamespace = quote_ident(current_schema())::regnamespace",
            {}, false);
    for (int row = 0; row < broken.Rows(); ++row)
      Change("DROP INDEX CONCURRENTLY " + std::string(broken.Text(row, 0)));
    for (const auto& table : std::vector(AllTables())) {
      Change("VACUUM (ANALYZE, TRUNCATE false) " + QuotedName(table->Name));
      Change("REINDEX TABLE CONCURRENTLY " + QuotedName(table->Name));
    }
  } catch (const StoreError&) {
    PostgresResult(ExecuteNow(kTimeouts));
    throw;
  }
  PostgresResult(ExecuteNow(kTimeouts));
}

void PostgresConnection::Note(const std::string& table, int64_t row) {
  if (book_) book_->Note(table, row);
}

void PostgresConnection::NoteAll() {
  if (book_) book_->NoteAll();
}

// --- Errors ---

void PostgresConnection::ThrowRule(const std::string& table, const std::string& name,
                                   const std::string& message) {
  const auto rule = RuleNamed(name);
  if (!rule) throw StoreError(kErrValueRefused, message);
  const std::string where = table + '.' + rule->field;
  if (rule->isWidth)
    throw StoreError(kErrFieldTooSmall,
                     where + kWidthRule + std::to_string(rule->number) + " characters");
  throw StoreError(
      kErrOverflow,
      where + kRangeRule + (rule->number == 16 ? "-32768 to 32767" : "-2147483648 to 2147483647"));
}

void PostgresConnection::Fail(const pg_result* result, std::string_view shown) {
  const std::string state = Detail(result, PG_DIAG_SQLSTATE);
  const std::string message = ServerLine(Detail(result, PG_DIAG_MESSAGE_PRIMARY));
  const std::string table = Detail(result, PG_DIAG_TABLE_NAME);
  const std::string rule = Detail(result, PG_DIAG_CONSTRAINT_NAME);
  const std::string in = message + ", in: " + ServerLine(std::string(shown.substr(0, 200)));
  const std::string group = state.substr(0, 2);
  if (state.empty() || group == "08" || group == "57" ||
      Pq().PQstatus(connection_) != CONNECTION_OK) {
    if (state == "57014") throw StoreError(kErrLocked, name_ + " did not answer in its time");
    FailConnection("is gone");
  }
  if (IsLockState(state)) throw StoreError(kErrLocked, name_ + " is locked by another program");
  if (state == "23514") ThrowRule(table, rule, message);
  if (state == "23505") {
    std::string field;
    if (const auto def = FindTable(table)) {
      for (const Index& index : def->Indexes)
        if (rule == StoredIndexName(def->Name, index.Name)) field = index.Field;
      if (field.empty()) field = NumberColumn(*def);
    }
    throw StoreError(kErrDuplicateKey, table + '.' + field + " has this value already");
  }
  if (state == kFormState) throw StoreError(kErrReadOnly, name_ + kNewerForm);
  if (state == kRangeState) throw StoreError(kErrOverflow, message);
  if (state == kKindState) throw StoreError(kErrValueRefused, message);
  if (state == "22003") throw StoreError(kErrOverflow, in);
  if (state == "22021" || group == "23") throw StoreError(kErrValueRefused, message);
  if (state == "42P01") throw StoreError(kErrNoSuchTable, in);
  if (state == "42703") throw StoreError(kErrNoSuchField, in);
  if (state == "42P07" || state == "42710") throw StoreError(kErrTableExists, message);
  if (state == "42501" || group == "25")
    throw StoreError(kErrReadOnly, name_ + " cannot be written: " + message);
  if (state == "53100") throw StoreError(kErrDiskFull, name_ + " cannot grow: the disk is full");
  if (group == "XX") throw StoreError(kErrBadDatabase, name_ + " is damaged: " + message);
  if (group == "42" || group == "22" || group == "0A" || group == "54")
    throw StoreError(kErrSyntax, in);
  throw StoreError(kErrOther, name_ + ": " + message);
}

// --- Transactions ---

void PostgresConnection::Begin() {
  Check();
  if (inTransaction_) return;
  RequireWritable();
  wait_->Begin(true);
  for (int times = 0;;) {
    const std::string sql =
        std::string("BEGIN; SELECT pg_try_advisory_xact_lock(") + kWriterLock + ")";
    pg_result* raw = ExecuteNow(sql);
    const PostgresResult result(raw);
    if (!Succeeded(raw)) {
      wait_->End(true, false);
      if (Pq().PQstatus(connection_) == CONNECTION_OK) PostgresResult(ExecuteNow("ROLLBACK"));
      Fail(raw, sql);
    }
    if (result.Text(0, 0) == "t") break;
    PostgresResult(ExecuteNow("ROLLBACK"));
    if (wait_->WaitOnce(times++)) continue;
    wait_->End(true, true);
    throw StoreError(kErrLocked, name_ + " is locked by another program");
  }
  wait_->End(true, false);
  PostgresResult(ExecuteNow("SAVEPOINT z"));
  inTransaction_ = true;
}

void PostgresConnection::BeginReading() {
  Check();
  if (inTransaction_) return;
  const PostgresResult result(
      ExecuteNow("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY; SAVEPOINT z"));
  if (!Succeeded(result.Handle())) Fail(result.Handle(), "BEGIN");
  inTransaction_ = true;
}

void PostgresConnection::Commit() {
  Check();
  if (!inTransaction_) return;
  inTransaction_ = false;
  pg_result* raw = ExecuteNow("COMMIT");
  const PostgresResult result(raw);
  const bool stored = Succeeded(raw) && std::string_view(Pq().PQcmdStatus(raw)) == "COMMIT";
  if (stored) return;
  if (!Succeeded(raw)) {
    if (Pq().PQstatus(connection_) == CONNECTION_OK) PostgresResult(ExecuteNow("ROLLBACK"));
    Fail(raw, "COMMIT");
  }
  throw StoreError(kErrOther, name_ + " took a transaction back");
}

void PostgresConnection::Rollback() {
  if (!connection_ || !inTransaction_) return;
  inTransaction_ = false;
  PostgresResult(ExecuteNow("ROLLBACK"));
  ++ownChanges_;
  structure_.clear();
  translations_.clear();
}

// --- Catalogue ---

// Of all that the catalogue shows, whoever changed it, at a cost below that of reading it. An index
// that is made anew under its name changes nothing.
std::string PostgresConnection::StructureMark() {
  const PostgresResult mark = Run(
      "SELECT count(*) || ' ' || coalesce(sum(hashtext(concat_ws('|', CASE c.relkind WHEN 'r' THEN "
      "c.oid END, c.relname, a.attname, a.atttypid, a.attisdropped, a.atthasdef, "
      "c.relchecks))::bigint), 0) || ' ' || coalesce(max(CASE c.relkind WHEN 'r' THEN "
      "a.xmin::text::bigint END), 0) FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid "
      "WHERE c.relnamespace = quote_ident(current_schema())::regnamespace AND c.relkind IN ('r', "
      "'i') AND a.attnum > 0 AND c.relname !~ '_cc(new|old)[0-9]*$'",
      {}, false);
  return std::string(mark.Text(0, 0));
}

std::shared_ptr<const TableDef> PostgresConnection::FindTable(std::string_view name) {
  const auto find = [this, name]() -> std::shared_ptr<const TableDef> {
    for (const auto& table : tables_)
      if (SameName(table->Name, name)) return table;
    return nullptr;
  };
  if (!structure_.empty())
    if (auto table = find()) return table;
  AllTables();
  return find();
}

const std::vector<std::shared_ptr<const TableDef>>& PostgresConnection::AllTables() {
  std::string mark = StructureMark();
  if (mark == structure_) return tables_;
  structure_.clear();
  translations_.clear();
  if (mark != standInStructure_) standIns_.clear();
  LoadCatalogue();
  ++ownChanges_;
  structure_ = std::move(mark);
  return tables_;
}

bool PostgresConnection::StructureIsOld() {
  return !structure_.empty() && StructureMark() != structure_;
}

void PostgresConnection::StructureChanged() {
  NoteAll();
  structure_.clear();
  standIns_.clear();
  translations_.clear();
  ++ownChanges_;
}

std::vector<std::string> PostgresConnection::PutStandIns() {
  const auto tables = AllTables();
  NoteAll();  // read otherwise from now on
  standIns_.clear();
  std::vector<std::string> told;
  for (const auto& table : tables) {
    StandIn standIn = StandInFor(*table, PostgresStandIns(), [&table](const std::string& column) {
      return DeclaredColumn{HoldsText(*table->FindField(column)) ? "TEXT" : "REAL", true};
    });
    if (!standIn.table) continue;
    standIns_.push_back(std::move(standIn.table));
    told.insert(told.end(), standIn.told.begin(), standIn.told.end());
  }
  translations_.clear();
  standInStructure_ = structure_;
  return told;
}

bool PostgresConnection::StandInsAreOld() {
  return !standInStructure_.empty() && StructureMark() != standInStructure_;
}

std::shared_ptr<const TableDef> PostgresConnection::FindReadTable(std::string_view name) {
  auto table = FindTable(name);  // which may find the structure changed
  for (const auto& standIn : standIns_)
    if (SameName(standIn->Name, name)) return standIn;
  return table;
}

void PostgresConnection::LoadCatalogue() {
  std::vector<std::shared_ptr<TableDef>> tables;
  const PostgresResult fields = Run(
      "SELECT c.relname, a.attname, t.typname, coalesce(pg_get_expr(d.adbin, d.adrelid), ''), "
      "a.attidentity <> '' FROM pg_class c JOIN pg_attribute a ON a.attrelid = c.oid JOIN pg_type "
      "t ON t.oid = a.atttypid LEFT JOIN pg_attrdef d ON d.adrelid = c.oid AND d.adnum = a.attnum "
      "WHERE c.relnamespace = quote_ident(current_schema())::regnamespace AND c.relkind = 'r' AND "
      "a.attnum > 0 "
      "AND NOT a.attisdropped ORDER BY lower(c.relname::text COLLATE \"C\"), a.attnum",
      {}, false);
  const auto tableNamed = [&tables](std::string_view name) -> TableDef* {
    for (const auto& table : tables)
      if (table->Name == name) return table.get();
    return nullptr;
  };
  for (int row = 0; row < fields.Rows(); ++row) {
    if (tables.empty() || tables.back()->Name != fields.Text(row, 0)) {
      tables.push_back(std::make_shared<TableDef>());
      tables.back()->Name = fields.Text(row, 0);
    }
    Field field;
    field.Name = fields.Text(row, 1);
    if (field.Name == kHiddenNumber) continue;
    TypeOf(fields.Text(row, 2), fields.Text(row, 4) == "t", field);
    field.DefaultValue = DefaultIn(field, std::string(fields.Text(row, 3)));
    const TableDef* schema = FindSchemaTable(tables.back()->Name);
    const Field* known = schema ? schema->FindField(field.Name) : nullptr;
    field.AllowZeroLength = !known || known->AllowZeroLength;
    tables.back()->Fields.push_back(std::move(field));
  }
  const PostgresResult rules =
      Run("SELECT c.relname, k.conname FROM pg_constraint k JOIN pg_class c ON c.oid = k.conrelid "
          "WHERE k.connamespace = quote_ident(current_schema())::regnamespace AND k.contype = 'c'",
          {}, false);
  for (int row = 0; row < rules.Rows(); ++row) {
    TableDef* table = tableNamed(rules.Text(row, 0));
    const auto rule = RuleNamed(std::string(rules.Text(row, 1)));
    if (!table || !rule) continue;
    for (Field& field : table->Fields) {
      if (!SameName(field.Name, rule->field)) continue;
      if (rule->isWidth) {
        field.Type = FieldType::kText;
        field.Size = rule->number;
      } else if (rule->number == 16) {
        field.Type = FieldType::kInt16;
      }
    }
  }
  const PostgresResult indexes = Run(
      "SELECT c.relname, i.relname, x.indisunique, coalesce(obj_description(i.oid, 'pg_class'), "
      "a.attname) FROM pg_index x JOIN pg_class c ON c.oid = x.indrelid JOIN pg_class i ON i.oid = "
      "x.indexrelid LEFT JOIN pg_attribute a ON a.attrelid = c.oid AND a.attnum = x.indkey[0] "
      "WHERE "
      "c.relnamespace = quote_ident(current_schema())::regnamespace AND NOT x.indisprimary AND "
      "x.indisvalid "
      "ORDER BY i.oid",
      {}, false);
  for (int row = 0; row < indexes.Rows(); ++row) {
    TableDef* table = tableNamed(indexes.Text(row, 0));
    if (!table || indexes.IsNull(row, 3)) continue;
    table->Indexes.push_back({std::string(IndexNameOf(table->Name, indexes.Text(row, 1))),
                              std::string(indexes.Text(row, 3)), indexes.Text(row, 2) == "t"});
  }
  for (const auto& table : tables) AddKeyIndex(*table);
  tables_.assign(tables.begin(), tables.end());
}

// --- Changes ---

// Own changes are counted here, the others' by the server: of each transaction that wrote one, less
// those of this connection. One question and its answer, no lock.
int64_t PostgresConnection::ChangeCounter() {
  Check();
  const PostgresResult counted = Run("SELECT writes - zemo.own() FROM zemo.base", {}, false);
  const int64_t writes = counted.Rows() == 1 ? counted.Int(0, 0) : 0;
  if (foreignWrites_ >= 0 && writes != foreignWrites_) ++foreignCounter_;
  foreignWrites_ = writes;
  return ownChanges_ + foreignCounter_;
}

}  // namespace zemo
