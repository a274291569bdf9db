#include "traffic/CampaignMessages.h"

#include <array>

#include "station/Station.h"
#include "traffic/CampaignGrid.h"

namespace zemo {

namespace {

// French, English, Portuguese, Spanish.
using Texts = std::array<const char*, 4>;

constexpr Texts kNoSoundFileTexts = {kNoSoundFile, "Can't save\r\nThere is no sounds file",
                                     "Escolher o ficheiro áudio antes de guardar",
                                     "Escoger el fichero audio antes de guardar"};

constexpr const char* kNoCampaignEnglish = "In first you must init grid\r\nwith New button";
constexpr Texts kNoCampaignTexts = {
    "Vous devez d'abord initialiser la grille\r\navec le bouton nouvelle", kNoCampaignEnglish,
    "Em primeiro lugar, clicar\r\nem Novo para inicializar a tabela", kNoCampaignEnglish};

constexpr Texts kNoSuchHourTexts = {"Il n'y a pas d'heure ", "There is no hour ", "Não há hora ",
                                    "No hay hora "};
constexpr Texts kNoSuchMinuteTexts = {"Il n'y a pas de minute ", "There is no minute ",
                                      "Não há minuto ", "No hay minuto "};

constexpr Texts kMemoTitles = {"Mémo procédure", "Procedure", "Procedimento", "Procedimiento"};

constexpr Texts kMemoTexts = {
    "Pour ajouter une nouvelle grille de publicitée procéder comme suit :\r\n"
    "1 - Bouton Nouvelle\r\n"
    "2 - Découpage horaire\r\n"
    "3 - Campagne départ\r\n"
    "4 - Campagne fin\r\n"
    "5 - Annonceur / Catégorie / Contact / Priorité\r\n"
    "6 - Bouton File pour choisir un fichier WAV\r\n"
    "7 - Remplir la grille\r\n"
    "8 - Sauver avec le bouton Ajouter",
    "To add a new grid of spots proceed as follows :\r\n"
    "1 - New button\r\n"
    "2 - Division of the hour\r\n"
    "3 - Campaign start\r\n"
    "4 - Campaign end\r\n"
    "5 - Advertiser / Category / Contact / Priority\r\n"
    "6 - File button to choose a WAV file\r\n"
    "7 - Fill the grid\r\n"
    "8 - Save with the Add button",
    "Para adicionar uma nova tabela de publicidade, proceder como segue:\r\n"
    "1 - Botão Novo\r\n"
    "2 - Divisão da hora\r\n"
    "3 - Início da campanha\r\n"
    "4 - Fim da campanha\r\n"
    "5 - Anunciante / Categoria / Contacto / Prioridade\r\n"
    "6 - Botão File para escolher um ficheiro WAV\r\n"
    "7 - Preencher a tabela\r\n"
    "8 - Guardar com o botão Adicionar",
    "Para añadir una nueva tabla de publicidad, proceder como sigue:\r\n"
    "1 - Botón Nuevo\r\n"
    "2 - División de la hora\r\n"
    "3 - Inicio de la campaña\r\n"
    "4 - Fin de la campaña\r\n"
    "5 - Anunciante / Categoría / Contacto / Prioridad\r\n"
    "6 - Botón File para escoger un fichero WAV\r\n"
    "7 - Rellenar la tabla\r\n"
    "8 - Guardar con el botón Añadir"};

std::string InLanguage(Station& station, const Texts& texts) {
  station.base.CheckCnf();
  const int64_t langue = station.base.CnfInt(Cnf::kLangue);
  if (langue < 0 || langue >= static_cast<int64_t>(texts.size())) return {};
  return texts[static_cast<size_t>(langue)];
}

}  // namespace

std::string NoSoundFileText(Station& station) {
  return InLanguage(station, kNoSoundFileTexts);
}
std::string NoCampaignText(Station& station) {
  return InLanguage(station, kNoCampaignTexts);
}
std::string WrongMarkText(Station& station, const WrongMark& wrong) {
  return wrong.hour ? InLanguage(station, kNoSuchHourTexts) + wrong.text + " (0 - 23)"
                    : InLanguage(station, kNoSuchMinuteTexts) + wrong.text + " (0 - 59)";
}
std::string MemoTitle(Station& station) {
  return InLanguage(station, kMemoTitles);
}
std::string MemoText(Station& station) {
  return InLanguage(station, kMemoTexts);
}

void ShowAlert(Station& station, const std::string& text, Icon kind) {
  station.platform.messages.Show(kAlertTitle, text, Buttons::kOk, kind);
}

}  // namespace zemo
