// The texts of the main on-air screen in the four languages, as data: one table of controls, and
// one of the words that its own parts (health, forecast, what comes next) are made of.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

namespace zemo {

inline constexpr size_t kLanguages = 4;

// By Langue: 0 French, which is the design text, 1 English, 2 Portuguese, 3 Spanish. A null pointer
// is no row: the French stands.
using LanguageTexts = std::array<const char*, kLanguages>;

// One assignment of Traduction. `property` is "text", "tip" or "name" (for screen readers), or the
// number of an item or a column head.
struct ScreenText {
  const char* control;
  const char* property;
  LanguageTexts texts;
};

// All assignments, in their order.
std::span<const ScreenText> MainScreenTexts();

// The text of that language; French where it has no row and for an unknown number.
const char* InLanguage(const LanguageTexts& texts, int langue);
// The same by control and property; empty for what the table does not hold.
std::string TextOf(std::string_view control, std::string_view property, int langue);

// A word of the screen's own parts by its name; empty for an unknown one. "%1" in it is a place.
std::string ScreenWord(std::string_view name, int langue);
std::string ScreenWord(std::string_view name, int langue, std::string_view inPlace);

}  // namespace zemo
