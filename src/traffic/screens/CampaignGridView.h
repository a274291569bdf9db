// The grid of a campaign as a picture to paint: days above, moments on the left, both with their
// crosses counted, and a mark where the spot airs. Along the foot of a cell stands how full the
// break is already, and a ring where the advertiser has another campaign. Only what is in sight is
// drawn.
#pragma once

#include <QAbstractScrollArea>
#include <functional>
#include <vector>

#include "traffic/BreakLoads.h"
#include "traffic/CampaignGrid.h"
#include "traffic/CampaignMarking.h"
#include "ui/Translation.h"

class QHelpEvent;
class QPainter;

namespace zemo {

// A button that is let go marks as it is told (traffic/CampaignMarking.h); drawn over other cells
// while it is held it paints them all as the first. The arrows move the frame, and with Shift paint
// what they pass as the cell that they leave; space and Delete are the left and the right button on
// it, with the same keys. Thread: the screen's.
class CampaignGridView : public QAbstractScrollArea {
 public:
  // What it is given outlives the view.
  CampaignGridView(const CampaignForm& form, const BreakLoads& loads, const Translation& texts,
                   QWidget* parent);

  std::function<void(MouseButton button, bool shift, bool control, GridPlace place)> marked;
  std::function<void(const std::vector<GridPlace>& places, bool cross)> painted;
  std::function<bool()> takesMarks;

  void Arrange(double unit);
  void ShowGrid();                    // what the form holds
  QRect Cell(GridPlace place) const;  // in the viewport, where it may be out of sight
  GridPlace Frame() const { return frame_; }

 protected:
  void paintEvent(QPaintEvent*) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int, int) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  const TextGrid& Grid() const { return form_.GPub; }
  bool IsCross(GridPlace place) const;
  bool IsCell(GridPlace place) const;
  int Days() const { return GridColumns(Grid()) - kFirstDayColumn; }
  int Moments() const { return Grid().RowCount() - kFirstMomentRow; }
  int CrossesInRow(int row) const;
  int HeadHeight() const { return kHeadRows * headRow_; }
  int SideWidth() const { return moment_ + count_; }
  void Measure();
  // Cells of the grid, also of its heads; out of it {-1, -1}.
  GridPlace PlaceAt(const QPoint& point) const;
  struct Span {
    int first, last;
  };
  Span SeenColumns() const;
  Span SeenRows() const;
  void PaintCells(QPainter& painter) const;
  void PaintColumn(QPainter& painter, int column, Span rows) const;
  void PaintDays(QPainter& painter) const;
  void PaintMoments(QPainter& painter) const;
  void PaintTo(const QPoint& point);
  void Paint(const std::vector<GridPlace>& places, bool cross);
  void MoveFrame(GridPlace place);
  void StepFrame(GridPlace place, bool paints);
  bool MoveByKey(const QKeyEvent& event);  // false for a key that is none of theirs
  bool MarkByKey(const QKeyEvent& event);
  void ScrollTo(GridPlace place);
  void ShowTip(const QHelpEvent& help);
  QString DayLetter(int column) const;  // of its weekday; the grid's own is French
  QString DayTip(int column) const;
  QString CellTip(GridPlace place) const;

  static constexpr int kHeadRows = 4;  // month, day, weekday, crosses of the day

  const CampaignForm& form_;
  const BreakLoads& loads_;
  const Translation& texts_;
  GridPlace frame_{kFirstMomentRow, kFirstDayColumn};  // of the keyboard
  GridPlace pressed_;
  QPoint passed_;             // where the held mouse was last
  bool held_ = false;         // a button is
  bool paints_ = false;       // it was drawn over another cell
  bool paintsCross_ = false;  // else it empties
  int leastColumn_ = 20, column_ = 20, row_ = 19, headRow_ = 17, moment_ = 56, count_ = 34;
};

}  // namespace zemo
