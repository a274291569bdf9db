// The on-air list PL: the ordered queue of what will be played next, as rows of twelve texts.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace zemo {

// Columns of a row. Numbers stand in them as text and are read with Val (lenient).
namespace Col {
enum Column : int {
  kText = 0,    // title line
  kSecond = 1,  // second line; a voice track's VT code
  kLength = 2,  // "mm:ss"
  kKind = 3,    // GENRE, or the kind's word; no logic tests it for the kinds
  kVariety = 4,
  kFile = 5,     // stored path
  kCode = 6,     // element code, see Element
  kPlanned = 7,  // planned start, "hh h mm ' ss"
  kLengthMs = 8,
  kExitMs = 9,  // exit point, ms before the end
  kIntro = 10,  // seconds; for a voice track its START in ms
  kLastPlayed = 11
};
}  // namespace Col

// Element codes of column 6; above 0 stands a music card's CODE.
namespace Element {
enum Code : int32_t {
  kJingle = -1,
  kSpot = -2,
  kHourPip = -3,
  kNews = -4,
  kOther = -5,
  kBeginExtract = -6,
  kStartPlaylist = -10,
  kEndPlaylist = -20,
  kVoiceTrack = -30
};
}  // namespace Element

inline constexpr int kColumns = 12;
using Cells = std::array<std::string, kColumns>;

struct OnAirRow {
  Cells cells;
  int64_t key = 0;  // row key, unique for the run

  const std::string& operator[](int column) const { return cells[static_cast<size_t>(column)]; }
  std::string& operator[](int column) { return cells[static_cast<size_t>(column)]; }
  int32_t Code() const;     // column 6
  double LengthMs() const;  // column 8
  double ExitMs() const;    // column 9
};

// Rows are counted from 1, as the operator counts them. Writers: the tick, the requests and
// inserters, the operator. Thread: the logic's.
class OnAirList {
 public:
  int Count() const { return static_cast<int>(rows_.size()); }
  bool Empty() const { return rows_.empty(); }
  OnAirRow& Row(int row) { return rows_[static_cast<size_t>(row - 1)]; }
  const OnAirRow& Row(int row) const { return rows_[static_cast<size_t>(row - 1)]; }
  OnAirRow& Add(Cells cells);              // at the end
  OnAirRow& Insert(int row, Cells cells);  // before that row; past the end: at the end
  void InsertAll(int row, std::vector<Cells> cells);  // the first one before that row
  void Remove(int row);
  void Clear() { rows_.clear(); }      // the key counter runs on
  std::vector<int32_t> Codes() const;  // column 6 of every row
  int RowOfKey(int64_t key) const;     // 0 when it has gone
  auto begin() const { return rows_.begin(); }
  auto end() const { return rows_.end(); }

 private:
  std::vector<OnAirRow> rows_;
  int64_t nextKey_ = 1;
};

}  // namespace zemo
