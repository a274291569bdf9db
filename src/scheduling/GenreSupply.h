// What the library can give to a model: by genre, weekday and hour the titles that their cards let
// play then, and how long these are. A card lets a title play that is in rotation, within its dates
// and in an hour of its mask; what the course of the air does to it is another matter. It is read
// in slices, each short enough to stand between two ticks.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "platform/Clock.h"
#include "scheduling/WeekModel.h"

namespace zemo {

class RowView;
struct CardSet;

// Thread: the logic's.
class GenreSupply {
 public:
  static constexpr int kSliceRows = 1000;

  struct Hour {
    int titles = 0;
    int64_t lengthMs = 0;  // together

    int64_t Minutes() const { return (lengthMs + 30000) / 60000; }
    bool operator==(const Hour&) const = default;
  };
  struct Genre {
    int titles = 0;  // all cards of the genre
    std::array<ByHour<Hour>, kDaysOfWeek> days{};
  };

  // Each weekday is the next one from `today` on, where cards have dates.
  explicit GenreSupply(const LocalDateTime& today);

  // Reads on, at most kSliceRows: of the library in memory where it is known now, else of the base.
  // Throws StoreError; what was read stays, and it can be called again.
  void ReadSlice(Database& db, const std::optional<CardSet>& known);
  bool Complete() const { return complete_; }

  // By the name as the cards have it.
  const std::map<std::string, Genre, std::less<>>& Genres() const { return genres_; }
  // Nothing for a genre that no card has. `day` is 1 for Monday to 7.
  Hour At(std::string_view genre, int day, int hour) const;
  // Of a card; empty for an unknown one.
  std::string_view GenreOf(int32_t code) const;

 private:
  // What is asked of a card, wherever it stands.
  struct Card {
    int64_t code = 0, lengthMs = 0;
    std::string_view genre, firstDay, lastDay;
    bool resting = false;  // out of rotation
    std::array<std::string_view, kDaysOfWeek> masks{};
  };
  void Take(const Card& card);
  bool TakeKnown(const CardSet& known);
  void TakeRow(const RowView& row);

  std::array<std::string, kDaysOfWeek> monthDays_;  // "MMDD", Monday first
  std::map<std::string, Genre, std::less<>> genres_;
  std::unordered_map<int32_t, std::string_view> genreOfCode_;  // names of genres_
  int64_t lastCode_ = 0;
  bool begun_ = false, complete_ = false;
};

}  // namespace zemo
