// What the campaign editor tells and asks, in the language of the station where a text has one.
#pragma once

#include <string>

#include "platform/Desktop.h"

namespace zemo {

struct Station;
struct WrongMark;

inline constexpr const char* kAlertTitle = "Alerte";

// French in every language.
inline constexpr const char* kNoSoundFile =
    "Impossible de sauver car vous n'avez pas\r\nAttribué de fichier audio";
inline constexpr const char* kCannotSave = "Impossible de sauver";
inline constexpr const char* kNothingToDelete = "Il n'y a pas de fiche à supprimer";
inline constexpr const char* kConfirmDelete = "Confirmez la suppression de la fiche ";
inline constexpr const char* kFileInUse =
    "Vouz ne pouvez pas choisir ce fichier audio\r\ncar il est déjà attribué à l'annonceur ";
inline constexpr const char* kAddCategory = "Ajouter cette Catégorie à la liste";
inline constexpr const char* kDeleteCategory = "Effacer cette Catégorie ";

// By Langue; empty for a language that no text is written in. Throw StoreError.
std::string NoSoundFileText(Station& station);
std::string NoCampaignText(Station& station);
std::string WrongMarkText(Station& station, const WrongMark& wrong);
std::string MemoTitle(Station& station);
std::string MemoText(Station& station);

void ShowAlert(Station& station, const std::string& text, Icon kind = Icon::kStop);

}  // namespace zemo
