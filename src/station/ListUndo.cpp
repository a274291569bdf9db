#include "station/ListUndo.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "station/PlanTimes.h"
#include "station/Station.h"

namespace zemo {

namespace {

std::vector<int64_t> KeysOf(const OnAirList& list) {
  std::vector<int64_t> keys;
  for (const OnAirRow& row : list) keys.push_back(row.key);
  return keys;
}

// Keys, before the order, of the rows that have left PL since: they have aired.
std::set<int64_t> AiredSince(const ListUndo& undo, const OnAirList& now) {
  std::set<int64_t> aired;
  for (const int64_t key : undo.after) {
    if (now.RowOfKey(key) != 0) continue;
    aired.insert(key);
    for (const auto& [before, behind] : undo.moved)
      if (behind == key) aired.insert(before);
  }
  return aired;
}

// Puts each row that came since the order behind the one that it stands behind.
void KeepPlaces(std::vector<OnAirRow>& rows, const OnAirList& now,
                const std::vector<int64_t>& after) {
  const std::set<int64_t> known(after.begin(), after.end());
  size_t place = 0;
  for (const OnAirRow& row : now) {
    const bool came = known.count(row.key) == 0;
    if (came) rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(place), row);
    const auto at = std::find_if(rows.begin(), rows.end(),
                                 [&](const OnAirRow& kept) { return kept.key == row.key; });
    if (at != rows.end()) place = static_cast<size_t>(std::distance(rows.begin(), at)) + 1;
  }
}

}  // namespace

ListOrder::ListOrder(Station& station, Panel panel) : station_(station) {
  undo_.before.assign(station.PL.begin(), station.PL.end());
  if (panel == Panel::kChanges) undo_.panel = station.storedList;
}

ListOrder::~ListOrder() {
  undo_.after = KeysOf(station_.PL);
  const bool same =
      std::equal(undo_.before.begin(), undo_.before.end(), undo_.after.begin(), undo_.after.end(),
                 [](const OnAirRow& row, int64_t key) { return row.key == key; });
  const bool samePanel = !undo_.panel || *undo_.panel == station_.storedList;
  if (!same || !samePanel) station_.listUndo = std::move(undo_);
}

void ListOrder::Moved(int64_t keyBefore, int64_t keyBehind) {
  undo_.moved.emplace_back(keyBefore, keyBehind);
}

void ListOrder::Forget(int64_t key) {
  std::erase_if(undo_.before, [&](const OnAirRow& row) { return row.key == key; });
}

bool UndoListOrder(Station& station) {
  if (!station.listUndo) return false;
  const ListUndo undo = *station.listUndo;
  const std::set<int64_t> aired = AiredSince(undo, station.PL);
  std::vector<OnAirRow> rows = undo.before;
  std::erase_if(rows, [&](const OnAirRow& row) { return aired.count(row.key) != 0; });
  KeepPlaces(rows, station.PL, undo.after);
  {
    ListOrder order(station, undo.panel ? ListOrder::Panel::kChanges : ListOrder::Panel::kStays);
    for (const auto& [before, behind] : undo.moved) order.Moved(behind, before);
    station.PL.Restore(std::move(rows));
    if (undo.panel) {
      const bool open = station.storedList.open;
      station.storedList = *undo.panel;
      station.storedList.open = open;
    }
  }
  RefreshPlanTimes(station);
  return true;
}

}  // namespace zemo
