#include "library/screens/MusicListFiller.h"

#include <exception>
#include <utility>

#include "platform/EventLoop.h"
#include "station/Station.h"
#include "store/StoreError.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
constexpr int kAskAgainMs = 50;
constexpr int kLockedTurns = 100;  // of kAskAgainMs: as long as any other query waits
}  // namespace

MusicListFiller::MusicListFiller(Station& station, CardList& list, std::function<void()> filled)
    : station_(station), list_(list), filled_(std::move(filled)) {
  timer_.setSingleShot(true);
  timer_.callOnTimeout([this] { WhenFree(station_, &timer_, [this] { Turn(); }); });
}

void MusicListFiller::Begin() {
  fill_ = std::make_unique<MusicListFill>(list_);
  lockedTurns_ = 0;
  WhenFree(station_, &timer_, [this] { Turn(); });
}

void MusicListFiller::Turn() {
  if (!fill_) return;
  if (!Slice()) return timer_.start(lockedTurns_ > 0 ? kAskAgainMs : 0);
  fill_.reset();
  filled_();
}

bool MusicListFiller::Slice() {
  const NoLockWait atOnce(station_.base.Waiting());
  try {
    const bool done = fill_->Slice(station_.base.Db());
    lockedTurns_ = 0;
    return done;
  } catch (const std::exception& fault) {
    const auto* store = dynamic_cast<const StoreError*>(&fault);
    if (store && store->Number() == kErrLocked && ++lockedTurns_ < kLockedTurns) return false;
    LogCurrentException(station_, "MnuListe");
    return true;
  }
}

void MusicListFiller::ToTheEnd() {
  while (fill_) {
    station_.platform.loop.Yield();
    if (fill_) Turn();
  }
}

}  // namespace zemo
