// FrameAutorisation: the hours of the week in which the music card or the jingle shown may play.
// The picture of the week, the options of its days and the boxes of the day chosen are the same
// data.
#pragma once

#include <QFrame>
#include <array>

#include "library/HourMasks.h"
#include "library/screens/CardPage.h"

class QCheckBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;

namespace zemo {

class WeekPicture;

class HoursFrame : public QFrame {
 public:
  HoursFrame(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
             const Translation& texts, QWidget* parent);
  void Arrange(double unit);
  void ShowHours();  // what the editor holds

 private:
  QWidget* Days(const Translation& texts);
  QWidget* Boxes();
  QPushButton* Button(const char* name, const Translation& texts);

  Station& station_;
  LibraryEditor& editor_;
  const LibraryOrders& orders_;
  WeekPicture* picture_;
  QWidget* days_;
  QLabel* title_;
  QPushButton *BtnCopy, *BtnColler;
  std::array<QRadioButton*, HourMasks::kDays> JourSem{};
  std::array<QCheckBox*, HourMasks::kHours> Tranche{};
};

}  // namespace zemo
