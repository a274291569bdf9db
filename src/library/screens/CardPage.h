// A page of the library window: its controls, each under its name and bound to what it shows in the
// editor.
#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "ui/Translation.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSlider;
class QVBoxLayout;

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

class CardPage : public QWidget {
 public:
  // Station, editor, orders and texts outlive the page.
  CardPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
           const Translation& texts, QWidget* parent);
  virtual void Arrange(double unit);
  void ShowCard();  // what the editor holds

 protected:
  // --- controls; what they show outlives them ---
  QLineEdit* Box(const char* name, std::string& text);
  QLineEdit* Shown(QLineEdit* box, std::function<std::string()> text);  // follows the editor
  void NameLength(QLineEdit& box) const;                                // one without a label
  QLabel* Label(const char* name, std::function<std::string()> text);
  QCheckBox* Tick(const char* name, bool& ticked);
  QPushButton* Button(const char* name, std::function<void()> pressed);
  // The exit point with its seconds beside it.
  QWidget* ExitPoint(const char* slider, const char* label, int32_t& ms);
  // A list without free entry: what the card holds shows even where the list has it not.
  QComboBox* ClosedList(const char* name, std::string& text, const std::vector<std::string>& offer);
  // A day of the window: a press opens the calendar, a right click or Delete empties it.
  QPushButton* WindowDay(const char* name, std::string& text, int mode);
  QWidget* Window(const char* from, std::string& fromText, int fromMode, const char* to,
                  std::string& toText, int toMode);

  // --- layout: rows of fields, each with its label above it ---
  QWidget* Field(const char* name, QWidget* control);  // the label's words are "For." and the name
  using Part = std::pair<QWidget*, int>;               // with its share of the row
  void Row(std::initializer_list<Part> parts);
  QWidget* Beside(std::initializer_list<Part> parts);
  void FillDown();  // the room below the rows

  void Follow(std::function<void()> show) { show_.push_back(std::move(show)); }
  void Changed();  // by the operator's hand, without a routine

  Station& station_;
  LibraryEditor& editor_;
  const LibraryOrders& orders_;
  const Translation& texts_;

 private:
  std::vector<std::function<void()>> show_;
  QVBoxLayout* rows_;
};

QString ShownText(const std::string& text);
void ShowIn(QLineEdit& box, const std::string& text);  // the cursor stays where nothing changes

}  // namespace zemo
