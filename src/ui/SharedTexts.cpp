#include "ui/SharedTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kWords[] = {
    {"Spots", {"Pubs", "Spots", "Pub", "Cuñas"}},
    {"News", {"Rubriques", "News", "Intercalares", "Rúbricas"}},
    {"PrintFailed", {"L'impression n'a pas pu se faire", "Nothing could be printed", "Não foi possível imprimir", "No se pudo imprimir"}},
    {"CalendarTitle", {"Calendrier", "Calendar", "Calendário", "Calendario"}},
    {"Ok", {"OK", "OK", "OK", "OK"}},
    {"Cancel", {"Annuler", "Cancel", "Cancelar", "Cancelar"}},
    {"Yes", {"Oui", "Yes", "Sim", "Sí"}},
    {"No", {"Non", "No", "Não", "No"}},
    {"KeepMine", {"Garder les miens", "Keep mine", "Manter os meus", "Conservar los míos"}},
    {"TakeTheirs", {"Prendre les autres", "Take theirs", "Usar os do outro", "Tomar los del otro"}},
    {"Look", {"Voir les champs", "Look", "Ver os campos", "Ver los campos"}},
    {"DayLetters", {"LMMJVSD", "MTWTFSS", "STQQSSD", "LMXJVSD"}},
};
// clang-format on

}  // namespace

WindowTexts SharedTexts() {
  return {{}, kWords};
}

}  // namespace zemo
