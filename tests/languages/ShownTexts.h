// Everything that a window says: on its controls, in its menus and lists, in tips and to screen
// readers.
#pragma once

#include <QString>
#include <string>
#include <vector>

class QWidget;

namespace zemo::test {

struct ShownText {
  std::string where;  // the control
  QString text;
};

// Of what is seen in the window, and of its menus, which are closed.
std::vector<ShownText> ShownTexts(QWidget& window);

}  // namespace zemo::test
