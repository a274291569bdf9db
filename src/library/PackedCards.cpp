#include "library/PackedCards.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "library/KeptBytes.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kTextBlockBytes = size_t{256} * 1024;

// First the numbers, then the texts; a column is read as one of them.
enum CardColumn {
  kCardCode,
  kCardLastdiff,
  kCardLength,
  kCardPasses,
  kCardMinutes,
  kCardDays,
  kCardArtistGap,
  kCardExit,
  kCardIntro,
  kCardArtist,
  kCardTitle,
  kCardGenre,
  kCardVariety,
  kCardFile,
  kCardFirstDay,
  kCardLastDay,
  kCardHours  // one mask or all of them, then the broadcasts
};

std::string_view CutText(const RowView& row, int column) {
  return row.Text(column).substr(0, PackedCard::kMostBytes);
}

int32_t NumberOrNull(const RowView& row, int column) {
  return row.IsNull(column) ? PackedCard::kNull : static_cast<int32_t>(row.Int(column));
}

bool IsBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

// Parts of a key that no two lists of texts share.
void AddToKey(std::string& key, std::string_view text) {
  key += std::to_string(text.size());
  key += ':';
  key += text;
}

template <typename MaskOf>
void MakeHoursKey(std::string& key, MaskOf maskOf) {
  key.clear();
  for (int day = 0; day < kHourMasks; ++day) AddToKey(key, maskOf(day));
}

}  // namespace

uint32_t SharedTexts::Number(std::string_view text) {
  if (const auto found = numbers_.find(text); found != numbers_.end()) return found->second;
  const auto number = static_cast<uint32_t>(texts_.size());
  texts_.emplace_back(text);
  numbers_.emplace(texts_.back(), number);
  return number;
}

std::string CardTexts::Columns(int weekday) {
  std::string columns =
      "CODE, LASTDIFF, DUREE, NBPASSJOUR, ECARTMINUTES, ECARTJOURS, ECARTARTISTE, POINTSORTIE, "
      "INTRO, AUTEUR, TITRE, GENRE, VARIETE, FILENAME, MMJJDebut, MMJJFin";
  const auto hours = [&columns](int day) { columns += ", TRANCHE" + TwoDigits(day); };
  if (weekday > 0) hours(weekday);
  for (int day = 1; day <= kHourMasks && weekday == 0; ++day) hours(day);
  for (int last = 1; last <= kDiffusions; ++last) columns += ", DIFFUSION" + TwoDigits(last);
  return columns;
}

PackedCard CardTexts::Pack(const RowView& row, const PackedCard* before, int weekday) {
  PackedCard card{};
  card.code = static_cast<int32_t>(row.Int(kCardCode));
  card.lastdiff = row.IsNull(kCardLastdiff) ? -std::numeric_limits<double>::infinity()
                                            : row.Real(kCardLastdiff);
  card.lengthMs = NumberOrNull(row, kCardLength);
  card.passes = NumberOrNull(row, kCardPasses);
  card.minutesGap = static_cast<int16_t>(row.Int(kCardMinutes));
  card.daysGap = static_cast<int16_t>(row.Int(kCardDays));
  card.artistGap = static_cast<int16_t>(row.Int(kCardArtistGap));
  card.exitMs = NumberOrNull(row, kCardExit);
  card.introSec = NumberOrNull(row, kCardIntro);
  card.artist = ArtistNumber(CutText(row, kCardArtist), card.code);
  card.genre =
      GenreNumber(CutText(row, kCardGenre), row.IsText(kCardGenre), row.IsNull(kCardGenre));
  card.odd = row.Text(kCardGenre).size() > PackedCard::kMostBytes;
  card.variety = varieties_.Number(CutText(row, kCardVariety));
  card.days = DaysNumber(CutText(row, kCardFirstDay), CutText(row, kCardLastDay));
  const int masks = weekday > 0 ? 1 : kHourMasks;
  for (int column = kCardHours; column < kCardHours + masks; ++column) {
    // Mere bytes are like no pattern or like the text that they spell, as SQLite was built.
    const bool plain = row.IsText(column) || row.IsNull(column);
    card.odd = card.odd || !plain || row.Text(column).size() > PackedCard::kMostBytes;
  }
  card.hours = HoursNumber(row, weekday);
  for (int last = 0; last < kDiffusions; ++last) {
    const std::string_view text = CutText(row, kCardHours + masks + last);
    uint32_t& packed = card.broadcasts[static_cast<size_t>(last)];
    if (text.empty())
      packed = PackedCard::kNoBroadcast;
    else if (const auto minute = BroadcastMinuteOf(text))
      packed = *minute + 1;
    else
      packed = PackedCard::kOtherText | others_.Number(text);
  }
  card.oddCells = HasOddCells(row, card);
  if (card.oddCells) KeepOddCells(row, card);
  KeepTexts(card, CutText(row, kCardTitle), CutText(row, kCardFile), before);
  return card;
}

