// A row of a query in the moment in which it is read, for walks over a whole library: nothing of it
// is kept unless the reader keeps it.
#pragma once

#include <cstdint>
#include <string_view>

namespace zemo {

// Columns are 0-based. Readings are the lenient ones of Value.h. Each engine has its own. Thread:
// the logic's.
class RowView {
 public:
  enum class Kind { kNull, kInteger, kReal, kText, kBytes };

  virtual ~RowView() = default;
  virtual Kind KindOf(int column) const = 0;
  virtual int64_t Int(int column) const = 0;
  virtual double Real(int column) const = 0;
  // Valid until the row was taken. A column is read either as a number or as a text.
  virtual std::string_view Text(int column) const = 0;

  bool IsNull(int column) const { return KindOf(column) == Kind::kNull; }
  bool IsNumber(int column) const {  // no text that reads as one
    return KindOf(column) == Kind::kInteger || KindOf(column) == Kind::kReal;
  }
  // Neither Null, a number nor mere bytes; ask ahead of Text.
  bool IsText(int column) const { return KindOf(column) == Kind::kText; }
};

}  // namespace zemo
