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
    {"DayLetters", {"LMMJVSD", "MTWTFSS", "STQQSSD", "LMXJVSD"}},
    {"TrackOtherBefore", {"Ce Voice Track a été fait pour suivre un autre élément", "This voice track was made to follow another element", "Este voice track foi feito para seguir outro elemento", "Este voice track se hizo para seguir a otro elemento"}},
    {"TrackChangedBefore", {"La durée ou le point de sortie de l'élément précédent a changé depuis ce Voice Track", "The length or the exit point of the previous element has changed since this voice track was made", "A duração ou o ponto de saída do elemento anterior mudou desde este voice track", "La duración o el punto de salida del elemento anterior cambió desde este voice track"}},
    {"TrackOtherAfter", {"Ce Voice Track a été fait pour précéder un autre élément", "This voice track was made to lead into another element", "Este voice track foi feito para anteceder outro elemento", "Este voice track se hizo para preceder a otro elemento"}},
    {"TrackChangedAfter", {"L'intro de l'élément suivant a changé depuis ce Voice Track", "The intro of the next element has changed since this voice track was made", "A intro do elemento seguinte mudou desde este voice track", "La intro del elemento siguiente cambió desde este voice track"}},
};
// clang-format on

}  // namespace

WindowTexts SharedTexts() {
  return {{}, kWords};
}

}  // namespace zemo
