#include "ui/tests/WindowHands.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTest>
#include <functional>
#include <vector>

#include "ui/CalendarWindow.h"

namespace zemo::test {

void ClickOn(QWidget* control, Qt::MouseButton button) {
  ASSERT_TRUE(control);
  const std::string name = control->objectName().toStdString();
  ASSERT_TRUE(control->isVisible()) << name;
  ASSERT_TRUE(control->isEnabled()) << name;
  QTest::mouseClick(control, button, Qt::NoModifier, QPoint(8, control->height() / 2));
}

std::string TextOn(const QWidget* control) {
  if (auto* label = qobject_cast<const QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<const QAbstractButton*>(control))
    return button->text().toStdString();
  if (auto* box = qobject_cast<const QLineEdit*>(control)) return box->text().toStdString();
  if (auto* spinner = qobject_cast<const QAbstractSpinBox*>(control))
    return spinner->text().toStdString();
  if (auto* list = qobject_cast<const QComboBox*>(control))
    return list->currentText().toStdString();
  ADD_FAILURE() << (control ? control->objectName().toStdString() : "no control") << " has no text";
  return {};
}

void BringForward(QWidget& window, int width, int height) {
  window.resize(width, height);
  QApplication::setActiveWindow(&window);
  QApplication::processEvents();
}

QDate DayOfCalendarIn(QWidget& window) {
  auto* calendar = window.findChild<CalendarWindow*>();
  if (!calendar) return {};
  const QDate day = calendar->findChild<QCalendarWidget*>()->selectedDate();
  calendar->reject();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  return day;
}

void PickDayIn(QWidget& window, int year, int month, int day) {
  auto* calendar = window.findChild<CalendarWindow*>();
  ASSERT_TRUE(calendar);
  auto* days = calendar->findChild<QCalendarWidget*>();
  days->setSelectedDate(QDate(year, month, day));
  Q_EMIT days->activated(days->selectedDate());
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void SaveIn(QWidget& window, const char* name, const std::string& path) {
  auto* dialogue = window.findChild<QFileDialog*>(QString::fromLatin1(name));
  ASSERT_TRUE(dialogue) << name;
  auto* box = dialogue->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
  box->setText(QString::fromStdString(path));
  QTest::keyClick(box, Qt::Key_Return);
  QApplication::processEvents();
  QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

namespace {

// A path below a test's temporary folder as a station could have it, so that a picture is the same
// on every machine.
QString AtAStation(QString path) {
  static const QRegularExpression temporary(QStringLiteral("/\\S*/zemo-\\w{6}(?=/|$)"));
  return path.replace(temporary, QStringLiteral("/srv/radio"));
}

class PathsAtAStation : public QStyledItemDelegate {
 public:
  QString displayText(const QVariant& value, const QLocale& locale) const override {
    return AtAStation(QStyledItemDelegate::displayText(value, locale));
  }
};

bool ShowsTemporaryPath(const QAbstractItemView& view) {
  const QAbstractItemModel* model = view.model();
  for (int column = 0; model && column < model->columnCount(); ++column) {
    const QString text = model->index(0, column).data().toString();
    if (AtAStation(text) != text) return true;
  }
  return false;
}

template <typename Control>
void Rewrite(Control& control, const QString& text) {
  const QSignalBlocker quiet(control);
  control.setText(text);
}

QPixmap AsAtAStation(QWidget& widget) {
  std::vector<std::function<void()>> back;
  for (auto* box : widget.findChildren<QLineEdit*>())
    if (const QString text = box->text(); AtAStation(text) != text) {
      back.emplace_back([box, text, changed = box->isModified(), at = box->cursorPosition()] {
        Rewrite(*box, text);
        box->setModified(changed);
        box->setCursorPosition(at);
      });
      Rewrite(*box, AtAStation(text));
    }
  for (auto* label : widget.findChildren<QLabel*>())
    if (const QString text = label->text(); AtAStation(text) != text) {
      back.emplace_back([label, text] { Rewrite(*label, text); });
      Rewrite(*label, AtAStation(text));
    }
  PathsAtAStation paths;
  for (auto* view : widget.findChildren<QAbstractItemView*>())
    if (ShowsTemporaryPath(*view)) {
      back.emplace_back([view, before = view->itemDelegate()] { view->setItemDelegate(before); });
      view->setItemDelegate(&paths);
    }
  QPixmap picture = widget.grab();
  for (const auto& restore : back) restore();
  return picture;
}

}  // namespace

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(AsAtAStation(widget).save(path)) << path.toStdString();
}

}  // namespace zemo::test
