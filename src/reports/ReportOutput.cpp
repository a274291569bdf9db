// What leaves the report screen: its lists as text between tabs, as a sheet and on paper.
#include <array>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "library/LibraryTexts.h"
#include "platform/EventLoop.h"
#include "platform/Folder.h"
#include "platform/Spreadsheet.h"
#include "reports/ReportScreen.h"
#include "reports/ReportTexts.h"
#include "station/SideFileText.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/WaitPointer.h"

namespace zemo {

namespace {

constexpr size_t kLinesBetweenYields = 1000;
constexpr size_t kLinesOfPart = 1000;
constexpr size_t kLinesOfPage = 60;
constexpr size_t kMostSheetRows = 1048576;  // of the file's form
constexpr int kExportedColumns = RapCol::kReference + 1;
constexpr std::array<double, kExportedColumns> kReportWidths = {11, 20, 24, 24, 14, 14, 24, 24, 14};
constexpr std::array<double, StatCol::kCount> kRotationWidths = {8, 24, 24, 14, 14, 24};

struct PrintedColumn {
  int column;      // of the list
  int characters;  // of width, the blank behind it not counted
};
constexpr std::array<PrintedColumn, 5> kReportOnPaper = {{{RapCol::kDate, 10},
                                                          {RapCol::kTime, 19},
                                                          {RapCol::kArtist, 24},
                                                          {RapCol::kTitle, 24},
                                                          {RapCol::kGenre, 13}}};
constexpr std::array<PrintedColumn, 5> kRotationsOnPaper = {{{StatCol::kPlays, 4},
                                                             {StatCol::kArtist, 30},
                                                             {StatCol::kTitle, 30},
                                                             {StatCol::kGenre, 13},
                                                             {StatCol::kVariety, 13}}};

// Goes through a list as it is now.
template <typename List, typename Take>
void ForEachLine(Station& station, ReportEditor& editor, const List& shown, Take take) {
  const ReportWork work(editor);
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): what yields serve may list anew
  const List list = shown;
  for (size_t line = 0; line < list.Count(); ++line) {
    if (line % kLinesBetweenYields == kLinesBetweenYields - 1) station.platform.loop.Yield();
    take(list, line);
  }
}

// The lines of a list as text, some of them at a time.
template <typename List, typename TakePart>
void ForEachPart(Station& station, ReportEditor& editor, const List& shown, int columns,
                 TakePart take) {
  std::string part;
  ForEachLine(station, editor, shown, [&](const List& list, size_t line) {
    for (int column = 0; column < columns; ++column)
      (part += column > 0 ? "\t" : "") += OneLine(list.Cell(line, column));
    part += "\r\n";
    if (line % kLinesOfPart < kLinesOfPart - 1 && line + 1 < list.Count()) return;
    take(part);
    part.clear();
  });
}

// Twice over the list: only then is it known that every character fits.
template <typename List>
void WriteText(Station& station, ReportEditor& editor, const List& shown, int columns,
               const std::string& path, const OpenFileInParts& begin) {
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): what yields serve may list anew
  const List list = shown;
  SideFileEncoding encoding;
  ForEachPart(station, editor, list, columns,
              [&](const std::string& part) { encoding.Look(part); });
  const std::unique_ptr<FileInParts> file = begin(path);
  file->Append(encoding.Mark());
  ForEachPart(station, editor, list, columns,
              [&](const std::string& part) { file->Append(encoding.Encode(part)); });
  file->Finish();
}

struct TooManyRows : std::length_error {
  TooManyRows() : std::length_error("a spreadsheet holds no more than " + Most() + " rows") {}
  static std::string Most() { return std::to_string(kMostSheetRows - 1); }
};

// What cannot be written is told.
template <typename Write>
void Export(Station& station, const char* routine, size_t count, Write write) {
  HandleControl(station, routine, [&] {
    const WaitPointer wait(station.notices);
    if (!Report::AnyListed(station, count)) return;
    try {
      write();
    } catch (const TooManyRows&) {
      LogCurrentException(station, routine);
      ShowLibraryAlert(station,
                       "Un tableur ne prend pas plus de " + TooManyRows::Most() + " lignes");
    } catch (const std::exception& error) {
      LogCurrentException(station, routine);
      ShowNotWritten(station, error.what());
    }
  });
}

bool IsSheet(const std::string& path, const Report::ExportFiles& files) {
  constexpr std::string_view kEnding = ".xlsx";
  return files.spreadsheets && path.size() >= kEnding.size() &&
         EqualNoCase(std::string_view(path).substr(path.size() - kEnding.size()), kEnding);
}

