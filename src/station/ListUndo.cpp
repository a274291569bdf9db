#include "station/ListUndo.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "station/PlanTimes.h"
#include "station/Station.h"

namespace zemo {

namespace {

template <typename Rows>
std::vector<int64_t> KeysOf(const Rows& rows) {
  std::vector<int64_t> keys;
  for (const OnAirRow& row : rows) keys.push_back(row.key);
  return keys;
}

// Keys, before the order, of the rows that have gone to the air since or while it was carried out.
std::set<int64_t> AiredSince(const ListUndo& undo, const OnAirList& now) {
  std::set<int64_t> aired;
  for (const OnAirRow& row : undo.before)
    if (now.HasAired(row.key)) aired.insert(row.key);
  for (const int64_t key : undo.after) {
    if (now.RowOfKey(key) != 0) continue;
    aired.insert(key);
    for (const auto& [before, behind] : undo.moved)
      if (behind == key) aired.insert(before);
  }
  return aired;
}

// The list before the order without what has aired; what still stands there as it is now.
std::vector<OnAirRow> RowsBefore(const ListUndo& undo, const OnAirList& now) {
  const std::set<int64_t> aired = AiredSince(undo, now);
  std::vector<OnAirRow> rows;
  for (const OnAirRow& row : undo.before) {
    if (aired.count(row.key) != 0) continue;
    const int stands = now.RowOfKey(row.key);
    rows.push_back(stands > 0 ? now.Row(stands) : row);
  }
  return rows;
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

bool SameFields(const StoredListEditor& one, const StoredListEditor& other) {
  return one.ComboPLS.text == other.ComboPLS.text && one.LblDate == other.LblDate &&
         one.ChHeure == other.ChHeure && one.LblCodePL == other.LblCodePL &&
         one.OptPls == other.OptPls;
}

// No list is chosen then: what is deleted by its choice is what the operator chooses anew.
void RestoreFields(StoredListEditor& editor, const StoredListEditor& kept) {
  editor.ComboPLS.text = kept.ComboPLS.text;
  editor.ComboPLS.index = -1;
  editor.LblDate = kept.LblDate;
  editor.ChHeure = kept.ChHeure;
  editor.LblCodePL = kept.LblCodePL;
  editor.OptPls = kept.OptPls;
}

}  // namespace

ListOrder::ListOrder(Station& station, Panel panel) : station_(station) {
  undo_.before.assign(station.PL.begin(), station.PL.end());
  if (panel == Panel::kChanges) undo_.panel = station.storedList;
}

ListOrder::~ListOrder() {
  undo_.after = KeysOf(station_.PL);
  const bool samePanel = !undo_.panel || SameFields(*undo_.panel, station_.storedList);
  if (samePanel && KeysOf(undo_.before) == undo_.after) {
    if (forgot_) ForgetListOrder(station_);
    return;
  }
  ++station_.listOrders;
  station_.listUndo = std::move(undo_);
}

void ListOrder::Moved(int64_t keyBefore, int64_t keyBehind) {
  undo_.moved.emplace_back(keyBefore, keyBehind);
}

void ListOrder::Forget(int64_t key) {
  std::erase_if(undo_.before, [&](const OnAirRow& row) { return row.key == key; });
  forgot_ = true;
}

void ForgetListOrder(Station& station) {
  station.listUndo.reset();
}

bool UndoListOrder(Station& station) {
  if (!station.listUndo) return false;
  const ListUndo undo = *station.listUndo;
  std::vector<OnAirRow> rows = RowsBefore(undo, station.PL);
  KeepPlaces(rows, station.PL, undo.after);
  {
    ListOrder order(station, undo.panel ? ListOrder::Panel::kChanges : ListOrder::Panel::kStays);
    for (const auto& [before, behind] : undo.moved) order.Moved(behind, before);
    station.PL.Restore(std::move(rows));
    if (undo.panel) RestoreFields(station.storedList, *undo.panel);
  }
  if (station.listUndo) station.listUndo->tookBack = !undo.tookBack;
  RefreshPlanTimes(station);
  return true;
}

}  // namespace zemo
