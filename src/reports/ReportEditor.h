// The report screen without its window: what it shows, under the names of its controls. What its
// controls do: reports/ReportScreen.h.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "reports/ReportRows.h"

namespace zemo {

inline constexpr size_t kVarietiesCounted = 2;

namespace StatCol {
enum Column : int { kPlays, kArtist, kTitle, kGenre, kVariety, kLabel, kCount };
}  // namespace StatCol
int ReportColumnOf(int statColumn);  // the RapCol of all but kPlays

// By which column a list was sorted last.
struct ListSorting {
  std::optional<int> column{};  // none: as the list was made
  bool down = false;
  bool byHead = false;  // by a click on the column's head
};

// Rows of the span in the order in which they are listed.
struct ReportList {
  std::shared_ptr<const ReportRows> rows = std::make_shared<const ReportRows>();
  std::vector<uint32_t> order;  // numbers of `rows`
  uint64_t generation = 0;      // counts up with other rows and with another order
  ListSorting sorting;
  std::optional<size_t> chosen{};

  size_t Count() const { return order.size(); }
  std::string Cell(size_t line, int column) const { return rows->Cell(order[line], column); }
};

// A title that ran, with what stands in the last of its rows.
struct Rotation {
  uint32_t plays = 0;
  uint32_t row = 0;  // of the report's rows
};

struct RotationList {
  std::shared_ptr<const ReportRows> rows = std::make_shared<const ReportRows>();
  std::vector<Rotation> lines;
  uint64_t generation = 0;
  ListSorting sorting;
  std::optional<size_t> chosen{};

  size_t Count() const { return lines.size(); }
  std::string Cell(size_t line, int column) const;
};

// How the span divides between the first variety of the station and all others.
struct VarietyShares {
  std::array<std::string, kVarietiesCounted> names;
  std::array<uint64_t, kVarietiesCounted> plays{};

  uint64_t Total() const { return plays[0] + plays[1]; }
  uint64_t Percent(size_t variety) const;  // as WholePercent has it
};

// Thread: the logic's. Owner: the window, a script, a test or a command; it outlives every routine
// that works on it, the yields inside of them included. Writers: its owner (what was typed and
// chosen) and the routines.
struct ReportEditor {
  bool open = false;
  std::string LblDate, LblDateFin;  // "dd/mm/yyyy"; the last day empty: the first alone
  std::string FiltreArtiste, FiltreGenre, FiltreVariete;  // beginnings; blank: all
  ReportList ListRap;
  RotationList ListStat;
  std::string LblCompteur, LblStat;       // in the routines' words
  std::optional<VarietyShares> shares{};  // what LblStat tells; none before BtnStats

  // Called when rows are listed while a routine goes on; none: nobody looks meanwhile.
  std::function<void()> listed{};

  // CODE of the report's first and last row as of the list: with the same ones nothing came or
  // went.
  std::array<int64_t, 2> ends{};
  uint64_t readings = 0;  // wished so far; another one ends the one at work
  bool reading = false;   // one is at work
  bool readAnew = false;  // and begins anew behind its end
  int working = 0;        // routines at work that yield: this must not be destroyed meanwhile
};

// Holds `working` over a routine that yields.
class ReportWork {
 public:
  explicit ReportWork(ReportEditor& editor) : editor_(editor) { ++editor_.working; }
  ~ReportWork() { --editor_.working; }
  ReportWork(const ReportWork&) = delete;

 private:
  ReportEditor& editor_;
};

}  // namespace zemo
