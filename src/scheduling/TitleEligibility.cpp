// Each rule is asked alone, through the routine that asks all of them in a request, so that the
// words and the limits are the same; then time is walked forward until it lets the title through.
#include "scheduling/TitleEligibility.h"

#include <algorithm>
#include <array>
#include <functional>

#include "platform/Folder.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/ModelGrids.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RequestError.h"
#include "scheduling/RotationRules.h"
#include "scheduling/TitlesInUse.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kSearchDays = 36525;     // longer than every gap, and every day of the year with
                                       // every day of the week is among them
constexpr int kMostMinutes = 600'000;  // tried one by one: the longest gap in minutes is 23 days
constexpr int kBudgetRows = 20;        // of the budget table, as in the percentage request
constexpr std::string_view kWordsBegin = " >> ";
constexpr std::string_view kLongAgo = "01/01/1900 à 00:00";
constexpr const char* kEndsRequest = ": a request that comes to this title ends there";

// How often the answer of a test can change. Tests of hours are the same every week.
enum class Grain { kDay, kHour, kMinute };

struct TimedTest {
  const char* name;
  Grain grain;
  std::function<std::string(const LocalDateTime&)> refusal;  // its words; empty: passed
};
using TimedTests = std::vector<TimedTest>;

std::string HourOf(const LocalDateTime& at) {
  return HourLabel(at.hour);
}

std::string DayOf(const LocalDateTime& at) {
  const std::string date = LongDateText(at, 1);  // "Saturday 21 November 2026"
  return date.substr(0, date.find(' '));
}

size_t DayIndex(const LocalDateTime& at) {
  return static_cast<size_t>(CurrentWeekday(at) - 1);
}

// "after 2 more titles"
std::string AfterMore(int64_t count, const std::string& ofWhat, const std::string& behind) {
  return "after " + std::to_string(count) + " more " + ofWhat + (count == 1 ? "" : "s") + behind;
}

// --- the card ---

struct TitleCard {
  TitleCard(Station& station, int32_t code)
      : cards(station, {"CODE = ?", {code}}, CandidateCards::Order::kLastdiff) {
    if (!Found()) return;
    rotation = cards.Rotation(0, broadcasts);
    std::string columns = "FILENAME, AUTEUR";
    for (int day = 1; day <= kDaysOfWeek; ++day) columns += ", TRANCHE" + TwoDigits(day);
    station.base.Db().ReadRows("SELECT " + columns + " FROM Discotheque WHERE CODE = ?", {code},
                               [this](const RowView& row) {
                                 file = row.Text(0);
                                 artist = Trim(row.Text(1));
                                 for (int day = 0; day < kDaysOfWeek; ++day)
                                   hours[static_cast<size_t>(day)] = row.Text(day + 2);
                               });
  }
  bool Found() const { return cards.Count() > 0; }

  CandidateCards cards;  // owns the texts of `rotation`, but for these
  CandidateCards::DiffusionTexts broadcasts;
  CardRotation rotation;  // Tranche is that of no day in particular
  std::string artist, file;
  std::array<std::string, kDaysOfWeek> hours;  // Monday first
};

// --- the rotation rules, one by one ---

// A card that no rule refuses.
CardRotation FreeCard() {
  CardRotation card;
  card.NBPASSJOUR = -1;
  card.Diffusion[0] = kLongAgo;
  return card;
}

CardRotation FreeCardWithBroadcasts(const CardRotation& card) {
  CardRotation free = FreeCard();
  free.Diffusion = card.Diffusion;
  return free;
}

std::string Refusal(const CardRotation& card, const LocalDateTime& at, int decalDiff = 0) {
  try {
    std::string line;
    if (RotationAllows(card, RotationMoment(at), decalDiff, line)) return {};
    return line.substr(line.find(kWordsBegin) + kWordsBegin.size());
  } catch (const RequestError& error) {
    return std::string(error.what()) + kEndsRequest;
  }
}

void AddWindow(const CardRotation& card, TimedTests& tests) {
  CardRotation alone = FreeCard();
  alone.MMJJDebut = card.MMJJDebut;
  alone.MMJJFin = card.MMJJFin;
  const std::string first(card.MMJJDebut), last(card.MMJJFin);
  tests.push_back({"window", Grain::kDay, [alone, first, last](const LocalDateTime& at) {
                     std::string line;  // this rule has no words of its own
                     if (RotationAllows(alone, RotationMoment(at), 0, line)) return std::string();
                     std::string words =
                         "outside of its days, " + first + " to " + last + " (MMDD)";
                     if (first > last) words += ": a window over New Year never opens";
                     return words;
                   }});
}

