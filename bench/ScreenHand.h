// An operator's hand for a benchmark: clicks, keys and drags that enter where the window system's
// own do, so that modal windows, popups and the focus treat them as they treat a real hand.
#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <utility>

namespace zemo::bench {

// Thread: the screen's.
class ScreenHand {
 public:
  explicit ScreenHand(QWidget& window) : window_(&window) {
    QObject::connect(&turn_, &QTimer::timeout, [this] { Turn(); });
    turn_.start(kTurnMs);
  }

  // The hand goes on in another window, which outlives its time there.
  void GoTo(QWidget& window) {
    window_ = &window;
    window.raise();
    window.activateWindow();
  }

  int64_t Events() const { return events_; }
  // Controls that were not there, not visible or not enabled when they were wanted.
  const std::map<std::string, int>& Missed() const { return missed_; }

  // In the modal window if one stands, else in the one where the hand is; null and noted without
  // one.
  template <typename Control = QWidget>
  Control* Find(const char* name) {
    QWidget* modal = QApplication::activeModalWidget();
    auto* control = (modal ? modal : window_)->findChild<Control*>(QString::fromUtf8(name));
    if (control && control->isVisible() && control->isEnabled()) return control;
    ++missed_[name];
    return nullptr;
  }

  // Gestures wait for their turn: one every few milliseconds, as from a quick hand, each from the
  // event loop. A control that has gone by then gets nothing.
  bool Busy() const { return !waiting_.empty(); }

  void Click(QWidget* control, QPoint at = {}, Qt::KeyboardModifiers modifiers = {}) {
    if (!control) return;
    if (at.isNull()) at = control->rect().center();
    Later(2, [control = QPointer(control), at, modifiers] {
      if (QWindow* window = WindowOf(control))
        QTest::mouseClick(window, Qt::LeftButton, modifiers, control->mapTo(control->window(), at));
    });
  }
  void Click(const char* name) { Click(Find(name)); }
  // Of a button whose menu holds the click until it closes: the hand goes on meanwhile.
  void OpenMenu(const char* name) {
    Later(2, [button = QPointer(Find(name))] {
      QTimer::singleShot(0, qApp, [button] {
        if (QWindow* window = WindowOf(button))
          QTest::mouseClick(window, Qt::LeftButton, {},
                            button->mapTo(button->window(), button->rect().center()));
      });
    });
  }

  // To whatever has the keyboard.
  void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    Later(2, [this, key, modifiers] {
      QWidget* popup = QApplication::activePopupWidget();
      QWidget* modal = QApplication::activeModalWidget();
      KeyNow(popup ? popup : modal ? modal : window_, key, modifiers);
    });
  }
  void KeyTo(QWidget* window, Qt::Key key) {
    Later(2, [this, window = QPointer(window), key] {
      if (window) KeyNow(window, key, {});
    });
  }
  // To a control, which takes the focus.
  void KeyIn(const char* name, Qt::Key key) {
    Later(2, [this, control = QPointer(Find(name)), key] {
      if (!control) return;
      control->setFocus();
      KeyNow(control->window(), key, {});
    });
  }
  // Replaces what stands in the text box.
  void Type(const char* name, const std::string& text) {
    QWidget* box = Find(name);
    if (!box) return;
    Click(box, {8, box->height() / 2});
    Key(Qt::Key_A, Qt::ControlModifier);
    for (const char letter : text)
      Later(2, [this, letter] { QTest::keyClick(window_->windowHandle(), letter); });
  }

  void Drag(QWidget* from, QPoint begin, QWidget* to, QPoint end) {
    const QPoint first = from->mapTo(from->window(), begin), last = to->mapTo(to->window(), end);
    const QPointer<QWidget> held(from);
    const auto with = [this, held](auto gesture) {
      Later(1, [held, gesture] {
        if (QWindow* window = WindowOf(held)) gesture(window);
      });
    };
    with([first](QWindow* window) { QTest::mousePress(window, Qt::LeftButton, {}, first); });
    for (int step = 1; step <= kDragSteps; ++step)
      with([at = first + (last - first) * step / kDragSteps](QWindow* window) {
        QTest::mouseMove(window, at);
      });
    with([last](QWindow* window) { QTest::mouseRelease(window, Qt::LeftButton, {}, last); });
  }
  void Resize(const QSize& size) {
    Later(1, [this, size] { window_->resize(size); });
  }

  // A point in that row, from 0.
  static QPoint InRow(const QTableView& table, int row) {
    return {30, table.rowViewportPosition(row) + table.rowHeight(row) / 2};
  }
  // The rows of a table that can be seen whole.
  static int RowsSeen(const QTableView& table) {
    const int height = table.rowHeight(0);
    const int rows = table.model()->rowCount();
    return height > 0 ? std::min(rows, table.viewport()->height() / height) : 0;
  }

  // Reads and closes what was told or asked; yes to a question. At once: a question's own loop may
  // hold a gesture.
  void AnswerBoxes() {
    for (QWidget* top : QApplication::topLevelWidgets()) {
      auto* box = qobject_cast<QMessageBox*>(top);
      if (!box || !box->isVisible()) continue;
      for (const auto answer : {QMessageBox::Yes, QMessageBox::Ok})
        if (QAbstractButton* button = box->button(answer)) {
          if (QWindow* window = WindowOf(box))
            QTest::mouseClick(window, Qt::LeftButton, {},
                              button->mapTo(box, button->rect().center()));
          events_ += 2;
          return;
        }
    }
  }

 private:
  static constexpr int kDragSteps = 6;
  static constexpr int kTurnMs = 15;

  static QWindow* WindowOf(const QPointer<QWidget>& control) {
    return control && control->isVisible() ? control->window()->windowHandle() : nullptr;
  }
  void KeyNow(QWidget* window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (!window->windowHandle()) return;
    if (!window->isActiveWindow() && window != QApplication::activePopupWidget())
      window->activateWindow();
    QTest::keyClick(window->windowHandle(), key, modifiers);
  }
  void Later(int events, std::function<void()> gesture) {
    waiting_.push_back(std::move(gesture));
    events_ += events;
  }
  void Turn() {
    if (waiting_.empty()) return;
    const auto gesture = std::move(waiting_.front());
    waiting_.pop_front();
    gesture();
  }

  QWidget* window_;
  QTimer turn_;
  std::deque<std::function<void()>> waiting_;
  int64_t events_ = 0;
  std::map<std::string, int> missed_;
};

}  // namespace zemo::bench
