// A search tests the cards of the library in memory (library/KnownCards.h). Where it is not known
// just now, as after a write of another program, its cards as they were read last serve at once, it
// is read on behind them, and the search repeated, so that in the end the list holds what the table
// held after the keystroke. A library that was never read, or that cannot be kept, is read by the
// search into an index of its own.
#include "scheduling/LibrarySearch.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "library/KnownCards.h"
#include "platform/EventLoop.h"
#include "scheduling/LibraryIndex.h"
#include "scheduling/RowSort.h"
#include "station/LockedBase.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr size_t kLargeLibrary = 1000;  // cards, from which on a search needs a character more
constexpr int kShortestText = 3;
constexpr std::string_view kEverything = "*";
constexpr const char* kTextRoutine = "Rech";
constexpr const char* kGenreRoutine = "RechGenre";
constexpr const char* kListRoutine = "ListRech";
constexpr uint32_t kTestRows = 20000;  // a slice
constexpr int kLockedTurns = 100;      // of kAskAgainMs: as long as any other query waits

LibraryQuestion TextQuery(const std::string& typed) {
  return LibraryQuestion::OfText(typed == kEverything ? std::string() : UpperLatin(typed));
}

const char* RoutineOf(const LibraryQuestion& query) {
  return query.IsOfGenre() ? kGenreRoutine : kTextRoutine;
}

bool LargeLibrary(Station& station, const std::optional<CardSet>& known) {
  size_t cards = 0;
  if (known) {
    for (const auto& chunk : known->chunks) cards += chunk->size();
    return cards > kLargeLibrary;
  }
  station.base.Db().ReadRows("SELECT TOP ? Code FROM Discotheque", {int64_t{kLargeLibrary} + 1},
                             [&](const RowView&) { ++cards; });
  return cards > kLargeLibrary;
}

// A text that is too short clears the list. False when there is nothing to look for.
bool LongEnough(Station& station, const std::optional<CardSet>& known) {
  const std::string& typed = station.browse.Rech;
  const int shortest = kShortestText + (LargeLibrary(station, known) ? 1 : 0);
  station.browse.charactersWanted = 0;
  if (CharacterCount(Trim(typed)) >= shortest) return true;
  station.browse.ListRech.rows.clear();
  if (typed == kEverything) return true;
  station.browse.charactersWanted = shortest;
  return false;
}

// How the finds of a scan come into the list.
enum class Pass {
  kOnly,    // at once: the index holds all that was stored before the keystroke
  kStale,   // at once, of an index that may be older; the table is read anew meanwhile
  kRepeat,  // at the end, in place of the stale ones
};

// The rows of an index, tested one after the other; the index may still grow.
struct Scan {
  LibraryQuestion query;
  std::shared_ptr<LibraryIndex> index;
  Pass pass;
  std::optional<uint64_t> shown{};  // generation of the list that shows the query's finds
  uint32_t tested = 0;
  std::vector<uint32_t> found{};
  uint32_t behind = 0;  // slices of reading on behind a stale one

  bool AtTheEnd() const { return tested == index->Count(); }
  // The library could have been read twice; others write to it all the time.
  bool ReadOnForLong() const { return behind > 2 * index->Count() / KnownCards::kSliceRows + 10; }
};

struct Sorting {
  explicit Sorting(const BrowseRows& list)
      : rows(list.rows, list.sortColumn), generation(list.rows.Generation()) {}

  RowSort rows;
  uint64_t generation;  // of the list that is sorted
};

}  // namespace

// Of one station. What it is at: nothing, a query that is to begin, its scan, or the sorting.
class LibrarySearch {
 public:
  void Begin(LibraryQuestion query);
  void BeginSort(const BrowseRows& list);
  void Stop();
  // `again`: whoever calls comes back where another process has the base for a moment.
  SearchTurn Slice(Station& station, bool again);
  bool ReadAhead(Station& station);

 private:
  bool Searching() const;
  bool AtWork() const { return !std::holds_alternative<std::monostate>(work_); }
  const char* Routine() const;  // of the work, in the log
  void WorkSlice(Station& station);
  void Start(Station& station);
  void ScanSlice(Station& station, Scan& scan);
  void Finish(Station& station, Scan scan);
  void SortSlice(BrowseRows& list, Sorting& sorting);
  std::shared_ptr<LibraryIndex> Known(Station& station, std::optional<CardSet> cards);
  std::shared_ptr<LibraryIndex> LastRead(const Station& station) const;
  void ReadOn(Station& station);
  void ReadBehind(Station& station, Scan& scan);

  std::variant<std::monostate, LibraryQuestion, Scan, Sorting> work_;
  // Of a base that is not kept in memory: the last that was read whole, and what will be it. Null
  // while the library in memory is known.
  std::shared_ptr<LibraryIndex> read_, reading_;
  int lockedTurns_ = 0;
};

