#include "library/KnownCards.h"

#include <algorithm>
#include <utility>

#include "station/Station.h"
#include "store/BoundQuery.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr const char* kCardTable = "Discotheque";
constexpr size_t kMostInChunk = 2048;              // cards; a chunk that grows beyond is cut in two
constexpr size_t kTextsToSpare = size_t{1} << 18;  // bytes

BoundQuery SliceOfCards(bool first, int64_t lastCode, int rows) {
  BoundQuery query{"SELECT TOP ? " + CardTexts::Columns() + " FROM Discotheque ", {rows}};
  if (!first) query.Add("WHERE CODE > ? ", {lastCode});
  return query.Add("ORDER BY CODE");
}

int OddOf(const CardChunk& cards) {
  return static_cast<int>(
      std::count_if(cards.begin(), cards.end(), [](const PackedCard& card) { return card.odd; }));
}

struct BelowCode {
  bool operator()(const PackedCard& card, int64_t code) const { return card.code < code; }
};

}  // namespace

// --- what is known ---

void KnownCards::Look(Database& db) {
  if (!notes_) {
    notes_ = db.NoteRows(kCardTable);
    StartOver(db);
  } else if (notes_->All() || db.ForeignCounter() != foreign_ ||
             (!keepable_ && notes_->Count() > 0)) {
    StartOver(db);
  }
}

// Texts that nobody names any more go with the pass, once they are as many as the others.
void KnownCards::StartOver(Database& db) {
  const bool texts = textsAtFirst_ > 0 && texts_->Bytes() > 2 * textsAtFirst_ + kTextsToSpare;
  const int64_t foreign = db.ForeignCounter();
  keepable_ = db.IsReadAsStored(kCardTable);
  foreign_ = foreign;
  if (texts || !keepable_) Forget();
  notes_->Clear();
  whole_ = false;
  fresh_ = 0;
  lastCode_ = std::numeric_limits<int64_t>::min();
}

void KnownCards::Forget() {
  texts_ = std::make_shared<CardTexts>();
  textsAtFirst_ = 0;
  chunks_.clear();
  readOnce_ = false;
  fresh_ = 0;
}

std::optional<CardSet> KnownCards::Now(Database& db) {
  const auto cards = Listed(db);
  return odd_ > 0 ? std::nullopt : cards;
}

std::optional<CardSet> KnownCards::Listed(Database& db) {
  if (db.InTransaction()) return std::nullopt;  // what is read now may be taken back
  const NoLockWait atOnce(db.Waiting());
  try {
    Look(db);
    if (!keepable_) return std::nullopt;
    if (!whole_) ReadOn(db);
    if (!whole_ || notes_->Count() > kMostAtOnce) return std::nullopt;
    ReadAgain(db, kMostAtOnce);
  } catch (const StoreError&) {
    return std::nullopt;
  }
  if (!whole_) return std::nullopt;
  return CardSet{{chunks_.begin(), chunks_.end()}, texts_};
}

std::optional<CardSet> KnownCards::LastRead() const {
  if (!readOnce_) return std::nullopt;
  return CardSet{{chunks_.begin(), chunks_.end()}, texts_};
}

bool KnownCards::ReadSlice(Database& db) {
  if (db.InTransaction()) return false;
  Look(db);
  if (!keepable_) return false;
  if (!whole_)
    ReadOn(db);
  else
    ReadAgain(db, static_cast<size_t>(sliceRows_) / 4);  // one by one costs more
  return keepable_ && (!whole_ || notes_->All() || notes_->Count() > 0);
}

// --- reading ---

void KnownCards::ReadOn(Database& db) {
  auto slice = std::make_shared<CardChunk>();
  slice->reserve(static_cast<size_t>(sliceRows_));
  const BoundQuery query =
      SliceOfCards(lastCode_ == std::numeric_limits<int64_t>::min(), lastCode_, sliceRows_);
  int64_t lastCode = lastCode_;
  bool wide = false;  // a code of more than 32 bits: no card has it here
  db.ReadRows(query.text, query.values, [&](const RowView& row) {
    lastCode = row.Int(0);
    wide = wide || lastCode != static_cast<int32_t>(lastCode);
    slice->push_back(texts_->Pack(row, Find(lastCode)));
  });
  if (db.ForeignCounter() != foreign_) return StartOver(db);
  if (wide) {
    keepable_ = false;
    return Forget();
  }
  const bool last = static_cast<int>(slice->size()) < sliceRows_;
  lastCode_ = lastCode;
  TakeSlice(std::move(slice), last);
  texts_->OrderArtists();  // a request would have to
  if (!last) return;
  whole_ = readOnce_ = true;
  odd_ = 0;
  for (const auto& chunk : chunks_) odd_ += OddOf(*chunk);
  if (textsAtFirst_ == 0) textsAtFirst_ = texts_->Bytes();
}

