#include "ui/FileDialogue.h"

#include <QDateTime>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QIdentityProxyModel>
#include <QLocale>

namespace zemo {

namespace {

constexpr int kSizeColumn = 1, kMomentColumn = 3;

// Sizes and moments as the operator's country writes them; Qt has them as the machine's does.
class Listing : public QIdentityProxyModel {
 public:
  using QIdentityProxyModel::QIdentityProxyModel;
  QVariant data(const QModelIndex& index, int role) const override {
    const auto* files = qobject_cast<const QFileSystemModel*>(sourceModel());
    if (role != Qt::DisplayRole || !files) return QIdentityProxyModel::data(index, role);
    const QModelIndex file = mapToSource(index);
    if (index.column() == kMomentColumn)
      return QLocale().toString(files->lastModified(file), QLocale::ShortFormat);
    if (index.column() == kSizeColumn && !files->isDir(file))
      return QLocale().formattedDataSize(files->size(file));
    return QIdentityProxyModel::data(index, role);
  }
};

}  // namespace

QFileDialog* MakeFileDialogue(QWidget& over, const char* name, const QString& title) {
  auto* dialogue = new QFileDialog(&over, title);
  dialogue->setObjectName(QString::fromLatin1(name));
  dialogue->setAttribute(Qt::WA_DeleteOnClose);
  dialogue->setOption(QFileDialog::DontUseNativeDialog);
  dialogue->setProxyModel(new Listing(dialogue));
  return dialogue;
}

}  // namespace zemo
