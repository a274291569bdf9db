#include "library/KnownCards.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "station/Station.h"
#include "store/BoundQuery.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr size_t kTextsToSpare = size_t{1} << 18;  // bytes
constexpr int kPagesASlice = 1500;                 // some 3 ms
constexpr size_t kRangesASlice = 64;               // of cards to be read
constexpr int kAllRows = std::numeric_limits<int>::max();

BoundQuery CardsQuery(int64_t from, int64_t to, int most) {
  BoundQuery query{"SELECT TOP ? " + CardTexts::Columns() + " FROM Discotheque WHERE CODE <= ? ",
                   {most, to}};
  if (from != KnownTable::kBelowAll) query.Add("AND CODE > ? ", {from});
  return query.Add("ORDER BY CODE");
}

int OddOf(CardChunk::const_iterator begin, CardChunk::const_iterator end) {
  return static_cast<int>(
      std::count_if(begin, end, [](const PackedCard& card) { return card.odd; }));
}

struct BelowCode {
  bool operator()(const PackedCard& card, int64_t code) const { return card.code < code; }
};
struct AboveCode {
  bool operator()(int64_t code, const PackedCard& card) const { return code < card.code; }
};

}  // namespace

// --- what is known ---

// Texts that nobody names any more go with the pass, once they are as many as the others.
void KnownCards::BeginPass(Database& /*db*/, bool keepable) {
  const bool texts = textsAtFirst_ > 0 && texts_->Bytes() > 2 * textsAtFirst_ + kTextsToSpare;
  if (texts || !keepable) Forget();
  if (notes_->All()) pages_.clear();
  ++passes_;
}

void KnownCards::Forget() {
  texts_ = std::make_shared<CardTexts>();
  textsAtFirst_ = 0;
  chunks_.clear();
  pages_.clear();
  odd_ = 0;
  readOnce_ = false;
}

std::optional<CardSet> KnownCards::Now(Database& db) {
  const auto cards = Listed(db);
  return odd_ > 0 ? std::nullopt : cards;
}

std::optional<CardSet> KnownCards::Listed(Database& db) {
  if (Look(db) != State::kKnown) return std::nullopt;
  return CardSet{{chunks_.begin(), chunks_.end()}, texts_};
}

std::optional<CardSet> KnownCards::ListedAlready(Database& db) {
  try {
    if (!db.InTransaction()) CheckSigns(db);
  } catch (const StoreError&) {
    return std::nullopt;
  }
  return whole_ ? Listed(db) : std::nullopt;
}

std::optional<CardSet> KnownCards::LastRead() const {
  if (!readOnce_) return std::nullopt;
  return CardSet{{chunks_.begin(), chunks_.end()}, texts_};
}

std::optional<KnownLibrary> KnownCards::ListedWithPages(Database& db) {
  auto cards = Listed(db);
  if (!cards || pages_.empty()) return std::nullopt;
  return KnownLibrary{std::move(*cards), pages_};
}

void KnownCards::LookAgain(Database& db) {
  if (whole_ && !db.InTransaction()) StartOver(db);
}

void KnownCards::TakeUp(TakenLibrary library) {
  if (readOnce_) return;
  chunks_ = std::move(library.chunks);
  texts_ = std::move(library.texts);
  pages_ = std::move(library.pages);
  odd_ = 0;
  for (const auto& chunk : chunks_) odd_ += OddOf(chunk->begin(), chunk->end());
  whole_ = false;
  readOnce_ = true;
  lastCode_ = kBelowAll;
}

// --- reading ---

void KnownCards::ReadOn(Database& db) {
  Stretch stretch;
  std::vector<Reading> readings;
  if (LookAtPages(db, stretch)) {
    for (const Range& range : stretch.others) readings.push_back(Read(db, range, kAllRows));
  } else {
    readings.push_back(ReadNextRows(db));
    stretch = Stretch();
    stretch.end = readings.back().range.to;
  }
  if (OthersWrote(db)) return StartOver(db);
  if (!keepable_) return Forget();
  for (Reading& reading : readings) Replace(std::move(reading));
  TakePages(stretch);
  texts_->OrderArtists();  // a request would have to
  EndSlice(stretch.end);
  if (!whole_) return;
  pages_.shrink_to_fit();
  if (textsAtFirst_ == 0) textsAtFirst_ = texts_->Bytes();
}

