#include "engine/screens/ForecastWindowTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kForecastWords[] = {
    {"ForecastTitle", {"Prévision d'antenne", "Forecast", "Previsão da emissão", "Previsión de antena"}},
    {"ForecastAgain", {"Recalculer", "Compute again", "Recalcular", "Recalcular"}},
    {"ForecastHours", {"%1 h", "%1 h", "%1 h", "%1 h"}},
    {"ForecastRunning", {"Calcul en cours...", "Computing...", "A calcular...", "Calculando..."}},
    {"ForecastFailed", {"La prévision a échoué : %1", "The forecast failed: %1", "A previsão falhou: %1", "La previsión falló: %1"}},
    {"ForecastDone", {"Calculée à %1", "Computed at %1", "Calculada às %1", "Calculada a las %1"}},
    {"ForecastAt", {"Heure", "Time", "Hora", "Hora"}},
    {"ForecastKind", {"Type", "Type", "Tipo", "Tipo"}},
    {"ForecastWhat", {"Élément", "Element", "Elemento", "Elemento"}},
    {"ForecastLength", {"Durée", "Length", "Duração", "Duración"}},
    {"ForecastMusic", {"Musique", "Music", "Música", "Música"}},
    {"ForecastJingle", {"Jingle", "Jingle", "Jingle", "Jingle"}},
    {"ForecastSpot", {"Pub", "Spot", "Pub", "Cuña"}},
    {"ForecastNews", {"Rubrique", "News", "Intercalar", "Rúbrica"}},
    {"ForecastPip", {"Top horaire", "Hour pip", "Sinal horário", "Señal horaria"}},
    {"ForecastOther", {"Virgule", "Stinger", "Separador", "Cortinilla"}},
    {"ForecastVoiceTrack", {"Voice Track", "Voice track", "Voice track", "Voice track"}},
    {"ForecastMarker", {"Marqueur", "Marker", "Marca", "Marca"}},
    {"ForecastBreak", {"Écran", "Break", "Bloco", "Bloque"}},
    {"ForecastGap", {"BLANC", "GAP", "SILÊNCIO", "SILENCIO"}},
    {"ForecastGapText", {"Silence à l'antenne", "Silence on air", "Silêncio no ar", "Silencio en antena"}},
    {"ForecastWarning", {"Alerte", "Warning", "Aviso", "Aviso"}},
    {"ForecastList", {"Liste", "List", "Lista", "Lista"}},
    {"ForecastMissing", {"Fichier absent : %1", "File missing: %1", "Ficheiro em falta: %1", "Falta el fichero: %1"}},
    {"ForecastUnreadable", {"Fichier illisible : %1", "File unreadable: %1", "Ficheiro ilegível: %1", "Fichero ilegible: %1"}},
};
// clang-format on

}  // namespace

WindowTexts ForecastWindowTexts() {
  return {{}, kForecastWords};
}

}  // namespace zemo
