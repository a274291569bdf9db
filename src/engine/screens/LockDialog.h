// The password's dialogue over the main screen: what screen.PasseWord asks, typed and masked.
#pragma once

#include <QDialog>
#include <functional>

class QLineEdit;

namespace zemo {

struct Station;

// Show it with open(), after MnuPasseWord. Deletes itself.
class LockDialog : public QDialog {
 public:
  LockDialog(Station& station, int langue, QWidget* parent);
  std::function<void()> refused;  // the password was another one, and the dialogue has closed

 private:
  void Ok();
  void Refresh();

  Station& station_;
  QLineEdit* ChPasse;
};

}  // namespace zemo
