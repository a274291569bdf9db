// What the checks of the library look at: the music cards with what their rules allow, and what the
// models of the week ask for.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "app/check/ReadOnlyBase.h"

namespace zemo {

inline constexpr size_t kWeekdays = 7;  // Monday first
inline constexpr size_t kHoursADay = 24;

using HoursOfDay = std::array<bool, kHoursADay>;
using HoursOfWeek = std::array<HoursOfDay, kWeekdays>;

struct LibraryTitle {
  int64_t code = 0;
  std::string artist;    // as a request lists it: trimmed, "Code 12" without one
  int artistNumber = 0;  // the same for an artist in whatever case
  std::string title, genre, variety;
  double lengthSec = 0;
  int32_t NBPASSJOUR = 0, ECARTMINUTES = 0, ECARTJOURS = 0, ECARTARTISTE = 0;
  std::string MMJJDebut, MMJJFin;
  std::array<std::string, kWeekdays> TRANCHE;
  std::array<std::string, 8> DIFFUSION;

  bool AllowedAt(size_t day, size_t hour) const;
};

// What the week's models give to one genre: per cent of each hour, or positions of its skeleton.
struct GenreShares {
  std::string genre;
  std::array<std::array<double, kHoursADay>, kWeekdays> share{};
};

// What counts for every title.
struct LibraryRules {
  bool skeleton = false;  // requests follow skeletons
  int EcartArtiste = 0, DecalDiff = 0;
  std::vector<std::string> varieties;  // none: the next start puts the usual ones there

  // Whether a request has a share for titles of that variety; a skeleton asks for none.
  bool KnowsVariety(const std::string& variety) const;
};

std::vector<LibraryTitle> ReadTitles(const ReadOnlyBase& base);
// Genres with a name, in the order of the models; those without any share are among them.
std::vector<GenreShares> ReadShares(const ReadOnlyBase& base, bool skeleton);
LibraryRules ReadRules(const ReadOnlyBase& base);

const char* WeekdayName(size_t day);  // 0 "Monday"
// "00-05, 12"; "every hour"
std::string HoursText(const HoursOfDay& hours);
// Days of the same hours together: "every day 00-05", "Monday, Tuesday 08, 12; Friday every hour".
// Empty without an hour.
std::string WeekText(const HoursOfWeek& week);

}  // namespace zemo
