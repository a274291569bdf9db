#include "engine/LiveMode.h"

#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "engine/OperatorControls.h"
#include "platform/Desktop.h"
#include "reports/TodaysReport.h"
#include "scheduling/LibrarySearch.h"
#include "station/LanguageTexts.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kLiveRoutine = "MenuLive";

constexpr LanguageTexts kArtist = {"Artiste", "Artist", "Artista", "Artista"};
constexpr LanguageTexts kTitle = {"Titre", "Title", "Título", "Título"};
constexpr LanguageTexts kOver = {"Sur Imp", "Over", "Sobrep.", "Sobreimp."};
constexpr LanguageTexts kDescription = {"Libellé", "Description", "Descrição", "Descripción"};
constexpr LanguageTexts kAdvertiser = {"Annonceur", "Advertiser", "Anunciante", "Anunciante"};
constexpr LanguageTexts kTooManyRows = {"%1 éléments au plus à la fois : choisissez-en moins",
                                        "At most %1 elements at a time: select fewer",
                                        "No máximo %1 elementos de cada vez: escolha menos",
                                        "Como máximo %1 elementos a la vez: elija menos"};

constexpr std::array<int, kColumns> kMusicWidths = {2600, 2600, 700, 1900, 1200, 0,
                                                    0,    0,    0,   0,    2300};
constexpr std::array<int, kColumns> kJingleWidths = {3400, 900, 700, 0, 2300};
constexpr std::array<int, kColumns> kSpotWidths = {3400, 1800, 700};
constexpr std::array<int, kColumns> kOtherWidths = {3400, 700, 0, 700};
constexpr std::array<int, kColumns> kTodayWidths = {2600, 2600, 1400, 1200};

std::string WordOf(Station& station, const LanguageTexts& texts) {
  return InLanguage(texts, static_cast<int>(station.base.CnfInt(Cnf::kLangue)));
}

std::string YesNo(bool yes) {
  return yes ? "Oui" : "Non";
}

// Each reader puts a row of its query in the order of the list's columns; the CODE is last.
BrowseRow JingleOf(const RowView& row) {
  return {{std::string(row.Text(0)), YesNo(row.Int(1) != 0), FormatDuration(row.Int(2)),
           std::string(row.Text(3)), LastPlayedText(row.Real(4)), std::string(row.Text(5))},
          static_cast<int32_t>(row.Int(6))};
}

BrowseRow SpotOf(const RowView& row) {
  return {{std::string(row.Text(0)), std::string(row.Text(1)), FormatDuration(row.Int(2)),
           std::string(row.Text(3)), YesNo(row.Int(4) != 0)},
          static_cast<int32_t>(row.Int(5))};
}

BrowseRow OtherOf(const RowView& row) {
  return {{std::string(row.Text(0)), FormatDuration(row.Int(1)), std::string(row.Text(2)),
           std::string(row.Text(3)), std::string(row.Text(4))},
          static_cast<int32_t>(row.Int(5))};
}

void Fill(Station& station, const std::string& sql, BrowseRow (*read)(const RowView&)) {
  std::vector<BrowseRow> rows;
  station.base.Db().ReadRows(sql, [&](const RowView& row) { rows.push_back(read(row)); });
  station.browse.ListRech.rows = rows;
}

void BrowseMusic(Station& station) {
  OnAir::SetColumnTitle(station, 0, WordOf(station, kArtist));
  OnAir::SetColumnTitle(station, 1, WordOf(station, kTitle));
  OnAir::SetColumnWidths(station, kMusicWidths);
}

void BrowseJingles(Station& station) {
  OnAir::SetColumnTitle(station, 0, WordOf(station, kDescription));
  OnAir::SetColumnTitle(station, 1, WordOf(station, kOver));
  OnAir::SetColumnWidths(station, kJingleWidths);
  Fill(station,
       "SELECT Libelle ,Surimpression ,Duree ,FileName ,LastDiff ,POINTSORTIE ,Code "
       "FROM DiscothequeJingle WHERE '*'",
       JingleOf);
}

void BrowseSpots(Station& station) {
  OnAir::SetColumnTitle(station, 0, WordOf(station, kAdvertiser));
  OnAir::SetColumnWidths(station, kSpotWidths);
  Fill(station,
       "SELECT ANNONCEUR ,CATEGORIE ,Duree ,FILENAMEAUDIO ,PUB ,Code FROM GrillePub WHERE '*'",
       SpotOf);
}

