// PL as a table: the twelve columns of the on-air list, row for row, with the list's own changes
// told to the views as what they are, so that selection and scroll position stay.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <array>
#include <vector>

#include "station/OnAirColumns.h"
#include "station/OnAirList.h"
#include "station/TrackNeighbours.h"

namespace zemo {

class OnAirListModel : public QAbstractTableModel {
 public:
  static constexpr int kCodeRole = Qt::UserRole;  // code of column 6, as a number

  static bool IsFigure(int column);  // stands to the right

  explicit OnAirListModel(QObject* parent) : QAbstractTableModel(parent) {}

  // What the list says of a voice track that does not stand where it was made for, by
  // NeighbourFault.
  using FaultTexts = std::array<QString, kNeighbourFaults>;
  // Before the first Sync: the rows are in the words of that language.
  void SetTexts(std::array<QString, kColumns> heads, FaultTexts faults, int langue);
  // Brings the table to what the list holds now, its planned times that much later, ms.
  void Sync(const OnAirList& list, int64_t planShiftMs);
  int64_t KeyOf(int row) const;  // of a row of the table, from 0; 0 for none

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  struct Row {
    int64_t key = 0;
    OnAirElement element;
    NeighbourFault fault = NeighbourFault::kNone;
    std::array<QString, kColumns> texts;
  };
  Row RowOf(const OnAirList& list, int row) const;  // from 1
  void RemoveGoneRows(const OnAirList& list);

  std::vector<Row> rows_;
  std::array<QString, kColumns> heads_;
  FaultTexts faults_;
  int langue_ = 0;
  int64_t planShiftMs_ = 0;
};

}  // namespace zemo
