#include "ui/ScreenDesktop.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QWidget>
#include <utility>

#include "ui/SharedTexts.h"

namespace zemo {

namespace {
constexpr int kSpace = 32;
constexpr int kNumPad0 = 96;

// Virtual key number of the keys that are the engine's; 0 for all others, and so for the numeric
// pad while Num Lock is off.
int VirtualKey(const QKeyEvent& event) {
  const int key = event.key();
  if (key == Qt::Key_Space && event.modifiers() == Qt::NoModifier) return kSpace;
  if (!(event.modifiers() & Qt::KeypadModifier)) return 0;
  if (key >= Qt::Key_0 && key <= Qt::Key_9) return kNumPad0 + key - Qt::Key_0;
  return 0;
}
}  // namespace

// --- keys ---

ScreenKeyboard::ScreenKeyboard() {
  qApp->installEventFilter(this);
}

ScreenKeyboard::~ScreenKeyboard() {
  if (qApp) qApp->removeEventFilter(this);
}

void ScreenKeyboard::Watch(QWidget* window, std::function<bool()> armed) {
  window_ = window;
  armed_ = std::move(armed);
}

bool ScreenKeyboard::Held(int virtualKey) const {
  return pressed_.erase(virtualKey) != 0 || down_.count(virtualKey) != 0;
}

bool ScreenKeyboard::MainScreenActive() const {
  return window_ && window_->isActiveWindow() && !QApplication::activeModalWidget();
}

void ScreenKeyboard::LetGo() {
  down_.clear();
  pressed_.clear();
}

bool ScreenKeyboard::eventFilter(QObject* watched, QEvent* event) {
  if (!window_) return false;
  const QEvent::Type type = event->type();
  if (type == QEvent::FocusIn || (type == QEvent::WindowDeactivate && watched == window_)) {
    if (type == QEvent::WindowDeactivate || !armed_()) LetGo();
    return false;
  }
  if (type != QEvent::KeyPress && type != QEvent::KeyRelease) return false;
  auto* widget = qobject_cast<QWidget*>(watched);
  if (!widget || widget->window() != window_) return false;
  const auto& keyEvent = *static_cast<QKeyEvent*>(event);
  const int key = VirtualKey(keyEvent);
  if (key == 0) return false;
  if (!armed_()) {
    LetGo();
    return false;
  }
  if (keyEvent.isAutoRepeat()) return true;
  if (type == QEvent::KeyPress) {
    down_.insert(key);
    pressed_.insert(key);
  } else {
    down_.erase(key);
  }
  return true;
}

// --- the loop's net ---

bool ScreenApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception& error) {
    if (onException)
      onException();
    else
      qCritical("%s", error.what());
  }
  return false;
}

// --- boxes ---

namespace {

QMessageBox::StandardButtons ButtonsOf(Buttons buttons) {
  switch (buttons) {
    case Buttons::kYesNo:
      return QMessageBox::Yes | QMessageBox::No;
    case Buttons::kOkCancel:
      return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::kOk:
      break;
  }
  return QMessageBox::Ok;
}

QMessageBox::Icon IconOf(Icon icon) {
  switch (icon) {
    case Icon::kInformation:
      return QMessageBox::Information;
    case Icon::kStop:
      return QMessageBox::Critical;
    case Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

struct ButtonWord {
  QMessageBox::StandardButton button;
  const char* word;
};
constexpr ButtonWord kButtonWords[] = {{QMessageBox::Ok, "Ok"},
                                       {QMessageBox::Cancel, "Cancel"},
                                       {QMessageBox::Yes, "Yes"},
                                       {QMessageBox::No, "No"}};

}  // namespace

ScreenMessageBoxes::~ScreenMessageBoxes() {
  const std::set<QMessageBox*> open = open_;
  for (QMessageBox* box : open) delete box;
}

QMessageBox* ScreenMessageBoxes::Make(const std::string& title, const std::string& text,
                                      Buttons buttons, Icon icon, QWidget* parent) {
  auto* box = new QMessageBox(parent);
  box->setObjectName(QStringLiteral("Alerte"));
  box->setWindowTitle(QString::fromStdString(title));
  box->setTextFormat(Qt::PlainText);
  box->setText(QString::fromStdString(text));
  box->setStandardButtons(ButtonsOf(buttons));
  box->setIcon(IconOf(icon));
  const Translation texts(SharedTexts(), langue_);
  for (const auto& [button, word] : kButtonWords)
    if (QAbstractButton* made = box->button(button)) made->setText(texts.Word(word));
  return box;
}

void ScreenMessageBoxes::SetWindow(QWidget* window, std::function<bool()> mayWait) {
  window_ = window;
  mayWait_ = std::move(mayWait);
}

// Nobody's child, so that a dialogue over the main screen bars no box, and without the keyboard,
// which stays with the main screen and its keys.
void ScreenMessageBoxes::Tell(const std::string& title, const std::string& text, Icon icon) {
  for (QMessageBox* open : open_)
    if (open->windowTitle() == QString::fromStdString(title) &&
        open->text() == QString::fromStdString(text))
      return open->raise();
  QMessageBox* box = Make(title, text, Buttons::kOk, icon, nullptr);
  if (window_) box->setStyleSheet(window_->styleSheet());
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  box->setAttribute(Qt::WA_ShowWithoutActivating, window_ && window_->isVisible());
  open_.insert(box);
  QObject::connect(box, &QObject::destroyed, box, [this, box] { open_.erase(box); });
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setModal(false);
  box->show();
}

Answer ScreenMessageBoxes::Show(const std::string& title, const std::string& text, Buttons buttons,
                                Icon icon) {
  const Answer safe = buttons == Buttons::kYesNo      ? Answer::kNo
                      : buttons == Buttons::kOkCancel ? Answer::kCancel
                                                      : Answer::kOk;
  if (buttons == Buttons::kOk || !mayWait_ || !mayWait_()) {
    Tell(title, text, icon);
    return safe;
  }
  QMessageBox* box = Make(title, text, buttons, icon, window_);
  box->setDefaultButton(buttons == Buttons::kYesNo ? QMessageBox::No : QMessageBox::Cancel);
  const QPointer<QMessageBox> guard(box);
  const int answer = box->exec();
  if (guard) box->deleteLater();
  switch (answer) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::Ok:
      return Answer::kOk;
    default:
      return safe;
  }
}

void ScreenMessageBoxes::WaitUntilRead() {
  while (!open_.empty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace zemo
