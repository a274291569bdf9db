#include "reports/ReportTexts.h"

#include "library/LibraryTexts.h"
#include "reports/ReportEditor.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kReport[] = {
    {"title", {"Rapport et statistiques", "Report and statistics", "Relatório e estatísticas", "Informe y estadísticas"}},

    {"CmdCalend", {"Du...", "From...", "De...", "Del..."}},
    {"BtnDateFin", {"Au...", "To...", "A...", "Al..."}},
    {"BtnDateFinTip", {"Dernier jour ; clic droit pour le premier seul", "Last day; right click for the first day only", "Último dia; botão direito: apenas o primeiro", "Último día; botón derecho: solo el primero"}},
    {"VoirRapport", {"Relire", "Reload", "Reler", "Releer"}},
    {"For.FiltreArtiste", {"Artiste", "Artist", "Artista", "Artista"}},
    {"For.FiltreGenre", {"Genre", "Genre", "Género", "Género"}},
    {"For.FiltreVariete", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"FilterTip", {"Début du texte ; vide : tous", "Beginning of the text; empty: all", "Início do texto; vazio: todos", "Principio del texto; vacío: todos"}},

    {"BtnStats", {"Statistiques", "Statistics", "Estatísticas", "Estadísticas"}},
    {"BtnExport", {"Exporter le rapport...", "Export the report...", "Exportar o relatório...", "Exportar el informe..."}},
    {"ExportStat", {"Exporter les rotations...", "Export the rotations...", "Exportar as rotações...", "Exportar las rotaciones..."}},
    {"BtnImprimer", {"Imprimer le rapport", "Print the report", "Imprimir o relatório", "Imprimir el informe"}},
    {"ImprimeStat", {"Imprimer les rotations", "Print the rotations", "Imprimir as rotações", "Imprimir las rotaciones"}},
    {"BtnIntoPlaylist", {"Copier dans la liste d'antenne", "Copy into the playlist", "Copiar para a playlist", "Copiar en la playlist"}},

    {"ListRap.0", {"Date", "Date", "Data", "Fecha"}},
    {"ListRap.1", {"Heure", "Time", "Hora", "Hora"}},
    {"ListRap.2", {"Artiste", "Artist", "Artista", "Artista"}},
    {"ListRap.3", {"Titre", "Title", "Título", "Título"}},
    {"ListRap.4", {"Genre", "Genre", "Género", "Género"}},
    {"ListRap.5", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"ListRap.6", {"Auteur compositeur", "Author, composer", "Autor compositor", "Autor compositor"}},
    {"ListRap.7", {"Label", "Label", "Editora", "Sello"}},
    {"ListRap.8", {"Référence", "Reference", "Referência", "Referencia"}},
    {"ListRap.9", {"Instant", "Moment", "Instante", "Instante"}},
    {"ListStat.0", {"Rotations", "Rotations", "Rotações", "Rotaciones"}},
    {"ListStat.1", {"Artiste", "Artist", "Artista", "Artista"}},
    {"ListStat.2", {"Titre", "Title", "Título", "Título"}},
    {"ListStat.3", {"Genre", "Genre", "Género", "Género"}},
    {"ListStat.4", {"Variété", "Variety", "Variedade", "Variedad"}},
    {"ListStat.5", {"Label", "Label", "Editora", "Sello"}},

    {"For.ListRap", {"Rapport de diffusion", "Broadcast report", "Relatório de emissão", "Informe de emisión"}},
    {"For.ListStat", {"Rotations des titres", "Rotations of the titles", "Rotações dos títulos", "Rotaciones de los títulos"}},
    {"SortBy", {"Trier par", "Sort by", "Ordenar por", "Ordenar por"}},
    {"CmdCalendTip", {"Premier jour", "First day", "Primeiro dia", "Primer día"}},
    {"Reading", {"Lecture...", "Reading...", "A ler...", "Leyendo..."}},
    {"ExportTitle", {"Exporter", "Export", "Exportar", "Exportar"}},

    {"BtnVues", {"Graphiques", "Charts", "Gráficos", "Gráficos"}},
    {"BtnAttestation", {"Attestation...", "Affidavit...", "Comprovativo...", "Certificado..."}},
    {"For.VueHeures", {"Diffusions par heure et par genre", "Plays by hour and genre", "Emissões por hora e género", "Emisiones por hora y género"}},
    {"For.VueRotation", {"Rotation d'un titre", "Rotation of a title", "Rotação de um título", "Rotación de un título"}},
    {"For.VueParts", {"Parts par variété", "Shares by variety", "Quotas por variedade", "Cuotas por variedad"}},
    {"ChooseRow", {"Choisissez une ligne : la rotation de son titre s'affiche ici", "Choose a row: the rotation of its title is shown here", "Escolher uma linha: a rotação do título vê-se aqui", "Elegir una fila: la rotación de su título se ve aquí"}},
    {"Others", {"autres (%1)", "others (%1)", "outros (%1)", "otros (%1)"}},
    {"NoRows", {"Rien à montrer", "Nothing to show", "Nada a mostrar", "Nada que mostrar"}},

    {"LblCompteur", {"%1 Fiches", "%1 rows", "%1 registos", "%1 filas"}},
};
// clang-format on

}  // namespace

std::span<const Word> ReportCaptions() {
  return kReport;
}

std::string ShownCount(const ReportEditor& editor, int langue) {
  return WithPlace(Caption(ReportCaptions(), "LblCompteur", langue),
                   std::to_string(editor.ListRap.Count()));
}

}  // namespace zemo
