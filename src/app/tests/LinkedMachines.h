// Machines in folders of their own, each with a link to a base on the tests' own server.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/ServerLink.h"
#include "store/Database.h"
#include "store/Schema.h"
#include "store/TableDefs.h"
#include "store/postgres/PostgresDatabase.h"
#include "support/Awaited.h"
#include "support/TestServer.h"

namespace zemo {

using test::Comes;
using test::TestServer;

class LinkedMachines : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestServer::Get().Missing().empty()) GTEST_SKIP() << TestServer::Get().Missing();
    std::string path = (std::filesystem::temp_directory_path() / "zemo-link-XXXXXX").string();
    ASSERT_NE(mkdtemp(path.data()), nullptr);
    folder_ = path;
    made_ = TestServer::Get().NewBase();
    const auto base = ClosedPostgresDatabase(Url(), std::make_shared<LockWait>());
    base->Open(true);
    for (const TableDef& table : SchemaTables()) {
      CreateTable(base->Tables(), table.Name);
      CreateIndexes(base->Tables(), table.Name);
    }
  }
  void TearDown() override {
    TestServer::Get().Start();
    if (!made_.empty()) TestServer::Get().Drop(made_);
    std::error_code ignored;
    if (!folder_.empty()) std::filesystem::remove_all(folder_, ignored);
  }

  std::string Url() const { return TestServer::Get().Url(made_); }
  std::string Folder(const std::string& machine) const {
    std::filesystem::create_directories(folder_ / machine);
    return (folder_ / machine).string();
  }
  std::unique_ptr<ServerLink> Link(const std::string& machine = "air") const {
    return std::make_unique<ServerLink>(ServerPlace(Url()), Folder(machine));
  }
  static std::unique_ptr<Database> Open(ServerLink& link) {
    auto base = link.Place().closed(std::make_shared<LockWait>());
    base->Open(false);
    return base;
  }
  std::string OnServer(const std::string& sql) const { return TestServer::Get().Ask(made_, sql); }
  static int64_t Count(Database& base) {
    return AsInt(base.OpenRecordset("SELECT COUNT(*) FROM Discotheque")->Field(0));
  }
  static void Add(Database& base, const std::string& title) {
    base.Execute("INSERT INTO Discotheque(TITRE) VALUES(?)", {title});
  }

  std::filesystem::path folder_;
  std::string made_;
};

}  // namespace zemo
