// The line to a PostgreSQL server: statements go out, and what the server answers comes back.
#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/postgres/PostgresResult.h"
#include "store/postgres/PostgresValues.h"

struct pg_conn;

namespace zemo {

class LineKeeper;
class PostgresRowStream;

// By which the server knows programs of ours.
inline constexpr char kProgramName[] = "zemoradio";

// A statement that fails is told by its answer: only the line's making throws. One that is closed
// answers nothing. Thread: the logic's, without a lock inside.
class PostgresLine {
 public:
  // A server that does not answer is given up after kConnectSeconds, or when `keeper` says so
  // (null: none; not owned): IsUp tells whether one did. Throws StoreError where the server's
  // client is not installed.
  explicit PostgresLine(const std::string& url, LineKeeper* keeper = nullptr);
  ~PostgresLine();
  PostgresLine(const PostgresLine&) = delete;
  PostgresLine& operator=(const PostgresLine&) = delete;

  void Close();
  bool IsOpen() const { return connection_ != nullptr; }
  bool IsUp() const;          // the server was there when it was last spoken to
  std::string Fault() const;  // what the line failed with last, one line
  std::string Host() const;
  std::string Base() const;
  std::string Setting(const char* name) const;  // as the server told it; empty: it did not

  PostgresResult ExecuteNow(const std::string& sql);  // one statement or several, not kept
  // Kept prepared by its text, up to Forget.
  PostgresResult Execute(const std::string& sql, const PostgresParameters& parameters);
  void Forget(const std::string& sql);

  int Socket() const;  // readable when the server has said something; -1: closed, or lost
  // What others notified has come since the last asking. Takes what was sent, and waits for
  // nothing.
  bool TakeNotices();

  // The rows of a COPY under way.
  bool PutCopy(const std::string& rows);  // false: the line is gone
  PostgresResult EndCopy();
  void GiveUpCopy();

 private:
  friend class PostgresRowStream;
  struct Prepared {
    std::string sql;
    std::string name;
  };

  std::string NameOf(const std::string& sql, PostgresResult& failed);
  PostgresResult NextAnswer();
  bool Send(const std::string& sql, const PostgresParameters& parameters, PostgresResult& failed);
  void KeepRestOfStream();
  void Cancel();
  void DropRest();
  void Await();
  void LetGo();

  LineKeeper* const keeper_;
  int opened_ = -1;  // the socket that the keeper knows, which a lost line has no more; -1: none
  pg_conn* connection_ = nullptr;  // null: closed
  std::list<Prepared> prepared_;   // the last used first
  std::unordered_map<std::string_view, std::list<Prepared>::iterator> preparedBySql_;
  int64_t names_ = 0;                    // of statements, given so far
  PostgresRowStream* stream_ = nullptr;  // whose rows are on their way; null: none
};

}  // namespace zemo
