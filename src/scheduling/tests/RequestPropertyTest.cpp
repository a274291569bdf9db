// Generated libraries, models, skeletons, reports and clocks: a request gives what the algorithm,
// written down a second time in the plainest way and with an arithmetic of its own, gives for the
// same station, and keeps what it promises.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <set>

#include "scheduling/tests/RequestFixture.h"
#include "station/TimeForms.h"
#include "support/Cases.h"

namespace zemo {
namespace {

using test::RequestStation;
using test::TitleCard;

constexpr int kCases = test::Cases(1200);

struct Case {
  LocalDateTime now;
  int minutes = 30, lectureBase = 0, decalDiff = 0, ecartArtiste = 0;
  std::vector<std::pair<std::string, int>> varieties;
  std::vector<std::pair<std::string, int>> model;  // genre and per cent
  struct Broadcast {
    int daysAgo, hour, minute;
  };
  struct Card : TitleCard {
    int32_t code = 0;
    std::vector<Broadcast> broadcasts;  // the newest first
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
  // The skeleton's own.
  std::vector<std::string> positions;
  bool alternate = false, cutDoubles = true;
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
    // Some reports are longer than what is read of them, and some have the newest moment last.
    const bool longReport = Pick(0, 39) == 0;
    for (int i = 0, n = longReport ? Pick(520, 900) : Pick(0, 12); i < n; ++i)
      c.report.push_back({Artist(), DateSerial(c.now) - Pick(0, 20) / 100.0, Pick(0, 3) > 0});
    if (Pick(0, 1) == 0)
      std::stable_sort(c.report.begin(), c.report.end(),
                       [](const auto& a, const auto& b) { return a.dateNum < b.dateNum; });
    else if (longReport)  // the clock was set back, long ago
      for (int i = Pick(1, 4); i > 0; --i) c.report[static_cast<size_t>(i)].dateNum += 1;
    if (longReport)
      for (Case::Card& card : c.cards)
        if (card.artistGap > 0) card.artistGap = Pick(1, 600);
    for (int i = 0, n = Pick(0, 4); i < n; ++i) c.listed.push_back(Place(c));
    for (int i = 0, n = Pick(0, 2); i < n; ++i) c.storedLater.push_back(Place(c));
    return c;
  }
  Case MakeSkeleton() {
    Case c = Make();
    const char* genres[] = {"POP", "ROCK", "L'ETE", "pop", " "};
    c.positions = {genres[Pick(0, 3)]};
    for (int i = 0, n = Pick(0, 4); i < n; ++i) c.positions.push_back(genres[Pick(0, 4)]);
    const int shares[] = {-20, 0, 20, 30, 40, 50, 60, 100};
    for (auto& [variety, share] : c.varieties) share = shares[Pick(0, 7)];
    c.alternate = Pick(0, 3) > 0;
    c.cutDoubles = Pick(0, 1) == 0;
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
      const Case::Broadcast aired{Pick(0, 3), Pick(0, 23), Pick(0, 59)};
      card.broadcasts.push_back(aired);
      card.diffusions.push_back(DateText(FromDateSerial(today - aired.daysAgo)) + " à " +
                                TwoDigits(aired.hour) + ":" + TwoDigits(aired.minute));
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

std::string Capitals(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

class PlainRequest {
 public:
  explicit PlainRequest(const Case& c) : c_(c) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d/%02d/%04d %02d:%02d:%02d ", c.now.day, c.now.month,
                  c.now.year, c.now.hour, c.now.minute, c.now.second);
    moment_ = text;
    std::snprintf(text, sizeof text, "%02d%02d", c.now.month, c.now.day);
    monthDay_ = text;
  }

  Expected Run() {
    std::vector<std::string> genres;
    for (const auto& [genre, percent] : c_.model) genres.push_back(genre);
    std::vector<const Case::Card*> rows = QueryRows(genres);
    std::vector<const Case::Card*> pool = Accepted(rows);
    CutDoubles(pool);
    SortByAge(pool);
    Choose(pool);
    return result_;
  }
  Expected RunSkeleton() {
    std::vector<const Case::Card*> rows = QueryRows(c_.positions);
    std::stable_sort(rows.begin(), rows.end(),
                     [](auto* a, auto* b) { return a->passes > b->passes; });
    std::vector<const Case::Card*> pool = Accepted(rows);
    if (c_.cutDoubles)
      for (const Case::Card* card : CutDoubles(pool))
        result_.refusals.push_back(moment_ + card->genre + "\t" + Upper(*card) + "\t" +
                                   card->title + " supprimé car doublon d'artiste");
    SortByAge(pool);
    Lay(pool);
    return result_;
  }
  // The rotation rules; `line` gets the refusal's line, where there is one.
  bool Allowed(const Case::Card& card, std::string& line) const {
    line.clear();
    bool allowed = true;
    if (!card.firstDay.empty() && !card.lastDay.empty())
      allowed = card.firstDay <= monthDay_ && monthDay_ <= card.lastDay;
    std::string reasons;
    const auto refuse = [&](bool when, const std::string& reason) {
      if (!when) return;
      reasons += " >> " + reason;
      allowed = false;
    };
    const auto above = [](int a, int b) { return std::to_string(a) + " > " + std::to_string(b); };
    refuse(card.passes == 0, "Rotation = 0");
    if (card.broadcasts.empty()) return allowed;
    const Case::Broadcast& last = card.broadcasts[0];
    const int apart = c_.now.hour * 60 + c_.now.minute - (last.hour * 60 + last.minute);
    const int minutes = (apart < 0 ? -apart : apart) + last.daysAgo * 1440;
    refuse(card.minutes > minutes,
           "Ecart minutes pas assez important " + above(card.minutes, minutes));
    refuse(card.days > last.daysAgo,
           "Ecart jours pas assez important " + above(card.days, last.daysAgo));
    int today = 0, hours = 0;
    for (const Case::Broadcast& aired : card.broadcasts) today += aired.daysAgo == 0;
    for (const char hour : card.hours) hours += hour == '1';
    refuse(card.passes > 0 && today >= card.passes,
           "Ecart nb passage jour atteint " + above(today, card.passes));
    const int looked = hours < 2 ? 0 : hours >= c_.decalDiff ? c_.decalDiff : hours - 1;
    bool sameHour = false;
    for (int i = 0; i < looked && i < static_cast<int>(card.broadcasts.size()); ++i)
      sameHour = sameHour || card.broadcasts[static_cast<size_t>(i)].hour == c_.now.hour;
    refuse(sameHour, "pas autorisé dans cette tranche a cause du décalage");
    if (!allowed) line = moment_ + card.genre + "\t" + card.artist + " " + card.title + reasons;
    return allowed;
  }

 private:
  std::vector<const Case::Card*> Accepted(const std::vector<const Case::Card*>& rows) {
    CollectRecentArtists();
    std::vector<const Case::Card*> pool;
    for (const Case::Card* card : rows) {
      if (Accepts(*card)) pool.push_back(card);
      if (c_.lectureBase > 0 && static_cast<int>(pool.size()) > c_.lectureBase * c_.minutes) break;
    }
    return pool;
  }
  // Gives what it cut.
  static std::vector<const Case::Card*> CutDoubles(std::vector<const Case::Card*>& pool) {
    std::stable_sort(pool.begin(), pool.end(),
                     [](auto* a, auto* b) { return Upper(*a) < Upper(*b); });
    std::vector<const Case::Card*> kept, cut;
    for (const Case::Card* card : pool)
      (!kept.empty() && Upper(*kept.back()) == Upper(*card) ? cut : kept).push_back(card);
    pool = kept;
    return cut;
  }
  // A title that was never played has 0.
  static void SortByAge(std::vector<const Case::Card*>& pool) {
    std::stable_sort(pool.begin(), pool.end(),
                     [](auto* a, auto* b) { return a->lastdiff < b->lastdiff; });
  }
  static std::string Listed(const Case::Card& card) {
    return card.artist.empty() ? "Code " + std::to_string(card.code) : card.artist;
  }
  static std::string Upper(const Case::Card& card) { return Capitals(Listed(card)); }

  std::vector<const Case::Aired*> NewestFirst() const {
    std::vector<const Case::Aired*> rows;
    for (const Case::Aired& aired : c_.report)
      rows.insert(rows.begin(), &aired);  // highest CODE first
    std::stable_sort(rows.begin(), rows.end(),
                     [](auto* a, auto* b) { return a->dateNum > b->dateNum; });
    return rows;
  }

  // By the order in which they were aired where the clock went back since.
  void CollectRecentArtists() {
    std::vector<const Case::Aired*> music = NewestFirst();
    std::erase_if(music, [](const Case::Aired* aired) { return !aired->music; });
    constexpr double kMinute = 1.0 / (24 * 60);
    if (!music.empty() && music.front()->dateNum - DateSerial(c_.now) >= kMinute)
      std::sort(music.begin(), music.end(), std::greater<>());
    int left = c_.ecartArtiste;
    for (const Case::Aired* aired : music)
      if (left-- > 0) recent_.push_back(Capitals(aired->artist));
    for (const int place : c_.listed)
      recent_.push_back(Capitals(c_.cards[static_cast<size_t>(place)].artist));
    std::sort(recent_.begin(), recent_.end());
  }

  std::vector<const Case::Card*> QueryRows(const std::vector<std::string>& genres) const {
    std::vector<const Case::Card*> rows;
    for (const Case::Card& card : c_.cards) {
      const bool asked = std::any_of(genres.begin(), genres.end(), [&](const auto& genre) {
        return Capitals(genre) == Capitals(card.genre);
      });
      if (asked && card.hours[static_cast<size_t>(c_.now.hour)] == '1') rows.push_back(&card);
    }
    std::stable_sort(rows.begin(), rows.end(),
                     [](auto* a, auto* b) { return a->lastdiff < b->lastdiff; });
    return rows;
  }

  bool Accepts(const Case::Card& card) {
    std::string line;
    const bool allowed = Allowed(card, line);
    if (!line.empty()) result_.refusals.push_back(line);
    if (!allowed) return false;
    for (const auto* places : {&c_.listed, &c_.storedLater})
      for (const int place : *places)
        if (c_.cards[static_cast<size_t>(place)].code == card.code) return false;
    return card.artistGap > 0 ? FarInReport(card) : NotRecent(Capitals(card.artist));
  }

  bool FarInReport(const Case::Card& card) const {
    for (const Case::Aired* aired : NewestFirst()) {
      if (Capitals(aired->artist) != Capitals(card.artist)) continue;
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

  // The twentieth of a share, rounded to even, at least 1.
  static int MostInARow(int share) {
    const std::map<int, int> runs = {{-20, -1}, {0, 1},  {20, 1}, {30, 2},
                                     {40, 2},   {50, 2}, {60, 3}, {100, 5}};
    return runs.at(share);
  }

  // As many passes as the four seconds of a simulated request allow would take: a request that ends
  // earlier must not have missed a title.
  void Lay(std::vector<const Case::Card*> pool) {
    const int mostNat = MostInARow(c_.varieties.front().second);
    const int mostInt = MostInARow(c_.varieties.back().second);
    int nat = 0, international = 0;
    float seconds = 0;
    const auto refuses = [&](const Case::Card& card) {
      const std::string origin = card.variety.substr(0, 3);
      if (!c_.alternate || (origin != "NAT" && origin != "INT")) return false;
      (origin == "NAT" ? international : nat) = 0;
      return origin == "NAT" ? ++nat > mostNat : ++international > mostInt;
    };
    for (int pass = 0; pass < 400 && seconds / 60 <= static_cast<float>(c_.minutes); ++pass)
      for (const std::string& position : c_.positions) {
        for (size_t j = 0; j < pool.size(); ++j) {
          if (position == " " || pool[j]->genre != position || refuses(*pool[j])) continue;
          seconds += static_cast<float>(pool[j]->lengthMs / 1000);
          result_.codes.push_back(pool[j]->code);
          lastPass = pass;
          pool.erase(pool.begin() + static_cast<std::ptrdiff_t>(j));
          break;
        }
      }
  }

 public:
  int lastPass = -1;  // of a skeleton: the last pass that listed a title

 private:
  const Case& c_;
  std::string moment_, monthDay_;
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
  for (const char* table :
       {"Discotheque", "Variete", "Models", "ModelSquelette", "Rapport", "Playlist", "Pls"})
    s.Execute("DELETE * FROM " + std::string(table));
  s.station.PL.Clear();
  s.Requests() = {};
  s.station.modelEditor = {};
  for (const auto& [name, percent] : c.varieties) s.Variety(name, percent);
  for (const auto& [genre, percent] : c.model) s.Model(CurrentWeekday(c.now), genre, percent);
  for (const std::string& genre : c.positions) s.Position(CurrentWeekday(c.now), c.now.hour, genre);
  for (Case::Card& card : c.cards) card.code = s.Add(card);
  for (const Case::Aired& aired : c.report)
    s.Report(aired.artist, aired.dateNum, aired.music ? "POP" : "PUB");
  for (const int place : c.listed) {
    const Case::Card& card = c.cards[static_cast<size_t>(place)];
    s.station.PL.Add(test::TitleElement(card.code, card.artist, card.genre));
  }
  for (const int place : c.storedLater)
    s.Execute("INSERT INTO Pls (NUMPLS, DISCOTHEQUE) VALUES (1, " +
              std::to_string(c.cards[static_cast<size_t>(place)].code) + ")");
  s.station.storedList.open = true;  // all of Pls counts
  s.SetCnf("Squelette", c.positions.empty() ? 0 : -1);
  s.SetCnf("CheckNational", c.alternate ? 1 : 0);
  s.localValues.Set("CheckDoublonYN", c.cutDoubles ? "0" : "1");
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
    ASSERT_EQ(s.Requests().ListAutorisation.All(), expected.refusals);
    given.erase(given.begin(), given.begin() + static_cast<std::ptrdiff_t>(before));

    for (const int32_t code : given) {
      std::string line;
      ASSERT_TRUE(plain.Allowed(*cards[code], line)) << code;
    }
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

// And that it ends with its second pass without a title, though none of the 400 that follow would
// find one.
TEST(RequestProperties, ASkeletonRequestGivesWhatTheAlgorithmSaysAndMissesNoTitle) {
  RequestStation s;
  int taken = 0, refused = 0, ended = 0;
  for (unsigned seed = 1; seed <= kCases; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Case c = Generator(seed).MakeSkeleton();
    Fill(s, c);
    s.loop.SetWallClock(c.now);
    PlainRequest plain(c);
    const Expected expected = plain.RunSkeleton();
    const std::vector<int32_t> before = s.Listed();
    const int64_t beginMs = s.loop.MonotonicMs();
    s.Request(c.minutes);

    std::vector<int32_t> whole = before;
    whole.insert(whole.end(), expected.codes.begin(), expected.codes.end());
    ASSERT_EQ(s.Listed(), whole);
    ASSERT_EQ(s.Requests().ListAutorisation.All(), expected.refusals);
    const int64_t passes = s.loop.MonotonicMs() - beginMs;  // a millisecond each
    ASSERT_LE(passes, plain.lastPass + 3);
    taken += static_cast<int>(expected.codes.size());
    refused += static_cast<int>(expected.refusals.size());
    ended += passes == plain.lastPass + 3;
  }
  EXPECT_EQ(s.LastError(), "");
  EXPECT_GT(taken, kCases);  // the cases are no empty ones
  EXPECT_GT(refused, kCases);
  EXPECT_GT(ended, kCases / 4);
}

}  // namespace
}  // namespace zemo
