#include "ui/tests/WindowHands.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QTest>

namespace zemo::test {

void ClickOn(QWidget* control, Qt::MouseButton button) {
  ASSERT_TRUE(control);
  const std::string name = control->objectName().toStdString();
  ASSERT_TRUE(control->isVisible()) << name;
  ASSERT_TRUE(control->isEnabled()) << name;
  QTest::mouseClick(control, button, Qt::NoModifier, QPoint(8, control->height() / 2));
}

std::string TextOn(const QWidget* control) {
  if (auto* label = qobject_cast<const QLabel*>(control)) return label->text().toStdString();
  if (auto* button = qobject_cast<const QAbstractButton*>(control))
    return button->text().toStdString();
  if (auto* box = qobject_cast<const QLineEdit*>(control)) return box->text().toStdString();
  if (auto* spinner = qobject_cast<const QAbstractSpinBox*>(control))
    return spinner->text().toStdString();
  if (auto* list = qobject_cast<const QComboBox*>(control))
    return list->currentText().toStdString();
  ADD_FAILURE() << (control ? control->objectName().toStdString() : "no control") << " has no text";
  return {};
}

void KeepPicture(QWidget& widget, const std::string& name) {
  const QString path = QStringLiteral(ZEMO_SCREENSHOTS "/%1.png").arg(QString::fromStdString(name));
  EXPECT_TRUE(widget.grab().save(path)) << path.toStdString();
}

}  // namespace zemo::test
