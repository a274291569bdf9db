#include "platform/real/desktop/DesktopApplication.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QObject>
#include <cstdio>

#include "platform/real/desktop/ScreenlessDesktop.h"

namespace zemo {

namespace {

// Qt's idea of a command line: ours is not for it to look at. Without a display that answers it
// takes none at all instead of ending the process. Through X even where the desktop is another, for
// only there a program without a window may look at the clipboard.
struct Arguments {
  char name[16] = "zemoradio";
  char option[16] = "-platform";
  char value[16] = "xcb;offscreen";
  char* words[4] = {name, option, value, nullptr};
};

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
  static Arguments arguments;
  if (qEnvironmentVariableIsEmpty("DISPLAY")) {
    argc = 1;
    return std::make_unique<QCoreApplication>(argc, arguments.words);
  }
  QLoggingCategory::setFilterRules("qt.qpa.*=false");
  argc = 3;
  auto application = std::make_unique<QGuiApplication>(argc, arguments.words);
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
