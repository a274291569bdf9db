// Spreadsheet files in the open .xlsx form.
#pragma once

#include "platform/Spreadsheet.h"

namespace zemo {

class XlsxWriter : public SpreadsheetWriter {
 public:
  void Write(const std::string& path, const Sheet& sheet) override;
};

}  // namespace zemo
