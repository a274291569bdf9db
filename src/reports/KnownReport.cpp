#include "reports/KnownReport.h"

#include <algorithm>
#include <utility>

#include "reports/BroadcastReport.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr size_t kMostRunsAgain = 4;      // some 3 ms
constexpr int64_t kRowsForAPage = 8;      // that take as long
constexpr int64_t kWidestWindow = 40000;  // CODEs; a card's gap has 16 bits
constexpr size_t kArtistsToSpare = 4096;
constexpr double kNoMoment = -std::numeric_limits<double>::infinity();
constexpr const char* kOffAir[] = {"TOP-H", "JINGLE", "PUB"};

// A CODE is above 0 wherever nobody has made it otherwise.
int64_t FloorFor(int64_t code) {
  return code > 0 ? code : KnownReport::kBelowAll;
}

int64_t BehindCode(int64_t code) {
  return code == KnownReport::kBelowAll ? code : code + 1;
}

// As the dialect's NOT IN of these ASCII names.
bool IsAired(const RowView& row, int column) {
  if (row.IsNull(column)) return false;
  if (!row.IsText(column)) return true;
  const std::string_view genre = row.Text(column);
  return std::none_of(std::begin(kOffAir), std::end(kOffAir),
                      [&](const char* name) { return EqualNoCase(genre, name); });
}

void AddTo(PageMark& run, const PageMark& page) {
  for (size_t i = 0; i < run.size(); ++i)
    run[i] = (run[i] ^ page[i]) * 0x9E3779B97F4A7C15 + (run[i] >> 31) + 1;
}

}  // namespace

bool AheadOfClock(double moment, double now) {
  constexpr double kMinute = 1.0 / (24 * 60);
  return moment - now >= kMinute;
}

void OlderRows::Add(const OlderRows& others) {
  rows += others.rows;
  newest = std::max(newest, others.newest);
  oldest = std::min(oldest, others.oldest);
  odd = odd || others.odd;
}

// --- the artists ---

uint32_t ReportArtists::Number(std::string_view spelling) {
  const auto next = static_cast<uint32_t>(artists_.size());
  const auto [artist, fresh] = numbers_.try_emplace(std::string(spelling), next);
  if (!fresh) return artist->second;
  artists_.push_back(&*artist);
  const auto any = anyCase_.try_emplace(artist->first, next).first->second;
  const auto ascii = asciiCase_.try_emplace(UpperAscii(spelling), next).first->second;
  groups_.push_back({any, ascii});
  return next;
}

uint32_t ReportArtists::GroupOf(const std::string& artist, bool ascii) const {
  if (ascii) {
    const auto found = asciiCase_.find(UpperAscii(artist));
    return found == asciiCase_.end() ? kNone : found->second;
  }
  const auto found = anyCase_.find(artist);
  return found == anyCase_.end() ? kNone : found->second;
}

// --- what is known ---

void KnownReport::BeginPass(Database& db, bool keepable) {
  head_ = keepable ? NewestReportCode(db).value_or(0) : 0;
  const bool other = notes_->All() || (floor_ != kBelowAll && head_ <= floor_);
  if (!keepable || other || runs_.empty()) {
    Forget();
    if (head_ > window_) floor_ = head_ - window_;
  } else {
    KeepWindowShort();
  }
  byPages_ = !runs_.empty();
}

void KnownReport::Forget() {
  runs_.clear();
  rows_.clear();
  artists_ = {};
  floor_ = kBelowAll;
  readOnce_ = false;
  AddUp();
}

void KnownReport::Follow(Database& db, int64_t floor) {
  if (!whole_ || db.InTransaction()) return;
  if (notes_->All()) return StartOver(db);
  if (notes_->Count() > 0) ReadAgain(db, kAllOwn);
  const int64_t wanted = FloorFor(floor);
  if (whole_ && wanted < floor_ && head_ - std::max<int64_t>(wanted, 0) <= kWidestWindow)
    Widen(db, wanted);
}

// --- reading ---

