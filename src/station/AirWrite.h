// One thing that the air leaves in the base as it goes, as data: done at once, or kept until the
// base can take it (reports/AirWrites.h).
#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "station/EngineEvents.h"

namespace zemo {

struct AirWrite {
  enum class Kind {
    kReport,       // the row as it stands
    kMusicReport,  // the same of a title; its texts still from the card where there is a `code`
    kTitlePlayed,  // the card's last broadcasts
    kJinglePlayed,
    kOtherPlayed,  // another short element
    kLastJingle,   // which jingle came last, for the next one
    kLastIntroJingle,
  };

  Kind kind = Kind::kReport;
  int64_t code = 0;               // of the card
  ReportRow row{};                // LADATE, HEURE and DATENUM are the moment of every kind
  std::string where{}, detail{};  // for the log: the routine, and what it was about
};

// What the base could not take yet.
struct KeptWrites {
  std::deque<AirWrite> writes;  // oldest first
  size_t journalled = 0;        // so many of the oldest stand in the journal
  size_t fromEarlierRun = 0;    // so many of the oldest may stand in the base already
  int64_t retryMs = 0;          // monotonic; not tried before
  bool journalBehind = false;   // the journal could not be written: it is to be made anew
};

}  // namespace zemo
