// The music tab of the library window.
#pragma once

#include "library/LibraryScreen.h"
#include "library/screens/CardPage.h"

namespace zemo {

class FreeEntryBox;

class MusicPage : public CardPage {
 public:
  MusicPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
            const Translation& texts, QWidget* parent);

 private:
  FreeEntryBox* FreeList(const char* name, std::string& text, const std::vector<std::string>& offer,
                         Library::FreeList list);
  QWidget* Plays();
};

}  // namespace zemo
