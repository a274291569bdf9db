// List1Tmp: the cards that wait already, on air or in stored lists still to come, so that a request
// takes none of them twice.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_set>

#include "platform/Clock.h"

namespace zemo {

struct Station;

class TitlesInUse {
 public:
  void Add(std::string_view code);  // a line: the number at its beginning counts
  bool Holds(int32_t code) const { return codes_.count(code) > 0; }
  size_t Count() const { return codes_.size(); }

 private:
  std::unordered_set<int32_t> codes_;
};

// Of PL; with the stored-list panel open of all stored lists, else of those that are due later
// today. Throws StoreError.
TitlesInUse LoadTitlesInUse(Station& station);

// Whether a stored list of that LADATE ("dd/mm/yyyy" or "JOURNALIER") and LHeure ("hh:mm") is due
// later on the day of `now`.
bool ListStillToCome(std::string_view date, std::string_view hourMinute, const LocalDateTime& now);

}  // namespace zemo
