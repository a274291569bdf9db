#include "station/OnAirColumns.h"

#include <cstdint>
#include <optional>

#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

std::string NumberText(const std::optional<int64_t>& number) {
  return number ? std::to_string(*number) : std::string();
}

// A title of which nobody knows the length has the dashes too.
std::string LengthText(const OnAirElement& element) {
  if (!element.lengthMs && element.code <= 0) return {};
  return FormatDuration(element.lengthMs.value_or(0));
}

}  // namespace

std::string ColumnText(const OnAirElement& element, int column) {
  switch (column) {
    case Col::kTitle:
      return element.title;
    case Col::kSecond:
      return element.secondLine;
    case Col::kLength:
      return LengthText(element);
    case Col::kGenre:
      return element.genre;
    case Col::kVariety:
      return element.variety;
    case Col::kFile:
      return element.file;
    case Col::kCode:
      return std::to_string(element.code);
    case Col::kPlanned:
      return element.plannedMs ? PlannedTimeText(*element.plannedMs) : std::string();
    case Col::kLengthMs:
      return element.liesOver ? "0" : NumberText(element.lengthMs);
    case Col::kExitMs:
      return NumberText(element.exitMs);
    case Col::kIntro:
      return NumberText(element.liesOver ? element.startMs : element.introSec);
    case Col::kLastPlayed:
      return LastPlayedText(element.lastPlayed);
    default:
      return {};
  }
}

Cells ColumnsOf(const OnAirElement& element) {
  Cells cells;
  for (int column = 0; column < kColumns; ++column)
    cells[static_cast<size_t>(column)] = ColumnText(element, column);
  return cells;
}

}  // namespace zemo
