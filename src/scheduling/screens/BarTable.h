// A table of figures in which one column is drawn as bars, so that it is read at a glance.
#pragma once

#include <QTableWidget>
#include <vector>

namespace zemo {

struct BarRow {
  QStringList cells;
  double bar = 0;            // 0 to 1, behind the cell of the bars
  int alertFrom = kNoAlert;  // cells from that column on stand out
  static constexpr int kNoAlert = 1000;
};

// Thread: the screen's.
class BarTable : public QTableWidget {
 public:
  // `bars`: the column of the bars.
  BarTable(const char* name, const QString& caption, const QStringList& heads, int bars,
           QWidget* parent);
  void Arrange(double unit);
  void ShowColumn(int column, bool shown);
  void ShowRows(const std::vector<BarRow>& rows);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void ArrangeColumns();
};

}  // namespace zemo
