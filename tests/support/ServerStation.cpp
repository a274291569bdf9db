#include "support/ServerStation.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <set>
#include <stdexcept>
#include <string_view>

#include "store/DatabaseFiles.h"
#include "store/Schema.h"
#include "store/StationBase.h"
#include "store/StoreError.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/TestServer.h"

namespace zemo::test {

namespace {

// As SQLite's, which the tests ask with.
constexpr char kGroupConcat[] = R"(
CREATE FUNCTION zemo.joined(text, anyelement) RETURNS text LANGUAGE sql AS
  $$ SELECT coalesce($1 || ',', '') || $2::text $$;
CREATE AGGREGATE group_concat(anyelement) (sfunc = zemo.joined, stype = text);
CREATE FUNCTION zemo.joined(text, text, text) RETURNS text LANGUAGE sql AS
  $$ SELECT coalesce($1 || $3, '') || $2 $$;
CREATE AGGREGATE group_concat(text, text) (sfunc = zemo.joined, stype = text))";

// A base as a first start leaves it, of which each test gets a copy.
std::string MakeFullBase() {
  TestServer& server = TestServer::Get();
  if (!server.Missing().empty()) throw std::runtime_error(server.Missing());
  const std::string name = server.NewBase();
  ClosedPostgresDatabase(server.Url(name), std::make_shared<LockWait>())->Open(true);
  StationBase base(ServerPlace(server.Url(name)));
  base.OpenOrCreateDatabase();
  base.CreateMissingTables([](const std::string& table, int, const std::string& text) {
    throw std::runtime_error(table + ": " + text);
  });
  base.OpenAllTables();
  base.SeedFixedRows();
  if (const std::string why = server.Try(name, kGroupConcat); !why.empty())
    throw std::runtime_error(why);
  return name;
}

// The server folds names that are not quoted.
std::string WithQuotedNames(const std::string& sql) {
  static const std::set<std::string> kNames = [] {
    std::set<std::string> names;
    for (const TableDef& table : SchemaTables()) {
      names.insert(table.Name);
      for (const Field& field : table.Fields) names.insert(field.Name);
    }
    return names;
  }();
  std::string quoted;
  bool literal = false;
  for (size_t i = 0; i < sql.size();) {
    const auto isName = [&sql](size_t at) {
      return at < sql.size() &&
             (std::isalnum(static_cast<unsigned char>(sql[at])) || sql[at] == '_');
    };
    size_t end = i;
    while (!literal && isName(end)) ++end;
    const std::string word = sql.substr(i, end - i);
    if (sql[i] == '\'') literal = !literal;
    if (end == i) {
      quoted += sql[i++];
    } else {
      quoted += kNames.contains(word) ? '"' + word + '"' : word;
      i = end;
    }
  }
  return quoted;
}

}  // namespace

bool TestsAreOnServer() {
  const char* engine = std::getenv("ZEMO_TESTS_ENGINE");
  return engine && std::string_view(engine) == "postgres";
}

ServerStation::ServerStation(const std::string& folder, bool isShared) {
  if (!TestsAreOnServer()) return;
  const std::string ini = folder + "/Base.Ini";
  if (isShared) {
    std::getline(std::ifstream(ini), url_);
    const size_t at = url_.rfind('/', url_.find('?')) + 1;
    name_ = url_.substr(at, url_.find('?') - at);
    return;
  }
  static const std::string kFull = MakeFullBase();
  name_ = made_ = TestServer::Get().NewBase(kFull);
  url_ = TestServer::Get().Url(made_);
  std::ofstream(ini) << url_ << '\n';
}

ServerStation::~ServerStation() {
  outside_.reset();
  if (!made_.empty()) TestServer::Get().Drop(made_);
}

void ServerStation::Write(const std::string& sql) {
  try {
    Outside().Execute(sql);
  } catch (const StoreError& error) {
    if (error.Number() != kErrSyntax) throw;
    TestServer::Get().Ask(name_, WithQuotedNames(sql));
  }
}

std::string ServerStation::Ask(const std::string& query) {
  try {
    const auto rows = Outside().OpenRecordset(query);
    return rows->Eof() ? "" : AsText(rows->Field(0));
  } catch (const StoreError& error) {
    if (error.Number() != kErrSyntax) throw;
    return TestServer::Get().Ask(name_, WithQuotedNames(query));
  }
}

std::unique_ptr<Database> OpenElsewhere(const std::string& name, int waitMs) {
  if (!name.starts_with("postgresql://")) return DBEngine::OpenDatabase(name, waitMs);
  auto base = ClosedPostgresDatabase(name, std::make_shared<LockWait>(waitMs));
  base->Open(false);
  return base;
}

Database& ServerStation::Outside() {
  if (!outside_) {
    outside_ = ClosedPostgresDatabase(url_, std::make_shared<LockWait>());
    outside_->Open(false);
  }
  return *outside_;
}

}  // namespace zemo::test
