// The stored list in the panel beside what others store of it meanwhile. Throw StoreError. Thread:
// the logic's.
#pragma once

#include <cstdint>
#include <string>

#include "station/OperatorFrames.h"

namespace zemo {

struct Station;

// From now on the panel and PL hold what is stored under the panel's CODE.
void KeepAsLoadedList(Station& station);

// Ahead of storing it: the panel's fields become what is to be stored, asked for where both changed
// one. The rows are one field. Where nobody else has stored anything it looks no further.
struct ListToStore {
  bool any = true;      // false: nothing is to be stored
  bool rows = true;     // false: those of the base stay, which others have changed
  int64_t counter = 0;  // of others' writes (Database::ForeignCounter), as it was for this
  std::string began{};  // the rows with which the operator began
};
ListToStore MergeStoredList(Station& station);

// Behind the storing, as KeepAsLoadedList. Rows that stayed those of others were never in PL: who
// stores again still began with the former ones.
void KeepStoredList(Station& station, const ListToStore& stored);

namespace OnAir {

// Others have stored something: the offered lists as they are now, and the fields of the one in the
// panel that the operator has not changed. False where that one is gone, which is told once: it is
// a new list from then on.
bool TakeOverLists(Station& station);

}  // namespace OnAir

}  // namespace zemo
