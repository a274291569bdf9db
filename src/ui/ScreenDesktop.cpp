#include "ui/ScreenDesktop.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <utility>

#include "station/OperatorWords.h"
#include "ui/SharedTexts.h"
#include "ui/Window.h"
#include "ui/WindowPlace.h"

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
  if (type == QEvent::KeyRelease && !keyEvent.isAutoRepeat()) Release(keyEvent);
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
  }
  return true;
}

// By the key alone: Shift and Num Lock may have changed since it was pressed, and a key that stays
// held would ask for one element after the other. A key of the pad that has become another one lets
// all of the pad go.
void ScreenKeyboard::Release(const QKeyEvent& event) {
  const int key = event.key();
  if (key == Qt::Key_Space) {
    down_.erase(kSpace);
  } else if (key >= Qt::Key_0 && key <= Qt::Key_9) {
    down_.erase(kNumPad0 + key - Qt::Key_0);
  } else if (event.modifiers() & Qt::KeypadModifier) {
    std::erase_if(down_, [](int held) { return held >= kNumPad0; });
  }
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
    case Buttons::kYesCancel:
      return QMessageBox::Yes | QMessageBox::Cancel;
    case Buttons::kYesNoCancel:
    case Buttons::kMineTheirs:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    case Buttons::kMineTheirsLook:
      return QMessageBox::Yes | QMessageBox::No | QMessageBox::Ok | QMessageBox::Cancel;
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
  const char* whose;  // of a record that two people changed
  const char* name;   // the control's, then
};
constexpr int kReadMs =
    500;  // a box that has just come is not closed by a Return for something else

bool IsDialogue(const QWidget& widget) {
  return widget.isModal() && !qobject_cast<const QMessageBox*>(&widget);
}

// What a box speaks of, on the screen: the dialogue before the window, else the row or the control
// that has its keyboard.
QRect SpokenOf(const QWidget& window) {
  for (const QWidget* shown : QApplication::topLevelWidgets())
    if (shown->isVisible() && IsDialogue(*shown)) return shown->frameGeometry();
  const QWidget* focus = window.focusWidget();
  if (!focus) return {};
  QRect part = focus->rect();
  if (const auto* view = qobject_cast<const QAbstractItemView*>(focus)) {
    if (!view->currentIndex().isValid()) return {};
    focus = view->viewport();
    part = view->visualRect(view->currentIndex());
    part.setLeft(0);
    part.setRight(focus->width() - 1);
  }
  return {focus->mapToGlobal(part.topLeft()), part.size()};
}

// Once it is shown: its size is known then, and that of its frame.
void MoveAside(QMessageBox& box, const QWidget* window) {
  if (!window || !window->isVisible() || !window->screen()) return;
  const QRect screen = window->screen()->availableGeometry();
  const QSize size = box.frameGeometry().size();
  const QRect area = window->frameGeometry().intersected(screen);
  const QPoint place = PlaceBeside(size, SpokenOf(*window), area);
  box.move(Within({place, size}, {screen}).topLeft());
}

constexpr ButtonWord kButtonWords[] = {{QMessageBox::Ok, "Ok", "Look", "BtnVoir"},
                                       {QMessageBox::Cancel, "Cancel", "Cancel", "BtnRevenir"},
                                       {QMessageBox::Yes, "Yes", "KeepMine", "BtnGarder"},
                                       {QMessageBox::No, "No", "TakeTheirs", "BtnPrendre"}};

bool AsksWhose(Buttons buttons) {
  return buttons == Buttons::kMineTheirsLook || buttons == Buttons::kMineTheirs;
}

}  // namespace

// The boxes leave the keyboard to the main screen and its dialogues, which pass on what closes
// them.
class ScreenMessageBoxes::Keys : public QObject {
 public:
  explicit Keys(ScreenMessageBoxes& boxes) : boxes_(boxes) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (boxes_.open_.empty()) return false;
    const auto* widget = qobject_cast<const QWidget*>(watched);
    if (!widget) return false;
    if (event->type() == QEvent::Show && IsDialogue(*widget))
      QTimer::singleShot(0, this, [this] { boxes_.MoveAll(); });  // it is placed then
    if (event->type() != QEvent::KeyPress || QApplication::activePopupWidget()) return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    if (key.isAutoRepeat() || qobject_cast<const QMenuBar*>(widget)) return false;
    const QWidget* dialogue = QApplication::activeModalWidget();
    const bool main = !dialogue && widget->window() == boxes_.window_;
    const bool ours = !dialogue && dynamic_cast<const Window*>(widget->window());
    const bool inDialogue = dialogue && widget->window() == dialogue && IsDialogue(*dialogue);
    if (key.key() == Qt::Key_Escape)
      return (main || ours || inDialogue) && boxes_.CloseNewest(true);
    const bool enter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    if (!enter || !main) return false;
    const bool typing = qobject_cast<const QLineEdit*>(boxes_.window_->focusWidget());
    return !typing && boxes_.CloseNewest(false);
  }

 private:
  ScreenMessageBoxes& boxes_;
};

