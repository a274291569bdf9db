// Spreadsheet files as the exports need them: one sheet of texts and numbers. Real: an .xlsx
// writer.
#pragma once

#include <string>
#include <vector>

namespace zemo {

struct SheetCell {
  enum class Style { kPlain, kHeading, kTotal };

  int row = 0, column = 0;  // from 0
  std::string text;
  double number = 0;
  bool isNumber = false;  // the number stands in the cell, not the text
  Style style = Style::kPlain;
};

struct Sheet {
  std::string name;  // at most 31 characters
  std::vector<SheetCell> cells;
  std::vector<double> columnWidths;  // in characters, from the first column on
};

// Thread: the logic's.
class SpreadsheetWriter {
 public:
  virtual ~SpreadsheetWriter() = default;
  // Writes a file of that one sheet, whole or not at all. `path` is a path of this system that ends
  // in ".xlsx". Throws FileError.
  virtual void Write(const std::string& path, const Sheet& sheet) = 0;
};

}  // namespace zemo
