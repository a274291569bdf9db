// The language in which a station of this machine begins.
#pragma once

#include <string_view>

namespace zemo {

struct Station;

// Langue of a locale's name, as "es_AR.UTF-8": French where it is none of the four languages.
int LanguageOf(std::string_view locale);
// Of the locale that this process was given for messages.
int LanguageOfLocale();

// Ahead of its load: no base stands in the station's folder, nor one that would take its place.
bool HoldsNoBase(const Station& station);
// The settings of a station whose base was made just now.
// A fault is logged.
void GiveNewStationItsLanguage(Station& station);

}  // namespace zemo
