// Puts the texts of the screen's table on its controls, found by their names.
#pragma once

class QObject;
class QString;
class QWidget;

namespace zemo {

// Every control below `screen`; a text whose control is not there is passed over.
void ApplyTexts(QObject& screen, int langue);
// The tip with the control's property "keys" behind it, for the mouse and for screen readers.
void SetTip(QWidget& control, const QString& tip);

}  // namespace zemo
