#include "library/screens/ShortElementPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "library/LibraryScreen.h"
#include "station/TextForms.h"

namespace zemo {

namespace {
constexpr int kHighestKey = 9;  // of the numeric pad
}

ShortElementPage::ShortElementPage(Station& station, LibraryEditor& editor,
                                   const LibraryOrders& orders, const Translation& texts,
                                   QWidget* parent)
    : CardPage(station, editor, orders, texts, parent) {
  ShortElementCard& card = editor_.other;
  QPushButton* file = Button("CmdFileVirgules", [this] { orders_.chooseFiles(); });
  QLineEdit* path = Box("ChFileVirgule", card.ChFileVirgule);
  path->setAccessibleName(file->text());
  QLineEdit* length = Box("LongeurVirgule", card.LongeurVirgule);
  NameLength(*length);
  Row({{file, 0},
       {path, 6},
       {length, 1},
       {Label("lblTempVirgule", [&card] { return FormatDuration(ValInt(card.LongeurVirgule)); }),
        0}});
  Row({{Field("ChLibJingle", Box("ChLibVirgule", card.ChLibVirgule)), 1}});
  Row({{Field("PointSortie", ExitPoint("PSAutre", "LblPSAutre", card.PSAutre)), 1},
       {new QWidget(this), 1}});
  Row({{Tick("CheckJingleRacro", card.CheckJingleRacro), 0},
       {KeyFrame(), 0},
       {new QWidget(this), 1}});
  Row({{Button("BtnFindAutre",
               [this] { orders_.run([this] { Library::BtnFindAutre_Click(station_, editor_); }); }),
        0},
       {new QWidget(this), 1}});
  FillDown();
}

QWidget* ShortElementPage::KeyFrame() {
  auto* frame = new QWidget(this);
  frame->setObjectName(QStringLiteral("CadreTouche"));
  auto* key = new QComboBox(frame);
  key->setObjectName(QStringLiteral("Tch"));
  for (int number = 0; number <= kHighestKey; ++number)
    key->addItem(number == 0 ? QStringLiteral("-") : QString::number(number));
  auto* label = new QLabel(texts_.Word("CadreTouche"), frame);
  label->setBuddy(key);
  key->setAccessibleName(label->text());
  auto* layout = new QHBoxLayout(frame);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(label);
  layout->addWidget(key);
  connect(key, &QComboBox::activated, this, [this](int number) {
    editor_.other.Tch = number;
    Changed();
  });
  Follow([this, key] {
    const int32_t number = editor_.other.Tch;
    key->setPlaceholderText(QString::number(number));
    key->setCurrentIndex(number >= 0 && number <= kHighestKey ? number : -1);
  });
  return frame;
}

}  // namespace zemo