void AddGaps(const CardRotation& card, const TitleCard& title, int decalDiff, TimedTests& tests) {
  CardRotation alone = FreeCardWithBroadcasts(card);
  alone.ECARTMINUTES = card.ECARTMINUTES;
  const auto ask = [](const CardRotation& asked) {
    return [asked](const LocalDateTime& at) { return Refusal(asked, at); };
  };
  tests.push_back({"minutes", Grain::kMinute, ask(alone)});
  alone = FreeCardWithBroadcasts(card);
  alone.ECARTJOURS = card.ECARTJOURS;
  tests.push_back({"days", Grain::kDay, ask(alone)});
  alone = FreeCardWithBroadcasts(card);
  if (card.NBPASSJOUR > 0) alone.NBPASSJOUR = card.NBPASSJOUR;
  tests.push_back({"passes", Grain::kDay, ask(alone)});
  alone = FreeCardWithBroadcasts(card);
  tests.push_back(
      {"shift", Grain::kHour, [alone, &title, decalDiff](const LocalDateTime& at) mutable {
         alone.Tranche = title.hours[DayIndex(at)];
         return Refusal(alone, at, decalDiff);
       }});
}

void AddRotation(const TitleCard& title, int decalDiff, const LocalDateTime& at,
                 TimedTests& tests) {
  const CardRotation& card = title.rotation;
  AddWindow(card, tests);
  CardRotation alone = FreeCard();
  alone.NBPASSJOUR = card.NBPASSJOUR;
  tests.push_back({"rotation", Grain::kDay,
                   [alone](const LocalDateTime& when) { return Refusal(alone, when); }});
  const CardRotation broadcasts = FreeCardWithBroadcasts(card);
  if (Refusal(broadcasts, at).empty())
    AddGaps(card, title, decalDiff, tests);
  else
    tests.push_back({"broadcast", Grain::kDay, [broadcasts](const LocalDateTime& when) {
                       return Refusal(broadcasts, when);
                     }});
}

// --- what the request's query and its models ask ---

void AddHours(const TitleCard& title, TimedTests& tests) {
  tests.push_back({"hours", Grain::kHour, [&title](const LocalDateTime& at) {
                     const std::string& mask = title.hours[DayIndex(at)];
                     const auto hour = static_cast<size_t>(at.hour);
                     if (hour < mask.size() && mask[hour] == '1') return std::string();
                     return "not allowed at " + HourOf(at) + " on a " + DayOf(at) + " (TRANCHE" +
                            TwoDigits(CurrentWeekday(at)) + ")";
                   }});
}

// What the week's models say of one genre.
struct GenreInWeek {
  struct Day {
    int rows = 0;                            // of the day's model, other genres included
    bool known = false;                      // the genre is one of them
    std::string otherwise;                   // it is written in other letters, as here
    std::array<bool, kHoursOfDay> beyond{};  // its row there is outside of the budget table
    std::array<bool, kHoursOfDay> wanted{};  // it is to be played
  };
  std::array<Day, kDaysOfWeek> days;  // Monday first
};

void TakeName(GenreInWeek::Day& day, std::string_view name, const std::string& genre) {
  if (name == genre)
    day.known = true;
  else if (EqualNoCase(name, genre))
    day.otherwise = name;
}

template <typename TakeRow>
GenreInWeek ReadWeek(Station& station, const std::string& sql, TakeRow takeRow) {
  GenreInWeek week;
  station.base.Db().ReadRows(sql, [&](const RowView& row) {
    const int64_t number = row.Int(0);
    if (number < 1 || number > kDaysOfWeek) return;
    GenreInWeek::Day& day = week.days[static_cast<size_t>(number - 1)];
    ++day.rows;
    takeRow(day, row);
  });
  return week;
}

GenreInWeek ReadModels(Station& station, const std::string& genre) {
  const auto take = [&](GenreInWeek::Day& day, const RowView& row) {
    const std::string name(row.Text(1));
    TakeName(day, name, genre);
    if (name != genre || genre.empty()) return;
    for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
      if (day.wanted[hour]) continue;
      day.beyond[hour] = day.rows > kBudgetRows;
      day.wanted[hour] = Val(row.Text(static_cast<int>(hour) + 2)) > 0;
    }
  };
  return ReadWeek(station, "SELECT JOUR, GENRE, " + HourColumns() + " FROM Models ORDER BY CODE",
                  take);
}

GenreInWeek ReadSkeleton(Station& station, const std::string& genre) {
  const auto take = [&](GenreInWeek::Day& day, const RowView& row) {
    for (size_t hour = 0; hour < kHoursOfDay; ++hour) {
      const std::string name(row.Text(static_cast<int>(hour) + 1));
      TakeName(day, name, genre);
      if (name == genre && !Trim(genre).empty()) day.wanted[hour] = true;
    }
  };
  return ReadWeek(station, "SELECT JOUR, " + HourColumns() + " FROM ModelSquelette ORDER BY CODE",
                  take);
}

