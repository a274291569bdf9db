// A week of the demo station, simulated by the program as its users run it: what the rules promise
// is looked for in the trace and in the base, and the same week twice is the same to the byte.
//
// The station's sounds are made too short to be listened to; then silence of the lengths of the
// catalogue takes the place of the titles, since a simulation hears nothing but lengths.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/demo/Demo.h"
#include "app/demo/DemoCatalogue.h"
#include "app/tests/BlackBox.h"
#include "station/TextForms.h"

namespace zemo {
namespace {

using Json = nlohmann::json;

constexpr int64_t kSecondMs = 1000;
constexpr int64_t kHourMs = 3600 * kSecondMs;
constexpr int64_t kDayMs = 24 * kHourMs;
constexpr int kHours = 7 * 24;
// A tick comes 100 ms after the one before, or after the wait that held it has let it go; a yield
// of such a wait takes up to 10 ms.
constexpr int64_t kTickMs = 110;
// 100 buffers of 4096 bytes: 100 * 4096 / 2048 / 100 = 2.0 s. A restart of the output waits them
// out and 1.5 s more.
constexpr int64_t kRestartMs = 2000 + 1500 + kTickMs;
// These titles may play so often a day. The rule sees the last eight broadcasts of a card, so that
// the 24 passes that the demo gives the others are never counted up to.
constexpr int kFewPasses = 6;
// Of the output, so that the week has restarts: the demo is made without them.
constexpr int64_t kCycleMs = 9000 * kSecondMs;
constexpr size_t kApart = 9;                     // EcartArtiste, more than the demo asks for
const std::string kRationed = "(1, 6, 18, 28)";  // of four genres

struct Title {
  std::string artist, genre, variety;
  double seconds = 0;
  int gapMinutes = 0;
  int passes = 0;
};

// "yyyy-mm-ddThh:mm:ss.mmm" of the week, in ms since its Monday, the 23rd.
int64_t WeekMs(const std::string& at) {
  const auto number = [&](size_t from, size_t count) { return std::stoll(at.substr(from, count)); };
  return (number(8, 2) - 23) * kDayMs + number(11, 2) * kHourMs + number(14, 2) * 60 * kSecondMs +
         number(17, 2) * kSecondMs + number(20, 3);
}

std::string Clock(int64_t weekMs) {
  const int64_t second = weekMs / kSecondMs;
  return "day " + std::to_string(weekMs / kDayMs + 1) + " at " +
         std::to_string(second / 3600 % 24) + ":" + std::to_string(second / 60 % 60) + ":" +
         std::to_string(second % 60) + "." + std::to_string(weekMs % kSecondMs);
}

// What the trace tells, by kind of event.
struct Week {
  struct Element {
    int64_t atMs = 0, onAirMs = 0;  // begins to sound; the overlap is over
    int code = 0;
  };
  struct Report {
    int64_t atMs = 0;
    std::string artist, title, genre, day, time;
  };
  std::vector<Element> elements;
  std::vector<Report> reports;
  std::vector<int64_t> overlaidPips, restarts;  // ms
  std::vector<std::pair<int64_t, int64_t>> silences;
  std::map<int, std::vector<int>> requests;  // minutes asked for, by hour of the week
  std::vector<std::string> faults;           // lines that a sound week has none of

  explicit Week(const std::string& trace) {
    for (const std::string& line : LinesOf(trace)) {
      // Most of the lines, and nothing that is looked for.
      if (line.find("\"event\":\"flag\"") != std::string::npos) continue;
      const Json event = Json::parse(line);
      Take(event.at("event"), WeekMs(event.at("at")), event, line);
    }
    if (silent_) silences.emplace_back(*silent_, int64_t{kHours} * kHourMs);
  }

 private:
  void Take(const std::string& kind, int64_t atMs, const Json& event, const std::string& line) {
    if (kind == "start") {
      elements.push_back({atMs, atMs, event.at("code")});
    } else if (kind == "onair") {
      elements.back().onAirMs = atMs;
    } else if (kind == "report") {
      reports.push_back({atMs, event.at("AUTEUR"), event.at("TITRE"), event.at("GENRE"),
                         event.at("LADATE"), event.at("HEURE")});
    } else if (kind == "overlay" && event.at("reason") == "pip") {
      overlaidPips.push_back(atMs);
    } else if (kind == "output" && event.at("state") == "stop") {
      restarts.push_back(atMs);
    } else if (kind == "request") {
      requests[static_cast<int>(atMs / kHourMs)].push_back(event.at("minutes"));
    } else if (kind == "silence" && event.at("state") == "begin") {
      silent_ = atMs;
    } else if (kind == "silence") {
      silences.emplace_back(silent_.value(), atMs);
      silent_.reset();
    } else if (kind == "error" || kind == "skip" || kind == "message") {
      faults.push_back(line);
    }
  }

