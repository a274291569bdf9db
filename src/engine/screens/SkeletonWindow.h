// SkeletonDialog: the window in which the operator lays out a skeleton of genres and has the list
// in the editor filled along it. It shows station.requests.SkeletonDialog and calls the routines of
// scheduling/SkeletonDialogue.h.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

#include "ui/Translation.h"

class QCheckBox;
class QLabel;
class QListWidget;
class QPushButton;
class QSpinBox;
class QTableWidget;

namespace zemo {

struct Station;

// Show it with open() once the dialogue is open: the air goes on below it. It goes when the
// dialogue is open no more, and deletes itself. Thread: the logic's.
class SkeletonWindow : public QDialog {
 public:
  SkeletonWindow(Station& station, int langue, double unit, QWidget* parent);
  void Refresh();
  void reject() override;  // BtnCancel, Escape and the frame

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeControls();
  void MakeMenu();
  void LayOut();
  void Connect();
  void Arrange(double unit);
  void ShowSkeleton();
  void SelectRow(int row);
  void AppendGenre();
  void DeletePosition();
  void CopyDay(int day);
  void Ok();
  void Work();

  Station& station_;
  const Translation texts_;
  bool working_ = false;  // BtnOk fills the list
  std::vector<std::string> shown_;
  QTableWidget* SquelettePLS;
  QListWidget* ListGenre;
  QLabel *LblSquelette, *LblGenre, *LblMinutes, *LblEtat;
  QSpinBox* SpinMinutes;
  QCheckBox* Redondance;
  QPushButton *BtnOk, *BtnCancel;
};

}  // namespace zemo
