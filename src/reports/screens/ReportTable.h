// A list of the report screen as a table, over the editor's own rows, of which nothing is copied:
// millions of them are shown as soon as they are read.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "reports/ReportEditor.h"
#include "ui/Translation.h"

namespace zemo {

// What a column needs: room for that text, or for its head; and its share of the room left.
struct ReportColumnRoom {
  const char* sample;
  int share;
};

// Lines count from 0.
struct ReportTableSource {
  const char* name;  // of the list
  std::vector<ReportColumnRoom> rooms;
  std::function<size_t()> count;
  std::function<std::string(size_t line, int column)> cell;
};

class ReportTableModel : public QAbstractTableModel {
 public:
  ReportTableModel(const ReportTableSource& source, const Translation& texts, QObject* parent);
  void Renew();  // the list has other rows, or in another order

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

 private:
  const ReportTableSource& source_;
  std::vector<QString> heads_;
  int rows_ = 0;
};

// A head sorts, and so does its entry of the context menu. Thread: the screen's.
class ReportTable : public QTableView {
 public:
  ReportTable(ReportTableSource source, const Translation& texts, QWidget* parent);
  std::function<void(int column)> sorted;
  std::function<void(size_t line)> chosen;  // by the operator's hand

  void Arrange(double unit);
  // The rows as the list has them now; `generation` is the list's.
  void ShowRows(uint64_t generation, const ListSorting& sorting);
  void Select(size_t line);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void ArrangeColumns();

  const ReportTableSource source_;
  const QString sortBy_;
  ReportTableModel* model_;
  uint64_t generation_ = ~uint64_t{0};
  bool showing_ = false;  // what changes is not the operator's hand
};

}  // namespace zemo
