// The rules in their fixed order. Every test runs, and the reasons of a refusal gather in one line.
#include "scheduling/RotationRules.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "scheduling/HourFilter.h"
#include "scheduling/LastAnswers.h"
#include "scheduling/RecentReport.h"
#include "scheduling/RequestError.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"

namespace zemo {

namespace {

constexpr int kMinutesOfDay = 1440;
constexpr size_t kDateLength = 10;  // "dd/mm/yyyy"
constexpr int kTimeAt = 13;         // characters before the time: the date and " à "

std::string_view TrimView(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The text behind the first `count` characters; "à" is one of them in two bytes.
std::string_view BehindCharacters(std::string_view text, int count) {
  size_t at = 0;
  for (; count > 0 && at < text.size(); --count) {
    ++at;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) ++at;
  }
  return text.substr(at);
}

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// The number that the text is as a whole; -1 for anything but one or two digits.
int ShortNumber(std::string_view text) {
  if (text.empty() || text.size() > 2 || !std::all_of(text.begin(), text.end(), IsDigit)) return -1;
  return text.size() == 1 ? text[0] - '0' : (text[0] - '0') * 10 + (text[1] - '0');
}

[[noreturn]] void NoDate(std::string_view diffusion) {
  throw RequestError(kErrType, "\"" + std::string(diffusion) + "\" is no broadcast date");
}

double DateOf(std::string_view diffusion) {
  const std::string_view date = diffusion.substr(0, kDateLength);
  if (date.size() != kDateLength || date[2] != '/' || date[5] != '/') NoDate(diffusion);
  const int day = ShortNumber(date.substr(0, 2)), month = ShortNumber(date.substr(3, 2));
  const int century = ShortNumber(date.substr(6, 2)), rest = ShortNumber(date.substr(8, 2));
  if (day < 0 || month < 0 || century < 0 || rest < 0) NoDate(diffusion);
  const int year = century * 100 + rest;
  if (!ValidDate(year, month, day)) NoDate(diffusion);
  return DaySerial(year, month, day);
}

int MinuteOfDayOf(std::string_view diffusion) {
  const std::string_view time = TrimView(BehindCharacters(diffusion, kTimeAt).substr(0, 5));
  const size_t colon = time.find(':');
  if (colon == std::string_view::npos) NoDate(diffusion);
  const int hour = ShortNumber(time.substr(0, colon)), minute = ShortNumber(time.substr(colon + 1));
  if (hour < 0 || hour > 23 || minute < 0 || minute > 59) NoDate(diffusion);
  return hour * 60 + minute;
}

// --- the steps ---

int BroadcastsOfToday(const CardRotation& card, const RotationMoment& moment) {
  return static_cast<int>(std::count_if(
      card.Diffusion.begin(), card.Diffusion.end(),
      [&](std::string_view diffusion) { return diffusion.substr(0, kDateLength) == moment.date; }));
}

// Since the last broadcast, by the wall clock or by the one that never jumps.
struct Rest {
  int64_t days = 0, minutes = 0;
  bool clockWentBack = false;
};

Rest RestOf(const CardRotation& card, const RotationMoment& moment) {
  const std::string_view last = card.Diffusion[0];
  Rest rest;
  rest.days = static_cast<int64_t>(moment.daySerial - DateOf(last));
  // The difference of the times of day loses its sign: a title played yesterday at 23:00 is 2760
  // minutes old at 01:00. Deliberate.
  const int64_t timeOfDay = moment.minuteOfDay - MinuteOfDayOf(last);
  const int64_t passed = timeOfDay + rest.days * kMinutesOfDay;
  rest.minutes = std::abs(timeOfDay) + rest.days * kMinutesOfDay;
  const int64_t rested = card.restedMinutes.value_or(passed);
  if (rested <= passed) return rest;
  rest.clockWentBack = true;
  rest.minutes = std::max(rest.minutes, rested);
  rest.days = std::max(rest.days, rested / kMinutesOfDay);
  return rest;
}

// The hour of the last broadcast by a clock that had always been as far back as it is now.
std::string HourBeforeJump(const RotationMoment& moment, int64_t rested) {
  const int64_t minute = (moment.minuteOfDay - rested % kMinutesOfDay + kMinutesOfDay);
  return TwoDigits(static_cast<int>(minute % kMinutesOfDay / 60));
}

// One of the last broadcasts was at this hour: as many are looked at as the setting says, but
// always fewer than the title has hours.
bool HourTooSoonAgain(const CardRotation& card, const RotationMoment& moment, int decalDiff,
                      bool clockWentBack) {
  const std::string_view hours = card.Tranche.substr(0, 24);
  const auto allowed = static_cast<int>(std::count(hours.begin(), hours.end(), '1'));
  if (decalDiff == 0 || allowed < 2) return false;
  const int looked = allowed >= decalDiff ? decalDiff : allowed - 1;
  for (int j = 1; j <= looked; ++j) {
    if (j > kDiffusions)
      throw RequestError(kErrNoSuchField, "a card has no field DIFFUSION" + TwoDigits(j));
    const std::string_view diffusion = card.Diffusion[static_cast<size_t>(j - 1)];
    if (j == 1 && clockWentBack) {
      if (HourBeforeJump(moment, *card.restedMinutes) == moment.hour) return true;
    } else if (BehindCharacters(diffusion, kTimeAt).substr(0, 2) == moment.hour) {
      return true;
    }
  }
  return false;
}

std::string RefusalHead(const CardRotation& card, const RotationMoment& moment) {
  std::string line = moment.general;
  line += ' ';
  line += card.Genre;
  line += '\t';
  line += TrimView(card.Auteur);
  line += ' ';
  line += TrimView(card.Titre);
  return line;
}

}  // namespace

RotationMoment::RotationMoment(const LocalDateTime& now)
    : general(DateText(now) + " " + TimeText(now)),
      date(DateText(now)),
      monthDay(MonthDay(now)),
      hour(TwoDigits(now.hour)),
      minuteOfDay(now.hour * 60 + now.minute),
      daySerial(DaySerial(now.year, now.month, now.day)) {}

bool RotationAllows(const CardRotation& card, const RotationMoment& moment, int decalDiff,
                    std::string& line) {
  line.clear();
  std::string reasons;
  bool allowed = InDateWindow(card.MMJJDebut, card.MMJJFin, moment.monthDay);  // 1
  if (card.NBPASSJOUR == 0) {                                                  // 3
    reasons += " >> Rotation = " + std::to_string(card.NBPASSJOUR);
    allowed = false;
  }
  const std::string_view last = card.Diffusion[0];
  if (TrimView(last).empty()) return allowed;         // 4
  const int today = BroadcastsOfToday(card, moment);  // 5
  const Rest rest = RestOf(card, moment);             // 6
  const int64_t days = rest.days, minutes = rest.minutes;
  if (card.ECARTMINUTES > 0 && card.ECARTMINUTES > minutes) {  // 7
    reasons += " >> Ecart minutes pas assez important " + std::to_string(card.ECARTMINUTES) +
               " > " + std::to_string(minutes);
    allowed = false;
  }
  if (card.ECARTJOURS > 0 && card.ECARTJOURS > days) {  // 8
    reasons += " >> Ecart jours pas assez important " + std::to_string(card.ECARTJOURS) + " > " +
               std::to_string(days);
    allowed = false;
  }
  if (card.NBPASSJOUR > 0 && today >= card.NBPASSJOUR) {  // 9
    reasons += " >> Ecart nb passage jour atteint " + std::to_string(today) + " > " +
               std::to_string(card.NBPASSJOUR);
    allowed = false;
  }
  if (HourTooSoonAgain(card, moment, decalDiff, rest.clockWentBack)) {  // 10
    reasons += " >> pas autorisé dans cette tranche a cause du décalage";
    allowed = false;
  }
  if (!allowed) line = RefusalHead(card, moment) + reasons;  // 2, 11
  return allowed;
}

namespace {

// Minutes since this run aired the card; none when its last broadcast is another one.
std::optional<int64_t> RestedMinutes(const Station& station, const CardRotation& card) {
  const auto aired = station.requests.airings.find(card.Code);
  if (aired == station.requests.airings.end() || aired->second.broadcast != card.Diffusion[0])
    return std::nullopt;
  return (station.platform.clock.MonotonicMs() - aired->second.ms) / 60000;
}

}  // namespace

bool CheckRotation(Station& station, const CardRotation& card, const RotationMoment& moment) {
  const int decalDiff = station.requests.DecalDiffCourant;
  std::string line;
  bool allowed = RotationAllows(card, moment, decalDiff, line);
  if (!allowed && !line.empty()) {
    CardRotation rested = card;
    rested.restedMinutes = RestedMinutes(station, card);
    if (rested.restedMinutes) allowed = RotationAllows(rested, moment, decalDiff, line);
  }
  if (!line.empty()) station.requests.ListAutorisation.Add(std::move(line));
  return allowed;
}

bool CheckRotation(Station& station, const Recordset& discotheque) {
  const LocalDateTime now = station.Now();
  std::array<std::string, 6 + kDiffusions> texts = {
      discotheque.Text("Genre"),   discotheque.Text("Auteur"),
      discotheque.Text("Titre"),   discotheque.Text("MMJJDebut"),
      discotheque.Text("MMJJFin"), discotheque.Text("TRANCHE" + TwoDigits(CurrentWeekday(now)))};
  CardRotation card;
  card.Code = static_cast<int32_t>(discotheque.Int("CODE"));
  card.Genre = texts[0];
  card.Auteur = texts[1];
  card.Titre = texts[2];
  card.MMJJDebut = texts[3];
  card.MMJJFin = texts[4];
  card.Tranche = texts[5];
  card.NBPASSJOUR = static_cast<int32_t>(discotheque.Int("NBPASSJOUR"));
  card.ECARTMINUTES = static_cast<int32_t>(discotheque.Int("ECARTMINUTES"));
  card.ECARTJOURS = static_cast<int32_t>(discotheque.Int("ECARTJOURS"));
  for (size_t i = 0; i < kDiffusions; ++i) {
    texts[6 + i] = discotheque.Text("DIFFUSION" + TwoDigits(static_cast<int>(i) + 1));
    card.Diffusion[i] = texts[6 + i];
  }
  return CheckRotation(station, card, RotationMoment(now));
}

void LoadRecentArtists(Station& station) {
  RequestState& requests = station.requests;
  requests.ECArtiste.clear();
  try {
    const int64_t count = station.base.CnfInt(Cnf::kEcartArtiste);
    requests.ECArtiste = AnswerOrLast(station, LastAnswersOf(station).newestArtists, [&] {
      return NewestArtists(station, static_cast<int>(count));
    });
  } catch (const std::exception&) {
    // A report that cannot be read ends no request; the artists of the list still count.
  }
  for (const OnAirRow& row : station.PL) requests.ECArtiste.push_back(row.title);
  std::vector<std::pair<std::string, std::string>> lines;  // in capitals, and as they stand
  for (std::string& line : requests.ECArtiste) {
    std::string capitals = UpperLatin(line);
    lines.emplace_back(std::move(capitals), std::move(line));
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  requests.ECArtiste.clear();
  requests.ECArtisteCapitals.clear();
  for (auto& [capitals, line] : lines) {
    requests.ECArtiste.push_back(std::move(line));
    requests.ECArtisteCapitals.push_back(std::move(capitals));
  }
}

void LoadNewestReportCode(Station& station) {
  if (const auto newest = NewestRow(station))
    station.requests.DernierCodeRapport = static_cast<int32_t>(*newest);
}

namespace {

// Without their column all titles have the same empty artist, and one would refuse all.
bool ArtistIsUnknown(Station& station, const std::string& artist) {
  return TrimView(artist).empty() && !TitlesHave(station, "AUTEUR");
}

}  // namespace

void CheckArtistGapInReport(Station& station, const std::string& artist, int16_t gap,
                            bool& allowed) {
  try {
    if (ArtistIsUnknown(station, artist)) return;
    const int64_t last = station.requests.DernierCodeRapport;
    const int64_t code = NewestRowOf(station, artist, last - gap);
    if (code != 0 && last - code < gap) allowed = false;
  } catch (const std::exception&) {
    // The flag stays as it was: a report that cannot be read refuses nobody.
  }
}

void CheckRecentArtist(Station& station, std::string& artist, bool& allowed) {
  if (ArtistIsUnknown(station, artist)) return;
  const std::vector<std::string>& lines = station.requests.ECArtisteCapitals;
  const auto count = static_cast<int>(lines.size());
  artist = UpperLatin(artist);
  // The bounds are one above the lines' own numbers from 0: the first artist of the alphabet is
  // never met, and the probe behind the last line meets an empty text. Deliberate.
  int low = 1, high = count;
  while (low <= high) {
    const int middle = (low + high) / 2;
    const std::string_view line =
        middle < count ? std::string_view(lines[static_cast<size_t>(middle)]) : std::string_view();
    if (line == artist) {
      allowed = false;
      return;
    }
    if (artist < line)
      high = middle - 1;
    else
      low = middle + 1;
  }
}

int16_t CurrentHour(Station& station) {
  station.requests.MinutesRequete = 60;
  return static_cast<int16_t>(station.Now().hour);
}

}  // namespace zemo
