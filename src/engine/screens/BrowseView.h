// ListRech on the screen: what was found or is browsed, from where elements are dragged into PL. A
// drag is the view's own: no nested loop runs. What the mouse does, the keys do too, by the menu of
// the Menu key.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <functional>
#include <vector>

#include "station/BrowseList.h"
#include "ui/Translation.h"

namespace zemo {

class OnAirListView;

// Over the station's own rows: nothing is copied, and nothing is asked of the base.
class BrowseModel : public QAbstractTableModel {
 public:
  BrowseModel(const BrowseRows& browsed, Translation texts, QObject* parent)
      : QAbstractTableModel(parent), browsed_(browsed), texts_(texts) {}
  bool Others() const { return generation_ != browsed_.rows.Generation(); }  // than were told of
  // Tells the views what has happened to the rows; true when they are others than before.
  bool Follow();
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;
  const BrowseRows& Browsed() const { return browsed_; }

 private:
  const BrowseRows& browsed_;
  const Translation texts_;
  int rows_ = 0;             // as the views were told
  uint64_t generation_ = 0;  // of the rows that they were told of
};

struct BrowseOrders {
  std::function<void(std::vector<int> rows, int row)> drop;  // at a row of PL, from 1; 0: the end
  std::function<void(int row)> clicked;                      // rows of ListRech, from 0
  std::function<void()> selected;                            // another row, or none
  std::function<void(int row)> openCard;
  std::function<void(int row)> openSelector;
  std::function<void(int column)> sort;
  std::function<void(const QString&)> tell;  // a line at the bottom of the screen
};

class BrowseView : public QTableView {
 public:
  BrowseView(BrowseModel& model, OnAirListView& list, BrowseOrders orders, Translation texts,
             QWidget* parent);
  std::vector<int> SelectedRows() const;
  int ChosenRow() const;      // the current one of the selected; -1 for none
  void Arrange(double unit);  // type and columns for the list that is browsed
  void ShowSort();            // the arrow over the column that the rows are sorted by

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void selectionChanged(const QItemSelection& now, const QItemSelection& before) override;

 private:
  void ArrangeColumns();
  int LeastWidth(int column) const;
  void ShowMenu();

  BrowseModel& model_;
  OnAirListView& list_;
  BrowseOrders orders_;
  const Translation texts_;
  double unit_ = 1;
  QPoint pressed_;
  bool pressedOnRow_ = false;
  bool reduce_ = false;  // the press stood on one of several selected rows
  bool dragging_ = false;
};

}  // namespace zemo
