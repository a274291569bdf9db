// A grid of the model editor as a table: its row 0 is the head, a share is a colour the stronger
// the more it is, and a cell that the library cannot serve stands out.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <functional>

#include "station/ModelEditor.h"

namespace zemo {

// Rows of the grid from 1 on.
class ModelGridModel : public QAbstractTableModel {
 public:
  ModelGridModel(const ModelEditor& editor, ModelGrid kind, QObject* parent);
  void Renew();  // the grid is another

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  std::function<QString(int hour)> hourTip;           // of a head
  std::function<QString(GridPlace place)> supplyTip;  // of a cell, what the library gives for it
  std::function<bool(GridPlace place)> runsDry;       // nothing

 private:
  const TextGrid& Grid() const;
  bool IsTotal(int row) const;
  QVariant ColourBehind(GridPlace place) const;
  QVariant ColourOf(GridPlace place) const;

  const ModelEditor& editor_;
  const ModelGrid kind_;
  int rows_ = 0;
};

// Thread: the screen's.
class ModelGridView : public QTableView {
 public:
  ModelGridView(const ModelEditor& editor, ModelGrid kind, QWidget* parent);

  std::function<void(GridPlace place)> selected;  // by mouse or keys
  std::function<void(const QRect& cell)> popUp;   // asked for at the selected one, on the screen
  std::function<void(Qt::Key key)> pressed;       // Insert or Delete
  ModelGridModel& Model() { return *model_; }

  void Arrange(double unit);
  void ShowGrid();
  QModelIndex IndexOf(GridPlace place) const;

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void ArrangeColumns();
  bool TellSelected();  // false where no cell is selected
  void OpenPopUp();

  const ModelGrid kind_;
  ModelGridModel* model_;
  bool shows_ = false;  // the grid itself moves the selection
};

}  // namespace zemo
