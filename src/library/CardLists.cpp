// The lists of cards beside the card: the music's, the jingles', the short elements'.
#include <optional>
#include <utility>

#include "library/CardTabs.h"
#include "library/LibraryHandler.h"
#include "library/LibraryScreen.h"
#include "library/MusicListFill.h"
#include "platform/EventLoop.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

std::optional<Cells> CellsOfCard(Station& station, int32_t code) {
  std::optional<Cells> cells;
  station.base.Db().ReadRows(
      std::string("SELECT ") + kMusicRowColumns + " FROM Discotheque WHERE Code = ?",
      {int64_t{code}}, [&](const RowView& row) { cells = MusicCells(row); });
  return cells;
}

// Rows of a query of few cards: its columns as texts, by `cellsOf`.
template <typename CellsOf>
void FillList(Station& station, CardList& list, std::string_view query, CellsOf cellsOf) {
  CardList filled;
  station.base.Db().ReadRows(query, [&](const RowView& row) {
    filled.Append(cellsOf(row), static_cast<int32_t>(row.Int(0)));
  });
  list.Show(std::move(filled));
  list.visible = true;
}

// A click shows the card, and the list gives its place back to it.
void ShowRow(Station& station, LibraryEditor& editor, CardList& list, size_t row) {
  if (row >= list.Count()) return;
  const int32_t code = list.Code(row);
  list.visible = false;
  ShowCode(station, editor, code);
}

}  // namespace

CardList Library::CardsByArtist(Station& station, LibraryEditor& editor) {
  const LibraryWork work(editor);
  CardList list;
  MusicListFill fill(list);
  while (!fill.Slice(station.base.Db())) station.platform.loop.Yield();
  return list;
}

void Library::MnuListe_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "MnuListe", [&] {
    if (editor.TabStrip1 != LibraryTab::kMusic) return;
    editor.PLDisco.Show(CardsByArtist(station, editor));
    editor.PLDisco.visible = true;
  });
}

void Library::RenewRow(Station& station, LibraryEditor& editor) {
  HandleControl(station, "PLDisco", [&] {
    CardList& list = editor.PLDisco;
    for (size_t row = 0; row < list.Count(); ++row) {
      if (list.Code(row) != editor.Code()) continue;
      if (const auto cells = CellsOfCard(station, editor.Code())) list.Renew(row, *cells);
      return;
    }
  });
}

void Library::PLDisco_Click(Station& station, LibraryEditor& editor,
                            const std::vector<size_t>& rows) {
  HandleControl(station, "PLDisco", [&] {
    CardList& list = editor.PLDisco;
    list.selected.assign(list.Count(), false);
    for (const size_t row : rows)
      if (row < list.Count()) list.selected[row] = true;
    if (!rows.empty() && rows.back() < list.Count())
      ShowCode(station, editor, list.Code(rows.back()));
  });
}

void Library::BtnRechJingles_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "BtnRechJingles", [&] {
    FillList(station, editor.PLJingles,
             "SELECT CODE, LIBELLE, ARTISTEASSOCIE, DUREE, GENREASSOCIE, SURIMPRESSION, FILENAME "
             "FROM DiscothequeJingle ORDER BY LIBELLE",
             [](const RowView& row) {
               Cells cells;
               cells[0] = row.Text(1);
               cells[1] = row.Text(2);
               cells[2] = FormatDuration(row.Int(3));
               cells[3] = row.Text(4);
               cells[4] = row.Int(5) != 0 ? "X" : "";
               cells[5] = row.Text(6);
               cells[6] = std::to_string(row.Int(0));
               return cells;
             });
  });
}

void Library::BtnFindAutre_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "BtnFindAutre", [&] {
    FillList(station, editor.PLAutre,
             "SELECT CODE, LIBELLE, DUREE, JingleRacro, FILENAME FROM DiscothequeVirgule "
             "ORDER BY LIBELLE",
             [](const RowView& row) {
               Cells cells;
               cells[0] = row.Text(1);
               cells[1] = FormatDuration(row.Int(2));
               cells[2] = row.Int(3) == 1 ? "X" : "";
               cells[3] = row.Text(4);
               cells[4] = std::to_string(row.Int(0));
               return cells;
             });
  });
}

void Library::PLJingles_Click(Station& station, LibraryEditor& editor, size_t row) {
  HandleControl(station, "PLJingles", [&] { ShowRow(station, editor, editor.PLJingles, row); });
}

void Library::PLAutre_Click(Station& station, LibraryEditor& editor, size_t row) {
  HandleControl(station, "PLAutre", [&] { ShowRow(station, editor, editor.PLAutre, row); });
}

}  // namespace zemo
