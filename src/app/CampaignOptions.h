// The words behind `zemoradio campaign`: what is to be listed, shown, added or removed.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/CommandOptions.h"

namespace zemo {

enum class CampaignAction { kList, kShow, kAdd, kRemove };

// Where crosses go: on these weekdays (0 Monday to 6) in these hours, at every mark.
struct CrossPattern {
  std::array<bool, 7> weekdays{};
  std::array<bool, 24> hours{};
};

// One cross: a day of a dated campaign, or a weekday (1 Monday to 7) of a weekly one.
struct SingleCross {
  std::string day;  // "dd/mm/yyyy"; empty: the weekday counts
  int weekday = 0;
  std::string moment;  // "hh:mm"
};

struct CampaignOptions : StationOptions {
  CampaignAction action = CampaignAction::kList;
  int32_t code = 0;  // of show and remove
  std::string file, advertiser, category, contact, genre;
  std::string from, to;  // "dd/mm/yyyy"; both empty: a weekly campaign
  bool news = false;     // else a spot
  int priority = 100;
  std::optional<std::pair<int, int>> hours;  // none: those of the station's template
  std::optional<std::vector<int>> marks;     // likewise
  std::vector<CrossPattern> patterns;
  std::vector<SingleCross> crosses;
  bool json = false;  // of list and show

  bool Weekly() const { return from.empty(); }
};

ReadTyped DeclareCampaign(CLI::App& app, CommonOptions& common, CampaignOptions& options);

}  // namespace zemo
