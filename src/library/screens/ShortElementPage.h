// The tab of the short elements of the library window.
#pragma once

#include "library/screens/CardPage.h"

namespace zemo {

class ShortElementPage : public CardPage {
 public:
  ShortElementPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                   const Translation& texts, QWidget* parent);

 private:
  QWidget* KeyFrame();
};

}  // namespace zemo
