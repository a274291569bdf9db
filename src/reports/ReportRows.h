// Rows of the broadcast report as the report screen lists them, packed: of a text that comes again
// only its number is kept, so that millions of rows fit and are sorted and counted as numbers.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zemo {

namespace RapCol {
enum Column : int {
  kDate,  // "dd/mm/yyyy"
  kTime,  // "hh:mm:ss", and in all rows but the last " - " and the time up to the next one
  kArtist,
  kTitle,
  kGenre,
  kVariety,
  kComposer,
  kLabel,
  kReference,
  kMoment,  // DATENUM
  kCount
};
inline constexpr size_t kTexts = kMoment;  // the columns ahead of it are texts of the base
}  // namespace RapCol

// Different texts, numbered from 0 as they came.
class TextNumbers {
 public:
  TextNumbers() = default;
  TextNumbers(const TextNumbers&) = delete;

  uint32_t NumberOf(std::string_view text);
  std::string_view Text(uint32_t number) const { return texts_[number]; }
  uint32_t Count() const { return static_cast<uint32_t>(texts_.size()); }

 private:
  std::deque<std::string> texts_;
  std::unordered_map<std::string_view, uint32_t> numbers_;  // of texts_
};

// Serves other events in the midst of a long piece of work.
using Pause = std::function<void()>;

// Thread: the logic's. Rows are counted from 0; once finished they stand by their moment, those of
// one moment in the order in which they were added.
class ReportRows {
 public:
  using Texts = std::array<std::string_view, RapCol::kTexts>;
  void Add(double moment, const Texts& texts);
  void Finish(const Pause& pause);  // behind the last one; gives the rows their gaps

  size_t Count() const { return rows_.size(); }
  std::string Cell(size_t row, int column) const;  // as the list shows it
  double Moment(size_t row) const { return rows_[row].moment; }
  // Of a text column. The time is without its gap.
  uint32_t Number(size_t row, int column) const {
    return rows_[row].texts[static_cast<size_t>(column)];
  }
  std::string_view Text(size_t row, int column) const {
    return Numbers(column).Text(Number(row, column));
  }
  const TextNumbers& Numbers(int column) const { return numbers_[static_cast<size_t>(column)]; }
  int32_t GapSec(size_t row) const { return rows_[row].gapSec; }  // less than a day; -1: none

 private:
  struct Row {
    double moment = 0;  // day serial
    int32_t gapSec = -1;
    std::array<uint32_t, RapCol::kTexts> texts{};
  };
  std::vector<Row> rows_;
  std::array<TextNumbers, RapCol::kTexts> numbers_;
  bool inOrder_ = true;
};

// Where each row of `order` stands once it is sorted by a column: texts as in a French dictionary,
// without regard to case, those of one spelling together; the moment by its number. Rows of one
// text keep their order.
std::vector<uint32_t> OrderBy(const ReportRows& rows, std::vector<uint32_t> order, int column,
                              const Pause& pause);

// The same of other items by a number each, ascending: their places in their new order.
std::vector<uint32_t> PlacesByNumber(const std::vector<uint32_t>& numbers);

// The place of each text of a column in a French dictionary, by the text's number.
std::vector<uint32_t> DictionaryPlaces(const TextNumbers& texts, const Pause& pause);

}  // namespace zemo
