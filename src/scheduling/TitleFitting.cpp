// One round of the plain end-of-hour fitting: two families of chains of rows, of which the one with
// the smallest running time comes to the front of the list.
#include <algorithm>
#include <cstddef>
#include <exception>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "library/KnownCards.h"
#include "library/OnAirRows.h"
#include "scheduling/EndOfHourFitting.h"
#include "scheduling/FitCards.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/SeekCode.h"
#include "store/StoreError.h"

namespace zemo {

namespace {

constexpr double kMayRunOverMs = 15000;

// Chain n (from 0) starts with row n + 1 in the first family, and with row n - N + 1 in the second.
struct FitTables {
  explicit FitTables(size_t rows) : ChainesFit(2 * rows), SommesFit(2 * rows) {}
  std::vector<std::string> ChainesFit;  // row numbers, two digits each; from row 100 on three,
                                        // which are then read wrong
  std::vector<int32_t> SommesFit;       // running length, ms
};

// What the search reads of a row.
struct FitRow {
  double lengthMs, airMs;
};

// Up to where the list may run: what is left to the hour behind the element on air, and a little.
double TargetMs(const Station& station) {
  const EngineState& engine = station.engine;
  const double leftSec = (station.Now().hour + 1) * 3600.0 - static_cast<double>(station.Timer());
  return leftSec * 1000 - engine.RemainingMs + static_cast<double>(engine.MixPointMs) +
         static_cast<double>(engine.BufferOffsetSec) * 1000 + kMayRunOverMs;
}

// Sums are 32-bit integers: past their range the round fails.
int32_t Sum(double ms) {
  if (ms < std::numeric_limits<int32_t>::min() || ms > std::numeric_limits<int32_t>::max())
    throw StoreError(kErrOverflow, "a chain of titles is too long");
  return static_cast<int32_t>(ms);
}

std::string ChainLink(int row) {
  return (row < 10 ? "0" : "") + std::to_string(row);
}

class ChainSearch {
 public:
  ChainSearch(std::vector<FitRow> rows, double targetMs)
      : tables_(rows.size()),
        rows_(std::move(rows)),
        count_(static_cast<int>(rows_.size())),
        targetMs_(targetMs) {}

  // The rows from the first on, the last one never among them.
  void FirstFamily() {
    for (int i = 1; i <= count_; ++i) {
      const size_t chain = Begin(i - 1, i);
      for (int j = 1; j <= count_ - 1; ++j)
        if (j != i && !Extend(chain, j)) break;
    }
  }
  // The rows behind the first of the chain, and on from the head of the list.
  void SecondFamily() {
    for (int i = 1; i <= count_; ++i) {
      const size_t chain = Begin(count_ + i - 1, i);
      for (int j = i % count_ + 1; j != i; j = j % count_ + 1)
        if (!Extend(chain, j)) break;
    }
  }
  const FitTables& Tables() const { return tables_; }

 private:
  const FitRow& Row(int number) const { return rows_[static_cast<size_t>(number - 1)]; }
  size_t Begin(int chain, int row) {
    const auto at = static_cast<size_t>(chain);
    tables_.ChainesFit[at] = ChainLink(row);
    tables_.SommesFit[at] = Sum(Row(row).lengthMs);
    return at;
  }
  // False when the chain has passed the target already, also by its first title alone.
  bool Extend(size_t chain, int row) {
    int32_t& sumMs = tables_.SommesFit[chain];
    if (sumMs > targetMs_) return false;
    sumMs = Sum(sumMs + Row(row).airMs);
    tables_.ChainesFit[chain] += ChainLink(row);
    return true;
  }

  FitTables tables_;
  std::vector<FitRow> rows_;
  int count_;
  double targetMs_;
};

std::vector<FitRow> ReadRows(const OnAirList& list) {
  std::vector<FitRow> rows;
  rows.reserve(static_cast<size_t>(list.Count()));
  for (const OnAirRow& row : list) rows.push_back({row.TakenMs(), row.AirMs()});
  return rows;
}

// Takes the codes of the chain's rows out of `codes`, which has 0 in their places then.
std::vector<int32_t> TakeCodes(const std::string& chain, std::vector<int32_t>& codes) {
  std::vector<int32_t> taken;
  for (size_t at = 0; at < chain.size(); at += 2) {
    const auto row = static_cast<size_t>(ValInt(chain.substr(at, 2)));
    if (row < 1 || row > codes.size())
      throw std::out_of_range("the list has no row " + std::to_string(row));
    taken.push_back(codes[row - 1]);
    codes[row - 1] = 0;
  }
  return taken;
}

// The cards are read before the list is touched, so that a failed read loses nothing.
void BringToFront(Station& station, const std::string& chain) {
  std::vector<int32_t> codes = station.PL.Codes();
  const std::vector<int32_t> taken = TakeCodes(chain, codes);
  const std::vector<OnAirElement> opening = RowsOfCards(station, taken);
  ForgetListOrder(station);
  for (size_t row = codes.size(); row >= 1; --row)
    if (codes[row - 1] == 0) station.PL.Remove(static_cast<int>(row));
  int position = 0;
  for (const OnAirElement& element : opening) station.PL.Insert(++position, element);
}

}  // namespace

std::vector<OnAirElement> RowsOfCards(Station& station, const std::vector<int32_t>& codes) {
  const auto known = CardsListedAlready(station);
  std::unique_ptr<Recordset> stored;  // for what memory does not know
  std::vector<OnAirElement> rows;
  for (const int32_t code : codes) {
    const PackedCard* card = known ? FindCard(*known, code) : nullptr;
    if (known && !card) continue;
    if (card && !card->oddCells) {
      rows.push_back(MusicRow(*card, *known->texts));
      continue;
    }
    if (!stored) stored = station.base.Table("Discotheque");
    if (SeekCode(*stored, code)) rows.push_back(MusicRow(*stored));
  }
  return rows;
}

std::optional<int32_t> BringBestChainForward(Station& station) {
  try {
    if (station.PL.Empty()) return 0;
    ChainSearch search(ReadRows(station.PL), TargetMs(station));  // 1, 2
    search.FirstFamily();                                         // 3
    search.SecondFamily();                                        // 4
    const auto& sums = search.Tables().SommesFit;                 // 5
    const auto winner = std::min_element(sums.begin(), sums.end());
    const int32_t score = *winner;
    BringToFront(station,
                 search.Tables().ChainesFit[static_cast<size_t>(winner - sums.begin())]);  // 6
    return score;
  } catch (const std::exception&) {
    LogCurrentException(station, "AjusteTitres");
  }
  return std::nullopt;
}

}  // namespace zemo