// On from `lastCode_`; false where pages cannot be told, and for the rest of a pass in which they
// could not.
bool KnownCards::LookAtPages(Database& db, Stretch& stretch) const {
  if (lastCode_ != kBelowAll && pages_.empty()) return false;
  stretch.end = lastCode_;
  int rows = 0, pages = 0;
  const auto look = [&](const TablePage& page) {
    if (!IsKnownPage(stretch.end, page)) {
      const bool goesOn = !stretch.others.empty() && stretch.others.back().to == stretch.end;
      if (goesOn)
        stretch.others.back().to = page.lastKey;
      else
        stretch.others.push_back({stretch.end, page.lastKey});
      rows += page.rows;
    }
    stretch.pages.push_back({page.lastKey, page.mark});
    stretch.end = page.lastKey;
    pages += page.filePages;
    return int64_t{rows} * kPagesASlice < int64_t{sliceRows_} * (kPagesASlice - pages) &&
           stretch.others.size() < kRangesASlice;
  };
  return ReadPages(db, look);
}

KnownCards::Reading KnownCards::ReadNextRows(Database& db) {
  Reading reading = Read(db, {lastCode_, kAboveAll}, sliceRows_);
  const bool last = static_cast<int>(reading.cards.size()) < sliceRows_;
  if (!last) reading.range.to = reading.cards.back().code;
  return reading;
}

KnownCards::Reading KnownCards::Read(Database& db, Range range, int most) {
  Reading reading{range, {}};
  if (most != kAllRows) reading.cards.reserve(static_cast<size_t>(most));
  const BoundQuery query = CardsQuery(range.from, range.to, most);
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    const int64_t code = row.Int(0);
    keepable_ = keepable_ && code == static_cast<int32_t>(code);
    reading.cards.push_back(texts_->Pack(row, Find(code)));
  });
  return reading;
}

// A row that cannot be read stays noted, with those behind it.
void KnownCards::ReadAgain(Database& db, size_t most) {
  const std::vector<int64_t> codes = notes_->Take(most);
  if (codes.empty()) return;
  for (size_t at = 0; at < codes.size(); ++at) {
    if (codes[at] != static_cast<int32_t>(codes[at])) return notes_->NoteAll();  // no card has it
    try {
      Replace(Read(db, {codes[at] - 1, codes[at]}, 1));
      Unmark(codes[at]);
    } catch (...) {
      for (; at < codes.size(); ++at) notes_->Note(codes[at]);
      throw;
    }
  }
}

// --- the pages ---

bool KnownCards::IsKnownPage(int64_t before, const TablePage& page) const {
  const auto known = std::lower_bound(
      pages_.begin(), pages_.end(), page.lastKey,
      [](const CardsPage& other, int64_t lastKey) { return other.lastCode < lastKey; });
  if (known == pages_.end() || known->lastCode != page.lastKey || known->mark != page.mark)
    return false;
  return before == (known == pages_.begin() ? kBelowAll : std::prev(known)->lastCode);
}

// In place of those that were known up to its end.
void KnownCards::TakePages(const Stretch& stretch) {
  if (stretch.pages.empty()) return pages_.clear();  // a gap would be taken for a page's own
  const auto behind = [](int64_t code, const CardsPage& page) { return code < page.lastCode; };
  const auto begin = std::upper_bound(pages_.begin(), pages_.end(), lastCode_, behind);
  const auto end = std::upper_bound(begin, pages_.end(), stretch.end, behind);
  const bool same = static_cast<size_t>(end - begin) == stretch.pages.size();
  if (same) {
    std::copy(stretch.pages.begin(), stretch.pages.end(), begin);
  } else {
    const auto place = pages_.erase(begin, end);
    pages_.insert(place, stretch.pages.begin(), stretch.pages.end());
  }
}

// A card of the page was read behind the others: it may be written back to what it was.
void KnownCards::Unmark(int64_t code) {
  const auto page = std::lower_bound(
      pages_.begin(), pages_.end(), code,
      [](const CardsPage& other, int64_t wanted) { return other.lastCode < wanted; });
  if (page != pages_.end()) page->mark = {};
}

// --- the chunks ---

// The first chunk that ends at the code or beyond; their number where none does.
size_t KnownCards::ChunkOf(int64_t code) const {
  const auto found = std::lower_bound(
      chunks_.begin(), chunks_.end(), code,
      [](const auto& chunk, int64_t wanted) { return chunk->back().code < wanted; });
  return static_cast<size_t>(found - chunks_.begin());
}

const PackedCard* KnownCards::Find(int64_t code) const {
  const size_t at = ChunkOf(code);
  if (at == chunks_.size()) return nullptr;
  const auto card = std::lower_bound(chunks_[at]->begin(), chunks_[at]->end(), code, BelowCode());
  return card != chunks_[at]->end() && card->code == code ? &*card : nullptr;
}

