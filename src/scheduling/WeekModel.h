// What the station's week asks of its music: the percentages or the skeleton of a weekday, and the
// shares of the varieties, as anybody last stored them. A request reads one of its own, so that
// what an editor is at work on is on air when it is saved, and not before.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "store/Database.h"

namespace zemo {

struct Station;

inline constexpr int kHoursOfDay = 24;
inline constexpr int kDaysOfWeek = 7;

template <typename T>
using ByHour = std::array<T, kHoursOfDay>;

struct GenreShare {
  std::string genre;  // may be empty
  ByHour<double> percent{};
};
using DayModel = std::vector<GenreShare>;

// A genre an hour, or an empty text.
using DaySkeleton = std::vector<ByHour<std::string>>;

struct VarietyShare {
  std::string variety;
  double percent = 0;
};

// For a request: as they stand now, or where the base is out of reach as they were read last
// (LastAnswers.h).
// Of one weekday, 1 Monday to 7 Sunday, in order of CODE. A fault is logged and leaves what was
// read before it.
DayModel ReadDayModel(Station& station, int day);
DaySkeleton ReadDaySkeleton(Station& station, int day);
// In table order. Throws StoreError.
std::vector<VarietyShare> ReadVarieties(Station& station);

// The rows themselves, for who wants them as they are stored. Throw StoreError.
void ForEachModelRow(Database& database, int day, const Database::TakeRow& take);  // GENRE, hours
void ForEachPosition(Database& database, int day, const Database::TakeRow& take);  // hours
void ForEachVariety(Database& database, const Database::TakeRow& take);  // POURCENT, VARIETE

std::string HourColumns();  // "TRANCHE00, TRANCHE01, ... TRANCHE23"

}  // namespace zemo
