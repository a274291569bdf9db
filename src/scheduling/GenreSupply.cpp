#include "scheduling/GenreSupply.h"

#include <algorithm>
#include <vector>

#include "library/PackedCards.h"
#include "scheduling/HourFilter.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/BoundQuery.h"
#include "store/RowView.h"

namespace zemo {

namespace {

enum SupplyColumn {
  kSupplyCode,
  kSupplyGenre,
  kSupplyLength,
  kSupplyPasses,
  kSupplyFirstDay,
  kSupplyLastDay,
  kSupplyFirstMask
};

BoundQuery SupplySliceQuery(bool begun, int64_t lastCode) {
  std::string text = "SELECT TOP ? CODE, GENRE, DUREE, NBPASSJOUR, MMJJDebut, MMJJFin";
  for (int day = 1; day <= kDaysOfWeek; ++day) text += ", TRANCHE" + TwoDigits(day);
  BoundQuery query{text + " FROM Discotheque ", {GenreSupply::kSliceRows}};
  if (begun) query.Add("WHERE CODE > ? ", {lastCode});
  return query.Add("ORDER BY CODE");
}

}  // namespace

GenreSupply::GenreSupply(const LocalDateTime& today) {
  const double serial = DaySerial(today.year, today.month, today.day);
  for (int ahead = 0; ahead < kDaysOfWeek; ++ahead) {
    const LocalDateTime date = FromDateSerial(serial + ahead);
    monthDays_[static_cast<size_t>(CurrentWeekday(date) - 1)] = MonthDay(date);
  }
}

void GenreSupply::ReadSlice(Database& db, const std::optional<CardSet>& known) {
  if (complete_ || (known && TakeKnown(*known))) return;
  int read = 0;
  const BoundQuery query = SupplySliceQuery(begun_, lastCode_);
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    TakeRow(row);
    ++read;
  });
  complete_ = read < kSliceRows;
}

// False where the base reads a card of the slice otherwise than it was packed; none is taken then.
bool GenreSupply::TakeKnown(const CardSet& known) {
  std::vector<const PackedCard*> slice;
  for (const auto& chunk : known.chunks) {
    if (begun_ && chunk->back().code <= lastCode_) continue;
    for (const PackedCard& card : *chunk) {
      if (begun_ && card.code <= lastCode_) continue;
      if (card.odd || card.oddCells) return false;
      slice.push_back(&card);
      if (slice.size() == kSliceRows) break;
    }
    if (slice.size() == kSliceRows) break;
  }
  for (const PackedCard* card : slice) {
    const CardTexts::Days& days = known.texts->DaysAt(card->days);
    Card asked{.code = card->code,
               .lengthMs = card->lengthMs == PackedCard::kNull ? 0 : card->lengthMs,
               .genre = known.texts->GenreAt(card->genre).text,
               .firstDay = days.first,
               .lastDay = days.last,
               .resting = card->passes == 0};
    const CardTexts::Hours& hours = known.texts->HoursAt(card->hours);
    std::copy(hours.begin(), hours.end(), asked.masks.begin());
    Take(asked);
  }
  complete_ = slice.size() < kSliceRows;
  return true;
}

void GenreSupply::TakeRow(const RowView& row) {
  Card card{.code = row.Int(kSupplyCode),
            .lengthMs = row.Int(kSupplyLength),
            .genre = row.Text(kSupplyGenre),
            .firstDay = row.Text(kSupplyFirstDay),
            .lastDay = row.Text(kSupplyLastDay),
            .resting = !row.IsNull(kSupplyPasses) && row.Int(kSupplyPasses) == 0};
  for (size_t day = 0; day < kDaysOfWeek; ++day)
    card.masks[day] = row.Text(kSupplyFirstMask + static_cast<int>(day));
  Take(card);
}

void GenreSupply::Take(const Card& card) {
  begun_ = true;
  lastCode_ = card.code;
  auto found = genres_.find(card.genre);
  if (found == genres_.end()) found = genres_.emplace(card.genre, Genre{}).first;
  genreOfCode_.emplace(static_cast<int32_t>(card.code), found->first);
  Genre& genre = found->second;
  ++genre.titles;
  if (card.resting) return;
  for (size_t day = 0; day < kDaysOfWeek; ++day) {
    if (!InDateWindow(card.firstDay, card.lastDay, monthDays_[day])) continue;
    const std::string_view mask = card.masks[day];
    for (size_t hour = 0; hour < kHoursOfDay && hour < mask.size(); ++hour) {
      if (mask[hour] != '1') continue;
      ++genre.days[day][hour].titles;
      genre.days[day][hour].lengthMs += card.lengthMs;
    }
  }
}

GenreSupply::Hour GenreSupply::At(std::string_view genre, int day, int hour) const {
  const auto found = genres_.find(genre);
  if (found == genres_.end()) return {};
  return found->second.days.at(static_cast<size_t>(day - 1)).at(static_cast<size_t>(hour));
}

std::string_view GenreSupply::GenreOf(int32_t code) const {
  const auto found = genreOfCode_.find(code);
  return found == genreOfCode_.end() ? std::string_view() : found->second;
}

}  // namespace zemo
