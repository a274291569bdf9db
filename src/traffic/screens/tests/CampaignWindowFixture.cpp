#include "traffic/screens/tests/CampaignWindowFixture.h"

#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QToolTip>

namespace zemo::test {

void CampaignScreenTest::SetUp() {
  sources.questions.choosePrinter = [](QWidget*, QPrinter&) { return false; };
}

void CampaignScreenTest::Open(int width, int height) {
  window = std::make_unique<CampaignWindow>(on.station, sources);
  window->resize(width, height);
  window->Open();
  BringForward(*window, width, height);
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
  ClickOn(Find(name), button);
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
  return TextOn(Find(name));
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

void CampaignScreenTest::ReadLoads() {
  EXPECT_TRUE(QTest::qWaitFor([this] { return window->Loads().Known(); }, 10000));
  QApplication::processEvents();
}

QColor CampaignScreenTest::ColourAt(const QPoint& point) {
  return Grid().viewport()->grab().toImage().pixelColor(point);
}

std::string CampaignScreenTest::TipAt(const QPoint& point) {
  QToolTip::hideText();
  QHelpEvent help(QEvent::ToolTip, point, Grid().viewport()->mapToGlobal(point));
  QApplication::sendEvent(Grid().viewport(), &help);
  return QToolTip::text().toStdString();
}

std::vector<std::string> CampaignScreenTest::OverviewColumn(int column) {
  std::vector<std::string> texts;
  const QAbstractItemModel& model = *Overview().model();
  for (int row = 0; row < model.rowCount(); ++row)
    texts.push_back(model.index(row, column).data().toString().toStdString());
  return texts;
}

}  // namespace zemo::test
