// A page of the library window: its controls, each under its name and bound to what it shows in the
// editor.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ui/FieldPage.h"

namespace zemo {

struct LibraryEditor;
struct Station;

// What the pages ask of the window, which shows afterwards what became of it.
struct LibraryOrders {
  std::function<void(std::function<void()> order)> run;   // answers at once
  std::function<void(std::function<void()> order)> work;  // asks or yields: waits for a free moment
  std::function<void()> chooseFiles;
  std::function<void(int mode)> pickDay;
};

class CardPage : public FieldPage {
 public:
  // Station, editor, orders and texts outlive the page.
  CardPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
           const Translation& texts, QWidget* parent);

 protected:
  // The exit point with its seconds beside it.
  QWidget* ExitPoint(const char* slider, const char* label, int32_t& ms);
  // A day of the window: a press opens the calendar, a right click or Delete empties it.
  QPushButton* WindowDay(const char* name, std::string& text, int mode);
  QWidget* Window(const char* from, std::string& fromText, int fromMode, const char* to,
                  std::string& toText, int toMode);

  Station& station_;
  LibraryEditor& editor_;
  const LibraryOrders& orders_;
};

}  // namespace zemo
