#include "traffic/screens/CampaignLegend.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <functional>
#include <utility>

#include "traffic/screens/GridMarks.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr double kSomeLoad = 0.4;

// A cell of the grid with one mark in it.
class MarkCell : public QWidget {
 public:
  using Paint = std::function<void(QPainter&, const QRect& cell)>;
  MarkCell(Paint paint, QWidget* parent) : QWidget(parent), paint_(std::move(paint)) {}

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Theme::kPanel);
    painter.setPen(Theme::kRaised);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    paint_(painter, rect());
  }

 private:
  Paint paint_;
};

QLabel* Words(const QString& words, QWidget* parent) {
  auto* label = new QLabel(words, parent);
  label->setProperty("small", true);
  label->setProperty("dim", true);
  return label;
}

}  // namespace

CampaignLegend::CampaignLegend(const Translation& texts, QWidget* parent) : QWidget(parent) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(5);
  const auto add = [&](const char* word, const char* tip, MarkCell::Paint paint) {
    marks_.push_back(new MarkCell(std::move(paint), this));
    QLabel* label = Words(texts.Word(word), this);
    if (tip) label->setToolTip(texts.Word(tip));
    row->addWidget(marks_.back());
    row->addWidget(label);
    row->addSpacing(8);
  };
  add("LegendOwn", nullptr, [this](QPainter& painter, const QRect& cell) {
    GridMarks::PaintCross(painter, cell, spot_ ? Theme::kSpot : Theme::kNews);
  });
  add("LegendAdvertiser", nullptr, GridMarks::PaintOfAdvertiser);
  add("LegendLoad", "LoadTip",
      [](QPainter& painter, const QRect& cell) { GridMarks::PaintLoad(painter, cell, kSomeLoad); });
  add("LegendFull", "LoadTip",
      [](QPainter& painter, const QRect& cell) { GridMarks::PaintLoad(painter, cell, 1); });
  row->addStretch(1);
  reading_ = Words(texts.Word("LegendReading"), this);
  row->addWidget(reading_);
}

void CampaignLegend::Arrange(double unit) {
  const int side = Theme::Px(unit, 19);
  for (QWidget* mark : marks_) mark->setFixedSize(side, side);
}

void CampaignLegend::Show(bool spot, bool reading) {
  reading_->setVisible(reading);
  spot_ = spot;
  marks_.front()->update();
}

}  // namespace zemo
