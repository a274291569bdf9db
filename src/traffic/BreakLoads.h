// How full the breaks of a campaign's days are already: what the other campaigns have in each,
// against the time to the next break or hour pip; and which of it is the same advertiser's.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

class Recordset;
class TextGrid;
struct CampaignForm;
struct Station;

// A moment of a day without the campaign that is shown.
struct BreakLoad {
  int64_t lengthMs = 0;  // of the other campaigns' elements together, by their records
  int32_t elements = 0;
  int32_t ofAdvertiser = 0;  // of these
  int64_t gapMs = 0;  // to the next break or pip of the day, to midnight where there is none; 0:
                      // the moment is no time of a day
};

// Read once in slices, of which none holds the tick, and kept: of the campaigns read before only
// those are read again whose record or grid file is another. Thread: the logic's.
class BreakLoads {
 public:
  BreakLoads();
  ~BreakLoads();

  // Reads what the others have in the days of that grid; of a weekly one in the coming seven. What
  // is known of these days stands until then.
  void Begin(Station& station, const CampaignForm& shown);
  // What was begun last is of this campaign, its advertiser and days.
  bool IsOf(const Station& station, const CampaignForm& shown) const;
  // Some milliseconds of it; true when all is known. Throws StoreError: it can be called again.
  bool Slice(Station& station);
  // All is known of the days of the grid that is shown.
  bool Known() const { return known_ != nullptr; }

  // A load a moment of that column of the grid, from kFirstMomentRow on; the grid's own crosses are
  // breaks, too, and end a gap. Empty where nothing is known of such a day.
  std::vector<BreakLoad> OfDay(const TextGrid& grid, int column) const;
  int OfAdvertiser(int column) const;  // elements that the advertiser has on that day already

 private:
  struct Shown;
  struct Campaign;
  struct Days;

  void ReadPage(Station& station);
  int64_t Take(Station& station, const Recordset& row);
  int64_t Add(const Campaign& campaign);

  std::unique_ptr<Shown> shown_;
  std::shared_ptr<const Days> known_;
  std::shared_ptr<Days> making_;
  std::unique_ptr<Recordset> page_;  // of GrillePub, being taken
  int64_t lastCode_ = std::numeric_limits<int64_t>::min();
  std::map<int64_t, std::unique_ptr<Campaign>> campaigns_;  // read so far, by CODE
};

}  // namespace zemo
