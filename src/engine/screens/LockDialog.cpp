#include "engine/screens/LockDialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "engine/MainScreenTexts.h"
#include "platform/Desktop.h"
#include "settings/SideFiles.h"
#include "station/Station.h"

namespace zemo {

LockDialog::LockDialog(Station& station, int langue, QWidget* parent)
    : QDialog(parent), station_(station), langue_(langue) {
  setObjectName(QStringLiteral("FrmPasseWord"));
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowModality(Qt::WindowModal);
  const QString label = QString::fromStdString(ScreenWord("LockLabel", langue));
  auto* layout = new QVBoxLayout(this);
  auto* heading = new QLabel(label, this);
  ChPasse = new QLineEdit(this);
  ChPasse->setObjectName(QStringLiteral("ChPasse"));
  ChPasse->setAccessibleName(label);
  ChPasse->setEchoMode(QLineEdit::Password);
  ChPasse->setStyleSheet(QStringLiteral("lineedit-password-character: 42;"));  // "*"
  heading->setBuddy(ChPasse);
  auto* ok = new QPushButton(QString::fromStdString(ScreenWord("Ok", langue)), this);
  ok->setObjectName(QStringLiteral("BtnOk"));
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, [this] { Ok(); });
  layout->addWidget(heading);
  layout->addWidget(ChPasse);
  layout->addWidget(ok);
  setMinimumWidth(320);
  if (station.lists.Locked)
    setWindowTitle(QString::fromStdString(ScreenWord("LockEnter", langue)));
  else
    AskNew();
}

void LockDialog::AskNew() {
  askingNew_ = true;
  ChPasse->clear();
  setWindowTitle(QString::fromStdString(ScreenWord("LockNew", langue_)));
  station_.platform.messages.Show("Alerte", ScreenWord("LockHint", langue_), Buttons::kOk);
}

void LockDialog::Ok() {
  std::string typed = ChPasse->text().toStdString();
  if (!askingNew_) {
    // An empty text that is not the password leaves the lock on, as any other wrong one.
    if (!LockOpensWith(station_, typed)) return accept();
    return AskNew();
  }
  LSPasseWord(station_, "Save", typed);
  accept();
}

}  // namespace zemo
