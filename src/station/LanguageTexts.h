// Words in the four languages of the program, as data.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace zemo {

inline constexpr size_t kLanguages = 4;

// By Langue: 0 French, which is the design text, 1 English, 2 Portuguese, 3 Spanish. A null pointer
// is no row: the French stands.
using LanguageTexts = std::array<const char*, kLanguages>;

inline constexpr int kEnglish = 1;  // the language of the commands

struct Word {
  const char* name;
  LanguageTexts texts;  // "%1" in one is a place
};

// The text of that language; French where it has no row and for an unknown number.
const char* InLanguage(const LanguageTexts& texts, int langue);
// A word by its name; a null pointer for one that the table does not hold.
const char* FindWord(std::span<const Word> words, std::string_view name, int langue);
std::string WithPlace(std::string text, std::string_view inPlace);

}  // namespace zemo
