// BtnStats: how often each title of the list ran, and how the list divides by the variety.
#include <optional>
#include <utility>

#include "library/LibraryHandler.h"
#include "platform/EventLoop.h"
#include "reports/ReportScreen.h"
#include "reports/ReportSorting.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kRowsBetweenPauses = 200000;

// The first varieties of the table; empty where it has not as many.
std::array<std::string, kVarietiesCounted> FirstVarieties(Station& station) {
  std::array<std::string, kVarietiesCounted> names;
  size_t read = 0;
  station.base.Db().ReadRows("SELECT VARIETE FROM Variete", [&](const RowView& row) {
    if (read < names.size()) names[read++] = Trim(row.Text(0));
  });
  return names;
}

// Every variety but the first counts with the second.
VarietyShares SharesOf(Station& station, const ReportRows& rows, const Pause& pause) {
  VarietyShares shares;
  shares.names = FirstVarieties(station);
  const TextNumbers& varieties = rows.Numbers(RapCol::kVariety);
  std::vector<std::optional<size_t>> counter;  // of each variety; none for the empty one
  for (uint32_t number = 0; number < varieties.Count(); ++number)
    counter.push_back(
        varieties.Text(number).empty()
            ? std::nullopt
            : std::optional<size_t>(varieties.Text(number) == shares.names[0] ? 0 : 1));
  for (size_t row = 0; row < rows.Count(); ++row) {
    if (row % kRowsBetweenPauses == kRowsBetweenPauses - 1) pause();
    if (const auto variety = counter[rows.Number(row, RapCol::kVariety)]) ++shares.plays[*variety];
  }
  return shares;
}

std::string SharesText(const VarietyShares& shares) {
  std::string text;
  for (size_t variety = 0; variety < kVarietiesCounted; ++variety) {
    if (variety > 0) text += "  ";
    text += std::to_string(shares.plays[variety]) + "  " + shares.names[variety] + " = " +
            std::to_string(shares.Percent(variety)) + " %";
  }
  return text + "  Total " + std::to_string(shares.Total());
}

// Rows of one title that lie side by side, whoever sings it, are one line; those without a title
// are none.
std::vector<Rotation> RotationsOf(const ReportList& list, const Pause& pause) {
  std::vector<Rotation> rotations;
  const ReportRows& rows = *list.rows;
  uint32_t plays = 0;
  for (size_t line = 0; line < list.Count(); ++line) {
    if (line % kRowsBetweenPauses == kRowsBetweenPauses - 1) pause();
    const uint32_t row = list.order[line];
    ++plays;
    const bool last =
        line + 1 == list.Count() ||
        rows.Number(list.order[line + 1], RapCol::kTitle) != rows.Number(row, RapCol::kTitle);
    if (!last) continue;
    if (!rows.Text(row, RapCol::kTitle).empty()) rotations.push_back({plays, row});
    plays = 0;
  }
  return rotations;
}

}  // namespace

void Report::CountSpan(Station& station, ReportEditor& editor) {
  if (editor.ListRap.Count() == 0) return;
  const ReportWork work(editor);
  const Pause pause = [&] { station.platform.loop.Yield(); };
  if (!SortReport(station, editor, RapCol::kVariety)) return;
  const std::shared_ptr<const ReportRows> rows = editor.ListRap.rows;
  VarietyShares shares = SharesOf(station, *rows, pause);
  if (editor.ListRap.rows != rows || !SortReport(station, editor, RapCol::kTitle)) return;
  const ReportList list = editor.ListRap;
  RotationList rotations;
  rotations.lines = RotationsOf(list, pause);
  if (editor.ListRap.rows != rows) return;
  rotations.rows = rows;
  rotations.generation = editor.ListStat.generation + 1;
  rotations.sorting.column = StatCol::kTitle;
  editor.ListStat = std::move(rotations);
  editor.LblStat = SharesText(shares);
  editor.shares = std::move(shares);
}

void Report::BtnStats_Click(Station& station, ReportEditor& editor) {
  HandleControl(station, "BtnStats", [&] { CountSpan(station, editor); });
}

}  // namespace zemo
