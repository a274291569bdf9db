// Whether the library is large enough for the models and the rules. All is counted from the cards
// in favour of the station: what is told here cannot be met, what is not told may still be short.
#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <unordered_map>
#include <unordered_set>

#include "app/check/CheckParts.h"
#include "app/check/LibraryWeek.h"
#include "scheduling/RotationRules.h"
#include "station/TextForms.h"

namespace zemo {
namespace {

constexpr double kHourSec = 3600;
constexpr double kUnlimited = std::numeric_limits<double>::infinity();
constexpr int kMinutesOfHour = 60, kMinutesOfDay = 1440;

std::string Number(double value) {
  return std::to_string(std::llround(value));
}

std::string Counted(size_t count, const char* word) {
  return std::to_string(count) + " " + word + (count == 1 ? "" : "s");
}

// Passes between two of which lie `gapMinutes`.
double PassesIn(int minutes, int gapMinutes) {
  if (gapMinutes <= 0) return kUnlimited;
  const int behindTheFirst = (minutes - 1) / gapMinutes;
  return 1 + behindTheFirst;
}

// A card remembers eight broadcasts: a higher number of passes is never reached.
double PassesByCard(const LibraryTitle& title) {
  const bool counts = title.NBPASSJOUR > 0 && title.NBPASSJOUR <= kDiffusions;
  return counts ? title.NBPASSJOUR : kUnlimited;
}

class LibraryCheck {
 public:
  LibraryCheck(std::vector<LibraryTitle> titles, std::vector<GenreShares> shares,
               const LibraryRules& rules, const LocalDateTime& now)
      : titles_(std::move(titles)), shares_(std::move(shares)), rules_(rules) {
    const RotationMoment today(now);
    double lengthSec = 0;
    size_t inRotation = 0;
    for (const LibraryTitle& title : titles_) {
      inLibrary_[title.genre].push_back(&title);
      if (!InRotation(title, today)) continue;
      byGenre_[title.genre].push_back(&title);
      lengthSec += title.lengthSec;
      ++inRotation;
    }
    if (lengthSec > 0) titlesAnHour_ = kHourSec * static_cast<double>(inRotation) / lengthSec;
  }

  void Tell(Findings& findings) {
    for (const GenreShares& genre : shares_) {
      if (!HasShare(genre)) continue;
      if (inLibrary_.count(genre.genre) == 0) {
        findings.Warning("model", genre.genre, WhyLacking(genre.genre));
      } else if (!TellHours(genre, findings)) {
        TellDays(genre, findings);
      }
    }
    TellArtists(findings);
  }

 private:
  using Titles = std::vector<const LibraryTitle*>;

  struct Supply {
    double seconds = 0;
    size_t titles = 0, artists = 0;
  };

  // Of today: a window that is shut adds nothing to the library for now.
  bool InRotation(const LibraryTitle& title, const RotationMoment& today) const {
    CardRotation card;
    card.NBPASSJOUR = title.NBPASSJOUR;
    card.MMJJDebut = title.MMJJDebut;
    card.MMJJFin = title.MMJJFin;
    std::string line;
    if (title.lengthSec <= 0 || !RotationAllows(card, today, 0, line)) return false;
    return rules_.KnowsVariety(title.variety);
  }

  static bool HasShare(const GenreShares& genre) {
    for (const auto& day : genre.share)
      for (const double share : day)
        if (share > 0) return true;
    return false;
  }

  std::string WhyLacking(const std::string& genre) const {
    std::string why = "the models ask for this genre, the library has no title of it";
    for (const auto& [other, titles] : inLibrary_)
      if (EqualNoCase(other, genre)) why += "; its cards write it " + other;
    return why;
  }

  const Titles& TitlesOf(const std::string& genre) const {
    static const Titles kNone;
    const auto found = byGenre_.find(genre);
    return found == byGenre_.end() ? kNone : found->second;
  }

  double PassesAnHour(const LibraryTitle& title, size_t day) const {
    if (title.ECARTJOURS > 0) return 1;
    const std::string& mask = title.TRANCHE[day];
    // The shift: not again in the hour of its last broadcast.
    if (rules_.DecalDiff > 0 && std::count(mask.begin(), mask.end(), '1') > 1) return 1;
    return std::min(PassesByCard(title), PassesIn(kMinutesOfHour, title.ECARTMINUTES));
  }

  double PassesADay(const LibraryTitle& title, size_t day) const {
    const std::string& mask = title.TRANCHE[day];
    const auto hours = static_cast<double>(std::count(mask.begin(), mask.end(), '1'));
    if (hours == 0) return 0;
    if (title.ECARTJOURS > 0) return 1.0 / title.ECARTJOURS;
    return std::min({PassesByCard(title), PassesIn(kMinutesOfDay, title.ECARTMINUTES),
                     hours * PassesAnHour(title, day)});
  }

  // How often an hour the gap lets an artist come. Rows of the report count spots, jingles and
  // pips too: taken as one a title.
  double ArtistAnHour(const LibraryTitle& title) const {
    const bool byReport = title.ECARTARTISTE > 0;
    const int gap = byReport ? title.ECARTARTISTE : rules_.EcartArtiste;
    const double rows = byReport ? 2 * titlesAnHour_ : titlesAnHour_;
    return gap > 0 ? 1 + std::floor(std::max(0.0, rows - 1) / (gap + 1)) : kUnlimited;
  }