void KnownReport::ReadOn(Database& db) {
  Stretch stretch;
  if (!byPages_ || !LookAtPages(db, stretch)) {
    byPages_ = false;
    stretch = {};
    LookAtCodes(db, stretch);
  }
  size_t run = 0;
  for (const Range& range : stretch.others) {
    while (stretch.runs[run].lastCode != range.to) ++run;
    stretch.runs[run].older = ReadOlder(db, range);
    stretch.rows.push_back(ReadRows(db, range));
  }
  if (OthersWrote(db)) return StartOver(db);
  Take(std::move(stretch));
}

// On from `lastCode_`; false where pages cannot be told.
bool KnownReport::LookAtPages(Database& db, Stretch& stretch) const {
  int64_t before = lastCode_, rows = 0, rowsToRead = 0;
  int pages = 0;
  Run run;
  const auto close = [&] {
    if (IsKnownRun(before, run)) {
      run.older = runs_[RunAt(run.lastCode)].older;
    } else {
      stretch.others.push_back({before, run.lastCode});
      rowsToRead += rows;
    }
    before = run.lastCode;
    stretch.runs.push_back(run);
    run = {};
    rows = 0;
  };
  const auto look = [&](const TablePage& page) {
    const bool begun = run.lastCode != kBelowAll;
    if (begun && page.lastKey >> sizes_.runBits != run.lastCode >> sizes_.runBits) {
      close();
      if (pages + rowsToRead / kRowsForAPage >= sizes_.slicePages) return false;
    }
    AddTo(run.mark, page.mark);
    run.lastCode = page.lastKey;
    rows += page.rows;
    pages += page.filePages;
    return true;
  };
  if (!ReadPages(db, look)) return false;
  if (run.lastCode != kBelowAll) close();
  return !stretch.runs.empty();
}

// One run, whose rows are to be read. Those that are kept take longer.
void KnownReport::LookAtCodes(Database& db, Stretch& stretch) const {
  Run run;
  run.lastCode = kAboveAll;
  db.ReadRows("SELECT TOP 1 CODE FROM Rapport WHERE CODE >= ? AND CODE <= ? ORDER BY CODE",
              {BehindCode(lastCode_), head_ - 1}, [&](const RowView& row) {
                const int64_t first = row.Int(0);
                const int64_t codes =
                    first > floor_ ? sizes_.window
                                   : std::min(sizes_.sliceCodes, floor_ - first + sizes_.window);
                if (head_ - first > codes) run.lastCode = first + codes;
              });
  stretch.others.push_back({lastCode_, run.lastCode});
  stretch.runs.push_back(run);
}

bool KnownReport::IsKnownRun(int64_t before, const Run& run) const {
  const size_t known = RunAt(run.lastCode);
  return known < runs_.size() && runs_[known].lastCode == run.lastCode &&
         runs_[known].mark == run.mark && Before(known) == before;
}

// Of the rows of the range up to `floor_`.
OlderRows KnownReport::ReadOlder(Database& db, Range range) const {
  OlderRows older;
  const int64_t to = std::min(range.to, floor_);
  if (to <= range.from) return older;
  db.ReadRows(
      "SELECT COUNT(*), MAX(DATENUM), MIN(DATENUM) FROM Rapport WHERE CODE >= ? AND CODE <= ?",
      {BehindCode(range.from), to}, [&](const RowView& row) {
        older.rows = row.Int(0);
        if (row.IsNumber(1))
          older.newest = row.Real(1);
        else
          older.odd = !row.IsNull(1);
        if (row.IsNumber(2)) older.oldest = row.Real(2);
      });
  return older;
}

// Those of the range above `floor_`.
KnownReport::Rows KnownReport::ReadRows(Database& db, Range range) {
  Rows rows;
  const int64_t from = std::max(range.from, floor_);
  if (from >= range.to) return rows;
  db.ReadRows(
      "SELECT CODE, DATENUM, Auteur, Genre FROM Rapport WHERE CODE >= ? AND CODE <= ? ORDER BY "
      "CODE",
      {BehindCode(from), range.to}, [&](const RowView& row) {
        const bool number = row.IsNumber(1), isText = row.IsText(2);
        rows.push_back({.code = row.Int(0),
                        .moment = number ? row.Real(1) : kNoMoment,
                        .artist = artists_.Number(row.Text(2)),
                        .isText = isText,
                        .aired = IsAired(row, 3),
                        .hasMoment = number,
                        .odd = number ? row.Real(1) == kNoMoment : !row.IsNull(1)});
      });
  return rows;
}

