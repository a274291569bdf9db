#include "library/screens/LibraryDesk.h"

#include <utility>

namespace zemo {

LibraryDesk::LibraryDesk(Station& station, LibrarySources sources)
    : station_(station), sources_(std::move(sources)), selector_(station) {
  sources_.chooseFiles = [this](QWidget* over, const std::string& currentFile,
                                const std::vector<std::string>& known,
                                LibrarySources::TakeFiles take) {
    selector_.Choose(*over, currentFile, known, std::move(take));
  };
}

LibraryWindow& LibraryDesk::Ready() {
  if (!window_ || !window_->IsOpen()) window_ = std::make_unique<LibraryWindow>(station_, sources_);
  return *window_;
}

void LibraryDesk::Open() {
  Ready().Open();
}

void LibraryDesk::OpenOnCard(int32_t code) {
  Ready().OpenOnCard(code);
}

bool LibraryDesk::Leave() {
  selector_.reject();
  return !window_ || window_->LeaveNow();
}

void LibraryDesk::OpenSelector(QWidget& over, const std::string& storedPath) {
  selector_.Choose(over, storedPath, {}, nullptr);
}

}  // namespace zemo
