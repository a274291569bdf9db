// The jingle tab of the library window.
#pragma once

#include "library/screens/CardPage.h"

namespace zemo {

class JinglePage : public CardPage {
 public:
  JinglePage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
             const Translation& texts, QWidget* parent);

 private:
  QLineEdit* LinkedCard();
  QLineEdit* LinkedArtist();
};

}  // namespace zemo
