// The affidavit as a table: on the screen, on paper and as a spreadsheet.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "library/LibraryPrint.h"
#include "platform/Spreadsheet.h"
#include "traffic/Affidavit.h"

namespace zemo {

namespace DiffCol {
enum Column : int { kDue, kAired, kLate, kState, kWhy, kKind, kCampaign, kFile, kCount };
}  // namespace DiffCol

struct AffidavitTotals {
  size_t crosses = 0, aired = 0, missed = 0, toCome = 0, extras = 0, damaged = 0;
};
AffidavitTotals TotalsOf(const Affidavit& affidavit);
std::string TotalsInWords(const AffidavitTotals& totals, int langue);

// "+mm:ss", "-mm:ss" ahead of its minute.
std::string LateText(int64_t seconds);

enum class CrossState { kAired, kMissed, kToCome, kExtra, kDamaged };
struct AffidavitRow {
  CrossState state = CrossState::kAired;
  std::array<std::string, DiffCol::kCount> cells;
};
// The crosses by time, then what aired without one, then the damages; days as "dd/mm/yyyy".
std::vector<AffidavitRow> AffidavitRows(const Affidavit& affidavit, int langue);

// What stands above a table: who, from which day to which.
struct AffidavitHead {
  std::string advertiser, from, to;
};

// Pages for a fixed type, A4 across.
PrintedPages AffidavitPages(const AffidavitHead& head, const Affidavit& affidavit, int langue);

// A sheet of these rows below a line on all of them; those of kLate, seconds, and of kCampaign are
// numbers.
using AffidavitCells = std::array<std::string, DiffCol::kCount>;
Sheet AffidavitSheet(const std::string& line, const AffidavitCells& heads,
                     const std::vector<AffidavitCells>& rows);
Sheet AffidavitSheet(const AffidavitHead& head, const Affidavit& affidavit, int langue);

}  // namespace zemo
