// Generated libraries, models, reports and clocks: a request gives what the algorithm, written down
// a second time in the plainest way, gives for the same station, and keeps what it promises.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <set>

#include "scheduling/RotationRules.h"
#include "scheduling/tests/RequestFixture.h"
#include "station/TimeForms.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::TitleCard;

constexpr int kCases = 1200;

struct Case {
  LocalDateTime now;
  int minutes = 30, lectureBase = 0, decalDiff = 0, ecartArtiste = 0;
  std::vector<std::pair<std::string, int>> varieties;
  std::vector<std::pair<std::string, int>> model;  // genre and per cent
  struct Card : TitleCard {
    int32_t code = 0;
  };
  std::vector<Card> cards;
  struct Aired {
    std::string artist;
    double dateNum;
    bool music;
  };
  std::vector<Aired> report;  // CODE is the place from 1
  std::vector<int> listed;    // places in cards
  std::vector<int> storedLater;
};

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  Case Make() {
    Case c;
    c.now = {2026, Pick(1, 12), Pick(1, 28), Pick(0, 23), Pick(0, 59), Pick(0, 59), 0};
    c.minutes = Pick(0, 3) == 0 ? Pick(1, 10) : Pick(10, 60);
    c.lectureBase = Pick(0, 3) == 0 ? 1 : 0;
    c.decalDiff = std::max(Pick(-2, 3), 0);
    c.ecartArtiste = Pick(0, 8);
    const char* varieties[] = {"NATIONAL", "INTERNATIONAL", "OTHER"};
    for (int i = 0, n = Pick(1, 3); i < n; ++i)
      c.varieties.emplace_back(varieties[i], Pick(1, 100));
    const char* genres[] = {"POP", "ROCK", "L'ETE", "pop"};
    for (int i = 0, n = Pick(1, 4); i < n; ++i)
      c.model.emplace_back(genres[i], Pick(0, 4) == 0 ? 0 : Pick(1, 60));
    for (int i = 0, n = Pick(1, 30); i < n; ++i) c.cards.push_back(MakeCard(c));
    for (int i = 0, n = Pick(0, 12); i < n; ++i)
      c.report.push_back({Artist(), DateSerial(c.now) - Pick(0, 20) / 100.0, Pick(0, 3) > 0});
    for (int i = 0, n = Pick(0, 4); i < n; ++i) c.listed.push_back(Place(c));
    for (int i = 0, n = Pick(0, 2); i < n; ++i) c.storedLater.push_back(Place(c));
    return c;
  }

 private:
  int Pick(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  int Place(const Case& c) { return Pick(0, static_cast<int>(c.cards.size()) - 1); }
  std::string Artist() {
    const std::string letter(1, static_cast<char>('A' + Pick(0, 19)));
    return Pick(0, 19) == 0 ? "" : (Pick(0, 1) ? "Artist " : "ARTIST ") + letter;
  }
  Case::Card MakeCard(const Case& c) {
    Case::Card card;
    card.artist = Artist();
    const char* genres[] = {"POP", "ROCK", "L'ETE", "POP", "ROCK", "Pop", "JAZZ"};
    const char* varieties[] = {"NATIONAL", "INTERNATIONAL", "OTHER", "national"};
    card.genre = genres[Pick(0, 6)];
    card.variety = varieties[std::max(Pick(-4, 3), 0)];
    card.lengthMs = Pick(500, 400000);
    card.passes = Pick(0, 9) == 0 ? 0 : Pick(1, 4);
    card.minutes = Pick(0, 3) == 0 ? Pick(1, 180) : 0;
    card.days = Pick(0, 3) == 0 ? Pick(1, 2) : 0;
    card.artistGap = Pick(0, 2) == 0 ? Pick(1, 9) : 0;
    for (char& hour : card.hours) hour = Pick(0, 8) == 0 ? '0' : '1';
    if (Pick(0, 9) == 0) {
      card.firstDay = TwoDigits(Pick(1, 12)) + "01";
      card.lastDay = TwoDigits(Pick(1, 12)) + "28";
    }
    if (Pick(0, 2) == 0) return card;  // never played
    const double today = DaySerial(c.now.year, c.now.month, c.now.day);
    for (int i = 0, n = Pick(1, 8); i < n; ++i) {
      const LocalDateTime day = FromDateSerial(today - Pick(0, 3));
      card.diffusions.push_back(DateText(day) + " à " + TwoDigits(Pick(0, 23)) + ":" +
                                TwoDigits(Pick(0, 59)));
    }
    card.lastdiff = today - Pick(0, 6) / 2.0;  // ties are frequent
    return card;
  }

  std::mt19937 random_;
};

// --- the algorithm in plain words ---

struct Expected {
  std::vector<int32_t> codes;
  std::vector<std::string> refusals;
};

class PlainRequest {
 public:
  explicit PlainRequest(const Case& c) : c_(c), moment_(c.now) {}

