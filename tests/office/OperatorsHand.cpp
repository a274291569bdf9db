#include "office/OperatorsHand.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QPixmap>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>
#include <QUrl>
#include <QWindow>
#include <cstdlib>

namespace zemo::test {

namespace {

QWidget* ShownWindow(const char* name) {
  for (QWidget* top : QApplication::topLevelWidgets())
    if (top->isVisible() && top->objectName() == QLatin1String(name)) return top;
  return nullptr;
}

// Where a click meets a check box, too, whose text may be short.
QPoint LeftOf(const QWidget& control) {
  return {8, control.height() / 2};
}

}  // namespace

std::string OperatorsHand::Where() const {
  return window_ ? window_->objectName().toStdString() : "no window";
}

QWidget* OperatorsHand::Ready(const char* name) {
  auto* control = Find(name);
  const auto ready = [control] { return control->isVisible() && control->isEnabled(); };
  if (control && QTest::qWaitFor(ready, kPatienceMs)) return control;
  if (control) ADD_FAILURE() << name << " in " << Where() << " is hidden or off";
  return nullptr;
}

void OperatorsHand::GoTo(const char* name) {
  window_ = nullptr;
  EXPECT_TRUE(QTest::qWaitFor([name] { return ShownWindow(name) != nullptr; }, kPatienceMs))
      << name << " does not show";
  window_ = ShownWindow(name);
  if (!window_) return;
  if (qobject_cast<QMainWindow*>(window_)) window_->resize(1280, 800);  // whatever the screen is
  window_->raise();
  QApplication::setActiveWindow(window_);
  QApplication::processEvents();
}

void OperatorsHand::Close(const char* next) {
  if (window_) window_->close();
  WaitUntil("it closes", [this] { return !window_ || !window_->isVisible(); });
  GoTo(next);
}

// --- the mouse ---

void OperatorsHand::ClickAt(QWidget& control, const QPoint& point, Qt::KeyboardModifiers keys) {
  EXPECT_TRUE(control.rect().contains(point))
      << control.objectName().toStdString() << " out of sight in " << Where();
  Press(control, Qt::LeftButton, keys, point);
}

void OperatorsHand::Press(QWidget& control, Qt::MouseButton button, Qt::KeyboardModifiers keys,
                          const QPoint& point) {
  QTest::mouseClick(control.window()->windowHandle(), button, keys,
                    control.mapTo(control.window(), point));
  QApplication::processEvents();
}

void OperatorsHand::Click(const char* name, Qt::MouseButton button) {
  QWidget* control = Ready(name);
  if (control) Press(*control, button, {}, LeftOf(*control));
}

void OperatorsHand::ClickRow(const char* name, int row, Qt::KeyboardModifiers keys) {
  auto* table = Find<QTableView>(name);
  if (!table || !Ready(name)) return;
  const QModelIndex cell = table->model()->index(row, 0);
  EXPECT_TRUE(cell.isValid()) << name << " has no row " << row;
  table->scrollTo(cell);
  ClickAt(*table->viewport(), table->visualRect(cell).center(), keys);
}

// As the hand moves it: from point to point, with the button held.
void OperatorsHand::Drag(QWidget& control, const QPoint& from, const QPoint& to) {
  constexpr int kSteps = 12;
  EXPECT_TRUE(control.rect().contains(from) && control.rect().contains(to))
      << "out of sight in " << Where();
  QWindow* window = control.window()->windowHandle();
  const QPoint first = control.mapTo(control.window(), from);
  QTest::mousePress(window, Qt::LeftButton, {}, first);
  for (int step = 1; step <= kSteps; ++step)
    QTest::mouseMove(window, first + (to - from) * step / kSteps);
  QTest::mouseRelease(window, Qt::LeftButton, {}, first + to - from);
  QApplication::processEvents();
}

void OperatorsHand::Menu(const std::vector<const char*>& way) {
  auto* main = qobject_cast<QMainWindow*>(window_);
  ASSERT_TRUE(main) << Where();
  QWidget* opened = main->menuBar();
  for (const char* name : way) {
    auto* menu = main->findChild<QMenu*>(QLatin1String(name));
    QAction* entry =
        menu ? menu->menuAction() : main->findChild<QAction*>(QString::fromLatin1(name));
    ASSERT_TRUE(entry && entry->isEnabled()) << name;
    const QRect place = opened == main->menuBar()
                            ? main->menuBar()->actionGeometry(entry)
                            : static_cast<QMenu*>(opened)->actionGeometry(entry);
    ASSERT_TRUE(place.isValid()) << name;
    Press(*opened, Qt::LeftButton, {}, place.center());
    if (!menu) break;
    WaitUntil(name, [menu] { return menu->isVisible(); });
    opened = menu;
  }
  QApplication::processEvents();
}

void OperatorsHand::Tab(const char* name, int tab) {
  auto* bar = Find<QTabBar>(name);
  if (bar && Ready(name)) ClickAt(*bar, bar->tabRect(tab).center());
}

void OperatorsHand::Drop(const std::string& path) {
  ASSERT_TRUE(window_);
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(QString::fromStdString(path))});
  const QPoint place = window_->rect().center();
  QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window_, &enter);
  QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window_, &move);
  QDropEvent drop(QPointF(place), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QApplication::sendEvent(window_, &drop);
  EXPECT_TRUE(enter.isAccepted() && move.isAccepted() && drop.isAccepted()) << path;
}

