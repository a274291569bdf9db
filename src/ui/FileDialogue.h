// Qt's file dialogue over a window: the one look and language of all of them.
#pragma once

class QFileDialog;
class QString;
class QWidget;

namespace zemo {

// Not shown yet; owned by the window, and deletes itself when it is closed. Modal with open().
QFileDialog* MakeFileDialogue(QWidget& over, const char* name, const QString& title);

}  // namespace zemo
