// Puts the texts of the screen's table on its controls, found by their names.
#pragma once

class QObject;

namespace zemo {

// Every control below `screen`; a text whose control is not there is passed over.
void ApplyTexts(QObject& screen, int langue);

}  // namespace zemo
