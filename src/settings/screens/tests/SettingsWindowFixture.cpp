#include "settings/screens/tests/SettingsWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTabBar>

namespace zemo::test {

void SettingsScreenTest::SetUp() {
  sources.devices = &devices;
  desk = std::make_unique<SettingsDesk>(station, sources);
}

void SettingsScreenTest::Open(int width, int height) {
  desk->Open();
  BringForward(Window(), width, height);
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
  ClickOn(Find(name));
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
  return TextOn(Find(name));
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

}  // namespace zemo::test
