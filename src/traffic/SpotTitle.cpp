#include "traffic/SpotTitle.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include "library/OnAirRows.h"
#include "platform/SoundLengths.h"
#include "scheduling/HourFilter.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

// A window without a first day is none; one without a last day lets nothing through.
bool OpenToday(std::string_view firstDay, std::string_view lastDay, const std::string& today) {
  if (Trim(firstDay).empty()) return true;
  return today >= firstDay && today <= lastDay;
}

// GENREASSOCIE of the first campaign whose sound file begins with that path; blank for none.
std::string GenreOfCampaign(Station& station, const std::string& file) {
  const auto campaigns = station.base.Db().OpenRecordset(
      "SELECT * From GrillePub WHERE Filenameaudio LIKE ?", {file + "*"});
  return campaigns->Eof() ? std::string() : campaigns->Text("GENREASSOCIE");
}

// CODE of the title. Only what decides is read of each card: a genre can be a large part of a
// library.
std::optional<int64_t> FindTitle(Station& station, const std::string& genre) {
  const LocalDateTime now = station.Now();
  const std::string today = MonthDay(now);
  std::optional<int64_t> found;
  BoundQuery asked{"Select CODE, MMJJDEBUT, MMJJFIN From Discotheque Where Genre Like ?", {genre}};
  asked.Add(HourFilter(CurrentWeekday(now), now.hour))
      .Add(" AND NBPASSJOUR > 0 ORDER BY Lastdiff ASC;");
  station.base.Db().ReadRows(asked.text, asked.values, [&](const RowView& row) {
    if (found || !OpenToday(row.Text(1), row.Text(2), today)) return;
    found = row.Int(0);
  });
  return found;
}

}  // namespace

bool InsertTitleOfSpot(Station& station, const std::string& file, int position) {
  try {
    const std::string genre = GenreOfCampaign(station, file);
    if (Trim(genre).empty()) return false;
    const auto code = FindTitle(station, genre);
    if (!code) return false;
    const auto card =
        station.base.Db().OpenRecordset("SELECT * FROM Discotheque WHERE CODE = ?", {*code});
    if (card->Eof()) return false;
    OnAirElement element = MusicRow(*card);
    const int32_t lengthMs = station.platform.lengths.LengthMs(element.file);
    element.lengthMs = lengthMs;
    station.PL.Insert(position, std::move(element));
    return true;
  } catch (const std::exception&) {
    LogCurrentException(station, "SearchPubAssocie", file);
    return false;
  }
}

}  // namespace zemo
