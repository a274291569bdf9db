// The way back from the operator's last order on PL: what the order took out comes back, what it
// put in goes, what has aired since stays aired, and what the engine put in since keeps its place.
// Thread: the logic's.
#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "station/OnAirList.h"
#include "station/OperatorFrames.h"

namespace zemo {

struct Station;

struct ListUndo {
  bool tookBack = false;                           // the order took another one back
  std::vector<OnAirRow> before;                    // PL as the order found it
  std::vector<int64_t> after;                      // keys of PL as it left it
  std::vector<std::pair<int64_t, int64_t>> moved;  // a row's key before and behind the order
  std::optional<StoredListEditor> panel;           // before an order that fills or clears it
};

// While it lives the operator's order works on PL. One that changes nothing leaves the former one
// to be taken back. Where another order comes in a yield of this one, this one is the last.
class ListOrder {
 public:
  enum class Panel { kStays, kChanges };  // the fields of stored lists
  explicit ListOrder(Station& station, Panel panel = Panel::kStays);
  ~ListOrder();
  ListOrder(const ListOrder&) = delete;

  void Moved(int64_t keyBefore, int64_t keyBehind);
  void Forget(int64_t key);  // the row cannot come back: its record is gone

 private:
  Station& station_;
  ListUndo undo_;
  bool forgot_ = false;
};

// Takes the last order back, which is an order itself; false when there is none. Not below a tick.
bool UndoListOrder(Station& station);

// The engine has made the list anew, or what stood there is gone: there is no way back.
void ForgetListOrder(Station& station);

}  // namespace zemo
