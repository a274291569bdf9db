// How texts compare for a French reader, and the patterns of LIKE. SQLite knows case for ASCII
// only; what is here serves the accented letters too. Texts are UTF-8; a byte that is not counts as
// itself.
#pragma once

#include <string_view>

namespace zemo {

// Names under which a connection of ours knows the two comparisons. They stand in translated
// queries only, never in the schema: the file must open with any SQLite tool.
inline constexpr char kFrenchOrder[] = "FR_ORDER";
inline constexpr char kFrenchCase[] = "FR_CASE";

// Order of a French dictionary: letters first, without case or accents (œ as oe), then accents from
// the end of the word (cote, côte, coté, côté). Below, equal or above 0; texts that differ in case
// only are equal.
int CompareFrenchOrder(std::string_view a, std::string_view b);

// Equality without regard to case, accents kept: 0 for "É" and "é", not for "é" and "e". The sign
// of other results is some fixed order.
int CompareFrenchCase(std::string_view a, std::string_view b);

// A character in the order: one or two plain letters, and what sets it apart from them. For engines
// that make their own tables of it.
struct LetterWeights {
  char32_t first = 0;
  char32_t second = 0;  // 0: none
  char32_t accent = 0;  // 0: a plain character
};
LetterWeights WeightsOf(char32_t character);
char32_t FoldCase(char32_t character);  // small letter of a capital: Latin, Greek and Cyrillic
inline constexpr char32_t kLastFolded = 0x1EFF;  // behind it every character is itself
inline constexpr char32_t kFirstMark = 0x300, kLastMark = 0x36F;  // accents of their own

bool IsAscii(std::string_view text);  // what SQLite compares by itself as we do

// LIKE of the station's dialect: `*` any characters, `?` one, all others themselves without case.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace zemo