void KnownReport::Take(Stretch stretch) {
  const int64_t end = stretch.runs.back().lastCode;
  for (size_t i = 0; i < stretch.others.size(); ++i) Replace(stretch.others[i], stretch.rows[i]);
  const auto behind = [](int64_t code, const Run& run) { return code < run.lastCode; };
  const auto first = std::upper_bound(runs_.begin(), runs_.end(), lastCode_, behind);
  const auto last = std::upper_bound(first, runs_.end(), end, behind);
  runs_.insert(runs_.erase(first, last), stretch.runs.begin(), stretch.runs.end());
  AddUp();
  EndSlice(end);
}

// What this program wrote. A row that cannot be read stays noted, with the others.
void KnownReport::ReadAgain(Database& db, size_t most) {
  const std::vector<int64_t> codes = notes_->Take(most);
  if (codes.empty()) return;
  const auto kept = std::upper_bound(codes.begin(), codes.end(), floor_);
  try {
    ReadOwnOlder(db, {codes.begin(), kept});
    if (!whole_) return;
    if (kept != codes.end()) {
      const Range range{*kept - 1, codes.back()};
      Replace(range, ReadRows(db, range));
    }
  } catch (...) {
    for (const int64_t code : codes) notes_->Note(code);
    throw;
  }
  for (const int64_t code : codes) runs_[RunAt(code)].mark = {};  // it may be written back
  if (!rows_.empty()) head_ = std::max(head_, rows_.back().code);
  KeepWindowShort();
  AddUp();
}

// Too many of them are left to a pass.
void KnownReport::ReadOwnOlder(Database& db, const std::vector<int64_t>& codes) {
  std::vector<size_t> runs;
  for (const int64_t code : codes)
    if (runs.empty() || runs.back() != RunAt(code)) runs.push_back(RunAt(code));
  if (runs.size() > kMostRunsAgain) {
    for (const size_t run : runs) runs_[run].mark = {};
    return StartOver(db);
  }
  std::vector<OlderRows> older;
  for (const size_t run : runs) older.push_back(ReadOlder(db, {Before(run), runs_[run].lastCode}));
  for (size_t i = 0; i < runs.size(); ++i) runs_[runs[i]].older = older[i];
}

// --- the window ---

// The rows of the range, as far as they are kept, are these now.
void KnownReport::Replace(Range range, const Rows& rows) {
  const auto behind = [](int64_t code, const Row& row) { return code < row.code; };
  const auto first = std::upper_bound(rows_.begin(), rows_.end(), range.from, behind);
  const auto last = std::upper_bound(first, rows_.end(), range.to, behind);
  rows_.insert(rows_.erase(first, last), rows.begin(), rows.end());
}

void KnownReport::KeepWindowShort() {
  if (floor_ != kBelowAll ? head_ - floor_ <= 2 * window_ : head_ <= 2 * window_) return;
  const int64_t floor = head_ - window_;
  auto row = rows_.begin();
  for (; row != rows_.end() && row->code <= floor; ++row) {
    OlderRows older{.rows = 1, .odd = row->odd};
    if (row->hasMoment) older.newest = older.oldest = row->moment;
    const size_t run = RunAt(row->code);
    if (run < runs_.size()) runs_[run].older.Add(older);
  }
  rows_.erase(rows_.begin(), row);
  floor_ = floor;
  if (artists_.Count() > 2 * rows_.size() + kArtistsToSpare) DropArtists();
  AddUp();
}

// Keeps the rows above that CODE from now on. What is read now may be of another moment than the
// marks.
void KnownReport::Widen(Database& db, int64_t floor) {
  const Range more{floor, floor_};
  const size_t first = RunAt(BehindCode(floor)), last = RunAt(more.to);
  floor_ = floor;
  try {
    const OlderRows below = ReadOlder(db, {Before(first), floor});
    Replace(more, ReadRows(db, more));
    for (size_t run = first; run <= last; ++run) {
      runs_[run].older = run == first ? below : OlderRows();
      runs_[run].mark = {};
    }
  } catch (...) {
    floor_ = more.to;
    throw;
  }
  window_ = std::max(window_, floor == kBelowAll ? head_ : head_ - floor);
  AddUp();
}

