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

    {"For.Models", {"Pourcentages par heure", "Percentages by hour", "Percentagens por hora", "Porcentajes por hora"}},
    {"For.ModelSquelette", {"Positions par heure", "Positions by hour", "Posições por hora", "Posiciones por hora"}},
    {"For.GVariete", {"Variétés", "Varieties", "Variedades", "Variedades"}},
    {"For.Stats", {"Dans la discothèque", "In the library", "Na discoteca", "En la discoteca"}},
    {"NotSaved", {"Modifications non sauvegardées", "Changes not saved", "Alterações por guardar", "Cambios sin guardar"}},
    {"GridTip", {"Entrée ou clic : choisir ; Ins : ligne vide au-dessus ; Suppr : retirer", "Enter or click: choose; Ins: empty row above; Delete: remove", "Enter ou clique: escolher; Ins: linha vazia acima; Del: retirar", "Intro o clic: elegir; Ins: fila vacía encima; Supr: quitar"}},
    {"HourTip", {"de %1 à %2", "from %1 to %2", "das %1 às %2", "de %1 a %2"}},
    {"SupplyTip", {"%1 : %2 titres, %3 min", "%1: %2 titles, %3 min", "%1: %2 títulos, %3 min", "%1: %2 títulos, %3 min"}},

    {"For.Supply", {"La discothèque à %1", "The library at %1", "A discoteca às %1", "La discoteca a las %1"}},
    {"Supply.0", {"Genre", "Genre", "Género", "Género"}},
    {"Supply.1", {"Prévu", "Planned", "Previsto", "Previsto"}},
    {"Supply.2", {"Titres", "Titles", "Títulos", "Títulos"}},
    {"Supply.3", {"Minutes", "Minutes", "Minutos", "Minutos"}},

    {"BtnForecast", {"Simuler la journée", "Simulate the day", "Simular o dia", "Simular el día"}},
    {"BtnForecastTip", {"La prochaine journée avec ce modèle, même non sauvegardé", "The next such day with this model, saved or not", "O próximo dia com este modelo, mesmo por guardar", "El próximo día con este modelo, aunque no esté guardado"}},
    {"OutlookRuns", {"Simulation en cours...", "Simulating...", "A simular...", "Simulando..."}},
    {"OutlookFailed", {"La simulation a échoué", "The simulation failed", "A simulação falhou", "La simulación falló"}},
    {"OutlookDone", {"%1 titres passeraient", "%1 titles would air", "%1 títulos passariam", "Sonarían %1 títulos"}},
    {"For.Outlook", {"La journée à l'antenne", "The day on air", "O dia no ar", "El día en antena"}},
    {"Outlook.0", {"Genre", "Genre", "Género", "Género"}},
    {"Outlook.1", {"Prévu", "Planned", "Previsto", "Previsto"}},
    {"Outlook.2", {"Obtenu", "Reached", "Obtido", "Logrado"}},
    {"Outlook.3", {"À sec", "Ran dry", "Em falta", "Sin títulos"}},
    {"For.Repeats", {"Titres répétés", "Titles repeated", "Títulos repetidos", "Títulos repetidos"}},
    {"Repeats.0", {"Répétés", "Repeated", "Repetidos", "Repetidos"}},
    {"Repeats.1", {"Fois", "Times", "Vezes", "Veces"}},

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
