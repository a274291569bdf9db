// The library that writes spreadsheets, loaded with the first one: it brings a library of ciphers
// and two megabytes of memory, and who is on air exports none.
#pragma once

#include <xlsxwriter.h>

namespace zemo {

// clang-format off
#define ZEMO_XLSX_FUNCTIONS(Z) \
  Z(format_set_bold) Z(format_set_top) Z(lxw_strerror) Z(workbook_add_format) \
  Z(workbook_add_worksheet) Z(workbook_close) Z(workbook_new) Z(worksheet_set_column) \
  Z(worksheet_write_number) Z(worksheet_write_string)
// clang-format on

// Each under the name that the library gives it.
struct SheetLibrary {
#define ZEMO_XLSX_MEMBER(name) decltype(&::name) name;
  ZEMO_XLSX_FUNCTIONS(ZEMO_XLSX_MEMBER)
#undef ZEMO_XLSX_MEMBER
};

// Throws FileError where the library is not installed. Thread: any.
const SheetLibrary& Xlsx();

}  // namespace zemo
