// The tables of texts of all screens as one list of rows.
#pragma once

#include <string>
#include <vector>

#include "station/LanguageTexts.h"

namespace zemo::test {

struct TextRow {
  std::string name;  // of its table and of itself
  LanguageTexts texts;
};

// What a routine says has its own text for French where the table has none.
std::vector<TextRow> ProgramTexts();

}  // namespace zemo::test
