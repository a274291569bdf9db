#include "station/LanguageTexts.h"

#include <algorithm>

namespace zemo {

const char* InLanguage(const LanguageTexts& texts, int langue) {
  const bool known = langue > 0 && langue < static_cast<int>(kLanguages);
  const char* text = known ? texts[static_cast<size_t>(langue)] : nullptr;
  return text ? text : texts[0];
}

const char* FindWord(std::span<const Word> words, std::string_view name, int langue) {
  const auto found =
      std::find_if(words.begin(), words.end(), [&](const Word& word) { return word.name == name; });
  return found == words.end() ? nullptr : InLanguage(found->texts, langue);
}

std::string WithPlace(std::string text, std::string_view inPlace) {
  const size_t place = text.find("%1");
  if (place != std::string::npos) text.replace(place, 2, inPlace);
  return text;
}

}  // namespace zemo