// What was packed would not read as the row does, and a list shows the row.
bool CardTexts::HasOddCells(const RowView& row, const PackedCard& card) {
  const auto otherNumber = [&row](int column, int32_t packed) {
    if (packed == PackedCard::kNull) return !row.IsNull(column);
    return !row.IsNumber(column) || row.Real(column) != packed;
  };
  for (const int column : {kCardArtist, kCardTitle, kCardGenre, kCardVariety, kCardFile})
    if (row.Text(column).size() > PackedCard::kMostBytes) return true;
  return row.Int(kCardCode) != card.code || otherNumber(kCardLength, card.lengthMs) ||
         otherNumber(kCardPasses, card.passes) || otherNumber(kCardExit, card.exitMs) ||
         otherNumber(kCardIntro, card.introSec) ||
         (!row.IsNull(kCardLastdiff) &&
          (std::isinf(card.lastdiff) || !row.IsNumber(kCardLastdiff)));
}

void CardTexts::KeepOddCells(const RowView& row, const PackedCard& card) {
  const int64_t lengthMs = row.Int(kCardLength);
  oddRows_.Add({std::string(row.Text(kCardArtist)), std::string(row.Text(kCardTitle)),
                FormatDuration(lengthMs), std::string(row.Text(kCardGenre)),
                std::string(row.Text(kCardVariety)), std::string(row.Text(kCardFile)),
                std::to_string(row.Int(kCardCode)), std::to_string(lengthMs),
                std::string(row.Text(kCardExit)), std::string(row.Text(kCardIntro)),
                LastPlayedText(row.Real(kCardLastdiff))},
               card.code);
}

std::string_view CardTexts::OddCell(const PackedCard& card, int column) const {
  uint32_t row = 0;
  std::memcpy(&row, card.texts + card.titleBytes + card.fileBytes, sizeof row);
  return oddRows_.Cell(row, column);
}

// A library has far fewer artists than cards, so what the rules ask of their names is made once.
uint32_t CardTexts::ArtistNumber(std::string_view spelling, int32_t code) {
  const auto number = static_cast<uint32_t>(artists_.size());
  std::string name = Trim(spelling);
  const bool nameless = name.empty();
  if (nameless) {
    const auto [known, fresh] = namelessByCode_.emplace(code, number);
    if (!fresh && artists_[known->second].spelling == spelling) return known->second;
    known->second = number;
    name = "Code " + std::to_string(code);
  } else if (const auto known = artistsByName_.find(spelling); known != artistsByName_.end()) {
    return known->second;
  }
  std::string capitals = UpperLatin(name);
  artists_.push_back(
      {std::string(spelling), std::move(name), std::move(capitals), nameless ? code : 0});
  if (!nameless) artistsByName_.emplace(artists_.back().spelling, number);
  return number;
}

uint32_t CardTexts::GenreNumber(std::string_view text, bool isText, bool isNull) {
  key_.assign(isText ? "t" : isNull ? "n" : "b").append(text);
  const auto [known, fresh] =
      genreNumbers_.try_emplace(key_, static_cast<uint32_t>(genres_.size()));
  if (fresh) genres_.push_back({std::string(text), isText, isNull});
  return known->second;
}

uint32_t CardTexts::DaysNumber(std::string_view first, std::string_view last) {
  key_.clear();
  AddToKey(key_, first);
  AddToKey(key_, last);
  const auto [known, fresh] = daysNumbers_.try_emplace(key_, static_cast<uint32_t>(days_.size()));
  if (fresh)
    days_.push_back({std::string(first), std::string(last), IsBlank(first) || IsBlank(last)});
  return known->second;
}

