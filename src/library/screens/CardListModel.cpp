#include "library/screens/CardListModel.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <utility>

#include "station/TextForms.h"
#include "store/Collation.h"

namespace zemo {

namespace {
constexpr char kBetweenCells = '\n';  // no text that is searched for holds it

bool Has(const std::vector<int>& columns, int column) {
  return std::find(columns.begin(), columns.end(), column) != columns.end();
}
}  // namespace

CardListModel::CardListModel(CardList& list, CardColumns columns, std::vector<QString> heads,
                             QObject* parent)
    : QAbstractTableModel(parent),
      list_(list),
      columns_(std::move(columns)),
      heads_(std::move(heads)) {}

bool CardListModel::Follow() {
  if (list_.generation == generation_) return false;
  beginResetModel();
  capitals_.clear();
  capitalsEnd_.clear();
  if (sortColumn_ >= 0) SortList();
  Filter();
  endResetModel();
  return true;
}

void CardListModel::SortBy(int column, Qt::SortOrder order) {
  beginResetModel();
  sortColumn_ = column;
  order_ = order;
  SortList();
  Filter();
  endResetModel();
}

void CardListModel::Search(const QString& text) {
  std::string wanted = UpperLatin(text.trimmed().toStdString());
  if (wanted == wanted_) return;
  beginResetModel();
  wanted_ = std::move(wanted);
  Filter();
  endResetModel();
}

// The selection moves with its rows.
void CardListModel::SortList() {
  const size_t count = list_.Count();
  const bool number = Has(columns_.numbers, sortColumn_);
  std::vector<std::pair<int64_t, std::string_view>> keys(count);
  for (size_t row = 0; row < count; ++row) {
    keys[row].second = list_.Cell(row, sortColumn_);
    if (number) keys[row].first = ValInt(std::string(keys[row].second));
  }
  const auto less = [&](uint32_t a, uint32_t b) {
    return number ? keys[a].first < keys[b].first
                  : CompareFrenchOrder(keys[a].second, keys[b].second) < 0;
  };
  std::vector<uint32_t> places(count);
  std::iota(places.begin(), places.end(), 0U);
  std::stable_sort(places.begin(), places.end(), [&](uint32_t a, uint32_t b) {
    return order_ == Qt::AscendingOrder ? less(a, b) : less(b, a);
  });
  list_.Reorder(places);
}

void CardListModel::KeepCapitals() {
  for (auto text = static_cast<uint32_t>(capitalsEnd_.size()); text < list_.texts.Count(); ++text) {
    for (const int column : columns_.searched)
      capitals_ += UpperLatin(list_.texts.Cell(text, column)) + kBetweenCells;
    capitalsEnd_.push_back(static_cast<uint32_t>(capitals_.size()));
  }
}

bool CardListModel::IsWanted(size_t listRow) const {
  if (wanted_.empty()) return true;
  const uint32_t text = list_.order[listRow];
  const uint32_t begin = text == 0 ? 0 : capitalsEnd_[text - 1];
  const std::string_view capitals(capitals_.data() + begin, capitalsEnd_[text] - begin);
  return capitals.find(wanted_) != std::string_view::npos;
}

void CardListModel::Filter() {
  KeepCapitals();
  shown_.clear();
  for (size_t row = 0; row < list_.Count(); ++row)
    if (IsWanted(row)) shown_.push_back(static_cast<uint32_t>(row));
  generation_ = list_.generation;
}

int CardListModel::TableRow(size_t listRow) const {
  const auto found = std::lower_bound(shown_.begin(), shown_.end(), listRow);
  return found != shown_.end() && *found == listRow ? static_cast<int>(found - shown_.begin()) : -1;
}

int CardListModel::RowOfCode(int32_t code) const {
  for (size_t row = 0; row < shown_.size(); ++row)
    if (shown_[row] < list_.Count() && list_.Code(shown_[row]) == code)
      return static_cast<int>(row);
  return -1;
}

int CardListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int CardListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_.count;
}

// Rows may have gone since the views were told of them: a deletion yields behind each.
QVariant CardListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole || ListRow(index.row()) >= list_.Count())
    return {};
  const std::string_view text = list_.Cell(ListRow(index.row()), index.column());
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QVariant CardListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return heads_[static_cast<size_t>(section)];
}

}  // namespace zemo
