// The music library in memory: all cards of Discotheque, packed, as the base holds them now, by the
// signs of store/KnownTable.h. After a write of another program every page of the table is looked
// at again, and rows are read only of the pages that hold something else than they did when their
// rows were read (store/TablePages.h). Looking at all pages of 100,000 cards takes some 30 ms in
// slices, reading all rows twelve times as much: so a library to whose base others write every
// second is known most of the time. A pass that does not count leaves true marks of what it read,
// for the next one to go by.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "library/PackedCards.h"
#include "store/Database.h"
#include "store/KnownTable.h"
#include "store/TablePages.h"

namespace zemo {

struct Station;

// The cards above one page's last code up to the next one's are as they were when that page had
// this mark; one without a mark is nobody's.
struct CardsPage {
  int64_t lastCode;
  PageMark mark;
  bool operator==(const CardsPage&) const = default;
};

// The cards of one moment with their pages, in order of their codes, without gaps.
struct KnownLibrary {
  CardSet cards;
  std::vector<CardsPage> pages;
};

// The same of an earlier run of the program.
struct TakenLibrary {
  std::vector<std::shared_ptr<CardChunk>> chunks;
  std::shared_ptr<CardTexts> texts = std::make_shared<CardTexts>();
  std::vector<CardsPage> pages;
};

// Thread: the logic's.
class KnownCards : public KnownTable {
 public:
  static constexpr int kSliceRows = 1000;     // some 3 ms on the machines that we know
  static constexpr size_t kMostAtOnce = 200;  // rows that are read again by who asks

  explicit KnownCards(int sliceRows = kSliceRows)
      // One by one costs more than a slice of a pass.
      : KnownTable("Discotheque",
                   {.atOnce = kMostAtOnce, .aSlice = static_cast<size_t>(sliceRows) / 4}),
        sliceRows_(sliceRows),
        mostInChunk_(static_cast<size_t>(2 * sliceRows)) {}

  // The cards as a query would find them now. None: that is not known. Waits for no lock, and reads
  // no more than one slice: a library of one slice is always known, but for a fault of the base.
  std::optional<CardSet> Now(Database& db);
  // The same for who asks for no genre and no hour as the base does: Now has none where the base
  // alone can judge a card by these.
  std::optional<CardSet> Listed(Database& db);
  // As Listed, for who has no time to read: none where a slice would have to be.
  std::optional<CardSet> ListedAlready(Database& db);
  // All cards, each as it was read last, in this run or an earlier one, whatever others have
  // written since; without a look at the base. None before the first pass where none were taken up.
  std::optional<CardSet> LastRead() const;
  // As Listed, with the pages; none where these cannot be told.
  std::optional<KnownLibrary> ListedWithPages(Database& db);
  int64_t Passes() const { return passes_; }  // begun so far: others' writes begin another one
  // Looks at all pages again, so that they have marks behind own writes as well.
  void LookAgain(Database& db);
  // What an earlier run knew is what was known before the first pass: only the rows of those pages
  // are read whose mark is another one. Nothing where this run has read by itself.
  void TakeUp(TakenLibrary library);

 private:
  void BeginPass(Database& db, bool keepable) override;
  void ReadOn(Database& db) override;
  void ReadAgain(Database& db, size_t most) override;
  void Forget();
  // What a slice of the pass goes over.
  struct Stretch {
    int64_t end = 0;               // up to this code
    std::vector<CardsPage> pages;  // as they are now
    std::vector<Range> others;     // whose cards are to be read
  };
  struct Reading {
    Range range;
    CardChunk cards;
  };
  bool LookAtPages(Database& db, Stretch& stretch) const;
  Reading ReadNextRows(Database& db);
  bool IsKnownPage(int64_t before, const TablePage& page) const;
  Reading Read(Database& db, Range range, int most);
  void TakePages(const Stretch& stretch);
  void Unmark(int64_t code);
  const PackedCard* Find(int64_t code) const;
  size_t ChunkOf(int64_t code) const;
  CardChunk& Writable(size_t chunk);
  void Replace(Reading reading);
  bool Overwrite(const Reading& reading);
  void Cut(Range range);
  void Insert(CardChunk cards);

  const int sliceRows_;
  const size_t mostInChunk_;  // a chunk that grows beyond is cut in two; few cards make none
  int64_t passes_ = 0;
  // In order of CODE. Of a pass under way those up to `lastCode_` are read; the others are what was
  // known before.
  std::vector<std::shared_ptr<CardChunk>> chunks_;
  // In order of their codes; without gaps up to `lastCode_`.
  std::vector<CardsPage> pages_;
  int odd_ = 0;  // cards that only the base can judge
  std::shared_ptr<CardTexts> texts_ = std::make_shared<CardTexts>();
  size_t textsAtFirst_ = 0;  // bytes of texts_ at the end of its first pass
};

// The station's own, from the first asking on. Throws nothing: a base that cannot be read is one of
// which nothing is known.
KnownCards& CardsOf(Station& station);
std::optional<CardSet> CardsNow(Station& station);
std::optional<CardSet> CardsToList(Station& station);            // KnownCards::Listed
std::optional<CardSet> CardsListedAlready(Station& station);     // KnownCards::ListedAlready
std::optional<CardSet> CardsAsLastRead(const Station& station);  // KnownCards::LastRead
// One slice of reading ahead; true when more is left to be read, and can be now.
bool ReadCardsAhead(Station& station);

}  // namespace zemo
