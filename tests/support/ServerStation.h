// The scenarios on either engine: where ZEMO_TESTS_ENGINE is "postgres" the base of each station of
// a test stands on the tests' own server.
#pragma once

#include <memory>
#include <string>

#include "store/Database.h"

namespace zemo::test {

bool TestsAreOnServer();

// First in a test of what a base has as a file alone: copies, journals, SQLite's own words.
#define ON_FILES_ALONE(why) \
  if (zemo::test::TestsAreOnServer()) GTEST_SKIP() << "files alone: " why

// Another program on a station's base, by the base's name (StationBase::Path).
std::unique_ptr<Database> OpenElsewhere(const std::string& name, int waitMs = kBusyTimeoutMs);

// The base of the station in `folder`, which gets a "Base.Ini" before anything opens it; gone with
// the test. Nothing of all that where the tests are on files.
class ServerStation {
 public:
  // `isShared`: another station of the test has made it.
  ServerStation(const std::string& folder, bool isShared);
  ~ServerStation();
  ServerStation(const ServerStation&) = delete;

  bool Stands() const { return !url_.empty(); }
  // What another program writes and asks: in the dialect, else in the server's own SQL with the
  // station's names as the tests write them. The first value, "" for none.
  void Write(const std::string& sql);
  std::string Ask(const std::string& query);
  int64_t LastInsertCode() { return Outside().LastInsertCode(); }

 private:
  Database& Outside();

  std::string url_;   // empty: none
  std::string name_;  // of the base
  std::string made_;  // name of the base to be dropped; empty: another one's
  std::unique_ptr<Database> outside_;
};

}  // namespace zemo::test
