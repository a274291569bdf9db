// The underlined letters of a menu, by which it is opened with Alt: each entry gets one of its own.
#pragma once

class QWidget;

namespace zemo {

// Of a menu bar or a menu, for its entries as they stand now: the first letter of a word that no
// entry ahead of it has, else any letter. An entry that has one already keeps it.
void GiveMenuLetters(const QWidget& menu);

}  // namespace zemo
