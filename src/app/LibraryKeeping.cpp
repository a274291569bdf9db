#include "app/LibraryKeeping.h"

#include <utility>

#include "platform/Clock.h"
#include "platform/Folder.h"
#include "station/Station.h"

namespace zemo {

namespace {

constexpr int kLookMs = 20'000;         // between two looks at how much has changed
constexpr int kPieceMs = 200;           // between two pieces of the file
constexpr int64_t kRestMs = 3'600'000;  // behind a file that could not be written
constexpr size_t kPagesBehind = 100;    // a start reads their rows in some 10 ms

// Of those now, how many a start would have to read again, going by those of the file.
size_t OtherPages(const std::vector<CardsPage>& now, const std::vector<CardsPage>& kept) {
  size_t others = 0;
  auto known = kept.begin();
  for (const CardsPage& page : now) {
    while (known != kept.end() && known->lastCode < page.lastCode) ++known;
    others += page.mark == PageMark{} || known == kept.end() || *known != page;
  }
  return others;
}

}  // namespace

LibraryKeeping::LibraryKeeping(Station& station)
    : station_(station),
      look_(station.platform.loop.MakeTimer(kLookMs, [this] { Look(); })),
      piece_(station.platform.loop.MakeTimer(kPieceMs, [this] { WritePiece(); })) {
  look_->SetEnabled(true);
  try {
    const auto file = station.platform.machineFolder.Read(kKeptLibraryFile);
    auto library =
        file ? ReadKeptLibrary(*file, station.platform.stationFolder.Path()) : std::nullopt;
    if (!library) return;
    kept_ = library->pages;
    CardsOf(station).TakeUp(std::move(*library));
  } catch (const FileError&) {
    // The base is read, as without a file.
  }
}

// Own writes leave pages without a mark, so these are looked at once more ahead of the writing.
void LibraryKeeping::Look() {
  if (writer_ || !station_.base.IsOpen() || station_.platform.clock.MonotonicMs() < restsUntilMs_)
    return;
  Database& db = station_.base.Db();
  const NoLockWait atOnce(db.Waiting());
  auto library = CardsOf(station_).ListedWithPages(db);
  if (!library || OtherPages(library->pages, kept_) < kPagesBehind) return;
  if (!std::exchange(lookedAgain_, !lookedAgain_)) return CardsOf(station_).LookAgain(db);
  kept_ = library->pages;
  writer_.emplace(std::move(*library), station_.platform.stationFolder.Path());
  piece_->SetEnabled(true);
}

void LibraryKeeping::WritePiece() {
  try {
    if (const auto piece = writer_->Next())
      return station_.platform.machineFolder.PutBytes(kKeptLibraryFile, piece->offset,
                                                      piece->bytes);
  } catch (const FileError&) {
    LogCurrentException(station_, "LibraryKeeping");
    kept_.clear();
    restsUntilMs_ = station_.platform.clock.MonotonicMs() + kRestMs;
  }
  writer_.reset();
  piece_->SetEnabled(false);
}

}  // namespace zemo
