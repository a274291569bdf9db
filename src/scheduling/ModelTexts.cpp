#include "scheduling/ModelTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kModels[] = {
    {"JourSemaine.1", {"Lundi", "Monday", "Segunda", "Lunes"}},
    {"JourSemaine.2", {"Mardi", "Tuesday", "Terça", "Martes"}},
    {"JourSemaine.3", {"Mercredi", "Wednesday", "Quarta", "Miércoles"}},
    {"JourSemaine.4", {"Jeudi", "Thursday", "Quinta", "Jueves"}},
    {"JourSemaine.5", {"Vendredi", "Friday", "Sexta", "Viernes"}},
    {"JourSemaine.6", {"Samedi", "Saturday", "Sábado", "Sábado"}},
    {"JourSemaine.7", {"Dimanche", "Sunday", "Domingo", "Domingo"}},

    {"BtnSave", {"Sauvegarder", "Save", "Guardar", "Salvaguarda"}},
    {"BtnImport", {"Reprendre le dernier modèle sauvegardé", "Get the last saved model", "Recuperar o último modelo guardado", "Recuperar el último modelo guardado"}},
    {"MnuCopierJour", {"Copier un jour", "Copy a day", "Copiar um dia", "Copiar un día"}},
    {"MnuCompteur", {"Compter les positions", "Count the positions", "Contar as posições", "Contar las posiciones"}},
    {"MnuExport", {"Exporter la semaine...", "Export the week...", "Exportar a semana...", "Exportar la semana..."}},
    {"MasterGenre", {"Genres", "Genres", "Géneros", "Géneros"}},
    {"MasterPourCent", {"Pourcentages", "Percentages", "Percentagens", "Porcentajes"}},

    {"Stats.0", {"Genre", "Genre", "Género", "Género"}},
    {"Stats.1", {"Titres", "Titles", "Títulos", "Títulos"}},
    {"Stats.2", {"Positions", "Positions", "Posições", "Posiciones"}},
};
// clang-format on

}  // namespace

std::span<const Word> ModelCaptions() {
  return kModels;
}

}  // namespace zemo
