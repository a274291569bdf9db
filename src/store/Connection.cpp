// The connection. What holds at every moment between two calls of the store's operations:
//
//  1. No statement is open: each is reset at the end of the scope that stepped it. So no read
//     lock is held, and other processes can write at any time. (Only while rows are handed out
//     one by one is one open; it is not lent again then, and lives on where it is forgotten.)
//  2. Either no transaction is open, or one that Begin opened and that already holds the write
//     lock: it was begun IMMEDIATE, so only its beginning and its end wait for others.
//  3. A transaction that could not be committed is rolled back: the connection is never stuck.
//  4. tables_ shows the structure of version catalogueVersion_ as a whole, or that is -1.
//  5. Every statement in kept_ is in keptByKey_ and the other way round, the last used first;
//     there are at most kKeptStatements. The keys point into the statements.
//  6. changeCounter_ is at least as high as it was at any earlier call, and higher when this
//     connection or another process has stored something since.
//  7. A cursor holds values and a key, never a statement: it finds its neighbours by the key,
//     whatever others did to the rows meanwhile.
#include "store/Connection.h"

#include <sqlite3.h>

#include <algorithm>
#include <cassert>
#include <charconv>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

#include "store/Collation.h"
#include "store/Dialect.h"
#include "store/Names.h"
#include "store/Schema.h"
#include "store/SqlText.h"
#include "store/SqliteError.h"
#include "store/StandIns.h"
#include "store/StoreError.h"

namespace zemo {

// On loan while anybody but the connection holds it.
struct PreparedStatement {
  int language;
  // A text without values is its own key. Else the kinds of the values stand behind it: they decide
  // what the translation makes of it.
  std::string key;
  sqlite3_stmt* statement = nullptr;
  std::vector<size_t> patterns{};  // values that are patterns of LIKE, from 0
  Values bound{};                  // of a query of the dialect, from one asking to the next