  std::optional<int64_t> silent_;
};

class DemoWeek : public BlackBox {
 protected:
  using Rows = std::vector<std::vector<std::string>>;

  Rows Query(const std::string& station, const std::string& sql) const {
    sqlite3* base = nullptr;
    EXPECT_EQ(sqlite3_open(Path(station + "/Triskin.MDB").c_str(), &base), SQLITE_OK);
    Rows rows;
    const auto take = [](void* to, int count, char** values, char**) {
      std::vector<std::string> row;
      for (int i = 0; i < count; ++i) row.emplace_back(values[i] ? values[i] : "");
      static_cast<Rows*>(to)->push_back(row);
      return 0;
    };
    EXPECT_EQ(sqlite3_exec(base, sql.c_str(), take, &rows, nullptr), SQLITE_OK) << sql;
    sqlite3_close(base);
    return rows;
  }

  // A sound file of that length without a sound, and without its bytes on the disk.
  static void PutSilence(const std::string& path, int seconds) {
    constexpr uint32_t kRate = 8000;
    const uint32_t bytes = static_cast<uint32_t>(seconds) * kRate * 2;
    const auto little = [](uint32_t number, int size) {
      std::string text;
      for (int i = 0; i < size; ++i) text += static_cast<char>(number >> (8 * i));
      return text;
    };
    std::ofstream(path, std::ios::binary)
        << "RIFF" + little(36 + bytes, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
               little(1, 2) + little(kRate, 4) + little(kRate * 2, 4) + little(2, 2) +
               little(16, 2) + "data" + little(bytes, 4);
    std::filesystem::resize_file(path, 44 + bytes);
  }

  // The stored list goes: it asks no rule. Exit points of all three kinds, and introductions with
  // room for an overlay, take the place of those that were found in titles of two seconds.
  void MakeStation() const {
    MakeDemoStation(Path("station"), {40, 0.02}, [](const std::string&) {});
    std::string changes = "DELETE FROM Playlist; DELETE FROM Pls;";
    for (const auto& card :
         Query("station", "SELECT CODE, AUTEUR, TITRE, FILENAME FROM Discotheque")) {
      const auto titles = DemoTitles();
      const auto found = std::find_if(titles.begin(), titles.end(), [&](const DemoTitle& title) {
        return title.artist == card[1] && title.title == card[2];
      });
      ASSERT_NE(found, titles.end()) << card[2];
      const int seconds = static_cast<int>(found->lengthSec);
      PutSilence(card[3], seconds);
      changes += "UPDATE Discotheque SET INTRO = 9, POINTSORTIE = CODE % 3 * 2500, DUREE = " +
                 std::to_string(seconds * 1000) + " WHERE CODE = " + card[0] + ";";
    }
    changes += "UPDATE Discotheque SET NBPASSJOUR = " + std::to_string(kFewPasses) +
               " WHERE CODE IN " + kRationed +
               "; UPDATE Cnf SET CycleMaxi = " + std::to_string(kCycleMs) +
               ", EcartArtiste = " + std::to_string(kApart);
    Query("station", changes);
  }

  void ReadCards() {
    for (const auto& row :
         Query("station",
               "SELECT CODE, AUTEUR, GENRE, VARIETE, DUREE / 1000.0, ECARTMINUTES, "
               "NBPASSJOUR FROM Discotheque"))
      titles_[std::stoi(row[0])] = {
          row[1], row[2], row[3], std::stod(row[4]), std::stoi(row[5]), std::stoi(row[6])};
    for (const auto& row : Query("station", "SELECT VARIETE, POURCENT FROM Variete"))
      varieties_[row[0]] = std::stod(row[1]);
    for (int hour = 0; hour < 24; ++hour)
      for (const auto& row :
           Query("station", "SELECT JOUR, GENRE, TRANCHE" + TwoDigits(hour) + " FROM Models"))
        asked_[{(std::stoi(row[0]) - 1) * 24 + hour, row[1]}] = std::stod(row[2]);
  }

  void ExpectNoLongSilence(const Week& week) const;
  void ExpectPipsOnTime(const Week& week) const;
  void ExpectShares(const Week& week) const;
  void ExpectArtistsApart(const Week& week) const;
  void ExpectTitlesApart(const Week& week) const;
  void ExpectTheBaseToTell(const std::string& station, const Week& week) const;

  std::map<int, Title> titles_;  // by CODE
  std::map<std::string, double> varieties_;
  std::map<std::pair<int, std::string>, double> asked_;  // per cent, by hour of the week and genre
};

// Nothing sounds while the output restarts before its position runs over, and before the first
// tick.
void DemoWeek::ExpectNoLongSilence(const Week& week) const {
  for (const auto& [from, to] : week.silences) {
    const bool restart =
        std::any_of(week.restarts.begin(), week.restarts.end(),
                    [from = from, to = to](int64_t at) { return from <= at && at <= to; });
    EXPECT_LE(to - from, restart ? kRestartMs : kTickMs) << Clock(from);
  }
  // Each run of the output is bounded by CycleMaxi and ends at most one title before.
  const auto cycles = static_cast<size_t>(7 * 86400 * kSecondMs / kCycleMs);  // 67
  EXPECT_GE(week.restarts.size(), cycles);
  EXPECT_LE(week.restarts.size(), cycles + 2);
}

// The long pip is due with the hour: its element begins at second 52, in the tick of that second,
// unless that tick waits for the end of an overlap or the output restarts.
void DemoWeek::ExpectPipsOnTime(const Week& week) const {
  std::map<int64_t, std::vector<int64_t>> pips;  // by the hour that they tell, from the begin
  for (const int64_t at : week.overlaidPips) {
    pips[at / kHourMs + 1].push_back(at);
    EXPECT_LT((at / kHourMs + 1) % 24, 6) << "by day the pip cuts the music";
  }
  for (const auto& element : week.elements) {
    if (element.code != -3) continue;
    pips[element.atMs / kHourMs + 1].push_back(element.atMs);
    EXPECT_GE((element.atMs / kHourMs + 1) % 24, 6) << "by night it sounds over the music";
  }
  for (int hour = 1; hour <= kHours; ++hour) {
    const int64_t due = hour * kHourMs - 8 * kSecondMs;
    ASSERT_EQ(pips[hour].size(), 1U) << Clock(due);
    const int64_t at = pips[hour][0];
    int64_t latest = due + kTickMs;
    for (const auto& element : week.elements)
      if (element.atMs <= due && element.onAirMs > due) latest = element.onAirMs + kTickMs;
    for (const int64_t restart : week.restarts)
      if (due <= restart && restart <= at) latest = std::max(latest, due + kRestartMs);
    EXPECT_GE(at, due);
    EXPECT_LE(at, latest) << Clock(at);
  }
  EXPECT_EQ(pips.size(), static_cast<size_t>(kHours));
}

// A request takes titles of a pair of genre and variety as long as the pair has less than its share
// of the variety's time, so one title may lead over it. Music of an hour comes from the requests of
// that hour alone. So a pair has at most its share and a title a request.
void DemoWeek::ExpectShares(const Week& week) const {
  using Pair = std::pair<std::string, std::string>;
  std::map<std::pair<int, Pair>, double> aired;
  std::map<Pair, double> longest;
  std::map<int, std::set<std::string>> genres;
  for (const auto& [code, title] : titles_) {
    double& most = longest[{title.genre, title.variety}];
    most = std::max(most, title.seconds);
  }
  for (const auto& element : week.elements) {
    if (element.code <= 0) continue;
    const Title& title = titles_.at(element.code);
    const int hour = static_cast<int>(element.atMs / kHourMs);
    aired[{hour, {title.genre, title.variety}}] += title.seconds;
    genres[hour].insert(title.genre);
  }
  for (const auto& [place, seconds] : aired) {
    const auto& [hour, pair] = place;
    const auto requests = week.requests.find(hour);
    ASSERT_NE(requests, week.requests.end()) << "music of another hour in hour " << hour;
    double most = 0;
    for (const int minutes : requests->second)
      most +=
          asked_.at({hour, pair.first}) / 100 * varieties_.at(pair.second) / 100 * minutes * 60 +
          longest.at(pair);
    EXPECT_LE(seconds, most) << pair.first << ", " << pair.second << " in hour " << hour;
  }
  // A title is free again after half an hour and a request comes at least every quarter: no genre
  // misses an hour.
  for (int hour = 0; hour < kHours; ++hour)
    EXPECT_EQ(genres[hour].size(), DemoGenres().size()) << "hour " << hour;
}

// Among the last nine of the report an artist comes back only where he was first in the alphabet of
// those whom the request looked at: the search never meets the first line.
void DemoWeek::ExpectArtistsApart(const Week& week) const {
  std::vector<const Week::Report*> rows;
  for (const auto& report : week.reports)
    if (report.genre != "TOP-H" && report.genre != "JINGLE" && report.genre != "PUB")
      rows.push_back(&report);
  ASSERT_GT(rows.size(), 1000U);
  const auto capitals = [&](size_t row) { return UpperLatin(rows[row]->artist); };
  for (size_t row = kApart; row < rows.size(); ++row)
    for (size_t before = row - kApart; before < row; ++before) {
      if (rows[before]->artist != rows[row]->artist) continue;
      bool wasFirst = false;  // when a request came behind any of the rows from `before` on
      for (size_t last = before; last < row && last >= kApart - 1; ++last) {
        bool first = true;
        for (size_t seen = last + 1 - kApart; seen <= last; ++seen)
          first = first && capitals(row) <= capitals(seen);
        wasFirst = wasFirst || first;
      }
      EXPECT_TRUE(wasFirst) << rows[row]->artist << " too near at " << Clock(rows[row]->atMs);
    }
}

void DemoWeek::ExpectTitlesApart(const Week& week) const {
  std::map<std::pair<int, std::string>, int> passes;  // of a card on a day
  std::map<int, const Week::Report*> last;
  std::map<std::string, int> codes;
  for (const auto& row : Query("station", "SELECT CODE, TITRE FROM Discotheque"))
    codes[row[1]] = std::stoi(row[0]);
  for (const auto& report : week.reports) {
    const auto found = codes.find(report.title);
    if (found == codes.end()) continue;
    const int code = found->second;
    ++passes[{code, report.day}];
    const Week::Report* before = std::exchange(last[code], &report);
    // The rule counts whole minutes, and over midnight more than there were.
    if (!before || before->day != report.day) continue;
    EXPECT_GT(report.atMs - before->atMs, (titles_.at(code).gapMinutes - 1) * 60 * kSecondMs)
        << report.title << " at " << Clock(report.atMs);
  }
  int rationed = 0;
  for (const auto& [place, count] : passes) {
    if (titles_.at(place.first).passes > 8) continue;
    ++rationed;
    EXPECT_LE(count, titles_.at(place.first).passes)
        << "card " << place.first << " on " << place.second;
  }
  EXPECT_EQ(rationed, 4 * 7);  // each on each day
}

void DemoWeek::ExpectTheBaseToTell(const std::string& station, const Week& week) const {
  const Rows rows =
      Query(station, "SELECT AUTEUR, TITRE, GENRE, LADATE, HEURE FROM Rapport ORDER BY CODE");
  ASSERT_EQ(rows.size(), week.reports.size());
  std::map<std::string, std::string> last;  // broadcast of each title
  for (size_t i = 0; i < rows.size(); ++i) {
    const Week::Report& told = week.reports[i];
    EXPECT_EQ(rows[i],
              (std::vector<std::string>{told.artist, told.title, told.genre, told.day, told.time}));
    last[told.title] = told.day + " à " + told.time.substr(0, 5);
  }
  int played = 0;
  for (const auto& card : Query(station, "SELECT TITRE, DIFFUSION01 FROM Discotheque")) {
    EXPECT_EQ(card[1], last.count(card[0]) ? last[card[0]] : "") << card[0];
    played += !card[1].empty();
  }
  EXPECT_GT(played, 30);
}

TEST_F(DemoWeek, KeepsItsRulesAndIsTheSameWhenAskedAgain) {
  MakeStation();
  ReadCards();
  const std::string simulate = "$zemoradio simulate --from '2026-11-23 00:00:00' --station ";
  // The station itself works on through six hours; the week is asked of it before, and two of its
  // days once more.
  const Result runs =
      Shell("cp -r station worked && " + simulate + "station --for 7d --trace once & " + simulate +
            "station --for 2d --trace again; wait; " + simulate +
            "worked --for 6h --in-place --trace six");
  ASSERT_EQ(runs.status, 0) << runs.out << runs.err;
  const std::string trace = ReadText(Path("once"));
  const Week week(trace);
  EXPECT_EQ(week.faults, std::vector<std::string>{});
  ExpectNoLongSilence(week);
  ExpectPipsOnTime(week);
  ExpectShares(week);
  ExpectArtistsApart(week);
  ExpectTitlesApart(week);

  const std::string again = ReadText(Path("again"));
  EXPECT_GT(again.size(), trace.size() / 5);
  EXPECT_EQ(trace.compare(0, again.size(), again), 0) << "asked again it is the same";
  const std::string six = ReadText(Path("six"));
  EXPECT_EQ(trace.compare(0, six.size(), six), 0) << "the station plays what it was asked before";
  ExpectTheBaseToTell("worked", Week(six));
}

}  // namespace
}  // namespace zemo
