#include "library/LibraryTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kLibrary[] = {
    {"title", {"Discothèque", "Library", "Discoteca", "Discoteca"}},
    {"TabStrip1.1", {"Musiques", "Music", "Músicas", "Músicas"}},
    {"TabStrip1.2", {"Jingles", "Jingles", "Jingles", "Jingles"}},
    {"TabStrip1.3", {"Autres", "Short elements", "Separadores", "Cortinillas"}},
    {"TabStrip1.4", {"Top horaire", "Hour pips", "Sinal horário", "Señales horarias"}},

    {"Nouveau", {"Nouveau", "New", "Novo", "Nuevo"}},
    {"Ajouter", {"Ajouter", "Add", "Adicionar", "Añadir"}},
    {"Replacer", {"Remplacer", "Replace", "Substituir", "Reemplazar"}},
    {"MnuDelete", {"Supprimer", "Delete", "Eliminar", "Eliminar"}},
    {"MnuListe", {"Liste", "List", "Lista", "Lista"}},
    {"MnuImp", {"Imprimer", "Print", "Imprimir", "Imprimir"}},
    {"MnuOptions", {"Options", "Options", "Opções", "Opciones"}},
    {"MnuExporter", {"Exporter vers un tableur...", "Export to a spreadsheet...", "Exportar para folha de cálculo...", "Exportar a hoja de cálculo..."}},
    {"MnuTxt", {"Écrire les fichiers d'échange", "Write the exchange files", "Escrever os ficheiros de troca", "Escribir los ficheros de intercambio"}},
    {"MnuGive", {"Donner aux fiches sélectionnées...", "Give to the selected cards...", "Dar às fichas selecionadas...", "Dar a las fichas seleccionadas..."}},
    {"GiveTo", {"Donner aux %1 fiches sélectionnées, tels qu'ils sont affichés :", "Give the %1 selected cards, as shown:", "Dar às %1 fichas selecionadas, tal como mostrado:", "Dar a las %1 fichas seleccionadas, tal como se muestra:"}},
    {"GiveDates", {"Période", "Dates", "Período", "Período"}},
    {"NoWindow", {"toute l'année", "all year", "todo o ano", "todo el año"}},
    {"BtnGive", {"Donner", "Give", "Dar", "Dar"}},
    {"MnuInitDate", {"Réinitialiser les dates de diffusion...", "Reset the play dates...", "Repor as datas de difusão...", "Reiniciar las fechas de emisión..."}},
    {"MnuImport", {"Importer un dossier...", "Import a folder...", "Importar uma pasta...", "Importar una carpeta..."}},
    {"Import", {"Importation", "Import", "Importação", "Importación"}},
    {"ImportFinding", {"fichiers trouvés : %1", "files found: %1", "ficheiros encontrados: %1", "ficheros encontrados: %1"}},
    {"ImportLeft", {"encore %1", "%1 left", "faltam %1", "quedan %1"}},
    {"ImportStopped", {"Arrêtée : les fiches créées restent.", "Stopped: the cards that were made stay.", "Parada: as fichas criadas ficam.", "Detenida: las fichas creadas quedan."}},
    {"ImportLeave", {"Une importation est en cours. L'arrêter et fermer ?", "An import is under way. Stop it and close?", "Uma importação está em curso. Parar e fechar?", "Hay una importación en curso. ¿Detenerla y cerrar?"}},
    {"BtnImportCancel", {"Annuler", "Cancel", "Cancelar", "Cancelar"}},
    {"BtnImportClose", {"Fermer", "Close", "Fechar", "Cerrar"}},
    {"MnuAide", {"Aide", "Help", "Ajuda", "Ayuda"}},

    {"BtnPlus", {"Suivante", "Next", "Seguinte", "Siguiente"}},
    {"BtnMoins", {"Précédente", "Previous", "Anterior", "Anterior"}},
    {"BtnClear", {"Vider", "Clear", "Limpar", "Vaciar"}},
    {"For.OptionTri", {"Trier par", "Order by", "Ordenar por", "Ordenar por"}},
    {"OptionTri.0", {"Numéro", "Number", "Número", "Número"}},
    {"OptionTri.1", {"Artiste", "Artist", "Artista", "Artista"}},
    {"OptionTri.2", {"Titre", "Title", "Título", "Título"}},
    {"OptionTri.3", {"Genre", "Genre", "Género", "Género"}},
    {"OptionTri.4", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"OptionTri.5", {"Label", "Label", "Editora", "Sello"}},

    {"FrameAutorisation", {"Heures autorisées", "Hours allowed", "Horas autorizadas", "Horas autorizadas"}},
    {"JourSem.1", {"Lundi", "Monday", "Segunda", "Lunes"}},
    {"JourSem.2", {"Mardi", "Tuesday", "Terça", "Martes"}},
    {"JourSem.3", {"Mercredi", "Wednesday", "Quarta", "Miércoles"}},
    {"JourSem.4", {"Jeudi", "Thursday", "Quinta", "Jueves"}},
    {"JourSem.5", {"Vendredi", "Friday", "Sexta", "Viernes"}},
    {"JourSem.6", {"Samedi", "Saturday", "Sábado", "Sábado"}},
    {"JourSem.7", {"Dimanche", "Sunday", "Domingo", "Domingo"}},
    {"BtnCopy", {"Copier", "Copy", "Copiar", "Copiar"}},
    {"BtnColler", {"Coller", "Paste", "Colar", "Pegar"}},

    {"CmdFileMusique", {"Fichier...", "File...", "Ficheiro...", "Fichero..."}},
    {"CmdFileJingle", {"Fichier...", "File...", "Ficheiro...", "Fichero..."}},
    {"CmdFileVirgules", {"Fichier...", "File...", "Ficheiro...", "Fichero..."}},
    {"For.lblNumero", {"Fiche n°", "Card no.", "Ficha n.º", "Ficha n.º"}},
    {"For.Longeur", {"Durée", "Length", "Duração", "Duración"}},
    {"For.ChIntro", {"Intro (s)", "Intro (s)", "Intro (s)", "Intro (s)"}},
    {"For.ChAuteur", {"Artiste", "Artist", "Artista", "Artista"}},
    {"For.ChTitre", {"Titre", "Title", "Título", "Título"}},
    {"For.ChGenre", {"Genre", "Genre", "Género", "Género"}},
    {"For.ChVariete", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"For.ChAnne", {"Année", "Year", "Ano", "Año"}},
    {"For.ChNbPassJour", {"Passages par jour", "Plays a day", "Passagens por dia", "Pases por día"}},
    {"For.ChEcartMinutes", {"Écart en minutes", "Gap in minutes", "Intervalo em minutos", "Intervalo en minutos"}},
    {"For.ChEcartJours", {"Écart en jours", "Gap in days", "Intervalo em dias", "Intervalo en días"}},
    {"For.ChEcartArtiste", {"Écart artiste (titres)", "Artist gap (titles)", "Intervalo do artista (títulos)", "Intervalo del artista (títulos)"}},
    {"For.ChDiffusion", {"Dernières diffusions", "Last plays", "Últimas difusões", "Últimas emisiones"}},
    {"For.ChCommentaire", {"Commentaire", "Comment", "Comentário", "Comentario"}},
    {"For.PointSortie", {"Point de sortie (s)", "Exit point (s)", "Ponto de saída (s)", "Punto de salida (s)"}},
    {"For.ChLabel", {"Label", "Label", "Editora", "Sello"}},
    {"For.ChCD", {"CD", "CD", "CD", "CD"}},
    {"For.ChAuteurCompositeur", {"Auteur compositeur", "Author, composer", "Autor compositor", "Autor compositor"}},
    {"For.ChRefAlbum", {"Référence de l'album", "Album reference", "Referência do álbum", "Referencia del álbum"}},
    {"For.LblMMJJDebut", {"Période de diffusion (MMJJ)", "Dates on air (MMDD)", "Período de difusão (MMDD)", "Período de emisión (MMDD)"}},
    {"WindowDayTip", {"Ouvre le calendrier ; clic droit ou Suppr pour vider", "Opens the calendar; right click or Delete to clear", "Abre o calendário; botão direito ou Delete para limpar", "Abre el calendario; botón derecho o Supr para vaciar"}},
    {"LblJ.0", {"Du", "From", "De", "Del"}},
    {"LblJ.1", {"au", "to", "a", "al"}},

    {"For.ChLibJingle", {"Libellé", "Description", "Descrição", "Descripción"}},
    {"For.CodeAssocie", {"Fiche associée n°", "Linked card no.", "Ficha associada n.º", "Ficha asociada n.º"}},
    {"For.LblArtisteAssocie", {"Artiste associé", "Linked artist", "Artista associado", "Artista asociado"}},
    {"For.GenreAssocie", {"Genre associé", "Linked genre", "Género associado", "Género asociado"}},
    {"For.LblDiff", {"Dernière diffusion", "Last play", "Última difusão", "Última emisión"}},
    {"CheckSurimpression", {"En surimpression", "Overlay", "Em sobreposição", "En sobreimpresión"}},
    {"EndofTitre", {"À la fin du titre", "At the end of the title", "No fim do título", "Al final del título"}},
    {"JingleExtraitYN", {"Jingle d'annonce d'extraits", "Announces excerpts", "Anuncia excertos", "Anuncia extractos"}},
    {"CheckJingleRacro", {"Élément de raccord", "Linking element", "Elemento de ligação", "Elemento de enlace"}},
    {"CadreTouche", {"Touche du pavé numérique", "Numeric pad key", "Tecla do teclado numérico", "Tecla del teclado numérico"}},
    {"BtnRechJingles", {"Liste", "List", "Lista", "Lista"}},
    {"BtnFindAutre", {"Liste", "List", "Lista", "Lista"}},

    {"CardList", {"Liste des fiches", "List of cards", "Lista das fichas", "Lista de fichas"}},
    {"SearchCards", {"Rechercher dans la liste", "Search the list", "Pesquisar na lista", "Buscar en la lista"}},
    {"BtnFiche", {"Fiche", "Card", "Ficha", "Ficha"}},
    {"ConfirmInitDate", {"Marquer toute la discothèque comme diffusée maintenant ?", "Mark the whole library as played now?", "Marcar toda a discoteca como difundida agora?", "¿Marcar toda la discoteca como emitida ahora?"}},
    {"HelpText", {"Ctrl+N : nouvelle fiche\nCtrl+S : remplacer la fiche\nCtrl+L : liste\nCtrl+F : rechercher dans la liste\nCtrl+G : donner aux fiches sélectionnées\nCtrl+P : imprimer\nAlt+Page préc. / Page suiv. : fiche précédente, suivante\nHeures : peindre à la souris, ou flèches et espace\nImporter : déposer des fichiers ou des dossiers sur la fenêtre", "Ctrl+N: new card\nCtrl+S: replace the card\nCtrl+L: list\nCtrl+F: search the list\nCtrl+G: give to the selected cards\nCtrl+P: print\nAlt+Page Up / Page Down: previous, next card\nHours: paint with the mouse, or arrows and space\nImport: drop files or folders on the window", "Ctrl+N: nova ficha\nCtrl+S: substituir a ficha\nCtrl+L: lista\nCtrl+F: pesquisar na lista\nCtrl+G: dar às fichas selecionadas\nCtrl+P: imprimir\nAlt+Page Up / Page Down: ficha anterior, seguinte\nHoras: pintar com o rato, ou setas e espaço\nImportar: largar ficheiros ou pastas na janela", "Ctrl+N: nueva ficha\nCtrl+S: reemplazar la ficha\nCtrl+L: lista\nCtrl+F: buscar en la lista\nCtrl+G: dar a las fichas seleccionadas\nCtrl+P: imprimir\nAlt+RePág / AvPág: ficha anterior, siguiente\nHoras: pintar con el ratón, o flechas y espacio\nImportar: soltar ficheros o carpetas en la ventana"}},

    {"PLDisco.0", {"Artiste", "Artist", "Artista", "Artista"}},
    {"PLDisco.1", {"Titre", "Title", "Título", "Título"}},
    {"PLDisco.2", {"Durée", "Length", "Duração", "Duración"}},
    {"PLDisco.3", {"Genre", "Genre", "Género", "Género"}},
    {"PLDisco.4", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"PLDisco.5", {"Code", "Code", "Código", "Código"}},
    {"PLDisco.6", {"Dernière diffusion", "Last play", "Última difusão", "Última emisión"}},
    {"PLJingles.0", {"Libellé", "Description", "Descrição", "Descripción"}},
    {"PLJingles.1", {"Artiste associé", "Linked artist", "Artista associado", "Artista asociado"}},
    {"PLJingles.2", {"Durée", "Length", "Duração", "Duración"}},
    {"PLJingles.3", {"Genre associé", "Linked genre", "Género associado", "Género asociado"}},
    {"PLJingles.4", {"Sur Imp", "Over", "Sobreposição", "Sobreimpresión"}},
    {"PLJingles.5", {"Fichier", "File", "Ficheiro", "Fichero"}},
    {"PLJingles.6", {"Code", "Code", "Código", "Código"}},
    {"PLAutre.0", {"Libellé", "Description", "Descrição", "Descripción"}},
    {"PLAutre.1", {"Durée", "Length", "Duração", "Duración"}},
    {"PLAutre.2", {"Raccord", "Linking", "Ligação", "Enlace"}},
    {"PLAutre.3", {"Fichier", "File", "Ficheiro", "Fichero"}},
    {"PLAutre.4", {"Code", "Code", "Código", "Código"}},
    {"GTopH.0", {"Heure", "Hour", "Hora", "Hora"}},
    {"GTopH.1", {"Fichier", "File", "Ficheiro", "Fichero"}},
    {"GTopH.2", {"Sur Imp", "Over", "Sobreposição", "Sobreimpresión"}},
    {"GTopH.3", {"Jours", "Days", "Dias", "Días"}},
};

