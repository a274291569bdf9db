#include "library/screens/MusicPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "library/LibraryEditor.h"
#include "library/screens/FreeEntryBox.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr int kMusicBegin = 7, kMusicEnd = 8;  // modes of the calendar
constexpr int kPlaysOfRow = 4;
}  // namespace

MusicPage::MusicPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                     const Translation& texts, QWidget* parent)
    : CardPage(station, editor, orders, texts, parent) {
  MusicCard& card = editor_.music;
  const auto field = [this](const char* name, std::string& text) {
    return Field(name, Box(name, text));
  };
  QPushButton* file = Button("CmdFileMusique", [this] { orders_.chooseFiles(); });
  QLineEdit* path = Box("ChFileName", card.ChFileName);
  path->setAccessibleName(file->text());
  QLineEdit* length = Box("Longeur", card.Longeur);
  NameLength(*length);
  Row({{file, 0},
       {path, 6},
       {length, 1},
       {Label("LblTemp", [&card] { return FormatDuration(ValInt(card.Longeur)); }), 0}});
  Row({{field("ChAuteur", card.ChAuteur), 1}, {field("ChTitre", card.ChTitre), 1}});
  Row({{Field("ChGenre",
              FreeList("ChGenre", card.ChGenre, editor_.ChGenreList, Library::FreeList::kGenre)),
        4},
       {Field("ChVariete", ClosedList("ChVariete", card.ChVariete, editor_.ChVarieteList)), 3},
       {field("ChAnne", card.ChAnne), 1},
       {field("ChIntro", card.ChIntro), 1}});
  Row({{Field("ChLabel",
              FreeList("ChLabel", card.ChLabel, editor_.ChLabelList, Library::FreeList::kLabel)),
        1},
       {Field("ChCD", FreeList("ChCD", card.ChCD, editor_.ChCDList, Library::FreeList::kCD)), 1},
       {field("ChAuteurCompositeur", card.ChAuteurCompositeur), 1},
       {field("ChRefAlbum", card.ChRefAlbum), 1}});
  Row({{field("ChNbPassJour", card.ChNbPassJour), 1},
       {field("ChEcartMinutes", card.ChEcartMinutes), 1},
       {field("ChEcartJours", card.ChEcartJours), 1},
       {field("ChEcartArtiste", card.ChEcartArtiste), 1}});
  Row({{Field("PointSortie", ExitPoint("PointSortie", "LblPMix", card.PointSortie)), 2},
       {Field("LblMMJJDebut", Window("LblMMJJDebut", card.LblMMJJDebut, kMusicBegin, "LblMMJJFin",
                                     card.LblMMJJFin, kMusicEnd)),
        2},
       {Field("lblNumero", Label("lblNumero", [&card] { return card.lblNumero; })), 0}});
  Row({{field("ChCommentaire", card.ChCommentaire), 1}});
  Row({{Field("ChDiffusion", Plays()), 1}});
  FillDown();
}

FreeEntryBox* MusicPage::FreeList(const char* name, std::string& text,
                                  const std::vector<std::string>& offer, Library::FreeList list) {
  auto* box = new FreeEntryBox(name, this);
  box->typed = [this, list](const std::string& typed) {
    orders_.run([this, list, typed] { Library::FreeEntry_Change(station_, editor_, list, typed); });
  };
  box->enter = [this, list] {
    orders_.run([this, list] { Library::FreeEntry_KeyEnter(station_, editor_, list); });
  };
  box->erase = [this, list] {
    orders_.work([this, list] { Library::FreeEntry_KeyDelete(station_, editor_, list); });
  };
  Follow([box, &text, &offer] { box->Show(text, offer); });
  return box;
}

QWidget* MusicPage::Plays() {
  auto* plays = new QWidget(this);
  auto* layout = new QGridLayout(plays);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  for (size_t play = 0; play < kPlaysKept; ++play) {
    const std::string name = "ChDiffusion_" + std::to_string(play + 1);
    QLineEdit* box = Box(name.c_str(), editor_.music.ChDiffusion[play]);
    box->setAccessibleName(texts_.Word("For.ChDiffusion"));
    const int place = static_cast<int>(play);
    layout->addWidget(box, place / kPlaysOfRow, place % kPlaysOfRow);
  }
  return plays;
}

}  // namespace zemo
