#include "library/screens/MusicListFiller.h"

#include <utility>

#include "station/Station.h"

namespace zemo {

MusicListFiller::MusicListFiller(Station& station, CardList& list, std::function<void()> filled)
    : station_(station),
      list_(list),
      work_(
          station, "MnuListe", [this] { return fill_->Slice(station_.base.Db()); },
          [this, filled = std::move(filled)] {
            fill_.reset();
            filled();
          }) {}

void MusicListFiller::Begin() {
  fill_ = std::make_unique<MusicListFill>(list_);
  work_.Begin();
}

}  // namespace zemo
