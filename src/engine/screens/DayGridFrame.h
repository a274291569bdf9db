// The day's grid on the screen: GPubJour with its copy, print, preview and forecast buttons.
#pragma once

#include <QAbstractTableModel>
#include <QFrame>
#include <functional>
#include <string>
#include <vector>

#include "ui/Translation.h"

class QPushButton;
class QTableView;

namespace zemo {

class DayGrid;
struct MainScreen;
struct Questions;
struct Station;

// GPubJour as the composition leaves it; row 0 is the head. A row of the table is the grid's
// less 1.
class DayGridModel : public QAbstractTableModel {
 public:
  // What the composition wrote is shown in the operator's words.
  DayGridModel(const DayGrid& grid, Translation texts, QObject* parent)
      : QAbstractTableModel(parent), grid_(grid), texts_(texts) {}
  void Sync();  // nothing when the cells are as before
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  int UsedColumns() const { return used_; }

 private:
  const DayGrid& grid_;
  const Translation texts_;
  std::vector<std::vector<std::string>> shown_;
  int used_ = 4;  // columns that hold an element somewhere
};

struct DayGridOrders {
  std::function<int()> selectedRow;  // of PL, 0 for none
  std::function<void(const std::string& storedPath)> openSelector;
  std::function<void()> forecast;
  std::function<void(const QString&)> tell;  // a line at the bottom of the screen
};

class DayGridFrame : public QFrame {
 public:
  DayGridFrame(Station& station, const Questions& questions, DayGridOrders orders,
               Translation texts, QWidget* parent);
  void TakeFocus();
  void Arrange(double unit);
  void Refresh(const MainScreen& screen);
  int SelectedRow() const;  // of the grid, 0 for none

 private:
  void MakeControls();
  void Connect();
  void CopyBreak();
  void Preview();
  void Print();
  void OpenElement(int row, int column);

  Station& station_;
  const Questions& questions_;
  DayGridOrders orders_;
  DayGridModel* model_;
  const Translation texts_;
  double unit_ = 1;
  int arrangedColumns_ = 0;
  QTableView* GPubJour;
  QPushButton *BtnCopyPub, *BtnImpressionPub, *BtnPubJourX, *BtnPrevision;
};

}  // namespace zemo
