#include "scheduling/TitlesInUse.h"

#include <set>

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
  station.base.Db().ReadRows("SELECT Code, LADATE, LHeure FROM Playlist", [&](const RowView& list) {
    if (ListStillToCome(list.Text(1), list.Text(2), now)) lists.insert(list.Int(0));
  });
  return lists;
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
  station.base.Db().ReadRows("SELECT NUMPLS, DISCOTHEQUE FROM Pls WHERE DISCOTHEQUE > 0",
                             [&](const RowView& row) {
                               if (editing || lists.count(row.Int(0)) > 0)
                                 used.Add(static_cast<int32_t>(row.Int(1)));
                             });
  return used;
}

}  // namespace zemo
