#include "library/screens/JinglePage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "library/LibraryScreen.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr int kJingleBegin = 9, kJingleEnd = 10;  // modes of the calendar
}

JinglePage::JinglePage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                       const Translation& texts, QWidget* parent)
    : CardPage(station, editor, orders, texts, parent) {
  JingleCard& card = editor_.jingle;
  const auto field = [this](const char* name, std::string& text) {
    return Field(name, Box(name, text));
  };
  QPushButton* file = Button("CmdFileJingle", [this] { orders_.chooseFiles(); });
  QLineEdit* path = Box("ChFileJingle", card.ChFileJingle);
  path->setAccessibleName(file->text());
  QLineEdit* length = Box("longeurJingle", card.longeurJingle);
  NameLength(*length);
  Row({{file, 0},
       {path, 6},
       {length, 1},
       {Label("lblTempJingle", [&card] { return FormatDuration(ValInt(card.longeurJingle)); }),
        0}});
  Row({{field("ChLibJingle", card.ChLibJingle), 1}});
  Row({{Field("CodeAssocie", LinkedCard()), 1}, {Field("LblArtisteAssocie", LinkedArtist()), 3}});
  Row({{Field("GenreAssocie", ClosedList("GenreAssocie", card.GenreAssocie, editor_.ChGenreList)),
        1},
       {Field("ChAuteurCompositeur", Box("ChAuteurJingle", card.ChAuteurJingle)), 1}});
  Row({{Tick("CheckSurimpression", card.CheckSurimpression), 0},
       {Tick("EndofTitre", card.EndofTitre), 0},
       {Tick("JingleExtraitYN", card.JingleExtraitYN), 0},
       {new QWidget(this), 1}});
  Row({{Field("PointSortie", ExitPoint("SliderPSJ", "LblPSJ", card.SliderPSJ)), 2},
       {Field("LblMMJJDebut", Window("LblMMJJDebutJ", card.LblMMJJDebutJ, kJingleBegin,
                                     "LblMMJJFinJ", card.LblMMJJFinJ, kJingleEnd)),
        2},
       {Field("LblDiff", Label("LblDiff", [&card] { return card.LblDiff; })), 1}});
  Row({{Button(
            "BtnRechJingles",
            [this] { orders_.run([this] { Library::BtnRechJingles_Click(station_, editor_); }); }),
        0},
       {new QWidget(this), 1}});
  FillDown();
}

QLineEdit* JinglePage::LinkedCard() {
  auto* code = new QLineEdit(this);
  code->setObjectName(QStringLiteral("CodeAssocie"));
  code->setValidator(new QIntValidator(0, INT32_MAX, code));
  connect(code, &QLineEdit::textEdited, this, [this](const QString& typed) {
    const int32_t number = typed.toInt();
    orders_.run([this, number] { Library::CodeAssocie_Change(station_, editor_, number); });
  });
  return Shown(code, [this] {
    const int32_t number = editor_.jingle.CodeAssocie;
    return number > 0 ? std::to_string(number) : std::string();
  });
}

// The artist as stored can be typed; that of a linked card is the card's.
QLineEdit* JinglePage::LinkedArtist() {
  auto* artist = new QLineEdit(this);
  artist->setObjectName(QStringLiteral("LblArtisteAssocie"));
  connect(artist, &QLineEdit::textEdited, this, [this](const QString& typed) {
    const std::string text = typed.toStdString();
    orders_.run([this, text] { Library::LblArtisteAssocie_Change(station_, editor_, text); });
  });
  Follow([this, artist] { artist->setReadOnly(editor_.jingle.CodeAssocie > 0); });
  return Shown(artist, [this] { return editor_.jingle.LblArtisteAssocie; });
}

}  // namespace zemo
