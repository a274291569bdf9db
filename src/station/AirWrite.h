// One thing that the air leaves in the base as it goes, as data: done at once, or kept until the
// base can take it (reports/AirWrites.h).
#pragma once

#include <cstdint>
#include <string>

#include "station/EngineEvents.h"

namespace zemo {

struct AirWrite {
  enum class Kind {
    kReport,       // the row as it stands
    kMusicReport,  // the row of the title `code`, its texts from the card when it is written
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

}  // namespace zemo
