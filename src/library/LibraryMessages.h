// What the library screen tells and asks, in the language of the station where a text has one.
#pragma once

#include <string>

namespace zemo {

struct Station;

namespace LibraryText {

// French in every language.
inline constexpr const char* kKnown = "Existe déjà dans la base";
inline constexpr const char* kNothingToDelete = "Il n'y a pas de fiche à supprimer";
inline constexpr const char* kConfirmDelete = "Confirmez la suppression de la fiche ";
inline constexpr const char* kDeleteEntry = "Effacer ce genre ";
inline constexpr const char* kTooLong = "Trop de caractères";
inline constexpr const char* kDatesReset = "Traitement Fini";

// By Langue; empty for a language that no text is written in. Throw StoreError.
std::string FilesPicked(Station& station, size_t count);  // of the music
std::string ShortFilesPicked(size_t count);               // of jingles and short elements; French
std::string ConfirmDeleteSelection(Station& station);

}  // namespace LibraryText

// A box titled "Alerte".
void ShowLibraryAlert(Station& station, const std::string& text);
// The same of an export that came to nothing, with the system's own reason.
void ShowNotWritten(Station& station, const std::string& reason);

}  // namespace zemo
