// Qt's colour dialogue.
#pragma once

#include <QColor>
#include <functional>

class QWidget;

namespace zemo {

// Opens over the window; `take` gets the colour when it is left with OK. Modal to the window, and
// no loop of its own runs.
void OpenColourDialogue(QWidget& over, const QString& title, const QColor& shown,
                        std::function<void(const QColor&)> take);

}  // namespace zemo
