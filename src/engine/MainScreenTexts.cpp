#include "engine/MainScreenTexts.h"

#include <algorithm>

#include "engine/MainScreenPicture.h"

namespace zemo {

namespace {

constexpr const char* kSame = nullptr;  // no row in that language: the French stands

// clang-format off
constexpr ScreenText kTexts[] = {
    {"LblInfo", "name", {"Informations", "Information", "Informações", "Informaciones"}},
    {"LedSat", "tip", {"Contacts de l'automate", "Contacts of the automaton", "Contactos do autómato", "Contactos del autómata"}},
    {"LedJoystique", "tip", {"Bouton du joystick tenu", "Joystick button held", "Botão do joystick premido", "Botón del joystick pulsado"}},
    {"BtnPubJourX", "text", {"Voir la journée du", "See the day from", "Visualizar o dia de", "Ver el dia de"}},
    {"BtnPubJourX", "tip", {"Compose la grille d'un autre jour ; la date de la machine change", "Composes the grid of another day; the machine's date changes", "Compõe a tabela de outro dia; a data da máquina muda", "Compone la tabla de otro día; la fecha de la máquina cambia"}},
    {"BtnImpressionPub", "text", {"Imprimer", "Print", "Imprimir", "Imprimir"}},
    {"BtnImpressionPub", "tip", {"Imprime la grille du jour", "Prints the day's grid", "Imprime a tabela do dia", "Imprime la tabla del día"}},
    {"ChkNoJingle", "text", {"Jingles", kSame, kSame, kSame}},
    {"OptPls", "tip", {"Jingles pendant la liste ; avec P elle coupe l'élément à l'antenne", "Jingles during the list; with P it cuts the element on air", "Jingles durante a lista; com P corta o elemento no ar", "Jingles durante la lista; con P corta el elemento en antena"}},
    {"BtnSauve", "text", {"Sauver", "Save", "Guardar", "Guardar"}},
    {"BtnSauve", "tip", {"Enregistre la liste à cette date et à cette heure", "Stores the list for that date and time", "Guarda a lista para esta data e hora", "Guarda la lista para esta fecha y hora"}},
    {"BtnNew", "text", {"Nouvelle", "New", "Nova", "Nueva"}},
    {"BtnNew", "tip", {"Vide la liste pour en faire une nouvelle", "Clears the list to make a new one", "Limpa a lista para fazer uma nova", "Vacía la lista para hacer una nueva"}},
    {"ChHeure", "tip", {"Heure de passage, hh:mn", "Time on air, hh:mn", "Hora de emissão, hh:mn", "Hora de emisión, hh:mn"}},
    {"ComboPLS", "tip", {"Listes enregistrées ; Suppr supprime la liste choisie", "Stored lists; Delete deletes the chosen one", "Listas guardadas; Delete elimina a lista escolhida", "Listas guardadas; Supr elimina la lista elegida"}},
    {"LblDate", "tip", {"Date de passage : ouvre le calendrier ; clic droit ou J pour tous les jours", "Date on air: opens the calendar; right click or J for every day", "Data de emissão: abre o calendário; botão direito ou J para todos os dias", "Fecha de emisión: abre el calendario; botón derecho o J para todos los días"}},
    {"BtnCopyPub", "text", {"Copier les pubs", "Copy the spots", "Copiar a publicidade", "Copiar las pubs"}},
    {"BtnCopyPub", "tip", {"Met l'écran de la ligne choisie dans la liste", "Puts the break of the selected row in the list", "Põe o bloco da linha escolhida na lista", "Pone el bloque de la línea elegida en la lista"}},
    {"OptionDirect", "text", {"Arrêt en fin de liste", "Stop at end of list", "Parar no fim da lista", "Parar al final de la lista"}},
    {"OptionDirect", "tip", {"En direct, liste finie : arrête au lieu de revenir en automatique", "Live, list over: stops instead of going back to automatic", "Em direto, lista terminada: pára em vez de voltar a automático", "En directo, lista terminada: para en vez de volver a automático"}},
    {"CheckNoJingle", "text", {"Sans jingle", "No jingle", "Sem jingle", "Sin jingle"}},
    {"CheckNoJingle", "tip", {"Aucun jingle automatique en direct", "No automatic jingle while live", "Nenhum jingle automático em direto", "Ningún jingle automático en directo"}},
    {"RechGenre", "tip", {"Tous les titres d'un genre", "All titles of a genre", "Todos os títulos de um género", "Todos los títulos de un género"}},
    {"RechGenre", "0", {"Genre", "Genre", "Género", "Género"}},
    {"BtnSurImpression", "text", {kOverlayAtRest, "Overlay", "Sobreposição", "Sobreimpresión"}},
    {"BtnSurImpression", "tip", {"Joue l'élément choisi par-dessus l'antenne ; touches du pavé numérique", "Plays the chosen element over the air; keys of the numeric pad", "Toca o elemento escolhido sobre a emissão; teclas do teclado numérico", "Toca el elemento elegido sobre la antena; teclas del teclado numérico"}},
    {"MenuLive", "0", {"Musique", "Music", "Música", "Música"}},
    {"MenuLive", "1", {"Jingles", kSame, kSame, kSame}},
    {"MenuLive", "2", {"Pubs", "Spots", "Publicidade", "Pubs"}},
    {"MenuLive", "3", {"Virgules", "Stingers", "Separadores", "Cortinillas"}},
    {"MenuLive", "4", {"Diffusés", "Aired", "Emitidos", "Emitidos"}},
    {"MenuLive", "tip", {"Ce que montre la liste", "What the list shows", "O que a lista mostra", "Lo que muestra la lista"}},
    {"ListRech", "name", {"Liste de recherche", "Search list", "Lista de pesquisa", "Lista de búsqueda"}},
    {"ListRech", "tip", {"Ins : ajoute à la liste ; F8 : sur impression ; touche Menu : fiche, écoute, tri", "Ins: adds to the list; F8: overlay; Menu key: card, listening, sorting", "Ins: junta à lista; F8: sobreposição; tecla Menu: ficha, escuta, ordenação", "Ins: añade a la lista; F8: sobreimpresión; tecla Menú: ficha, escucha, orden"}},
    {"ListRech", "Category", {"Catégorie", "Category", "Categoria", "Categoría"}},
    {"ListRech", "Key", {"Touche", "Key", "Tecla", "Tecla"}},
    {"Rech", "tip", {" Hit here the text of your research mini 3 characters ", kSame, kSame, kSame}},
    {"LblRech", "text", {"Recherche", "Search", "Pesquisa", "Búsqueda"}},
    {"LblRech", "tip", {"Ctrl+F ; Entrée passe à la liste", "Ctrl+F; Return goes to the list", "Ctrl+F; Enter passa à lista", "Ctrl+F; Intro pasa a la lista"}},
    {"PL", "name", {"Liste d'antenne", "On-air list", "Lista de emissão", "Lista de antena"}},
    {"PL", "0", {"Artiste", "Artist", "Artista", "Artista"}},
    {"PL", "1", {"Titre", "Title", "Título", "Título"}},
    {"PL", "2", {"Durée", "Length", "Duração", "Duración"}},
    {"PL", "3", {"Genre", "Genre", "Género", "Género"}},
    {"PL", "4", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"PL", "5", {"Fichier", "File", "Ficheiro", "Fichero"}},
    {"PL", "6", {"Code", kSame, "Código", "Código"}},
    {"PL", "7", {"Passage", "On air", "Emissão", "Emisión"}},
    {"PL", "8", {"Durée ms", "Length ms", "Duração ms", "Duración ms"}},
    {"PL", "9", {"Sortie ms", "Exit ms", "Saída ms", "Salida ms"}},
    {"PL", "10", {"Intro", kSame, kSame, kSame}},
    {"PL", "11", {"Dernier passage", "Last aired", "Última emissão", "Última emisión"}},
    {"LblTemp", "text", {"RESTE", "REMAINS", "RESTA", "QUEDA"}},
    {"CmdStop", "tip", {"Fond et enchaîne l'élément suivant", "Fades and starts the next element", "Fade e passa ao elemento seguinte", "Fundido y siguiente elemento"}},
    {"CmdRequette", "text", {"Requête", "Request", "Pedido", "Petición"}},
    {"CmdRequette", "tip", {"Demande de la musique pour la liste", "Asks for music for the list", "Pede música para a lista", "Pide música para la lista"}},
    {"LblLongueurHead", "text", {"Durée", "Length", "Duração", "Duración"}},
    {"LblLongueur", "tip", {"Durée de l'élément", "Length of the element", "Duração do elemento", "Duración del elemento"}},
    {"LblEncoursHead", "text", {"Carte", "Output", "Placa", "Tarjeta"}},
    {"LblEncours", "tip", {"Temps écoulé depuis le départ de la carte", "Run time of the output", "Tempo desde o arranque da placa", "Tiempo desde el arranque de la tarjeta"}},
    {"PSortie", "tip", {"Point de sortie, en secondes avant la fin", "Exit point, seconds before the end", "Ponto de saída, segundos antes do fim", "Punto de salida, segundos antes del final"}},
    {"BntVoiceTrack", "tip", {"L'éditeur de voice tracks viendra avec une prochaine version", "The voice track editor comes with a later version", "O editor de voice tracks virá numa próxima versão", "El editor de voice tracks vendrá en una próxima versión"}},
    {"BntVoiceTrack", "text", {"Voice Track", kSame, kSame, kSame}},
    {"LblIntro", "text", {"Jingle sur intro", "Jingle over intro", "Jingle na intro", "Jingle en intro"}},
    {"LblOffsetBuffers", "tip", {"Retard entre la lecture et l'écoute", "Delay between reading and hearing", "Atraso entre leitura e escuta", "Retraso entre lectura y escucha"}},
    {"LblTpsTot", "text", {"Total", kSame, kSame, kSame}},
    {"LblMode", "tip", {"Mode d'antenne", "On-air mode", "Modo de emissão", "Modo de antena"}},
    {"LblCycle", "text", {"Cycle", kSame, "Ciclo", "Ciclo"}},
    {"LblCycle", "tip", {"Durée de la sortie avant sa relance", "Run time of the output before its restart", "Duração da saída antes de reiniciar", "Duración de la salida antes de reiniciarse"}},
    {"InfoDate", "tip", {"Date ; en direct, le prochain écran", "Date; when live, the next break", "Data; em direto, o próximo bloco", "Fecha; en directo, el próximo bloque"}},
    {"Info", "text", {"?", kSame, kSame, kSame}},
    {"Info", "tip", {"Raccourcis clavier", "Keyboard shortcuts", "Atalhos de teclado", "Atajos de teclado"}},
    {"MnuEdit", "text", {"É&dition", "&Edit", "&Edição", "&Edición"}},
    {"Discotheque", "text", {"&Discothèque...", "&Library...", "&Discoteca...", "&Discoteca..."}},
    {"MnuHPubs", "text", {"&Horaires des pubs...", "S&pot times...", "&Horários da publicidade...", "&Horarios de las pubs..."}},
    {"MnuModels", "text", {"&Modèles", "&Models", "&Modelos", "&Modelos"}},
    {"MnuPlaylist", "text", {"&Playlists enregistrées", "St&ored playlists", "&Playlists guardadas", "&Playlists guardadas"}},
    {"MnuInsertPub", "text", {"I&nsérer un écran...", "&Insert a break...", "I&nserir um bloco...", "I&nsertar un bloque..."}},
    {"MnuImprime", "text", {"&Imprimer la liste...", "P&rint the list...", "&Imprimir a lista...", "&Imprimir la lista..."}},
    {"Options", "text", {"&Options", kSame, "&Opções", "&Opciones"}},
    {"MnuStartStop", "text", {"Départs et arrêts &automatiques", "&Automatic starts and stops", "Arranques e paragens &automáticos", "Inicios y paradas &automáticos"}},
    {"MnuPrevision", "text", {"Pré&vision d'antenne", "&Forecast", "Pre&visão da emissão", "Pre&visión de antena"}},
    {"MnuRapport", "text", {"&Rapport de diffusion...", "Broadcast &report...", "&Relatório de emissão...", "&Informe de emisión..."}},
    {"MakePubduJour", "text", {"&Composer la grille du jour", "&Compose the day's grid", "&Compor a tabela do dia", "&Componer la tabla del día"}},
    {"MnuParametrage", "text", {"Paramé&trage...", "&Settings...", "Con&figuração...", "Pa&rametraje..."}},
    {"MnuPasseWord", "text", {"&Mot de passe...", "&Password...", "&Palavra-passe...", "Códi&go secreto..."}},
    {"Quitter", "text", {"&Quitter", "&Quit", "&Sair", "&Salir"}},
    {"Toolbar1", "1", {"Automatique", "Automatic", "Automático", "Automático"}},
    {"Toolbar1", "2", {"Direct", "Live", "Direto", "Directo"}},
    {"Toolbar1", "3", {"Grille", "Grid", "Tabela", "Tabla"}},
    {"Toolbar1", "5", {"Départ", "Start", "Início", "Inicio"}},
    {"Toolbar1", "6", {"Arrêt", "Stop", "Paragem", "Parada"}},
    {"Toolbar1", "tip1", {"Mode automatique", "Automatic mode", "Modo automático", "Modo automático"}},
    {"Toolbar1", "tip2", {"Mode direct et listes enregistrées", "Live mode and stored lists", "Modo direto e listas guardadas", "Modo directo y listas guardadas"}},
    {"Toolbar1", "tip3", {"Grille des pubs et rubriques du jour", "The day's grid of spots and news", "Tabela do dia: publicidade e intercalares", "Tabla del día: pubs y rúbricas"}},
    {"Toolbar1", "tip5", {"Met à l'antenne (barre d'espace)", "Goes on air (space bar)", "Põe no ar (barra de espaço)", "Sale a antena (barra espaciadora)"}},
    {"Toolbar1", "tip6", {"Arrête en fin d'élément (barre d'espace)", "Stops at the end of the element (space bar)", "Pára no fim do elemento (barra de espaço)", "Para al final del elemento (barra espaciadora)"}},
    {"CheckExtrait", "text", {"Extraits", "Extracts", "Excertos", "Extractos"}},
    {"CheckExtrait", "tip", {"Les éléments suivants passent en extraits", "The next elements play as extracts", "Os elementos seguintes passam em excertos", "Los elementos siguientes pasan en extractos"}},
    {"CmdMarqueurExtrait", "text", {"Marqueur extrait", "Extract marker", "Marca de excerto", "Marca de extracto"}},
    {"CmdMarqueurExtrait", "tip", {"Met « Begin Extrait » avant la ligne choisie", "Puts \"Begin Extrait\" before the selected row", "Põe \"Begin Extrait\" antes da linha escolhida", "Pone \"Begin Extrait\" antes de la línea elegida"}},
    {"MnuPCProduction", "text", {"Poste de &production", "Pro&duction machine", "Posto de pro&dução", "Puesto de &producción"}},
    {"BtnPrevision", "text", {"Prévision", "Forecast", "Previsão", "Previsión"}},
    {"BtnPrevision", "tip", {"Ce qui passera dans les prochaines heures", "What will air in the next hours", "O que vai passar nas próximas horas", "Lo que saldrá en las próximas horas"}},
    {"GPubJour", "name", {"Grille du jour", "The day's grid", "Tabela do dia", "Tabla del día"}},
    {"VuMettre", "name", {"Position de l'élément", "Position of the element", "Posição do elemento", "Posición del elemento"}},
    {"VueIntro", "name", {"Décompte de l'intro", "Intro countdown", "Contagem da intro", "Cuenta de la intro"}},
    {"MMLevelX1", "name", {"Niveau gauche", "Left level", "Nível esquerdo", "Nivel izquierdo"}},
    {"MMLevelX2", "name", {"Niveau droit", "Right level", "Nível direito", "Nivel derecho"}},
    // the skeleton dialogue
    {"LblGenresOfferts", "text", {"&Genres", "&Genres", "&Géneros", "&Géneros"}},
    {"LblSquelette", "text", {"&Squelette", "&Skeleton", "&Esqueleto", "&Esqueleto"}},
    {"LblMinutes", "text", {"&Minutes", "&Minutes", "&Minutos", "&Minutos"}},
    {"ListGenre", "name", {"Genres", "Genres", "Géneros", "Géneros"}},
    {"ListGenre", "tip", {"Double-clic ou Entrée : ajoute le genre au squelette", "Double click or Enter: adds the genre to the skeleton", "Duplo clique ou Enter: junta o género ao esqueleto", "Doble clic o Intro: añade el género al esqueleto"}},
    {"SquelettePLS", "name", {"Squelette", "Skeleton", "Esqueleto", "Esqueleto"}},
    {"SquelettePLS", "tip", {"Les genres dans l'ordre des titres ; Suppr retire le genre choisi", "The genres in the order of the titles; Delete takes the selected one out", "Os géneros pela ordem dos títulos; Delete retira o género escolhido", "Los géneros en el orden de los títulos; Supr quita el género elegido"}},
    {"SpinMinutes", "name", {"Minutes", "Minutes", "Minutos", "Minutos"}},
    {"SpinMinutes", "tip", {"Durée de musique à ajouter à la liste (Alt+M)", "Length of the music to add to the list (Alt+M)", "Duração da música a juntar à lista (Alt+M)", "Duración de la música que se añade a la lista (Alt+M)"}},
    {"Redondance", "text", {"Titres &répétés", "&Repeated titles", "Títulos &repetidos", "Títulos &repetidos"}},
    {"Redondance", "tip", {"Un titre déjà dans une liste peut venir encore (Alt+R)", "A title that is in a list already may come again (Alt+R)", "Um título já presente numa lista pode voltar (Alt+R)", "Un título que ya está en una lista puede volver (Alt+R)"}},
    {"BtnOk", "text", {"&OK", kSame, kSame, kSame}},
    {"BtnOk", "tip", {"Remplit la liste (Entrée)", "Fills the list (Enter)", "Preenche a lista (Enter)", "Llena la lista (Intro)"}},
    {"BtnCancel", "text", {"&Annuler", "&Cancel", "&Cancelar", "&Cancelar"}},
    {"BtnCancel", "tip", {"Ferme sans rien ajouter (Échap)", "Closes and adds nothing (Esc)", "Fecha sem juntar nada (Esc)", "Cierra sin añadir nada (Esc)"}},
    {"mnuCopieSquelette", "text", {"&Copier un squelette", "Co&py a skeleton", "Co&piar um esqueleto", "Co&piar un esqueleto"}},
    {"mnuLundi", "text", {"&Lundi", "&Monday", "&Segunda-feira", "&Lunes"}},
    {"mnuMardi", "text", {"&Mardi", "&Tuesday", "&Terça-feira", "&Martes"}},
    {"mnuMercredi", "text", {"M&ercredi", "&Wednesday", "&Quarta-feira", "M&iércoles"}},
    {"mnuJeudi", "text", {"&Jeudi", "T&hursday", "Q&uinta-feira", "&Jueves"}},
    {"mnuVendredi", "text", {"&Vendredi", "&Friday", "S&exta-feira", "&Viernes"}},
    {"mnuSamedi", "text", {"&Samedi", "&Saturday", "Sá&bado", "&Sábado"}},
    {"mnuDimanche", "text", {"&Dimanche", "S&unday", "&Domingo", "&Domingo"}},
};

struct Word {
  const char* name;
  LanguageTexts texts;
};

constexpr Word kWords[] = {
    {"OnAir", {"ANTENNE", "ON AIR", "NO AR", "EN ANTENA"}},
    {"Stopped", {"ARRÊT", "STOPPED", "PARADO", "PARADO"}},
    {"SilentOnAir", {"SILENCE", "SILENCE", "SILÊNCIO", "SILENCIO"}},
    {"EmergencyOnAir", {"SECOURS", "EMERGENCY", "SOCORRO", "SOCORRO"}},
    {"Draining", {"FIN...", "ENDING", "A ACABAR", "TERMINA"}},
    {"Next", {"SUIVANT", "NEXT", "SEGUINTE", "SIGUIENTE"}},
    {"Break", {"ÉCRAN", "BREAK", "BLOCO", "BLOQUE"}},
    {"Spots", {"Pubs", "Spots", "Pub", "Pubs"}},
    {"News", {"Rubriques", "News", "Intercalares", "Rúbricas"}},
    {"Pip", {"TOP HORAIRE", "HOUR PIP", "SINAL HORÁRIO", "SEÑAL HORARIA"}},
    {"None", {"–", "–", "–", "–"}},
    {"NoJingleOnAir", {"Jingles : sur l'antenne", "Jingles: over the air", "Jingles: sobre a emissão", "Jingles: sobre la antena"}},
    {"ComesLater", {"Cet écran viendra avec une prochaine version", "This screen comes with a later version", "Este ecrã virá numa próxima versão", "Esta pantalla vendrá en una próxima versión"}},
    {"TooManyRows",
     {"%1 éléments au plus à la fois : choisissez-en moins", "At most %1 elements at a time: select fewer",
      "No máximo %1 elementos de cada vez: escolha menos", "Como máximo %1 elementos a la vez: elija menos"}},
    {"BrowseInsert", {"&Ajouter à la liste", "&Add to the list", "&Juntar à lista", "&Añadir a la lista"}},
    {"BrowseCard", {"Ouvrir la &fiche", "Open the &card", "Abrir a &ficha", "Abrir la &ficha"}},
    {"BrowseListen", {"&Écouter", "&Listen", "&Ouvir", "&Escuchar"}},
    {"BrowseSort", {"&Trier par", "&Sort by", "O&rdenar por", "&Ordenar por"}},
    {"OverlayOf", {"Joue « %1 » par-dessus l'antenne", "Plays \"%1\" over the air", "Toca \"%1\" sobre a emissão", "Toca \"%1\" sobre la antena"}},
    {"PrintTitle", {"Impression", "Print", "Impressão", "Impresión"}},
    {"PrintFailed", {"L'impression n'a pas pu se faire", "Nothing could be printed", "Não foi possível imprimir", "No se pudo imprimir"}},
    {"Shortcuts", {"Raccourcis clavier", "Keyboard shortcuts", "Atalhos de teclado", "Atajos de teclado"}},
    {"ShortcutText",
     {"Espace : départ, arrêt\n0 du pavé : suivant\n1 à 9 du pavé : virgules\nF2 : automatique\nF3 : direct\nF4 : grille du jour\nMaj+F4 : insérer un écran\nF5 : requête\nF6 : suivant\nF7 : prévision\nF8 : sur impression\nCtrl+F : recherche\nSuppr : retire la ligne\nAlt+haut, Alt+bas : déplace la ligne\nIns : ajoute l'élément trouvé",
      "Space: start, stop\nPad 0: next\nPad 1 to 9: stingers\nF2: automatic\nF3: live\nF4: day's grid\nShift+F4: insert a break\nF5: request\nF6: next\nF7: forecast\nF8: overlay\nCtrl+F: search\nDelete: takes the row out\nAlt+up, Alt+down: moves the row\nIns: adds the element found",
      "Espaço: início, paragem\n0 numérico: seguinte\n1 a 9 numérico: separadores\nF2: automático\nF3: direto\nF4: tabela do dia\nShift+F4: inserir um bloco\nF5: pedido\nF6: seguinte\nF7: previsão\nF8: sobreposição\nCtrl+F: pesquisa\nDelete: retira a linha\nAlt+cima, Alt+baixo: move a linha\nIns: junta o elemento encontrado",
      "Espacio: inicio, parada\n0 numérico: siguiente\n1 a 9 numérico: cortinillas\nF2: automático\nF3: directo\nF4: tabla del día\nMayús+F4: insertar un bloque\nF5: petición\nF6: siguiente\nF7: previsión\nF8: sobreimpresión\nCtrl+F: búsqueda\nSupr: quita la línea\nAlt+arriba, Alt+abajo: mueve la línea\nIns: añade el elemento hallado"}},
    // health
    {"HealthOutput", {"Sortie", "Output", "Saída", "Salida"}},
    {"HealthAlive", {"%1 dB", "%1 dB", "%1 dB", "%1 dB"}},
    {"HealthEmergency", {"secours %1 dB", "emergency %1 dB", "socorro %1 dB", "socorro %1 dB"}},
    {"HealthSilent", {"muette", "silent", "muda", "muda"}},
    {"HealthIdle", {"au repos", "at rest", "em repouso", "en reposo"}},
    {"HealthUnderruns", {"Coupures", "Dropouts", "Falhas", "Cortes"}},
    {"HealthDevice", {"Carte", "Device", "Placa", "Tarjeta"}},
    {"HealthUnheard", {"non entendue", "not heard", "não ouvida", "no se oye"}},
    {"HealthDisk", {"Disque", "Disk", "Disco", "Disco"}},
    {"HealthDiskFree", {"%1 Go", "%1 GB", "%1 GB", "%1 GB"}},
    {"HealthBase", {"Base", "Database", "Base", "Base"}},
    {"HealthBaseOk", {"bonne", "good", "boa", "bien"}},
    {"HealthBaseWaits", {"%1 en attente", "%1 waiting", "%1 em espera", "%1 en espera"}},
    {"HealthBaseClosed", {"fermée", "closed", "fechada", "cerrada"}},
    {"HealthError", {"Erreur", "Error", "Erro", "Error"}},
    {"HealthNoError", {"aucune", "none", "nenhum", "ninguno"}},
    {"Unknown", {"?", "?", "?", "?"}},
    // forecast
    {"ForecastTitle", {"Prévision d'antenne", "Forecast", "Previsão da emissão", "Previsión de antena"}},
    {"ForecastAgain", {"Recalculer", "Compute again", "Recalcular", "Recalcular"}},
    {"ForecastHours", {"%1 h", "%1 h", "%1 h", "%1 h"}},
    {"ForecastRunning", {"Calcul en cours...", "Computing...", "A calcular...", "Calculando..."}},
    {"ForecastFailed", {"La prévision a échoué : %1", "The forecast failed: %1", "A previsão falhou: %1", "La previsión falló: %1"}},
    {"ForecastDone", {"Calculée à %1", "Computed at %1", "Calculada às %1", "Calculada a las %1"}},
    {"ForecastAt", {"Heure", "Time", "Hora", "Hora"}},
    {"ForecastKind", {"Genre", "Kind", "Género", "Género"}},
    {"ForecastWhat", {"Élément", "Element", "Elemento", "Elemento"}},
    {"ForecastLength", {"Durée", "Length", "Duração", "Duración"}},
    {"ForecastMusic", {"Musique", "Music", "Música", "Música"}},
    {"ForecastJingle", {"Jingle", "Jingle", "Jingle", "Jingle"}},
    {"ForecastSpot", {"Pub", "Spot", "Pub", "Pub"}},
    {"ForecastNews", {"Rubrique", "News", "Intercalar", "Rúbrica"}},
    {"ForecastPip", {"Top horaire", "Hour pip", "Sinal horário", "Señal horaria"}},
    {"ForecastOther", {"Virgule", "Stinger", "Separador", "Cortinilla"}},
    {"ForecastVoiceTrack", {"Voice track", "Voice track", "Voice track", "Voice track"}},
    {"ForecastMarker", {"Marqueur", "Marker", "Marca", "Marca"}},
    {"ForecastBreak", {"Écran", "Break", "Bloco", "Bloque"}},
    {"ForecastGap", {"BLANC", "GAP", "SILÊNCIO", "SILENCIO"}},
    {"ForecastGapText", {"Silence à l'antenne", "Silence on air", "Silêncio no ar", "Silencio en antena"}},
    {"ForecastWarning", {"Alerte", "Warning", "Aviso", "Aviso"}},
    {"ForecastList", {"Liste", "List", "Lista", "Lista"}},
    {"ForecastMissing", {"Fichier absent : %1", "File missing: %1", "Ficheiro em falta: %1", "Falta el fichero: %1"}},
    {"ForecastUnreadable", {"Fichier illisible : %1", "File unreadable: %1", "Ficheiro ilegível: %1", "Fichero ilegible: %1"}},
    // the skeleton dialogue
    {"SkeletonTitle", {"Requête par squelette", "Skeleton request", "Pedido por esqueleto", "Petición por esqueleto"}},
    {"SkeletonHint",
     {"Double-clic ou Entrée sur un genre l'ajoute ; Suppr retire une ligne.",
      "Double click or Enter on a genre adds it; Delete takes a row out.",
      "Duplo clique ou Enter num género junta-o; Delete retira uma linha.",
      "Doble clic o Intro en un género lo añade; Supr quita una línea."}},
    {"SkeletonCopied", {"Copié : %1", "Copied: %1", "Copiado: %1", "Copiado: %1"}},
    {"SkeletonNone", {"Pas de squelette : %1", "No skeleton: %1", "Sem esqueleto: %1", "Sin esqueleto: %1"}},
    // calendar
    {"CalendarTitle", {"Calendrier", "Calendar", "Calendário", "Calendario"}},
    // buttons
    {"Ok", {"OK", "OK", "OK", "OK"}},
    {"Cancel", {"Annuler", "Cancel", "Cancelar", "Cancelar"}},
    {"Yes", {"Oui", "Yes", "Sim", "Sí"}},
    {"No", {"Non", "No", "Não", "No"}},
};
// clang-format on

}  // namespace

std::span<const ScreenText> MainScreenTexts() {
  return kTexts;
}

const char* InLanguage(const LanguageTexts& texts, int langue) {
  const bool known = langue > 0 && langue < static_cast<int>(kLanguages);
  const char* text = known ? texts[static_cast<size_t>(langue)] : nullptr;
  return text ? text : texts[0];
}

std::string TextOf(std::string_view control, std::string_view property, int langue) {
  const auto* found = std::find_if(
      std::begin(kTexts), std::end(kTexts),
      [&](const ScreenText& row) { return row.control == control && row.property == property; });
  return found == std::end(kTexts) ? std::string() : InLanguage(found->texts, langue);
}

std::string ScreenWord(std::string_view name, int langue) {
  const auto* found = std::find_if(std::begin(kWords), std::end(kWords),
                                   [&](const Word& word) { return word.name == name; });
  return found == std::end(kWords) ? std::string() : InLanguage(found->texts, langue);
}

std::string ScreenWord(std::string_view name, int langue, std::string_view inPlace) {
  std::string text = ScreenWord(name, langue);
  const size_t place = text.find("%1");
  if (place != std::string::npos) text.replace(place, 2, inPlace);
  return text;
}

}  // namespace zemo