// Of the other days of the week a card that was read with one day's hours has none.
uint32_t CardTexts::HoursNumber(const RowView& row, int weekday) {
  Hours masks;
  if (weekday > 0) masks[static_cast<size_t>(weekday - 1)] = CutText(row, kCardHours);
  if (weekday > 0)
    key_ = masks[static_cast<size_t>(weekday - 1)];
  else
    MakeHoursKey(key_, [&row](int day) { return CutText(row, kCardHours + day); });
  if (const auto known = hoursNumbers_.find(key_); known != hoursNumbers_.end())
    return known->second;
  for (int day = 0; day < kHourMasks && weekday == 0; ++day)
    masks[static_cast<size_t>(day)] = CutText(row, kCardHours + day);
  return AddHours(std::move(masks));
}

// Of a key_ that is there already: its number.
uint32_t CardTexts::AddHours(Hours masks) {
  const auto [known, fresh] = hoursNumbers_.try_emplace(key_, static_cast<uint32_t>(hours_.size()));
  if (fresh) hours_.push_back(std::move(masks));
  return known->second;
}

void CardTexts::KeepTexts(PackedCard& card, std::string_view title, std::string_view file,
                          const PackedCard* before) {
  card.titleBytes = static_cast<uint16_t>(title.size());
  card.fileBytes = static_cast<uint16_t>(file.size());
  const bool odd = card.oddCells || (before && before->oddCells);
  if (!odd && before && TitleOf(*before) == title && FileOf(*before) == file) {
    card.texts = before->texts;
    return;
  }
  const uint32_t oddRow = oddRows_.Count() - 1;  // put there just now
  const size_t size = title.size() + file.size() + (card.oddCells ? sizeof oddRow : 0);
  char* const begin = Room(size);
  char* const end =
      std::copy(file.begin(), file.end(), std::copy(title.begin(), title.end(), begin));
  if (card.oddCells) std::memcpy(end, &oddRow, sizeof oddRow);
  card.texts = begin;
}

char* CardTexts::Room(size_t bytes) {
  if (blockSize_ - blockUsed_ < bytes || blocks_.empty()) {
    blockSize_ = std::max(kTextBlockBytes, bytes);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(blockSize_));
    blockUsed_ = 0;
  }
  char* const room = blocks_.back().get() + blockUsed_;
  blockUsed_ += bytes;
  blockBytes_ += bytes;
  return room;
}

// --- kept in a file ---

void CardTexts::WriteShared(std::string& bytes) const {
  const auto count = [&bytes](size_t texts) { AddNumber(bytes, static_cast<uint32_t>(texts)); };
  const auto texts = [&](const SharedTexts& shared) {
    count(shared.Count());
    for (uint32_t number = 0; number < shared.Count(); ++number)
      AddText(bytes, shared.Text(number));
  };
  count(artists_.size());
  for (const Artist& artist : artists_) {
    AddText(bytes, artist.spelling);
    AddNumber(bytes, artist.namelessCode);
  }
  count(genres_.size());
  for (const Genre& genre : genres_) {
    AddText(bytes, genre.text);
    AddNumber(bytes, static_cast<uint8_t>(genre.isText));
    AddNumber(bytes, static_cast<uint8_t>(genre.isNull));
  }
  count(days_.size());
  for (const Days& days : days_) {
    AddText(bytes, days.first);
    AddText(bytes, days.last);
  }
  count(hours_.size());
  for (const Hours& hours : hours_)
    for (const std::string& mask : hours) AddText(bytes, mask);
  texts(varieties_);
  texts(others_);
}