ScreenMessageBoxes::ScreenMessageBoxes() = default;

ScreenMessageBoxes::~ScreenMessageBoxes() {
  keys_.reset();
  const std::vector<OpenBox> open = open_;
  for (const OpenBox& each : open) delete each.box;
}

bool ScreenMessageBoxes::CloseNewest(bool atOnce) {
  // One that was closed by its button goes with the next turn of the loop.
  std::erase_if(open_, [](const OpenBox& open) { return !open.box->isVisible(); });
  if (open_.empty() || (!atOnce && open_.back().shown.elapsed() < kReadMs)) return false;
  QMessageBox* newest = open_.back().box;
  open_.pop_back();
  newest->close();
  return true;
}

QMessageBox* ScreenMessageBoxes::Make(const std::string& title, const std::string& text,
                                      Buttons buttons, Icon icon, QWidget* parent) {
  auto* box = new QMessageBox(parent);
  box->setObjectName(QStringLiteral("Alerte"));
  const int langue = langue_ ? langue_() : 0;
  box->setWindowTitle(QString::fromStdString(InOperatorsWords(title, langue)));
  box->setTextFormat(Qt::PlainText);
  box->setText(QString::fromStdString(InOperatorsWords(text, langue)));
  box->setStandardButtons(ButtonsOf(buttons));
  box->setIcon(IconOf(icon));
  const Translation texts(SharedTexts(), langue);
  const bool whose = AsksWhose(buttons);
  for (const ButtonWord& word : kButtonWords)
    if (QAbstractButton* made = box->button(word.button)) {
      made->setText(texts.Word(whose ? word.whose : word.word));
      if (whose) made->setObjectName(QString::fromLatin1(word.name));
      made->setIcon({});  // a desktop's own
    }
  return box;
}

void ScreenMessageBoxes::SetWindow(QWidget* window, std::function<bool()> mayWait) {
  window_ = window;
  mayWait_ = std::move(mayWait);
  keys_ = std::make_unique<Keys>(*this);
}

// Nobody's child, so that a dialogue over the main screen bars no box, and without the keyboard,
// which stays with the main screen and its keys.
void ScreenMessageBoxes::Tell(const std::string& title, const std::string& text, Icon icon) {
  QMessageBox* box = Make(title, text, Buttons::kOk, icon, nullptr);
  for (const OpenBox& open : open_)
    if (open.box->windowTitle() == box->windowTitle() && open.box->text() == box->text()) {
      delete box;
      return open.box->raise();
    }
  if (window_) box->setStyleSheet(window_->styleSheet());
  box->setWindowFlag(Qt::WindowStaysOnTopHint);
  box->setAttribute(Qt::WA_ShowWithoutActivating, window_ && window_->isVisible());
  open_.push_back({box, {}});
  open_.back().shown.start();
  QObject::connect(box, &QObject::destroyed, &alive_, [this, box] {
    std::erase_if(open_, [box](const OpenBox& open) { return open.box == box; });
  });
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setModal(false);
  box->show();
  MoveAll();
}

// Each a step off the one before it, so that none hides another.
void ScreenMessageBoxes::MoveAll() {
  constexpr int kStep = 24;
  int step = 0;
  for (const OpenBox& open : open_) {
    MoveAside(*open.box, window_);
    open.box->move(open.box->pos() + QPoint(step, step));
    open.box->raise();
    step += kStep;
  }
}

Answer ScreenMessageBoxes::Show(const std::string& title, const std::string& text, Buttons buttons,
                                Icon icon) {
  const Answer safe = SafeAnswer(buttons);
  if (buttons == Buttons::kOk || !mayWait_ || !mayWait_()) {
    Tell(title, text, icon);
    return safe;
  }
  // Before the dialogue or the window that asks, not behind it.
  QWidget* asks = QApplication::activeModalWidget();
  QWidget* window = dynamic_cast<Window*>(QApplication::activeWindow());
  if (!window || asks) window = window_;
  QMessageBox* box = Make(title, text, buttons, icon, asks ? asks : window);
  box->setDefaultButton(buttons == Buttons::kYesNo ? QMessageBox::No : QMessageBox::Cancel);
  QTimer::singleShot(0, box, [box, area = QPointer(window)] { MoveAside(*box, area); });
  const QPointer<QMessageBox> guard(box);
  const int answer = box->exec();
  if (guard) box->deleteLater();
  switch (answer) {
    case QMessageBox::Yes:
      return Answer::kYes;
    case QMessageBox::Ok:
      return Answer::kOk;
    case QMessageBox::No:
      return Answer::kNo;
    default:
      return safe;
  }
}

void ScreenMessageBoxes::WaitUntilRead() {
  while (!open_.empty()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace zemo
