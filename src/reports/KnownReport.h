// The broadcast report in memory, as far as it is asked for on air: its newest rows one by one, and
// of all older ones between which moments they lie. Rows come with rising CODE, and all but always
// with rising DATENUM: so the newest rows by their moment are found among the newest by CODE, and
// that no older one has a later moment proves them. Where it does not, and for who looks further
// back, the base is asked. Nothing of it grows with the report but its first reading: slices of
// some milliseconds, two or three a tick.
//
// Until it is known, requests read on with yields and go by the base's queries where others write
// faster than that; "rapportzemo.txt" shows the newest of the last rows, and the purge waits for a
// tick.
//
// It is true by the signs of store/KnownTable.h: after a write of another program the pages of the
// table are looked at again, and rows are read of those alone that hold something else. The pages
// of a thousand rows have one mark, which the second reading takes first: in a base that no other
// program writes to nobody looks at pages.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/Collation.h"
#include "store/Database.h"
#include "store/KnownTable.h"
#include "store/TablePages.h"

namespace zemo {

struct Station;

// What is known of rows that are not kept one by one. There can be fewer of them, and they can lie
// closer together.
struct OlderRows {
  int64_t rows = 0;
  double newest = -std::numeric_limits<double>::infinity();  // DATENUM
  double oldest = std::numeric_limits<double>::infinity();
  bool odd = false;  // a DATENUM may be neither a number nor Null

  void Add(const OlderRows& others);
};

// Artists by numbers, and which of them the dialect's = takes for the same.
class ReportArtists {
 public:
  static constexpr uint32_t kNone = std::numeric_limits<uint32_t>::max();

  uint32_t Number(std::string_view spelling);
  const std::string& Spelling(uint32_t number) const { return artists_[number]->first; }
  // Equal for artists that are equal where the one that is asked for is written in ASCII, or has
  // other letters.
  uint32_t Group(uint32_t number, bool ascii) const { return groups_[number][ascii ? 1 : 0]; }
  uint32_t GroupOf(const std::string& artist, bool ascii) const;  // kNone: of none of them
  size_t Count() const { return artists_.size(); }

 private:
  struct AnyCase {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const {
      return CompareFrenchCase(a, b) < 0;
    }
  };
  std::unordered_map<std::string, uint32_t> numbers_;
  std::vector<const std::pair<const std::string, uint32_t>*> artists_;
  std::vector<std::array<uint32_t, 2>> groups_;
  std::map<std::string, uint32_t, AnyCase> anyCase_;
  std::unordered_map<std::string, uint32_t> asciiCase_;
};

// The row's moment is a minute ahead of `now`, both day serials: the clock went back since.
bool AheadOfClock(double moment, double now);

// Thread: the logic's.
class KnownReport : public KnownTable {
 public:
  struct Sizes {
    int64_t window = 1024;      // CODEs up to the newest whose rows are kept
    int64_t sliceCodes = 8192;  // a slice of the first reading; a report of one is always known
    int runBits = 10;           // pages have one mark whose last CODEs share all higher bits
    int slicePages = 1000;
  };

  KnownReport() : KnownReport(Sizes()) {}
  explicit KnownReport(Sizes sizes)
      : KnownTable("Rapport", {.atOnce = kAllOwn, .aSlice = kAllOwn}),
        sizes_(sizes),
        window_(sizes.window) {}

  // Takes in what this program wrote since the last look, without a look at others' writes, and
  // keeps the rows above `floor` from now on. Throws StoreError.
  void Follow(Database& db, int64_t floor);

  // The answers, of what was read last. None: the base is to be asked.
  //
  // Auteur of the `count` newest rows that are neither pip, jingle nor spot, the newest first and
  // among rows of one moment the highest CODE; where the newest is ahead of `now`, a day serial, by
  // a minute, those with the highest CODEs.
  std::optional<std::vector<std::string>> NewestArtists(int count, double now) const;
  // CODE of the artist's newest row where that is above `floor`, else 0.
  std::optional<int64_t> NewestRowOf(const std::string& artist, int64_t floor);
  // The highest CODE; none for an empty report as well.
  std::optional<int64_t> NewestCode() const;
  // A CODE up to which all rows stand whose DATENUM is at most `moment`; none: there is no such
  // row.
  std::optional<int64_t> LastUpTo(double moment) const;
  int64_t Floor() const { return floor_; }  // the rows above are kept
  const OlderRows& Older() const { return older_; }

 private:
  struct Row {
    int64_t code;
    double moment;  // -infinity for Null
    uint32_t artist;
    bool isText;  // the artist, who else is equal to nobody
    bool aired, hasMoment, odd;
  };
  using Rows = std::vector<Row>;
  // The rows behind the run before it up to its last CODE.
  struct Run {
    int64_t lastCode = kBelowAll;
    PageMark mark{};  // none: its pages are not known
    OlderRows older;  // of its rows up to `floor_`
  };
  struct Stretch {
    std::vector<Run> runs;
    std::vector<Range> others;  // whose rows are to be read
    std::vector<Rows> rows;     // of each of them
  };
  struct Newest {
    double moment = -std::numeric_limits<double>::infinity();
    int64_t code = kBelowAll;  // none
  };

  void BeginPass(Database& db, bool keepable) override;
  void ReadOn(Database& db) override;
  void ReadAgain(Database& db, size_t most) override;
  void Forget();
  bool LookAtPages(Database& db, Stretch& stretch) const;
  void LookAtCodes(Database& db, Stretch& stretch) const;
  bool IsKnownRun(int64_t before, const Run& run) const;
  void ReadOwnOlder(Database& db, const std::vector<int64_t>& codes);
  OlderRows ReadOlder(Database& db, Range range) const;
  Rows ReadRows(Database& db, Range range);
  void Take(Stretch stretch);
  void Replace(Range range, const Rows& rows);
  void KeepWindowShort();
  void Widen(Database& db, int64_t floor);
  void AddUp();
  void CountArtists();
  void DropArtists();
  size_t RunAt(int64_t code) const;
  int64_t Before(size_t run) const { return run == 0 ? kBelowAll : runs_[run - 1].lastCode; }
  // Something was read, and its moments compare as numbers do.
  bool Judges() const { return readOnce_ && !odd_ && !older_.odd; }
  bool NoneLater(double moment) const { return older_.rows == 0 || moment > older_.newest; }

  static constexpr size_t kAllOwn = RowNotes::kMostRows + 1;

  const Sizes sizes_;
  int64_t window_;        // grows with what is asked for
  bool byPages_ = false;  // of the pass
  int64_t head_ = 0;      // the highest CODE at the begin of the pass
  int64_t floor_ = kBelowAll;
  std::vector<Run> runs_;  // in order, to the end once a pass is whole
  OlderRows older_;        // of all runs
  Rows rows_;              // above `floor_`, in order of CODE
  bool odd_ = false;       // one of them is
  ReportArtists artists_;
  bool counted_ = false;                       // newest_ is of rows_
  std::array<std::vector<Newest>, 2> newest_;  // by group: of other letters, of ASCII
};

// The station's own, from the first asking on. Throws nothing.
KnownReport::State LookAtReport(Station& station);
// One slice of reading ahead; true when more is left to be read, and can be now.
bool ReadReportAhead(Station& station);

}  // namespace zemo