std::string ModelRefusal(const GenreInWeek::Day& day, const std::string& genre, bool skeleton,
                         const LocalDateTime& at) {
  const std::string model = (skeleton ? "the skeleton of " : "the model of ") + DayOf(at);
  const auto hour = static_cast<size_t>(at.hour);
  if (day.beyond[hour])
    return "genre " + genre + " stands in " + model + " below row " + std::to_string(kBudgetRows) +
           kEndsRequest;
  if (day.wanted[hour]) return {};
  if (day.known)
    return "genre " + genre + (skeleton ? " has no position at " : " has 0 per cent at ") +
           HourOf(at) + " in " + model;
  std::string words = "genre " + genre + " is not in " + model;
  if (!day.otherwise.empty()) words += ", which writes it " + day.otherwise;
  return words;
}

void AddModel(Station& station, const std::string& genre, bool skeleton, TimedTests& tests) {
  const GenreInWeek week = skeleton ? ReadSkeleton(station, genre) : ReadModels(station, genre);
  tests.push_back({"model", Grain::kHour, [week, genre, skeleton](const LocalDateTime& at) {
                     return ModelRefusal(week.days[DayIndex(at)], genre, skeleton, at);
                   }});
}

std::string VarietyRefusal(Station& station, const std::string& variety) {
  int rows = 0, found = 0;
  double percent = 0;
  ForEachVariety(station.base.Db(), [&](const RowView& row) {
    ++rows;
    if (found > 0 || row.Text(1) != variety) return;
    found = rows;
    percent = Val(row.Text(0));
  });
  if (found == 0) return "variety " + variety + " is none of the table Variete";
  if (found > kBudgetRows)
    return "variety " + variety + " stands below row " + std::to_string(kBudgetRows) +
           " of the table Variete" + kEndsRequest;
  return percent == 0 ? "variety " + variety + " has 0 per cent" + kEndsRequest : std::string();
}

void AddVariety(Station& station, const std::string& variety, TimedTests& tests) {
  const std::string words = VarietyRefusal(station, variety);
  if (!words.empty())
    tests.push_back({"variety", Grain::kDay, [words](const LocalDateTime&) { return words; }});
}

// --- stored lists still to come ---

void AddStoredLists(Station& station, int32_t code, TimedTests& tests) {
  struct List {
    std::string label, date, hour;
  };
  std::vector<List> lists;
  station.base.Db().ReadRows(
      "SELECT LIBELLE, LADATE, LHeure FROM Playlist WHERE CODE IN (SELECT NUMPLS FROM Pls WHERE "
      "DISCOTHEQUE = ?) ORDER BY CODE",
      {code}, [&](const RowView& row) {
        lists.push_back(
            {std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2))});
      });
  for (const List& list : lists)
    tests.push_back({"waiting", Grain::kMinute, [list](const LocalDateTime& at) {
                       if (!ListStillToCome(list.date, list.hour, at)) return std::string();
                       return "waits in the stored list " + list.label + " (" + list.date + " " +
                              list.hour + ")";
                     }});
}

// --- what only the course of the air changes ---

void AskList(const Station& station, int32_t code, std::vector<TitleReason>& reasons) {
  for (int row = 1; row <= station.PL.Count(); ++row)
    if (station.PL.Row(row).code == code) {
      reasons.push_back({"waiting",
                         "waits in the on-air list, row " + std::to_string(row),
                         {},
                         "when it has played"});
      return;
    }
}

void AskReport(Station& station, const std::string& artist, int gap,
               std::vector<TitleReason>& reasons) {
  bool allowed = true;
  CheckArtistGapInReport(station, artist, static_cast<int16_t>(gap), allowed);
  if (allowed) return;
  const int64_t last = station.requests.DernierCodeRapport;
  const int64_t behind = last - NewestRowOf(station, artist, last - gap);
  reasons.push_back({"artist",
                     "artist " + artist + " is " + std::to_string(behind) +
                         " rows back in the report, less than ECARTARTISTE " + std::to_string(gap),
                     {},
                     AfterMore(gap - behind, "row", " of the report")});
}

void AskRecentArtists(Station& station, const std::string& artist,
                      std::vector<TitleReason>& reasons) {
  bool allowed = true;
  std::string capitals = artist;
  CheckRecentArtist(station, capitals, allowed);
  if (allowed) return;
  const auto count = static_cast<int>(station.base.CnfInt(Cnf::kEcartArtiste));
  const std::vector<std::string> newest = NewestArtists(station, count);
  const auto found = std::find_if(newest.begin(), newest.end(), [&](const std::string& line) {
    return UpperLatin(line) == capitals;
  });
  const bool listed = std::any_of(station.PL.begin(), station.PL.end(), [&](const OnAirRow& row) {
    return UpperLatin(row.title) == capitals;
  });
  std::string after = "when the recent artists have changed";
  if (listed)
    after = "when it has left the on-air list";
  else if (found != newest.end())
    after = AfterMore(count - (found - newest.begin()), "title", " on air");
  reasons.push_back({"artist",
                     "artist " + artist + " is among the recent artists (EcartArtiste " +
                         std::to_string(count) + ")",
                     {},
                     after});
}

