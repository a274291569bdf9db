// Campaigns for tests: the record in GrillePub, the sound file, and the grid file beside it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/TestStation.h"

namespace zemo::test {

struct Campaign {
  std::string advertiser = "ADVERTISER";
  int priority = 10;
  bool spot = true;                                    // else news
  std::string from = "01/11/2026", to = "30/11/2026";  // or "JOURNALIER"
  int firstHour = 0, lastHour = 23;
  std::vector<std::string> marks = {"00"};
  std::vector<std::string> crosses = {};  // moments "HH:MM" ...
  int column = 0;                         // ... of that column of the grid; 0: of every day
  int64_t lengthMs = 30000;
  std::string file = "";  // "" makes one of that length
  std::string genre = "";
  bool gridFile = true;
};

// Day columns of its grid: 7 of a weekly one, 366 where the end lies before the start or more than
// a year behind it.
int DayColumns(const Campaign& campaign);
// A line a cell, "X" or nothing, rows by hour and mark.
std::string GridFileText(const Campaign& campaign);
// Stored path of its grid file, the sound file's with another ending.
std::string GridFileOf(const std::string& soundFile);

int32_t AddCampaign(TestStation& on, const Campaign& campaign);  // its CODE

}  // namespace zemo::test
