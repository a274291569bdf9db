#include "traffic/screens/tests/CampaignWindowFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>

namespace zemo::test {

void CampaignScreenTest::SetUp() {
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
}

void CampaignScreenTest::Open(int width, int height) {
  window = std::make_unique<CampaignWindow>(on.station, sources);
  window->resize(width, height);
  window->Open();
  window->resize(width, height);  // not as it was left
  QApplication::setActiveWindow(window.get());
  QApplication::processEvents();
}

void CampaignScreenTest::AddCampaigns() {
  on.AddCampaign({{"ANNONCEUR", "'Bakery'"},
                  {"FILENAMEAUDIO", "'" + on.MakeSound("Bakery.wav", 15000) + "'"}});
  on.AddCampaign({{"ANNONCEUR", "'Zoo'"},
                  {"PRIORITY", "20"},
                  {"CAMPAGNEDEPART", "'21/11/2026'"},
                  {"CAMPAGNEFIN", "'25/11/2026'"},
                  {"FILENAMEAUDIO", "'" + on.MakeSound("Zoo.wav", 15000) + "'"}});
}

void CampaignScreenTest::Click(const char* name, Qt::MouseButton button) {
  auto* control = Find(name);
  ASSERT_TRUE(control->isVisible()) << name;
  ASSERT_TRUE(control->isEnabled()) << name;
  QTest::mouseClick(control, button, Qt::NoModifier, QPoint(8, control->height() / 2));
  QApplication::processEvents();
}

void CampaignScreenTest::Type(const char* name, const std::string& text) {
  auto* box = qobject_cast<QLineEdit*>(Find(name));
  if (auto* list = qobject_cast<QComboBox*>(Find(name))) box = list->lineEdit();
  ASSERT_TRUE(box && box->isVisible() && box->isEnabled()) << name;
  box->setFocus();
  box->selectAll();
  if (text.empty()) QTest::keyClick(box, Qt::Key_Backspace);
  QTest::keyClicks(box, QString::fromStdString(text));
}

std::string CampaignScreenTest::Text(const char* name) {
  QWidget* control = Find(name);
  if (auto* label = qobject_cast<QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<QAbstractButton*>(control)) return button->text().toStdString();
  if (auto* box = qobject_cast<QLineEdit*>(control)) return box->text().toStdString();
  if (auto* list = qobject_cast<QComboBox*>(control)) return list->currentText().toStdString();
  ADD_FAILURE() << name << " has no text";
  return {};
}

void CampaignScreenTest::ClickCell(int row, int column, Qt::MouseButton button,
                                   Qt::KeyboardModifiers keys) {
  QTest::mouseClick(Grid().viewport(), button, keys, At(row, column));
  QApplication::processEvents();
}

void CampaignScreenTest::Drag(const std::vector<QPoint>& way, Qt::MouseButton button) {
  QWidget* cells = Grid().viewport();
  QTest::mousePress(cells, button, Qt::NoModifier, way.front());
  for (const QPoint& point : way) {
    QMouseEvent move(QEvent::MouseMove, point, cells->mapToGlobal(point), Qt::NoButton, button,
                     Qt::NoModifier);
    QApplication::sendEvent(cells, &move);
  }
  QTest::mouseRelease(cells, button, Qt::NoModifier, way.back());
  QApplication::processEvents();
}

void CampaignScreenTest::Key(Qt::Key key, Qt::KeyboardModifiers keys) {
  QTest::keyClick(&Grid(), key, keys);
  QApplication::processEvents();
}

std::vector<std::string> CampaignScreenTest::OverviewColumn(int column) {
  std::vector<std::string> texts;
  const QAbstractItemModel& model = *Overview().model();
  for (int row = 0; row < model.rowCount(); ++row)
    texts.push_back(model.index(row, column).data().toString().toStdString());
  return texts;
}

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(widget.grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
