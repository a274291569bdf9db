// VoirRapport: the rows of a span out of a report of any length. The table has no index on the
// moment of its rows, but they come with rising CODE and all but always with rising moment. So
// those between the two bounds, which are found by halving, are read and listed first; then the
// rest of the table is searched for rows of the span that a clock set back, or another hand, put
// elsewhere. Where there is one, all of it is read in their order.
//
// A base that another process has locked for a moment is asked again, with the loop turning.
#include <algorithm>
#include <array>
#include <exception>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "reports/ReportScreen.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "store/BoundQuery.h"
#include "store/RowView.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr int64_t kReadCodes = 5000;     // of a slice: 8 ms where each row of it is of the span
constexpr int64_t kSearchCodes = 40000;  // of a slice in which no row is
constexpr int64_t kBesideCodes = 2000;   // read beside the bounds, for hours that came twice
constexpr int kLockedTurns = 500;        // of 10 ms: as long as any other query waits
constexpr int64_t kFirst = std::numeric_limits<int64_t>::min();
constexpr int64_t kPastAll = std::numeric_limits<int64_t>::max();

// The day serial of "dd/mm/yyyy"; none where it is no day.
std::optional<double> SerialOf(const std::string& day) {
  const std::string key = DateKeyOfText(day);
  if (key.empty()) return std::nullopt;
  return DaySerial(ValInt(key.substr(0, 4)), ValInt(key.substr(4, 2)), ValInt(key.substr(6, 2)));
}

struct Span {
  double begin = 0, end = 0;  // day serials; the end is no more in it
};

std::optional<Span> SpanOf(const ReportEditor& editor) {
  const auto first = SerialOf(editor.LblDate);
  if (!first) return std::nullopt;
  const auto last = SerialOf(editor.LblDateFin);
  return Span{*first, last.value_or(*first) + 1};
}

// Another reading has begun, or the screen was closed. Not a std::exception, so that no error
// boundary takes it for a fault.
struct ReadingEnded {};

// One reading. What yields throws ReadingEnded.
class Reading {
 public:
  Reading(Station& station, ReportEditor& editor, const Span& span)
      : station_(station), editor_(editor), span_(span), number_(editor.readings) {
    AddFilter("Auteur", editor.FiltreArtiste);
    AddFilter("GENRE", editor.FiltreGenre);
    AddFilter("VARIETE", editor.FiltreVariete);
  }

  // CODE of the first and the last row there is.
  std::array<int64_t, 2> Ends() const { return {NextCode(kFirst), LastCode()}; }

  std::shared_ptr<const ReportRows> BetweenTheBounds() {
    lastCode_ = LastCode();
    from_ = FirstCodeFrom(span_.begin) - kBesideCodes;
    to_ = FirstCodeFrom(span_.end) + kBesideCodes;
    return Read(from_, to_);
  }
  // Those and all others of the span; null where there are no others.
  std::shared_ptr<const ReportRows> AlsoElsewhere() {
    if (!AnyIn(kFirst, from_) && !AnyIn(to_, kPastAll)) return nullptr;
    return Read(kFirst, kPastAll);
  }

 private:
  void EndIfOver() const {
    if (editor_.readings != number_) throw ReadingEnded{};
  }
  void Yield() const {
    station_.platform.loop.Yield();
    EndIfOver();
  }

  void Ask(const BoundQuery& query, const Database::TakeRow& take) const {
    for (int turn = 0;; ++turn) {
      try {
        const NoLockWait atOnce(station_.base.Waiting());
        return station_.base.Db().ReadRows(query.text, query.values, take);
      } catch (const StoreError& error) {
        if (error.Number() != kErrLocked || turn == kLockedTurns) throw;
      }
      station_.platform.loop.WaitYield();
      EndIfOver();
    }
  }

  void AddFilter(const std::string& field, const std::string& begin) {
    if (!Trim(begin).empty()) filters_.Add("AND " + field + " LIKE ? ", {begin + "*"});
  }

  BoundQuery QueryOf(const std::string& what, int64_t fromCode, int64_t toCode) const {
    BoundQuery query{what +
                         " FROM Rapport WHERE CODE >= ? AND CODE < ? AND DATENUM >= ? AND "
                         "DATENUM < ? ",
                     {fromCode, toCode, span_.begin, span_.end}};
    return query.Add(filters_);
  }

