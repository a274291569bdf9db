#include "station/OperatorWords.h"

#include <algorithm>
#include <optional>

#include "station/OnAirElement.h"

namespace zemo {

namespace {

constexpr const char* kRoutines = nullptr;  // in French, which the routine speaks itself

// clang-format off
constexpr RoutineText kTexts[] = {
    // titles of boxes
    {"Alerte", {kRoutines, "Alert", "Alerta", "Alerta"}},
    {"Suppresion", {kRoutines, "Delete", "Eliminar", "Eliminar"}},
    {"ERREUR CREATION TABLE", {kRoutines, "TABLE NOT CREATED", "TABELA NÃO CRIADA", "TABLA NO CREADA"}},
    // boxes
    {"Supprimer cette playlist", {kRoutines, "Delete this stored list?", "Eliminar esta lista guardada?", "¿Eliminar esta lista guardada?"}},
    {"Delete Voice Track \n%1", {"Supprimer le Voice Track\n%1", "Delete Voice Track \n%1", "Eliminar o voice track\n%1", "Eliminar el voice track\n%1"}},
    {"Le programme ne fonctione pas en dessous de 800x600", {kRoutines, "The program needs a screen of at least 800 x 600", "O programa precisa de um ecrã de 800 x 600 no mínimo", "El programa necesita una pantalla de 800 x 600 como mínimo"}},
    {"%1\r\nErreur en création Table Cnf", {kRoutines, "%1\r\nThe table Cnf could not be created", "%1\r\nNão foi possível criar a tabela Cnf", "%1\r\nNo se pudo crear la tabla Cnf"}},
    {"Vous devez désactiver l'option suppression des pubs\r\nen fin de campagne avant d'éffectuer cette opération", {kRoutines, "First switch off the deletion of spots\r\nat the end of their campaign", "Primeiro desative a eliminação da publicidade\r\nno fim da campanha", "Primero desactive la eliminación de las cuñas\r\nal final de la campaña"}},
    {"Pensez à remettre la date du jour après cette opération", {kRoutines, "Remember to set today's date again afterwards", "Não esquecer de actualizar a data depois da pesquisa", "No olvide volver a poner la fecha de hoy después"}},
    {"Erreur de séléction de sortie audio", {kRoutines, "The chosen audio output cannot be used", "A saída de áudio escolhida não pode ser usada", "La salida de audio elegida no se puede usar"}},
    {"Vous devez être tout seul sur la base pour\r\néxecuter cette opération", {kRoutines, "Nobody else may use the database\r\nduring this operation", "Mais ninguém pode usar a base\r\ndurante esta operação", "Nadie más puede usar la base\r\ndurante esta operación"}},
    {"%1 Genres ont étés ajoutés a la liste", {kRoutines, "%1 genres were added to the list", "%1 géneros foram adicionados à lista", "%1 géneros se añadieron a la lista"}},
    {"Les paramètres n'ont pas pu être enregistrés.\r\nFermer quand même ?", {kRoutines, "The settings could not be stored.\r\nClose all the same?", "A configuração não pôde ser guardada.\r\nFechar mesmo assim?", "La configuración no se pudo guardar.\r\n¿Cerrar de todos modos?"}},
    {"Init %1 Ok", {"Ouvert, %1", "Port open: %1", "Aberta, %1", "Abierto, %1"}},
    {"Port COM Close OK !", {"Le port est fermé", "The port is closed", "A porta está fechada", "El puerto está cerrado"}},
    {"Erreur n° %1", {kRoutines, "Error no. %1", "Erro n.º %1", "Error n.º %1"}},
    {"Introuvable\r\n%1", {kRoutines, "Not found\r\n%1", "Não encontrado\r\n%1", "No encontrado\r\n%1"}},
    {"Mise à jour de la table des paramètres effectuée avec succès", {kRoutines, "The table of settings has been updated", "A tabela de parâmetros foi atualizada", "La tabla de parámetros se ha actualizado"}},
    {"Mise à jour de la table des jingles effectuée avec succès", {kRoutines, "The table of jingles has been updated", "A tabela de jingles foi atualizada", "La tabla de jingles se ha actualizado"}},
    {"Mise à jour de la table des top horaires effectuée avec succès", {kRoutines, "The table of hour pips has been updated", "A tabela de sinais horários foi atualizada", "La tabla de señales horarias se ha actualizado"}},
    {"Mise à jour de la table des Autre Virgules effectuée avec succès", {kRoutines, "The table of stingers has been updated", "A tabela de separadores foi atualizada", "La tabla de cortinillas se ha actualizado"}},
    {"Mise à jour de la table des discotheque music effectuée avec succès", {kRoutines, "The table of music has been updated", "A tabela de música foi atualizada", "La tabla de música se ha actualizado"}},
    {"Mise à jour de la table des pubs effectuée avec succès", {kRoutines, "The table of campaigns has been updated", "A tabela de campanhas foi atualizada", "La tabla de campañas se ha actualizado"}},
    {"Impossible de sauver car vous n'avez pas\r\nAttribué de fichier audio", {kRoutines, "It cannot be saved: no sound file is chosen", "Não se pode guardar: falta o ficheiro de áudio", "No se puede guardar: falta el fichero de audio"}},
    {"Impossible de sauver", {kRoutines, "It cannot be saved", "Não se pode guardar", "No se puede guardar"}},
    {"Il n'y a pas de fiche à supprimer", {kRoutines, "There is nothing to delete", "Não há ficha para eliminar", "No hay ficha que eliminar"}},
    {"Confirmez la suppression de la fiche %1", {kRoutines, "Confirm the deletion of %1", "Confirme a eliminação da ficha %1", "Confirme la eliminación de la ficha %1"}},
    {"Vouz ne pouvez pas choisir ce fichier audio\r\ncar il est déjà attribué à l'annonceur %1", {kRoutines, "This sound file cannot be chosen:\r\nit already belongs to the advertiser %1", "Este ficheiro de áudio não pode ser escolhido:\r\njá é do anunciante %1", "Este fichero de audio no se puede elegir:\r\nya es del anunciante %1"}},
    {"Ajouter cette Catégorie à la liste\r\n%1", {kRoutines, "Add this category to the list\r\n%1", "Adicionar esta categoria à lista\r\n%1", "Añadir esta categoría a la lista\r\n%1"}},
    {"Effacer cette Catégorie %1", {kRoutines, "Delete this category %1", "Apagar esta categoria %1", "Borrar esta categoría %1"}},
    {"Delete séléction", {"Supprimer les fiches sélectionnées ?", "Delete the selected cards?", "Eliminar as fichas selecionadas?", "¿Eliminar las fichas seleccionadas?"}},
    {"%1\r\nExiste déjà dans la base", {kRoutines, "%1\r\nhas a card already", "%1\r\njá tem uma ficha", "%1\r\nya tiene una ficha"}},
    {"Vous avez sélectioné %1 Fichiers audios\r\nVous n'avez plus qu'à cliquer sur le menu Ajouter", {kRoutines, "%1 sound files are chosen.\r\nClick Add in the menu to create their cards", "%1 ficheiros áudio escolhidos.\r\nO menu Adicionar cria as fichas", "%1 ficheros de audio elegidos.\r\nEl menú Añadir crea sus fichas"}},
    {"Vous avez sélectioné %1 Fichiers audios\r\nvalidez sur le menu Ajouter", {kRoutines, "%1 sound files are chosen.\r\nClick Add in the menu to create their cards", "%1 ficheiros áudio escolhidos.\r\nO menu Adicionar cria as fichas", "%1 ficheros de audio elegidos.\r\nEl menú Añadir crea sus fichas"}},
    {"Effacer ce genre %1", {kRoutines, "Take %1 off the list?", "Retirar %1 da lista?", "¿Quitar %1 de la lista?"}},
    {"In first you must init grid\r\nwith New button", {"Vous devez d'abord initialiser la grille\r\navec le bouton nouvelle", "In first you must init grid\r\nwith New button", "Em primeiro lugar, clicar\r\nem Novo para inicializar a tabela", "Primero, pulse Nuevo\r\npara inicializar la tabla"}},
    {"Confirmar Eliminar a selecção", {"Confirmez la suppression de la sélection", "Delete the selected cards?", "Eliminar as fichas selecionadas?", "¿Eliminar las fichas seleccionadas?"}},
    {"Seleccionou %1 ficheiros audios\r\nClicar no menu Adicionar", {"Vous avez sélectionné %1 fichiers audio\r\nvalidez sur le menu Ajouter", "%1 sound files are chosen.\r\nClick Add in the menu to create their cards", "%1 ficheiros áudio escolhidos.\r\nO menu Adicionar cria as fichas", "%1 ficheros de audio elegidos.\r\nEl menú Añadir crea sus fichas"}},
    {"Trop de caractères", {kRoutines, "Too many characters", "Demasiados caracteres", "Demasiados caracteres"}},
    {"Traitement Fini", {kRoutines, "All cards are done", "Todas as fichas tratadas", "Todas las fichas tratadas"}},
    // the sound file selector and the prelisten
    {"Filtrer les fiches existantes", {kRoutines, "Leave out the files that have a card already?", "Deixar de fora os ficheiros que já têm ficha?", "¿Dejar fuera los ficheros que ya tienen ficha?"}},
    {"Analyse en cours...", {kRoutines, "Looking through the files...", "A percorrer os ficheiros...", "Recorriendo los ficheros..."}},
    {"Fini", {kRoutines, "Done", "Pronto", "Listo"}},
    {"Mauvais choix de sortie PFL", {kRoutines, "The prelisten is set to the on-air output", "A pré-escuta usa a saída de emissão", "La preescucha usa la salida de antena"}},
    {"Impossible d'écouter sur cette sortie audio", {kRoutines, "The prelisten cannot play on its output.\r\nIt is chosen on the on-air screen: Options > Settings...", "A pré-escuta não pode tocar na sua saída.\r\nEscolhe-se no ecrã da emissão: Opções > Configuração...", "La preescucha no puede sonar por su salida.\r\nSe elige en la pantalla de antena: Opciones > Configuración..."}},
    {"Aucune sortie de préécoute choisie : écran d'antenne, Options > Paramétrage...", {kRoutines, "No prelisten output is chosen: on-air screen, Options > Settings...", "Nenhuma saída de pré-escuta escolhida: ecrã da emissão, Opções > Configuração...", "Ninguna salida de preescucha elegida: pantalla de antena, Opciones > Configuración..."}},
    {"Le fichier n'a pas pu être écrit\r\n%1", {kRoutines, "The file could not be written\r\n%1", "O ficheiro não pôde ser gravado\r\n%1", "El fichero no se pudo escribir\r\n%1"}},
    {"Un tableur ne prend pas plus de %1 lignes", {kRoutines, "A spreadsheet takes no more than %1 rows", "Uma folha de cálculo não leva mais de %1 linhas", "Una hoja de cálculo no admite más de %1 filas"}},
    {"Vous n'avez rien dans la liste", {kRoutines, "There is nothing in the list", "Não há nada na lista", "No hay nada en la lista"}},
    {"Voulez-vous sauvegarder les modifications ?", {kRoutines, "Save the changes?", "Guardar as alterações?", "¿Guardar los cambios?"}},
    {"Action impossible car pas d'intro", {kRoutines, "This cannot be done: there is no intro", "Ação impossível: não há intro", "Acción imposible: no hay intro"}},
    {"Action impossible car\r\nle Voice Track est plus court que l'intro\r\nou le Voice Track est trop long", {kRoutines, "This cannot be done:\r\nthe voice track is shorter than the intro\r\nor the voice track is too long", "Ação impossível:\r\no voice track é mais curto do que a intro\r\nou o voice track é demasiado longo", "Acción imposible:\r\nel voice track es más corto que la intro\r\no el voice track es demasiado largo"}},
    {"Le Voice Track n'est pas sauvé. Le sauver ?", {kRoutines, "The voice track is not saved. Save it?", "O voice track não foi guardado. Guardar?", "El voice track no está guardado. ¿Guardarlo?"}},
    {"Voice Track recalé sur intro", {kRoutines, "The voice track ends with the intro", "O voice track acaba com a intro", "El voice track acaba con la intro"}},
    {"Ce fichier ne contient pas de son", {kRoutines, "There is no sound in this file", "Este ficheiro não contém som", "Este fichero no contiene sonido"}},
    {"L'élément précédent n'est plus dans la liste :\r\nle Voice Track n'est pas enregistré", {kRoutines, "The previous element is no longer in the list:\r\nthe voice track is not saved", "O elemento anterior já não está na lista:\r\no voice track não foi guardado", "El elemento anterior ya no está en la lista:\r\nel voice track no se ha guardado"}},
    {"Choisissez d'abord un éditeur audio", {kRoutines, "Choose an audio editor first", "Escolha primeiro um editor de áudio", "Elija primero un editor de audio"}},
    {"Cette machine n'a pas de table de mixage", {kRoutines, "This machine has no mixer", "Esta máquina não tem mesa de mistura", "Esta máquina no tiene mesa de mezclas"}},
    {"La latence n'a pas pu être mesurée :\r\n%1", {kRoutines, "The latency could not be measured:\r\n%1", "A latência não pôde ser medida:\r\n%1", "La latencia no se pudo medir:\r\n%1"}},
    {"Le niveau n'a pas pu être changé :\r\n%1", {kRoutines, "The level could not be changed:\r\n%1", "O nível não pôde ser alterado:\r\n%1", "El nivel no se pudo cambiar:\r\n%1"}},
    {"Le Voice Track n'a pas pu être ouvert :\r\n%1", {kRoutines, "The voice track could not be opened:\r\n%1", "O voice track não pôde ser aberto:\r\n%1", "El voice track no se pudo abrir:\r\n%1"}},
    {"L'enregistrement s'est arrêté", {kRoutines, "The recording has stopped", "A gravação parou", "La grabación se ha parado"}},
    {"Broadcasting at %1", {"Diffusion à %1", "Broadcasting at %1", "Emissão às %1", "Emisión a las %1"}},
    // what works
    {"COMPOSITION DES PUBS EN COURS...", {kRoutines, "COMPOSING THE DAY'S GRID...", "A COMPOR A TABELA DO DIA...", "COMPONIENDO LA TABLA DEL DÍA..."}},
    {"OPTIMISATION POUR TOP HORAIRE", {kRoutines, "FITTING TO THE HOUR PIP", "AJUSTE AO SINAL HORÁRIO", "AJUSTE A LA SEÑAL HORARIA"}},
    {"OPTIMISATION PUB >> TOP H", {kRoutines, "FITTING SPOTS >> HOUR PIP", "AJUSTE PUB >> SINAL HORÁRIO", "AJUSTE CUÑAS >> SEÑAL HORARIA"}},
    {"IL N'Y A PAS DE MODELS DEFINIS", {kRoutines, "NO MODELS DEFINED", "NÃO HÁ MODELOS DEFINIDOS", "NO HAY MODELOS DEFINIDOS"}},
    {"NO MODELS DEFINED", {"IL N'Y A PAS DE MODELS DEFINIS", "NO MODELS DEFINED", "NÃO HÁ MODELOS DEFINIDOS", "NO HAY MODELOS DEFINIDOS"}},
    {"NAO HA MODELOS DEFINIDOS", {"IL N'Y A PAS DE MODELS DEFINIS", "NO MODELS DEFINED", "NÃO HÁ MODELOS DEFINIDOS", "NO HAY MODELOS DEFINIDOS"}},
    // the main screen
    {"Mode Automatique", {kRoutines, "Automatic mode", "Modo automático", "Modo automático"}},
    {"Mode Direct Live", {kRoutines, "Live mode", "Modo direto", "Modo directo"}},
    {"Next", {"Suivant", "Next", "Seguinte", "Siguiente"}},
    {"Stop", {"Stop", "Stop", "Parar", "Parar"}},
    {"no output", {"aucune sortie", "no output", "sem saída", "sin salida"}},
    {"sound device", {"carte son", "sound device", "placa de som", "tarjeta de sonido"}},
    {"sound device: %1", {"carte son : %1", "sound device: %1", "placa de som: %1", "tarjeta de sonido: %1"}},
    {"sound device lost (it is gone): the air goes on unheard until it is back", {"carte son perdue : personne n'entend l'antenne jusqu'à son retour", "sound device lost: the air goes on unheard until it is back", "placa de som perdida: ninguém ouve a emissão até ela voltar", "tarjeta de sonido perdida: nadie oye la emisión hasta que vuelva"}},
    {"sound device lost (%1): the air goes on unheard until it is back", {"carte son perdue (%1) : personne n'entend l'antenne jusqu'à son retour", "sound device lost (%1): the air goes on unheard until it is back", "placa de som perdida (%1): ninguém ouve a emissão até ela voltar", "tarjeta de sonido perdida (%1): nadie oye la emisión hasta que vuelva"}},
    {"sound device %1 does not begin: the air goes on unheard until it is back", {"la carte son %1 ne démarre pas : personne n'entend l'antenne jusqu'à son retour", "sound device %1 does not begin: the air goes on unheard until it is back", "a placa de som %1 não arranca: ninguém ouve a emissão até ela voltar", "la tarjeta de sonido %1 no arranca: nadie oye la emisión hasta que vuelva"}},
    {"sound device %1 sleeps: the air goes on unheard until it is back", {"la carte son %1 est en veille : personne n'entend l'antenne jusqu'à son retour", "sound device %1 sleeps: the air goes on unheard until it is back", "a placa de som %1 está suspensa: ninguém ouve a emissão até ela voltar", "la tarjeta de sonido %1 está en reposo: nadie oye la emisión hasta que vuelva"}},
    {"file %1", {"fichier %1", "file %1", "ficheiro %1", "fichero %1"}},
    {"No Rapport", {"Sans rapport", "No report", "Sem relatório", "Sin informe"}},
    {"%1 '' de buffers", {"%1 s de tampons", "%1 s of buffers", "%1 s de buffers", "%1 s de búferes"}},
    {"Extrait %1", {kRoutines, "Excerpt %1", "Excerto %1", "Extracto %1"}},
    {"Topage", {kRoutines, "Time cue", "Marca horária", "Marca horaria"}},
    {"Touche %1", {kRoutines, "Key %1", "Tecla %1", "Tecla %1"}},
    {"JJ/MM/ANNE", {kRoutines, "DD/MM/YYYY", "DD/MM/AAAA", "DD/MM/AAAA"}},
    {"hh:mn", {kRoutines, "hh:mm", "hh:mm", "hh:mm"}},
    {"JOURNALIER", {kRoutines, "EVERY DAY", "TODOS OS DIAS", "TODOS LOS DÍAS"}},
    {"Oui", {kRoutines, "Yes", "Sim", "Sí"}},
    {"Non", {kRoutines, "No", "Não", "No"}},
    // rows of the on-air list
    {"Begin Extrait", {"Début d'extraits", "Excerpts begin", "Início de excertos", "Inicio de extractos"}},
    {"Top Horaire", {kRoutines, "Hour pip", "Sinal horário", "Señal horaria"}},
    {"Secours", {kRoutines, "Emergency", "Emergência", "Emergencia"}},
    {"Jingle avant Pubs", {kRoutines, "Jingle before spots", "Jingle antes da pub", "Jingle antes de cuñas"}},
    {"Jingle après Pubs", {kRoutines, "Jingle after spots", "Jingle depois da pub", "Jingle después de cuñas"}},
    {"Start Playlist", {"Début de playlist", "Start of playlist", "Início da playlist", "Inicio de playlist"}},
    {"End Playlist", {"Fin de playlist", "End of playlist", "Fim da playlist", "Fin de playlist"}},
    {"Pub", {kRoutines, "Spot", "Pub", "Cuña"}},
    {"PUB", {kRoutines, "Spot", "Pub", "Cuña"}},
    {"Rubrique", {kRoutines, "News", "Intercalar", "Rúbrica"}},
    {"RUB", {kRoutines, "News", "Intercalar", "Rúbrica"}},
    {"JINGLE", {kRoutines, "Jingle", "Jingle", "Jingle"}},
    {"AUTRES", {kRoutines, "Stinger", "Separador", "Cortinilla"}},
    {"TOP-H", {kRoutines, "Hour pip", "Sinal horário", "Señal horaria"}},
    {"PLAYLIST", {kRoutines, "Playlist", "Playlist", "Playlist"}},
    // the day's grid
    {"Copier les pubs de %1", {kRoutines, "Copy the spots of %1", "Copiar a publicidade das %1", "Copiar las cuñas de las %1"}},
    {"Copier les rubriques de %1", {kRoutines, "Copy the news of %1", "Copiar os intercalares das %1", "Copiar las rúbricas de las %1"}},
    {"Entrez la taille de la police", {kRoutines, "Enter the font size", "Indique o tamanho da letra", "Indique el tamaño de la letra"}},
    {"Pubs", {kRoutines, "Spots", "Pub", "Cuñas"}},
    {"Rubriques", {kRoutines, "News", "Intercalares", "Rúbricas"}},
    {"Grid of the%1", {"Grille du %1", "Grid of %1", "Tabela de %1", "Tabla del %1"}},
};

constexpr RoutineText kReasons[] = {
    {"Ecart minutes pas assez important ", {kRoutines, "too few minutes since last play ", "minutos desde a emissão insuficientes ", "minutos desde la emisión insuficientes "}},
    {"Ecart jours pas assez important ", {kRoutines, "too few days since last play ", "dias desde a emissão insuficientes ", "días desde la emisión insuficientes "}},
    {"Ecart nb passage jour atteint ", {kRoutines, "plays a day reached ", "passagens do dia atingidas ", "pases del día alcanzados "}},
    {"pas autorisé dans cette tranche a cause du décalage", {kRoutines, "aired around this hour too recently", "emitido há pouco perto desta hora", "emitido hace poco cerca de esta hora"}},
    {" supprimé car doublon d'artiste", {kRoutines, " taken out: duplicate artist", " retirado: artista repetido", " quitado: artista repetido"}},
};
// clang-format on

constexpr std::string_view kPlace = "%1";

// What stands in the routine's "%1", or nothing where the text is another one.
std::optional<std::string_view> Matched(std::string_view pattern, std::string_view text) {
  const size_t place = pattern.find(kPlace);
  if (place == std::string_view::npos)
    return pattern == text ? std::optional(std::string_view()) : std::nullopt;
  const std::string_view before = pattern.substr(0, place),
                         behind = pattern.substr(place + kPlace.size());
  if (text.size() < before.size() + behind.size() || !text.starts_with(before) ||
      !text.ends_with(behind))
    return std::nullopt;
  return text.substr(before.size(), text.size() - before.size() - behind.size());
}

std::string TextOf(const RoutineText& row, int langue) {
  const char* text = InLanguage(row.texts, langue);
  return text ? text : row.routine;
}

// A jingle and a short element have the names that the station gave them, but for those of the
// breaks and of the emergency folder.
bool IsRoutines(int32_t code, std::string_view title) {
  switch (code) {
    case Element::kHourPip:
    case Element::kBeginExtract:
    case Element::kStartPlaylist:
    case Element::kEndPlaylist:
      return true;
    case Element::kJingle:
      return title == "Jingle avant Pubs" || title == "Jingle après Pubs";
    case Element::kOther:
      return title == "Secours";
    default:
      return false;
  }
}

}  // namespace

std::span<const RoutineText> RoutineTexts() {
  return kTexts;
}

std::string InOperatorsWords(std::string_view text, int langue) {
  for (const RoutineText& row : kTexts)
    if (const auto inPlace = Matched(row.routine, text))
      return WithPlace(TextOf(row, langue), *inPlace);
  return std::string(text);
}

// The second line of a title stands behind two blanks; only the first is a routine's.
std::string TitleInWords(int32_t code, std::string_view title, int langue) {
  constexpr std::string_view kBetween = "  ";
  const size_t end = std::min(title.find(kBetween), title.size());
  const std::string_view first = title.substr(0, end);
  if (!IsRoutines(code, first)) return std::string(title);
  const std::string_view second = title.substr(std::min(end + kBetween.size(), title.size()));
  std::string text = InOperatorsWords(first, langue);
  if (!second.empty()) text += std::string(kBetween) + std::string(second);
  return text;
}

std::string RefusalInWords(std::string line, int langue) {
  for (const RoutineText& reason : kReasons) {
    const std::string_view routine = reason.routine;
    const std::string text = TextOf(reason, langue);
    for (size_t at = line.find(routine); at != std::string::npos;
         at = line.find(routine, at + text.size()))
      line.replace(at, routine.size(), text);
  }
  return line;
}

}  // namespace zemo
