// Questions that a window asks through dialogues of the system, so that a test can answer them.
#pragma once

#include <QString>
#include <functional>
#include <optional>

class QPrinter;
class QWidget;

namespace zemo {

struct Questions {
  std::function<bool(QWidget*, QPrinter&)> choosePrinter;  // false: nothing is printed
  std::function<std::optional<QString>(QWidget*, const QString& title, const QString& question,
                                       const QString& byDefault)>
      askText;
};

// Those that are empty are asked with the system's dialogues, their buttons in that language.
Questions WithSystemDialogues(Questions given, int langue);

}  // namespace zemo
