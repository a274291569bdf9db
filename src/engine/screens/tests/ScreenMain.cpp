// The tests' program: Qt without a display.
#include <gtest/gtest.h>

#include <QDir>

#include "engine/screens/ScreenDesktop.h"

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  zemo::ScreenApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QDir().mkpath(QStringLiteral(ZEMO_SCREENSHOTS));
  return RUN_ALL_TESTS();
}
