// Texts of a window: data beside the window, put on its controls and looked up by key and language.
#pragma once

#include <QString>
#include <span>
#include <string_view>

#include "station/LanguageTexts.h"

class QObject;
class QWidget;

namespace zemo {

// One assignment to a control. `property` is "text", "tip" or "name" (for screen readers), or the
// number of an item or a column head.
struct ScreenText {
  const char* control;
  const char* property;
  LanguageTexts texts;
};

// The tables of one window, which outlive everything: assignments in their order, and the words
// that its own parts are made of.
struct WindowTexts {
  std::span<const ScreenText> controls;
  std::span<const Word> words;
};

// The texts of one window in one language.
class Translation {
 public:
  Translation(const WindowTexts& texts, int langue) : texts_(texts), langue_(langue) {}

  int Langue() const { return langue_; }
  // Of a control; empty for what the table does not hold.
  QString Text(std::string_view control, std::string_view property) const;
  // The window's, else the one that all windows share; empty for an unknown one.
  QString Word(std::string_view name) const;
  QString Word(std::string_view name, const QString& inPlace) const;
  // What a routine's text is on the screen (station/OperatorWords.h).
  QString OfRoutine(std::string_view text) const;

  // Puts the texts on the controls below `window`, found by their names; those of a control array
  // by the array's name and a number from 0. A text whose control is not there is passed over.
  void Apply(QObject& window) const;

 private:
  WindowTexts texts_;
  int langue_;
};

// The tip with the control's property "keys" behind it, for the mouse and for screen readers.
void SetTip(QWidget& control, const QString& tip);

}  // namespace zemo
