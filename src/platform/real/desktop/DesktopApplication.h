// Qt's application object, and the clipboard that it comes with.
#pragma once

#include <memory>

#include "platform/Desktop.h"

class QCoreApplication;

namespace zemo {

// With a display (DISPLAY) one that is part of its desktop, otherwise one of the loop alone. A
// display that does not answer is one line on standard error and no more. `argc` has to outlive it.
std::unique_ptr<QCoreApplication> MakeApplication(int& argc);

// The desktop's, when the application is part of one; else a text of this process. The application
// outlives it.
std::unique_ptr<Clipboard> MakeClipboard();

}  // namespace zemo