constexpr Word kSelector[] = {
    {"title", {"Sélecteur de fichier son / Pré-écoute", "Selector of sound file / Listened Meadow", "Selector de ficheiro áudio / Pré-escuta", "Selector de fichero audio / Preescucha"}},
    {"BtnCancel", {"Annuler", "Cancel", "Anular", "Anular"}},
    {"BtnOk", {"OK", "OK", "OK", "OK"}},
    {"btnRestart", {"Reprendre", "Resume", "Retomar", "Reanudar"}},
    {"btnPlay", {"Écouter", "Play", "Ouvir", "Escuchar"}},
    {"btnPause", {"Pause", "Pause", "Pausa", "Pausa"}},
    {"BtnStop", {"Stop", "Stop", "Parar", "Parar"}},
    {"SelectAll", {"Tout sélectionner", "Select all", "Seleccionar tudo", "Seleccionar todo"}},
    {"For.Dir1", {"Dossier", "Folder", "Pasta", "Carpeta"}},
    {"For.Drive1", {"Lecteur", "Drive", "Unidade", "Unidad"}},
    {"For.File1", {"Fichiers audio", "Sound files", "Ficheiros áudio", "Ficheros de audio"}},
    {"For.FileName", {"Fichier choisi", "Chosen file", "Ficheiro escolhido", "Fichero elegido"}},
    {"For.TrackBar", {"Position d'écoute", "Listening position", "Posição de escuta", "Posición de escucha"}},
    {"For.MMLevelX1", {"Niveau gauche", "Left level", "Nível esquerdo", "Nivel izquierdo"}},
    {"For.MMLevelX2", {"Niveau droit", "Right level", "Nível direito", "Nivel derecho"}},
    {"BtnSelectAll", {"Tout", "All", "Tudo", "Todo"}},
};
// clang-format on

}  // namespace

std::span<const Word> LibraryCaptions() {
  return kLibrary;
}

std::span<const Word> SelectorCaptions() {
  return kSelector;
}

std::string Caption(std::span<const Word> captions, std::string_view name, int langue) {
  const char* text = FindWord(captions, name, langue);
  return text ? text : "";
}

}  // namespace zemo
