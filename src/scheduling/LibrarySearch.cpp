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
#include <vector>

#include "platform/EventLoop.h"
#include "scheduling/LibraryIndex.h"
#include "scheduling/RowSort.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int kLargeLibrary = 1000;  // cards, from which on a search needs a character more
constexpr int kShortestText = 3;
constexpr std::string_view kEverything = "*";
constexpr const char* kTextRoutine = "Rech";
constexpr const char* kGenreRoutine = "RechGenre";
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
  if (CharacterCount(Trim(typed)) >= shortest) return true;
  station.browse.ListRech.rows.clear();
  return typed == kEverything;
}

}  // namespace

// Of one station. Either `query_` is at work, or `sort_`, or none. Reading: `reading_`, which
// becomes `known_` at its end.
class LibrarySearch {
 public:
  void Begin(Query query);
  void BeginSort(Station& station);
  void Stop();
  // `again`: whoever calls comes back where another process has the base for a moment.
  SearchTurn Slice(Station& station, bool again);
  bool ReadAhead(Station& station);

 private:
  void Start(Station& station);
  void QuerySlice(Station& station);
  void Test(BrowseRows& list);
  void Read(Station& station);
  void Over(std::shared_ptr<LibraryIndex> index, bool exact, bool shown);
  void ShowAll(BrowseRows& list);
  void Finish(Station& station);
  void SortSlice(BrowseRows& list);

  std::shared_ptr<LibraryIndex> known_, reading_;
  std::optional<Query> query_;
  std::shared_ptr<LibraryIndex> over_;  // what the query tests
  bool exact_ = false;                  // over_ holds all that was stored before the keystroke
  bool shown_ = false;                  // finds go straight into the list; else into found_
  bool cleared_ = false;                // the list shows this query
  uint64_t generation_ = 0;             // of the list that is filled or sorted
  uint32_t tested_ = 0;                 // rows of over_
  std::vector<uint32_t> found_;
  std::optional<RowSort> sort_;
  int lockedTurns_ = 0;
};

void LibrarySearch::Stop() {
  query_.reset();
  over_.reset();
  sort_.reset();
  lockedTurns_ = 0;
}

void LibrarySearch::Over(std::shared_ptr<LibraryIndex> index, bool exact, bool shown) {
  over_ = std::move(index);
  exact_ = exact;
  shown_ = shown;
  tested_ = 0;
  found_.clear();
}

void LibrarySearch::Begin(Query query) {
  Stop();
  query_ = std::move(query);
  cleared_ = false;
}

// A small library is read as fast as it is searched; a large one answers from what is known of it.
void LibrarySearch::Start(Station& station) {
  if (!query_->genre && !LongEnough(station)) return Stop();
  const int64_t counter = station.base.Db().ChangeCounter();
  if (known_ && known_->ChangeCounter() == counter) return Over(known_, true, true);
  if (!reading_ || reading_->ChangeCounter() != counter)
    reading_ = std::make_shared<LibraryIndex>(counter);
  const bool atOnce = known_ && known_->Count() > LibraryIndex::kSliceRows;
  Over(atOnce ? known_ : reading_, !atOnce, true);
}

void LibrarySearch::Test(BrowseRows& list) {
  const uint32_t end = std::min(over_->Count(), tested_ + kTestRows);
  if (shown_ && !cleared_ && end > tested_) {
    if (!query_->genre) list.sorted = false;
    list.rows.Show(over_->Rows());
    generation_ = list.rows.Generation();
    cleared_ = true;
  }
  for (; tested_ < end; ++tested_) {
    if (!query_->Wants(*over_, tested_)) continue;
    found_.push_back(tested_);
    if (shown_) list.rows.Append(tested_);
  }
}

void LibrarySearch::Read(Station& station) {
  reading_->ReadSlice(station.base.Db());
  if (reading_->Complete()) known_ = std::exchange(reading_, nullptr);
}

void LibrarySearch::QuerySlice(Station& station) {
  BrowseRows& list = station.browse.ListRech;
  if (!over_) Start(station);
  if (!query_) return;
  if (cleared_ && generation_ != list.rows.Generation()) return Stop();  // something else is shown
  if (tested_ == over_->Count() && reading_) {
    const std::shared_ptr<LibraryIndex> read = reading_;
    Read(station);
    if (!exact_ && read->Complete()) Over(known_, true, false);
  }
  Test(list);
  if (exact_ && over_->Complete() && tested_ == over_->Count()) Finish(station);
}

// The rows found at last in place of those found at once. Where they are the same records, whoever
// has chosen one of them keeps his choice.
void LibrarySearch::ShowAll(BrowseRows& list) {
  bool same = found_.size() == list.rows.size();
  for (size_t row = 0; same && row < found_.size(); ++row)
    same = over_->Rows()->Code(found_[row]) == list.rows.Code(row);
  if (same) return list.rows.Renew(over_->Rows(), std::move(found_));
  list.rows.Show(over_->Rows());
  for (const uint32_t row : found_) list.rows.Append(row);
}

void LibrarySearch::Finish(Station& station) {
  BrowseRows& list = station.browse.ListRech;
  if (!shown_) ShowAll(list);
  if (!query_->genre) station.engine.LastActivityTimer = station.Timer();
  Stop();
  if (list.sorted) BeginSort(station);
}

void LibrarySearch::BeginSort(Station& station) {
  if (query_) return;  // sorted at its end
  const BrowseRows& list = station.browse.ListRech;
  generation_ = list.rows.Generation();
  sort_.emplace(list.rows, list.sortColumn);
}

void LibrarySearch::SortSlice(BrowseRows& list) {
  if (generation_ != list.rows.Generation()) return Stop();
  if (!sort_->Slice()) return;
  list.rows.Reorder(sort_->Places());
  sort_.reset();
}

SearchTurn LibrarySearch::Slice(Station& station, bool again) {
  try {
    if (query_)
      QuerySlice(station);
    else if (sort_)
      SortSlice(station.browse.ListRech);
    lockedTurns_ = 0;
  } catch (const std::exception& fault) {
    const auto* store = dynamic_cast<const StoreError*>(&fault);
    if (again && store && store->Number() == kErrLocked && ++lockedTurns_ < kLockedTurns)
      return SearchTurn::kLater;
    LogCurrentException(station, query_ ? query_->routine : "ListRech");
    Stop();
    reading_.reset();
  }
  return query_ || sort_ ? SearchTurn::kMore : SearchTurn::kDone;
}

bool LibrarySearch::ReadAhead(Station& station) {
  if (query_ || sort_) return false;
  try {
    const int64_t counter = station.base.Db().ChangeCounter();
    if (known_ && known_->ChangeCounter() == counter) return false;
    if (!reading_) reading_ = std::make_shared<LibraryIndex>(counter);
    Read(station);
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
  SearchOf(station).Begin({kGenreRoutine, true, genre});
}

void BeginColumnClick(Station& station, int column) {
  if (column < 0 || column >= kColumns) return;
  BrowseRows& list = station.browse.ListRech;
  list.sorted = true;
  list.sortColumn = column;
  SearchOf(station).BeginSort(station);
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
