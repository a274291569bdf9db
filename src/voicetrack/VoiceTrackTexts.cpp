#include "voicetrack/VoiceTrackTexts.h"

#include <cstdlib>

#include "library/LibraryTexts.h"
#include "voicetrack/TrackJoins.h"
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
    {"BtnReprise", {"Refaire", "Retake", "Repetir", "Repetir"}},
    {"BtnPrecedent", {"Précédent", "Previous", "Anterior", "Anterior"}},
    {"BtnSuivant", {"Suivant", "Next", "Seguinte", "Siguiente"}},
    {"BtnSave", {"Sauver", "Save", "Guardar", "Guardar"}},

    {"BtnLatence", {"Mesurer la latence", "Measure the latency", "Medir a latência", "Medir la latencia"}},
    {"CheckLatence", {"Latence mesurée", "Measured latency", "Latência medida", "Latencia medida"}},
    {"For.LblLatence", {"Latence (ms)", "Latency (ms)", "Latência (ms)", "Latencia (ms)"}},
    {"LblMicro", {"Le microphone ne donne rien", "The microphone gives nothing", "O microfone não dá nada", "El micrófono no da nada"}},
    {"LblSortie", {"S'écoute sur l'antenne", "Heard on the on-air output", "Ouve-se na saída de emissão", "Suena en la salida de antena"}},
    {"LblSortie.Tip", {"Cette sortie est celle de l'antenne : choisissez-en une autre pour l'écoute", "This output is the on-air one: choose another to listen on", "Esta saída é a da emissão: escolha outra para a escuta", "Esta salida es la de antena: elija otra para escuchar"}},

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

    {"For.ListJoins", {"Enchaînements", "Segues", "Encadeamentos", "Encadenamientos"}},
    {"For.LblIntro", {"Intro (s)", "Intro (s)", "Introdução (s)", "Intro (s)"}},
    {"For.LblARemplir", {"À remplir", "To fill", "A preencher", "Por llenar"}},
    {"For.LblDecompte", {"Fin de l'intro dans", "Intro ends in", "Fim da intro em", "Fin de la intro en"}},
    {"For.VueRaccord", {"Enchaînement", "Segue", "Encadeamento", "Encadenamiento"}},
    {"For.MMLevelX1", {"Niveau gauche du microphone", "Left level of the microphone", "Nível esquerdo do microfone", "Nivel izquierdo del micrófono"}},
    {"For.MMLevelX2", {"Niveau droit du microphone", "Right level of the microphone", "Nível direito do microfone", "Nivel derecho del micrófono"}},
    {"For.MMLevelX3", {"Niveau gauche de l'enchaînement", "Left level of the segue", "Nível esquerdo do encadeamento", "Nivel izquierdo del encadenamiento"}},
    {"For.MMLevelX4", {"Niveau droit de l'enchaînement", "Right level of the segue", "Nível direito do encadeamento", "Nivel derecho del encadenamiento"}},
    {"LblJoins", {"%1 à faire sur %2", "%1 of %2 to do", "%1 de %2 por fazer", "%1 de %2 por hacer"}},
    {"LblJoins.Done", {"Tout est fait", "All done", "Tudo feito", "Todo hecho"}},
    {"Join.Missing", {"Sans voice track", "No voice track yet", "Sem voice track", "Sin voice track"}},
    {"Join.Done", {"Voice track prêt", "The voice track is ready", "Voice track pronto", "Voice track listo"}},
    {"TrackOtherBefore", {"Ce Voice Track a été fait pour suivre un autre élément", "This voice track was made to follow another element", "Este voice track foi feito para seguir outro elemento", "Este voice track se hizo para seguir a otro elemento"}},
    {"TrackChangedBefore", {"La durée ou le point de sortie de l'élément précédent a changé depuis ce Voice Track", "The length or the exit point of the previous element has changed since this voice track was made", "A duração ou o ponto de saída do elemento anterior mudou desde este voice track", "La duración o el punto de salida del elemento anterior cambió desde este voice track"}},
    {"TrackOtherAfter", {"Ce Voice Track a été fait pour précéder un autre élément", "This voice track was made to lead into another element", "Este voice track foi feito para anteceder outro elemento", "Este voice track se hizo para preceder a otro elemento"}},
    {"TrackChangedAfter", {"L'intro de l'élément suivant a changé depuis ce Voice Track", "The intro of the next element has changed since this voice track was made", "A intro do elemento seguinte mudou desde este voice track", "La intro del elemento siguiente cambió desde este voice track"}},
    {"Device", {"Périphérique %1", "Device %1", "Dispositivo %1", "Dispositivo %1"}},

    {"Note.Recording", {"Enregistrement", "Recording", "A gravar", "Grabando"}},
    {"Note.RetakeIn", {"Reprise dans %1 s", "Retake in %1 s", "Repetição em %1 s", "Repetición en %1 s"}},
    {"Note.Unsaved", {"Pas encore sauvé", "Not saved yet", "Ainda não guardado", "Aún no guardado"}},

    {"BtnRecord.Tip", {"Enregistre; pendant que l'enchaînement s'entend, le voice track y prend sa place", "Records; while the segue is heard the voice track takes its place in it", "Grava; enquanto se ouve o encadeamento, o voice track toma nele o seu lugar", "Graba; mientras se oye el encadenamiento, el voice track toma su lugar en él"}},
    {"BtnReprise.Tip", {"Rejoue l'enchaînement et enregistre à partir du même endroit", "Plays the segue again and records from the same place on", "Toca de novo o encadeamento e grava a partir do mesmo lugar", "Repite el encadenamiento y graba desde el mismo lugar"}},
    {"CheckCut.Tip", {"Cut On : le voice track est un élément à part, entre les deux titres", "Cut On: the voice track is an element of its own between the two titles", "Cut On: o voice track é um elemento próprio entre os dois títulos", "Cut On: el voice track es un elemento propio entre los dos títulos"}},
    {"BtnLatence.Tip", {"Joue un bruit sur la sortie et le cherche dans l'entrée", "Plays a noise on the output and looks for it in the input", "Toca um ruído na saída e procura-o na entrada", "Reproduce un ruido en la salida y lo busca en la entrada"}},
    {"CheckLatence.Tip", {"La latence mesurée place ce qui s'enregistre, au lieu de 2420 ms", "The measured latency places what is recorded, in place of 2420 ms", "A latência medida coloca o que se grava, em vez de 2420 ms", "La latencia medida coloca lo que se graba, en lugar de 2420 ms"}},
    {"CheckTest.Tip", {"L'enchaînement s'entend avec le voice track", "The segue is heard with the voice track in it", "O encadeamento ouve-se com o voice track", "El encadenamiento se oye con el voice track"}},
    {"CmdVTToIntro.Tip", {"Le voice track finit avec l'intro du titre suivant", "The voice track ends with the intro of the title after", "O voice track acaba com a introdução do título seguinte", "El voice track acaba con la intro del título siguiente"}},
    {"BtnSuivant.Tip", {"Sauve et va à l'enchaînement suivant", "Saves and goes to the next segue", "Guarda e vai para o encadeamento seguinte", "Guarda y va al encadenamiento siguiente"}},
    {"BtnPrecedent.Tip", {"Sauve et va à l'enchaînement précédent", "Saves and goes to the previous segue", "Guarda e vai para o encadeamento anterior", "Guarda y va al encadenamiento anterior"}},
    {"VueRaccord.Tip", {"Glisser le voice track, ou flèches 10 ms et Maj+flèches 100 ms; clic ou Ctrl+flèches : curseur; Espace : écouter de là; molette ou +/- : zoom, Maj+molette : défiler ; Début : au début", "Drag the voice track, or arrows 10 ms and Shift+arrows 100 ms; click or Ctrl+arrows: cursor; Space: play from there; wheel or +/-: zoom, Shift+wheel: scroll; Home: to the begin", "Arrastar o voice track, ou setas 10 ms e Shift+setas 100 ms; clique ou Ctrl+setas: cursor; Espaço: ouvir daí; roda ou +/-: zoom, Shift+roda: deslocar; Home: ao início", "Arrastrar el voice track, o flechas 10 ms y Mayús+flechas 100 ms; clic o Ctrl+flechas: cursor; Espacio: escuchar desde ahí; rueda o +/-: zoom, Mayús+rueda: desplazar; Inicio: al principio"}},
    {"SoundFiles", {"Fichier son", "Sound file", "Ficheiro de som", "Fichero de sonido"}},
    {"Programs", {"Application", "Program", "Aplicação", "Aplicación"}},
};
// clang-format on

}  // namespace

