#include "library/screens/HoursFrame.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <string>

#include "library/LibraryScreen.h"
#include "library/screens/WeekPicture.h"

namespace zemo {

HoursFrame::HoursFrame(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                       const Translation& texts, QWidget* parent)
    : QFrame(parent), station_(station), editor_(editor), orders_(orders) {
  setObjectName(QStringLiteral("FrameAutorisation"));
  setProperty("panel", true);
  title_ = new QLabel(texts.Word("FrameAutorisation"), this);
  title_->setProperty("dim", true);
  title_->setProperty("small", true);
  BtnCopy = Button("BtnCopy", texts);
  BtnColler = Button("BtnColler", texts);
  connect(BtnCopy, &QPushButton::clicked, this,
          [this] { orders_.run([this] { Library::BtnCopy_Click(station_, editor_); }); });
  connect(BtnColler, &QPushButton::clicked, this,
          [this] { orders_.run([this] { Library::BtnColler_Click(station_, editor_); }); });
  picture_ = new WeekPicture(editor_.masks, this);
  picture_->setAccessibleName(title_->text());
  picture_->changed = [this] {
    ShowHours();
    orders_.shown();
  };
  days_ = Days(texts);
  auto* side = new QVBoxLayout;
  side->addWidget(title_);
  side->addWidget(BtnCopy);
  side->addWidget(BtnColler);
  side->addStretch(1);
  auto* hours = new QGridLayout;
  hours->setSpacing(2);
  hours->addWidget(days_, 0, 0);
  hours->addWidget(picture_, 0, 1);
  hours->addWidget(Boxes(), 1, 1);
  hours->setColumnStretch(1, 1);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(8, 5, 8, 5);
  layout->setSpacing(10);
  layout->addLayout(hours, 1);
  layout->addLayout(side);
}

QPushButton* HoursFrame::Button(const char* name, const Translation& texts) {
  auto* button = new QPushButton(texts.Word(name), this);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

// Beside the rows of the picture.
QWidget* HoursFrame::Days(const Translation& texts) {
  auto* days = new QWidget(this);
  auto* layout = new QVBoxLayout(days);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (int day = 1; day <= HourMasks::kDays; ++day) {
    const std::string number = std::to_string(day);
    auto* option = new QRadioButton(texts.Word("JourSem." + number), days);
    option->setObjectName(QString::fromStdString("JourSem_" + number));
    JourSem[static_cast<size_t>(day - 1)] = option;
    layout->addWidget(option);
    connect(option, &QRadioButton::clicked, this,
            [this, day] { orders_.run([this, day] { Library::JourSem_Click(editor_, day); }); });
  }
  return days;
}

// Below its columns.
QWidget* HoursFrame::Boxes() {
  auto* boxes = new QWidget(this);
  auto* layout = new QGridLayout(boxes);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  for (int hour = 0; hour < HourMasks::kHours; ++hour) {
    auto* box = new QCheckBox(boxes);
    box->setObjectName(QStringLiteral("Tranche_%1").arg(hour));
    box->setAccessibleName(QStringLiteral("%1 h").arg(hour, 2, 10, QLatin1Char('0')));
    box->setToolTip(box->accessibleName());
    Tranche[static_cast<size_t>(hour)] = box;
    layout->addWidget(box, 0, hour, Qt::AlignHCenter);
    layout->setColumnStretch(hour, 1);
    layout->setColumnMinimumWidth(hour, 1);
    connect(box, &QCheckBox::clicked, this, [this, hour](bool on) {
      editor_.masks.Tranche[static_cast<size_t>(hour)] = on;
      picture_->update();
      orders_.shown();
    });
  }
  return boxes;
}

void HoursFrame::Arrange(double unit) {
  picture_->Arrange(unit);
  days_->layout()->setContentsMargins(0, picture_->HeadHeight(), 0, 0);
  for (QRadioButton* option : JourSem) option->setFixedHeight(picture_->RowHeight());
}

void HoursFrame::ShowHours() {
  JourSem[static_cast<size_t>(editor_.masks.JourSem() - 1)]->setChecked(true);
  for (size_t hour = 0; hour < Tranche.size(); ++hour)
    Tranche[hour]->setChecked(editor_.masks.Tranche[hour]);
  const bool boxes = Library::HourBoxesOn(editor_);
  BtnCopy->setEnabled(boxes);
  BtnColler->setEnabled(boxes);
  picture_->update();
}

}  // namespace zemo
