// What a PostgreSQL server answers to one statement.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "store/RowView.h"
#include "store/Value.h"

struct pg_result;

namespace zemo {

// All of an answer: rows, that it is done, or why not. Owns it. Thread: its connection's.
class PostgresResult {
 public:
  PostgresResult() = default;  // no answer, as where the line is gone: it failed, without a state
  explicit PostgresResult(pg_result* result) : result_(result) {}
  PostgresResult(PostgresResult&& other) noexcept
      : result_(std::exchange(other.result_, nullptr)) {}
  PostgresResult& operator=(PostgresResult&& other) noexcept {
    std::swap(result_, other.result_);
    return *this;
  }
  ~PostgresResult();

  bool IsAnswer() const { return result_ != nullptr; }
  bool Succeeded() const;
  bool IsRow() const;        // one of a statement whose rows come one by one
  bool IsCopying() const;    // the server waits for rows
  std::string Done() const;  // the server's word for it: "COMMIT"

  // Of one that failed.
  bool IsRefusal() const;     // by a server that is there
  bool IsLocked() const;      // others write, or change the structure, or wait for this one
  bool IsOutOfTime() const;   // of the time that each statement has
  bool IsOldPlan() const;     // the table is another one than when the statement was planned
  std::string State() const;  // five characters; empty: the server told none
  // `field` is one of libpq's PG_DIAG_...; empty: the server told none.
  std::string Detail(int field) const;

  int Rows() const;
  int Columns() const;
  std::string ColumnName(int column) const;  // 0-based, as all columns and rows
  bool IsNull(int row, int column) const;
  std::string_view Text(int row, int column) const;
  int64_t Int(int row, int column) const;
  RowView::Kind Kind(int row, int column) const;
  Value Read(int row, int column) const;

 private:
  pg_result* result_ = nullptr;
};

// What a server tells in words, as one line.
std::string ServerLine(std::string text);

// The number at the beginning of a server's text; 0: there is none.
template <typename Number>
Number NumberIn(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace zemo