std::span<const Word> VoiceTrackCaptions() {
  return kVoiceTrack;
}

std::string ShownFault(NeighbourFault fault, int langue) {
  static constexpr const char* kNames[kNeighbourFaults] = {
      "", "TrackOtherBefore", "TrackChangedBefore", "TrackOtherAfter", "TrackChangedAfter"};
  return Caption(VoiceTrackCaptions(), kNames[static_cast<size_t>(fault)], langue);
}

std::string ShownState(const TrackJoin& join, int langue) {
  if (join.fault != NeighbourFault::kNone) return ShownFault(join.fault, langue);
  return Caption(VoiceTrackCaptions(), join.track == 0 ? "Join.Missing" : "Join.Done", langue);
}

std::string ShownFigure(int64_t ms) {
  const int64_t tenths = std::abs(ms) / 100;
  const int64_t seconds = tenths / 10 % 60;
  return (ms < 0 && tenths > 0 ? "-" : "") + std::to_string(tenths / 600) +
         (seconds < 10 ? ":0" : ":") + std::to_string(seconds) + "." + std::to_string(tenths % 10);
}

std::string ShownCut(const VoiceTrackEditor& editor, int langue) {
  return Caption(VoiceTrackCaptions(), editor.CheckCut ? "CheckCut.1" : "CheckCut.0", langue);
}

}  // namespace zemo
