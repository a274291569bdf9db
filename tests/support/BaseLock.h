// Another process that holds a station's base, in real time, until the test lets it go.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <utility>

#include "support/ServerStation.h"

namespace zemo::test {

class BaseLock {
 public:
  // Held when it comes back.
  explicit BaseLock(const std::string& base, const char* begin = "BEGIN EXCLUSIVE") {
    int held[2];
    int release[2];
    if (pipe2(held, O_CLOEXEC) != 0 || pipe2(release, O_CLOEXEC) != 0) ADD_FAILURE() << "pipe";
    child_ = fork();
    if (child_ == 0) {
      close(release[1]);
      Hold(base, begin, held[1], release[0]);
    }
    close(held[1]);
    close(release[0]);
    release_ = release[1];
    char byte = 0;
    if (read(held[0], &byte, 1) != 1) ADD_FAILURE() << base << " cannot be locked";
    close(held[0]);
  }
  ~BaseLock() { Release(); }
  BaseLock(const BaseLock&) = delete;

  // Free when it comes back.
  void Release() {
    if (child_ <= 0) return;
    close(release_);
    waitpid(std::exchange(child_, 0), nullptr, 0);
  }

 private:
  [[noreturn]] static void Hold(const std::string& base, const char* begin, int held, int release) {
    alarm(60);  // whatever becomes of the test
    const auto wait = [held, release] {
      char byte = '!';
      if (write(held, &byte, 1) != 1) _exit(3);
      while (read(release, &byte, 1) > 0) {
      }
      _exit(0);
    };
    if (base.starts_with("postgresql://")) {
      try {
        const auto other = OpenElsewhere(base);
        other->BeginTrans();
        wait();
      } catch (const std::exception&) {
        _exit(2);
      }
    }
    sqlite3* database = nullptr;
    if (sqlite3_open(base.c_str(), &database) != SQLITE_OK) _exit(1);
    sqlite3_busy_timeout(database, 5000);
    if (sqlite3_exec(database, begin, nullptr, nullptr, nullptr) != SQLITE_OK) _exit(2);
    wait();
    _exit(0);
  }

  pid_t child_ = 0;
  int release_ = -1;
};

}  // namespace zemo::test
