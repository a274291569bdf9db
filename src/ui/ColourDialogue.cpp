#include "ui/ColourDialogue.h"

#include <QColorDialog>
#include <utility>

namespace zemo {

void OpenColourDialogue(QWidget& over, const QString& title, const QColor& shown,
                        std::function<void(const QColor&)> take) {
  auto* dialogue = new QColorDialog(shown, &over);
  dialogue->setObjectName(QStringLiteral("ColourDialogue"));
  dialogue->setOption(QColorDialog::DontUseNativeDialog);
  dialogue->setAttribute(Qt::WA_DeleteOnClose);
  dialogue->setWindowTitle(title);
  QObject::connect(dialogue, &QColorDialog::colorSelected, &over, std::move(take));
  dialogue->open();
}

}  // namespace zemo
