#include "voicetrack/VoiceTrackTexts.h"

#include "library/LibraryTexts.h"
#include "voicetrack/VoiceTrackEditor.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kVoiceTrack[] = {
    {"title", {"Voice Track", "Voice track", "Voice track", "Voice track"}},

    {"BtnRecord", {"Enregistrer la voix", "Record", "Gravar", "Grabar"}},
    {"BtnStop", {"Arrêter", "Stop", "Parar", "Parar"}},
    {"BtnPlay1", {"Écouter le Voice Track", "Play the voice track", "Ouvir o voice track", "Escuchar el voice track"}},
    {"BtnPplay2", {"Écouter l'enchaînement", "Play the segue", "Ouvir o encadeamento", "Escuchar el encadenamiento"}},
    {"BtnStop2", {"Arrêter l'enchaînement", "Stop the segue", "Parar o encadeamento", "Parar el encadenamiento"}},
    {"BntLoadVT", {"Choisir un fichier...", "Choose a file...", "Escolher um ficheiro...", "Elegir un fichero..."}},
    {"BtnEditVT", {"Ouvrir dans l'éditeur", "Open in the editor", "Abrir no editor", "Abrir en el editor"}},
    {"BtnChoseEditeur", {"Choisir l'éditeur...", "Choose the editor...", "Escolher o editor...", "Elegir el editor..."}},
    {"BtnNormalize", {"Normaliser", "Normalize", "Ajustar o nível", "Ajustar el nivel"}},
    {"BtnUndoNormalize", {"Annuler la normalisation", "Undo normalize", "Anular o nível", "Deshacer el nivel"}},
    {"BtnTableMixage", {"Table de mixage", "Mixer", "Mesa de mistura", "Mesa de mezclas"}},
    {"CmdVTToIntro", {"Caler sur l'intro", "Fit to the intro", "Ajustar à intro", "Ajustar a la intro"}},
    {"BtnSave", {"Sauver", "Save", "Guardar", "Guardar"}},

    {"CheckCut.0", {"Cut Off", "Cut Off", "Cut Off", "Cut Off"}},
    {"CheckCut.1", {"Cut On", "Cut On", "Cut On", "Cut On"}},
    {"CheckTest", {"Avec le Voice Track", "With the voice track", "Com o voice track", "Con el voice track"}},

    {"For.FileAvant", {"Avant", "Before", "Antes", "Antes"}},
    {"For.FileApres", {"Après", "After", "Depois", "Después"}},
    {"For.FileVoiceTrack", {"Fichier", "File", "Ficheiro", "Fichero"}},
    {"For.LblCodeVT", {"Voice Track n°", "Voice track no.", "Voice track n.º", "Voice track n.º"}},
    {"For.LblPositionVT", {"Début (ms)", "Begins at (ms)", "Início (ms)", "Inicio (ms)"}},
    {"For.LblTimeVT", {"Durée", "Length", "Duração", "Duración"}},
    {"For.PointSortie", {"Point de sortie (s)", "Exit point (s)", "Ponto de saída (s)", "Punto de salida (s)"}},
    {"For.PoAvant", {"Reste (avant)", "Before, to go", "Resta do anterior", "Queda del anterior"}},
    {"For.PoApres", {"Position (après)", "After, at", "Posição no seguinte", "Posición en el siguiente"}},
    {"For.PoVT", {"Position Voice Track", "Voice track, at", "Posição do voice track", "Posición del voice track"}},
    {"For.SpinPreRoll", {"Avant l'enchaînement (s)", "Pre-roll (s)", "Antes do encadeamento (s)", "Antes del encadenamiento (s)"}},
    {"For.LevelNormalize", {"Niveau (LUFS, -40 à -5)", "Level (LUFS, -40 to -5)", "Nível (LUFS, -40 a -5)", "Nivel (LUFS, -40 a -5)"}},
    {"For.LblEditeur", {"Éditeur audio", "Audio editor", "Editor de áudio", "Editor de audio"}},
    {"For.VoiceTrackInputID", {"Entrée", "Input", "Entrada", "Entrada"}},
    {"For.VoiceTrackOututID", {"Sortie", "Output", "Saída", "Salida"}},
};
// clang-format on

}  // namespace

std::span<const Word> VoiceTrackCaptions() {
  return kVoiceTrack;
}

std::string ShownCut(const VoiceTrackEditor& editor, int langue) {
  return Caption(VoiceTrackCaptions(), editor.CheckCut ? "CheckCut.1" : "CheckCut.0", langue);
}

}  // namespace zemo
