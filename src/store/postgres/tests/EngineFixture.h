// What every engine promises is tested on each of them: a base of the thirteen tables on the file,
// one on a server, and a replica of it; and another program at work on the same base.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "store/Database.h"
#include "store/DatabaseFiles.h"
#include "store/Schema.h"
#include "store/SqlText.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "store/replica/Replica.h"
#include "store/tests/StoreAnswers.h"
#include "support/TestServer.h"

namespace zemo {

enum class Engine { kFile, kServer, kReplica };

// Another program on the base, through a connection of its own; it waits for nobody.
class OtherStation {
 public:
  explicit OtherStation(std::unique_ptr<Database> base) : base_(std::move(base)) {
    base_->Open(false);
  }
  Database& Db() { return *base_; }
  int Try(const std::string& sql) {
    return ErrorOf([&] { base_->Execute(sql); });
  }
  void Do(const std::string& sql) {
    std::string text;
    EXPECT_EQ(ErrorOf([&] { base_->Execute(sql); }, &text), 0) << text;
  }
  // It can write: nobody holds the base.
  bool CanWrite() {
    const int error = ErrorOf([&] { base_->BeginTrans(); });
    base_->RollbackTrans();
    return error == 0;
  }
  // The rows, fields joined by '|', Null as "NULL".
  Strings Rows(const std::string& sql) {
    Strings rows;
    const auto found = base_->OpenRecordset(sql);
    for (; !found->Eof(); found->MoveNext()) {
      std::string row;
      for (int i = 0; i < found->FieldCount(); ++i) {
        const Value value = found->Field(i);
        row += (i == 0 ? "" : "|") + (IsNull(value) ? "NULL" : AsText(value));
      }
      rows.push_back(row);
    }
    return rows;
  }
  std::string One(const std::string& sql) { return OnlyOf(Rows(sql)); }

 private:
  std::unique_ptr<Database> base_;
};

// One base of one engine.
class EngineBase {
 public:
  explicit EngineBase(Engine engine) : engine_(engine) {
    if (engine == Engine::kServer) {
      auto& server = test::TestServer::Get();
      static const std::string kFull = [&server] {
        std::string name = server.NewBase();
        Fill(*ClosedPostgresDatabase(server.Url(name), std::make_shared<LockWait>()));
        return name;
      }();
      name_ = server.NewBase(kFull);
    } else {
      const bool memory = access("/dev/shm", W_OK) == 0;
      folder_ = std::filesystem::path(memory ? "/dev/shm" : testing::TempDir()) /
                ("zemo_engine_" + std::to_string(getpid()) + "_" + std::to_string(++Made()));
      std::filesystem::remove_all(folder_);
      std::filesystem::create_directories(folder_);
      Fill(*DBEngine::ClosedDatabase(Path(), std::make_shared<LockWait>()));
      if (engine == Engine::kReplica) MakeReplica();
    }
    base_ = Closed(kBusyTimeoutMs);
    base_->Open(false);
  }
  ~EngineBase() {
    base_.reset();
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }

  Database& Db() { return *base_; }
  const std::string& Name() const { return name_; }  // on the server
  std::string Path() const { return (folder_ / "Triskin.MDB").string(); }
  std::unique_ptr<Database> Closed(int waitMs = 0) const {
    auto wait = std::make_shared<LockWait>(waitMs);
    if (engine_ == Engine::kServer)
      return ClosedPostgresDatabase(test::TestServer::Get().Url(name_), std::move(wait));
    if (engine_ == Engine::kReplica)
      return DBEngine::ClosedReplica(ReplicaPath(), std::move(wait),
                                     {.stores = [] {}, .compact = [] {}});
    return DBEngine::ClosedDatabase(Path(), std::move(wait));
  }

 private:
  std::string ReplicaPath() const { return (folder_ / "Replica.MDB").string(); }
  // With the numbers that the file itself would give.
  void MakeReplica() const {
    const auto file = DBEngine::OpenDatabase(Path());
    Replica::Make(*file, {}, "machine", ReplicaPath());
    Replica replica(ReplicaPath(), kBusyTimeoutMs);
    for (const std::string& table : replica.Tables())
      replica.AddNumbers(table, file->Tables().LastNumber(table) + 1, 1000000);
  }
  static int& Made() {
    static int made = 0;
    return made;
  }
  static void Fill(Database& base) {
    base.Open(true);
    Transaction transaction(base);
    for (const TableDef& table : SchemaTables()) {
      CreateTable(base.Tables(), table.Name);
      CreateIndexes(base.Tables(), table.Name);
    }
    base.Execute("INSERT INTO Variete(POURCENT, VARIETE) VALUES(40, 'NATIONAL')");
    base.Execute("INSERT INTO Variete(POURCENT, VARIETE) VALUES(60, 'INTERNATIONAL')");
    for (int64_t hour = 0; hour < 24; ++hour)
      base.Execute("INSERT INTO Toph(FICHIER, SURIMPRESSION, HEURE) VALUES('', 0, ?)", {hour});
    base.Execute("INSERT INTO Cnf DEFAULT VALUES");
    transaction.Commit();
    base.Close();
  }

  Engine engine_;
  std::filesystem::path folder_;
  std::string name_;
  std::unique_ptr<Database> base_;
};

class EngineTest : public testing::TestWithParam<Engine> {
 protected:
  EngineTest() {
    if (GetParam() == Engine::kServer && !test::TestServer::Get().Missing().empty()) return;
    made_ = std::make_unique<EngineBase>(GetParam());
  }
  void SetUp() override {
    if (!made_) GTEST_SKIP() << test::TestServer::Get().Missing();
    Begin();
  }
  virtual void Begin() {}  // with a base

  Database& Db() { return made_->Db(); }
  std::unique_ptr<Recordset> Query(const std::string& sql) { return Db().OpenRecordset(sql); }
  Strings Column(const std::string& sql, const std::string& field) {
    const auto rows = Query(sql);
    return ColumnOf(*rows, field);
  }
  void AddCard(const std::string& artist, const std::string& genre = "ROCK") {
    Db().Execute("INSERT INTO Discotheque(AUTEUR, GENRE) VALUES(?, ?)", {artist, genre});
  }
  int64_t Count(const std::string& table) {
    return AsInt(Query("SELECT COUNT(*) FROM " + table)->Field(0));
  }
  OtherStation& Other() {
    if (!other_) other_ = std::make_unique<OtherStation>(made_->Closed());
    return *other_;
  }
  const EngineBase& Made() const { return *made_; }

 private:
  std::unique_ptr<EngineBase> made_;
  std::unique_ptr<OtherStation> other_;
};

inline std::string NameOfEngine(const testing::TestParamInfo<Engine>& info) {
  return info.param == Engine::kFile     ? "File"
         : info.param == Engine::kServer ? "Server"
                                         : "Replica";
}

#define ON_EVERY_ENGINE(suite)                                                                \
  INSTANTIATE_TEST_SUITE_P(Engines, suite,                                                    \
                           testing::Values(Engine::kFile, Engine::kServer, Engine::kReplica), \
                           NameOfEngine)

// First in a test that changes the structure of the base.
#define NOT_ON_A_REPLICA() \
  if (GetParam() == Engine::kReplica) GTEST_SKIP() << "a replica's structure is its server's"

// Of suites about the structure, and about bases as a whole.
#define ON_BOTH_ENGINES(suite)                                                              \
  INSTANTIATE_TEST_SUITE_P(Engines, suite, testing::Values(Engine::kFile, Engine::kServer), \
                           NameOfEngine)

}  // namespace zemo
