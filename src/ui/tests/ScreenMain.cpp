// The tests' program: Qt without a display, or on an X server of its own where ZEMO_SCREEN says
// "xvfb" - focus, stacking and modal dialogues are the server's there.
#include <gtest/gtest.h>

#include <QDir>
#include <memory>

#include "support/VirtualScreen.h"
#include "ui/ScreenDesktop.h"
#include "ui/Theme.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  std::unique_ptr<zemo::test::VirtualScreen> server;
  if (qEnvironmentVariable("ZEMO_SCREEN") == QStringLiteral("xvfb")) {
    server = std::make_unique<zemo::test::VirtualScreen>("1920x1080x24");
    qputenv("QT_QPA_PLATFORM", "xcb");
  } else {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  zemo::ScreenApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setFont(zemo::Theme::Type(1, 15));  // as the program does
  QDir().mkpath(QStringLiteral(ZEMO_SCREENSHOTS));
  return RUN_ALL_TESTS();
}
