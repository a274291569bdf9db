// The key of a button, which leaves the keyboard where the operator works: a button's own shortcut
// would take it away from a grid or a field. The keys that turn the tabs of a window.
#pragma once

class QAbstractButton;
class QKeySequence;
class QTabBar;

namespace zemo {

// Shown in the button's tip. Like its own shortcut it works while the button is seen and on.
void GiveKeys(QAbstractButton& button, const QKeySequence& keys);

// Ctrl+Tab and Ctrl+Page down go to the next tab, with Shift or Page up to the one before, wherever
// the keyboard is in the window. It is on the bar then: the next Tab comes to the page.
void GiveTabKeys(QTabBar& tabs);

}  // namespace zemo