void KnownReport::AddUp() {
  older_ = {};
  for (const Run& run : runs_) older_.Add(run.older);
  odd_ = std::any_of(rows_.begin(), rows_.end(), [](const Row& row) { return row.odd; });
  counted_ = false;
}

void KnownReport::CountArtists() {
  for (const bool ascii : {false, true}) {
    std::vector<Newest>& newest = newest_[ascii ? 1 : 0];
    newest.assign(artists_.Count(), {});
    for (const Row& row : rows_) {
      if (!row.isText) continue;
      Newest& known = newest[artists_.Group(row.artist, ascii)];
      if (known.code == kBelowAll || row.moment >= known.moment) known = {row.moment, row.code};
    }
  }
  counted_ = true;
}

void KnownReport::DropArtists() {
  ReportArtists former;
  std::swap(former, artists_);
  for (Row& row : rows_) row.artist = artists_.Number(former.Spelling(row.artist));
}

// The run in which the row stands; their number behind the last one.
size_t KnownReport::RunAt(int64_t code) const {
  const auto found =
      std::lower_bound(runs_.begin(), runs_.end(), code,
                       [](const Run& run, int64_t wanted) { return run.lastCode < wanted; });
  return static_cast<size_t>(found - runs_.begin());
}

// --- the answers ---

std::optional<std::vector<std::string>> KnownReport::NewestArtists(int count, double now) const {
  if (!Judges()) return std::nullopt;
  std::vector<const Row*> aired;
  for (auto row = rows_.rbegin(); row != rows_.rend(); ++row)
    if (row->aired) aired.push_back(&*row);
  const auto later = [](const Row* a, const Row* b) { return a->moment > b->moment; };
  const auto newest = std::min_element(aired.begin(), aired.end(), later);
  const bool ahead = newest != aired.end() && AheadOfClock((*newest)->moment, now);
  const bool all = older_.rows == 0;
  const size_t wanted = std::min(aired.size(), static_cast<size_t>(count));
  if (!all && static_cast<int>(wanted) < count) return std::nullopt;
  if (!ahead) {
    std::stable_sort(aired.begin(), aired.end(), later);
    if (wanted > 0 && !NoneLater(aired[wanted - 1]->moment)) return std::nullopt;
  }
  std::vector<std::string> artists;
  for (size_t i = 0; i < wanted; ++i) artists.push_back(artists_.Spelling(aired[i]->artist));
  return artists;
}

std::optional<int64_t> KnownReport::NewestRowOf(const std::string& artist, int64_t floor) {
  if (!Judges() || artist.find('\0') != std::string::npos) return std::nullopt;
  if (FloorFor(floor) < floor_ && older_.rows > 0) return std::nullopt;
  if (!counted_) CountArtists();
  const bool ascii = IsAscii(artist);
  const uint32_t group = artists_.GroupOf(artist, ascii);
  if (group == ReportArtists::kNone) return 0;
  const Newest& newest = newest_[ascii ? 1 : 0][group];
  if (newest.code <= floor) return 0;  // and so is any older row
  if (!NoneLater(newest.moment)) return std::nullopt;
  return newest.code;
}

std::optional<int64_t> KnownReport::NewestCode() const {
  return rows_.empty() ? std::nullopt : std::optional(rows_.back().code);
}

std::optional<int64_t> KnownReport::LastUpTo(double moment) const {
  for (auto row = rows_.rbegin(); row != rows_.rend(); ++row)
    if (row->hasMoment && row->moment <= moment) return row->code;
  for (auto run = runs_.rbegin(); run != runs_.rend(); ++run)
    if (run->older.oldest <= moment) return std::min(run->lastCode, floor_);
  return std::nullopt;
}

// --- the station's ---

namespace {

KnownReport& ReportInMemory(Station& station) {
  if (!station.knownReport) station.knownReport = std::make_shared<KnownReport>();
  return *station.knownReport;
}

}  // namespace

KnownReport::State LookAtReport(Station& station) {
  if (!station.base.IsOpen()) return KnownReport::State::kUnknown;
  return ReportInMemory(station).Look(station.base.Db());
}

bool ReadReportAhead(Station& station) {
  return station.base.IsOpen() && ReportInMemory(station).ReadAhead(station.base.Db());
}

}  // namespace zemo