  Expected Run() {
    CollectRecentArtists();
    std::vector<const Case::Card*> rows = QueryRows(), pool;
    for (const Case::Card* card : rows) {
      if (Accepts(*card)) pool.push_back(card);
      if (c_.lectureBase > 0 && static_cast<int>(pool.size()) > c_.lectureBase * c_.minutes) break;
    }
    std::stable_sort(pool.begin(), pool.end(),
                     [](auto* a, auto* b) { return Upper(*a) < Upper(*b); });
    for (size_t i = 1; i < pool.size();)
      if (Upper(*pool[i]) == Upper(*pool[i - 1]))
        pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(i));
      else
        ++i;
    std::stable_sort(pool.begin(), pool.end(), [](auto* a, auto* b) {
      return LastPlayedText(a->lastdiff) < LastPlayedText(b->lastdiff);
    });
    Choose(pool);
    return result_;
  }
  bool Allowed(const Case::Card& card) {
    std::string line;
    return RotationAllows(Rotation(card), moment_, c_.decalDiff, line);
  }

 private:
  static std::string Listed(const Case::Card& card) {
    const std::string artist = Trim(card.artist);
    return artist.empty() ? "Code " + std::to_string(card.code) : artist;
  }
  static std::string Upper(const Case::Card& card) { return UpperAscii(Listed(card)); }

  std::vector<const Case::Aired*> NewestFirst() const {
    std::vector<const Case::Aired*> rows;
    for (const Case::Aired& aired : c_.report)
      rows.insert(rows.begin(), &aired);  // highest CODE first
    std::stable_sort(rows.begin(), rows.end(),
                     [](auto* a, auto* b) { return a->dateNum > b->dateNum; });
    return rows;
  }

  void CollectRecentArtists() {
    int left = c_.ecartArtiste;
    for (const Case::Aired* aired : NewestFirst())
      if (aired->music && left-- > 0) recent_.push_back(UpperAscii(aired->artist));
    for (const int place : c_.listed)
      recent_.push_back(UpperAscii(c_.cards[static_cast<size_t>(place)].artist));
    std::sort(recent_.begin(), recent_.end());
  }

  std::vector<const Case::Card*> QueryRows() const {
    std::vector<const Case::Card*> rows;
    for (const Case::Card& card : c_.cards) {
      const bool asked = std::any_of(c_.model.begin(), c_.model.end(), [&](const auto& genre) {
        return UpperAscii(genre.first) == UpperAscii(card.genre);
      });
      if (asked && card.hours[static_cast<size_t>(c_.now.hour)] == '1') rows.push_back(&card);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](auto* a, auto* b) { return a->lastdiff < b->lastdiff; });
    return rows;
  }

  CardRotation Rotation(const Case::Card& card) const {
    CardRotation rotation;
    rotation.Genre = card.genre;
    rotation.Auteur = card.artist;
    rotation.Titre = card.title;
    rotation.MMJJDebut = card.firstDay;
    rotation.MMJJFin = card.lastDay;
    rotation.NBPASSJOUR = card.passes;
    rotation.ECARTMINUTES = card.minutes;
    rotation.ECARTJOURS = card.days;
    rotation.Tranche = card.hours;
    for (size_t i = 0; i < card.diffusions.size(); ++i) rotation.Diffusion[i] = card.diffusions[i];
    return rotation;
  }

  bool Accepts(const Case::Card& card) {
    std::string line;
    const bool allowed = RotationAllows(Rotation(card), moment_, c_.decalDiff, line);
    if (!line.empty()) result_.refusals.push_back(line);
    if (!allowed) return false;
    for (const auto* places : {&c_.listed, &c_.storedLater})
      for (const int place : *places)
        if (c_.cards[static_cast<size_t>(place)].code == card.code) return false;
    return card.artistGap > 0 ? FarInReport(card) : NotRecent(UpperAscii(Trim(card.artist)));
  }

  bool FarInReport(const Case::Card& card) const {
    for (const Case::Aired* aired : NewestFirst()) {
      if (UpperAscii(aired->artist) != UpperAscii(Trim(card.artist))) continue;
      const auto code = aired - c_.report.data() + 1;
      return static_cast<int>(c_.report.size()) - code >= card.artistGap;
    }
    return true;
  }

  bool NotRecent(const std::string& artist) const {
    int low = 1, high = static_cast<int>(recent_.size());
    while (low <= high) {
      const auto middle = static_cast<size_t>((low + high) / 2);
      const std::string line = middle < recent_.size() ? recent_[middle] : "";
      if (line == artist) return false;
      if (artist < line)
        high = static_cast<int>(middle) - 1;
      else
        low = static_cast<int>(middle) + 1;
    }
    return true;
  }

  void Choose(const std::vector<const Case::Card*>& pool) {
    int genres = 0, full = 0;
    for (const auto& [genre, percent] : c_.model) genres += percent != 0;
    const int toFill = genres * static_cast<int>(c_.varieties.size());
    std::map<std::pair<size_t, size_t>, float> used;
    for (const Case::Card* card : pool) {
      for (size_t v = 0; v < c_.varieties.size(); ++v) {
        if (c_.varieties[v].first != card->variety) continue;
        const auto budget =
            static_cast<float>(c_.varieties[v].second / 100.0 * (c_.minutes * 60.0));
        const auto share = [&](size_t i) {
          return static_cast<float>(double(used[{i, v}]) / budget * 100);
        };
        for (size_t i = 0; i < c_.model.size(); ++i) {
          if (c_.model[i].second <= share(i) || c_.model[i].first != card->genre) continue;
          used[{i, v}] += static_cast<float>(card->lengthMs / 1000);
          result_.codes.push_back(card->code);
          if (c_.model[i].second <= share(i)) ++full;
          break;
        }
        break;
      }
      if (full >= toFill) return;
    }
  }

  const Case& c_;
  RotationMoment moment_;
  std::vector<std::string> recent_;
  Expected result_;
};

