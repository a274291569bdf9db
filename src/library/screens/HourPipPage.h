// The tab of the hour pips of the library window.
#pragma once

#include <QWidget>
#include <array>
#include <string>

#include "library/HourMasks.h"
#include "library/screens/CardPage.h"

class QCheckBox;
class QTableWidget;

namespace zemo {

class HourPipPage : public QWidget {
 public:
  HourPipPage(LibraryEditor& editor, const LibraryOrders& orders, const Translation& texts,
              QWidget* parent);
  void Arrange(double unit);
  void ShowPips();  // what the editor holds

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void MakeTable(const Translation& texts);
  QWidget* DayBoxes(const Translation& texts);
  void PutDay(int day, bool on);
  void Click(int row, int column);
  void ArrangeColumns();
  QString ColumnTip(int column) const;
  QString DayLetters(const std::string& days) const;

  LibraryEditor& editor_;
  const LibraryOrders& orders_;
  const Translation& texts_;
  QString initials_;  // of the days, Monday first
  QTableWidget* GTopH;
  QLabel* hour_;
  std::array<QCheckBox*, HourMasks::kDays> JourTop{};
};

}  // namespace zemo
