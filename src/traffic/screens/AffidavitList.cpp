#include "traffic/screens/AffidavitList.h"

#include <string>

#include "ui/Theme.h"

namespace zemo {

namespace {

QColor ColourOf(CrossState state) {
  switch (state) {
    case CrossState::kAired:
      return Theme::kText;
    case CrossState::kMissed:
    case CrossState::kDamaged:
      return Theme::kNote;
    case CrossState::kToCome:
      return Theme::kDim;
    case CrossState::kExtra:
      return Theme::kNews;
  }
  return Theme::kText;
}

}  // namespace

AffidavitListModel::AffidavitListModel(const AffidavitEditor& editor, const Translation& texts,
                                       QObject* parent)
    : QAbstractTableModel(parent), editor_(editor), texts_(texts) {}

void AffidavitListModel::Renew() {
  beginResetModel();
  rows_ = static_cast<int>(editor_.ListDiff.size());
  endResetModel();
}

int AffidavitListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int AffidavitListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(DiffCol::kCount);
}

// Rows may have gone since the views were told of them.
QVariant AffidavitListModel::data(const QModelIndex& index, int role) const {
  const auto row = static_cast<size_t>(index.row());
  if (row >= editor_.ListDiff.size()) return {};
  const AffidavitRow& line = editor_.ListDiff[row];
  if (role == Qt::ForegroundRole) return ColourOf(line.state);
  if (role != Qt::DisplayRole) return {};
  return QString::fromStdString(line.cells[static_cast<size_t>(index.column())]);
}

QVariant AffidavitListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return texts_.Word("ListDiff." + std::to_string(section));
}

}  // namespace zemo
