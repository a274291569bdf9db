// PLDisco filled in slices, each short enough to stand between two ticks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "library/CardList.h"

namespace zemo {

class Database;
class RowView;

// All music cards with an artist, by artist, and by number where that is the same. Thread: the
// logic's.
class MusicListFill {
 public:
  static constexpr int kSliceRows = 2000;  // 6 ms on the machines that we know

  // What stands in the list stays until all cards are read; then the new rows stand in its place,
  // none selected. The list outlives the filling.
  explicit MusicListFill(CardList& list) : list_(list) {}

  // One slice; true once the list has all. Throws StoreError: what was read stays, and it can be
  // called again.
  bool Slice(Database& db);

 private:
  void ReadRun(Database& db);
  bool MergeIsDue() const;
  void MergeLastRuns();
  bool Before(uint32_t a, uint32_t b) const;  // numbers of texts
  std::vector<uint32_t>::iterator At(size_t row) {
    return filled_.order.begin() + static_cast<std::ptrdiff_t>(row);
  }

  CardList& list_;
  CardList filled_;           // all that was read, in runs that are sorted
  std::vector<size_t> runs_;  // the first row of each
  bool complete_ = false;     // all are read
  int64_t lastCode_ = std::numeric_limits<int64_t>::min();  // of the row read last
};

// --- a row of PLDisco: what a query for it asks of Discotheque, and its cells of that ---
inline constexpr const char* kMusicRowColumns =
    "Auteur, Titre, Duree, Genre, Variete, Code, Lastdiff";
Cells MusicCells(const RowView& row);

}  // namespace zemo
