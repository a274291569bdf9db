// What will air in the next hours: the lines of a simulation of this station, computed on demand
// beside the air.
#pragma once

#include <QDialog>
#include <QTimer>

#include "ui/Translation.h"

class QComboBox;
class QLabel;
class QPushButton;
class QTableWidget;

namespace zemo {

class ForecastSource;
struct ForecastLine;
struct Station;

class ForecastWindow : public QDialog {
 public:
  ForecastWindow(Station& station, ForecastSource& source, int langue, QWidget* parent);
  void Compute();  // from now on, anew
  void Refresh();  // the lines that are known

 private:
  void MakeControls();
  void ShowState();
  void AddLine(const ForecastLine& line);
  QString KindOf(const ForecastLine& line) const;
  QString WhatOf(const ForecastLine& line) const;

  Station& station_;
  ForecastSource& source_;
  const Translation texts_;
  QTimer poll_;
  QString begun_;
  QTableWidget* ListPrevision;
  QComboBox* ComboHeures;
  QPushButton* BtnRecalculer;
  QLabel* LblEtat;
};

}  // namespace zemo
