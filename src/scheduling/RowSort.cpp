#include "scheduling/RowSort.h"

#include <algorithm>

#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr size_t kKeyRows = 10000;    // a slice
constexpr size_t kRunRows = 8192;     // a sorted run
constexpr size_t kMergeRows = 40000;  // a slice, but never less than one pair of runs

uint64_t HeadOf(std::string_view key) {
  uint64_t head = 0;
  for (size_t i = 0; i < sizeof head; ++i)
    head = head << 8 | (i < key.size() ? static_cast<unsigned char>(key[i]) : 0U);
  return head;
}

}  // namespace

std::string_view RowSort::Key(uint32_t place) const {
  const uint32_t begin = place == 0 ? 0 : keyEnd_[place - 1];
  return std::string_view(keys_).substr(begin, keyEnd_[place] - begin);
}

bool RowSort::Before(const Entry& a, const Entry& b) const {
  return a.head != b.head ? a.head < b.head : Key(a.place) < Key(b.place);
}

bool RowSort::Slice() {
  if (entries_.size() < rows_.size()) {
    ReadKeys();
    if (rows_.size() > kRunRows) return false;
  }
  if (sorted_ < entries_.size()) {
    SortRun();
    if (entries_.size() > kRunRows) return false;
  }
  if (run_ == 0) run_ = kRunRows;
  if (run_ < entries_.size()) MergeRuns();
  return run_ >= entries_.size();
}

void RowSort::ReadKeys() {
  const size_t end = std::min(rows_.size(), entries_.size() + kKeyRows);
  for (size_t row = entries_.size(); row < end; ++row) {
    const std::string key = UpperLatin(rows_.Cell(row, column_));
    keys_ += key;
    keyEnd_.push_back(static_cast<uint32_t>(keys_.size()));
    entries_.push_back({HeadOf(key), static_cast<uint32_t>(row)});
  }
}

void RowSort::SortRun() {
  const size_t end = std::min(entries_.size(), sorted_ + kRunRows);
  std::stable_sort(entries_.begin() + static_cast<std::ptrdiff_t>(sorted_),
                   entries_.begin() + static_cast<std::ptrdiff_t>(end),
                   [this](const Entry& a, const Entry& b) { return Before(a, b); });
  sorted_ = end;
}

void RowSort::MergeRuns() {
  merged_.resize(entries_.size());
  const size_t size = entries_.size();
  for (size_t done = 0; done < kMergeRows && mergedTo_ < size;) {
    const size_t middle = std::min(size, mergedTo_ + run_);
    const size_t end = std::min(size, middle + run_);
    const auto at = [&](size_t row) { return entries_.begin() + static_cast<std::ptrdiff_t>(row); };
    std::merge(at(mergedTo_), at(middle), at(middle), at(end),
               merged_.begin() + static_cast<std::ptrdiff_t>(mergedTo_),
               [this](const Entry& a, const Entry& b) { return Before(a, b); });
    done += end - mergedTo_;
    mergedTo_ = end;
  }
  if (mergedTo_ < size) return;
  entries_.swap(merged_);
  run_ *= 2;
  mergedTo_ = 0;
}

std::vector<uint32_t> RowSort::Places() const {
  std::vector<uint32_t> places;
  places.reserve(entries_.size());
  for (const Entry& entry : entries_) places.push_back(entry.place);
  return places;
}

}  // namespace zemo
