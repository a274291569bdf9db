// The week on one sheet: a block a day, below each other. A block is a heading with the day and the
// hours, a line a genre (or a position of the skeleton), and for percentages a line of totals.
#include <array>

#include "library/LibraryMessages.h"
#include "library/LibraryScreen.h"
#include "platform/Spreadsheet.h"
#include "scheduling/ModelEditor.h"
#include "scheduling/ModelGrids.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr double kGenreColumn = 22, kPercentWidth = 6, kPositionWidth = 12;

// Writes downwards, a line at a time.
class SheetMaker {
 public:
  explicit SheetMaker(const char* name, double hourWidth) {
    sheet_.name = name;
    sheet_.columnWidths.assign(kHoursOfDay + 1, hourWidth);
    sheet_.columnWidths[0] = kGenreColumn;
  }
  void Put(int column, std::string text, SheetCell::Style style = SheetCell::Style::kPlain) {
    sheet_.cells.push_back({row_, column, std::move(text), 0, false, style});
  }
  void Put(int column, double number, SheetCell::Style style = SheetCell::Style::kPlain) {
    sheet_.cells.push_back({row_, column, {}, number, true, style});
  }
  void NextLine() { ++row_; }
  void DayHeading(int day) {
    Put(0, DayName(day), SheetCell::Style::kHeading);
    for (int hour = 0; hour < kHoursOfDay; ++hour)
      Put(hour + 1, HourLabel(hour), SheetCell::Style::kHeading);
    NextLine();
  }
  const Sheet& Made() const { return sheet_; }

 private:
  Sheet sheet_;
  int row_ = 0;
};

void ModelDay(Station& station, SheetMaker& sheet, int day) {
  std::array<double, kHoursOfDay> totals{};
  sheet.DayHeading(day);
  ForEachModelRow(station.base.Db(), day, [&](const RowView& row) {
    sheet.Put(0, std::string(row.Text(0)));
    for (int hour = 0; hour < kHoursOfDay; ++hour) {
      const double percent = row.Real(hour + 1);
      totals[static_cast<size_t>(hour)] += percent;
      sheet.Put(hour + 1, percent);
    }
    sheet.NextLine();
  });
  sheet.Put(0, std::string(kTotalText), SheetCell::Style::kTotal);
  for (int hour = 0; hour < kHoursOfDay; ++hour)
    sheet.Put(hour + 1, totals[static_cast<size_t>(hour)], SheetCell::Style::kTotal);
  sheet.NextLine();
  sheet.NextLine();
}

void SkeletonDay(Station& station, SheetMaker& sheet, int day) {
  int position = 0;
  sheet.DayHeading(day);
  ForEachPosition(station.base.Db(), day, [&](const RowView& row) {
    sheet.Put(0, double(++position));
    for (int hour = 0; hour < kHoursOfDay; ++hour)
      if (!row.Text(hour).empty()) sheet.Put(hour + 1, std::string(row.Text(hour)));
    sheet.NextLine();
  });
  sheet.NextLine();
}

template <typename WriteDay>
Sheet Week(Station& station, const char* name, double hourWidth, WriteDay writeDay) {
  SheetMaker sheet(name, hourWidth);
  for (int day = 1; day <= kDaysOfWeek; ++day) writeDay(station, sheet, day);
  return sheet.Made();
}

}  // namespace

bool Models::MnuExport_Click(Station& station, const std::string& path, SpreadsheetWriter& writer) {
  const bool skeleton = station.base.CnfBool(Cnf::kSquelette);
  try {
    writer.Write(SheetPath(path),
                 skeleton ? Week(station, "SqueletteSemaine", kPositionWidth, SkeletonDay)
                          : Week(station, "ModelsSemaine", kPercentWidth, ModelDay));
    return true;
  } catch (const std::exception& error) {
    LogCurrentException(station, skeleton ? "ExportSemaine" : "ExportModelSemaine");
    ShowNotWritten(station, error.what());
    return false;
  }
}

}  // namespace zemo
