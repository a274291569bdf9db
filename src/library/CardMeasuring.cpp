#include "library/CardMeasuring.h"

#include <array>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/Clock.h"
#include "station/Loudness.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "store/RowView.h"
#include "store/SoundMeasuresTable.h"

namespace zemo {

namespace {

constexpr const char* kRoutine = "Mesures";
constexpr size_t kMostWished = 4;  // so that what is imported next is soon measured
constexpr int kLookedAt = 10;      // cards a turn
constexpr int64_t kLookAgainMs = int64_t{60} * 60 * 1000;
constexpr int64_t kToldAgainMs = int64_t{24} * 60 * 60 * 1000;  // the same fault, in the log
constexpr int64_t kAboveEveryCode = std::numeric_limits<int64_t>::max();

constexpr std::array<std::string_view, 3> kNewestFirst = {
    "SELECT TOP ? CODE, FILENAME FROM Discotheque WHERE CODE < ? ORDER BY CODE DESC",
    "SELECT TOP ? CODE, FILENAME FROM DiscothequeJingle WHERE CODE < ? ORDER BY CODE DESC",
    "SELECT TOP ? CODE, FILENAME FROM DiscothequeVirgule WHERE CODE < ? ORDER BY CODE DESC"};

}  // namespace

CardMeasuring::CardMeasuring(Station& station, SoundMeasurer& measurer)
    : station_(station), measurer_(measurer), belowCode_(kAboveEveryCode) {
  try {
    imported_ = KeptBareExits(station);
    kept_ = !imported_.empty();
  } catch (const std::exception&) {
    LogCurrentException(station, kRoutine);
  }
}

void CardMeasuring::Add(int32_t code, const std::string& file) {
  try {
    imported_.push_back({code, static_cast<int32_t>(station_.base.CnfInt(Cnf::kPmixDef)), file});
    KeepBareExit(station_, imported_.back());
    kept_ = true;
  } catch (const std::exception&) {
    if (!LoggedLately(station_, kExitsToFindFile, kToldAgainMs))
      LogCurrentException(station_, kRoutine);
  }
}

bool CardMeasuring::Turn() {
  if (!station_.base.IsOpen()) return false;
  const NoLockWait atOnce(station_.base.Waiting());
  try {
    Work();
  } catch (const StoreError& error) {
    if (error.Number() == kErrLocked) return true;
    if (!error.MayPass()) DropWhatIsRefused();
    if (!LoggedLately(station_, kRoutine + std::to_string(error.Number()), kToldAgainMs))
      LogCurrentException(station_, kRoutine);
  } catch (const std::exception& error) {
    if (!LoggedLately(station_, error.what(), kToldAgainMs))
      LogCurrentException(station_, kRoutine);
  }
  return looks_ || measured_ || !imported_.empty() || !wished_.empty();
}

// It would be refused at every turn, and nothing else measured.
void CardMeasuring::DropWhatIsRefused() {
  if (measured_)
    wished_.erase(std::exchange(measured_, std::nullopt)->path);
  else if (!imported_.empty())
    imported_.pop_back();
}

void CardMeasuring::Work() {
  StoreMeasured();
  WishForImported();
  looks_ = imported_.empty() && wished_.size() < kMostWished && TargetLoudness(station_);
  if (looks_) LookThroughLibrary();
  looks_ = looks_ && !lookedThroughMs_;
  ForgetKept();
}

void CardMeasuring::StoreMeasured() {
  if (!measured_) measured_ = measurer_.TakeMeasured();
  if (!measured_) return;
  const auto found = wished_.find(measured_->path);
  if (found == wished_.end()) return measured_.reset();
  const Wished& wished = found->second;
  if (!measured_->measures)
    unmeasurable_[wished.file] = wished.stamp;
  else if (wished.bare)
    TakeMeasures(station_, *wished.bare, wished.stamp, *measured_->measures);
  else
    StoreMeasures(station_.base, wished.file, wished.stamp, *measured_->measures);
  wished_.erase(found);
  measured_.reset();
}

void CardMeasuring::WishForImported() {
  while (!imported_.empty() && wished_.size() < kMostWished) {
    const BareExit& bare = imported_.back();
    if (const auto stamp = station_.platform.soundFiles.Stamp(bare.file)) {
      if (!TakeKnownMeasures(station_, bare, *stamp) && !Wish(bare.file, *stamp, bare)) return;
    }
    imported_.pop_back();
  }
}

bool CardMeasuring::Wish(const std::string& file, const SoundFileStamp& stamp,
                         const std::optional<BareExit>& bare) {
  const std::string path = station_.platform.soundFiles.Resolve(file);
  if (const auto known = wished_.find(path); known != wished_.end()) {
    if (bare) known->second.bare = bare;
    return true;
  }
  if (!measurer_.Wish(path)) return false;
  wished_.emplace(path, Wished{file, stamp, bare});
  return true;
}

void CardMeasuring::LookThroughLibrary() {
  const int64_t nowMs = station_.platform.clock.MonotonicMs();
  if (lookedThroughMs_ && nowMs - *lookedThroughMs_ < kLookAgainMs) return;
  lookedThroughMs_.reset();
  std::vector<std::pair<int64_t, std::string>> cards;
  station_.base.Db().ReadRows(
      kNewestFirst[kind_], {kLookedAt, belowCode_},
      [&](const RowView& row) { cards.emplace_back(row.Int(0), Trim(row.Text(1))); });
  for (const auto& [code, file] : cards) {
    if (!LookAt(file)) return;
    belowCode_ = code;
  }
  if (cards.size() == kLookedAt) return;
  belowCode_ = kAboveEveryCode;
  kind_ = (kind_ + 1) % kNewestFirst.size();
  if (kind_ == 0) lookedThroughMs_ = nowMs;
}

bool CardMeasuring::LookAt(const std::string& file) {
  const auto stamp = station_.platform.soundFiles.Stamp(file);
  if (!stamp) return true;
  const auto vain = unmeasurable_.find(file);
  if (vain != unmeasurable_.end() && vain->second == *stamp) return true;
  if (FindMeasures(station_.base.Db(), file, *stamp)) return true;
  return wished_.size() < kMostWished && Wish(file, *stamp, std::nullopt);
}

// When every imported card has been dealt with.
void CardMeasuring::ForgetKept() {
  if (!kept_ || !imported_.empty()) return;
  for (const auto& [path, wished] : wished_)
    if (wished.bare) return;
  kept_ = false;
  ForgetBareExits(station_);
}

}  // namespace zemo
