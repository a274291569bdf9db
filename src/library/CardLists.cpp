// The lists of cards beside the card: the music's, the jingles', the short elements'.
#include <optional>

#include "library/CardTabs.h"
#include "library/LibraryHandler.h"
#include "library/LibraryScreen.h"
#include "platform/EventLoop.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kRowsBetweenYields = 50;

// "yyyy/mm/dd hh:mm:ss"; empty for a card that never played.
std::string PlayedText(double serial) {
  std::string text = LastPlayedText(serial);
  if (const size_t blanks = text.find("  "); blanks != std::string::npos) text.erase(blanks, 1);
  return text;
}

std::vector<int32_t> CodesByArtist(Station& station) {
  std::vector<int32_t> codes;
  station.base.Db().ReadRows(
      "SELECT Code FROM Discotheque WHERE Auteur LIKE '*' ORDER BY AUTEUR, CODE",
      [&](const RowView& row) { codes.push_back(static_cast<int32_t>(row.Int(0))); });
  return codes;
}

std::optional<Cells> MusicCells(Station& station, int32_t code) {
  std::optional<Cells> found;
  station.base.Db().ReadRows(
      "SELECT Auteur ,Titre ,Duree ,Genre ,Variete ,Code ,Lastdiff FROM Discotheque WHERE Code = ?",
      {int64_t{code}}, [&](const RowView& row) {
        Cells& cells = found.emplace();
        cells[DiscoCol::kArtist] = row.Text(0);
        cells[DiscoCol::kTitle] = row.Text(1);
        cells[DiscoCol::kLength] = FormatDuration(row.Int(2));
        cells[DiscoCol::kGenre] = row.Text(3);
        cells[DiscoCol::kVariety] = row.Text(4);
        cells[DiscoCol::kCode] = std::to_string(code);
        cells[DiscoCol::kLastPlayed] = PlayedText(row.Real(6));
      });
  return found;
}

void AddMusicRow(Station& station, CardList& list, int32_t code) {
  const auto cells = MusicCells(station, code);
  if (!cells) return;
  list.order.push_back(list.texts.Count());
  list.texts.Add(*cells, code);
}

// Rows of a query of few cards: its columns as texts, by `cellsOf`.
template <typename CellsOf>
void FillList(Station& station, CardList& list, std::string_view query, CellsOf cellsOf) {
  CardList filled;
  station.base.Db().ReadRows(query, [&](const RowView& row) {
    filled.order.push_back(filled.texts.Count());
    filled.texts.Add(cellsOf(row), static_cast<int32_t>(row.Int(0)));
  });
  filled.selected.assign(filled.Count(), false);
  filled.visible = true;
  list = std::move(filled);
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
  for (const int32_t code : CodesByArtist(station)) {
    if (list.Count() % kRowsBetweenYields == kRowsBetweenYields - 1) station.platform.loop.Yield();
    AddMusicRow(station, list, code);
  }
  list.selected.assign(list.Count(), false);
  return list;
}

void Library::MnuListe_Click(Station& station, LibraryEditor& editor) {
  HandleControl(station, "MnuListe", [&] {
    if (editor.TabStrip1 != LibraryTab::kMusic) return;
    CardList filled = CardsByArtist(station, editor);
    filled.visible = true;
    editor.PLDisco = std::move(filled);
  });
}

void Library::RenewRow(Station& station, LibraryEditor& editor) {
  HandleControl(station, "PLDisco", [&] {
    CardList& list = editor.PLDisco;
    for (size_t row = 0; row < list.Count(); ++row) {
      if (list.Code(row) != editor.Code()) continue;
      const auto cells = MusicCells(station, editor.Code());
      if (!cells) return;
      list.order[row] = list.texts.Count();
      list.texts.Add(*cells, editor.Code());
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
