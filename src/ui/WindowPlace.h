// Where a window stood when it was left, as a value of this machine.
#pragma once

#include <QList>
#include <QRect>
#include <optional>
#include <string_view>

namespace zemo {

class LocalValues;

// The place kept under the window's name, within the screens that there are now; none where none is
// kept, or what is kept is no place.
std::optional<QRect> KeptPlace(const LocalValues& values, std::string_view window,
                               const QList<QRect>& screens);
void KeepPlace(LocalValues& values, std::string_view window,
               const QRect& place);  // may throw FileError

// Whole on the screen that shows most of it, the first where none does; no larger than that.
QRect Within(const QRect& place, const QList<QRect>& screens);

// Top left corner of a box in the window: in the middle, below, above or beside what it speaks of,
// the first of these that covers least of it. All on the screen, in pixels.
QPoint PlaceBeside(const QSize& box, const QRect& spokenOf, const QRect& window);

}  // namespace zemo
