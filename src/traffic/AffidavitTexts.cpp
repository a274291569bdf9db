#include "traffic/AffidavitTexts.h"

namespace zemo {

namespace {

// clang-format off
constexpr Word kAffidavit[] = {
    {"title", {"Attestation de diffusion", "Affidavit of broadcast", "Comprovativo de emissão", "Certificado de emisión"}},
    {"For.Annonceur", {"Annonceur", "Advertiser", "Anunciante", "Anunciante"}},
    {"CmdCalend", {"Du...", "From...", "De...", "Del..."}},
    {"BtnDateFin", {"Au...", "To...", "A...", "Al..."}},
    {"BtnEtablir", {"Établir", "Create", "Elaborar", "Elaborar"}},
    {"BtnImprimer", {"Imprimer...", "Print...", "Imprimir...", "Imprimir..."}},
    {"BtnPdf", {"PDF...", "PDF...", "PDF...", "PDF..."}},
    {"BtnTableur", {"Tableur...", "Spreadsheet...", "Folha de cálculo...", "Hoja de cálculo..."}},
    {"For.ListDiff", {"Passages de l'annonceur", "Crosses of the advertiser", "Cruzes do anunciante", "Cruces del anunciante"}},

    {"ListDiff.0", {"Prévu", "Due", "Previsto", "Previsto"}},
    {"ListDiff.1", {"Diffusé", "Aired", "Emitido", "Emitido"}},
    {"ListDiff.2", {"Écart", "Late", "Desvio", "Desfase"}},
    {"ListDiff.3", {"État", "Status", "Estado", "Estado"}},
    {"ListDiff.4", {"Raison", "Reason", "Motivo", "Motivo"}},
    {"ListDiff.5", {"Type", "Type", "Tipo", "Tipo"}},
    {"ListDiff.6", {"Campagne", "Campaign", "Campanha", "Campaña"}},
    {"ListDiff.7", {"Fichier", "File", "Ficheiro", "Fichero"}},

    {"Aired", {"diffusé", "aired", "emitido", "emitido"}},
    {"Missed", {"manqué", "missed", "falhado", "fallido"}},
    {"ToCome", {"à venir", "to come", "por emitir", "por emitir"}},
    {"Extra", {"en plus", "extra", "a mais", "de más"}},
    {"Damaged", {"grille endommagée", "damaged grid", "tabela danificada", "tabla dañada"}},
    {"Spot", {"pub", "spot", "pub", "cuña"}},
    {"News", {"rubrique", "news", "intercalar", "rúbrica"}},

    {"Crosses", {"%1 passage(s) prévu(s)", "%1 crosses", "%1 cruzes", "%1 cruces"}},
    {"AiredCount", {"%1 diffusé(s)", "%1 aired", "%1 emitidas", "%1 emitidas"}},
    {"MissedCount", {"%1 manqué(s)", "%1 missed", "%1 falhadas", "%1 fallidas"}},
    {"ToComeCount", {"%1 à venir", "%1 to come", "%1 por emitir", "%1 por emitir"}},
    {"ExtraCount", {"%1 en plus", "%1 aired without a cross", "%1 sem cruz", "%1 sin cruz"}},
    {"DamagedCount", {"%1 grille(s) endommagée(s)", "%1 damaged grids", "%1 tabelas danificadas", "%1 tablas dañadas"}},
    {"From", {"du", "from", "de", "del"}},
    {"To", {"au", "to", "a", "al"}},
    {"Page", {"Page %1", "Page %1", "Página %1", "Página %1"}},
};

constexpr const char* kStopped = "engine stopped: the report has nothing";
constexpr Word kReasons[] = {
    {"a break at 00:00 never fires", {"un écran à 00:00 ne part jamais", "a break at 00:00 never fires", "um bloco às 00:00 nunca arranca", "un bloque a las 00:00 nunca arranca"}},
    {"report purged: it has nothing left of that time", {"rapport purgé : plus rien pour ce moment", "report purged: it has nothing left of that time", "relatório purgado: já não tem nada desse momento", "informe purgado: ya no tiene nada de ese momento"}},
    {"the break is full", {"l'écran est plein", "the break is full", "o bloco está cheio", "el bloque está lleno"}},
    {"minute lost: the station was on air", {"minute perdue : la station était à l'antenne", "minute lost: the station was on air", "minuto perdido: a estação estava no ar", "minuto perdido: la emisora estaba en antena"}},
    {kStopped, {"station à l'arrêt : le rapport ne contient rien", kStopped, "motor parado: o relatório não tem nada", "motor parado: el informe no tiene nada"}},
};
constexpr Word kReasonsOf[] = {
    {"file missing: ", {"fichier absent : ", "file missing: ", "ficheiro em falta: ", "falta el fichero: "}},
    {"no clock shows ", {"aucune horloge ne montre ", "no clock shows ", "nenhum relógio mostra ", "ningún reloj muestra "}},
};
constexpr Word kBounds[] = {
    {" from ", {" depuis le ", " from ", " de ", " del "}},
    {" up to ", {" jusqu'au ", " up to ", " até ", " hasta el "}},
};
// clang-format on

// The bounds of a time without rows.
std::string BoundsInWords(std::string bounds, int langue) {
  for (const Word& bound : kBounds)
    if (const size_t at = bounds.find(bound.name); at != std::string::npos)
      bounds.replace(at, std::string_view(bound.name).size(), InLanguage(bound.texts, langue));
  return bounds;
}

}  // namespace

std::span<const Word> AffidavitCaptions() {
  return kAffidavit;
}

std::string AffidavitWord(std::string_view name, int langue) {
  const char* word = FindWord(kAffidavit, name, langue);
  return word ? word : "";
}

std::string ShownReason(const std::string& missed, int langue) {
  if (const char* whole = FindWord(kReasons, missed, langue)) return whole;
  if (missed.starts_with(kStopped))
    return FindWord(kReasons, kStopped, langue) +
           BoundsInWords(missed.substr(std::string_view(kStopped).size()), langue);
  for (const Word& begin : kReasonsOf)
    if (missed.starts_with(begin.name))
      return InLanguage(begin.texts, langue) + missed.substr(std::string_view(begin.name).size());
  return missed;
}

}  // namespace zemo