  // The next CODE from there on; kPastAll for none.
  int64_t NextCode(int64_t from, double* moment = nullptr) const {
    int64_t code = kPastAll;
    Ask({"SELECT TOP 1 CODE, DATENUM FROM Rapport WHERE CODE >= ? ORDER BY CODE", {from}},
        [&](const RowView& row) {
          code = row.Int(0);
          if (moment) *moment = row.Real(1);
        });
    return code;
  }

  int64_t LastCode() const {
    int64_t code = 0;
    Ask({"SELECT TOP 1 CODE FROM Rapport ORDER BY CODE DESC"},
        [&](const RowView& row) { code = row.Int(0); });
    return code;
  }

  // From which CODE on the rows are of that moment or later, if they come by their moment.
  int64_t FirstCodeFrom(double moment) const {
    int64_t low = std::min(NextCode(kFirst), lastCode_), high = lastCode_ + 1;
    while (low < high) {
      const int64_t middle = low + (high - low) / 2;
      double found = 0;
      const int64_t code = NextCode(middle, &found);
      if (code >= high || found >= moment)
        high = middle;
      else
        low = code + 1;
    }
    return low;
  }

  // Goes through the codes of a range in slices, past those that no row has; `slice` is given the
  // bounds of each and may end it by false. Where little was done no other event is served.
  template <typename Slice>
  void Walk(int64_t from, int64_t to, int64_t codes, Slice slice) {
    for (int64_t code = NextCode(from); code < to; code = NextCode(code)) {
      const int64_t end = code < to - codes ? code + codes : to;
      if (!slice(code, end)) return;
      work_ += (std::min(end, lastCode_ + 1) - code) * (kSearchCodes / codes);
      code = end;
      if (work_ < kSearchCodes) continue;
      work_ = 0;
      Yield();
    }
  }

  std::shared_ptr<const ReportRows> Read(int64_t from, int64_t to);
  bool AnyIn(int64_t from, int64_t to);

  Station& station_;
  ReportEditor& editor_;
  const Span span_;
  const uint64_t number_;
  BoundQuery filters_;
  int64_t lastCode_ = 0;
  int64_t from_ = 0, to_ = 0;  // between the bounds
  int64_t work_ = 0;           // since the last yield, in codes searched
};

std::shared_ptr<const ReportRows> Reading::Read(int64_t from, int64_t to) {
  static const std::string columns =
      "SELECT LADATE, HEURE, AUTEUR, TITRE, GENRE, VARIETE, AUTEURCOMPOSITEUR, LABEL, REFERENCE, "
      "DATENUM";
  auto rows = std::make_shared<ReportRows>();
  ReportRows::Texts texts;
  Walk(from, to, kReadCodes, [&](int64_t fromCode, int64_t toCode) {
    Ask(QueryOf(columns, fromCode, toCode), [&](const RowView& row) {
      for (size_t column = 0; column < texts.size(); ++column)
        texts[column] = row.Text(static_cast<int>(column));
      rows->Add(row.Real(RapCol::kMoment), texts);
    });
    return true;
  });
  rows->Finish([this] { Yield(); });
  return rows;
}

bool Reading::AnyIn(int64_t from, int64_t to) {
  bool found = false;
  Walk(from, to, kSearchCodes, [&](int64_t fromCode, int64_t toCode) {
    Ask(QueryOf("SELECT TOP 1 CODE", fromCode, toCode), [&](const RowView&) { found = true; });
    return !found;
  });
  return found;
}

void List(ReportEditor& editor, std::shared_ptr<const ReportRows> rows) {
  ReportList& list = editor.ListRap;
  list.order.resize(rows->Count());
  std::iota(list.order.begin(), list.order.end(), 0);
  list.rows = std::move(rows);
  list.sorting = {};
  list.chosen.reset();
  ++list.generation;
  RotationList none;
  none.generation = editor.ListStat.generation + 1;
  editor.ListStat = std::move(none);
  editor.shares.reset();
  editor.LblStat.clear();
  editor.LblCompteur = std::to_string(list.Count()) + " Fiches";
  if (editor.listed) editor.listed();
}

class AtWork {
 public:
  explicit AtWork(bool& flag) : flag_(flag) { flag_ = true; }
  ~AtWork() { flag_ = false; }
  AtWork(const AtWork&) = delete;

