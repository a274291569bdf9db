// The desktop of a machine with the main screen: its keys and its message boxes.
#pragma once

#include <QApplication>
#include <QElapsedTimer>
#include <QLibraryInfo>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "platform/Desktop.h"
#include "ui/QtWords.h"

class QKeyEvent;
class QMessageBox;
class QWidget;

namespace zemo {

// Space and the numeric pad's digits while the main screen is active and its keys are armed; they
// then reach no control. A press that ended between two questions counts as held once.
// Thread: the screen's.
class ScreenKeyboard : public QObject, public Keyboard {
 public:
  ScreenKeyboard();  // needs the QApplication, whose events it looks at
  ~ScreenKeyboard() override;
  // From then on. Neither is owned.
  void Watch(QWidget* window, std::function<bool()> armed);

  bool Held(int virtualKey) const override;
  bool MainScreenActive() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void LetGo();
  void Release(const QKeyEvent& event);

  QPointer<QWidget> window_;
  std::function<bool()> armed_;
  std::set<int> down_;
  mutable std::set<int> pressed_;  // and let go since it was asked for last
};

// A fault in the answer to a click or a key ends that answer and not the air. What Qt says by
// itself it says in the language of SpeakQtWords.
class ScreenApplication : public QApplication {
 public:
  using QApplication::QApplication;
  std::function<void()> onException;  // called while it is handled; none: a line on stderr
  bool notify(QObject* receiver, QEvent* event) override;
  QtWords& Words() { return words_; }

 private:
  QtWords words_{QLibraryInfo::path(QLibraryInfo::TranslationsPath)};
};

// What is told stands in a box of its own, one for the same text, and nobody waits for it: Escape
// on the main screen or in its dialogue closes the newest, and so does Return on the main screen,
// out of a text box, once it could be read. A question is waited for with the loop running; from
// where the tick would have to wait it gets its safe answer at once. No box covers the row, the
// control or the dialogue that it speaks of. Titles and texts are shown in the operator's words
// (station/OperatorWords.h). Thread: the screen's.
class ScreenMessageBoxes : public MessageBoxes {
 public:
  ScreenMessageBoxes();
  ~ScreenMessageBoxes() override;  // takes its open boxes away
  ScreenMessageBoxes(const ScreenMessageBoxes&) = delete;
  // `mayWait` tells whether the loop serves everything while a box is answered; none: it does not.
  void SetWindow(QWidget* window, std::function<bool()> mayWait);
  void SetLanguage(std::function<int()> langue) { langue_ = std::move(langue); }  // French before
  Answer Show(const std::string& title, const std::string& text, Buttons buttons,
              Icon icon = Icon::kNone) override;
  void WaitUntilRead();  // of the boxes that stand open

 private:
  class Keys;
  struct OpenBox {
    QMessageBox* box = nullptr;
    QElapsedTimer shown;
  };
  QMessageBox* Make(const std::string& title, const std::string& text, Buttons buttons, Icon icon,
                    QWidget* parent);
  void Tell(const std::string& title, const std::string& text, Icon icon);

  QPointer<QWidget> window_;
  std::function<bool()> mayWait_;
  bool CloseNewest(bool atOnce);
  void MoveAll();

  std::vector<OpenBox> open_;  // the newest last
  std::function<int()> langue_;
  std::unique_ptr<Keys> keys_;
  QObject alive_;  // boxes that are still closing tell it nothing behind its end
};

}  // namespace zemo
