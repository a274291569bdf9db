#include "scheduling/LibraryIndex.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "station/TextForms.h"
#include "store/BoundQuery.h"
#include "store/Collation.h"
#include "store/Database.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kArtistCell = 0, kTitleCell = 1, kGenreCell = 3;

// By key from the last one on: no slice holds the file between two of them, and table order is the
// order of the keys.
BoundQuery SliceQuery(int64_t lastCode) {
  BoundQuery query{"SELECT TOP ? " + CardTexts::Columns() + " FROM Discotheque ",
                   {LibraryIndex::kSliceRows}};
  if (lastCode != std::numeric_limits<int64_t>::min()) query.Add("WHERE CODE > ? ", {lastCode});
  return query.Add("ORDER BY CODE");
}

// The last letter of the artist and the first bytes of the title would be one character.
bool MayJoin(std::string_view title) {
  return !title.empty() && (static_cast<unsigned char>(title.front()) & 0xC0) == 0x80;
}

// Most titles are ASCII, and need no text of their own.
void AddCapitals(std::string& text, std::string_view title) {
  if (std::any_of(title.begin(), title.end(),
                  [](char c) { return static_cast<unsigned char>(c) >= 0x80; })) {
    text += UpperLatin(title);
    return;
  }
  for (const char c : title) text += c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

LibraryIndex::LibraryIndex(int64_t changeCounter)
    : texts_(std::make_shared<CardTexts>()),
      rows_(std::make_shared<ListedCards>(CardSet{{}, texts_})),
      changeCounter_(changeCounter) {}

void LibraryIndex::ReadSlice(Database& db) {
  if (complete_) return;
  auto slice = std::make_shared<CardChunk>();
  slice->reserve(kSliceRows);
  int64_t lastCode = lastCode_;
  const BoundQuery query = SliceQuery(lastCode_);
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    lastCode = row.Int(0);
    slice->push_back(texts_->Pack(row));
  });
  lastCode_ = lastCode;
  complete_ = static_cast<int>(slice->size()) < kSliceRows;
  rows_->Add(std::move(slice));
}

// --- the questions ---

LibraryQuestion LibraryQuestion::OfText(std::string capitals) {
  return {false, std::move(capitals)};
}

LibraryQuestion LibraryQuestion::OfGenre(std::string pattern) {
  return {true, std::move(pattern)};
}

LibraryQuestion::Answer& LibraryQuestion::AnswerOf(uint32_t text) {
  if (text >= answers_.size()) answers_.resize(size_t{text} + 1, kUnknown);
  return answers_[text];
}

bool LibraryQuestion::Wants(const LibraryIndex& index, uint32_t row) {
  const ListedCards& rows = *index.Rows();
  if (genre_) return GenreIsLike(rows.Texts(), rows.At(row));
  return wanted_.empty() || HoldsText(rows.Texts(), rows.At(row));
}

bool LibraryQuestion::GenreIsLike(const CardTexts& texts, const PackedCard& card) {
  if (card.oddCells) {
    return !texts.GenreAt(card.genre).isNull &&
           MatchesPattern(texts.OddCell(card, kGenreCell), wanted_);
  }
  Answer& answer = AnswerOf(card.genre);
  if (answer == kUnknown) {
    const CardTexts::Genre& genre = texts.GenreAt(card.genre);
    answer = !genre.isNull && MatchesPattern(genre.text, wanted_) ? kYes : kNo;
  }
  return answer == kYes;
}

// An artist is looked through once, and of his cards the titles with as much of his name ahead as a
// find may begin in.
bool LibraryQuestion::HoldsText(const CardTexts& texts, const PackedCard& card) {
  if (card.oddCells || MayJoin(TitleOf(card))) {
    const auto cell = [&](int column) {
      return card.oddCells           ? texts.OddCell(card, column)
             : column == kArtistCell ? std::string_view(texts.ArtistAt(card.artist).spelling)
                                     : TitleOf(card);
    };
    room_.assign(cell(kArtistCell)).append(cell(kTitleCell));
    return UpperLatin(room_).find(wanted_) != std::string::npos;
  }
  const CardTexts::Artist& artist = texts.ArtistAt(card.artist);
  const bool asListed = artist.spelling == artist.listed;
  const std::string own = asListed ? std::string() : UpperLatin(artist.spelling);
  const std::string_view name = asListed ? artist.capitals : own;
  Answer& answer = AnswerOf(card.artist);
  if (answer == kUnknown) answer = name.find(wanted_) != std::string_view::npos ? kYes : kNo;
  if (answer == kYes) return true;
  const size_t head = std::min(name.size(), wanted_.size() - 1);
  room_.assign(name.substr(name.size() - head));
  AddCapitals(room_, TitleOf(card));
  return room_.find(wanted_) != std::string::npos;
}

}  // namespace zemo
