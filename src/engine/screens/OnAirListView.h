// PL on the screen: choosing, dragging inside and from the browse list, quick delete by the right
// button, Delete, and the calls of the screens that a row opens. A drag is the view's own: no
// nested loop runs, so nothing on air waits for a held button.
#pragma once

#include <QLabel>
#include <QTableView>
#include <functional>

namespace zemo {

struct Station;
class OnAirListModel;

// What the view asks of its window, of a row by its key; places from 1.
struct OnAirListOrders {
  std::function<void(int64_t key)> deleteRow;   // Delete; may ask
  std::function<void(int64_t key)> rightClick;  // the quick delete
  std::function<void(int64_t key, int to)> drag;
  std::function<void(int64_t key)> openCard;      // Ctrl and a click
  std::function<void(int64_t key)> openSelector;  // double click
  std::function<void()> touched;                  // the list got the mouse
};

class OnAirListView : public QTableView {
 public:
  OnAirListView(OnAirListModel& model, OnAirListOrders orders, QWidget* parent);

  int SelectedRow() const;  // 0 for none
  void ShowRow(int row);    // scrolls to it, from 1; no row is chosen by that
  void SelectRow(int row);
  // Visible columns and their widths for this width of the view.
  void Arrange(double unit);

  // --- a drag over the list, its own or the browse list's ---
  // The row under the mouse, the row count and 1 below the last; 0 outside of the list.
  int DropRowAt(const QPoint& global) const;
  void ShowDrop(int row);  // 0 takes the mark away
  int ShownDrop() const { return dropRow_; }

  // Hidden labels of the drag: the row it began on, the row it ends on, and whether the press still
  // stands alone.
  QLabel* LblDepart;
  QLabel* LblArrivee;
  QLabel* Bloc;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  int RowAt(const QPoint& viewportPoint) const;
  int64_t SelectedKey() const;  // 0 for none
  void Drop(int row);
  void MoveSelected(int by);

  OnAirListModel& model_;
  OnAirListOrders orders_;
  QPoint pressed_;
  int64_t pressedKey_ = 0;  // of the row that a drag began on
  bool dragging_ = false;
  int dropRow_ = 0;
  double unit_ = 1;
};

}  // namespace zemo
