#include "reports/ReportRows.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "reports/SliceSort.h"
#include "station/TextForms.h"
#include "store/Collation.h"
#include "store/Value.h"

namespace zemo {

namespace {

constexpr int64_t kDaySec = 86400;

int32_t GapBetween(double moment, double next) {
  return static_cast<int32_t>(std::llround((next - moment) * static_cast<double>(kDaySec)) %
                              kDaySec);
}

std::vector<uint32_t> Counting(size_t count) {
  std::vector<uint32_t> numbers(count);
  std::iota(numbers.begin(), numbers.end(), 0);
  return numbers;
}

}  // namespace

uint32_t TextNumbers::NumberOf(std::string_view text) {
  if (const auto found = numbers_.find(text); found != numbers_.end()) return found->second;
  const uint32_t number = Count();
  numbers_.emplace(texts_.emplace_back(text), number);
  return number;
}

void ReportRows::Add(double moment, const Texts& texts) {
  inOrder_ = inOrder_ && (rows_.empty() || rows_.back().moment <= moment);
  Row& row = rows_.emplace_back();
  row.moment = moment;
  for (size_t column = 0; column < texts.size(); ++column)
    row.texts[column] = numbers_[column].NumberOf(texts[column]);
}

void ReportRows::Finish(const Pause& pause) {
  if (!std::exchange(inOrder_, true))
    SortInSlices(
        rows_, [](const Row& a, const Row& b) { return a.moment < b.moment; }, pause);
  for (size_t row = 0; row + 1 < rows_.size(); ++row)
    rows_[row].gapSec = GapBetween(rows_[row].moment, rows_[row + 1].moment);
}

std::string ReportRows::Cell(size_t row, int column) const {
  if (column == RapCol::kMoment) return AsText(Value(Moment(row)));
  std::string text(Text(row, column));
  if (column == RapCol::kTime && GapSec(row) >= 0)
    text += " - " + ClockText(int64_t{GapSec(row)} * 1000);
  return text;
}

std::vector<uint32_t> PlacesByNumber(const std::vector<uint32_t>& numbers) {
  if (numbers.empty()) return {};
  std::vector<uint32_t> begins(*std::max_element(numbers.begin(), numbers.end()) + size_t{2});
  for (const uint32_t number : numbers) ++begins[size_t{number} + 1];
  std::partial_sum(begins.begin(), begins.end(), begins.begin());
  std::vector<uint32_t> places(numbers.size());
  for (uint32_t item = 0; item < numbers.size(); ++item) places[begins[numbers[item]]++] = item;
  return places;
}

std::vector<uint32_t> DictionaryPlaces(const TextNumbers& texts, const Pause& pause) {
  std::vector<uint32_t> sorted = Counting(texts.Count());
  const auto before = [&](uint32_t a, uint32_t b) {
    const int order = CompareFrenchOrder(texts.Text(a), texts.Text(b));
    return order != 0 ? order < 0 : texts.Text(a) < texts.Text(b);
  };
  SortInSlices(sorted, before, pause);
  std::vector<uint32_t> places(sorted.size());
  for (uint32_t place = 0; place < sorted.size(); ++place) places[sorted[place]] = place;
  return places;
}

namespace {

template <typename NumberOfRow>
std::vector<uint32_t> SortedBy(const std::vector<uint32_t>& order, NumberOfRow numberOf,
                               const Pause& pause) {
  constexpr size_t kRowsBetweenPauses = 200000;
  std::vector<uint32_t> numbers;
  numbers.reserve(order.size());
  for (const uint32_t row : order) {
    numbers.push_back(numberOf(row));
    if (numbers.size() % kRowsBetweenPauses == 0) pause();
  }
  std::vector<uint32_t> sorted = PlacesByNumber(numbers);
  if (order.size() > kRowsBetweenPauses) pause();
  for (uint32_t& place : sorted) place = order[place];
  return sorted;
}

}  // namespace

std::vector<uint32_t> OrderBy(const ReportRows& rows, std::vector<uint32_t> order, int column,
                              const Pause& pause) {
  if (column == RapCol::kMoment) return Counting(order.size());
  if (column == RapCol::kTime)
    order = SortedBy(
        order, [&](uint32_t row) { return static_cast<uint32_t>(rows.GapSec(row) + 1); }, pause);
  const std::vector<uint32_t> places = DictionaryPlaces(rows.Numbers(column), pause);
  return SortedBy(
      order, [&](uint32_t row) { return places[rows.Number(row, column)]; }, pause);
}

}  // namespace zemo
