#include "settings/screens/tests/SettingsWindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>
#include <QSpinBox>
#include <QTabBar>

namespace zemo::test {

void SettingsScreenTest::SetUp() {
  sources.devices = &devices;
  desk = std::make_unique<SettingsDesk>(station, sources);
}

void SettingsScreenTest::Open(int width, int height) {
  desk->Open();
  Window().resize(width, height);  // not as it was left
  QApplication::setActiveWindow(&Window());
  QApplication::processEvents();
}

void SettingsScreenTest::Close() {
  Window().close();
  QApplication::processEvents();
}

void SettingsScreenTest::Tab(int number) {
  auto* tabs = Find<QTabBar>("Config");
  QTest::mouseClick(tabs, Qt::LeftButton, Qt::NoModifier, tabs->tabRect(number).center());
  QApplication::processEvents();
}

void SettingsScreenTest::Click(const char* name) {
  auto* control = Find(name);
  ASSERT_TRUE(control->isVisible()) << name;
  ASSERT_TRUE(control->isEnabled()) << name;
  QTest::mouseClick(control, Qt::LeftButton, Qt::NoModifier, QPoint(8, control->height() / 2));
  QApplication::processEvents();
}

void SettingsScreenTest::Type(const char* name, const std::string& text, bool enter) {
  QWidget* control = Find(name);
  auto* box = qobject_cast<QLineEdit*>(control);
  if (qobject_cast<QSpinBox*>(control)) box = control->findChild<QLineEdit*>();
  ASSERT_TRUE(box && box->isVisible() && box->isEnabled()) << name;
  control->setFocus();
  box->selectAll();
  if (text.empty()) QTest::keyClick(control, Qt::Key_Backspace);
  for (const QChar letter : QString::fromStdString(text))  // keyClicks knows no accents
    QTest::sendKeyEvent(QTest::Click, control, Qt::Key_unknown, QString(letter), Qt::NoModifier);
  if (enter) QTest::keyClick(control, Qt::Key_Return);
  QApplication::processEvents();
}

void SettingsScreenTest::Choose(const char* name, int entry) {
  auto* combo = Find<QComboBox>(name);
  ASSERT_TRUE(combo->isVisible()) << name;
  combo->setFocus();
  QTest::keyClick(combo, Qt::Key_Home);
  for (int step = 0; step < entry; ++step) QTest::keyClick(combo, Qt::Key_Down);
  QApplication::processEvents();
  EXPECT_EQ(combo->currentIndex(), entry);
}

std::string SettingsScreenTest::Text(const char* name) {
  QWidget* control = Find(name);
  if (auto* label = qobject_cast<QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<QAbstractButton*>(control)) return button->text().toStdString();
  if (auto* box = qobject_cast<QLineEdit*>(control)) return box->text().toStdString();
  if (auto* spinner = qobject_cast<QSpinBox*>(control)) return spinner->text().toStdString();
  if (auto* combo = qobject_cast<QComboBox*>(control)) return combo->currentText().toStdString();
  ADD_FAILURE() << name << " has no text";
  return {};
}

Texts SettingsScreenTest::Entries(const char* name) {
  Texts entries;
  auto* list = Find<QListWidget>(name);
  for (int row = 0; row < list->count(); ++row)
    entries.push_back(list->item(row)->text().toStdString());
  return entries;
}

Texts SettingsScreenTest::Notes() {
  Texts notes;
  for (const QLabel* label : Window().findChildren<QLabel*>())
    if (label->property("refusal").toBool() && label->isVisible())
      notes.push_back(label->text().toStdString());
  return notes;
}

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(widget.grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
