// FrmCalendrier: a small month view that opens on a day; a click on a day gives it back.
#pragma once

#include <QDialog>
#include <functional>

#include "platform/Clock.h"

namespace zemo {

// Show it with open(): nothing waits for it. Deletes itself.
class CalendarWindow : public QDialog {
 public:
  CalendarWindow(int langue, const LocalDateTime& day, QWidget* parent);
  std::function<void(const LocalDateTime& day)> picked;
};

}  // namespace zemo
