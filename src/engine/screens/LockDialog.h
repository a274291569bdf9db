// The lock of the menus: the password is asked when locked, then a new one is; none unlocks.
#pragma once

#include <QDialog>

class QLineEdit;

namespace zemo {

struct Station;

// Show it with open(). Deletes itself.
class LockDialog : public QDialog {
 public:
  LockDialog(Station& station, int langue, QWidget* parent);

 private:
  void Ok();
  void AskNew();

  Station& station_;
  int langue_;
  bool askingNew_ = false;
  QLineEdit* ChPasse;
};

}  // namespace zemo