template <typename List, size_t columns>
Sheet SheetOf(Station& station, ReportEditor& editor, const List& shown, const char* name,
              const std::array<double, columns>& widths) {
  if (shown.Count() >= kMostSheetRows) throw TooManyRows();
  const auto langue = static_cast<int>(station.base.CnfInt(Cnf::kLangue));
  Sheet sheet{.name = name, .cells = {}, .columnWidths = {widths.begin(), widths.end()}};
  for (int column = 0; column < static_cast<int>(columns); ++column)
    sheet.cells.push_back(
        {0, column,
         Caption(ReportCaptions(), std::string(name) + "." + std::to_string(column), langue), 0,
         false, SheetCell::Style::kHeading});
  ForEachLine(station, editor, shown, [&](const List& list, size_t line) {
    for (int column = 0; column < static_cast<int>(columns); ++column)
      sheet.cells.push_back({static_cast<int>(line) + 1, column, list.Cell(line, column), 0, false,
                             SheetCell::Style::kPlain});
  });
  return sheet;
}

// The span as it stands in the heads of pages.
std::string SpanText(const ReportEditor& editor) {
  return " du " + editor.LblDate + " au " +
         (editor.LblDateFin.empty() ? editor.LblDate : editor.LblDateFin);
}

template <typename List, size_t columns, typename CellOf>
PrintedPages PagesOf(Station& station, ReportEditor& editor, const List& shown, std::string title,
                     const std::array<PrintedColumn, columns>& onPaper, CellOf cellOf) {
  PrintedPages printed{.title = std::move(title), .pages = {}};
  ForEachLine(station, editor, shown, [&](const List& list, size_t line) {
    if (line % kLinesOfPage == 0)
      printed.pages.push_back(
          {printed.title + "  Page" + std::to_string(printed.pages.size() + 1)});
    std::string text;
    for (const PrintedColumn& column : onPaper)
      (text += text.empty() ? "" : " ") +=
          PaddedText(OneLine(cellOf(list, line, column.column)), column.characters);
    printed.pages.back().push_back(text.substr(0, text.find_last_not_of(' ') + 1));
  });
  return printed;
}

}  // namespace

bool Report::AnyListed(Station& station, size_t count) {
  if (count == 0) ShowLibraryAlert(station, kNothingListed);
  return count > 0;
}

void Report::WriteReport(Station& station, ReportEditor& editor, const std::string& path,
                         const OpenFileInParts& begin) {
  WriteText(station, editor, editor.ListRap, kExportedColumns, path, begin);
}

void Report::WriteRotations(Station& station, ReportEditor& editor, const std::string& path,
                            const OpenFileInParts& begin) {
  WriteText(station, editor, editor.ListStat, StatCol::kCount, path, begin);
}

void Report::BtnExport_Click(Station& station, ReportEditor& editor, const std::string& path,
                             const ExportFiles& files) {
  Export(station, "BtnExport", editor.ListRap.Count(), [&] {
    if (IsSheet(path, files))
      files.spreadsheets->Write(path, ReportSheet(station, editor));
    else
      WriteReport(station, editor, path, files.open);
  });
}

void Report::ExportStat(Station& station, ReportEditor& editor, const std::string& path,
                        const ExportFiles& files) {
  Export(station, "ExportStat", editor.ListStat.Count(), [&] {
    if (IsSheet(path, files))
      files.spreadsheets->Write(path, RotationSheet(station, editor));
    else
      WriteRotations(station, editor, path, files.open);
  });
}

Sheet Report::ReportSheet(Station& station, ReportEditor& editor) {
  return SheetOf(station, editor, editor.ListRap, "ListRap", kReportWidths);
}

Sheet Report::RotationSheet(Station& station, ReportEditor& editor) {
  Sheet sheet = SheetOf(station, editor, editor.ListStat, "ListStat", kRotationWidths);
  for (SheetCell& cell : sheet.cells)
    if (cell.column == StatCol::kPlays && cell.row > 0) {
      cell.number = Val(cell.text);
      cell.isNumber = true;
    }
  return sheet;
}

PrintedPages Report::BtnImprimer_Click(Station& station, ReportEditor& editor) {
  PrintedPages printed;
  HandleControl(station, "BtnImprimer", [&] {
    const WaitPointer wait(station.notices);
    const size_t count = editor.ListRap.Count();
    if (!AnyListed(station, count)) return;
    printed = PagesOf(station, editor, editor.ListRap, "Rapport Zemo Radio Pro" + SpanText(editor),
                      kReportOnPaper, [](const ReportList& list, size_t line, int column) {
                        return list.Cell(line, column);
                      });
    printed.pages.back().push_back(std::to_string(count) + " fiches imprimées");
  });
  return printed;
}

PrintedPages Report::ImprimeStat(Station& station, ReportEditor& editor) {
  PrintedPages printed;
  HandleControl(station, "ImprimeStat", [&] {
    const WaitPointer wait(station.notices);
    if (!AnyListed(station, editor.ListStat.Count())) return;
    printed =
        PagesOf(station, editor, editor.ListStat, "ROTATIONS Zemo Radio Pro" + SpanText(editor),
                kRotationsOnPaper, [](const RotationList& list, size_t line, int column) {
                  return column == StatCol::kPlays ? std::to_string(list.lines[line].plays)
                                                   : list.Cell(line, column);
                });
  });
  return printed;
}

}  // namespace zemo
