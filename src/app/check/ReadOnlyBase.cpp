// SQLite opened for reading; the store's own classes open for writing.
#include "app/check/ReadOnlyBase.h"

#include <sqlite3.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <thread>

namespace zemo {

namespace fs = std::filesystem;

void ReadOnlyBase::Closer::operator()(sqlite3* database) const {
  sqlite3_close(database);
}

ReadOnlyBase::ReadOnlyBase(const std::string& path, int lockWaitMs) {
  int result = Open(path, SQLITE_OPEN_READONLY, lockWaitMs);
  if (result == SQLITE_READONLY_ROLLBACK || result == SQLITE_READONLY_RECOVERY) {
    OpenCopy(path, lockWaitMs);
    return;
  }
  if (result != SQLITE_OK) Fail(result);
  WatchWriter(lockWaitMs);
}

ReadOnlyBase::~ReadOnlyBase() {
  database_.reset();
  std::error_code ignored;
  if (!copyFolder_.empty()) fs::remove_all(copyFolder_, ignored);
}

// Opens and reads the first page, where most faults show. The extended result code.
int ReadOnlyBase::Open(const std::string& path, int flags, int lockWaitMs) {
  sqlite3* database = nullptr;
  const int opened =
      sqlite3_open_v2(path.c_str(), &database, flags | SQLITE_OPEN_EXRESCODE, nullptr);
  database_.reset(database);
  if (opened != SQLITE_OK) return opened;
  sqlite3_busy_timeout(database, lockWaitMs);
  return sqlite3_exec(database, "SELECT COUNT(*) FROM sqlite_master", nullptr, nullptr, nullptr);
}

void ReadOnlyBase::OpenCopy(const std::string& path, int lockWaitMs) {
  std::string folder = (fs::temp_directory_path() / "zemo-check-XXXXXX").string();
  if (!mkdtemp(folder.data()))
    throw BaseError("its journal cannot be looked at: no temporary folder");
  copyFolder_ = folder;
  const std::string copy = folder + "/base";
  std::error_code failed;
  fs::copy_file(path, copy, failed);
  if (!failed) fs::copy_file(path + "-journal", copy + "-journal", failed);
  const int result = failed ? SQLITE_OK : Open(copy, SQLITE_OPEN_READWRITE, lockWaitMs);
  if (!failed && result == SQLITE_OK) return;
  std::string why =
      failed ? "a copy of it cannot be made: " + failed.message()
             : std::string("its journal cannot be rolled back: ") + sqlite3_errstr(result);
  database_.reset();
  fs::remove_all(copyFolder_, failed);
  throw BaseError(why);
}

// A reader does not feel the lock of a writer that has not begun to write the file; the air would.
void ReadOnlyBase::WatchWriter(int lockWaitMs) {
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(database_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK)
    return;
  constexpr int kStepMs = 50;
  for (int waited = 0;; waited += kStepMs) {
    int held = 0;
    if (file->pMethods->xCheckReservedLock(file, &held) != SQLITE_OK || held == 0) return;
    if (waited >= lockWaitMs) break;
    std::this_thread::sleep_for(std::chrono::milliseconds(kStepMs));
  }
  heldForWriting_ = true;
}

void ReadOnlyBase::Fail(int result) const {
  switch (result & 0xFF) {
    case SQLITE_NOTADB:
      throw BaseError("is not a database");
    case SQLITE_CORRUPT:
      throw BaseError("is damaged");
    case SQLITE_BUSY:
      throw BaseError("is locked by another process");
    case SQLITE_CANTOPEN:
      throw BaseError("cannot be opened");
    default:
      throw BaseError(std::string("cannot be read: ") + sqlite3_errmsg(database_.get()));
  }
}

void ReadOnlyBase::Query(const std::string& sql, const std::function<void(const Row&)>& row) const {
  sqlite3_stmt* prepared = nullptr;
  const int result = sqlite3_prepare_v2(database_.get(), sql.c_str(), -1, &prepared, nullptr);
  const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> statement(prepared, sqlite3_finalize);
  if (result != SQLITE_OK) Fail(result);
  Row values(static_cast<size_t>(sqlite3_column_count(prepared)));
  for (;;) {
    const int step = sqlite3_step(prepared);
    if (step == SQLITE_DONE) return;
    if (step != SQLITE_ROW) Fail(step);
    for (size_t i = 0; i < values.size(); ++i) {
      const int column = static_cast<int>(i);
      const int type = sqlite3_column_type(prepared, column);
      if (type == SQLITE_NULL) {
        values[i] = std::monostate();
      } else if (type == SQLITE_INTEGER) {
        values[i] = static_cast<int64_t>(sqlite3_column_int64(prepared, column));
      } else if (type == SQLITE_FLOAT) {
        values[i] = sqlite3_column_double(prepared, column);
      } else {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(prepared, column));
        values[i] = std::string(text ? text : "",
                                static_cast<size_t>(sqlite3_column_bytes(prepared, column)));
      }
    }
    row(values);
  }
}

std::vector<ReadOnlyBase::Row> ReadOnlyBase::Rows(const std::string& sql) const {
  std::vector<Row> rows;
  Query(sql, [&](const Row& row) { rows.push_back(row); });
  return rows;
}

}  // namespace zemo
