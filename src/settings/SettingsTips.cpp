// What each setting does, in the four languages.
#include "settings/SettingsTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kTips[] = {
    {"EnchDef", {"Point d'enchaînement d'un titre qui n'en a pas : combien de temps avant sa fin part l'élément suivant", "Mix point of a title that has none of its own: how far before its end the next element starts", "Ponto de mistura de um título que não tem o seu: quanto antes do fim entra o elemento seguinte", "Punto de mezcla de un título que no tiene el suyo: cuánto antes del final entra el elemento siguiente"}},
    {"EnchPub", {"Point d'enchaînement des pubs et rubriques", "Mix point of spots and news", "Ponto de mistura da publicidade e dos intercalares", "Punto de mezcla de cuñas y rúbricas"}},
    {"EnchToph", {"Point d'enchaînement des tops horaires", "Mix point of hour pips", "Ponto de mistura dos sinais horários", "Punto de mezcla de las señales horarias"}},
    {"EnchJingles", {"Point d'enchaînement des jingles", "Mix point of jingles", "Ponto de mistura dos jingles", "Punto de mezcla de los jingles"}},
    {"HsFadeOut", {"Durée d'un fondu de sortie", "Length of a fade-out", "Duração de um fade de saída", "Duración de un fundido de salida"}},
    {"MaxPlay", {"Durée maximale de la sortie avant sa relance, qui coûte jusqu'à 2 s d'antenne ; cette sortie n'en a pas besoin", "Longest run of the output before it is restarted, which costs up to 2 s of air; this output needs none", "Maior tempo da saída antes de ser reiniciada, o que custa até 2 s de emissão; esta saída não precisa", "Mayor tiempo de la salida antes de reiniciarse, lo que cuesta hasta 2 s de antena; esta salida no lo necesita"}},
    {"Buffers", {"Taille d'un tampon audio ; effectif au prochain démarrage", "Size of one audio buffer; takes effect at the next start", "Tamanho de um buffer de áudio; tem efeito no próximo arranque", "Tamaño de un búfer de audio; efectivo en el próximo inicio"}},
    {"NbrBuffers", {"Nombre de tampons audio, 10 s en tout au plus ; effectif au prochain démarrage", "Number of audio buffers, 10 s in all at most; takes effect at the next start", "Número de buffers de áudio, 10 s ao todo no máximo; tem efeito no próximo arranque", "Número de búferes de audio, 10 s en total como máximo; efectivo en el próximo inicio"}},
    {"CheckPub", {"Les pubs sont prioritaires : elles coupent l'élément à l'antenne", "Spots have priority", "A publicidade tem prioridade", "Las cuñas tienen prioridad"}},
    {"CheckRubrique", {"Les rubriques sont prioritaires : elles coupent l'élément à l'antenne", "News has priority", "Os intercalares têm prioridade", "Las rúbricas tienen prioridad"}},
    {"JingleMn", {"Temps entre deux jingles", "Time between two jingles", "Tempo entre dois jingles", "Tiempo entre dos jingles"}},
    {"JingleMnIntro", {"Temps entre deux jingles voix sur une introduction", "Time between two voice jingles over an introduction", "Tempo entre dois jingles de voz sobre uma introdução", "Tiempo entre dos jingles de voz sobre una introducción"}},
    {"Volume", {"Volume de la musique ; 16384 laisse le son tel qu'il est", "Music volume; 16384 leaves the sound as it is", "Volume da música; 16384 deixa o som como está", "Volumen de la música; 16384 deja el sonido como está"}},
    {"VolumeSousImp", {"Volume de la musique sous une surimpression", "Music volume under an overlay", "Volume da música sob uma sobreposição", "Volumen de la música bajo una sobreimpresión"}},
    {"VolumeSurImp", {"Volume de ce qui passe par-dessus la musique", "Volume of what plays over the music", "Volume do que toca por cima da música", "Volumen de lo que suena sobre la música"}},
    {"VolumePub", {"Volume des pubs", "Spot volume", "Volume da publicidade", "Volumen de las cuñas"}},
    {"VolumeRub", {"Volume des rubriques", "News volume", "Volume dos intercalares", "Volumen de las rúbricas"}},
    {"FileAvantPub", {"Fichier audio du jingle avant un écran de pubs", "Sound file of the jingle before a set of spots", "Ficheiro de som do jingle antes de uma série de publicidade", "Fichero de sonido del jingle antes de una serie de cuñas"}},
    {"FileApresPub", {"Fichier audio du jingle après un écran de pubs", "Sound file of the jingle after a set of spots", "Ficheiro de som do jingle depois de uma série de publicidade", "Fichero de sonido del jingle después de una serie de cuñas"}},
    {"Langue", {"Langue des écrans, à la prochaine ouverture de chacun", "Language of the screens, at the next opening of each", "Língua dos ecrãs, na próxima abertura de cada um", "Idioma de las pantallas, en la próxima apertura de cada una"}},
    {"PortCom", {"Port série de l'automate, ouvert tout de suite ; 0 pour aucun", "Serial port of the controller, opened at once; 0 for none", "Porta série do autómato, aberta de imediato; 0 para nenhuma", "Puerto serie del autómata, abierto enseguida; 0 para ninguno"}},
    {"OptionSat", {"Ce que fait l'entrée de l'automate", "What the controller's input does", "O que faz a entrada do autómato", "Lo que hace la entrada del autómata"}},
    {"SpinPurge", {"Le rapport est purgé de ce qui est plus ancien", "The report is purged of what is older", "O relatório é limpo do que é mais antigo", "El informe se purga de lo que es más antiguo"}},
    {"PictureColor", {"Couleur des compteurs de l'écran principal, appliquée tout de suite", "Colour of the main screen's counters, applied at once", "Cor dos contadores do ecrã principal, aplicada de imediato", "Color de los contadores de la pantalla principal, aplicado enseguida"}},
    {"CheckJingleCourt", {"Les jingles courts sont gérés à part", "Short jingles are managed separately", "Os jingles curtos são geridos à parte", "Los jingles cortos se gestionan aparte"}},
    {"GraphiqueMini", {"Écran principal sans dégradés", "Main screen without gradients", "Ecrã principal sem gradientes", "Pantalla principal sin degradados"}},
    {"CheckDepartJingle", {"Les jingles sont placés en fin d'intro", "The jingles are put at the end of the intro", "Os jingles são postos no fim da intro", "Los jingles se ponen al final de la intro"}},
    {"SpinRequette", {"Durée d'une requête de musique", "Length of a music request", "Duração de um pedido de música", "Duración de una petición de música"}},
    {"SpinVeille", {"Inactivité avant l'écran de veille ; 0 pour jamais", "Idle time before the screen saver; 0 for never", "Inatividade antes da proteção de ecrã; 0 para nunca", "Inactividad antes del salvapantallas; 0 para nunca"}},
    {"TexteV", {"Texte affiché par l'écran de veille", "Text that the screen saver shows", "Texto que a proteção de ecrã mostra", "Texto que muestra el salvapantallas"}},
    {"SpinAvantoph", {"Part minimale d'un titre qui doit avoir été jouée avant le top horaire", "Minimum share of a title that must have played before the hour pip", "Parte mínima de um título que tem de ter tocado antes do sinal horário", "Parte mínima de un título que debe haber sonado antes de la señal horaria"}},
    {"OptionOptimise", {"Les titres sont choisis pour tomber juste au top horaire", "Titles are chosen so that the hour ends with its pip", "Os títulos são escolhidos para acertar com o sinal horário", "Los títulos se eligen para acabar justo con la señal horaria"}},
    {"SpinOptimise", {"Minute de l'heure à partir de laquelle l'optimisation agit", "Minute of the hour from which the optimization works", "Minuto da hora a partir do qual a optimização atua", "Minuto de la hora desde el que actúa la optimación"}},
    {"SpinImpulsion", {"Impulsion la plus longue de l'automate ; 0 pour des contacts maintenus", "Longest controller pulse; 0 for contacts that are held", "Impulso mais longo do autómato; 0 para contactos mantidos", "Impulso más largo del autómata; 0 para contactos mantenidos"}},
    {"CheckDelPub", {"Les fiches de pubs sont supprimées à la fin de leur campagne", "Spot cards are removed when their campaign ends", "As fichas de publicidade são eliminadas no fim da campanha", "Las fichas de cuñas se eliminan al terminar su campaña"}},
    {"SpinOffset", {"Seconde de la dernière minute à laquelle part le top horaire", "Second of the last minute at which the hour pip is sent", "Segundo do último minuto em que entra o sinal horário", "Segundo del último minuto en que entra la señal horaria"}},
    {"CheckModel", {"Les requêtes suivent les modèles en pourcentages ou en squelettes", "Requests follow percentage models or skeleton models", "Os pedidos seguem modelos em percentagens ou em esqueletos", "Las peticiones siguen modelos en porcentajes o en esqueletos"}},
    {"CheckInstrumental", {"Joue des instrumentaux aux heures cochées ; décoche les pubs avec le top", "Plays instrumentals in the ticked hours; clears spots with the pip", "Toca instrumentais nas horas marcadas; desmarca a publicidade com o sinal", "Emite instrumentales en las horas marcadas; desmarca las cuñas con la señal"}},
    {"SpinEcartArtiste", {"Titres entre deux chansons du même artiste", "Titles between two songs by the same artist", "Títulos entre duas canções do mesmo artista", "Títulos entre dos canciones del mismo artista"}},
    {"CheckPubToph", {"Les pubs vont avec le top horaire ; décoche les instrumentaux, et met l'optimisation à 48 à partir de 53", "Spots go with the hour pip; clears instrumentals, and sets the optimization minute to 48 if it is 53 or later", "A publicidade vai com o sinal horário; desmarca os instrumentais, e põe a optimização em 48 a partir de 53", "Las cuñas van con la señal horaria; desmarca los instrumentales y pone la optimación en 48 desde 53"}},
    {"CheckNational", {"La part nationale est gardée dans une requête par squelette", "The national share is kept in a skeleton request", "A parte nacional é mantida num pedido com esqueleto", "La parte nacional se mantiene en una petición con esqueleto"}},
    {"JingleExtraitYN", {"Les extraits sont annoncés par un jingle", "Excerpts are announced with a jingle", "Os excertos são anunciados com um jingle", "Los extractos se anuncian con un jingle"}},
    {"ComboJoystiquePort", {"Port du joystick, écouté tout de suite ; 0 pour aucun", "Joystick port, read at once; 0 for none", "Porta do joystick, ativada de imediato; 0 para nenhuma", "Puerto del joystick, activado enseguida; 0 para ninguno"}},
    {"SpinDecalDiff", {"Décalage automatique des dernières tranches horaires dans une requête", "Automatic shift of the last hour bands in a request", "Desvio automático das últimas faixas horárias num pedido", "Desplazamiento automático de las últimas franjas en una petición"}},
    {"CheckExtraitAuto", {"Les extraits des fiches sans points d'extrait sont faits automatiquement", "Excerpts of cards without excerpt points are made automatically", "Os excertos das fichas sem pontos de excerto são feitos automaticamente", "Los extractos de las fichas sin puntos de extracto se hacen automáticamente"}},
    {"SpinInExtrait", {"Point d'entrée d'un extrait automatique", "Start point of an automatic excerpt", "Ponto de entrada de um excerto automático", "Punto de entrada de un extracto automático"}},
    {"SpinOutExtrait", {"Durée d'un extrait automatique", "Length of an automatic excerpt", "Duração de um excerto automático", "Duración de un extracto automático"}},
    {"CheckAutoPlay", {"Cette machine passe à l'antenne au démarrage du programme", "This machine goes on air when the program starts", "Esta máquina entra no ar quando o programa arranca", "Esta máquina sale a antena cuando se inicia el programa"}},
    {"RapportSquelette", {"Les requêtes par squelette écrivent leur fichier de refus", "Skeleton requests write their refusal file", "Os pedidos com esqueleto escrevem o ficheiro de recusas", "Las peticiones con esqueleto escriben su fichero de rechazos"}},
    {"CheckDoublonYN", {"Une requête par squelette admet un artiste deux fois", "A skeleton request may take an artist twice", "Um pedido com esqueleto admite um artista duas vezes", "Una petición con esqueleto admite un artista dos veces"}},
    {"SpinRapportDiff", {"Dernières lignes du rapport exportées à chaque élément ; enregistré tout de suite", "Newest report rows exported at each element; saved at once", "Últimas linhas do relatório exportadas a cada elemento; guardado de imediato", "Últimas filas del informe exportadas en cada elemento; se guarda enseguida"}},
    {"PlayCombo", {"Sortie audio de l'antenne ; changée tout de suite si elle est fermée", "Output device of the broadcast; changed at once while it is closed", "Saída de áudio da emissão; mudada de imediato se estiver fechada", "Salida de audio de la antena; se cambia enseguida si está cerrada"}},
    {"PlayPréecoute", {"Sortie audio de la préécoute ; changée tout de suite si elle est fermée", "Output device of the prelisten; changed at once while it is closed", "Saída de áudio da pré-escuta; mudada de imediato se estiver fechada", "Salida de audio de la preescucha; se cambia enseguida si está cerrada"}},
};
// clang-format on

}  // namespace

std::span<const Word> SettingsTips() {
  return kTips;
}

}  // namespace zemo