void BrowseOthers(Station& station) {
  OnAir::SetColumnTitle(station, 0, WordOf(station, kDescription));
  OnAir::SetColumnWidths(station, kOtherWidths);
  Fill(station,
       "SELECT Libelle, Duree, FileName, Touche, POINTSORTIE, Code FROM DiscothequeVirgule "
       "WHERE '*'",
       OtherOf);
}

void BrowseToday(Station& station) {
  OnAir::SetColumnTitle(station, 0, WordOf(station, kArtist));
  OnAir::SetColumnTitle(station, 1, WordOf(station, kTitle));
  OnAir::SetColumnWidths(station, kTodayWidths);
  LoadTodaysReport(station);
}

void Browse(Station& station, BrowseList list) {
  switch (list) {
    case BrowseList::kMusic:
      return BrowseMusic(station);
    case BrowseList::kJingles:
      return BrowseJingles(station);
    case BrowseList::kSpots:
      return BrowseSpots(station);
    case BrowseList::kOthers:
      return BrowseOthers(station);
    case BrowseList::kToday:
      return BrowseToday(station);
  }
}

}  // namespace

void OnAir::MenuLive_Click(Station& station, BrowseList list) {
  RecordActivity(station);
  StopSearch(station);
  BrowseRows& browsed = station.browse.ListRech;
  browsed.list = list;
  browsed.rows.clear();
  browsed.sorted = false;
  browsed.titles.fill({});  // no head of the entry before stays
  try {
    Browse(station, list);
  } catch (const std::exception&) {
    LogCurrentException(station, kLiveRoutine);
  }
  if (list == BrowseList::kMusic && !station.browse.Rech.empty()) BeginTextSearch(station);
}

void OnAir::ListRech_MouseDown(Station& station) {
  RecordActivity(station);
  station.engine.ActiveList = "ListRech";
}

int32_t OnAir::CardOfBrowseRow(const Station& station, int row) {
  const BrowseRows& browsed = station.browse.ListRech;
  const bool card =
      browsed.list == BrowseList::kMusic && row >= 0 && row < static_cast<int>(browsed.rows.size());
  return card && !station.lists.Locked ? browsed.rows.Code(static_cast<size_t>(row)) : 0;
}

void OnAir::SetColumnTitle(Station& station, int column, const std::string& title) {
  station.browse.ListRech.titles[static_cast<size_t>(column)] = title;
}

void OnAir::SetColumnWidths(Station& station, const std::array<int, kColumns>& widths) {
  station.browse.ListRech.widths = widths;
}

void OnAir::TextBox_GotFocus(Station& station) {
  station.engine.HotKeysArmed = false;
}

void OnAir::TextBox_LostFocus(Station& station) {
  station.engine.HotKeysArmed = true;
}

namespace {

// The records of those rows as rows of PL; what the library no longer holds is passed over.
std::vector<OnAirElement> ElementsOf(Station& station, const std::vector<int>& browseRows) {
  const BrowseRows& browsed = station.browse.ListRech;
  std::vector<OnAirElement> elements;
  for (const int index : browseRows) {
    if (index < 0 || index >= static_cast<int>(browsed.rows.size())) continue;
    const int32_t code = browsed.rows.Code(static_cast<size_t>(index));
    if (code == 0) continue;
    if (auto row = OnAir::RowFromLibrary(station, browsed.list, code))
      elements.push_back(std::move(*row));
  }
  return elements;
}

}  // namespace

bool OnAir::DropBrowseRows(Station& station, const std::vector<int>& browseRows, int row) {
  RecordActivity(station);
  if (browseRows.size() > OnAir::kMostDropped) {
    station.platform.messages.Show(
        "Alerte", WithPlace(WordOf(station, kTooManyRows), std::to_string(OnAir::kMostDropped)),
        Buttons::kOk);
    return false;
  }
  const ListOrder order(station);
  station.PL.InsertAll(row < 1 ? station.PL.Count() + 1 : row, ElementsOf(station, browseRows));
  RefreshPlanTimes(station);
  return true;
}

}  // namespace zemo