// A chunk in somebody's hands stays as it is.
CardChunk& KnownCards::Writable(size_t chunk) {
  std::shared_ptr<CardChunk>& shared = chunks_[chunk];
  if (shared.use_count() > 1) shared = std::make_shared<CardChunk>(*shared);
  return *shared;
}

// The cards of the range are these now.
void KnownCards::Replace(Reading reading) {
  odd_ += OddOf(reading.cards.begin(), reading.cards.end());
  if (!Overwrite(reading)) {
    Cut(reading.range);
    Insert(std::move(reading.cards));
  }
}

// As most writes leave them: the same cards, which read otherwise. False: it is not so.
bool KnownCards::Overwrite(const Reading& reading) {
  const size_t at = reading.cards.empty() ? chunks_.size() : ChunkOf(reading.cards.front().code);
  if (at == chunks_.size()) return false;
  const CardChunk& there = *chunks_[at];
  const auto begin = std::upper_bound(there.begin(), there.end(), reading.range.from, AboveCode());
  const auto end = std::upper_bound(begin, there.end(), reading.range.to, AboveCode());
  const auto sameCode = [](const PackedCard& a, const PackedCard& b) { return a.code == b.code; };
  const bool beginsBefore = at > 0 && chunks_[at - 1]->back().code > reading.range.from;
  const bool goesOn = at + 1 < chunks_.size() && chunks_[at + 1]->front().code <= reading.range.to;
  if (beginsBefore || goesOn ||
      !std::equal(begin, end, reading.cards.begin(), reading.cards.end(), sameCode))
    return false;
  const auto place = begin - there.begin();
  odd_ -= OddOf(begin, end);
  std::copy(reading.cards.begin(), reading.cards.end(), Writable(at).begin() + place);
  return true;
}

void KnownCards::Cut(Range range) {
  size_t at = range.from == kBelowAll ? 0 : ChunkOf(range.from + 1);
  while (at < chunks_.size() && chunks_[at]->front().code <= range.to) {
    const CardChunk& there = *chunks_[at];
    const auto begin = std::upper_bound(there.begin(), there.end(), range.from, AboveCode());
    const auto end = std::upper_bound(begin, there.end(), range.to, AboveCode());
    odd_ -= OddOf(begin, end);
    if (begin == there.begin() && end == there.end()) {
      chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(at));
      continue;
    }
    if (begin != end) {
      const auto first = begin - there.begin(), behind = end - there.begin();
      CardChunk& chunk = Writable(at);
      chunk.erase(chunk.begin() + first, chunk.begin() + behind);
    }
    ++at;
  }
}

// Between those that are there.
void KnownCards::Insert(CardChunk cards) {
  if (cards.empty()) return;
  const int64_t code = cards.front().code;
  size_t at = ChunkOf(code);
  const bool between = at < chunks_.size() && chunks_[at]->front().code < code;
  if (!between && (cards.size() >= mostInChunk_ / 4 || chunks_.empty())) {
    cards.shrink_to_fit();
    chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(at),
                   std::make_shared<CardChunk>(std::move(cards)));
    return;
  }
  at = std::min(at, chunks_.size() - 1);
  CardChunk& chunk = Writable(at);
  const auto place = std::upper_bound(chunk.begin(), chunk.end(), code, AboveCode());
  chunk.insert(place, cards.begin(), cards.end());
  if (chunk.size() <= mostInChunk_) return;
  const auto middle = chunk.begin() + static_cast<std::ptrdiff_t>(chunk.size() / 2);
  auto upper = std::make_shared<CardChunk>(middle, chunk.end());
  chunk.erase(middle, chunk.end());
  chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(upper));
}

// --- the station's ---

KnownCards& CardsOf(Station& station) {
  if (!station.knownCards) station.knownCards = std::make_shared<KnownCards>();
  return *station.knownCards;
}

std::optional<CardSet> CardsNow(Station& station) {
  if (!station.base.IsOpen()) return std::nullopt;
  return CardsOf(station).Now(station.base.Db());
}

std::optional<CardSet> CardsToList(Station& station) {
  if (!station.base.IsOpen()) return std::nullopt;
  return CardsOf(station).Listed(station.base.Db());
}

std::optional<CardSet> CardsListedAlready(Station& station) {
  if (!station.base.IsOpen()) return std::nullopt;
  const NoLockWait atOnce(station.base.Waiting());
  return CardsOf(station).ListedAlready(station.base.Db());
}

std::optional<CardSet> CardsAsLastRead(const Station& station) {
  return station.knownCards ? station.knownCards->LastRead() : std::nullopt;
}

bool ReadCardsAhead(Station& station) {
  return station.base.IsOpen() && CardsOf(station).ReadAhead(station.base.Db());
}

}  // namespace zemo
