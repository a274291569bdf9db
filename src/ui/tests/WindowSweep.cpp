#include "ui/tests/WindowSweep.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>

namespace zemo::test {

namespace {

std::string NameOf(const QWidget& widget) {
  return widget.objectName().isEmpty() ? widget.metaObject()->className()
                                       : widget.objectName().toStdString();
}

bool IsControl(const QWidget& widget) {
  return qobject_cast<const QLabel*>(&widget) || qobject_cast<const QAbstractButton*>(&widget) ||
         qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
         qobject_cast<const QSlider*>(&widget) || qobject_cast<const QTabBar*>(&widget);
}

int TextWidth(const QWidget& widget, QString text) {
  return widget.fontMetrics().size(0, text.remove(u'&')).width();
}

// What of a control's text does not fit into it; empty for none.
std::string CutText(const QWidget& widget) {
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const QSize room = label->contentsRect().size();
    if (TextWidth(*label, label->text()) > room.width()) return label->text().toStdString();
    return label->fontMetrics().height() > room.height() + 4 ? "too low" : "";
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    if (button->text().isEmpty()) return {};
    return button->minimumSizeHint().width() > button->width() ? button->text().toStdString() : "";
  }
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
    return tabs->sizeHint().width() > tabs->width() ? "tabs" : "";
  if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    const QRect room = combo->style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, combo);
    return TextWidth(*combo, combo->currentText()) > room.width()
               ? combo->currentText().toStdString()
               : "";
  }
  // Boxes of a moment of play or of a number show it whole; long texts scroll.
  const auto* box = qobject_cast<const QLineEdit*>(&widget);
  const QString name = widget.objectName();
  QStyleOptionFrame option;
  option.initFrom(&widget);
  if (box && (name.startsWith(QStringLiteral("ChDiffusion")) || name == QStringLiteral("Longeur")))
    return TextWidth(*box, box->text()) + 4 >
                   box->style()->subElementRect(QStyle::SE_LineEditContents, &option, box).width()
               ? box->text().toStdString()
               : "";
  return {};
}

QRect OnScreen(const QWidget& widget, const QWidget& window) {
  return {widget.mapTo(&window, QPoint()), widget.size()};
}

bool HasName(const QWidget& widget) {
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
    if (!button->text().isEmpty()) return true;
  if (qobject_cast<const QLabel*>(&widget) || qobject_cast<const QTabBar*>(&widget)) return true;
  const bool part = widget.objectName().isEmpty() || widget.objectName().startsWith("qt_");
  return part || !widget.accessibleName().isEmpty();
}

}  // namespace

void CheckWindow(QWidget& whole, const std::string& where) {
  QList<QWidget*> controls;
  for (QWidget* widget : whole.findChildren<QWidget*>())
    if (widget->isVisible() && IsControl(*widget)) controls << widget;
  for (QWidget* widget : controls) {
    const std::string cut = CutText(*widget);
    EXPECT_TRUE(cut.empty()) << where << ": " << NameOf(*widget) << ": " << cut;
    EXPECT_TRUE(whole.rect().contains(OnScreen(*widget, whole)))
        << where << ": " << NameOf(*widget) << " leaves the window";
    EXPECT_TRUE(HasName(*widget)) << where << ": " << NameOf(*widget) << " has no name";
    const auto* label = qobject_cast<QLabel*>(widget);
    if (label && label->objectName().isEmpty()) {
      EXPECT_NE(label->text(), QString()) << where << ": a label without words";
    }
  }
  for (int i = 0; i < controls.size(); ++i)
    for (int j = i + 1; j < controls.size(); ++j) {
      if (controls[i]->isAncestorOf(controls[j]) || controls[j]->isAncestorOf(controls[i]))
        continue;
      EXPECT_FALSE(OnScreen(*controls[i], whole).intersects(OnScreen(*controls[j], whole)))
          << where << ": " << NameOf(*controls[i]) << " overlaps " << NameOf(*controls[j]);
    }
}

}  // namespace zemo::test
