#include "library/LibraryMessages.h"

#include "platform/Desktop.h"
#include "station/LanguageTexts.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr const char* kPicked = "Vous avez sélectioné ";
constexpr LanguageTexts kPickedTexts = {kPicked, kPicked, "Seleccionou ", kPicked};
constexpr const char* kFiles = " Fichiers audios";
constexpr LanguageTexts kFilesTexts = {kFiles, kFiles, " ficheiros audios", kFiles};
constexpr const char* kThenAdd = "Vous n'avez plus qu'à cliquer sur le menu Ajouter";
constexpr LanguageTexts kThenAddTexts = {kThenAdd, kThenAdd, "Clicar no menu Adicionar", kThenAdd};
constexpr const char* kThenAddShort = "validez sur le menu Ajouter";

constexpr LanguageTexts kConfirmSelection = {"Confirmez la suppression de la séléction",
                                             "Delete séléction", "Eliminar a selecção",
                                             "Confirmar Eliminar a selecção"};
std::string Said(Station& station, const LanguageTexts& texts) {
  const int64_t langue = station.base.CnfInt(Cnf::kLangue);
  if (langue < 0 || langue >= static_cast<int64_t>(kLanguages)) return {};
  return texts[static_cast<size_t>(langue)];
}

}  // namespace

std::string LibraryText::FilesPicked(Station& station, size_t count) {
  return Said(station, kPickedTexts) + std::to_string(count) + Said(station, kFilesTexts) + "\r\n" +
         Said(station, kThenAddTexts);
}

std::string LibraryText::ShortFilesPicked(size_t count) {
  return kPicked + std::to_string(count) + kFiles + "\r\n" + kThenAddShort;
}

std::string LibraryText::ConfirmDeleteSelection(Station& station) {
  return Said(station, kConfirmSelection);
}

void ShowLibraryAlert(Station& station, const std::string& text) {
  station.platform.messages.Show("Alerte", text, Buttons::kOk);
}

void ShowNotWritten(Station& station, const std::string& reason) {
  ShowLibraryAlert(station, "Le fichier n'a pas pu être écrit\r\n" + reason);
}

}  // namespace zemo
