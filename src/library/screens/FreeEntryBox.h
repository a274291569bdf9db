// A list with free entry: Return puts what was typed on it, Delete behind or over the whole text
// takes that off it.
#pragma once

#include <QComboBox>
#include <functional>
#include <string>
#include <vector>

namespace zemo {

class FreeEntryBox : public QComboBox {
 public:
  FreeEntryBox(const char* name, QWidget* parent);
  std::function<void(const std::string& text)> typed;
  std::function<void()> enter, erase;

  void Show(const std::string& text, const std::vector<std::string>& offer);

 protected:
  void keyPressEvent(QKeyEvent* event) override;  // it has the keyboard, also for its line

 private:
  std::vector<std::string> offer_;
};

}  // namespace zemo
