#include "ui/SaveDialogue.h"

#include <QFileDialog>
#include <utility>

#include "ui/FileDialogue.h"

namespace zemo {

void OpenSaveDialogue(QWidget& over, const char* name, const QString& title,
                      const std::vector<SavedKind>& kinds,
                      std::function<void(const std::string& path)> take) {
  QFileDialog* dialog = MakeFileDialogue(over, name, title);
  dialog->setOption(QFileDialog::HideNameFilterDetails);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  QStringList filters;
  for (const SavedKind& kind : kinds)
    filters << QStringLiteral("%1 *.%2 (*.%2)").arg(kind.name, kind.ending);
  dialog->setNameFilters(filters);
  dialog->setDefaultSuffix(kinds.front().ending);
  QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                   [dialog, kinds, filters](const QString& filter) {
                     const auto kind = filters.indexOf(filter);
                     if (kind >= 0)
                       dialog->setDefaultSuffix(kinds[static_cast<size_t>(kind)].ending);
                   });
  QObject::connect(dialog, &QFileDialog::fileSelected, &over,
                   [take = std::move(take)](const QString& path) { take(path.toStdString()); });
  dialog->open();
}

}  // namespace zemo
