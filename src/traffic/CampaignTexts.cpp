#include "traffic/CampaignTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kCampaigns[] = {
    {"title", {"Horaires des pubs", "Spot times", "Horários da publicidade", "Horarios de las cuñas"}},

    {"BtnNew", {"Nouvelle", "New", "Novo", "Nuevo"}},
    {"BtnAjouter", {"Ajouter", "Add", "Adicionar", "Añadir"}},
    {"BtnReplacer", {"Remplacer", "Replace", "Substituir", "Reemplazar"}},
    {"BtnDelete", {"Supprimer", "Delete", "Eliminar", "Eliminar"}},
    {"BtnRecherhe", {"Rechercher", "Search", "Procurar", "Buscar"}},
    {"BtnImprimer", {"Imprimer", "Print", "Imprimir", "Imprimir"}},
    {"ImgMemo", {"Mémo", "Procedure", "Procedimento", "Procedimiento"}},
    {"BtnDebut", {"Première", "First", "Primeira", "Primera"}},
    {"BtnMoins", {"Précédente", "Previous", "Anterior", "Anterior"}},
    {"BtnPlus", {"Suivante", "Next", "Seguinte", "Siguiente"}},
    {"BtnFin", {"Dernière", "Last", "Última", "Última"}},
    {"BtnCopyGrille", {"Copier la grille", "Copy the grid", "Copiar a tabela", "Copiar la tabla"}},
    {"BtnCollerGrille", {"Coller la grille", "Paste the grid", "Colar a tabela", "Pegar la tabla"}},
    {"BtnDecalY", {"Décaler d'une ligne", "One row down", "Deslocar uma linha", "Bajar una fila"}},
    {"CmdInitGrille", {"Refaire la grille", "Rebuild the grid", "Refazer a tabela", "Rehacer la tabla"}},
    {"CmdLoadFile", {"File", "File", "File", "File"}},

    {"For.LblCode", {"Fiche n°", "Card no.", "Ficha n.º", "Ficha n.º"}},
    {"For.LblDepartPub", {"Campagne du", "Campaign from", "Campanha de", "Campaña del"}},
    {"For.LblFinPub", {"au", "to", "a", "al"}},
    {"For.HDepPub", {"De l'heure", "From hour", "Da hora", "De la hora"}},
    {"For.HFinPub", {"à", "to", "à", "a la"}},
    {"For.DecoupagePub", {"Découpage de l'heure", "Division of the hour", "Divisão da hora", "División de la hora"}},
    {"For.FichierAudio", {"Fichier audio", "Sound file", "Ficheiro áudio", "Fichero de audio"}},
    {"For.Longeur", {"Durée", "Length", "Duração", "Duración"}},
    {"For.ChAnnonceur", {"Annonceur", "Advertiser", "Anunciante", "Anunciante"}},
    {"For.Categorie", {"Catégorie", "Category", "Categoria", "Categoría"}},
    {"For.ComboPriority", {"Ordre de passage", "Order in break", "Ordem de passagem", "Orden de emisión"}},
    {"For.ChContact", {"Contact", "Contact", "Contacto", "Contacto"}},
    {"For.GenreAssocie", {"Genre associé", "Linked genre", "Género associado", "Género asociado"}},
    {"For.LblTotalMsg", {"Messages", "Airings", "Mensagens", "Mensajes"}},
    {"For.PLPub", {"Liste des campagnes", "List of campaigns", "Lista das campanhas", "Lista de campañas"}},
    {"For.GPub", {"Grille des passages", "Grid of crosses", "Tabela de passagens", "Tabla de pases"}},
    {"StartTip", {"Ouvre le calendrier ; clic droit ou Suppr : campagne sans dates, toutes les semaines", "Opens the calendar; right click or Delete: a campaign without dates, every week", "Abre o calendário; botão direito ou Delete: campanha sem datas, todas as semanas", "Abre el calendario; botón derecho o Supr: campaña sin fechas, todas las semanas"}},
    {"EndTip", {"Ouvre le calendrier ; le jour choisi refait la grille", "Opens the calendar; the day picked rebuilds the grid", "Abre o calendário; o dia escolhido refaz a tabela", "Abre el calendario; el día elegido rehace la tabla"}},
    {"GridTip", {"Clic : une case ; Maj : la ligne ; Ctrl : la colonne ; glisser peint. Bouton droit : vide ligne ou colonne. Clavier : flèches, espace, Suppr ; Maj avec flèches peint", "Click: a cell; Shift: the row; Ctrl: the column; dragging paints. Right button: empties row or column. Keys: arrows, space, Delete; Shift with arrows paints", "Clique: uma célula; Shift: a linha; Ctrl: a coluna; arrastar pinta. Botão direito: esvazia linha ou coluna. Teclado: setas, espaço, Delete; Shift com setas pinta", "Clic: una casilla; Mayús: la fila; Ctrl: la columna; arrastrar pinta. Botón derecho: vacía fila o columna. Teclado: flechas, espacio, Supr; Mayús con flechas pinta"}},
    {"LegendOwn", {"Cette campagne", "This campaign", "Esta campanha", "Esta campaña"}},
    {"LegendAdvertiser", {"Autre campagne de l'annonceur", "Advertiser's other campaign", "Outra campanha do anunciante", "Otra campaña del anunciante"}},
    {"LegendLoad", {"Écran déjà entamé", "Break partly filled", "Bloco já preenchido", "Bloque ya ocupado"}},
    {"LegendFull", {"Écran plein", "Break full", "Bloco cheio", "Bloque lleno"}},
    {"LegendReading", {"Lecture des campagnes…", "Reading the campaigns…", "A ler as campanhas…", "Leyendo las campañas…"}},
    {"LoadTip", {"Durée des autres campagnes à ce moment, sur le temps jusqu'au prochain écran ou top horaire", "Length of the other campaigns at that moment, against the time to the next break or hour pip", "Duração das outras campanhas nesse momento, sobre o tempo até ao próximo bloco ou sinal horário", "Duración de las otras campañas en ese momento, sobre el tiempo hasta el próximo bloque o señal horaria"}},
    {"TipOthers", {"Autres campagnes : %1, en tout %2 sur %3", "Other campaigns: %1, together %2 of %3", "Outras campanhas: %1, ao todo %2 de %3", "Otras campañas: %1, en total %2 de %3"}},
    {"TipNoOther", {"Aucune autre campagne, %1 jusqu'au prochain écran ou top", "No other campaign, %1 to the next break or pip", "Nenhuma outra campanha, %1 até ao próximo bloco ou sinal", "Ninguna otra campaña, %1 hasta el próximo bloque o señal"}},
    {"TipAdvertiser", {"Dont l'annonceur lui-même : %1", "Of these the advertiser's own: %1", "Das quais do próprio anunciante: %1", "De ellas del propio anunciante: %1"}},
    {"TipAdvertiserDay", {"Autres passages de l'annonceur : %1", "The advertiser's other spots: %1", "Outras passagens do anunciante: %1", "Otros pases del anunciante: %1"}},
    {"GridDamaged", {"Le fichier de grille ne convient pas à la campagne", "The grid file does not fit the campaign", "O ficheiro da tabela não corresponde à campanha", "El fichero de la tabla no se ajusta a la campaña"}},
    {"EndsBefore", {"Le dernier jour est avant le premier", "The last day lies before the first", "O último dia é anterior ao primeiro", "El último día es anterior al primero"}},
    {"Gone", {"Supprimée ailleurs : Ajouter en fait une nouvelle", "Deleted elsewhere: Add makes a new one", "Eliminada noutro lugar: Adicionar faz uma nova", "Eliminada en otro lugar: Añadir hace una nueva"}},
    {"NotSaved", {"Modifications non sauvegardées", "Changes not saved", "Alterações por guardar", "Cambios sin guardar"}},
    {"DateMissing", {"%1… : choisissez la date", "%1…: choose the date", "%1…: escolha a data", "%1…: elija la fecha"}},
    {"TooLong", {"%1 : %2 caractères au plus", "%1: %2 characters at most", "%1: %2 caracteres no máximo", "%1: %2 caracteres como máximo"}},
    {"OptPub.0", {"Publicité", "Spot", "Publicidade", "Publicidad"}},
    {"OptPub.1", {"Rubrique", "News", "Intercalar", "Rúbrica"}},

    {"PLPub.0", {"Annonceur", "Advertiser", "Anunciante", "Anunciante"}},
    {"PLPub.1", {"Catégorie", "Category", "Categoria", "Categoría"}},
    {"PLPub.2", {"Du", "From", "De", "Del"}},
    {"PLPub.3", {"Au", "To", "A", "Al"}},
    {"PLPub.4", {"Type", "Type", "Tipo", "Tipo"}},
    {"PLPub.5", {"Code", "Code", "Código", "Código"}},
    {"PLPub.6", {"Genre associé", "Linked genre", "Género associado", "Género asociado"}},
};
// clang-format on

}  // namespace

std::span<const Word> CampaignCaptions() {
  return kCampaigns;
}

}  // namespace zemo
