#include "engine/screens/LockDialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "settings/LockDialogue.h"
#include "station/Station.h"
#include "ui/SharedTexts.h"

namespace zemo {

LockDialog::LockDialog(Station& station, int langue, QWidget* parent)
    : QDialog(parent), station_(station) {
  setObjectName(QStringLiteral("FrmPasseWord"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  const QString label = QString::fromStdString(station.lockDialogue.Label);
  auto* layout = new QVBoxLayout(this);
  auto* heading = new QLabel(label, this);
  ChPasse = new QLineEdit(this);
  ChPasse->setObjectName(QStringLiteral("ChPasse"));
  ChPasse->setAccessibleName(label);
  ChPasse->setEchoMode(QLineEdit::Password);
  ChPasse->setStyleSheet(QStringLiteral("lineedit-password-character: 42;"));  // "*"
  heading->setBuddy(ChPasse);
  auto* ok = new QPushButton(Translation(SharedTexts(), langue).Word("Ok"), this);
  ok->setObjectName(QStringLiteral("BtnOk"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, [this] { Ok(); });
  layout->addWidget(heading);
  layout->addWidget(ChPasse);
  layout->addWidget(ok);
  setMinimumWidth(320);
  Refresh();
}

void LockDialog::Refresh() {
  ChPasse->clear();
  setWindowTitle(QString::fromStdString(station_.lockDialogue.Title));
}

void LockDialog::Ok() {
  const bool unlocks = !station_.lockDialogue.asksNew;
  Lock::BtnOk_Click(station_, ChPasse->text().toStdString());
  if (station_.lockDialogue.open) return Refresh();
  accept();
  if (unlocks && refused) refused();
}

}  // namespace zemo
