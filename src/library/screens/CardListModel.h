// A list of cards for a table: over the editor's own rows, of which nothing is copied.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <string>
#include <vector>

#include "library/LibraryEditor.h"

namespace zemo {

// Which columns a list has, and what is done with them.
struct CardColumns {
  const char* list;           // PLDisco, ...
  int count;                  // columns
  std::vector<int> searched;  // by the search box
  std::vector<int> numbers;   // sorted by their value
};

class CardListModel : public QAbstractTableModel {
 public:
  // The list outlives the model.
  CardListModel(CardList& list, CardColumns columns, std::vector<QString> heads, QObject* parent);

  // Other rows than the views were told of, or in another order: tells them. True where there were.
  bool Follow();
  // The list's own rows take that order, which new rows of the list take as well.
  void SortBy(int column, Qt::SortOrder order);
  int SortColumn() const { return sortColumn_; }  // -1: as the list was filled
  Qt::SortOrder Order() const { return order_; }
  void Search(const QString& text);  // rows that hold it, in capitals or not

  // --- rows of the table and of the list, both from 0 ---
  size_t ListRow(int row) const { return shown_[static_cast<size_t>(row)]; }
  int TableRow(size_t listRow) const;  // -1: it is not shown
  int RowOfCode(int32_t code) const;   // of the table; -1: it is not shown
  bool IsShown(size_t listRow) const { return TableRow(listRow) >= 0; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

 private:
  void SortList();
  void Filter();
  void KeepCapitals();
  bool IsWanted(size_t listRow) const;

  CardList& list_;
  const CardColumns columns_;
  const std::vector<QString> heads_;
  std::vector<uint32_t> shown_;  // rows of the list, ascending
  int sortColumn_ = -1;
  Qt::SortOrder order_ = Qt::AscendingOrder;
  std::string wanted_;  // in capitals
  // The columns that are searched of each of the list's texts, in capitals.
  std::string capitals_;
  std::vector<uint32_t> capitalsEnd_;
  uint64_t generation_ = ~uint64_t{0};  // of the list, as the views were told of it
};

}  // namespace zemo
