// Titles that no day and no hour will ever bring on air by a request, each with every reason.
#include <algorithm>
#include <optional>

#include "app/check/CheckParts.h"
#include "app/check/LibraryWeek.h"
#include "scheduling/RequestError.h"
#include "scheduling/RotationRules.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

// Every day that a year can have.
std::vector<RotationMoment> DaysOfLeapYear() {
  std::vector<RotationMoment> days;
  const double first = DaySerial(2028, 1, 1);
  for (int day = 0; day < 366; ++day) days.emplace_back(FromDateSerial(first + day));
  return days;
}

class NeverPlayed {
 public:
  NeverPlayed(std::vector<GenreShares> shares, LibraryRules rules)
      : shares_(std::move(shares)), rules_(std::move(rules)), days_(DaysOfLeapYear()) {}

  // Empty: it can play.
  std::string Why(const LibraryTitle& title) const {
    std::string why;
    const auto add = [&](const std::string& reason) {
      if (!reason.empty()) why += (why.empty() ? "" : "; ") + reason;
    };
    if (title.NBPASSJOUR == 0) add("it is out of rotation (NBPASSJOUR 0)");
    add(WindowReason(title));
    add(DiffusionReason(title));
    add(HoursReason(title));
    if (!rules_.KnowsVariety(title.variety))
      add("its variety \"" + title.variety + "\" is none of the table Variete");
    return why;
  }

 private:
  std::string WindowReason(const LibraryTitle& title) const {
    CardRotation card;
    card.NBPASSJOUR = -1;  // refused by nothing
    card.MMJJDebut = title.MMJJDebut;
    card.MMJJFin = title.MMJJFin;
    std::string line;
    for (const RotationMoment& day : days_)
      if (RotationAllows(card, day, 0, line)) return {};
    return "no day of the year lies in its " + title.MMJJDebut + " to " + title.MMJJFin +
           " (MMJJDebut, MMJJFin)";
  }

  // A request that comes to such a card ends there.
  std::string DiffusionReason(const LibraryTitle& title) const {
    CardRotation card;
    card.NBPASSJOUR = -1;
    for (size_t i = 0; i < title.DIFFUSION.size(); ++i) card.Diffusion[i] = title.DIFFUSION[i];
    std::string line;
    try {
      RotationAllows(card, days_.front(), 0, line);
      return {};
    } catch (const RequestError& error) {
      return std::string("its last broadcast ends every request: ") + error.what();
    }
  }

  std::string HoursReason(const LibraryTitle& title) const {
    bool allowed = false, known = false, meets = false;
    std::string otherwise;
    const GenreShares* genre = nullptr;
    for (const GenreShares& shares : shares_) {
      if (shares.genre == title.genre)
        genre = &shares;
      else if (EqualNoCase(shares.genre, title.genre))
        otherwise = shares.genre;
    }
    for (size_t day = 0; day < kWeekdays; ++day)
      for (size_t hour = 0; hour < kHoursADay; ++hour) {
        const bool now = title.AllowedAt(day, hour);
        const bool wanted = genre && genre->share[day][hour] > 0;
        allowed = allowed || now;
        known = known || wanted;
        meets = meets || (now && wanted);
      }
    if (meets || shares_.empty()) return allowed ? std::string() : NoHour();
    std::string why = allowed ? "" : NoHour();
    if (!known) {
      why += (why.empty() ? "" : "; ") + ("no model gives a share to its genre \"" + title.genre) +
             "\"";
      if (!otherwise.empty()) why += ", which the models write " + otherwise;
    } else if (allowed) {
      why = "its hours are none of those of its genre " + title.genre + " in the models";
    }
    return why;
  }

  static std::string NoHour() { return "no hour of the week is allowed (TRANCHE01 to TRANCHE07)"; }

  std::vector<GenreShares> shares_;
  LibraryRules rules_;
  std::vector<RotationMoment> days_;
};

}  // namespace

void CheckTitles(const ReadOnlyBase& base, Findings& findings) {
  const LibraryRules rules = ReadRules(base);
  const NeverPlayed never(ReadShares(base, rules.skeleton), rules);
  for (const LibraryTitle& title : ReadTitles(base))
    if (const std::string why = never.Why(title); !why.empty())
      findings.Warning("music",
                       std::to_string(title.code) + " " + title.artist + " - " + title.title,
                       "can never play: " + why);
  if (rules.DecalDiff > kDiffusions)
    findings.Warning("settings", "DecalDiff",
                     "is " + std::to_string(rules.DecalDiff) +
                         ", a card remembers 8 broadcasts: a request ends at a title with more "
                         "than 8 allowed hours that has been on air");
}

}  // namespace zemo
