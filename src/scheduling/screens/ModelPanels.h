// The two pictures beside the grids of the models: what the library can give for an hour, and how
// the day so planned would air.
#pragma once

#include <QWidget>
#include <functional>

#include "scheduling/PlannedDay.h"
#include "ui/Translation.h"

class QLabel;
class QPushButton;

namespace zemo {

class BarTable;

// Thread: the screen's. The texts outlive it.
class SupplyPanel : public QWidget {
 public:
  SupplyPanel(const Translation& texts, QWidget* parent);
  void Arrange(double unit);
  // Of the day that the editor shows: the planned genres first, then what else there is.
  void ShowHour(const ModelEditor& editor, int hour);

 private:
  const Translation& texts_;
  QLabel* LblSupply;
  BarTable* Supply;
};

class OutlookPanel : public QWidget {
 public:
  OutlookPanel(const Translation& texts, std::function<void()> wanted, QWidget* parent);
  void Arrange(double unit);
  void ShowState(DayForecast::State state, const QString& fault);
  void ShowOutlook(const DayOutlook& outlook);

 private:
  const Translation& texts_;
  QPushButton* BtnForecast;
  QLabel* LblOutlook;
  BarTable *Outlook, *Repeats;
};

}  // namespace zemo
