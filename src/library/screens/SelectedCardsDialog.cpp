#include "library/screens/SelectedCardsDialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>

#include "library/LibraryEditor.h"
#include "ui/Translation.h"

namespace zemo {

namespace {

QString Valued(const QString& value) {
  return QStringLiteral(" – ") + value;
}

struct GivenField {
  const char* name;  // of its box
  const char* word;  // what the card's page calls it
};
// As SharedField counts them.
constexpr std::array<GivenField, kSharedFields> kFields = {{
    {"GiveGenre", "For.ChGenre"},
    {"GiveVariete", "For.ChVariete"},
    {"GiveNbPassJour", "For.ChNbPassJour"},
    {"GiveEcartMinutes", "For.ChEcartMinutes"},
    {"GiveEcartJours", "For.ChEcartJours"},
    {"GiveEcartArtiste", "For.ChEcartArtiste"},
    {"GiveTranche", "FrameAutorisation"},
    {"GiveMMJJ", "GiveDates"},
}};

// What a field would give; the hours are seen beside.
QString Shown(const MusicCard& card, SharedField field, const Translation& texts) {
  const auto shown = [](const std::string& text) { return Valued(QString::fromStdString(text)); };
  switch (field) {
    case SharedField::kGenre:
      return shown(card.ChGenre);
    case SharedField::kVariety:
      return shown(card.ChVariete);
    case SharedField::kPlaysADay:
      return shown(card.ChNbPassJour);
    case SharedField::kMinutes:
      return shown(card.ChEcartMinutes);
    case SharedField::kDays:
      return shown(card.ChEcartJours);
    case SharedField::kArtistGap:
      return shown(card.ChEcartArtiste);
    case SharedField::kDates:
      if (card.LblMMJJDebut.empty() && card.LblMMJJFin.empty())
        return Valued(texts.Word("NoWindow"));
      return shown(card.LblMMJJDebut + " - " + card.LblMMJJFin);
    case SharedField::kHours:
      break;
  }
  return {};
}

}  // namespace

SelectedCardsDialog::SelectedCardsDialog(const LibraryEditor& editor, size_t cards,
                                         const SharedFields& ticked, const Translation& texts,
                                         QWidget* parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("FrmGive"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(texts.Word("MnuGive").remove(QStringLiteral("...")));
  auto* layout = new QVBoxLayout(this);
  auto* what = new QLabel(texts.Word("GiveTo").arg(cards), this);
  what->setObjectName(QStringLiteral("LblGive"));
  layout->addWidget(what);
  for (size_t field = 0; field < kSharedFields; ++field) {
    const QString text = texts.Word(kFields[field].word) +
                         Shown(editor.music, static_cast<SharedField>(field), texts);
    auto* box = new QCheckBox(QString(text).replace(u'&', QStringLiteral("&&")), this);
    box->setObjectName(QString::fromLatin1(kFields[field].name));
    box->setChecked(ticked[field]);
    connect(box, &QCheckBox::toggled, this, [this] { ShowGive(); });
    fields_[field] = box;
    layout->addWidget(box);
  }
  auto* buttons = new QDialogButtonBox(this);
  BtnGive = buttons->addButton(texts.Word("BtnGive"), QDialogButtonBox::AcceptRole);
  BtnGive->setObjectName(QStringLiteral("BtnGive"));
  QPushButton* cancel = buttons->addButton(texts.Word("Cancel"), QDialogButtonBox::RejectRole);
  cancel->setObjectName(QStringLiteral("BtnCancelGive"));
  connect(buttons, &QDialogButtonBox::accepted, this, [this] {
    const SharedFields fields = Ticked();
    accept();
    if (give) give(fields);
  });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  ShowGive();
}

SharedFields SelectedCardsDialog::Ticked() const {
  SharedFields ticked{};
  for (size_t field = 0; field < kSharedFields; ++field)
    ticked[field] = fields_[field]->isChecked();
  return ticked;
}

void SelectedCardsDialog::ShowGive() {
  const SharedFields ticked = Ticked();
  BtnGive->setEnabled(std::find(ticked.begin(), ticked.end(), true) != ticked.end());
}

}  // namespace zemo
