#include "settings/LockDialogue.h"

#include <exception>

#include "platform/Desktop.h"
#include "settings/SideFiles.h"
#include "station/Station.h"

namespace zemo {

namespace {

struct Words {
  const char* french;
  const char* english;
  const char* portuguese;
  const char* spanish;
};

constexpr Words kLabel = {"Mot de passe", "Password", "Palavra-passe", "Código secreto"};
// The last two ask for the new password where they mean the present one.
constexpr Words kEnter = {"Entrez le mot de passe", "Enter the password", "Nova palavra-passe",
                          "Nuevo código secreto"};
constexpr Words kNew = {"Nouveau mot de passe", "New Password", "Escrever nova palavra-passe",
                        "Escribir nuevo código secreto"};
constexpr Words kDelete = {" Effacez le mot de passe pour désactiver la protection ",
                           " Delete password for disable protection ",
                           " Apague a palavra-passe para desativar a proteção ",
                           " Borre el código secreto para desactivar la protección "};

int64_t LanguageOf(Station& station) {
  try {
    return station.base.CnfInt(Cnf::kLangue);
  } catch (const std::exception&) {
    LogCurrentException(station, "MnuPasseWord");
    return 0;
  }
}

// Of a language that there is not, no word.
std::string InLangue(int64_t langue, const Words& words) {
  switch (langue) {
    case 0:
      return words.french;
    case 1:
      return words.english;
    case 2:
      return words.portuguese;
    case 3:
      return words.spanish;
    default:
      return {};
  }
}

void AskNew(Station& station, int64_t langue) {
  station.platform.messages.Show("Alerte", InLangue(langue, kDelete), Buttons::kOk);
  station.lockDialogue.Title = InLangue(langue, kNew);
  station.lockDialogue.asksNew = true;
}

}  // namespace

void Lock::MnuPasseWord_Click(Station& station) {
  const int64_t langue = LanguageOf(station);
  auto& dialogue = station.lockDialogue;
  dialogue = {};
  dialogue.open = true;
  const std::string label = InLangue(langue, kLabel);
  dialogue.Label = label.empty() ? kLabel.french : label;  // what the screen was designed with
  if (station.lists.Locked)
    dialogue.Title = InLangue(langue, kEnter);
  else
    AskNew(station, langue);
}

void Lock::BtnOk_Click(Station& station, std::string_view typed) {
  auto& dialogue = station.lockDialogue;
  if (!dialogue.open) return;
  if (!dialogue.asksNew && LockOpensWith(station, typed))
    return AskNew(station, LanguageOf(station));
  if (dialogue.asksNew) {
    std::string password(typed);
    LoadSavePassword(station, "Save", password);
  }
  dialogue = {};
}

void Lock::ShowLock(Station& station) {
  station.engine.ScreenLocked = station.lists.Locked;
}

}  // namespace zemo
