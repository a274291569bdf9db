// What the marks in the grid of a campaign mean, a line below it.
#pragma once

#include <QWidget>
#include <vector>

#include "ui/Translation.h"

class QLabel;

namespace zemo {

class CampaignLegend : public QWidget {
 public:
  CampaignLegend(const Translation& texts, QWidget* parent);
  void Arrange(double unit);
  void Show(bool spot, bool reading);  // kind of the campaign; the others are being read

 private:
  std::vector<QWidget*> marks_;
  QLabel* reading_;
  bool spot_ = true;
};

}  // namespace zemo
