#include "app/check/LibraryWeek.h"

#include <algorithm>
#include <map>

#include "scheduling/WeekModel.h"
#include "station/TextForms.h"

namespace zemo {

namespace {

constexpr std::array<const char*, kWeekdays> kDayNames = {
    "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

std::string Numbered(const char* field, size_t first, size_t count) {
  std::string fields;
  for (size_t i = first; i < first + count; ++i)
    fields += std::string(", ") + field + TwoDigits(static_cast<int>(i));
  return fields;
}

GenreShares& SharesOf(std::vector<GenreShares>& shares, const std::string& genre) {
  const auto found = std::find_if(shares.begin(), shares.end(),
                                  [&](const GenreShares& one) { return one.genre == genre; });
  if (found != shares.end()) return *found;
  shares.push_back({genre, {}});
  return shares.back();
}

}  // namespace

bool LibraryTitle::AllowedAt(size_t day, size_t hour) const {
  return hour < TRANCHE[day].size() && TRANCHE[day][hour] == '1';
}

bool LibraryRules::KnowsVariety(const std::string& variety) const {
  return skeleton || varieties.empty() ||
         std::find(varieties.begin(), varieties.end(), variety) != varieties.end();
}

std::vector<LibraryTitle> ReadTitles(const ReadOnlyBase& base) {
  std::vector<LibraryTitle> titles;
  std::map<std::string, int> artists;
  base.Query(
      "SELECT CODE, AUTEUR, TITRE, GENRE, VARIETE, DUREE, NBPASSJOUR, ECARTMINUTES, "
      "ECARTJOURS, ECARTARTISTE, MMJJDebut, MMJJFin" +
          Numbered("TRANCHE", 1, kWeekdays) + Numbered("DIFFUSION", 1, 8) +
          " FROM Discotheque ORDER BY CODE",
      [&](const ReadOnlyBase::Row& row) {
        LibraryTitle title;
        title.code = AsInt(row[0]);
        title.artist = Trim(AsText(row[1]));
        if (title.artist.empty()) title.artist = "Code " + std::to_string(title.code);
        title.artistNumber =
            artists.try_emplace(UpperLatin(title.artist), static_cast<int>(artists.size()))
                .first->second;
        title.title = Trim(AsText(row[2]));
        title.genre = AsText(row[3]);
        title.variety = AsText(row[4]);
        title.lengthSec = static_cast<double>(AsInt(row[5])) / 1000;
        title.NBPASSJOUR = static_cast<int32_t>(AsInt(row[6]));
        title.ECARTMINUTES = static_cast<int32_t>(AsInt(row[7]));
        title.ECARTJOURS = static_cast<int32_t>(AsInt(row[8]));
        title.ECARTARTISTE = static_cast<int32_t>(AsInt(row[9]));
        title.MMJJDebut = AsText(row[10]);
        title.MMJJFin = AsText(row[11]);
        for (size_t i = 0; i < kWeekdays; ++i) title.TRANCHE[i] = AsText(row[12 + i]);
        for (size_t i = 0; i < title.DIFFUSION.size(); ++i)
          title.DIFFUSION[i] = AsText(row[12 + kWeekdays + i]);
        titles.push_back(std::move(title));
      });
  return titles;
}

std::vector<GenreShares> ReadShares(const ReadOnlyBase& base, bool skeleton) {
  std::vector<GenreShares> shares;
  const std::string table = skeleton ? "ModelSquelette" : "Models";
  base.Query("SELECT JOUR, " + std::string(skeleton ? "''" : "GENRE") + ", " + HourColumns() +
                 " FROM " + table + " ORDER BY CODE",
             [&](const ReadOnlyBase::Row& row) {
               const int64_t day = AsInt(row[0]) - 1;
               if (day < 0 || day >= static_cast<int64_t>(kWeekdays)) return;
               for (size_t hour = 0; hour < kHoursADay; ++hour) {
                 const std::string genre = AsText(skeleton ? row[hour + 2] : row[1]);
                 if (Trim(genre).empty()) continue;
                 const double share = skeleton ? 1 : Val(AsText(row[hour + 2]));
                 SharesOf(shares, genre).share[static_cast<size_t>(day)][hour] +=
                     std::max(share, 0.0);
               }
             });
  return shares;
}

LibraryRules ReadRules(const ReadOnlyBase& base) {
  LibraryRules rules;
  base.Query("SELECT Squelette, EcartArtiste, DecalDiff FROM Cnf",
             [&](const ReadOnlyBase::Row& row) {
               rules.skeleton = AsBool(row[0]);
               rules.EcartArtiste = static_cast<int>(AsInt(row[1]));
               rules.DecalDiff = static_cast<int>(AsInt(row[2]));
             });
  base.Query("SELECT VARIETE FROM Variete",
             [&](const ReadOnlyBase::Row& row) { rules.varieties.push_back(AsText(row[0])); });
  return rules;
}

const char* WeekdayName(size_t day) {
  return kDayNames[day];
}

std::string HoursText(const HoursOfDay& hours) {
  if (std::all_of(hours.begin(), hours.end(), [](bool hour) { return hour; })) return "every hour";
  std::string text;
  for (size_t first = 0; first < kHoursADay; ++first) {
    if (!hours[first]) continue;
    size_t last = first;
    while (last + 1 < kHoursADay && hours[last + 1]) ++last;
    text += (text.empty() ? "" : ", ") + TwoDigits(static_cast<int>(first));
    if (last > first) text += (last > first + 1 ? "-" : ", ") + TwoDigits(static_cast<int>(last));
    first = last;
  }
  return text;
}

std::string WeekText(const HoursOfWeek& week) {
  if (std::all_of(week.begin(), week.end(),
                  [&](const HoursOfDay& hours) { return hours == week[0]; }))
    return week[0] == HoursOfDay{} ? std::string() : "every day " + HoursText(week[0]);
  std::string text;
  std::array<bool, kWeekdays> told{};
  for (size_t day = 0; day < kWeekdays; ++day) {
    if (told[day] || week[day] == HoursOfDay{}) continue;
    std::string days;
    for (size_t other = day; other < kWeekdays; ++other) {
      if (week[other] != week[day]) continue;
      told[other] = true;
      days += (days.empty() ? "" : ", ") + std::string(kDayNames[other]);
    }
    text += (text.empty() ? "" : "; ") + days + " " + HoursText(week[day]);
  }
  return text;
}

}  // namespace zemo
