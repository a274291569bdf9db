#include "settings/SettingsTexts.h"

#include "settings/SettingsControls.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kCaptions[] = {
    {"title", {"Paramétrage", "Settings", "Configuração", "Configuración"}},
    {"Config.0", {"Préférences", "Preferences", "Configurar", "Parametraje"}},
    {"Config.1", {"Enchaînements", "Point mix", "Encadeamento", "Encadenamientos"}},
    {"Config.2", {"Niveaux", "Levels", "Volume", "Volúmenes"}},
    {"Config.3", {"Carte son", "Sound Card", "Áudio", "Audio"}},
    {"Config.4", {"Pubs / Rubriques", "Spots / News", "Pub / Intercalares", "Pubs / Rúbricas"}},
    {"Config.5", {"Démarrage", "Start", "Arranque", "Inicio"}},
    {"Config.6", {"Divers", "Others", "Outros", "Diversos"}},
    {"Config.7", {"Communication", "Communication", "Comunicação", "Comunicación"}},
    {"Config.8", {"Optimisation", "Optimization", "Optimização", "Optimación"}},

    // preferences
    {"Langue", {"Langue", "Language", "Língua", "Idioma"}},
    {"TexteV", {"Texte de l'écran de veille", "Screen saver text", "Texto da proteção de ecrã", "Texto del salvapantallas"}},
    {"SpinVeille", {"Écran de veille après", "Screen saver after", "Proteção de ecrã após", "Salvapantallas tras"}},
    {"GraphiqueMini", {"Graphisme réduit", "Low graphics", "Grafismo reduzido", "Gráficos reducidos"}},
    {"PictureColor", {"Couleur des compteurs...", "Colour of the counters...", "Cor dos contadores...", "Color de los contadores..."}},
    {"SpinRequette", {"Durée d'une requête", "Length of a request", "Duração de um pedido", "Duración de una petición"}},
    {"JingleMn", {"Entre deux jingles", "Between two jingles", "Entre dois jingles", "Entre dos jingles"}},
    {"JingleMnIntro", {"Entre deux jingles voix sur intro", "Between two voice jingles on intros", "Entre dois jingles de voz na intro", "Entre dos jingles de voz en intro"}},
    {"CheckJingleCourt", {"Gérer les jingles courts", "Manage short jingles", "Gerir os jingles curtos", "Gestionar los jingles cortos"}},
    {"CheckDepartJingle", {"Jingles en fin d'intro", "Jingles at the end of the intro", "Jingles no fim da intro", "Jingles al final de la intro"}},
    {"JingleExtraitYN", {"Annoncer les extraits par un jingle", "Announce excerpts with a jingle", "Anunciar os excertos com um jingle", "Anunciar los extractos con un jingle"}},

    // mix points, levels
    {"EnchDef", {"Musiques", "Music", "Músicas", "Músicas"}},
    {"EnchPub", {"Pubs et rubriques", "Spots and news", "Publicidade e intercalares", "Cuñas y rúbricas"}},
    {"EnchToph", {"Tops horaires", "Hour pips", "Sinais horários", "Señales horarias"}},
    {"EnchJingles", {"Jingles", "Jingles", "Jingles", "Jingles"}},
    {"HsFadeOut", {"Fondu de sortie", "Fade-out", "Fade de saída", "Fundido de salida"}},
    {"Volume", {"Musique", "Music", "Música", "Música"}},
    {"VolumeSousImp", {"Musique sous surimpression", "Music under an overlay", "Música sob sobreposição", "Música bajo sobreimpresión"}},
    {"VolumeSurImp", {"Surimpression", "Overlay", "Sobreposição", "Sobreimpresión"}},
    {"VolumePub", {"Pubs", "Spots", "Publicidade", "Cuñas"}},
    {"VolumeRub", {"Rubriques", "News", "Intercalares", "Rúbricas"}},

    // sound card
    {"PlayCombo", {"Sortie antenne", "On-air output", "Saída de emissão", "Salida de antena"}},
    {"PlayPréecoute", {"Sortie préécoute", "Prelisten output", "Saída de pré-escuta", "Salida de preescucha"}},
    {"TestAir", {"Son d'essai", "Test tone", "Som de teste", "Tono de prueba"}},
    {"TestPrelisten", {"Son d'essai", "Test tone", "Som de teste", "Tono de prueba"}},
    {"TestStop", {"Arrêter le son", "Stop the tone", "Parar o som", "Parar el tono"}},
    {"TestTip", {"Joue un son de 1000 Hz sur la sortie choisie ; le niveau montre ce qui est entendu", "Plays a tone of 1000 Hz on the chosen output; the level shows what is heard", "Toca um som de 1000 Hz na saída escolhida; o nível mostra o que se ouve", "Reproduce un tono de 1000 Hz por la salida elegida; el nivel muestra lo que se oye"}},
    {"TestRefused", {"La sortie ne joue pas", "The output does not play", "A saída não toca", "La salida no suena"}},
    {"TestInUse", {"Occupée : antenne ou préécoute", "In use: on air or prelisten", "Ocupada: emissão ou pré-escuta", "Ocupada: antena o preescucha"}},
    {"TestNone", {"Aucune sortie choisie", "No output chosen", "Nenhuma saída escolhida", "Ninguna salida elegida"}},
    {"NoOutput", {"(aucune)", "(none)", "(nenhuma)", "(ninguna)"}},
    {"Buffers", {"Taille d'un tampon", "Size of a buffer", "Tamanho de um buffer", "Tamaño de un búfer"}},
    {"NbrBuffers", {"Nombre de tampons", "Number of buffers", "Número de buffers", "Número de búferes"}},
    {"MaxPlay", {"Cycle maximum", "Maximum cycle", "Ciclo máximo", "Ciclo máximo"}},
    {"LblNextStart", {"Sera effectif au prochain démarrage de Zemo Radio ! ", "Will be efficient to the next starting of Zemo Radio ! ", "Terá efeito no próximo arranque do Zemo Radio! ", "¡Tendrá efecto en el próximo inicio de Zemo Radio! "}},

    // spots and news
    {"CheckPub", {"Priorité aux pubs", "Spots have priority", "Prioridade à publicidade", "Prioridad a las cuñas"}},
    {"CheckRubrique", {"Priorité aux rubriques", "News has priority", "Prioridade aos intercalares", "Prioridad a las rúbricas"}},
    {"CheckDelPub", {"Supprimer les fiches en fin de campagne", "Remove cards when their campaign ends", "Eliminar as fichas no fim da campanha", "Eliminar las fichas al final de la campaña"}},
    {"CheckPubToph", {"Pubs avec le top horaire", "Spots with the hour pip", "Publicidade com o sinal horário", "Cuñas con la señal horaria"}},
    {"FileAvantPub", {"Jingle avant les pubs", "Jingle before spots", "Jingle antes da publicidade", "Jingle antes de las cuñas"}},
    {"FileApresPub", {"Jingle après les pubs", "Jingle after spots", "Jingle depois da publicidade", "Jingle después de las cuñas"}},
    {"CmdFileAvant", {"Fichier...", "File...", "Ficheiro...", "Fichero..."}},
    {"CmdFileApres", {"Fichier...", "File...", "Ficheiro...", "Fichero..."}},

    // start
    {"JourSemaine", {"Jour de la semaine", "Day of the week", "Dia da semana", "Día de la semana"}},
    {"StartAuto", {"Démarrages automatiques", "Automatic starts", "Arranques automáticos", "Inicios automáticos"}},
    {"ArretSystem", {"Arrêts du système", "System stops", "Paragens do sistema", "Paradas del sistema"}},
    {"FrameTopage", {"Heures de topage", "Time cues", "Marcas horárias", "Marcas horarias"}},
    {"ChEdit", {"Heure", "Time", "Hora", "Hora"}},
    {"BtnAjouter", {"Ajouter", "Add", "Adicionar", "Añadir"}},
    {"BtnSave", {"Sauvegarder", "Save", "Guardar", "Salvaguarda"}},
    {"BtnInti", {"Initialiser", "Intitialize", "Inicializar", "Inicio"}},
    {"ChDecoupe", {"Minutes de chaque heure", "Minutes of each hour", "Minutos de cada hora", "Minutos de cada hora"}},
    {"TimesTip", {"Entrée ajoute l'heure saisie (hh:mm), Suppr enlève celle qui est choisie", "Enter adds the time typed (hh:mm), Delete removes the chosen one", "Enter adiciona a hora escrita (hh:mm), Delete retira a escolhida", "Intro añade la hora escrita (hh:mm), Supr quita la elegida"}},
    {"StopsTip", {"Entrée ajoute l'heure saisie (hh:mm, hh:mm-F ou hh:mm-Q), Suppr enlève celle qui est choisie", "Enter adds the time typed (hh:mm, hh:mm-F or hh:mm-Q), Delete removes the chosen one", "Enter adiciona a hora escrita (hh:mm, hh:mm-F ou hh:mm-Q), Delete retira a escolhida", "Intro añade la hora escrita (hh:mm, hh:mm-F o hh:mm-Q), Supr quita la elegida"}},
    {"SaveTip", {"Écrit tout de suite les heures de topage de ce jour", "Writes the time cues of this day at once", "Escreve já as marcas horárias deste dia", "Escribe ya las marcas horarias de este día"}},
    {"IntiTip", {"Refait la liste : chaque heure avec chacune de ces minutes", "Rebuilds the list: every hour with each of these minutes", "Refaz a lista: cada hora com cada um destes minutos", "Rehace la lista: cada hora con cada uno de estos minutos"}},
    {"DayTip", {"Le jour dont les heures sont montrées ; celui que l'on quitte est sauvegardé s'il a changé", "The day whose times are shown; the one you leave is saved if it was changed", "O dia cujas horas são mostradas; o que se deixa é guardado se mudou", "El día cuyas horas se muestran; el que se deja se guarda si ha cambiado"}},

    // others
    {"CheckAutoPlay", {"Passer à l'antenne au démarrage", "Go on air at start-up", "Entrar no ar no arranque", "Salir a antena al iniciar"}},
    {"RapportSquelette", {"Rapport de refus des requêtes", "Request refusal report", "Relatório de recusas dos pedidos", "Informe de rechazos de peticiones"}},
    {"CheckDoublonYN", {"Admettre les doublons d'artiste", "Allow repeated artists", "Admitir artistas repetidos", "Admitir artistas repetidos"}},
    {"SpinRapportDiff", {"Lignes du rapport exportées", "Report rows exported", "Linhas do relatório exportadas", "Filas del informe exportadas"}},
    {"SpinPurge", {"Garder le rapport", "Keep the report for", "Conservar o relatório", "Conservar el informe"}},
    {"CheckExtraitAuto", {"Extraits automatiques", "Automatic excerpts", "Excertos automáticos", "Extractos automáticos"}},
    {"SpinInExtrait", {"Début de l'extrait", "Start of the excerpt", "Início do excerto", "Inicio del extracto"}},
    {"SpinOutExtrait", {"Durée de l'extrait", "Length of the excerpt", "Duração do excerto", "Duración del extracto"}},
    {"BtnIndex", {"Réindexer la base...", "Re-index the database...", "Reindexar a base...", "Reindexar la base..."}},
    {"BtnIndexTip", {"Répare et compacte la base ; personne d'autre ne doit y travailler", "Repairs and compacts the database; nobody else may work on it", "Repara e compacta a base; mais ninguém pode estar a usá-la", "Repara y compacta la base; nadie más debe trabajar en ella"}},
    {"BtnRech", {"Rechercher les genres", "Look for genres", "Procurar géneros", "Buscar géneros"}},
    {"BtnRechTip", {"Ajoute à la liste les genres des fiches qui lui manquent", "Adds the genres of cards that are missing from the list", "Adiciona à lista os géneros das fichas que lhe faltam", "Añade a la lista los géneros de las fichas que le faltan"}},

    // communication
    {"PortCom", {"Port de l'automate", "Controller port", "Porta do autómato", "Puerto del autómata"}},
    {"PortCom.0", {"Inactif", "Disabled", "Inativa", "Inactivo"}},
    {"PortCom.1", {"Com 1", "Com 1", "Com 1", "Com 1"}},
    {"PortCom.2", {"Com 2", "Com 2", "Com 2", "Com 2"}},
    {"PortCom.3", {"Com 3", "Com 3", "Com 3", "Com 3"}},
    {"PortCom.4", {"Com 4", "Com 4", "Com 4", "Com 4"}},
    {"Setting", {"Paramètres de la ligne", "Line parameters", "Parâmetros da linha", "Parámetros de la línea"}},
    {"SettingTip", {"Bauds, parité, bits de données et bits d'arrêt ; non enregistré. Par défaut : 4800,N,8,1", "Baud rate, parity, data bits and stop bits; not saved. Default: 4800,N,8,1", "Bauds, paridade, bits e bits de paragem; não é guardado. Por omissão: 4800,N,8,1", "Baudios, paridad, bits y bits de parada; no se guarda. Por defecto: 4800,N,8,1"}},
    {"OptionSat", {"Action sur l'automate", "Controller action", "Ação sobre o autómato", "Acción sobre el autómata"}},
    {"OptionSat.0", {"Aucune", "None", "Nenhuma", "Ninguna"}},
    {"OptionSat.1", {"Entrée 1 : départ auto", "Input 1: auto start", "Entrada 1: arranque auto", "Entrada 1: inicio auto"}},
    {"OptionSat.2", {"Entrée 2 : info satellite", "Input 2: satellite news", "Entrada 2: info satélite", "Entrada 2: info satélite"}},
    {"OptionSat.3", {"Entrée 3 : programme local", "Input 3: local programme", "Entrada 3: programa local", "Entrada 3: programa local"}},
    {"OptionSat.4", {"Entrée 4 : jingles", "Input 4: jingles", "Entrada 4: jingles", "Entrada 4: jingles"}},
    {"SpinImpulsion", {"Impulsion la plus longue", "Longest pulse", "Impulso mais longo", "Impulso más largo"}},
    {"FrameJoystique", {"Joystick", "Joystick", "Joystick", "Joystick"}},
    {"ComboJoystiquePort", {"Port du joystick", "Joystick port", "Porta do joystick", "Puerto del joystick"}},
    {"JoystickAnswers", {"Répond", "Responds", "Responde", "Responde"}},
    {"Filtre", {"Entrées coupées", "Inputs off", "Entradas cortadas", "Entradas cortadas"}},
    {"Filtre.0", {"de", "from", "de", "de"}},
    {"Filtre.1", {"à", "to", "a", "a"}},
    {"ChFiltre", {"Heure", "Time", "Hora", "Hora"}},
    {"FiltreTip", {"Entrée écrit l'heure (hh:mm, ou rien) dans la case choisie ; pris en compte à la fermeture", "Enter writes the time (hh:mm, or nothing) into the chosen cell; applies once the window is closed", "Enter escreve a hora (hh:mm, ou nada) na célula escolhida; conta a partir do fecho", "Intro escribe la hora (hh:mm, o nada) en la celda elegida; cuenta desde el cierre"}},

    // optimisation
    {"OptionOptimise", {"Optimisation de fin d'heure", "End-of-hour optimization", "Optimização do fim da hora", "Optimación de fin de hora"}},
    {"OptionOptimise.0", {"Inactive", "Disable", "Inactiva", "Inactivo"}},
    {"OptionOptimise.1", {"Active", "Enable", "Activa", "Activo"}},
    {"SpinOptimise", {"À partir de la minute", "From the minute", "A partir do minuto", "Desde el minuto"}},
    {"SpinAvantoph", {"Part jouée avant le top", "Share played before the pip", "Parte tocada antes do sinal", "Parte emitida antes de la señal"}},
    {"SpinOffset", {"Départ du top horaire", "Hour pip sent at", "Entrada do sinal horário", "Entrada de la señal horaria"}},
    {"CheckModel", {"Modèles des requêtes", "Request models", "Modelos dos pedidos", "Modelos de las peticiones"}},
    {"CheckModel.0", {"Pourcentages", "Percentages", "Percentagens", "Porcentajes"}},
    {"CheckModel.1", {"Squelettes", "Skeletons", "Esqueletos", "Esqueletos"}},
    {"CheckNational", {"Garder la part nationale", "Keep the national share", "Manter a parte nacional", "Mantener la parte nacional"}},
    {"SpinEcartArtiste", {"Entre deux titres d'un artiste", "Between two songs by an artist", "Entre dois títulos de um artista", "Entre dos títulos de un artista"}},
    {"SpinDecalDiff", {"Décalage des tranches", "Shift of the hour bands", "Desvio das faixas horárias", "Desplazamiento de las franjas"}},
    {"CheckInstrumental", {"Instrumentaux aux heures cochées", "Instrumentals in the ticked hours", "Instrumentais nas horas marcadas", "Instrumentales en las horas marcadas"}},
    {"Instru", {"Heures d'instrumentaux", "Hours of instrumentals", "Horas de instrumentais", "Horas de instrumentales"}},

    // tips and refusals
    {"Unit.ms", {"ms", "ms", "ms", "ms"}},
    {"Unit.minutes", {"minutes", "minutes", "minutos", "minutos"}},
    {"Unit.bytes", {"octets", "bytes", "bytes", "bytes"}},
    {"Unit.days", {"jours", "days", "dias", "días"}},
    {"Unit.per cent", {"%", "%", "%", "%"}},
    {"Unit.s", {"s", "s", "s", "s"}},
    {"Unit.titles", {"titres", "titles", "títulos", "títulos"}},
    {"Unit.hours", {"heures", "hours", "horas", "horas"}},
    {"Unit.rows", {"lignes", "rows", "linhas", "filas"}},
    {"Unit.minute", {"minute", "minute", "minuto", "minuto"}},
    {"Default", {"Par défaut : %1", "Default: %1", "Por omissão: %1", "Por defecto: %1"}},
    {"DefaultNone", {"Par défaut : rien", "Default: none", "Por omissão: nada", "Por defecto: nada"}},
    {"On", {"oui", "yes", "sim", "sí"}},
    {"Off", {"non", "no", "não", "no"}},
    {"RefusedRange", {"Entre %1", "Between %1", "Entre %1", "Entre %1"}},
    {"RangeTo", {"et", "and", "e", "y"}},
    {"RefusedBuffers", {"Plus de 10 s en tout", "More than 10 s in all", "Mais de 10 s ao todo", "Más de 10 s en total"}},
    {"RefusedLong", {"Plus de %1 caractères", "More than %1 characters", "Mais de %1 caracteres", "Más de %1 caracteres"}},
    {"RefusedTime", {"Une heure hh:mm", "A time hh:mm", "Uma hora hh:mm", "Una hora hh:mm"}},
    {"RefusedFull", {"La liste est pleine", "The list is full", "A lista está cheia", "La lista está llena"}},
    {"RefusedUnread", {"Fichier illisible", "File cannot be read", "Ficheiro ilegível", "Fichero ilegible"}},
    {"RefusedMinute", {"De 0 à 59", "From 0 to 59", "De 0 a 59", "De 0 a 59"}},
};
// clang-format on

std::string DefaultShown(const SettingsControl& control, int langue) {
  if (control.kind == ControlKind::kCheck)
    return SettingsCaption(control.byDefault != "0" ? "On" : "Off", langue);
  return control.byDefault;
}

}  // namespace

std::span<const Word> SettingsCaptions() {
  return kCaptions;
}

std::string SettingsCaption(std::string_view name, int langue) {
  const char* text = FindWord(kCaptions, name, langue);
  return text ? text : "";
}

std::string SettingTip(const SettingsControl& control, int langue) {
  const char* meaning = FindWord(SettingsTips(), control.name, langue);
  std::string tip = meaning ? meaning : "";
  const std::string unit =
      *control.unit ? SettingsCaption("Unit." + std::string(control.unit), langue) : "";
  if (!unit.empty()) tip += " (" + unit + ")";
  const bool none = control.byDefault.empty() || control.byDefault == "-1";
  const std::string byDefault =
      none ? SettingsCaption("DefaultNone", langue)
           : WithPlace(SettingsCaption("Default", langue), DefaultShown(control, langue));
  return tip + ". " + byDefault;
}

}  // namespace zemo
