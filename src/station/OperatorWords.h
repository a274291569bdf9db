// What the routines call things, in the words of whoever sits before the screen. The routines, the
// traces and the files keep their own words, which are French for the most part; a screen, a box
// and the command `why` show the operator's.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "station/LanguageTexts.h"

namespace zemo {

// One text of a routine, with what it is in each language; "%1" is whatever stands there.
struct RoutineText {
  const char* routine;
  LanguageTexts texts;  // French null: the routine speaks it
};
std::span<const RoutineText> RoutineTexts();

// The text in that language; as it is where no routine has it.
std::string InOperatorsWords(std::string_view text, int langue);
// The title of an element, whose text is a routine's where it is no music, spot, news or voice
// track.
std::string TitleInWords(int32_t code, std::string_view title, int langue);
// A line of a request on a title that it refused.
std::string RefusalInWords(std::string line, int langue);

}  // namespace zemo
