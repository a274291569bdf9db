#include "reports/ReportEditor.h"

#include <algorithm>

#include "reports/ReportFigures.h"

namespace zemo {

namespace {

// The columns of ListStat in those of the report; the plays stand in none.
constexpr std::array<int, StatCol::kCount> kReportColumn = {
    -1, RapCol::kArtist, RapCol::kTitle, RapCol::kGenre, RapCol::kVariety, RapCol::kLabel};

std::string FourDigits(uint32_t number) {
  const std::string digits = std::to_string(number);
  return std::string(4 - std::min<size_t>(digits.size(), 4), '0') + digits;
}

}  // namespace

int ReportColumnOf(int statColumn) {
  return kReportColumn[static_cast<size_t>(statColumn)];
}

std::string RotationList::Cell(size_t line, int column) const {
  if (column == StatCol::kPlays) return FourDigits(lines[line].plays);
  return rows->Cell(lines[line].row, ReportColumnOf(column));
}

uint64_t VarietyShares::Percent(size_t variety) const {
  return WholePercent(plays[variety], Total());
}

}  // namespace zemo