void LibrarySearch::Stop() {
  work_.emplace<std::monostate>();
  lockedTurns_ = 0;
}

void LibrarySearch::Begin(LibraryQuestion query) {
  Stop();
  work_ = std::move(query);
}

bool LibrarySearch::Searching() const {
  return std::holds_alternative<LibraryQuestion>(work_) || std::holds_alternative<Scan>(work_);
}

const char* LibrarySearch::Routine() const {
  if (const auto* query = std::get_if<LibraryQuestion>(&work_)) return RoutineOf(*query);
  if (const auto* scan = std::get_if<Scan>(&work_)) return RoutineOf(scan->query);
  return kListRoutine;
}

// What holds all that was stored until now; null: it has to be read.
std::shared_ptr<LibraryIndex> LibrarySearch::Known(Station& station, std::optional<CardSet> cards) {
  if (cards) {
    read_.reset();
    reading_.reset();
    return std::make_shared<LibraryIndex>(*std::move(cards));
  }
  const int64_t counter = station.base.Db().ChangeCounter();
  if (read_ && read_->ChangeCounter() == counter) return read_;
  if (!reading_ || reading_->ChangeCounter() != counter)
    reading_ = std::make_shared<LibraryIndex>(counter);
  return nullptr;
}

std::shared_ptr<LibraryIndex> LibrarySearch::LastRead(const Station& station) const {
  if (read_) return read_;
  auto cards = CardsAsLastRead(station);
  return cards ? std::make_shared<LibraryIndex>(*std::move(cards)) : nullptr;
}

// A small library is read as fast as it is searched; a large one answers from what is known of it.
void LibrarySearch::Start(Station& station) {
  LibraryQuestion query = std::get<LibraryQuestion>(work_);
  auto cards = CardsToList(station);
  if (!query.IsOfGenre() && !LongEnough(station, cards)) return Stop();
  if (auto known = Known(station, std::move(cards))) {
    work_ = Scan{std::move(query), std::move(known), Pass::kOnly};
    return;
  }
  auto last = LastRead(station);
  const bool atOnce = last && last->Count() > LibraryIndex::kSliceRows;
  work_ = atOnce ? Scan{std::move(query), std::move(last), Pass::kStale}
                 : Scan{std::move(query), reading_, Pass::kOnly};
}

void LibrarySearch::ReadOn(Station& station) {
  reading_->ReadSlice(station.base.Db());
  if (reading_->Complete()) read_ = std::exchange(reading_, nullptr);
}

namespace {

void TestRows(Scan& scan, BrowseRows& list) {
  const bool atOnce = scan.pass != Pass::kRepeat;
  const uint32_t end = std::min(scan.index->Count(), scan.tested + kTestRows);
  if (atOnce && !scan.shown && end > scan.tested) {
    if (!scan.query.IsOfGenre()) list.sorted = false;
    list.rows.Show(scan.index->Rows());
    scan.shown = list.rows.Generation();
  }
  for (; scan.tested < end; ++scan.tested) {
    if (!scan.query.Wants(*scan.index, scan.tested)) continue;
    scan.found.push_back(scan.tested);
    if (atOnce) list.rows.Append(scan.tested);
  }
}

// The rows found at last in place of those found at once. Where they are the same records, whoever
// has chosen one of them keeps his choice.
void ShowInstead(BrowseRows& list, Scan& scan) {
  const std::shared_ptr<ListedCards>& rows = scan.index->Rows();
  bool same = scan.found.size() == list.rows.size();
  for (size_t row = 0; same && row < scan.found.size(); ++row)
    same = rows->CodeOf(scan.found[row]) == list.rows.Code(row);
  if (same) return list.rows.Renew(rows, std::move(scan.found));
  list.rows.Show(rows);
  for (const uint32_t row : scan.found) list.rows.Append(row);
}

}  // namespace

void LibrarySearch::ScanSlice(Station& station, Scan& scan) {
  BrowseRows& list = station.browse.ListRech;
  if (scan.shown && *scan.shown != list.rows.Generation())
    return Stop();  // something else is shown
  if (scan.AtTheEnd() && scan.pass == Pass::kStale)
    ReadBehind(station, scan);
  else if (scan.AtTheEnd() && reading_)
    ReadOn(station);
  TestRows(scan, list);
  if (scan.pass != Pass::kStale && scan.index->Complete() && scan.AtTheEnd())
    Finish(station, std::move(scan));
}

