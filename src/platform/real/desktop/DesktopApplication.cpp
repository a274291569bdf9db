#include "platform/real/desktop/DesktopApplication.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QObject>
#include <cstdio>

#include "platform/real/desktop/ScreenlessDesktop.h"

namespace zemo {

namespace {

// Qt's idea of a command line: ours is not for it to look at. A display that does not answer is
// passed over instead of ending the process. Through X even where the desktop is another, for only
// there a program without a window may look at the clipboard. Qt takes out the words that it has
// read.
char** MakeArguments() {
  static char name[] = "zemoradio";
  static char option[] = "-platform";
  static char value[] = "xcb;offscreen";
  static char* words[4];
  words[0] = name;
  words[1] = option;
  words[2] = value;
  words[3] = nullptr;
  return words;
}

bool HasDesktop() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QGuiApplication::platformName() != "offscreen";
}

// The text is fetched from the program that holds it only once after each change: the engine looks
// at every tick, and a holder that hangs costs seconds.
class DesktopClipboard : public Clipboard {
 public:
  DesktopClipboard() : clipboard_(*QGuiApplication::clipboard()) {
    QObject::connect(&clipboard_, &QClipboard::dataChanged, &receiver_, [this] { stale_ = true; });
  }
  std::string Text() const override {
    if (stale_) text_ = clipboard_.text().toStdString();
    stale_ = false;
    return text_;
  }
  void SetText(const std::string& text) override {
    clipboard_.setText(QString::fromStdString(text));
    text_ = text;
    stale_ = false;
  }

 private:
  QClipboard& clipboard_;
  QObject receiver_;
  mutable bool stale_ = true;
  mutable std::string text_;
};

}  // namespace

std::unique_ptr<QCoreApplication> MakeApplication(int& argc) {
  char** words = MakeArguments();
  if (qEnvironmentVariableIsEmpty("DISPLAY")) {
    argc = 1;
    return std::make_unique<QCoreApplication>(argc, words);
  }
  // What cannot be had is said below in one line; Qt says it in several, and complains of a missing
  // runtime folder that nothing here uses.
  QLoggingCategory::setFilterRules("qt.qpa.*=false\ndefault.warning=false");
  argc = 3;
  auto application = std::make_unique<QGuiApplication>(argc, words);
  QLoggingCategory::setFilterRules("qt.qpa.*=false");
  if (!HasDesktop())
    std::fprintf(stderr,
                 "zemoradio: the display %s does not answer: no clipboard is shared with other "
                 "programs\n",
                 qEnvironmentVariable("DISPLAY").toLocal8Bit().constData());
  return application;
}

std::unique_ptr<Clipboard> MakeClipboard() {
  if (HasDesktop()) return std::make_unique<DesktopClipboard>();
  return std::make_unique<ScreenlessClipboard>();
}

}  // namespace zemo
