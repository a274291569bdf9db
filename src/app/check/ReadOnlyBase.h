// A station's base as the check sees it: opened for reading only, so that no journal is rolled back
// and nothing is upgraded or seeded by looking at it.
#pragma once

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "store/Value.h"

struct sqlite3;

namespace zemo {

// What kept the base from being read; what() is one line without the path.
struct BaseError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class ReadOnlyBase {
 public:
  // `path` is the file's. Another process may hold it for `lockWaitMs`. Throws BaseError.
  ReadOnlyBase(const std::string& path, int lockWaitMs);
  ~ReadOnlyBase();
  ReadOnlyBase(const ReadOnlyBase&) = delete;

  // A run was interrupted while it wrote: its journal lies there and is rolled back at the next
  // start. What is read here is a copy on which that was done.
  bool Interrupted() const { return !copyFolder_.empty(); }
  // Another process kept the right to write for the whole of `lockWaitMs`.
  bool HeldForWriting() const { return heldForWriting_; }

  // Runs a query of SQLite's own dialect and hands over each row. Throws BaseError.
  using Row = std::vector<Value>;
  void Query(const std::string& sql, const std::function<void(const Row&)>& row) const;
  std::vector<Row> Rows(const std::string& sql) const;

 private:
  int Open(const std::string& path, int flags, int lockWaitMs);
  void OpenCopy(const std::string& path, int lockWaitMs);
  void WatchWriter(int lockWaitMs);
  [[noreturn]] void Fail(int result) const;

  struct Closer {
    void operator()(sqlite3* database) const;
  };
  std::unique_ptr<sqlite3, Closer> database_;
  std::string copyFolder_;  // removed at the end
  bool heldForWriting_ = false;
};

}  // namespace zemo
