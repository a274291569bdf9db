#include "library/ImportRun.h"

#include <exception>
#include <utility>

#include "platform/Clock.h"
#include "station/Station.h"

namespace zemo {

std::optional<int64_t> TimeLeftMs(int64_t passedMs, size_t done, size_t all) {
  constexpr int64_t kLeastMs = 5000;
  constexpr size_t kLeastFiles = 10;
  if (passedMs < kLeastMs || done < kLeastFiles) return std::nullopt;
  return passedMs * static_cast<int64_t>(all - done) / static_cast<int64_t>(done);
}

ImportRun::ImportRun(Station& station, ImportFiles& files, LibraryTab kind,
                     std::vector<std::string> paths, BareCard bareCard)
    : station_(station),
      files_(files),
      kind_(kind),
      paths_(std::move(paths)),
      bareCard_(std::move(bareCard)),
      import_(station, kind, false) {
  report_.TakeUnknownGenres(import_.UnknownGenres());
}

ImportRun::Turn ImportRun::Slice() {
  if (!station_.base.IsOpen()) return Turn::kLater;
  const NoLockWait atOnce(station_.base.Waiting());
  try {
    return Step();
  } catch (const StoreError& error) {
    if (error.Number() == kErrLocked || !station_.base.IsOpen()) return Turn::kLater;
    LogCurrentException(station_, "Ajouter");
  } catch (const std::exception&) {
    LogCurrentException(station_, "Ajouter");
  }
  return Turn::kDone;
}

ImportRun::Turn ImportRun::Step() {
  if (!cardsKnown_) {
    if (import_.ReadCardsSlice()) return Turn::kMore;
    cardsKnown_ = true;
    begunMs_ = station_.platform.clock.MonotonicMs();
    files_.Begin(std::move(paths_), import_.Known());
  }
  if (!reading_) reading_ = files_.Take();
  if (!reading_) {
    const ImportFiles::Count found = files_.Found();
    return found.all && found.files == report_.Done() ? Turn::kDone : Turn::kLater;
  }
  const ImportedFile imported = import_.Enter(*reading_);
  report_.Add(reading_->path, imported);
  if (imported.exitIsBare && imported.code > 0 && bareCard_)
    bareCard_(imported.code, reading_->path);
  reading_.reset();
  return Turn::kMore;
}

ImportProgress ImportRun::Progress() const {
  const ImportFiles::Count found = files_.Found();
  ImportProgress progress{report_.Done(), found.files, found.all};
  if (found.all)
    progress.leftMs =
        TimeLeftMs(station_.platform.clock.MonotonicMs() - begunMs_, progress.done, found.files);
  return progress;
}

}  // namespace zemo
