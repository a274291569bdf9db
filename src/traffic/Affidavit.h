// What became of every cross of an advertiser: when it was due, when it aired by the report, or why
// it did not. It is what advertisers are billed on.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

struct Station;

struct AffidavitLine {
  int32_t campaign = 0;  // CODE
  std::string file;      // stored path
  bool spot = true;      // false: news
  std::string moment;    // "HH:MM" as the campaign's grid has it
  LocalDateTime due;     // begin of that minute
  std::optional<LocalDateTime> aired;
  int64_t lateSec = 0;  // aired behind the begin of the minute; below 0: ahead of it
  bool isDue = true;    // false: its minute is still to come
  std::string missed;   // why it did not air; empty when it did or is not due
};

// A campaign of the days whose record and grid file do not make a grid: its crosses are not known,
// or not all of them.
struct AffidavitDamage {
  int32_t campaign = 0;
  bool spot = true;
  std::string file;  // of the sound, as stored
  std::string why;
};

struct Affidavit {
  std::vector<AffidavitLine> lines;   // by time, then in the order of passage
  std::vector<LocalDateTime> extras;  // aired without a cross: put on air by hand or by a list
  std::vector<AffidavitDamage> damages;
};

// The crosses from the first day to the last, both included, against the report. The report knows
// the advertiser and not the file: a row proves the latest cross that was due by then, up to three
// hours before, else one of the same hour that a fitting brought forward. The crosses of the days
// around have their rows too, so that a row proves the same cross whatever days are asked for.
// Campaigns that ended count as long as they stand in the table or in the archive. The names are
// compared without regard to case. `pause` serves other events in between: a long report takes its
// time. Throws StoreError and FileError.
Affidavit MakeAffidavit(
    Station& station, const std::string& advertiser, const LocalDateTime& from,
    const LocalDateTime& to, const std::function<void()>& pause = [] {});

// Of the campaigns in the table and in the archive, each name once, as in a French dictionary.
// Throws StoreError and FileError.
std::vector<std::string> Advertisers(Station& station);

}  // namespace zemo
