// The pictures beside the report's list: plays by hour and genre, one title over time, and shares
// by variety. Thread: the screen's.
#pragma once

#include <QWidget>
#include <string>
#include <vector>

#include "reports/ReportFigures.h"
#include "ui/Translation.h"

namespace zemo {

// A picture under a line of words.
class ReportPicture : public QWidget {
 public:
  // The texts outlive the picture.
  ReportPicture(const char* name, const Translation& texts, QWidget* parent);
  void Arrange(double unit);

 protected:
  void paintEvent(QPaintEvent*) override;
  bool event(QEvent* event) override;
  virtual QString Head() const { return texts_.Word("For." + objectName().toStdString()); }
  virtual QString Instead() const { return texts_.Word("NoRows"); }  // of a picture of nothing
  virtual bool IsEmpty() const = 0;
  virtual void Paint(QPainter& painter) const = 0;
  virtual QString TipAt(const QPoint& point) const = 0;  // empty for none
  QRect Room() const;                                    // below the head
  int Line() const { return line_; }                     // height of a text, pixels

  const Translation& texts_;

 private:
  int line_ = 18;
};

// A row a genre, those that have no room of their own in the last one; a column an hour, the
// brighter the more plays.
class HourPicture : public ReportPicture {
 public:
  HourPicture(const Translation& texts, QWidget* parent);
  void Show(HourFigures figures);
  int Rows() const;
  QRect Cell(int row, int hour) const;
  uint32_t Plays(int row, int hour) const;
  QString NameOf(int row) const;

 protected:
  bool IsEmpty() const override { return figures_.genres.empty(); }
  void Paint(QPainter& painter) const override;
  QString TipAt(const QPoint& point) const override;

 private:
  int LeastRow() const { return Line() + 2; }
  int RowHeight() const;
  bool IsRest(int row) const;
  QColor ColourOf(int row) const;

  HourFigures figures_;
};

class TitlePicture : public ReportPicture {
 public:
  TitlePicture(const Translation& texts, QWidget* parent);
  void Show(QString title, TitleFigures figures);  // no title: none was chosen
  struct Bar {
    QRect place;
    size_t first, last;  // steps
    uint32_t plays;
  };
  std::vector<Bar> Bars() const;

 protected:
  QString Head() const override;
  QString Instead() const override;
  bool IsEmpty() const override { return title_.isEmpty(); }
  void Paint(QPainter& painter) const override;
  QString TipAt(const QPoint& point) const override;

 private:
  QString MomentOf(size_t step) const;

  QString title_;
  TitleFigures figures_;
};

// The first varieties by their plays, all others in the last bar.
class SharePicture : public ReportPicture {
 public:
  SharePicture(const Translation& texts, QWidget* parent);
  void Show(const std::vector<NamedPlays>& varieties);
  const std::vector<NamedPlays>& Bars() const { return bars_; }
  QRect Bar(size_t number) const;
  QSize sizeHint() const override;

 protected:
  bool IsEmpty() const override { return bars_.empty(); }
  void Paint(QPainter& painter) const override;
  QString TipAt(const QPoint& point) const override;

 private:
  QString TextOf(const NamedPlays& bar) const;

  std::vector<NamedPlays> bars_;
  uint64_t total_ = 0;
};

}  // namespace zemo
