#include "ui/OfficeWindow.h"

#include <QAction>
#include <QCloseEvent>
#include <QPointer>
#include <QShortcut>
#include <exception>
#include <utility>

#include "station/Station.h"
#include "ui/Theme.h"

namespace zemo {

OfficeWindow::OfficeWindow(Station& station, const char* name, const char* routine,
                           const WindowTexts& texts)
    : Window(station, name, texts),
      routine_(routine),
      follower_(
          station, *this, [this] { return IsOpen() && !barred_ && TakeOver(); },
          [this] { return SideSign(); }) {
  connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this,
          [this] { close(); });
}

void OfficeWindow::ShowSelf() {
  if (!IsOpen()) return;
  if (!isVisible()) {
    resize(size().boundedTo(RoomOnScreen()));
    // What is measured for a larger one would not let it be as small.
    if (Theme::UnitFor(size()) != Unit()) Arrange();
  }
  show();
  raise();
  activateWindow();
  if (!barred_) ShowAll();
}

void OfficeWindow::closeEvent(QCloseEvent* event) {
  if (!barred_) return Window::closeEvent(event);
  event->ignore();
  closes_ = true;
}

bool OfficeWindow::MayLeave() {
  if (barred_) closes_ = true;
  return !barred_;
}

bool OfficeWindow::LeaveNow() {
  const bool may = OfficeWindow::MayLeave();
  if (may && IsOpen()) Left();
  return may;
}

// --- orders ---

void OfficeWindow::Run(const std::function<void()>& order) {
  if (!IsOpen() || barred_) return;
  Guarded(order);
  ShowAll();
}

// Controls are barred from before the routine on, as what asks the operator is no work of the
// editor's own.
void OfficeWindow::Work(std::function<void()> order) {
  WhenFree([this, order = std::move(order)] {
    if (!IsOpen() || barred_) return;
    Busy(order);
    ShowAll();
    if (std::exchange(closes_, false)) close();
  });
}

void OfficeWindow::Busy(const std::function<void()>& order) {
  Bar(true);
  Guarded(order);
  Bar(false);
}

void OfficeWindow::Guarded(const std::function<void()>& order) {
  try {
    order();
  } catch (const std::exception&) {
    LogCurrentException(station_, routine_);
  }
}

void OfficeWindow::Bar(bool working) {
  const QPointer<QWidget> focus = focusWidget();
  barred_ = working;
  centralWidget()->setEnabled(!working);
  if (working) {
    for (QAction* entry : findChildren<QAction*>()) entry->setEnabled(false);
    setCursor(Qt::WaitCursor);
    if (focus) setProperty("focusBefore", QVariant::fromValue<QObject*>(focus));
    return;
  }
  unsetCursor();
  for (QAction* entry : findChildren<QAction*>()) entry->setEnabled(true);
  if (auto* before = qobject_cast<QWidget*>(property("focusBefore").value<QObject*>()))
    before->setFocus();
}

}  // namespace zemo