  Supply HourSupply(const std::string& genre, size_t day, size_t hour) const {
    struct Artist {
      double seconds = 0, longestSec = 0, passes = 0;
    };
    Supply supply;
    std::unordered_map<int, Artist> artists;
    for (const LibraryTitle* title : TitlesOf(genre)) {
      if (!title->AllowedAt(day, hour)) continue;
      ++supply.titles;
      Artist& artist = artists[title->artistNumber];
      artist.seconds += PassesAnHour(*title, day) * title->lengthSec;
      artist.longestSec = std::max(artist.longestSec, title->lengthSec);
      artist.passes = std::max(artist.passes, ArtistAnHour(*title));
    }
    supply.artists = artists.size();
    for (const auto& [number, artist] : artists)
      supply.seconds += std::min(artist.seconds, artist.passes * artist.longestSec);
    return supply;
  }

  // Seconds of the hour: what the models give to all genres fills it.
  double WantedSec(const GenreShares& genre, size_t day, size_t hour) const {
    double all = 0;
    for (const GenreShares& other : shares_) all += other.share[day][hour];
    return all > 0 ? kHourSec * genre.share[day][hour] / all : 0;
  }

  // One line for all hours of a genre, with the numbers of the one that lacks most. False without.
  bool TellHours(const GenreShares& genre, Findings& findings) const {
    HoursOfWeek tooShort{};
    double mostLacking = 0;
    std::string worst;
    for (size_t day = 0; day < kWeekdays; ++day)
      for (size_t hour = 0; hour < kHoursADay; ++hour) {
        const double wanted = WantedSec(genre, day, hour);
        if (wanted <= 0) continue;
        const Supply supply = HourSupply(genre.genre, day, hour);
        const double lacking = wanted - supply.seconds;
        tooShort[day][hour] = lacking > 1;
        if (lacking <= 1 || lacking <= mostLacking) continue;
        mostLacking = lacking;
        worst = std::string(WeekdayName(day)) + " " + TwoDigits(static_cast<int>(hour)) +
                " asks for " + Number(wanted) + " s, " + Counted(supply.titles, "allowed title") +
                " of " + Counted(supply.artists, "artist") + " can give " + Number(supply.seconds) +
                " s at their gaps";
      }
    if (worst.empty()) return false;
    findings.Warning("library", genre.genre,
                     "cannot fill its share (" + WeekText(tooShort) + "): " + worst);
    return true;
  }

  void TellDays(const GenreShares& genre, Findings& findings) const {
    std::string days, worst;
    double mostLacking = 0;
    for (size_t day = 0; day < kWeekdays; ++day) {
      double wanted = 0, given = 0;
      for (size_t hour = 0; hour < kHoursADay; ++hour) wanted += WantedSec(genre, day, hour);
      for (const LibraryTitle* title : TitlesOf(genre.genre))
        given += PassesADay(*title, day) * title->lengthSec;
      if (wanted - given <= 1) continue;
      days += (days.empty() ? "" : ", ") + std::string(WeekdayName(day));
      if (wanted - given <= mostLacking) continue;
      mostLacking = wanted - given;
      worst = std::string(WeekdayName(day)) + " asks for " + Number(wanted / 60) + " min, " +
              Counted(TitlesOf(genre.genre).size(), "title") + " can give " + Number(given / 60) +
              " min at their passes and gaps";
    }
    if (!worst.empty())
      findings.Warning("library", genre.genre,
                       "cannot fill its share of the day (" + days + "): " + worst);
  }

  // With no more artists than EcartArtiste keeps, a request finds next to nobody.
  void TellArtists(Findings& findings) const {
    HoursOfWeek tooFew{};
    size_t fewest = std::numeric_limits<size_t>::max();
    for (size_t day = 0; day < kWeekdays; ++day)
      for (size_t hour = 0; hour < kHoursADay; ++hour) {
        const size_t artists = ArtistsAt(day, hour);
        if (artists == 0 || artists > static_cast<size_t>(std::max(rules_.EcartArtiste, 0)))
          continue;
        tooFew[day][hour] = true;
        fewest = std::min(fewest, artists);
      }
    const std::string when = WeekText(tooFew);
    if (when.empty()) return;
    findings.Warning("library", when,
                     "too few artists: " + std::to_string(fewest) +
                         " may play, EcartArtiste keeps " + std::to_string(rules_.EcartArtiste) +
                         " titles between two of one");
  }

  // Those whom the station's own gap concerns; 0 where a title has a gap of its own.
  size_t ArtistsAt(size_t day, size_t hour) const {
    std::unordered_set<int> artists;
    for (const GenreShares& genre : shares_) {
      if (genre.share[day][hour] <= 0) continue;
      for (const LibraryTitle* title : TitlesOf(genre.genre)) {
        if (!title->AllowedAt(day, hour)) continue;
        if (title->ECARTARTISTE > 0) return 0;
        artists.insert(title->artistNumber);
      }
    }
    return artists.size();
  }

  std::vector<LibraryTitle> titles_;
  std::vector<GenreShares> shares_;
  LibraryRules rules_;
  std::map<std::string, Titles> inLibrary_, byGenre_;  // all of them, and those in rotation today
  double titlesAnHour_ = 0;
};

}  // namespace

void CheckLibrary(const ReadOnlyBase& base, const LocalDateTime& now, Findings& findings) {
  const LibraryRules rules = ReadRules(base);
  std::vector<GenreShares> shares = ReadShares(base, rules.skeleton);
  if (shares.empty()) return;  // which is told of the models
  LibraryCheck(ReadTitles(base), std::move(shares), rules, now).Tell(findings);
}

}  // namespace zemo
