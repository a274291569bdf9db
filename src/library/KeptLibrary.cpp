#include "library/KeptLibrary.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "library/KeptBytes.h"

namespace zemo {

namespace {

// The file: a head, then blocks one behind the other, each a mark, the length of its payload and
// the payload, filled up to what a mark is made of. A mark is made of all payloads up to its own: a
// block of a former file, which a loss of power can leave where a new one should be, does not fit.
// The number goes up with every change of what is written, or of what Pack makes of a row.
constexpr std::string_view kForm = "Zemo library 002";
constexpr size_t kHeadBytes = 24;  // the form, and where the last block ends

constexpr size_t kCardBytes = offsetof(PackedCard, broadcasts) + sizeof(PackedCard::broadcasts);
static_assert(std::is_trivially_copyable_v<PackedCard>);
static_assert(kCardBytes == 8 + 8 + 5 * 4 + 5 * 4 + 5 * 2 + 2 + kDiffusions * 4,
              "a gap within, whose bytes nobody sets");

// Cards with cells that stand in no card are left to the base.
std::string PayloadOf(const CardChunk& chunk) {
  std::string cards, texts;
  uint32_t count = 0;
  for (const PackedCard& card : chunk) {
    if (card.oddCells) continue;
    PackedCard kept = card;
    kept.texts = nullptr;
    cards.append(reinterpret_cast<const char*>(&kept), kCardBytes);
    texts.append(TitleOf(card)).append(FileOf(card));
    ++count;
  }
  std::string payload;
  AddNumber(payload, count);
  payload += cards;
  AddText(payload, texts);
  return payload;
}

// The page of a card that is left out is one that nobody knows.
void LeaveOutOddPages(KnownLibrary& library) {
  auto page = library.pages.begin();
  for (const auto& chunk : library.cards.chunks)
    for (const PackedCard& card : *chunk) {
      if (!card.oddCells) continue;
      while (page != library.pages.end() && page->lastCode < card.code) ++page;
      if (page != library.pages.end()) page->mark = {};
    }
}

// `mark` is that of the block before.
void AddBlock(std::string& bytes, std::string payload, PageMark& mark) {
  const uint64_t length = payload.size();
  payload.resize((payload.size() + kMarkedBytes - 1) / kMarkedBytes * kMarkedBytes);
  AddToMark(mark, payload);
  for (const uint64_t half : mark) AddNumber(bytes, half);
  AddNumber(bytes, length);
  bytes += payload;
}

std::string_view TakeBlock(ByteReader& file, PageMark& mark) {
  const PageMark stated{file.Take<uint64_t>(), file.Take<uint64_t>()};
  const auto length = file.Take<uint64_t>();
  const std::string_view filled =
      file.Bytes((length / kMarkedBytes + (length % kMarkedBytes != 0)) * kMarkedBytes);
  AddToMark(mark, filled);
  if (mark != stated) throw OddBytes();
  return filled.substr(0, static_cast<size_t>(length));
}

void TakeShared(std::string_view payload, std::string_view owner, TakenLibrary& library) {
  ByteReader bytes(payload);
  if (bytes.Text() != owner) throw OddBytes();
  library.texts->ReadShared(bytes);
  const auto pages = bytes.Take<uint32_t>();
  for (uint32_t page = 0; page < pages; ++page) {
    const auto lastCode = bytes.Take<int64_t>();
    if (page > 0 && lastCode <= library.pages.back().lastCode) throw OddBytes();
    library.pages.push_back({lastCode, {bytes.Take<uint64_t>(), bytes.Take<uint64_t>()}});
  }
}

PackedCard TakeCard(ByteReader& cards, const CardTexts& texts) {
  const char* const stored = cards.Bytes(kCardBytes).data();
  for (const size_t flag : {offsetof(PackedCard, odd), offsetof(PackedCard, oddCells)})
    if (static_cast<unsigned char>(stored[flag]) > 1) throw OddBytes();  // no bool reads so
  PackedCard card;
  std::memcpy(&card, stored, kCardBytes);
  if (card.oddCells || !texts.HasTextsOf(card)) throw OddBytes();
  return card;
}

void TakeChunk(std::string_view payload, TakenLibrary& library) {
  ByteReader bytes(payload);
  const auto count = bytes.Take<uint32_t>();
  ByteReader cards(bytes.Bytes(uint64_t{count} * kCardBytes));
  const std::string_view kept = bytes.Text();
  const char* const begin = library.texts->TakeTexts(kept);
  ByteReader texts(kept);
  auto chunk = std::make_shared<CardChunk>();
  chunk->reserve(count);
  int64_t before = library.chunks.empty() ? std::numeric_limits<int64_t>::min()
                                          : library.chunks.back()->back().code;
  while (!cards.AtEnd()) {
    PackedCard card = TakeCard(cards, *library.texts);
    if (card.code <= before) throw OddBytes();
    before = card.code;
    const auto own = texts.Bytes(uint64_t{card.titleBytes} + card.fileBytes);
    card.texts = begin + (own.data() - kept.data());
    chunk->push_back(card);
  }
  if (!chunk->empty()) library.chunks.push_back(std::move(chunk));
}

}  // namespace

KeptLibraryWriter::KeptLibraryWriter(KnownLibrary library, std::string_view owner)
    : library_(std::move(library)) {
  LeaveOutOddPages(library_);
  AddText(shared_, owner);
  library_.cards.texts->WriteShared(shared_);
  AddNumber(shared_, static_cast<uint32_t>(library_.pages.size()));
  for (const CardsPage& page : library_.pages) {
    AddNumber(shared_, page.lastCode);
    for (const uint64_t half : page.mark) AddNumber(shared_, half);
  }
}

std::optional<KeptLibraryWriter::Piece> KeptLibraryWriter::Next() {
  if (complete_) return std::nullopt;
  if (end_ == 0) {
    Piece first{0, std::string(kHeadBytes, '\0')};
    AddBlock(first.bytes, std::exchange(shared_, {}), mark_);
    end_ = static_cast<int64_t>(first.bytes.size());
    return first;
  }
  auto& chunks = library_.cards.chunks;
  if (next_ < chunks.size()) {
    Piece piece{end_, {}};
    AddBlock(piece.bytes, PayloadOf(*std::exchange(chunks[next_++], nullptr)), mark_);
    end_ += static_cast<int64_t>(piece.bytes.size());
    return piece;
  }
  complete_ = true;
  Piece head{0, std::string(kForm)};
  AddNumber(head.bytes, end_);
  return head;
}

std::optional<TakenLibrary> ReadKeptLibrary(std::string_view file, std::string_view owner) {
  try {
    ByteReader head(file);
    if (head.Bytes(kForm.size()) != kForm) return std::nullopt;
    const auto end = head.Take<int64_t>();
    if (end < static_cast<int64_t>(kHeadBytes) || static_cast<uint64_t>(end) > file.size())
      return std::nullopt;
    ByteReader blocks(file.substr(kHeadBytes, static_cast<size_t>(end) - kHeadBytes));
    TakenLibrary library;
    PageMark mark{};
    TakeShared(TakeBlock(blocks, mark), owner, library);
    while (!blocks.AtEnd()) TakeChunk(TakeBlock(blocks, mark), library);
    return library;
  } catch (const OddBytes&) {
    return std::nullopt;
  }
}

}  // namespace zemo
