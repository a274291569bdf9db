// The forms in which numbers, lengths and times stand in texts, and the lenient ways to read them.
// All of it is independent of the locale, and no text makes any of it throw.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zemo {

// The number at the beginning of the text: leading blanks, sign, digits, point, exponent. What
// stands behind it does not matter ("12abc" is 12); 0 without a number, and for one that no double
// can hold.
double Val(std::string_view text);
// The whole part of Val, kept inside the 32 bits.
int32_t ValInt(std::string_view text);

std::string Trim(std::string_view text);        // blanks off both ends
std::string UpperAscii(std::string_view text);  // a to z only
// a to z and the accented letters of Western European text ("é" to "É", "œ" to "Œ"). The length in
// bytes stays the same, so that a position found in the capitals holds in the text.
std::string UpperLatin(std::string_view utf8);
bool EqualNoCase(std::string_view a, std::string_view b);  // ASCII letters without regard to case
std::string TwoDigits(int number);                         // 7 -> "07"; cut to the last two digits
void PutTwoDigits(int number, char* to);                   // the same over two characters

// Length as "mm:ss", each cut to its last two digits; "--:--" for less than a second.
std::string FormatDuration(int64_t ms);
std::string SecondsText(int64_t ms);  // to the tenth, "1.6"; not below 0
// "hh h mm": hours in two digits; below an hour "00 h mm".
std::string HoursMinutesText(int64_t ms);
// Clock text of a position, "hh:mm:ss".
std::string ClockText(int64_t ms);
// Planned start: "hh h mm ' ss", the hours wrapping at 24.
std::string PlannedTimeText(double msSinceMidnight);
// Eight digits by which a text is known in a file's name (FNV-1a of 32 bits).
std::string HexMark(std::string_view text);
int CharacterCount(std::string_view utf8);  // not bytes
// UTF-8 text cut to at most n characters (not bytes).
std::string FirstCharacters(std::string_view utf8, int n);
// Cut or filled with blanks to n characters.
std::string PaddedText(std::string_view utf8, int n);

}  // namespace zemo