  PreparedStatement(int itsLanguage, std::string itsKey)
      : language(itsLanguage), key(std::move(itsKey)) {}
  ~PreparedStatement() { sqlite3_finalize(statement); }
  PreparedStatement(const PreparedStatement&) = delete;
};

namespace {

constexpr size_t kKeptStatements = 128;

std::string_view BytesOf(sqlite3_value* value) {
  const auto* bytes = static_cast<const char*>(static_cast<const void*>(sqlite3_value_text(value)));
  return bytes ? std::string_view(bytes, static_cast<size_t>(sqlite3_value_bytes(value)))
               : std::string_view();
}

template <int Compare(std::string_view, std::string_view)>
int Collate(void*, int sizeA, const void* a, int sizeB, const void* b) {
  return Compare({static_cast<const char*>(a), static_cast<size_t>(sizeA)},
                 {static_cast<const char*>(b), static_cast<size_t>(sizeB)});
}

// `text REGEXP pattern` calls regexp(pattern, text).
void PatternFunction(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (sqlite3_value_type(arguments[0]) == SQLITE_NULL ||
      sqlite3_value_type(arguments[1]) == SQLITE_NULL) {
    return;  // Null
  }
  sqlite3_result_int(context, MatchesPattern(BytesOf(arguments[1]), BytesOf(arguments[0])) ? 1 : 0);
}

int KeepWaiting(void* wait, int times) {
  return static_cast<LockWait*>(wait)->WaitOnce(times) ? 1 : 0;
}

// The number before and the one behind a write. SQLite calls this for every row that goes, one that
// gives way to another or falls with all of its table too.
void NoteRow(void* book, sqlite3*, int operation, const char* base, const char* table,
             sqlite3_int64 before, sqlite3_int64 behind) {
  if (std::string_view(base) != "main") return;
  auto* notes = static_cast<RowNoteBook*>(book);
  if (operation != SQLITE_INSERT) notes->Note(table, before);
  if (operation == SQLITE_INSERT || (operation == SQLITE_UPDATE && behind != before))
    notes->Note(table, behind);
}

int BindTo(sqlite3_stmt* statement, int position, const Value& value) {
  if (const auto* integer = std::get_if<int64_t>(&value))
    return sqlite3_bind_int64(statement, position, *integer);
  if (const auto* real = std::get_if<double>(&value))
    return sqlite3_bind_double(statement, position, *real);
  if (const auto* text = std::get_if<std::string>(&value))
    return sqlite3_bind_text64(statement, position, text->data(), text->size(), SQLITE_TRANSIENT,
                               SQLITE_UTF8);
  return sqlite3_bind_null(statement, position);
}

std::string KeyOf(std::string_view sql, const Values& values) {
  std::string key(sql);
  if (!values.empty()) key += '\0';
  for (const Value& value : values) key += static_cast<char>(KindOf(value));
  return key;
}

// A whole number goes as an integer, as its literal is one, whatever the column makes of it.
Value AsLiteral(double real) {
  const bool whole = std::trunc(real) == real && std::fabs(real) < 1e15;
  return whole ? Value(static_cast<int64_t>(real)) : Value(real);
}

// Returns SQLite's result. A value that is bound already is not bound again: the planner looks into
// the patterns of LIKE, and a pattern that is bound has the query planned anew.
int BindAll(PreparedStatement& prepared, const Values& values) {
  prepared.bound.resize(values.size());  // Null at first, as unbound values are
  // Values of columns that the file has not are left out, those at the end without a place.
  const auto places = static_cast<size_t>(sqlite3_bind_parameter_count(prepared.statement));
  int result = SQLITE_OK;
  for (size_t i = 0; i < std::min(places, values.size()) && result == SQLITE_OK; ++i) {
    if (prepared.bound[i] == values[i]) continue;
    const int position = static_cast<int>(i) + 1;
    const auto* text = std::get_if<std::string>(&values[i]);
    const auto* real = std::get_if<double>(&values[i]);
    const bool pattern =
        std::find(prepared.patterns.begin(), prepared.patterns.end(), i) != prepared.patterns.end();
    if (text && text->find('\0') != std::string::npos)
      throw StoreError(kErrSyntax, "a query cannot hold a zero character");
    prepared.bound[i] = Value();
    if (text && pattern)
      result = BindTo(prepared.statement, position, LikePattern(*text));
    else
      result = BindTo(prepared.statement, position, real ? AsLiteral(*real) : values[i]);
    if (result == SQLITE_OK) prepared.bound[i] = values[i];
  }
  return result;
}

// A default as the schema writes it: 'text', a number, or nothing that is a constant.
Value DefaultOf(const std::string& sql) {
  if (sql.size() >= 2 && sql.front() == '\'') {
    std::string text;
    for (size_t i = 1; i + 1 < sql.size(); ++i) {
      text += sql[i];
      if (sql[i] == '\'') ++i;
    }
    return text;
  }
  int64_t integer = 0;
  const char* end = sql.data() + sql.size();
  if (std::from_chars(sql.data(), end, integer).ptr == end && !sql.empty()) return integer;
  double real = 0;
  if (std::from_chars(sql.data(), end, real).ptr == end && !sql.empty()) return real;
  return {};
}

class SqliteStandIns final : public StandInSql {
 public:
  // An expression everywhere: a bare number behind ORDER BY is a column's place.
  std::string Constant(const Field& field, const std::string& literal) const override {
    if (field.Type == FieldType::kText || field.Type == FieldType::kMemo)
      return "CAST(" + literal + " AS TEXT) COLLATE NOCASE";
    return "CAST(" + literal + (field.Type == FieldType::kFloat64 ? " AS REAL)" : " AS INTEGER)");
  }
  std::string InType(const Field& field, const std::string& column) const override {
    return Constant(field, column);
  }
  std::string Number(const TableDef&) const override { return "rowid"; }
  std::string Table(std::string_view name) const override { return "main." + QuotedName(name); }
};

}  // namespace

// --- Statement ---

Statement::Statement(Connection& connection, std::shared_ptr<PreparedStatement> prepared)
    : connection_(connection), prepared_(std::move(prepared)), statement_(prepared_->statement) {}

Statement::~Statement() {
  sqlite3_reset(statement_);
  if (prepared_->language == Connection::kSqlite) sqlite3_clear_bindings(statement_);
}

Statement& Statement::Bind(int position, const Value& value) {
  if (const int result = BindTo(statement_, position, value); result != SQLITE_OK)
    connection_.Fail(result);
  return *this;
}

bool Statement::Step() {
  const bool first = !sqlite3_stmt_busy(statement_);
  const bool writes = !sqlite3_stmt_readonly(statement_);
  if (first) connection_.wait_->Begin(writes);
  const int result = sqlite3_step(statement_);
  if (first) connection_.AfterWaiting(writes, result);
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  connection_.seenTotalChanges_ = -1;  // SQLite may have taken back what was counted
  const std::unique_ptr<char, void (*)(void*)> shown(sqlite3_expanded_sql(statement_),
                                                     sqlite3_free);
  // Only values of the dialect stand in the text.
  const bool withValues = shown && prepared_->language == Connection::kDialect;
  connection_.Fail(result, withValues ? shown.get() : sqlite3_sql(statement_));
}

void Statement::Run() {
  while (Step()) {
  }
}

int Statement::Columns() const {
  return sqlite3_column_count(statement_);
}

std::string Statement::ColumnName(int column) const {
  return sqlite3_column_name(statement_, column);
}

int64_t Statement::Int(int column) const {
  return sqlite3_column_int64(statement_, column);
}

std::string Statement::Text(int column) const {
  const auto* bytes =
      static_cast<const char*>(static_cast<const void*>(sqlite3_column_text(statement_, column)));
  return bytes ? std::string(bytes, static_cast<size_t>(sqlite3_column_bytes(statement_, column)))
               : std::string();
}

void Statement::Read(int column, Value& into) const {
  switch (sqlite3_column_type(statement_, column)) {
    case SQLITE_NULL:
      into = std::monostate();
      break;
    case SQLITE_INTEGER:
      into = int64_t{sqlite3_column_int64(statement_, column)};
      break;
    case SQLITE_FLOAT:
      into = sqlite3_column_double(statement_, column);
      break;
    default: {  // text, and bytes that another tool stored
      const auto* bytes = static_cast<const char*>(
          static_cast<const void*>(sqlite3_column_text(statement_, column)));
      const auto size = static_cast<size_t>(sqlite3_column_bytes(statement_, column));
      if (auto* text = std::get_if<std::string>(&into)) {
        text->assign(bytes ? bytes : "", size);
      } else {
        into.emplace<std::string>(bytes ? bytes : "", size);
      }
    }
  }
}

// --- Connection: opening and closing ---

Connection::Connection(std::string path, bool create, std::shared_ptr<LockWait> wait)
    : path_(std::move(path)), wait_(std::move(wait)) {
  try {
    Open(create);
  } catch (...) {
    sqlite3_close(database_);
    throw;
  }
}

Connection::~Connection() {
  Close();
}

void Connection::Open(bool create) {
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE |
                    (create ? SQLITE_OPEN_CREATE : 0);
  const bool existed = FileExists(path_);
  const int result = sqlite3_open_v2(path_.c_str(), &database_, flags, nullptr);
  if ((result & 0xFF) == SQLITE_CANTOPEN) {
    if (create) throw StoreError(kErrReadOnly, path_ + " cannot be created in its folder");
    if (!FileExists(path_)) throw StoreError(kErrNoSuchFile, path_ + " does not exist");
    throw StoreError(kErrBadDatabase, path_ + " cannot be read, or is a folder");
  }
  if (result != SQLITE_OK) Fail(result);
  // A pipe or a device would be waited for. Of all that exists by SQLite's word, only these have no
  // size.
  if (existed && SizeBytes() == 0)
    throw StoreError(kErrBadDatabase, path_ + " is not a regular file");
  sqlite3_busy_handler(database_, KeepWaiting, wait_.get());
  // A misspelt field name must fail, not become a text.
  sqlite3_db_config(database_, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  RegisterFunctions();
  ExecuteNow("PRAGMA schema_version");
  ExecuteNow("PRAGMA synchronous = FULL");
  ExecuteNow("PRAGMA temp_store = MEMORY");  // a full or read-only disk must not stop a sorting
  // Another tool may have switched the file to a write-ahead log. Where it cannot be switched back
  // now (read only, in use) the file is as sound with it.
  sqlite3_exec(database_, "PRAGMA journal_mode = DELETE", nullptr, nullptr, nullptr);
  isReplica_ = IsReplicaFile(database_);
}

void Connection::RegisterFunctions() {
  sqlite3_create_collation_v2(database_, kFrenchOrder, SQLITE_UTF8, nullptr,
                              Collate<CompareFrenchOrder>, nullptr);
  sqlite3_create_collation_v2(database_, kFrenchCase, SQLITE_UTF8, nullptr,
                              Collate<CompareFrenchCase>, nullptr);
  sqlite3_create_function_v2(database_, "regexp", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr,
                             PatternFunction, nullptr, nullptr, nullptr);
}

void Connection::Close() {
  if (!database_) return;
  try {
    Commit();
  } catch (const StoreError&) {
    // Rolled back; nobody is left to hear of it.
  }
  ForgetStatements();
  standIns_.clear();
  standInVersion_ = -1;
  standInMark_.clear();
  sqlite3_finalize(dataVersion_);
  dataVersion_ = nullptr;
  seenMark_.clear();
  alone_ = false;
  sqlite3_preupdate_hook(database_, nullptr, nullptr);
  sqlite3_close_v2(database_);  // the last of the statements on loan closes it
  database_ = nullptr;
}

void Connection::Check() const {
  if (!database_) throw StoreError(kErrClosed, path_ + " is not open");
}

void Connection::Fail(int result, std::string_view query) const {
  fileFailed_ = fileFailed_ || (result & 0xFF) == SQLITE_IOERR;
  ThrowSqlite(database_, result, path_, query);
}

int64_t Connection::SizeBytes() const {
  sqlite3_file* file = nullptr;
  sqlite3_int64 size = -1;
  if (sqlite3_file_control(database_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      !file || !file->pMethods || file->pMethods->xFileSize(file, &size) != SQLITE_OK)
    return -1;
  return size;
}

bool Connection::FileExists(const std::string& path) {
  sqlite3_vfs* files = sqlite3_vfs_find(nullptr);
  int exists = 0;
  return files->xAccess(files, path.c_str(), SQLITE_ACCESS_EXISTS, &exists) == SQLITE_OK && exists;
}

void Connection::AfterWaiting(bool writes, int result) {
  wait_->End(writes, (result & 0xFF) == SQLITE_BUSY);
}

// --- Statements ---

Statement Connection::Prepare(std::string_view sql) {
  Check();
  auto prepared = Kept(kSqlite, sql);
  if (!prepared) {
    prepared = std::make_shared<PreparedStatement>(kSqlite, std::string(sql));
    prepared->statement = Compile(prepared->key, sql);
    Keep(kSqlite, prepared);
  }
  return {*this, std::move(prepared)};
}

Statement Connection::PrepareDialect(std::string_view sql, const Values& values) {
  Check();
  std::shared_ptr<PreparedStatement> prepared;
  if (values.empty())
    prepared = Kept(kDialect, sql);
  else
    prepared = Kept(kDialect, KeyOf(sql, values));
  if (!prepared) prepared = Translated(sql, values);
  if (const int result = BindAll(*prepared, values); result != SQLITE_OK) Fail(result);
  return {*this, std::move(prepared)};
}

void Connection::ExecuteNow(const char* sql) {
  Check();
  wait_->Begin(true);
  const int result = sqlite3_exec(database_, sql, nullptr, nullptr, nullptr);
  AfterWaiting(true, result);
  if (result != SQLITE_OK) Fail(result, sql);
}

// Null: there is none, or it is on loan.
std::shared_ptr<PreparedStatement> Connection::Kept(Language language, std::string_view key) {
  const auto found = keptByKey_[language].find(key);
  if (found == keptByKey_[language].end() || found->second->use_count() > 1) return nullptr;
  kept_.splice(kept_.begin(), kept_, found->second);
  return kept_.front();
}

// The second of two that are on loan at a time is not kept.
void Connection::Keep(Language language, const std::shared_ptr<PreparedStatement>& prepared) {
  if (keptByKey_[language].count(prepared->key) > 0) return;
  kept_.push_front(prepared);
  keptByKey_[language].emplace(prepared->key, kept_.begin());
  if (kept_.size() > kKeptStatements) {
    keptByKey_[kept_.back()->language].erase(kept_.back()->key);
    kept_.pop_back();
  }
  assert(keptByKey_[kSqlite].size() + keptByKey_[kDialect].size() == kept_.size());
}

std::shared_ptr<PreparedStatement> Connection::Translated(std::string_view sql,
                                                          const Values& values) {
  auto prepared = std::make_shared<PreparedStatement>(kDialect, KeyOf(sql, values));
  std::vector<ValueKind> kinds;
  for (const Value& value : values) kinds.push_back(KindOf(value));
  TranslatedQuery query = TranslateQuery(
      sql, [this](std::string_view name) { return FindReadTable(name); }, kinds);
  prepared->patterns = std::move(query.patterns);
  prepared->statement = Compile(query.sql, QueryWithValues(sql, values));
  Keep(kDialect, prepared);
  return prepared;
}

sqlite3_stmt* Connection::Compile(const std::string& sql, std::string_view shown) {
  if (sql.find('\0') != std::string::npos) {
    throw StoreError(kErrSyntax, "a query cannot hold a zero character");
  }
  sqlite3_stmt* statement = nullptr;
  const char* tail = nullptr;
  wait_->Begin(false);  // for the structure, where it has to be read
  const int result = sqlite3_prepare_v3(database_, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                        SQLITE_PREPARE_PERSISTENT, &statement, &tail);
  if (result != SQLITE_OK) {
    AfterWaiting(false, result);
    Fail(result, shown);
  }
  const std::string_view rest(tail);
  if (!statement || rest.find_first_not_of("; \t\r\n") != std::string_view::npos) {
    sqlite3_finalize(statement);
    throw StoreError(kErrSyntax, "a query must be one statement: " + std::string(shown));
  }
  return statement;
}

void Connection::ForgetStatements() {
  for (auto& keys : keptByKey_) keys.clear();
  kept_.clear();
}

// --- Transactions ---

bool Connection::InTransaction() const {
  return database_ && !sqlite3_get_autocommit(database_);
}

void Connection::Begin() {
  Check();
  if (!InTransaction()) Prepare("BEGIN IMMEDIATE").Run();
}

void Connection::BeginReading() {
  Check();
  if (!InTransaction()) Prepare("BEGIN").Run();
}

void Connection::Commit() {
  Check();
  if (!InTransaction()) return;
  wait_->Begin(true);
  const int result = sqlite3_exec(database_, "COMMIT", nullptr, nullptr, nullptr);
  AfterWaiting(true, result);
  if (result == SQLITE_OK) return;
  try {
    Fail(result);
  } catch (const StoreError&) {
    Rollback();
    throw;
  }
}

void Connection::Rollback() {
  if (InTransaction()) sqlite3_exec(database_, "ROLLBACK", nullptr, nullptr, nullptr);
  seenTotalChanges_ = -1;
  catalogueVersion_ = -1;
}

// --- Catalogue ---

std::shared_ptr<const TableDef> Connection::FindTable(std::string_view name) {
  const auto find = [this, name]() -> std::shared_ptr<const TableDef> {
    for (const auto& table : tables_) {
      if (SameName(table->Name, name)) return table;
    }
    return nullptr;
  };
  if (catalogueVersion_ >= 0) {
    if (auto table = find()) return table;
  }
  RefreshCatalogue();
  return find();
}

const std::vector<std::shared_ptr<const TableDef>>& Connection::AllTables() {
  RefreshCatalogue();
  return tables_;
}

void Connection::StructureChanged() {
  if (book_) book_->NoteAll();
  catalogueVersion_ = -1;
  seenTotalChanges_ = -1;
}

int64_t Connection::SchemaVersion() {
  Statement statement = Prepare("PRAGMA schema_version");
  return statement.Step() ? statement.Int(0) : 0;
}

void Connection::RefreshCatalogue() {
  const int64_t version = SchemaVersion();
  if (version == catalogueVersion_) return;
  if (catalogueVersion_ >= 0) seenTotalChanges_ = -1;
  catalogueVersion_ = -1;
  LoadCatalogue();
  ForgetStatements();  // translations may hang on what the tables were
  catalogueVersion_ = version;
}

void Connection::LoadCatalogue() {
  std::vector<std::shared_ptr<TableDef>> tables;
  std::shared_ptr<TableDef> table;
  Statement fields = Prepare(
      "SELECT m.name, f.name, f.type, f.dflt_value, f.pk = 1 AND NOT EXISTS "
      "(SELECT 1 FROM pragma_index_list(m.name, 'main') WHERE origin = 'pk') FROM sqlite_schema m, "
      "pragma_table_info(m.name, 'main') f WHERE m.type = 'table' AND m.name NOT GLOB 'sqlite_*' "
      "AND m.name NOT GLOB 'zemo_*' ORDER BY m.name COLLATE NOCASE, f.cid");
  const TableDef* schema = nullptr;
  while (fields.Step()) {
    const std::string name = fields.Text(0);
    if (!table || table->Name != name) {
      table = std::make_shared<TableDef>();
      table->Name = name;
      tables.push_back(table);
      schema = FindSchemaTable(name);
    }
    Field field;
    field.Name = fields.Text(1);
    ReadDeclaredType(fields.Text(2), field);
    field.DefaultValue = DefaultOf(fields.Text(3));
    // A key that is not the row's own number has an index.
    field.AutoIncrement = fields.Int(4) == 1 && field.Type == FieldType::kInt32;
    const Field* known = schema ? schema->FindField(field.Name) : nullptr;
    field.AllowZeroLength = !known || known->AllowZeroLength;
    table->Fields.push_back(std::move(field));
  }
  Statement indexes = Prepare(
      "SELECT l.name, l.\"unique\", i.name FROM pragma_index_list(?1, 'main') l, "
      "pragma_index_info(l.name, 'main') i WHERE l.origin = 'c' AND i.seqno = 0 ORDER BY l.seq "
      "DESC");
  for (const auto& entry : tables) {
    TableDef& def = *entry;
    indexes.Bind(1, def.Name);
    while (indexes.Step()) {
      def.Indexes.push_back({std::string(IndexNameOf(def.Name, indexes.Text(0))), indexes.Text(2),
                             indexes.Int(1) != 0});
    }
    sqlite3_reset(indexes.Handle());
    AddKeyIndex(def);
  }
  tables_.assign(tables.begin(), tables.end());
}

// --- Stand-ins ---

std::vector<std::string> Connection::PutStandIns() {
  const auto tables = AllTables();  // a locked base leaves the former ones
  if (book_) book_->NoteAll();      // read otherwise from now on
  DropStandIns();
  std::vector<std::string> told;
  for (const auto& table : tables) {
    StandIn standIn = StandInFor(*table, SqliteStandIns(), [&](const std::string& column) {
      const char* type = nullptr;
      const char* order = nullptr;
      sqlite3_table_column_metadata(database_, "main", table->Name.c_str(), column.c_str(), &type,
                                    &order, nullptr, nullptr, nullptr);
      return DeclaredColumn{type ? type : "", order && SameName(order, "NOCASE")};
    });
    if (!standIn.table) continue;
    if (!standIn.select.empty()) ExecuteNow(MakeViewSql(standIn).c_str());
    standIns_.push_back(std::move(standIn.table));
    told.insert(told.end(), standIn.told.begin(), standIn.told.end());
  }
  if (!standIns_.empty()) ForgetStatements();
  standInVersion_ = catalogueVersion_;
  standInMark_.clear();
  return told;
}

bool Connection::StandInsAreOld() {
  if (standInVersion_ < 0) return false;
  std::string mark = FileMark();
  if (!mark.empty() && mark == standInMark_) return false;
  const bool old = SchemaVersion() != standInVersion_;
  if (!old) standInMark_ = std::move(mark);  // the one from before it was asked
  return old;
}

void Connection::DropStandIns() {
  if (standIns_.empty()) return;
  for (const auto& table : standIns_)
    if (table->IsStandIn) ExecuteNow(DropViewSql(*table).c_str());
  standIns_.clear();
  ForgetStatements();
}

std::shared_ptr<const TableDef> Connection::FindReadTable(std::string_view name) {
  for (const auto& table : standIns_)
    if (SameName(table->Name, name)) return table;
  return FindTable(name);
}

// --- Changes ---

void Connection::TellRows(std::shared_ptr<RowNoteBook> book) {
  Check();
  book_ = std::move(book);
  sqlite3_preupdate_hook(database_, NoteRow, book_.get());
}

// What the head of the file says of its last commit: the sixteen bytes by which SQLite itself knows
// that its pages still hold. Read without a lock, it can only differ too soon and never too late.
// Empty where it tells nothing: with another journal than the rollback journal, commits do not pass
// there.
std::string Connection::FileMark() const {
  constexpr int kFormsAt = 18, kMarkAt = 24, kEnd = 40;
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(database_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      !file || !file->pMethods)
    return {};
  char head[kEnd - kFormsAt];
  if (file->pMethods->xRead(file, head, sizeof head, kFormsAt) != SQLITE_OK) return {};
  if (head[0] != 1 || head[1] != 1) return {};
  return {head + kMarkAt - kFormsAt, sizeof head - (kMarkAt - kFormsAt)};
}

std::string Connection::MarkNow() const {
  return alone_ ? "alone" : FileMark();
}

// In this mode the lock of the first transaction stays; it needs no change of the file, so that no
// journal comes into being.
void Connection::KeepAlone() {
  if (alone_) return;
  ExecuteNow("PRAGMA locking_mode = EXCLUSIVE");
  try {
    ExecuteNow("BEGIN EXCLUSIVE");
    ExecuteNow("COMMIT");
  } catch (const StoreError&) {
    const NoLockWait atOnce(*wait_);
    try {
      GiveLockBack();
    } catch (const StoreError&) {
      // It goes with the next reading that gets in.
    }
    throw;
  }
  alone_ = true;
}

void Connection::LetOthersIn() {
  if (!alone_) return;
  alone_ = false;
  seenMark_.clear();
  GiveLockBack();
}

// It goes with the next reading.
void Connection::GiveLockBack() {
  ExecuteNow("PRAGMA locking_mode = NORMAL");
  ExecuteNow("PRAGMA schema_version");
}

int64_t Connection::ChangeCounter() {
  Check();
  std::string mark = MarkNow();
  if (!mark.empty() && mark == seenMark_ && sqlite3_total_changes64(database_) == seenTotalChanges_)
    return changeCounter_;
  if (!dataVersion_) dataVersion_ = Compile("PRAGMA data_version", "PRAGMA data_version");
  // Who writes just now may have the file to himself for a moment; his change is seen next time.
  const NoLockWait atOnce(*wait_);
  int64_t version = seenDataVersion_;
  const bool known = sqlite3_step(dataVersion_) == SQLITE_ROW;
  if (known) version = sqlite3_column_int64(dataVersion_, 0);
  sqlite3_reset(dataVersion_);
  seenMark_ = known ? std::move(mark) : std::string();  // the one from before it was asked
  const int64_t total = sqlite3_total_changes64(database_);
  if (version != seenDataVersion_ || total != seenTotalChanges_) {
    ++changeCounter_;
    if (version != seenDataVersion_) ++foreignCounter_;
    seenDataVersion_ = version;
    seenTotalChanges_ = total;
  }
  return changeCounter_;
}

bool Connection::FileIsLost() const {
  if (!database_) return false;
  int moved = 0;
  sqlite3_file_control(database_, "main", SQLITE_FCNTL_HAS_MOVED, &moved);
  return fileFailed_ || moved != 0;
}

int64_t Connection::RowsChanged() const {
  return sqlite3_changes64(database_);
}

// SQLite tells the number that it gave the row itself, ahead of the triggers of a replica.
int64_t Connection::LastInsertCode() {
  if (!database_) return 0;
  const int64_t last = sqlite3_last_insert_rowid(database_);
  if (!isReplica_ || last == 0) return last;
  Statement given = Prepare("SELECT given FROM zemo_replica");
  return given.Step() ? given.Int(0) : 0;
}

void Connection::TellStores(std::function<void()> stores) {
  stores_ = std::move(stores);
  const auto told = [](void* connection) {
    static_cast<Connection*>(connection)->stores_();
    return 0;
  };
  sqlite3_commit_hook(database_, stores_ ? static_cast<int (*)(void*)>(told) : nullptr, this);
}

}  // namespace zemo
