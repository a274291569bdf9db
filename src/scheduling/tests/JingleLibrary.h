// Jingles and linking elements for the tests of their selection, written straight into the base.
#pragma once

#include <cstdint>
#include <string>

#include "support/TestStation.h"

namespace zemo::test {

// A plain jingle allowed at every hour; what is not set is as on a new card.
struct Jingle {
  std::string label = "JINGLE", file = "";  // "" makes a file of that length
  int64_t lengthMs = 5000;
  bool overlay = false;
  std::string hours = std::string(24, '1');  // of every weekday
  int32_t titleCode = 0;
  std::string genre = "", artist = "";
  int endOfTitle = 0, extract = 0, exitMs = 0;
  std::string from = "", to = "", composer = "";  // date window "MMDD"
  double lastPlayed = 0;                          // day serial
};

// Their CODE.
int32_t AddJingle(TestStation& on, const Jingle& jingle);
int32_t AddLinkingElement(TestStation& on, const std::string& label, int racro, double lastPlayed,
                          int exitMs = 0);

// A row of PL of that code and text, as far as the selection looks at it.
OnAirElement RowOf(int32_t code, const std::string& text = "ARTIST",
                   const std::string& kind = "POP");

// Column 0 of every row, joined by commas.
std::string Texts(const OnAirList& list);

}  // namespace zemo::test
