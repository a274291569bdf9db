#include "library/screens/FreeEntryBox.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

#include "library/screens/CardPage.h"

namespace zemo {

FreeEntryBox::FreeEntryBox(const char* name, QWidget* parent) : QComboBox(parent) {
  setObjectName(QString::fromLatin1(name));
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  setCompleter(nullptr);  // what is typed stands as it is typed
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(this, &QComboBox::editTextChanged, this,
          [this](const QString& text) { typed(text.toStdString()); });
}

void FreeEntryBox::Show(const std::string& text, const std::vector<std::string>& offer) {
  const QSignalBlocker silent(this);
  if (offer != offer_) {
    const QString typedText = currentText();
    clear();
    for (const std::string& entry : offer) addItem(ShownText(entry));
    setEditText(typedText);
    offer_ = offer;
  }
  ShowIn(*lineEdit(), text);
}

void FreeEntryBox::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Return || key == Qt::Key_Enter) return enter();
  const QLineEdit& box = *lineEdit();
  const bool behind = !box.hasSelectedText() && box.cursorPosition() == box.text().size();
  const bool whole = box.hasSelectedText() && box.selectedText() == box.text();
  if (key != Qt::Key_Delete || box.text().isEmpty() || (!behind && !whole))
    return QComboBox::keyPressEvent(event);
  erase();
}

}  // namespace zemo
