// The rows of one statement, one by one as a PostgreSQL server sends them.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "store/postgres/PostgresLine.h"

namespace zemo {

// Sent when it is made. Another statement can only be sent behind its last row: the rest comes into
// memory first, and is given from there. Thread: the line's, which outlives it.
class PostgresRowStream {
 public:
  PostgresRowStream(PostgresLine& line, const std::string& sql,
                    const PostgresParameters& parameters);
  ~PostgresRowStream() { CutOff(); }
  PostgresRowStream(const PostgresRowStream&) = delete;
  PostgresRowStream& operator=(const PostgresRowStream&) = delete;

  std::optional<PostgresResult> Next();               // one row; none: that was the last
  const PostgresResult& End() const { return end_; }  // of the statement, behind its last row
  // What the reader does not want any more is not sent either. False: nothing was on its way.
  bool CutOff();

 private:
  friend class PostgresLine;
  void KeepRest();

  PostgresLine& line_;
  std::deque<PostgresResult> kept_;
  PostgresResult end_;
};

}  // namespace zemo
