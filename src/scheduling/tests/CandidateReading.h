// The candidates of a request as the base's own query gives them, read in the plainest way: what
// the cards in memory are held against.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "library/OnAirRows.h"
#include "scheduling/CandidatePool.h"
#include "scheduling/RotationRules.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"
#include "store/SeekCode.h"

namespace zemo::test {

struct PlainCard {
  int32_t code = 0;
  double lastdiff = 0;  // -infinity for Null
  std::optional<int64_t> lengthMs, exitMs, introSec;
  std::optional<int32_t> passes;
  int16_t minutes = 0, days = 0, artistGap = 0;
  std::string artist, title, genre, variety, file, firstDay, lastDay, hours;
  std::array<std::string, kDiffusions> diffusions;

  std::string Listed() const {
    return Trim(artist).empty() ? "Code " + std::to_string(code) : Trim(artist);
  }
  CardRotation Rotation() const {
    CardRotation rotation;
    rotation.Code = code;
    rotation.Genre = genre;
    rotation.Auteur = artist;
    rotation.Titre = title;
    rotation.MMJJDebut = firstDay;
    rotation.MMJJFin = lastDay;
    rotation.NBPASSJOUR = passes.value_or(0);
    rotation.ECARTMINUTES = minutes;
    rotation.ECARTJOURS = days;
    rotation.Tranche = hours;
    for (size_t i = 0; i < kDiffusions; ++i) rotation.Diffusion[i] = diffusions[i];
    return rotation;
  }
};

inline std::vector<PlainCard> PlainCards(Station& station, const CardsWanted& wanted,
                                         CandidateCards::Order order) {
  std::string columns =
      "CODE, LASTDIFF, DUREE, NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE, "
      "INTRO, AUTEUR, TITRE, GENRE, VARIETE, FILENAME, MMJJDebut, MMJJFin, TRANCHE" +
      TwoDigits(CurrentWeekday(station.Now()));
  for (int i = 1; i <= kDiffusions; ++i) columns += ", DIFFUSION" + TwoDigits(i);
  const BoundQuery condition = QueryOf(wanted);
  std::vector<PlainCard> cards;
  station.base.Db().ReadRows(
      "Select " + columns + " From Discotheque Where +" + condition.text, condition.values,
      [&](const RowView& row) {
        const auto number = [&](int column) {
          return row.IsNull(column) ? std::nullopt
                                    : std::optional<int64_t>(static_cast<int32_t>(row.Int(column)));
        };
        const auto text = [&](int column) { return std::string(row.Text(column).substr(0, 1024)); };
        PlainCard card;
        card.code = static_cast<int32_t>(row.Int(0));
        card.lastdiff = row.IsNull(1) ? -std::numeric_limits<double>::infinity() : row.Real(1);
        card.lengthMs = number(2);
        if (!row.IsNull(3)) card.passes = static_cast<int32_t>(row.Int(3));
        card.minutes = static_cast<int16_t>(row.Int(4));
        card.days = static_cast<int16_t>(row.Int(5));
        card.artistGap = static_cast<int16_t>(row.Int(6));
        card.exitMs = number(7);
        card.introSec = number(8);
        std::string* const texts[] = {&card.artist, &card.title,    &card.genre,   &card.variety,
                                      &card.file,   &card.firstDay, &card.lastDay, &card.hours};
        for (int i = 0; i < 8; ++i) *texts[i] = text(9 + i);
        for (int i = 0; i < kDiffusions; ++i)
          card.diffusions[static_cast<size_t>(i)] = text(17 + i);
        cards.push_back(card);
      });
  std::sort(cards.begin(), cards.end(),
            [](const auto& a, const auto& b) { return a.code < b.code; });
  std::stable_sort(cards.begin(), cards.end(),
                   [](const auto& a, const auto& b) { return a.lastdiff < b.lastdiff; });
  const int32_t none = std::numeric_limits<int32_t>::min();
  if (order == CandidateCards::Order::kPassesThenLastdiff)
    std::stable_sort(cards.begin(), cards.end(), [none](const auto& a, const auto& b) {
      return a.passes.value_or(none) > b.passes.value_or(none);
    });
  return cards;
}

// Every member that a request reads.
inline void ExpectSame(const CandidateCards& cards, const std::vector<PlainCard>& plain) {
  ASSERT_EQ(static_cast<size_t>(cards.Count()), plain.size());
  for (int i = 0; i < cards.Count(); ++i) {
    const PlainCard& wanted = plain[static_cast<size_t>(i)];
    SCOPED_TRACE("candidate " + std::to_string(i) + ", CODE " + std::to_string(wanted.code));
    ASSERT_EQ(cards.Code(i), wanted.code);
    CandidateCards::DiffusionTexts room;
    const CardRotation rotation = cards.Rotation(i, room), other = wanted.Rotation();
    EXPECT_EQ(rotation.Code, other.Code);
    EXPECT_EQ(rotation.Genre, other.Genre);
    EXPECT_EQ(rotation.Auteur, other.Auteur);
    EXPECT_EQ(rotation.Titre, other.Titre);
    EXPECT_EQ(rotation.MMJJDebut, other.MMJJDebut);
    EXPECT_EQ(rotation.MMJJFin, other.MMJJFin);
    EXPECT_EQ(rotation.NBPASSJOUR, other.NBPASSJOUR);
    EXPECT_EQ(rotation.ECARTMINUTES, other.ECARTMINUTES);
    EXPECT_EQ(rotation.ECARTJOURS, other.ECARTJOURS);
    EXPECT_EQ(rotation.Tranche, other.Tranche);
    EXPECT_EQ(rotation.Diffusion, other.Diffusion);
    EXPECT_EQ(cards.ECARTARTISTE(i), wanted.artistGap);
    EXPECT_EQ(cards.Genre(i), wanted.genre);
    EXPECT_EQ(cards.Variety(i), wanted.variety);
    EXPECT_EQ(cards.LengthMs(i), wanted.lengthMs.value_or(0));
    const OnAirElement element = cards.ElementOf(i);
    EXPECT_EQ(element.title, wanted.Listed());
    EXPECT_EQ(element.secondLine, wanted.title);
    EXPECT_EQ(element.genre, wanted.genre);
    EXPECT_EQ(element.variety, wanted.variety);
    EXPECT_EQ(element.file, wanted.file);
    EXPECT_EQ(element.lengthMs, wanted.lengthMs);
    EXPECT_EQ(element.exitMs, wanted.exitMs);
    EXPECT_EQ(element.introSec, wanted.introSec);
    EXPECT_EQ(element.lastPlayed, std::isfinite(wanted.lastdiff) ? wanted.lastdiff : 0);
    EXPECT_EQ(cards.ArtistCapitals(i), UpperLatin(wanted.Listed()));
  }
}

// What the fittings take, by the base's own order and look-up.
inline std::optional<OnAirElement> PlainLongestRested(Station& station, const CardsWanted& wanted,
                                                      int64_t aboveMs) {
  BoundQuery query = QueryOf(wanted);
  query.Add(" And DUREE > ? ORDER BY Lastdiff ASC", {aboveMs});
  const auto titles = station.base.Db().OpenRecordset(
      "Select * From Discotheque Where " + query.text, query.values);
  return titles->Eof() ? std::nullopt : std::optional(MusicRow(*titles));
}

inline std::vector<OnAirElement> PlainRowsOfCards(Station& station,
                                                  const std::vector<int32_t>& codes) {
  const auto card = station.base.Table("Discotheque");
  std::vector<OnAirElement> rows;
  for (const int32_t code : codes)
    if (SeekCode(*card, code)) rows.push_back(MusicRow(*card));
  return rows;
}

// The pool before and behind the artists' cut, with the lines of the refused; a fault ends it.
struct PoolSeen {
  std::vector<int32_t> pool, cut, offered;
  std::vector<std::string> lines;
  std::string fault;
  bool operator==(const PoolSeen&) const = default;
};

inline PoolSeen SeePool(Station& station, const CandidateCards& cards, const TitlesInUse& used) {
  PoolSeen seen;
  station.requests.ListAutorisation.Clear();
  try {
    Pool pool = FillPool(station, cards, used, kNoLimit), cut;
    for (const int card : pool) seen.pool.push_back(cards.Code(card));
    CutArtistDoubles(cards, pool, &cut);
    for (const int card : cut) seen.cut.push_back(cards.Code(card));
    SortByLastPlay(cards, pool);
    for (const int card : pool) seen.offered.push_back(cards.Code(card));
  } catch (const std::exception& error) {
    seen.fault = error.what();
  }
  seen.lines = station.requests.ListAutorisation.All();
  return seen;
}

inline bool PlainArtistAllowed(Station& station, const PlainCard& card) {
  bool allowed = true;
  std::string artist = Trim(card.artist);
  if (card.artistGap > 0)
    CheckArtistGapInReport(station, artist, card.artistGap, allowed);
  else
    CheckRecentArtist(station, artist, allowed);
  return allowed;
}

// Whole seconds; never played first.
inline int64_t PlainPlayedSecond(const PlainCard& card) {
  if (card.lastdiff == 0 || !std::isfinite(card.lastdiff))
    return std::numeric_limits<int64_t>::min();
  const LocalDateTime at = FromDateSerial(card.lastdiff);
  return static_cast<int64_t>(DaySerial(at.year, at.month, at.day)) * 86400 + at.hour * 3600 +
         at.minute * 60 + at.second;
}

inline PoolSeen PlainPool(Station& station, const std::vector<PlainCard>& cards,
                          const TitlesInUse& used) {
  PoolSeen seen;
  station.requests.ListAutorisation.Clear();
  try {
    std::vector<const PlainCard*> pool, kept;
    const RotationMoment moment(station.Now());
    for (const PlainCard& card : cards)
      if (CheckRotation(station, card.Rotation(), moment) && !used.Holds(card.code) &&
          PlainArtistAllowed(station, card))
        pool.push_back(&card);
    for (const PlainCard* card : pool) seen.pool.push_back(card->code);
    const auto capitals = [](const PlainCard* card) { return UpperLatin(card->Listed()); };
    std::stable_sort(pool.begin(), pool.end(),
                     [&](auto* a, auto* b) { return capitals(a) < capitals(b); });
    for (const PlainCard* card : pool) {
      const bool again = !kept.empty() && capitals(kept.back()) == capitals(card);
      if (again)
        seen.cut.push_back(card->code);
      else
        kept.push_back(card);
    }
    std::stable_sort(kept.begin(), kept.end(), [](auto* a, auto* b) {
      return PlainPlayedSecond(*a) < PlainPlayedSecond(*b);
    });
    for (const PlainCard* card : kept) seen.offered.push_back(card->code);
  } catch (const std::exception& error) {
    seen.fault = error.what();
  }
  seen.lines = station.requests.ListAutorisation.All();
  return seen;
}

}  // namespace zemo::test
