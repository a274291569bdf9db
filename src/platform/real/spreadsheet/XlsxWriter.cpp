#include "platform/real/spreadsheet/XlsxWriter.h"

#include <filesystem>
#include <system_error>

#include "platform/Folder.h"
#include "platform/real/files/WholeFiles.h"
#include "platform/real/spreadsheet/SheetLibrary.h"

namespace zemo {

namespace {

lxw_format* Bold(lxw_workbook* book, bool lineAbove) {
  lxw_format* format = Xlsx().workbook_add_format(book);
  Xlsx().format_set_bold(format);
  if (lineAbove) Xlsx().format_set_top(format, LXW_BORDER_THIN);
  return format;
}

void Fill(lxw_workbook* book, const Sheet& sheet) {
  lxw_worksheet* page = Xlsx().workbook_add_worksheet(book, sheet.name.c_str());
  if (!page) throw FileError("\"" + sheet.name + "\" is no name of a sheet");
  lxw_format* heading = Bold(book, false);
  lxw_format* total = Bold(book, true);
  for (size_t column = 0; column < sheet.columnWidths.size(); ++column) {
    const auto at = static_cast<lxw_col_t>(column);
    Xlsx().worksheet_set_column(page, at, at, sheet.columnWidths[column], nullptr);
  }
  for (const SheetCell& cell : sheet.cells) {
    const auto row = static_cast<lxw_row_t>(cell.row);
    const auto column = static_cast<lxw_col_t>(cell.column);
    lxw_format* format = cell.style == SheetCell::Style::kHeading ? heading
                         : cell.style == SheetCell::Style::kTotal ? total
                                                                  : nullptr;
    if (cell.isNumber)
      Xlsx().worksheet_write_number(page, row, column, cell.number, format);
    else
      Xlsx().worksheet_write_string(page, row, column, cell.text.c_str(), format);
  }
}

}  // namespace

// Written beside its place first: what stood there stays until the new file is whole.
void XlsxWriter::Write(const std::string& path, const Sheet& sheet) {
  const std::string unfinished = path + ".new";
  ReplaceWholeFile(unfinished, "");  // else the library tells of it on standard error
  lxw_workbook* book = Xlsx().workbook_new(unfinished.c_str());
  std::error_code failed, ignored;
  if (!book) {
    std::filesystem::remove(unfinished, ignored);
    throw FileError(path + ": out of memory");
  }
  lxw_error error = LXW_NO_ERROR;
  try {
    Fill(book, sheet);
    error = Xlsx().workbook_close(book);
  } catch (const FileError&) {
    Xlsx().workbook_close(book);
    std::filesystem::remove(unfinished, ignored);
    throw;
  }
  if (error == LXW_NO_ERROR) std::filesystem::rename(unfinished, path, failed);
  if (error == LXW_NO_ERROR && !failed) return;
  std::filesystem::remove(unfinished, ignored);
  throw FileError(path + ": " +
                  (failed ? failed.message() : std::string(Xlsx().lxw_strerror(error))));
}

}  // namespace zemo
