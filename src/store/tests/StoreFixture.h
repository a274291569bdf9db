// What the store's tests share: a folder of their own, a full base in it, and another program that
// opens the same file with plain SQLite.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "store/Database.h"
#include "store/SqlText.h"
#include "store/StationBase.h"
#include "store/TableDefs.h"
#include "store/tests/StoreAnswers.h"

namespace zemo {

// Another program on the file: SQLite as it comes, none of our functions or comparisons.
class OtherProgram {
 public:
  explicit OtherProgram(const std::string& path) {
    if (sqlite3_open_v2(path.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
      ADD_FAILURE() << "another program cannot open " << path;
    }
  }
  ~OtherProgram() { sqlite3_close(database_); }
  OtherProgram(const OtherProgram&) = delete;

  // "" or SQLite's message.
  std::string Try(const std::string& sql) {
    char* message = nullptr;
    sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, &message);
    std::string text = message ? message : "";
    sqlite3_free(message);
    return text;
  }
  void Do(const std::string& sql) { EXPECT_EQ(Try(sql), "") << sql; }

  // The rows, fields joined by '|', Null as "NULL".
  Strings Rows(const std::string& sql) {
    Strings rows;
    const auto add = [](void* into, int count, char** values, char**) {
      std::string row;
      for (int i = 0; i < count; ++i) {
        row += (i == 0 ? "" : "|") + std::string(values[i] ? values[i] : "NULL");
      }
      static_cast<Strings*>(into)->push_back(row);
      return 0;
    };
    char* message = nullptr;
    if (sqlite3_exec(database_, sql.c_str(), add, &rows, &message) != SQLITE_OK) {
      ADD_FAILURE() << message << " in " << sql;
    }
    sqlite3_free(message);
    return rows;
  }
  std::string One(const std::string& sql) { return OnlyOf(Rows(sql)); }

 private:
  sqlite3* database_ = nullptr;
};

class StoreTest : public testing::Test {
 protected:
  StoreTest() {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    // In memory where the system has such a place: these tests wait for the disk thousands of
    // times.
    const std::filesystem::path memory = "/dev/shm";
    std::error_code none;
    folder_ = (std::filesystem::is_directory(memory, none) && access(memory.c_str(), W_OK) == 0
                   ? memory
                   : std::filesystem::path(testing::TempDir())) /
              ("zemo_store_" + std::string(test->test_suite_name()) + "_" + test->name() + "_" +
               std::to_string(getpid()));
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
  }
  ~StoreTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }
  std::string BasePath() const { return PathOf("Triskin.MDB"); }

  // The whole start of a base: created or opened, tables, cursors, fixed rows.
  std::unique_ptr<StationBase> StartBase(int busyTimeoutMs = kBusyTimeoutMs) const {
    auto base = std::make_unique<StationBase>(BasePath(), busyTimeoutMs);
    base->OpenOrCreateDatabase();
    base->CreateMissingTables([](const std::string& table, int number, const std::string& text) {
      ADD_FAILURE() << table << ' ' << number << ' ' << text;
    });
    base->OpenAllTables();
    base->SeedFixedRows();
    return base;
  }

 private:
  std::filesystem::path folder_;
};

// A full base with an open connection, its cards made by the test.
class OpenBaseTest : public StoreTest {
 protected:
  OpenBaseTest() : base(StartBase()) {}

  Database& Db() { return base->Db(); }
  std::unique_ptr<Recordset> Query(const std::string& sql) { return Db().OpenRecordset(sql); }
  Strings Column(const std::string& sql, const std::string& field) {
    const auto rows = Query(sql);
    return ColumnOf(*rows, field);
  }
  void AddCard(const std::string& artist, const std::string& genre = "ROCK") {
    Db().Execute("INSERT INTO Discotheque(AUTEUR, GENRE) VALUES('" + SqlQuoted(artist) + "','" +
                 SqlQuoted(genre) + "')");
  }

  std::unique_ptr<StationBase> base;
};

}  // namespace zemo
