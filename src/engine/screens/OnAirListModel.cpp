#include "engine/screens/OnAirListModel.h"

#include <set>
#include <utility>

#include "station/OperatorWords.h"
#include "ui/Theme.h"

namespace zemo {

namespace {
const QString kFaultMark = QStringLiteral("! ");

int AlignmentOf(int column) {
  return static_cast<int>((OnAirListModel::IsFigure(column) ? Qt::AlignRight : Qt::AlignLeft) |
                          Qt::AlignVCenter);
}
}  // namespace

bool OnAirListModel::IsFigure(int column) {
  return column == Col::kLength || column == Col::kIntro || column == Col::kExitMs;
}

OnAirListModel::Row OnAirListModel::RowOf(const OnAirList& list, int at) const {
  const OnAirRow& row = list.Row(at);
  Row made{row.key, row.AsElement(), FaultOfRow(list, at), {}};
  OnAirElement shown = row.AsElement();
  if (shown.plannedMs) *shown.plannedMs += static_cast<double>(planShiftMs_);
  Cells cells = ColumnsOf(shown);
  cells[Col::kTitle] = TitleInWords(row.code, cells[Col::kTitle], langue_);
  if (row.code < 0) cells[Col::kGenre] = InOperatorsWords(cells[Col::kGenre], langue_);
  for (size_t column = 0; column < kColumns; ++column)
    made.texts[column] = QString::fromStdString(cells[column]);
  if (made.fault != NeighbourFault::kNone) made.texts[Col::kTitle].prepend(kFaultMark);
  return made;
}

void OnAirListModel::SetTexts(std::array<QString, kColumns> heads, FaultTexts faults, int langue) {
  heads_ = std::move(heads);
  faults_ = std::move(faults);
  langue_ = langue;
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, kColumns - 1);
}

void OnAirListModel::RemoveGoneRows(const OnAirList& list) {
  std::set<int64_t> keys;
  for (const OnAirRow& row : list) keys.insert(row.key);
  for (int row = static_cast<int>(rows_.size()) - 1; row >= 0; --row) {
    if (keys.count(rows_[static_cast<size_t>(row)].key) != 0) continue;
    beginRemoveRows({}, row, row);
    rows_.erase(rows_.begin() + row);
    endRemoveRows();
  }
}

// Keys only grow along with the rows put in, and a moved row has a new one, so what is left after
// the removals stands in the list's order. Only an order that is taken back moves rows with their
// keys: they are put in where they stand now, and what was left of them ends up behind the last
// row.
void OnAirListModel::Sync(const OnAirList& list, int64_t planShiftMs) {
  RemoveGoneRows(list);
  const bool shifted = std::exchange(planShiftMs_, planShiftMs) != planShiftMs;
  for (int row = 0; row < list.Count(); ++row) {
    const OnAirRow& wanted = list.Row(row + 1);
    const auto at = static_cast<size_t>(row);
    if (at >= rows_.size() || rows_[at].key != wanted.key) {
      beginInsertRows({}, row, row);
      rows_.insert(rows_.begin() + row, RowOf(list, row + 1));
      endInsertRows();
    } else if (shifted || rows_[at].element != wanted ||
               rows_[at].fault != FaultOfRow(list, row + 1)) {
      rows_[at] = RowOf(list, row + 1);
      Q_EMIT dataChanged(index(row, 0), index(row, kColumns - 1));
    }
  }
  const int rows = list.Count(), left = static_cast<int>(rows_.size());
  if (left == rows) return;
  beginRemoveRows({}, rows, left - 1);
  rows_.erase(rows_.begin() + rows, rows_.end());
  endRemoveRows();
}

int64_t OnAirListModel::KeyOf(int row) const {
  return row >= 0 && row < static_cast<int>(rows_.size()) ? rows_[static_cast<size_t>(row)].key : 0;
}

int OnAirListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int OnAirListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant OnAirListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= static_cast<int>(rows_.size())) return {};
  const Row& row = rows_[static_cast<size_t>(index.row())];
  switch (role) {
    case Qt::ToolTipRole:
      if (row.fault != NeighbourFault::kNone) return faults_[static_cast<size_t>(row.fault)];
      [[fallthrough]];
    case Qt::DisplayRole:
      return row.texts[static_cast<size_t>(index.column())];
    case kCodeRole:
      return row.element.code;
    case Qt::ForegroundRole:
      if (row.fault != NeighbourFault::kNone && index.column() == Col::kTitle) return Theme::kHeard;
      if (index.column() == Col::kGenre) return Theme::ColourOfElement(row.element.code);
      if (row.element.code == Element::kStartPlaylist ||
          row.element.code == Element::kEndPlaylist || row.element.code == Element::kBeginExtract)
        return Theme::kMarker;
      return {};
    case Qt::TextAlignmentRole:
      return AlignmentOf(index.column());
    default:
      return {};
  }
}

QVariant OnAirListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation == Qt::Horizontal && role == Qt::TextAlignmentRole) return AlignmentOf(section);
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return heads_[static_cast<size_t>(section)];
}

}  // namespace zemo
