// An operator's hand on the windows of a station: mouse and keys on controls found by their names,
// in the window where the hand is. What it cannot do - a control that is missing, hidden or off -
// fails the test and is left.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <string>
#include <vector>

class QTableView;

namespace zemo::test {

// Thread: the screen's.
class OperatorsHand {
 public:
  // The window or dialogue of that name, once it shows.
  void GoTo(const char* window);
  // It is closed as by its frame, and the hand is in the one called `next`.
  void Close(const char* next);
  QWidget& Window() { return *window_; }

  template <typename Control = QWidget>
  Control* Find(const char* name) {
    auto* control = window_ ? window_->findChild<Control*>(QString::fromUtf8(name)) : nullptr;
    if (!control) ADD_FAILURE() << Where() << " has no " << name;
    return control;
  }

  // --- the mouse ---
  void Click(const char* control, Qt::MouseButton button = Qt::LeftButton);
  void ClickAt(QWidget& control, const QPoint& point, Qt::KeyboardModifiers keys = {});
  void ClickRow(const char* table, int row, Qt::KeyboardModifiers keys = {});  // from 0
  void Drag(QWidget& control, const QPoint& from, const QPoint& to);
  void Menu(const std::vector<const char*>& way);  // from the menu bar to the entry
  void Tab(const char* bar, int tab);              // from 0
  void Drop(const std::string& path);              // a file or a folder on the window

  // --- the keys ---
  void Type(const char* box, const std::string& text);  // in place of what stands there
  void Key(const char* control, Qt::Key key, Qt::KeyboardModifiers keys = {});
  void Choose(const char* list, int entry);  // of a list without free entry
  // That many days on from the one that the open calendar shows; back where below 0.
  void PickDay(int days);
  void SaveAs(const std::string& path);  // in the open dialogue

  // --- the eye ---
  std::string Text(const char* control);  // of a label, a button, a box or a list
  std::vector<std::string> Column(const char* table, int column);
  void KeepPicture(const std::string& name);  // of the window, for a person to look at
  // Once it is so.
  template <typename Condition>
  void WaitUntil(const char* what, Condition condition) {
    EXPECT_TRUE(QTest::qWaitFor(condition, kPatienceMs)) << what << ", in " << Where();
  }

 private:
  static constexpr int kPatienceMs = 20000;
  std::string Where() const;
  // Where the window system's own would enter, so that the focus, modal windows and pop-ups treat
  // it as a real one.
  void Press(QWidget& control, Qt::MouseButton button, Qt::KeyboardModifiers keys,
             const QPoint& point);
  // Once it can be worked: a window bars its controls while it reads. Null and told if it cannot.
  QWidget* Ready(const char* name);

  QWidget* window_ = nullptr;
};

}  // namespace zemo::test
