#include "scheduling/TitlesInUse.h"

#include <set>

#include "scheduling/LastAnswers.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

// CODE of the stored lists whose time today is still to come.
std::set<int64_t> ListsStillToCome(Station& station) {
  const LocalDateTime now = station.Now();
  std::set<int64_t> lists;
  const auto all = AnswerOrLast(station, LastAnswersOf(station).lists, [&] {
    std::vector<DueList> read;
    station.base.Db().ReadRows(
        "SELECT Code, LADATE, LHeure FROM Playlist", [&](const RowView& list) {
          read.push_back({list.Int(0), std::string(list.Text(1)), std::string(list.Text(2))});
        });
    return read;
  });
  for (const DueList& list : all)
    if (ListStillToCome(list.date, list.hourMinute, now)) lists.insert(list.code);
  return lists;
}

std::vector<std::pair<int64_t, int32_t>> ListedTitles(Station& station) {
  return AnswerOrLast(station, LastAnswersOf(station).listedTitles, [&] {
    std::vector<std::pair<int64_t, int32_t>> read;
    station.base.Db().ReadRows("SELECT NUMPLS, DISCOTHEQUE FROM Pls WHERE DISCOTHEQUE > 0",
                               [&](const RowView& row) {
                                 read.emplace_back(row.Int(0), static_cast<int32_t>(row.Int(1)));
                               });
    return read;
  });
}

}  // namespace

bool ListStillToCome(std::string_view date, std::string_view hourMinute, const LocalDateTime& now) {
  return (date == DateText(now) || EqualNoCase(date, "JOURNALIER")) &&
         hourMinute > TimeText(now).substr(0, 5);
}

TitlesInUse LoadTitlesInUse(Station& station) {
  TitlesInUse used;
  for (const OnAirRow& row : station.PL) used.Add(row.code);
  const bool editing = station.storedList.open;
  std::set<int64_t> lists;
  if (!editing) lists = ListsStillToCome(station);
  if (!editing && lists.empty()) return used;
  for (const auto& [list, code] : ListedTitles(station))
    if (editing || lists.count(list) > 0) used.Add(code);
  return used;
}

}  // namespace zemo
