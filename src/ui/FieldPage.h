// A page of fields of a window: its controls, each under its name and bound to what it shows of an
// editor, in rows with their labels above them.
#pragma once

#include <QWidget>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "ui/Named.h"
#include "ui/Translation.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace zemo {

class FieldPage : public QWidget {
 public:
  FieldPage(const Translation& texts, QWidget* parent);  // the texts outlive the page
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
  // A list without free entry: what the card holds shows even where the list has it not.
  QComboBox* ClosedList(const char* name, std::string& text, const std::vector<std::string>& offer);
  // A day: a press asks for it, the right button or Delete does what it is for besides.
  QPushButton* Day(const char* name, std::function<QString()> text, std::function<void()> pressed,
                   std::function<void()> otherwise);

  // --- layout ---
  QWidget* Field(const char* name, QWidget* control);  // the label's words are "For." and the name
  using Part = std::pair<QWidget*, int>;               // with its share of the row
  void Row(std::initializer_list<Part> parts);
  QWidget* Beside(std::initializer_list<Part> parts);
  void FillDown();  // the room below the rows

  void Follow(std::function<void()> show) { show_.push_back(std::move(show)); }
  void Changed();  // by the operator's hand, without a routine

  const Translation& texts_;

 private:
  std::vector<std::function<void()>> show_;
  QVBoxLayout* rows_;
};

void ShowIn(QLineEdit& box, const std::string& text);  // the cursor stays where nothing changes

}  // namespace zemo
