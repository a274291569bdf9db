// CadreRech: the live mode's search and browse list, from where elements are dragged into PL.
#pragma once

#include <QAbstractTableModel>
#include <QFrame>
#include <QTableView>
#include <functional>
#include <vector>

#include "station/BrowseList.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zemo {

class OnAirListView;
struct Station;

// ListRech over the station's own rows: nothing is copied, so a library of any size shows at once.
class BrowseModel : public QAbstractTableModel {
 public:
  BrowseModel(const BrowseRows& browsed, QObject* parent)
      : QAbstractTableModel(parent), browsed_(browsed) {}
  void Reload();  // after whatever may have changed the rows
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  const BrowseRows& browsed_;
  int rows_ = 0;  // as the views were told
};

struct BrowseOrders {
  std::function<void(std::vector<int> rows, int row)> drop;  // at a row of PL, from 1
  std::function<void(int row)> clicked;                      // rows of ListRech, from 0
  std::function<void(int row)> openCard;
  std::function<void(int row)> openSelector;
  std::function<void(int column)> sort;
};

class BrowseView : public QTableView {
 public:
  BrowseView(BrowseModel& model, OnAirListView& list, BrowseOrders orders, QWidget* parent);
  std::vector<int> SelectedRows() const;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  OnAirListView& list_;
  BrowseOrders orders_;
  QPoint pressed_;
  bool pressedOnRow_ = false;
  bool dragging_ = false;
};

class LiveFrame : public QFrame {
 public:
  LiveFrame(Station& station, OnAirListView& list, BrowseOrders orders, QWidget* parent);

  void LoadGenres();  // of the station, into RechGenre
  void SetLanguage(int langue) { langue_ = langue; }
  void Arrange(double unit);
  void Refresh();
  void Browse(BrowseList list);  // as MenuLive's entry
  BrowseView& List() { return *ListRech; }

 private:
  void MakeControls();
  void LayOut();
  void Connect();
  void ArrangeColumns();

  Station& station_;
  BrowseModel* model_;
  int langue_ = 0;
  double unit_ = 1;
  QComboBox *MenuLive, *RechGenre;
  QLineEdit* Rech;
  QLabel *LblRech, *PictureNoJingle;
  QCheckBox *CheckExtrait, *OptionDirect, *CheckNoJingle;
  QPushButton* CmdMarqueurExtrait;
  BrowseView* ListRech;
  OnAirListView& list_;
};

}  // namespace zemo
