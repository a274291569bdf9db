#include "languages/ShownTexts.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabBar>
#include <QTableView>

namespace zemo::test {

namespace {

constexpr int kRowsRead = 60;  // of a list

class Reader {
 public:
  std::vector<ShownText> texts;

  void Read(const QWidget& widget) {
    where_ =
        std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
    for (const QString& text : {widget.toolTip(), widget.accessibleName(), widget.statusTip(),
                                widget.accessibleDescription()})
      Add(text);
    ReadControl(widget);
    ReadList(widget);
  }
  void ReadMenu(const QList<QAction*>& entries) {
    for (const QAction* entry : entries) {
      where_ = "menu " + entry->objectName().toStdString();
      Add(entry->text().section(u'\t', 0, 0));
      if (entry->menu()) ReadMenu(entry->menu()->actions());
    }
  }
  void Add(QString text) {
    if (!text.isEmpty()) texts.push_back({where_, text.remove(u'&')});
  }

 private:
  void ReadControl(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) Add(label->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) Add(button->text());
    if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) Add(group->title());
    if (const auto* text = qobject_cast<const QPlainTextEdit*>(&widget)) Add(text->toPlainText());
    if (const auto* combo = qobject_cast<const QComboBox*>(&widget))
      for (int item = 0; item < combo->count(); ++item) {
        Add(combo->itemText(item));
        Add(combo->itemData(item, Qt::ToolTipRole).toString());
      }
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
      for (int tab = 0; tab < tabs->count(); ++tab) Add(tabs->tabText(tab));
    if (const auto* spinner = qobject_cast<const QSpinBox*>(&widget))
      for (const QString& text :
           {spinner->prefix(), spinner->suffix(), spinner->specialValueText()})
        Add(text);
    if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) {
      Add(box->placeholderText());
      if (box->echoMode() == QLineEdit::Normal) Add(box->text());
    }
    if (const auto* menus = qobject_cast<const QMenuBar*>(&widget)) ReadMenu(menus->actions());
    if (const auto* menu = qobject_cast<const QMenu*>(&widget)) ReadMenu(menu->actions());
  }
  void ReadList(const QWidget& widget) {
    const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
    if (!view || !view->model() || qobject_cast<const QHeaderView*>(view)) return;
    const QAbstractItemModel& model = *view->model();
    const int columns = model.columnCount(view->rootIndex());
    const auto* table = qobject_cast<const QTableView*>(view);
    for (int column = 0; column < columns; ++column) {
      if (table && table->isColumnHidden(column)) continue;
      Add(model.headerData(column, Qt::Horizontal).toString());
      Add(model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString());
      for (int row = 0; row < std::min(model.rowCount(view->rootIndex()), kRowsRead); ++row)
        Add(model.index(row, column, view->rootIndex()).data().toString());
    }
  }

  std::string where_ = "the window";
};

}  // namespace

std::vector<ShownText> ShownTexts(QWidget& window) {
  Reader reader;
  reader.Add(window.windowTitle());
  reader.Read(window);
  for (const QWidget* widget : window.findChildren<QWidget*>())
    if (widget->isVisibleTo(&window) && widget->window() == &window) reader.Read(*widget);
  return reader.texts;
}

}  // namespace zemo::test
