// The hand and the eye of an operator on a window, for the tests of all screens.
#pragma once

#include <Qt>
#include <string>

class QDate;
class QWidget;

namespace zemo::test {

// A click of the mouse near the left end of a control, where a box to tick has its mark. It must be
// seen and on. What the loop does then is left to the test.
void ClickOn(QWidget* control, Qt::MouseButton button = Qt::LeftButton);
// What stands on a label or a button, or in a box.
std::string TextOn(const QWidget* control);
// Of that size, however it was left, and active.
void BringForward(QWidget& window, int width, int height);
// On which the calendar stands that is open over the window; it is left then.
QDate DayOfCalendarIn(QWidget& window);
// In the calendar that is open over the window; it is gone then.
void PickDayIn(QWidget& window, int year, int month, int day);
// In the dialogue of that name that is open over the window; it is gone then. The path's ending
// names the kind of file.
void SaveIn(QWidget& window, const char* dialogue, const std::string& path);
// Kept for a person to look at, in the build folder's screenshots/; paths of the test's temporary
// folders are shown as a station's.
void KeepPicture(QWidget& widget, const std::string& name);

}  // namespace zemo::test