// As they were numbered: a text that stands there twice is not what was written.
void CardTexts::ReadShared(ByteReader& bytes) {
  const auto each = [&bytes](auto numberOfNext) {
    const auto count = bytes.Take<uint32_t>();
    for (uint32_t number = 0; number < count; ++number)
      if (numberOfNext() != number) throw OddBytes();
  };
  each([&] {
    const std::string_view spelling = bytes.Text();
    return ArtistNumber(spelling, bytes.Take<int32_t>());
  });
  each([&] {
    const std::string_view text = bytes.Text();
    const bool isText = bytes.Take<uint8_t>() != 0;
    return GenreNumber(text, isText, bytes.Take<uint8_t>() != 0);
  });
  each([&] {
    const std::string_view first = bytes.Text();
    return DaysNumber(first, bytes.Text());
  });
  each([&] {
    Hours masks;
    for (std::string& mask : masks) mask = bytes.Text();
    MakeHoursKey(key_, [&masks](int day) { return masks[static_cast<size_t>(day)]; });
    return AddHours(std::move(masks));
  });
  each([&] { return varieties_.Number(bytes.Text()); });
  each([&] { return others_.Number(bytes.Text()); });
}

// Ahead of the last block, which is not full yet.
const char* CardTexts::TakeTexts(std::string_view texts) {
  auto block = std::make_unique_for_overwrite<char[]>(texts.size());
  std::copy(texts.begin(), texts.end(), block.get());
  blockBytes_ += texts.size();
  return blocks_.insert(blocks_.begin(), std::move(block))->get();
}

bool CardTexts::HasTextsOf(const PackedCard& card) const {
  const auto hasText = [this](uint32_t broadcast) {
    return !(broadcast & PackedCard::kOtherText) ||
           (broadcast & ~PackedCard::kOtherText) < others_.Count();
  };
  return card.artist < artists_.size() && card.genre < genres_.size() && card.days < days_.size() &&
         card.hours < hours_.size() && card.variety < varieties_.Count() &&
         std::all_of(card.broadcasts.begin(), card.broadcasts.end(), hasText);
}

// The new ones are sorted among themselves, and come to their places from the last one on.
void CardTexts::OrderArtists() const {
  const auto before = [this](uint32_t a, uint32_t b) {
    return artists_[a].capitals < artists_[b].capitals;
  };
  std::vector<uint32_t> fresh;
  for (size_t artist = artistOrder_.size(); artist < artists_.size(); ++artist)
    fresh.push_back(static_cast<uint32_t>(artist));
  std::sort(fresh.begin(), fresh.end(), before);
  auto known = static_cast<std::ptrdiff_t>(artistOrder_.size());
  artistOrder_.resize(artists_.size());
  const auto order = artistOrder_.begin();
  auto end = artistOrder_.end();
  for (; !fresh.empty(); fresh.pop_back()) {
    const auto place = std::upper_bound(order, order + known, fresh.back(), before);
    end = std::move_backward(place, order + known, end);
    *--end = fresh.back();
    known = place - order;
  }
}

uint32_t CardTexts::ArtistRank(uint32_t number) const {
  if (artistRanks_.size() == artists_.size()) return artistRanks_[number];
  OrderArtists();
  artistRanks_.resize(artists_.size());
  uint32_t rank = 0;
  for (size_t place = 0; place < artistOrder_.size(); ++place) {
    const Artist& artist = artists_[artistOrder_[place]];
    if (place > 0 && artists_[artistOrder_[place - 1]].capitals != artist.capitals) ++rank;
    artistRanks_[artistOrder_[place]] = rank;
  }
  return artistRanks_[number];
}

std::string_view CardTexts::Broadcast(uint32_t packed, DiffusionText& room) const {
  if (packed == PackedCard::kNoBroadcast) return {};
  if (packed & PackedCard::kOtherText) return others_.Text(packed & ~PackedCard::kOtherText);
  WriteBroadcast(packed - 1, room);
  return {room.data(), room.size()};
}

const PackedCard* FindCard(const CardSet& cards, int32_t code) {
  const auto chunk = std::lower_bound(
      cards.chunks.begin(), cards.chunks.end(), code,
      [](const auto& other, int32_t wanted) { return other->back().code < wanted; });
  if (chunk == cards.chunks.end()) return nullptr;
  const auto card =
      std::lower_bound((*chunk)->begin(), (*chunk)->end(), code,
                       [](const PackedCard& other, int32_t wanted) { return other.code < wanted; });
  return card != (*chunk)->end() && card->code == code ? &*card : nullptr;
}

}  // namespace zemo