// --- the keys ---

void OperatorsHand::Type(const char* name, const std::string& text) {
  QWidget* control = Ready(name);
  if (!control) return;
  auto* box = qobject_cast<QLineEdit*>(control);
  if (!box) box = control->findChild<QLineEdit*>();
  ASSERT_TRUE(box) << name;
  ClickAt(*box, LeftOf(*box));
  QWindow* window = window_->windowHandle();
  QTest::keyClick(window, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(window, Qt::Key_Backspace);
  for (const char letter : text) QTest::keyClick(window, letter);
  QApplication::processEvents();
}

void OperatorsHand::Key(const char* name, Qt::Key key, Qt::KeyboardModifiers keys) {
  QWidget* control = Ready(name);
  if (!control) return;
  control->setFocus();
  QTest::keyClick(window_->windowHandle(), key, keys);
  QApplication::processEvents();
}

void OperatorsHand::Choose(const char* name, int entry) {
  auto* list = qobject_cast<QComboBox*>(Ready(name));
  ASSERT_TRUE(list) << name;
  Key(name, Qt::Key_Home);
  for (int step = 0; step < entry; ++step) Key(name, Qt::Key_Down);
  EXPECT_EQ(list->currentIndex(), entry) << name;
}

void OperatorsHand::PickDay(int days) {
  const std::string from = Where();
  GoTo("FrmCalendrier");
  for (int day = 0; day < std::abs(days); ++day)
    Key("qt_calendar_calendarview", days > 0 ? Qt::Key_Right : Qt::Key_Left);
  Key("qt_calendar_calendarview", Qt::Key_Return);
  GoTo(from.c_str());
}

void OperatorsHand::SaveAs(const std::string& path) {
  const std::string from = Where();
  GoTo("FrmExport");
  Type("fileNameEdit", path);
  Key("fileNameEdit", Qt::Key_Return);
  GoTo(from.c_str());
}

// --- the eye ---

std::string OperatorsHand::Text(const char* name) {
  QWidget* control = Find(name);
  if (auto* label = qobject_cast<QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<QAbstractButton*>(control)) return button->text().toStdString();
  if (auto* box = qobject_cast<QLineEdit*>(control)) return box->text().toStdString();
  if (auto* list = qobject_cast<QComboBox*>(control)) return list->currentText().toStdString();
  ADD_FAILURE() << name << " has no text";
  return {};
}

std::vector<std::string> OperatorsHand::Column(const char* name, int column) {
  std::vector<std::string> texts;
  auto* table = Find<QTableView>(name);
  if (!table) return texts;
  for (int row = 0; row < table->model()->rowCount(); ++row)
    texts.push_back(table->model()->index(row, column).data().toString().toStdString());
  return texts;
}

void OperatorsHand::KeepPicture(const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(window_ && window_->grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
