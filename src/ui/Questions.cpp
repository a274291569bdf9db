#include "ui/Questions.h"

#include <QInputDialog>
#include <QPrintDialog>
#include <QPrinter>

#include "ui/SharedTexts.h"

namespace zemo {

namespace {

bool AskPrinter(QWidget* parent, QPrinter& printer) {
  return QPrintDialog(&printer, parent).exec() == QDialog::Accepted;
}

std::optional<QString> AskText(QWidget* parent, const QString& title, const QString& question,
                               const QString& byDefault, int langue) {
  const Translation texts(SharedTexts(), langue);
  QInputDialog dialog(parent);
  dialog.setWindowTitle(title);
  dialog.setLabelText(question);
  dialog.setTextValue(byDefault);
  dialog.setOkButtonText(texts.Word("Ok"));
  dialog.setCancelButtonText(texts.Word("Cancel"));
  return dialog.exec() == QDialog::Accepted ? std::optional(dialog.textValue()) : std::nullopt;
}

}  // namespace

Questions WithSystemDialogues(Questions given, int langue) {
  if (!given.choosePrinter) given.choosePrinter = AskPrinter;
  if (!given.askText)
    given.askText = [langue](QWidget* parent, const QString& title, const QString& question,
                             const QString& byDefault) {
      return AskText(parent, title, question, byDefault, langue);
    };
  return given;
}

}  // namespace zemo
