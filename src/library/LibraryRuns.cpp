// What goes over the whole music library: its exchange files, its play dates, its sheet and its
// print. Each yields after a card or a few.
#include <algorithm>
#include <exception>

#include "library/CardAdding.h"
#include "library/CardTabs.h"
#include "library/LibraryHandler.h"
#include "library/LibraryMessages.h"
#include "library/LibraryScreen.h"
#include "platform/EventLoop.h"
#include "platform/Spreadsheet.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "station/WaitPointer.h"
#include "store/RowView.h"
#include "store/SeekCode.h"

namespace zemo {

namespace {

constexpr size_t kKeptOfFive = 5;  // every fifth card keeps its dates
constexpr size_t kCardsOfTransaction = 100;
constexpr size_t kRowsBetweenYields = 50;
constexpr int kSheetColumns = 16;
constexpr int32_t kByArtist = 1;  // of OptionTri

constexpr const char* kSheetHeads[kSheetColumns] = {"Auteur",          "Titre",
                                                    "Durée",           "Genre",
                                                    "Variété",         "Année",
                                                    "Rotations",       "Ecart Minutes",
                                                    "Ecart Jour",      "Ecart Artiste",
                                                    "Point de Sortie", "FileName Audio",
                                                    "Label",           "Auteur Compositeur",
                                                    "Référence",       "CD"};
constexpr double kTextWidth = 24, kNumberWidth = 10, kFileWidth = 60;

// The exchange file of one card; what goes wrong is told, with the file.
void WriteExchangeFile(Station& station, Recordset& table, int32_t code) {
  MusicCard card;
  try {
    if (!SeekCode(table, code)) return;
    HourMasks masks;
    TakeMusicCard(table, card, masks);
    WriteMus(station, card, masks);
  } catch (const std::exception& error) {
    ShowLibraryAlert(station, card.ChFileName + "\r\n" + error.what());
  }
}

void MarkAsPlayed(Station& station, const std::vector<int32_t>& codes, size_t begin, size_t end) {
  const LocalDateTime now = station.Now();
  const std::string played = DateText(now) + " à " + TimeText(now).substr(0, 5);
  Transaction together(station.base.Db());
  for (size_t i = begin; i < end; ++i)
    if ((i + 1) % kKeptOfFive != 0)
      station.base.Db().Execute(
          "UPDATE Discotheque SET LASTDIFF = ?, DIFFUSION01 = ? WHERE CODE = ?",
          {DateSerial(WholeSeconds(now)), played, int64_t{codes[i]}});
  together.Commit();
}

void AddSheetRow(Sheet& sheet, int line, const RowView& row) {
  const auto text = [&](int column, std::string cell) {
    sheet.cells.push_back({line, column, std::move(cell), 0, false, SheetCell::Style::kPlain});
  };
  const auto number = [&](int column, int64_t cell) {
    sheet.cells.push_back(
        {line, column, {}, static_cast<double>(cell), true, SheetCell::Style::kPlain});
  };
  for (int column = 0; column < kSheetColumns; ++column) {
    const bool isNumber = column >= 6 && column <= 10;
    if (column == 2)
      text(column, FormatDuration(row.Int(column)));
    else if (isNumber)
      number(column, row.Int(column));
    else
      text(column, std::string(row.Text(column)));
  }
}

}  // namespace

void Library::MnuTxt_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "MnuTxt", [&] {
    if (editor.TabStrip1 != LibraryTab::kMusic) return;
    const LibraryWork work(editor);
    const WaitPointer wait(station.notices);
    const std::vector<int32_t> codes = ReadCodes(station, LibraryTab::kMusic, editor.OptionTri);
    const auto table = station.base.Table("Discotheque");
    for (size_t i = 0; i < codes.size(); ++i) {
      if (i > 0) station.platform.loop.Yield();
      WriteExchangeFile(station, *table, codes[i]);
    }
  });
}

void Library::MnuInitDate_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "MnuInitDate", [&] {
    const LibraryWork work(editor);
    const WaitPointer wait(station.notices);
    const std::vector<int32_t> codes = ReadCodes(station, LibraryTab::kMusic, editor.OptionTri);
    if (codes.empty()) return;
    for (size_t begin = 0; begin < codes.size(); begin += kCardsOfTransaction) {
      if (begin > 0) station.platform.loop.Yield();
      MarkAsPlayed(station, codes, begin, std::min(begin + kCardsOfTransaction, codes.size()));
    }
    if (editor.TabStrip1 == LibraryTab::kMusic) ShowCode(station, editor, editor.Code());
    ShowLibraryAlert(station, LibraryText::kDatesReset);
  });
}

Sheet Library::ExportedLibrary(Station& station, LibraryEditor& editor) {
  const LibraryWork work(editor);
  Sheet sheet;
  sheet.name = "Discotheque";
  for (int column = 0; column < kSheetColumns; ++column) {
    sheet.cells.push_back({0, column, kSheetHeads[column], 0, false, SheetCell::Style::kHeading});
    const bool narrow = column == 2 || (column >= 5 && column <= 10);
    sheet.columnWidths.push_back(column == 11 ? kFileWidth : narrow ? kNumberWidth : kTextWidth);
  }
  int line = 0;
  for (const int32_t code : ReadCodes(station, LibraryTab::kMusic, kByArtist)) {
    station.base.Db().ReadRows(
        "SELECT AUTEUR, TITRE, DUREE, GENRE, VARIETE, ANNEE, NBPASSJOUR, ECARTMINUTES, ECARTJOURS, "
        "ECARTARTISTE, POINTSORTIE, FILENAME, LABEL, AUTEURCOMPOSITEUR, REFERENCE, CD "
        "FROM Discotheque WHERE CODE = ?",
        {int64_t{code}}, [&](const RowView& row) { AddSheetRow(sheet, ++line, row); });
    if (line % static_cast<int>(kRowsBetweenYields) == 0) station.platform.loop.Yield();
  }
  return sheet;
}

void Library::MnuExporter_Click(Station& station, LibraryEditor& editor, const std::string& path,
                                SpreadsheetWriter& writer) {
  HandleControl(station, "MnuExporter", [&] {
    const WaitPointer wait(station.notices);
    writer.Write(SheetPath(path), ExportedLibrary(station, editor));
  });
}

std::string SheetPath(const std::string& path) {
  constexpr std::string_view kEnding = ".xlsx";
  const bool has =
      path.size() >= kEnding.size() &&
      EqualNoCase(std::string_view(path).substr(path.size() - kEnding.size()), kEnding);
  return has ? path : path + std::string(kEnding);
}

}  // namespace zemo
