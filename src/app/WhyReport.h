// What brought an element of the broadcast report on air, out of the choices that the requests left
// in the machine folder.
#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <optional>
#include <string>

namespace zemo {

struct Station;

// A row of the broadcast report.
struct AiredElement {
  int32_t code = 0;
  std::string artist, title, genre, date, hour;
  double moment = 0;  // day serial
};

// Where the rows are looked up.
struct AiredReport {
  std::function<std::optional<AiredElement>(int32_t code)> find;
  // The same title has an earlier row that is younger than `moment` (day serial).
  std::function<bool(const AiredElement& element, double moment)> playedSince;
};
AiredReport ReportOf(Station& station);               // Rapport; the station is not owned
AiredReport ReportIn(const std::string& simulation);  // the content of a file of ChoicesFile.h

// Tells of the row with that CODE, as lines or as one JSON object; `choices` are the lines of the
// requests. Throws std::runtime_error when there is no such row.
void TellReport(const AiredReport& report, const std::string& choices, int32_t code, bool json,
                std::ostream& out);

}  // namespace zemo
