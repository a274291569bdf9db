// Why a title may not play: one card put to every test that stands between it and the air at a
// moment, each refusal with its words and with the moment from which it no longer holds. The tests
// are those of a request; nothing is chosen here, and no budget is asked.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"

namespace zemo {

struct Station;

struct TitleReason {
  // Which test: window, rotation, broadcast (a DIFFUSION that is no date), minutes, days, passes,
  // shift, hours, model, variety, waiting, artist, file.
  const char* test = "";
  std::string words;                  // those of the refusal line where the rules have some
  std::optional<LocalDateTime> from;  // the first moment at which this test lets it through
  std::string after;                  // what has to happen where that is no matter of time

  bool Never() const { return !from && after.empty(); }
};

struct TitleAnswer {
  int32_t code = 0;
  std::string artist, title, genre, variety, file;  // as the card has them
  LocalDateTime at;
  std::vector<TitleReason> reasons;  // none: it may play
  // The first moment at which all tests of time let it through; none: never.
  std::optional<LocalDateTime> from;

  bool MayPlay() const { return reasons.empty(); }
};

// nullopt: there is no such card. The report, the card's broadcasts, the stored lists and PL count
// as they stand now, whatever the moment asked. Moments are searched by the calendar, a hundred
// years ahead. Fills ECArtiste and DernierCodeRapport as the start of a request does. Throws
// StoreError.
std::optional<TitleAnswer> WhyTitle(Station& station, int32_t code, const LocalDateTime& at);

}  // namespace zemo