 private:
  bool& flag_;
};

void ReadInto(Station& station, ReportEditor& editor) {
  const auto span = SpanOf(editor);
  if (!span) return List(editor, std::make_shared<ReportRows>());
  Reading reading(station, editor, *span);
  editor.ends = reading.Ends();
  List(editor, reading.BetweenTheBounds());
  if (auto all = reading.AlsoElsewhere()) List(editor, std::move(all));
}

// The number of the same row among others; none where it is gone.
std::optional<uint32_t> RowLike(const ReportRows& rows, const ReportRows& before, uint32_t row) {
  const auto same = [&](uint32_t other) {
    for (int column = 0; column < static_cast<int>(RapCol::kTexts); ++column)
      if (rows.Text(other, column) != before.Text(row, column)) return false;
    return rows.Moment(other) == before.Moment(row);
  };
  for (uint32_t other = 0; other < rows.Count(); ++other)
    if (rows.Moment(other) == before.Moment(row) && same(other)) return other;
  return std::nullopt;
}

void ListAnew(ReportEditor& editor, std::shared_ptr<const ReportRows> rows,
              std::vector<uint32_t> order) {
  ReportList& list = editor.ListRap;
  std::optional<uint32_t> chosen;
  if (list.chosen) chosen = RowLike(*rows, *list.rows, list.order[*list.chosen]);
  list.rows = std::move(rows);
  list.order = std::move(order);
  list.chosen.reset();
  if (chosen)
    list.chosen = static_cast<size_t>(std::find(list.order.begin(), list.order.end(), *chosen) -
                                      list.order.begin());
  ++list.generation;
  editor.LblCompteur = std::to_string(list.Count()) + " Fiches";
  if (editor.listed) editor.listed();
}

// In the order in which the list stands.
void ReadBeside(Station& station, ReportEditor& editor) {
  const auto span = SpanOf(editor);
  if (!span) return;
  Reading reading(station, editor, *span);
  const auto ends = reading.Ends();
  if (ends == editor.ends) return;
  auto rows = reading.BetweenTheBounds();
  if (auto all = reading.AlsoElsewhere()) rows = std::move(all);
  std::vector<uint32_t> order(rows->Count());
  std::iota(order.begin(), order.end(), 0);
  const uint64_t generation = editor.ListRap.generation;
  const ListSorting sorting = editor.ListRap.sorting;
  if (sorting.column)
    order = OrderBy(*rows, order, *sorting.column, [&] { station.platform.loop.Yield(); });
  if (sorting.down) std::reverse(order.begin(), order.end());
  // It was sorted otherwise meanwhile: the next look reads again.
  if (editor.ListRap.generation != generation) return;
  editor.ends = ends;
  ListAnew(editor, std::move(rows), std::move(order));
}

}  // namespace

void Report::TakeOver(Station& station, ReportEditor& editor) {
  if (!editor.open || editor.reading) return;
  try {
    ++editor.readings;
    editor.readAnew = false;
    const ReportWork work(editor);
    const AtWork reading(editor.reading);
    ReadBeside(station, editor);
  } catch (const ReadingEnded&) {
    // By what the operator wants to see now, or by the closing.
  } catch (const std::exception&) {
    LogCurrentException(station, "VoirRapport");
  }
  if (editor.open && editor.readAnew) VoirRapport(station, editor);
}

// Readings never stand on each other's stack, however quickly an operator types.
void Report::ReadSpan(Station& station, ReportEditor& editor) {
  ++editor.readings;
  editor.readAnew = editor.reading;
  if (editor.reading) return;
  const ReportWork work(editor);
  const AtWork reading(editor.reading);
  do {
    editor.readAnew = false;
    const uint64_t number = editor.readings;
    try {
      ReadInto(station, editor);
    } catch (const ReadingEnded&) {
      continue;
    } catch (const std::exception&) {
      if (editor.readings == number) List(editor, std::make_shared<ReportRows>());
      if (!editor.readAnew) throw;
    }
  } while (editor.readAnew);
}

// Without the look at the settings that other controls begin with: rows that belong to other days
// must go whatever the base does.
void Report::VoirRapport(Station& station, ReportEditor& editor) {
  try {
    ReadSpan(station, editor);
  } catch (const std::exception&) {
    LogCurrentException(station, "VoirRapport");
  }
}

}  // namespace zemo
