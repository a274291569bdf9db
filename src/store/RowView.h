// A row of a query in the moment in which it is read, for walks over a whole library: nothing of it
// is kept unless the reader keeps it.
#pragma once

#include <cstdint>
#include <string_view>

struct sqlite3_stmt;

namespace zemo {

// Columns are 0-based. Readings are the lenient ones of Value.h. Thread: the logic's.
class RowView {
 public:
  explicit RowView(sqlite3_stmt* statement) : statement_(statement) {}

  bool IsNull(int column) const;
  bool IsNumber(int column) const;  // no text that reads as one
  bool IsText(int column) const;    // neither Null, a number nor mere bytes; ask ahead of Text
  int64_t Int(int column) const;
  double Real(int column) const;
  // Valid until the row was taken. A column is read either as a number or as a text.
  std::string_view Text(int column) const;

 private:
  sqlite3_stmt* statement_;  // not owned
};

}  // namespace zemo
