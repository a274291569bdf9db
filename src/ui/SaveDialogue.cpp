#include "ui/SaveDialogue.h"

#include <QFileDialog>
#include <utility>

namespace zemo {

namespace {

// Not open yet. The window owns it, and its closing ends it.
QFileDialog* MakeSaveDialogue(QWidget& over, const char* name, const QString& title,
                              std::function<void(const std::string& path)> take) {
  auto* dialog = new QFileDialog(&over, title);
  dialog->setObjectName(QString::fromLatin1(name));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  QObject::connect(dialog, &QFileDialog::fileSelected, &over,
                   [take = std::move(take)](const QString& path) { take(path.toStdString()); });
  return dialog;
}

}  // namespace

void OpenSaveDialogue(QWidget& over, const char* name, const QString& title,
                      const std::vector<SavedKind>& kinds,
                      std::function<void(const std::string& path)> take) {
  QFileDialog* dialog = MakeSaveDialogue(over, name, title, std::move(take));
  dialog->setOption(QFileDialog::HideNameFilterDetails);
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
  dialog->open();
}

void OpenSheetDialogue(QWidget& over, const char* name, const QString& title,
                       std::function<void(const std::string& path)> take) {
  QFileDialog* dialog = MakeSaveDialogue(over, name, title, std::move(take));
  dialog->setNameFilter(QStringLiteral("Excel (*.xlsx)"));
  dialog->setDefaultSuffix(QStringLiteral("xlsx"));
  dialog->open();
}

}  // namespace zemo