// Where the library in memory does not come to be known, by the search's own reading.
void LibrarySearch::ReadBehind(Station& station, Scan& scan) {
  std::shared_ptr<LibraryIndex> anew;
  const bool own = !CardsAsLastRead(station) || scan.ReadOnForLong();
  if (own) {
    ReadOn(station);
    if (!reading_) anew = read_;
  } else if (auto cards = CardsToList(station)) {
    anew = std::make_shared<LibraryIndex>(*std::move(cards));
  }
  ++scan.behind;
  if (!anew) return;
  scan.query.Forget();
  scan = Scan{std::move(scan.query), std::move(anew), Pass::kRepeat, scan.shown};
}

void LibrarySearch::Finish(Station& station, Scan scan) {
  BrowseRows& list = station.browse.ListRech;
  Stop();
  if (CardsAsLastRead(station)) {  // which serves the next one
    read_.reset();
    reading_.reset();
  }
  if (scan.pass == Pass::kRepeat) ShowInstead(list, scan);
  if (!scan.query.IsOfGenre()) station.engine.LastActivityTimer = station.Timer();
  if (list.sorted) BeginSort(list);
}

void LibrarySearch::BeginSort(const BrowseRows& list) {
  if (!Searching()) work_.emplace<Sorting>(list);  // else sorted at the search's end
}

void LibrarySearch::SortSlice(BrowseRows& list, Sorting& sorting) {
  if (sorting.generation != list.rows.Generation()) return Stop();
  if (!sorting.rows.Slice()) return;
  list.rows.Reorder(sorting.rows.Places());
  work_.emplace<std::monostate>();
}

void LibrarySearch::WorkSlice(Station& station) {
  if (std::holds_alternative<LibraryQuestion>(work_)) Start(station);
  if (auto* scan = std::get_if<Scan>(&work_))
    ScanSlice(station, *scan);
  else if (auto* sorting = std::get_if<Sorting>(&work_))
    SortSlice(station.browse.ListRech, *sorting);
}

SearchTurn LibrarySearch::Slice(Station& station, bool again) {
  try {
    WorkSlice(station);
    lockedTurns_ = 0;
  } catch (const std::exception& fault) {
    if (again && IsOfLockedBase(fault) && ++lockedTurns_ < kLockedTurns) return SearchTurn::kLater;
    LogCurrentException(station, Routine());
    Stop();
    reading_.reset();
  }
  return AtWork() ? SearchTurn::kMore : SearchTurn::kDone;
}

bool LibrarySearch::ReadAhead(Station& station) {
  if (AtWork()) return false;
  if (ReadCardsAhead(station)) return true;
  try {
    if (Known(station, CardsToList(station))) return false;
    ReadOn(station);
    return true;
  } catch (const std::exception&) {
    reading_.reset();  // nobody asked for it: a search will tell
    return false;
  }
}

// --- the events ---

namespace {

LibrarySearch& SearchOf(Station& station) {
  auto& search = station.browse.search;
  if (!search) search = std::make_shared<LibrarySearch>();
  return *search;
}

void ToTheEnd(Station& station) {
  while (SearchOf(station).Slice(station, false) != SearchTurn::kDone) {
  }
}

}  // namespace

void BeginTextSearch(Station& station) {
  SearchOf(station).Begin(TextQuery(station.browse.Rech));
}

void BeginGenreSearch(Station& station, const std::string& genre) {
  station.browse.ListRech.rows.clear();
  station.browse.charactersWanted = 0;
  SearchOf(station).Begin(LibraryQuestion::OfGenre(genre));
}

void BeginColumnClick(Station& station, int column) {
  if (column < 0 || column >= kColumns) return;
  BrowseRows& list = station.browse.ListRech;
  list.sorted = true;
  list.sortColumn = column;
  SearchOf(station).BeginSort(list);
}

SearchTurn SearchSlice(Station& station) {
  const NoLockWait atOnce(station.base.Waiting());
  return SearchOf(station).Slice(station, true);
}

bool ReadAheadSlice(Station& station) {
  if (!station.base.IsOpen()) return false;
  const NoLockWait atOnce(station.base.Waiting());
  return SearchOf(station).ReadAhead(station);
}

void StopSearch(Station& station) {
  if (station.browse.search) station.browse.search->Stop();
}

void OnAir::Rech_Change(Station& station) {
  StopSearch(station);
  try {
    const std::string typed = station.browse.Rech;
    if (!LongEnough(station, CardsToList(station))) return;
    station.platform.loop.Yield();
    if (station.browse.Rech != typed) return;  // typed on meanwhile: that text was searched
  } catch (const std::exception&) {
    return LogCurrentException(station, kTextRoutine);
  }
  BeginTextSearch(station);
  ToTheEnd(station);
}

void OnAir::RechGenre_Click(Station& station, const std::string& genre) {
  BeginGenreSearch(station, genre);
  ToTheEnd(station);
}

void OnAir::ListRech_ColumnClick(Station& station, int column) {
  BeginColumnClick(station, column);
  ToTheEnd(station);
}

}  // namespace zemo
