// A list of cards beside the card: a box that searches as one types, and the rows, which a click on
// a head sorts. It keeps its place and its selection over whatever happens to the cards.
#pragma once

#include <QTableView>
#include <QWidget>
#include <functional>
#include <unordered_set>
#include <vector>

#include "library/screens/CardListModel.h"
#include "ui/RowTable.h"

class QItemSelection;
class QLineEdit;
class QPushButton;

namespace zemo {

class Translation;

// What a column needs: room for that text, or for its head; and its share of the room left.
struct CardColumnRoom {
  const char* sample;
  int share;
};

struct CardListOrders {
  // Other rows of the list, from 0, the one that was clicked last at the end.
  std::function<void(const std::vector<size_t>& rows)> choose;
  std::function<void()> showCard;  // in place of the list, where there is room for one of both
};

class CardTable : public QTableView {
 public:
  using QTableView::QTableView;
  std::function<void()> showCard;  // Return, or a double click on a row
  std::function<void()> resized;   // the room of its rows

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool viewportEvent(QEvent* event) override;
};

class CardListPane : public QWidget {
 public:
  // `search` is the name of the search box. The list outlives the pane.
  CardListPane(CardList& list, const CardColumns& columns, std::vector<CardColumnRoom> rooms,
               const char* search, CardListOrders orders, const Translation& texts,
               QWidget* parent);

  void Arrange(double unit);
  // The rows as the list has them now. `code` is the card shown: it is the row selected, unless it
  // is one of several that are.
  void ShowRows(int32_t code);
  void ShowBack(bool shown);  // the way back to the card
  void TakeFocus();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Choose();
  void Sort(int column);
  void Search(const QString& text);
  void KeepCodes();
  void SelectKept(int32_t code);
  void ShowSelection(int currentRow);
  void ArrangeColumns();
  void ArrangeRows();

  CardList& list_;
  CardListModel* model_;
  const std::vector<CardColumnRoom> rooms_;
  CardListOrders orders_;
  QLineEdit* search_;
  QPushButton* BtnFiche;
  CardTable* table_;
  std::unordered_set<int32_t> selected_;  // codes
  bool showing_ = false;                  // what changes is not the operator's hand
};

}  // namespace zemo
