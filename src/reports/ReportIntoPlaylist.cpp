// BtnIntoPlaylist: the titles of the report become the on-air list, to be stored and played again.
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "library/LibraryHandler.h"
#include "library/OnAirRows.h"
#include "platform/EventLoop.h"
#include "reports/ReportScreen.h"
#include "station/ListUndo.h"
#include "station/NewList.h"
#include "station/PlanTimes.h"
#include "station/Station.h"
#include "station/WaitPointer.h"

namespace zemo {

namespace {

constexpr const char* kListName = "Copy Rapport";
constexpr size_t kCardsBetweenYields = 50;

// The first card of that artist and title; none where the library has no such card.
std::optional<OnAirElement> CardOf(Station& station, std::string_view artist,
                                   std::string_view title) {
  const auto cards = station.base.Db().OpenRecordset(
      "SELECT TOP 1 * FROM Discotheque WHERE Auteur LIKE ? AND Titre LIKE ? ORDER BY Code",
      {std::string(artist), std::string(title)});
  return cards->Eof() ? std::nullopt : std::optional(MusicRow(*cards));
}

// In the list's order. A card is looked for once, however often it ran.
std::vector<OnAirElement> TitlesOf(Station& station, const ReportList& list) {
  std::map<std::pair<uint32_t, uint32_t>, std::optional<OnAirElement>> found;
  std::vector<OnAirElement> titles;
  const ReportRows& rows = *list.rows;
  for (const uint32_t row : list.order) {
    const auto [at, fresh] = found.try_emplace(
        {rows.Number(row, RapCol::kArtist), rows.Number(row, RapCol::kTitle)}, std::nullopt);
    if (fresh) {
      if (found.size() % kCardsBetweenYields == 0) station.platform.loop.Yield();
      at->second = CardOf(station, rows.Text(row, RapCol::kArtist), rows.Text(row, RapCol::kTitle));
    }
    if (at->second) titles.push_back(*at->second);
  }
  return titles;
}

}  // namespace

void Report::BtnIntoPlaylist_Click(Station& station, ReportEditor& editor) {
  HandleControl(station, "BtnIntoPlaylist", [&] {
    if (!AnyListed(station, editor.ListRap.Count())) return;
    const ReportWork work(editor);
    const WaitPointer wait(station.notices);
    const ReportList list = editor.ListRap;
    std::vector<OnAirElement> titles = TitlesOf(station, list);
    // Only now: no tick may meet the list empty in a yield.
    const ListOrder order(station, ListOrder::Panel::kChanges);
    BeginNewList(station);
    station.storedList.ComboPLS.text = kListName;
    station.PL.InsertAll(1, std::move(titles));
    RefreshPlanTimes(station);
  });
}

}  // namespace zemo
