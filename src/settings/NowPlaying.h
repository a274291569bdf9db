// What plays and what comes next, in small files for programs outside.
#pragma once

#include <string_view>

namespace zemo {

struct Station;

// Run as each music element starts: "Donnees_Associees.Txt" with the next four music rows of PL and
// the comment, "Artiste-Titre.Txt" with the first of them. Never throws. Thread: the logic's.
void SaveAssociatedData(Station& station, std::string_view comment);

}  // namespace zemo
