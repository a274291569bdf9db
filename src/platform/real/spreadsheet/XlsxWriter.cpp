#include "platform/real/spreadsheet/XlsxWriter.h"

#include <xlsxwriter.h>

#include <filesystem>
#include <system_error>

#include "platform/Folder.h"
#include "platform/real/files/WholeFiles.h"

namespace zemo {

namespace {

lxw_format* Bold(lxw_workbook* book, bool lineAbove) {
  lxw_format* format = workbook_add_format(book);
  format_set_bold(format);
  if (lineAbove) format_set_top(format, LXW_BORDER_THIN);
  return format;
}

void Fill(lxw_workbook* book, const Sheet& sheet) {
  lxw_worksheet* page = workbook_add_worksheet(book, sheet.name.c_str());
  if (!page) throw FileError("\"" + sheet.name + "\" is no name of a sheet");
  lxw_format* heading = Bold(book, false);
  lxw_format* total = Bold(book, true);
  for (size_t column = 0; column < sheet.columnWidths.size(); ++column) {
    const auto at = static_cast<lxw_col_t>(column);
    worksheet_set_column(page, at, at, sheet.columnWidths[column], nullptr);
  }
  for (const SheetCell& cell : sheet.cells) {
    const auto row = static_cast<lxw_row_t>(cell.row);
    const auto column = static_cast<lxw_col_t>(cell.column);
    lxw_format* format = cell.style == SheetCell::Style::kHeading ? heading
                         : cell.style == SheetCell::Style::kTotal ? total
                                                                  : nullptr;
    if (cell.isNumber)
      worksheet_write_number(page, row, column, cell.number, format);
    else
      worksheet_write_string(page, row, column, cell.text.c_str(), format);
  }
}

}  // namespace

// Written beside its place first: what stood there stays until the new file is whole.
void XlsxWriter::Write(const std::string& path, const Sheet& sheet) {
  const std::string unfinished = path + ".new";
  ReplaceWholeFile(unfinished, "");  // else the library tells of it on standard error
  lxw_workbook* book = workbook_new(unfinished.c_str());
  std::error_code failed, ignored;
  if (!book) {
    std::filesystem::remove(unfinished, ignored);
    throw FileError(path + ": out of memory");
  }
  lxw_error error = LXW_NO_ERROR;
  try {
    Fill(book, sheet);
    error = workbook_close(book);
  } catch (const FileError&) {
    workbook_close(book);
    std::filesystem::remove(unfinished, ignored);
    throw;
  }
  if (error == LXW_NO_ERROR) std::filesystem::rename(unfinished, path, failed);
  if (error == LXW_NO_ERROR && !failed) return;
  std::filesystem::remove(unfinished, ignored);
  throw FileError(path + ": " + (failed ? failed.message() : std::string(lxw_strerror(error))));
}

}  // namespace zemo
