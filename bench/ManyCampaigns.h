// 2,000 campaigns of 30 days with 8 marks in each of 24 hours, each with a grid file of 5,760 lines
// on disk and a sound file of its own. Each has a cross at one of the 8 marks of every hour, so
// that all 192 moments are full.
#pragma once

#include <filesystem>
#include <string>

#include "station/TextForms.h"
#include "support/Campaigns.h"

namespace zemo::bench {

inline constexpr int kCampaigns = 2000;

inline test::Campaign MakeCampaign(test::TestStation& on, int i) {
  test::Campaign campaign{.advertiser = "ADVERTISER" + std::to_string(i),
                          .priority = i % 30 * 10 + 10,
                          .marks = {"00", "07", "15", "22", "30", "37", "45", "52"}};
  campaign.file = on.MakeSound("Spots/" + std::to_string(i) + ".wav", 20000);
  for (int hour = 0; hour < 24; ++hour)
    campaign.crosses.push_back(TwoDigits(hour) + ":" + campaign.marks[static_cast<size_t>(i % 8)]);
  return campaign;
}

inline void AddManyCampaigns(test::TestStation& on) {
  on.station.base.Db().Execute("PRAGMA synchronous = OFF");
  std::filesystem::create_directory(on.stationDir.Path() + "/Spots");
  for (int i = 0; i < kCampaigns; ++i) test::AddCampaign(on, MakeCampaign(on, i));
}

}  // namespace zemo::bench