void AskFile(const Station& station, const std::string& file, std::vector<TitleReason>& reasons) {
  if (!file.empty() && station.platform.soundFiles.Exists(file)) return;
  reasons.push_back({"file",
                     file.empty() ? "the card names no sound file" : "no sound file " + file,
                     {},
                     "when the file is there"});
}

// --- the search ---

bool Passes(const TimedTests& tests, Grain grain, const LocalDateTime& at) {
  return std::all_of(tests.begin(), tests.end(), [&](const TimedTest& test) {
    return test.grain != grain || test.refusal(at).empty();
  });
}

// By days from that of `at`, then by hours.
using WeekOfHours = std::array<std::array<bool, kHoursOfDay>, kDaysOfWeek>;

WeekOfHours PassingHours(const TimedTests& tests, double firstDay) {
  WeekOfHours week;
  for (size_t day = 0; day < week.size(); ++day) {
    LocalDateTime at = FromDateSerial(firstDay + static_cast<double>(day));
    for (size_t hour = 0; hour < week[day].size(); ++hour) {
      at.hour = static_cast<int>(hour);
      week[day][hour] = Passes(tests, Grain::kHour, at);
    }
  }
  return week;
}

// The first moment not before `at` at which all tests pass; beyond its own, moments are full
// minutes.
std::optional<LocalDateTime> FirstMoment(const TimedTests& tests, const LocalDateTime& at) {
  const double firstDay = DaySerial(at.year, at.month, at.day);
  const WeekOfHours week = PassingHours(tests, firstDay);
  const auto open = [](const auto& hours) {
    return std::find(hours.begin(), hours.end(), true) != hours.end();
  };
  if (std::none_of(week.begin(), week.end(), open)) return std::nullopt;
  int minutes = 0;
  for (int day = 0; day <= kSearchDays; ++day) {
    LocalDateTime t = FromDateSerial(firstDay + day);
    const bool today = day == 0;
    if (!Passes(tests, Grain::kDay, t)) continue;
    for (t.hour = today ? at.hour : 0; t.hour < kHoursOfDay; ++t.hour) {
      if (!week[static_cast<size_t>(day % kDaysOfWeek)][static_cast<size_t>(t.hour)]) continue;
      const bool thisHour = today && t.hour == at.hour;
      for (t.minute = thisHour ? at.minute : 0; t.minute < 60; ++t.minute) {
        if (Passes(tests, Grain::kMinute, t)) return thisHour && t.minute == at.minute ? at : t;
        if (++minutes > kMostMinutes) return std::nullopt;
      }
    }
  }
  return std::nullopt;
}

TimedTests AllTests(Station& station, const TitleCard& title, int32_t code,
                    const LocalDateTime& at) {
  const bool skeleton = station.base.CnfBool(Cnf::kSquelette);
  const auto decalDiff = static_cast<int>(station.base.CnfInt(Cnf::kDecalDiff));
  TimedTests tests;
  AddRotation(title, decalDiff, at, tests);
  AddHours(title, tests);
  AddModel(station, std::string(title.cards.Genre(0)), skeleton, tests);
  if (!skeleton) AddVariety(station, std::string(title.cards.Variety(0)), tests);
  AddStoredLists(station, code, tests);
  return tests;
}

}  // namespace

std::optional<TitleAnswer> WhyTitle(Station& station, int32_t code, const LocalDateTime& at) {
  station.base.CheckCnf();
  const TitleCard title(station, code);
  if (!title.Found()) return std::nullopt;
  TitleAnswer answer;
  answer.code = code;
  answer.artist = title.artist;
  answer.title = Trim(title.rotation.Titre);
  answer.genre = title.cards.Genre(0);
  answer.variety = title.cards.Variety(0);
  answer.file = title.file;
  answer.at = at;

  const TimedTests tests = AllTests(station, title, code, at);
  for (const TimedTest& test : tests) {
    const std::string words = test.refusal(at);
    if (!words.empty()) answer.reasons.push_back({test.name, words, FirstMoment({test}, at), {}});
  }
  AskList(station, code, answer.reasons);
  LoadRecentArtists(station);
  LoadNewestReportCode(station);
  if (const int gap = title.cards.ECARTARTISTE(0); gap > 0)
    AskReport(station, title.artist, gap, answer.reasons);
  else
    AskRecentArtists(station, title.artist, answer.reasons);
  AskFile(station, title.file, answer.reasons);
  answer.from = FirstMoment(tests, at);
  return answer;
}

}  // namespace zemo
