#include "scheduling/SkeletonDialogue.h"

#include <vector>

#include "platform/EventLoop.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RequestFrame.h"
#include "scheduling/RotationRules.h"
#include "scheduling/SkeletonRequest.h"
#include "scheduling/TitlesInUse.h"
#include "settings/GenreList.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

std::vector<std::string> Positions(const TextGrid& skeleton) {
  std::vector<std::string> genres;
  for (int row = 0; row < skeleton.RowCount(); ++row) genres.push_back(skeleton.Cell(row, 0));
  return genres;
}

// Rotation and artists are not asked: the list is for later.
Pool MakePool(Station& station, const CandidateCards& cards, const TitlesInUse& used) {
  const bool again = station.requests.SkeletonDialog.Redondance;
  Pool pool;
  for (int card = 0; card < cards.Count(); ++card)
    if (again || !used.Holds(cards.Code(card))) pool.push_back(card);
  ShowPool(station, cards, pool);
  return pool;
}

void FillStoredList(Station& station, RequestFrame& frame, int minutes) {
  station.requests.MinutesRequete = minutes;
  frame.Open(minutes);
  const std::vector<std::string> positions =
      Positions(station.requests.SkeletonDialog.SquelettePLS);
  if (positions.empty() || positions.front().empty()) return frame.Leave(kNoModelsFrench);  // 1
  const TitlesInUse used = LoadTitlesInUse(station);                                        // 2
  station.platform.loop.Yield();
  const CandidateCards cards(station, CardsWanted{.genres = positions},
                             CandidateCards::Order::kLastdiff);  // 3
  Pool pool = MakePool(station, cards, used);                    // 4
  frame.Saw(cards.Count(), pool.size());
  LayAlongSkeleton(station, frame, cards, pool, positions, minutes, std::nullopt);  // 5
  frame.Finish();                                                                   // 6
}

}  // namespace

void Skeleton::Open(Station& station) {
  auto& dialog = station.requests.SkeletonDialog;
  dialog = {};
  LoadSaveGenres(station, "Load", dialog.ListGenre);
  dialog.SpinMinutes = static_cast<int>(station.base.CnfInt(Cnf::kTempRequette));
  dialog.open = true;
}

void Skeleton::ListGenre_DblClick(Station& station, const std::string& genre) {
  station.requests.SkeletonDialog.SquelettePLS.AddRow({genre});
}

void Skeleton::SquelettePLS_KeyDelete(Station& station) {
  auto& dialog = station.requests.SkeletonDialog;
  const int rows = dialog.SquelettePLS.RowCount();
  if (rows < 2 || dialog.selectedRow < 0 || dialog.selectedRow >= rows) return;
  dialog.SquelettePLS.RemoveRow(dialog.selectedRow);
}

bool Skeleton::MnuDay_Click(Station& station, int day) {
  try {
    const int hour = ValInt(station.storedList.ChHeure.substr(0, 2));
    TextGrid skeleton;
    station.base.Db().ReadRows(
        "SELECT TRANCHE" + TwoDigits(hour) +
            " FROM ModelSquelette WHERE JOUR = ? ORDER BY CODE ASC;",
        {day}, [&](const RowView& row) { skeleton.AddRow({std::string(row.Text(0))}); });
    if (skeleton.RowCount() == 0) return false;
    station.requests.SkeletonDialog.SquelettePLS = std::move(skeleton);
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "LoadSquelette");
    return false;
  }
}

void Skeleton::BtnOk_Click(Station& station) {
  const ListOrder order(station);
  station.base.CheckCnf();
  const int minutes = station.requests.SkeletonDialog.SpinMinutes;
  RequestFrame frame(station, "dialog");
  try {
    KnowReport(station);
    LoadRecentArtists(station);
    FillStoredList(station, frame, minutes);
  } catch (const std::exception&) {
    frame.Fail("SquelettePLS");
  }
  station.requests.SkeletonDialog.open = false;
}

void Skeleton::BtnCancel_Click(Station& station) {
  station.requests.SkeletonDialog.open = false;
}

}  // namespace zemo
