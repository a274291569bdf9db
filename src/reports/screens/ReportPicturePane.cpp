#include "reports/screens/ReportPicturePane.h"

#include <QShowEvent>
#include <QVBoxLayout>
#include <exception>
#include <string>
#include <utility>

#include "platform/EventLoop.h"
#include "reports/ReportFigures.h"
#include "reports/screens/ReportPictures.h"
#include "station/Station.h"
#include "ui/Theme.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
constexpr int kHoursShare = 5, kTitleShare = 3;
}

ReportPicturePane::ReportPicturePane(Station& station, ReportEditor& editor,
                                     const Translation& texts, QWidget* parent)
    : QWidget(parent),
      station_(station),
      editor_(editor),
      hours_(new HourPicture(texts, this)),
      title_(new TitlePicture(texts, this)),
      shares_(new SharePicture(texts, this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(hours_, kHoursShare);
  layout->addWidget(title_, kTitleShare);
  layout->addWidget(shares_);
}

void ReportPicturePane::Arrange(double unit) {
  for (ReportPicture* picture : std::initializer_list<ReportPicture*>{hours_, title_, shares_})
    picture->Arrange(unit);
  layout()->setSpacing(Theme::Px(unit, 6));
}

void ReportPicturePane::Follow(std::optional<uint32_t> row) {
  wanted_ = {editor_.ListRap.rows, row};
  DrawWhenFree();
}

void ReportPicturePane::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  DrawWhenFree();
}

void ReportPicturePane::DrawWhenFree() {
  if (drawing_ || !isVisible() || wanted_ == shown_) return;
  WhenFree(station_, this, [this] { Draw(); });
}

// What yields serve may want another picture.
void ReportPicturePane::Draw() {
  if (drawing_) return;
  const ReportWork work(editor_);
  drawing_ = true;
  try {
    while (isVisible() && wanted_ != shown_) {
      const Shown wanted = wanted_;
      if (wanted.rows != shown_.rows) DrawAll(wanted.rows);
      DrawTitle(wanted);
      shown_ = wanted;
    }
  } catch (const std::exception&) {
    LogCurrentException(station_, "VueHeures");
  }
  drawing_ = false;
}

void ReportPicturePane::DrawAll(const Rows& rows) {
  const Pause pause = [this] { station_.platform.loop.Yield(); };
  hours_->Show(PlaysByHourAndGenre(*rows, pause));
  shares_->Show(PlaysBy(*rows, RapCol::kVariety, pause));
}

void ReportPicturePane::DrawTitle(const Shown& wanted) {
  const auto text = [&](int column) {
    return QString::fromStdString(std::string(wanted.rows->Text(*wanted.row, column)));
  };
  if (!wanted.row || wanted.rows->Text(*wanted.row, RapCol::kTitle).empty())
    return title_->Show({}, {});
  const QString artist = text(RapCol::kArtist);
  title_->Show(
      artist.isEmpty() ? text(RapCol::kTitle)
                       : artist + QStringLiteral(" - ") + text(RapCol::kTitle),
      PlaysOverTime(*wanted.rows, *wanted.row, [this] { station_.platform.loop.Yield(); }));
}

}  // namespace zemo
