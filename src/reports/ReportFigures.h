// What the report screen shows beside its list: when which genre ran, how one title came back, how
// the varieties share the span. Each goes over all rows of a span, with pauses. Thread: the
// logic's.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "reports/ReportRows.h"

namespace zemo {

struct NamedPlays {
  std::string name;
  uint32_t plays = 0;
  bool operator==(const NamedPlays&) const = default;
};

// Names with a text, the most played first; those of as many plays as in a French dictionary.
std::vector<NamedPlays> PlaysBy(const ReportRows& rows, int column, const Pause& pause);

// A share in whole per cent; one half goes to the even number. 0 of nothing.
uint64_t WholePercent(uint64_t part, uint64_t whole);

struct HourFigures {
  std::vector<std::string> genres;                // as PlaysBy has them
  std::array<std::vector<uint32_t>, 24> plays{};  // by hour of the day and genre
};
HourFigures PlaysByHourAndGenre(const ReportRows& rows, const Pause& pause);

struct TitleFigures {
  int64_t stepSec = 0;          // an hour, a day or a week
  int64_t firstSec = 0;         // begin of the first step, in seconds of day serials
  std::vector<uint32_t> plays;  // a step each, from the first row of the span to its last

  uint64_t Total() const;
};
// Of the title of that row, whoever sings it, as the rotations count it. Hours where the span has
// less than four days, weeks (from Monday) where it has more than a hundred.
TitleFigures PlaysOverTime(const ReportRows& rows, size_t ofRow, const Pause& pause);

}  // namespace zemo
