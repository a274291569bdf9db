// The tests' program: Qt without a display.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  QDir().mkpath(QStringLiteral(ZEMO_SCREENSHOTS));
  return RUN_ALL_TESTS();
}