// In place of what was known of the cards up to its last one, of all the rest at the end.
void KnownCards::TakeSlice(std::shared_ptr<CardChunk> slice, bool last) {
  const auto known = chunks_.begin() + static_cast<std::ptrdiff_t>(fresh_);
  const auto covered = [&](const std::shared_ptr<CardChunk>& chunk) {
    return last || chunk->back().code <= slice->back().code;
  };
  auto end = known;
  while (end != chunks_.end() && covered(*end)) ++end;
  const auto rest = static_cast<size_t>(known - chunks_.begin());
  chunks_.erase(known, end);
  if (!last && rest < chunks_.size() && chunks_[rest]->front().code <= slice->back().code) {
    CardChunk& partly = Writable(rest);
    partly.erase(partly.begin(), std::upper_bound(partly.begin(), partly.end(), slice->back().code,
                                                  [](int64_t code, const PackedCard& card) {
                                                    return code < card.code;
                                                  }));
  }
  if (slice->empty()) return;
  chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(rest), std::move(slice));
  ++fresh_;
}

// A row that cannot be read stays noted, with those behind it.
void KnownCards::ReadAgain(Database& db, size_t most) {
  const std::vector<int64_t> codes = notes_->Take(most);
  if (codes.empty()) return;
  const std::string query = "SELECT " + CardTexts::Columns() + " FROM Discotheque WHERE CODE = ?";
  for (size_t at = 0; at < codes.size(); ++at) {
    try {
      std::optional<PackedCard> card;
      db.ReadRows(query, {codes[at]},
                  [&](const RowView& row) { card = texts_->Pack(row, Find(codes[at])); });
      Replace(codes[at], card);
    } catch (...) {
      for (; at < codes.size(); ++at) notes_->Note(codes[at]);
      throw;
    }
  }
  if (db.ForeignCounter() != foreign_) StartOver(db);
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

void KnownCards::Replace(int64_t code, const std::optional<PackedCard>& card) {
  if (code != static_cast<int32_t>(code)) return notes_->NoteAll();
  if (chunks_.empty()) {
    if (!card) return;
    chunks_.push_back(std::make_shared<CardChunk>());
    chunks_.back()->push_back(*card);
    odd_ += card->odd;
    return;
  }
  const size_t at = std::min(ChunkOf(code), chunks_.size() - 1);
  CardChunk& chunk = Writable(at);
  const auto place = std::lower_bound(chunk.begin(), chunk.end(), code, BelowCode());
  const bool known = place != chunk.end() && place->code == code;
  odd_ += (card ? card->odd : 0) - (known ? place->odd : 0);
  if (known && card)
    *place = *card;
  else if (known)
    chunk.erase(place);
  else if (card)
    chunk.insert(place, *card);
  if (chunk.empty()) {
    chunks_.erase(chunks_.begin() + static_cast<std::ptrdiff_t>(at));
  } else if (chunk.size() > kMostInChunk) {
    const auto middle = chunk.begin() + static_cast<std::ptrdiff_t>(chunk.size() / 2);
    auto upper = std::make_shared<CardChunk>(middle, chunk.end());
    chunk.erase(middle, chunk.end());
    chunks_.insert(chunks_.begin() + static_cast<std::ptrdiff_t>(at) + 1, std::move(upper));
  }
}

// --- the station's ---

namespace {

KnownCards& CardsOf(Station& station) {
  if (!station.knownCards) station.knownCards = std::make_shared<KnownCards>();
  return *station.knownCards;
}

}  // namespace

std::optional<CardSet> CardsNow(Station& station) {
  if (!station.base.IsOpen()) return std::nullopt;
  return CardsOf(station).Now(station.base.Db());
}

std::optional<CardSet> CardsToList(Station& station) {
  if (!station.base.IsOpen()) return std::nullopt;
  return CardsOf(station).Listed(station.base.Db());
}

std::optional<CardSet> CardsAsLastRead(const Station& station) {
  return station.knownCards ? station.knownCards->LastRead() : std::nullopt;
}

bool ReadCardsAhead(Station& station) {
  if (!station.base.IsOpen()) return false;
  const NoLockWait atOnce(station.base.Waiting());
  try {
    return CardsOf(station).ReadSlice(station.base.Db());
  } catch (const StoreError&) {
    return false;  // nobody asked for it: who does is told
  }
}

}  // namespace zemo
