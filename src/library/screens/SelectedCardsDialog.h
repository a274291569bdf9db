// Which fields of the card shown the selected cards are to get. Those that the operator has changed
// are ticked.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "library/SelectedCards.h"

class QCheckBox;
class QPushButton;

namespace zemo {

class Translation;

// Show it with open(): nothing waits for it. Deletes itself. Thread: the logic's.
class SelectedCardsDialog : public QDialog {
 public:
  SelectedCardsDialog(const LibraryEditor& editor, size_t cards, const SharedFields& ticked,
                      const Translation& texts, QWidget* parent);
  std::function<void(const SharedFields& fields)> give;

 private:
  SharedFields Ticked() const;
  void ShowGive();

  std::array<QCheckBox*, kSharedFields> fields_{};
  QPushButton* BtnGive;
};

}  // namespace zemo
