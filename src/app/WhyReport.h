// What brought an element of the broadcast report on air, out of the choices that the requests left
// in the machine folder.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>

namespace zemo {

struct Station;

// Tells of the row with that CODE of Rapport, as lines or as one JSON object; `choices` is the
// content of the machine folder's file. Throws std::runtime_error when there is no such row.
void TellReport(Station& station, const std::string& choices, int32_t code, bool json,
                std::ostream& out);

}  // namespace zemo
