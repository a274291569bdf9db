#include "engine/screens/SkeletonWindowTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr ScreenText kSkeletonControls[] = {
    {"LblGenresOfferts", "text", {"&Genres", "&Genres", "&Géneros", "&Géneros"}},
    {"LblSquelette", "text", {"&Squelette", "&Skeleton", "&Esqueleto", "&Esqueleto"}},
    {"LblMinutes", "text", {"&Minutes", "&Minutes", "&Minutos", "&Minutos"}},
    {"ListGenre", "name", {"Genres", "Genres", "Géneros", "Géneros"}},
    {"ListGenre", "tip", {"Double-clic ou Entrée : ajoute le genre au squelette", "Double click or Enter: adds the genre to the skeleton", "Duplo clique ou Enter: adiciona o género ao esqueleto", "Doble clic o Intro: añade el género al esqueleto"}},
    {"SquelettePLS", "name", {"Squelette", "Skeleton", "Esqueleto", "Esqueleto"}},
    {"SquelettePLS", "tip", {"Les genres dans l'ordre des titres ; Suppr retire le genre choisi", "The genres in the order of the titles; Delete takes the selected one out", "Os géneros pela ordem dos títulos; Delete retira o género escolhido", "Los géneros en el orden de los títulos; Supr quita el género elegido"}},
    {"SpinMinutes", "name", {"Minutes", "Minutes", "Minutos", "Minutos"}},
    {"SpinMinutes", "tip", {"Durée de musique à ajouter à la liste (Alt+M)", "Length of the music to add to the list (Alt+M)", "Duração da música a adicionar à lista (Alt+M)", "Duración de la música que se añade a la lista (Alt+M)"}},
    {"Redondance", "text", {"Titres &répétés", "&Repeated titles", "Títulos &repetidos", "Títulos &repetidos"}},
    {"Redondance", "tip", {"Un titre déjà présent dans une liste peut revenir (Alt+R)", "A title that is in a list already may come again (Alt+R)", "Um título já presente numa lista pode voltar (Alt+R)", "Un título que ya está en una lista puede volver (Alt+R)"}},
    {"BtnOk", "text", {"&OK", "&OK", "&OK", "&OK"}},
    {"BtnOk", "tip", {"Remplit la liste (Entrée)", "Fills the list (Enter)", "Preenche a lista (Enter)", "Llena la lista (Intro)"}},
    {"BtnCancel", "text", {"&Annuler", "&Cancel", "&Cancelar", "&Cancelar"}},
    {"BtnCancel", "tip", {"Ferme sans rien ajouter (Échap)", "Closes and adds nothing (Esc)", "Fecha sem adicionar nada (Esc)", "Cierra sin añadir nada (Esc)"}},
    {"mnuCopieSquelette", "text", {"&Copier un squelette", "Co&py a skeleton", "Co&piar um esqueleto", "Co&piar un esqueleto"}},
    {"mnuLundi", "text", {"&Lundi", "&Monday", "&Segunda-feira", "&Lunes"}},
    {"mnuMardi", "text", {"&Mardi", "&Tuesday", "&Terça-feira", "&Martes"}},
    {"mnuMercredi", "text", {"M&ercredi", "&Wednesday", "&Quarta-feira", "M&iércoles"}},
    {"mnuJeudi", "text", {"&Jeudi", "T&hursday", "Q&uinta-feira", "&Jueves"}},
    {"mnuVendredi", "text", {"&Vendredi", "&Friday", "S&exta-feira", "&Viernes"}},
    {"mnuSamedi", "text", {"&Samedi", "&Saturday", "Sá&bado", "&Sábado"}},
    {"mnuDimanche", "text", {"&Dimanche", "S&unday", "&Domingo", "&Domingo"}},
};

constexpr Word kSkeletonWords[] = {
    {"SkeletonTitle", {"Requête par squelette", "Skeleton request", "Pedido por esqueleto", "Petición por esqueleto"}},
    {"SkeletonHint",
     {"Double-clic ou Entrée sur un genre l'ajoute ; Suppr retire une ligne.",
      "Double click or Enter on a genre adds it; Delete takes a row out.",
      "Duplo clique ou Enter num género adiciona-o; Delete retira uma linha.",
      "Doble clic o Intro en un género lo añade; Supr quita una línea."}},
    {"SkeletonCopied", {"Copié : %1", "Copied: %1", "Copiado: %1", "Copiado: %1"}},
    {"SkeletonNone", {"Pas de squelette : %1", "No skeleton: %1", "Sem esqueleto: %1", "Sin esqueleto: %1"}},
};
// clang-format on

}  // namespace

WindowTexts SkeletonWindowTexts() {
  return {kSkeletonControls, kSkeletonWords};
}

}  // namespace zemo
