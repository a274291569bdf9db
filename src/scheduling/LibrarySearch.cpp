// A search tests the rows of an index of the library. The index that is at hand serves at once;
// where the base was written to since it was read, the table is read anew behind it and the search
// repeated over that, so that in the end the list holds what the table held after the keystroke.
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

#include "platform/EventLoop.h"
#include "scheduling/LibraryIndex.h"
#include "scheduling/RowSort.h"
#include "station/LockedBase.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"

namespace zemo {

namespace {

constexpr int kLargeLibrary = 1000;  // cards, from which on a search needs a character more
constexpr int kShortestText = 3;
constexpr std::string_view kEverything = "*";
constexpr const char* kTextRoutine = "Rech";
constexpr const char* kGenreRoutine = "RechGenre";
constexpr const char* kListRoutine = "ListRech";
constexpr uint32_t kTestRows = 20000;  // a slice
constexpr int kLockedTurns = 100;      // of kAskAgainMs: as long as any other query waits

struct Query {
  const char* routine;  // in the log
  bool genre;
  std::string wanted;  // in capitals, or the pattern of the genre; empty text: all

  bool Wants(const LibraryIndex& index, uint32_t row) const {
    if (genre) return index.GenreIsLike(row, wanted);
    return wanted.empty() || index.Capitals(row).find(wanted) != std::string_view::npos;
  }
};

Query TextQuery(const std::string& typed) {
  return {kTextRoutine, false, typed == kEverything ? std::string() : UpperLatin(typed)};
}

bool LargeLibrary(Station& station) {
  int cards = 0;
  station.base.Db().ReadRows("SELECT TOP ? Code FROM Discotheque", {kLargeLibrary + 1},
                             [&](const RowView&) { ++cards; });
  return cards > kLargeLibrary;
}

// A text that is too short clears the list. False when there is nothing to look for.
bool LongEnough(Station& station) {
  const std::string& typed = station.browse.Rech;
  const int shortest = kShortestText + (LargeLibrary(station) ? 1 : 0);
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
  Query query;
  std::shared_ptr<LibraryIndex> index;
  Pass pass;
  std::optional<uint64_t> shown{};  // generation of the list that shows the query's finds
  uint32_t tested = 0;
  std::vector<uint32_t> found{};

  bool AtTheEnd() const { return tested == index->Count(); }
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
  void Begin(Query query);
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
  bool KnowsAll(int64_t counter) const { return known_ && known_->ChangeCounter() == counter; }
  void ReadOn(Station& station);

  std::variant<std::monostate, Query, Scan, Sorting> work_;
  std::shared_ptr<LibraryIndex> known_;    // the last that was read whole
  std::shared_ptr<LibraryIndex> reading_;  // will be known_
  int lockedTurns_ = 0;
};

void LibrarySearch::Stop() {
  work_.emplace<std::monostate>();
  lockedTurns_ = 0;
}

void LibrarySearch::Begin(Query query) {
  Stop();
  work_ = std::move(query);
}

bool LibrarySearch::Searching() const {
  return std::holds_alternative<Query>(work_) || std::holds_alternative<Scan>(work_);
}

const char* LibrarySearch::Routine() const {
  if (const auto* query = std::get_if<Query>(&work_)) return query->routine;
  if (const auto* scan = std::get_if<Scan>(&work_)) return scan->query.routine;
  return kListRoutine;
}

// A small library is read as fast as it is searched; a large one answers from what is known of it.
void LibrarySearch::Start(Station& station) {
  Query query = std::get<Query>(work_);
  if (!query.genre && !LongEnough(station)) return Stop();
  const int64_t counter = station.base.Db().ChangeCounter();
  if (KnowsAll(counter)) {
    work_ = Scan{std::move(query), known_, Pass::kOnly};
    return;
  }
  if (!reading_ || reading_->ChangeCounter() != counter)
    reading_ = std::make_shared<LibraryIndex>(counter);
  const bool atOnce = known_ && known_->Count() > LibraryIndex::kSliceRows;
  work_ = atOnce ? Scan{std::move(query), known_, Pass::kStale}
                 : Scan{std::move(query), reading_, Pass::kOnly};
}

void LibrarySearch::ReadOn(Station& station) {
  reading_->ReadSlice(station.base.Db());
  if (reading_->Complete()) known_ = std::exchange(reading_, nullptr);
}

namespace {

void TestRows(Scan& scan, BrowseRows& list) {
  const bool atOnce = scan.pass != Pass::kRepeat;
  const uint32_t end = std::min(scan.index->Count(), scan.tested + kTestRows);
  if (atOnce && !scan.shown && end > scan.tested) {
    if (!scan.query.genre) list.sorted = false;
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
  const std::shared_ptr<PackedRows>& rows = scan.index->Rows();
  bool same = scan.found.size() == list.rows.size();
  for (size_t row = 0; same && row < scan.found.size(); ++row)
    same = rows->Code(scan.found[row]) == list.rows.Code(row);
  if (same) return list.rows.Renew(rows, std::move(scan.found));
  list.rows.Show(rows);
  for (const uint32_t row : scan.found) list.rows.Append(row);
}

}  // namespace

void LibrarySearch::ScanSlice(Station& station, Scan& scan) {
  BrowseRows& list = station.browse.ListRech;
  if (scan.shown && *scan.shown != list.rows.Generation())
    return Stop();  // something else is shown
  if (scan.AtTheEnd() && reading_) {
    ReadOn(station);
    if (scan.pass == Pass::kStale && !reading_)
      scan = Scan{std::move(scan.query), known_, Pass::kRepeat, scan.shown};
  }
  TestRows(scan, list);
  if (scan.pass != Pass::kStale && scan.index->Complete() && scan.AtTheEnd())
    Finish(station, std::move(scan));
}

void LibrarySearch::Finish(Station& station, Scan scan) {
  BrowseRows& list = station.browse.ListRech;
  Stop();
  if (scan.pass == Pass::kRepeat) ShowInstead(list, scan);
  if (!scan.query.genre) station.engine.LastActivityTimer = station.Timer();
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
  if (std::holds_alternative<Query>(work_)) Start(station);
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
  try {
    const int64_t counter = station.base.Db().ChangeCounter();
    if (KnowsAll(counter)) return false;
    if (!reading_) reading_ = std::make_shared<LibraryIndex>(counter);
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
  SearchOf(station).Begin({kGenreRoutine, true, genre});
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
    if (!LongEnough(station)) return;
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
