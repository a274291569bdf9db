#include "reports/ReportSorting.h"

#include <algorithm>
#include <utility>

#include "platform/EventLoop.h"
#include "reports/ReportEditor.h"
#include "station/Station.h"

namespace zemo {

namespace {

Pause YieldOf(Station& station) {
  return [&station] { station.platform.loop.Yield(); };
}

template <typename Items>
void Rearrange(Items& items, const std::vector<uint32_t>& places) {
  Items arranged;
  arranged.reserve(places.size());
  for (const uint32_t place : places) arranged.push_back(items[place]);
  items = std::move(arranged);
}

template <typename List>
void TakeOrder(List& list, const ListSorting& sorting) {
  list.sorting = sorting;
  list.chosen.reset();
  ++list.generation;
}

template <typename List>
void Turned(List& list) {
  ListSorting sorting = list.sorting;
  sorting.down = !sorting.down;
  TakeOrder(list, sorting);
}

// What each title has in that column, as a number that orders it.
std::vector<uint32_t> NumbersIn(const RotationList& list, int column, const Pause& pause) {
  std::vector<uint32_t> numbers;
  numbers.reserve(list.Count());
  if (column == StatCol::kPlays) {
    for (const Rotation& line : list.lines) numbers.push_back(line.plays);
    return numbers;
  }
  const std::shared_ptr<const ReportRows> rows = list.rows;
  const std::vector<Rotation> lines = list.lines;
  const int reportColumn = ReportColumnOf(column);
  const std::vector<uint32_t> places = DictionaryPlaces(rows->Numbers(reportColumn), pause);
  for (const Rotation& line : lines)
    numbers.push_back(places[rows->Number(line.row, reportColumn)]);
  return numbers;
}

}  // namespace

bool SortReport(Station& station, ReportEditor& editor, int column) {
  ReportList& list = editor.ListRap;
  const uint64_t generation = list.generation;
  const std::shared_ptr<const ReportRows> rows = list.rows;
  std::vector<uint32_t> order = OrderBy(*rows, list.order, column, YieldOf(station));
  if (list.generation != generation) return false;
  list.order = std::move(order);
  TakeOrder(list, {.column = column});
  return true;
}

bool SortRotations(Station& station, ReportEditor& editor, int column) {
  RotationList& list = editor.ListStat;
  const uint64_t generation = list.generation;
  const std::vector<uint32_t> numbers = NumbersIn(list, column, YieldOf(station));
  if (list.generation != generation) return false;
  Rearrange(list.lines, PlacesByNumber(numbers));
  TakeOrder(list, {.column = column});
  return true;
}

void TurnReport(ReportEditor& editor) {
  std::reverse(editor.ListRap.order.begin(), editor.ListRap.order.end());
  Turned(editor.ListRap);
}

void TurnRotations(ReportEditor& editor) {
  std::reverse(editor.ListStat.lines.begin(), editor.ListStat.lines.end());
  Turned(editor.ListStat);
}

}  // namespace zemo
