// What became of the card shown, beside the tabs: that it was changed and is not stored, that
// somebody else deleted it, or what the last order stored.
#pragma once

#include <QLabel>

namespace zemo {

class Translation;
struct LibraryEditor;

class CardState : public QLabel {
 public:
  CardState(const LibraryEditor& editor, const Translation& texts, QWidget* parent);
  void ShowState();

 private:
  QString Told() const;

  const LibraryEditor& editor_;
  const Translation& texts_;
};

}  // namespace zemo
