// BtnIntoPlaylist: the titles of the report become the on-air list, to be stored and played again.
#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
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
#include "store/Collation.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr const char* kListName = "Copy Rapport";
constexpr size_t kCardsBetweenYields = 50;
constexpr int kCardsOfSlice = 5000;

// A text whose cards an index of the library finds.
bool IsIndexed(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char c) {
    return c < 0x80 && c != '%' && c != '_' && c != '*' && c != '?';
  });
}

bool IsPattern(std::string_view text) {
  return text.find_first_of("*?") != std::string_view::npos;
}

// A title of the report, and what it is in the list.
struct Wanted {
  std::string artist, title;
  std::optional<OnAirElement> card{};

  bool Indexed() const { return IsIndexed(artist) || IsIndexed(title); }
  bool Pattern() const { return IsPattern(artist) || IsPattern(title); }
};

using ArtistAndTitle = std::pair<std::string_view, std::string_view>;
struct BeforeWithoutCase {
  bool operator()(const ArtistAndTitle& a, const ArtistAndTitle& b) const {
    const int artists = CompareFrenchCase(a.first, b.first);
    return artists != 0 ? artists < 0 : CompareFrenchCase(a.second, b.second) < 0;
  }
};

// Finds the first card of each title.
class CardSearch {
 public:
  explicit CardSearch(Station& station) : station_(station) {}

  void Find(std::vector<Wanted>& all) {
    size_t asked = 0;
    for (Wanted& wanted : all) {
      if (!wanted.Indexed() && !wanted.Pattern()) {
        unindexed_[{wanted.artist, wanted.title}].push_back(&wanted);
        continue;
      }
      Ask(wanted);
      if (!wanted.Indexed() || ++asked % kCardsBetweenYields == 0) Yield();
    }
    GoThroughTheLibrary();
  }

 private:
  void Yield() { station_.platform.loop.Yield(); }

  void Ask(Wanted& wanted) {
    const auto cards = station_.base.Db().OpenRecordset(
        "SELECT TOP 1 * FROM Discotheque WHERE Auteur LIKE ? AND Titre LIKE ? ORDER BY Code",
        {wanted.artist, wanted.title});
    if (!cards->Eof()) wanted.card = MusicRow(*cards);
  }

  // Those that no index finds, all in one walk: a query each takes tenths of a second in a large
  // library.
  void GoThroughTheLibrary() {
    int64_t last = std::numeric_limits<int64_t>::min();
    for (int read = kCardsOfSlice; read == kCardsOfSlice && !unindexed_.empty();) {
      read = 0;
      std::vector<std::pair<int64_t, std::vector<Wanted*>>> found;
      station_.base.Db().ReadRows(
          "SELECT TOP ? Code, Auteur, Titre FROM Discotheque WHERE Code > ? ORDER BY Code",
          {kCardsOfSlice, last}, [&](const RowView& row) {
            ++read;
            last = row.Int(0);
            const auto at = unindexed_.find({row.Text(1), row.Text(2)});
            if (at == unindexed_.end()) return;
            found.emplace_back(last, std::move(at->second));
            unindexed_.erase(at);
          });
      for (const auto& [code, all] : found) TakeCard(code, all);
      if (read == kCardsOfSlice) Yield();
    }
  }

  void TakeCard(int64_t code, const std::vector<Wanted*>& all) {
    const auto card =
        station_.base.Db().OpenRecordset("SELECT * FROM Discotheque WHERE Code = ?", {code});
    if (card->Eof()) return;
    for (Wanted* wanted : all) wanted->card = MusicRow(*card);
  }

  Station& station_;
  std::map<ArtistAndTitle, std::vector<Wanted*>, BeforeWithoutCase> unindexed_;
};

// In the list's order. A card is looked for once, however often it ran.
std::vector<OnAirElement> TitlesOf(Station& station, const ReportList& list) {
  const ReportRows& rows = *list.rows;
  std::map<std::pair<uint32_t, uint32_t>, size_t> known;
  std::vector<Wanted> all;
  std::vector<size_t> ran;  // in `all`
  for (const uint32_t row : list.order) {
    const auto [at, fresh] = known.try_emplace(
        {rows.Number(row, RapCol::kArtist), rows.Number(row, RapCol::kTitle)}, all.size());
    if (fresh)
      all.push_back({std::string(rows.Text(row, RapCol::kArtist)),
                     std::string(rows.Text(row, RapCol::kTitle))});
    ran.push_back(at->second);
  }
  CardSearch(station).Find(all);
  std::vector<OnAirElement> titles;
  for (const size_t title : ran)
    if (all[title].card) titles.push_back(*all[title].card);
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
