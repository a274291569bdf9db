#include "ui/tests/WindowSweep.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QSlider>
#include <QSpinBox>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>

#include "ui/FitLabel.h"

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

// The first head of a list that is cut; an arrow stands over its text.
std::string CutHead(const QTableView& table) {
  QHeaderView& heads = *table.horizontalHeader();
  if (!heads.isVisible()) return {};
  const bool sorted = heads.isSortIndicatorShown();
  std::string cut;
  for (int column = 0; column < heads.count() && cut.empty(); ++column) {
    if (heads.isSectionHidden(column)) continue;
    // Its hint has room for an arrow on every head.
    heads.setSortIndicatorShown(sorted && column == heads.sortIndicatorSection());
    if (heads.sectionSize(column) < heads.sectionSizeHint(column) - 6)
      cut = table.model()->headerData(column, Qt::Horizontal).toString().toStdString();
  }
  heads.setSortIndicatorShown(sorted);
  return cut;
}

// The entries that do not fit stand behind a button of the bar's own.
std::string CutMenus(const QMenuBar& menus) {
  for (const QAction* entry : menus.actions())
    if (entry->isVisible() &&
        !menus.rect().contains(menus.actionGeometry(const_cast<QAction*>(entry))))
      return entry->text().toStdString();
  return {};
}

// What of a control's text does not fit into it; empty for none.
std::string CutText(const QWidget& widget) {
  if (const auto* table = qobject_cast<const QTableView*>(&widget)) return CutHead(*table);
  if (const auto* menus = qobject_cast<const QMenuBar*>(&widget)) return CutMenus(*menus);
  if (const auto* group = qobject_cast<const QGroupBox*>(&widget))
    return TextWidth(*group, group->title()) > group->width() ? group->title().toStdString() : "";
  if (const auto* spinner = qobject_cast<const QSpinBox*>(&widget))
    return spinner->minimumSizeHint().width() > spinner->width() ? spinner->text().toStdString()
                                                                 : "";
  if (const auto* fit = dynamic_cast<const FitLabel*>(&widget))
    return fit->Shortened() && fit->toolTip() != fit->text() ? "shortened without a tool tip" : "";
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    const QSize room = label->contentsRect().size();
    if (label->wordWrap())
      return label->heightForWidth(label->width()) > label->height() ? label->text().toStdString()
                                                                     : "";
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
    if (combo->currentText().startsWith(u'/')) return {};  // a path, which has any length
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

std::vector<std::string> CutTexts(const QWidget& whole) {
  std::vector<std::string> cuts;
  for (const QWidget* widget : whole.findChildren<QWidget*>()) {
    if (!widget->isVisibleTo(&whole) || widget->window() != whole.window()) continue;
    if (const std::string cut = CutText(*widget); !cut.empty())
      cuts.push_back(NameOf(*widget) + ": " + cut);
  }
  return cuts;
}

void CheckWindow(QWidget& whole, const std::string& where) {
  QList<QWidget*> controls;
  for (QWidget* widget : whole.findChildren<QWidget*>())
    if (widget->isVisible() && IsControl(*widget)) controls << widget;
  for (const std::string& cut : CutTexts(whole)) ADD_FAILURE() << where << ": cut: " << cut;
  for (QWidget* widget : controls) {
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