// Parts equal genres from place `from` on.
void Mix(std::vector<int32_t>& codes, size_t from, std::map<int32_t, const Case::Card*>& cards) {
  for (size_t i = std::max<size_t>(from, 1); i < codes.size(); ++i) {
    const std::string genre = cards[codes[i]]->genre;
    if (genre != cards[codes[i - 1]]->genre) continue;
    for (size_t j = i; j < codes.size(); ++j) {
      if (cards[codes[j]]->genre == genre) continue;
      std::swap(codes[i], codes[j]);
      break;
    }
  }
}

// --- one station for all cases ---

void Fill(RequestStation& s, Case& c) {
  Transaction all(s.station.base.Db());
  for (const char* table : {"Discotheque", "Variete", "Models", "Rapport", "Playlist", "Pls"})
    s.Execute("DELETE * FROM " + std::string(table));
  s.station.PL.Clear();
  s.Requests() = {};
  s.station.modelEditor = {};
  for (const auto& [name, percent] : c.varieties) s.Variety(name, percent);
  for (const auto& [genre, percent] : c.model) s.Model(JourSemaineCourant(c.now), genre, percent);
  for (Case::Card& card : c.cards) card.code = s.Add(card);
  for (const Case::Aired& aired : c.report)
    s.Report(aired.artist, aired.dateNum, aired.music ? "POP" : "PUB");
  for (const int place : c.listed) {
    const Case::Card& card = c.cards[static_cast<size_t>(place)];
    s.station.PL.Add(test::MusicCells(card.code, card.artist, card.genre));
  }
  for (const int place : c.storedLater)
    s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (1, " +
              std::to_string(c.cards[static_cast<size_t>(place)].code) + ")");
  s.station.screen.CadrePLVisible = true;  // all of Pls counts
  s.SetCnf("DecalDiff", c.decalDiff);
  s.SetCnf("EcartArtiste", c.ecartArtiste);
  s.station.lists.LectureBase = c.lectureBase;
  all.Commit();
}

TEST(RequestProperties, ARequestGivesWhatTheAlgorithmSaysAndKeepsItsPromises) {
  RequestStation s;
  int taken = 0, refused = 0;
  for (unsigned seed = 1; seed <= kCases; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Case c = Generator(seed).Make();
    Fill(s, c);
    s.loop.SetWallClock(c.now);
    PlainRequest plain(c);
    const Expected expected = plain.Run();
    const size_t before = s.Listed().size();
    s.Request(c.minutes);

    std::vector<int32_t> given = s.Listed();
    std::map<int32_t, const Case::Card*> cards;
    for (const Case::Card& card : c.cards) cards[card.code] = &card;
    std::vector<int32_t> mixed(given.begin(), given.begin() + static_cast<std::ptrdiff_t>(before));
    mixed.insert(mixed.end(), expected.codes.begin(), expected.codes.end());
    Mix(mixed, before, cards);
    ASSERT_EQ(given, mixed);
    ASSERT_EQ(s.Requests().ListAutorisation, expected.refusals);
    given.erase(given.begin(), given.begin() + static_cast<std::ptrdiff_t>(before));

    for (const int32_t code : given) ASSERT_TRUE(plain.Allowed(*cards[code])) << code;
    ASSERT_EQ(std::set<int32_t>(given.begin(), given.end()).size(), given.size());
    // By age, and no pair above its share but for the title that closed it.
    std::map<std::pair<std::string, std::string>, int> seconds;
    for (size_t i = 0; i < expected.codes.size(); ++i) {
      const Case::Card& card = *cards[expected.codes[i]];
      if (i > 0) {
        ASSERT_GE(card.lastdiff, cards[expected.codes[i - 1]]->lastdiff);
      }
      int& sum = seconds[{card.genre, card.variety}];
      double share = 0;
      for (const auto& [genre, percent] : c.model)
        for (const auto& [variety, part] : c.varieties)
          if (genre == card.genre && variety == card.variety)
            share = percent / 100.0 * (part / 100.0 * c.minutes * 60);
      ASSERT_LT(sum, share * (1 + 1e-6));
      sum += card.lengthMs / 1000;
    }
    taken += static_cast<int>(given.size());
    refused += static_cast<int>(expected.refusals.size());
  }
  EXPECT_EQ(s.LastError(), "");
  EXPECT_GT(taken, kCases);  // the cases are no empty ones
  EXPECT_GT(refused, kCases);
}

}  // namespace
}  // namespace zemo
