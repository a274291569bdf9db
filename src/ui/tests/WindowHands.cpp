#include "ui/tests/WindowHands.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCalendarWidget>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>

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

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(widget.grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
