// Another program at the base.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

namespace zemo::test {

// SQLite as it comes, which stores what it likes.
class Stranger {
 public:
  explicit Stranger(const std::string& path) {
    sqlite3_open_v2(path.c_str(), &database_, SQLITE_OPEN_READWRITE, nullptr);
    Do("PRAGMA synchronous = OFF");
    Do("PRAGMA ignore_check_constraints = ON");
  }
  ~Stranger() { sqlite3_close(database_); }
  Stranger(const Stranger&) = delete;
  void Do(const std::string& sql) {
    char* message = nullptr;
    sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, &message);
    EXPECT_EQ(message, nullptr) << message << " in " << sql;
    sqlite3_free(message);
  }

 private:
  sqlite3* database_ = nullptr;
};

}  // namespace zemo::test
