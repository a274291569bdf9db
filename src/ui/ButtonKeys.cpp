#include "ui/ButtonKeys.h"

#include <QAbstractButton>
#include <QShortcut>
#include <QTabBar>

namespace zemo {

void GiveKeys(QAbstractButton& button, const QKeySequence& keys) {
  if (keys.isEmpty()) return;
  auto* shortcut = new QShortcut(keys, &button);
  shortcut->setAutoRepeat(false);
  QObject::connect(shortcut, &QShortcut::activated, &button, &QAbstractButton::click);
  button.setToolTip(keys.toString(QKeySequence::NativeText));
}

void GiveTabKeys(QTabBar& tabs) {
  const auto turn = [&tabs](const QKeySequence& keys, int by) {
    auto* shortcut = new QShortcut(keys, &tabs);
    QObject::connect(shortcut, &QShortcut::activated, &tabs, [&tabs, by] {
      tabs.setCurrentIndex((tabs.currentIndex() + tabs.count() + by) % tabs.count());
      tabs.setFocus(Qt::ShortcutFocusReason);
    });
  };
  turn(Qt::CTRL | Qt::Key_Tab, 1);
  turn(Qt::CTRL | Qt::Key_PageDown, 1);
  turn(Qt::CTRL | Qt::SHIFT | Qt::Key_Tab, -1);
  turn(Qt::CTRL | Qt::SHIFT | Qt::Key_Backtab, -1);
  turn(Qt::CTRL | Qt::Key_PageUp, -1);
}

}  // namespace zemo
