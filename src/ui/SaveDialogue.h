// Qt's dialogue for the file that something is saved to.
#pragma once

#include <QString>
#include <functional>
#include <string>
#include <vector>

class QWidget;

namespace zemo {

// A kind of file, as "Excel", and how its name ends, without the dot; the first is on offer.
struct SavedKind {
  QString name;
  QString ending;
};

inline SavedKind ExcelFile() {
  return {QStringLiteral("Excel"), QStringLiteral("xlsx")};
}

// Opens over the window; `take` gets the path, which has the ending of the kind that was chosen
// unless another one was typed. Modal to the window, and no loop of its own runs.
void OpenSaveDialogue(QWidget& over, const char* name, const QString& title,
                      const std::vector<SavedKind>& kinds,
                      std::function<void(const std::string& path)> take);

}  // namespace zemo
