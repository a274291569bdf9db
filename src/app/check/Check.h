// The look over a station before it goes on air: what is missing or broken in it, a line each.
#pragma once

#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

#include "platform/Clock.h"

namespace zemo {

enum class Severity {
  kError,   // the station, or this element, cannot go on air as it stands
  kWarning  // it can, but not as its operator expects
};

struct Finding {
  Severity severity = Severity::kError;
  std::string kind;  // one word: "base", "folder", "music", "jingle", "pip", "list", ...
  std::string what;  // the record or file
  std::string why;
};

struct CheckOptions {
  std::string station;    // folder
  std::string machine;    // folder, whose path map is used; need not exist
  int lockWaitMs = 2000;  // how long another process may hold the base before that is a finding
  std::optional<LocalDateTime> now;  // the day from which on campaigns and windows are looked at;
                                     // none: today
};

// Looks and changes nothing: no file is made, written or locked for longer than a read. Never
// throws on what it finds.
void CheckStation(const CheckOptions& options, const std::function<void(const Finding&)>& found);

// The command `zemoradio check`: a line a finding, "check: KIND: WHAT: WHY" (a
// warning says so at its end), and their count. Exit status 1 when anything was found, 0 when not.
int RunCheck(const CheckOptions& options, std::ostream& out);

}  // namespace zemo
