#include "engine/screens/BottomStrip.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "engine/MainScreenPicture.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "ui/FitLabel.h"
#include "ui/Theme.h"

namespace zemo {

namespace {
constexpr int kTickerPixelsPerSec = 60;
constexpr int64_t kToldMs = 8000;

void Put(QLabel* label, const QString& text) {
  if (label->text() != text) label->setText(text);
}

QColor ColourOf(HealthSeverity severity) {
  switch (severity) {
    case HealthSeverity::kHeard:
      return Theme::kHeard;
    case HealthSeverity::kNote:
      return Theme::kNote;
    case HealthSeverity::kGood:
      return Theme::kDim;
  }
  return Theme::kDim;
}
}  // namespace

Ticker::Ticker(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

void Ticker::Show(const QString& text, bool scrolling, int64_t nowMs) {
  const bool anew = text != text_ || scrolling != scrolling_;
  if (anew) {
    text_ = text;
    scrolling_ = scrolling;
    begunMs_ = nowMs;
    setAccessibleDescription(text_.trimmed());
  }
  const int length = fontMetrics().horizontalAdvance(text_) + width();
  const auto run = (nowMs - begunMs_) * kTickerPixelsPerSec / 1000;
  const int shift = scrolling && length > 0 ? static_cast<int>(run % length) : 0;
  if (!anew && shift == shift_) return;
  shift_ = shift;
  update();
}

void Ticker::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setPen(scrolling_ ? Theme::kText : Theme::kDim);
  if (!scrolling_) {
    painter.drawText(rect(), Qt::AlignCenter,
                     fontMetrics().elidedText(text_, Qt::ElideRight, width()));
    return;
  }
  painter.drawText(QRect(width() - shift_, 0, fontMetrics().horizontalAdvance(text_) + 2, height()),
                   Qt::AlignLeft | Qt::AlignVCenter, text_);
}

QLabel* BottomStrip::Figure(const char* name) {
  auto* label = new QLabel(this);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

BottomStrip::BottomStrip(Translation texts, QWidget* parent) : QFrame(parent), texts_(texts) {
  setObjectName(QStringLiteral("BottomStrip"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  setProperty("panel", true);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(8, 2, 8, 2);
  layout->setSpacing(1);
  auto* first = new QHBoxLayout;
  first->setSpacing(0);
  LblTpsTot = Figure("LblTpsTot");
  LblTpsTot->setProperty("dim", true);
  HHTot = Figure("HHTot");
  MnTot = Figure("MnTot");
  SSTot = Figure("SSTot");
  for (QLabel*& colon : colons_) {
    colon = Figure("");
    colon->setText(QStringLiteral(":"));
  }
  first->addWidget(LblTpsTot);
  first->addSpacing(6);
  first->addWidget(HHTot);
  first->addWidget(colons_[0]);
  first->addWidget(MnTot);
  first->addWidget(colons_[1]);
  first->addWidget(SSTot);
  first->addSpacing(12);
  LblOffsetBuffers = new FitLabel(this);
  LblOffsetBuffers->setObjectName(QStringLiteral("LblOffsetBuffers"));
  first->addWidget(LblOffsetBuffers, 2);
  LblCycle = Figure("LblCycle");
  LblCycle->setProperty("dim", true);
  LblMaxPlayInfo = Figure("LblMaxPlayInfo");
  first->addWidget(LblCycle);
  first->addSpacing(4);
  first->addWidget(LblMaxPlayInfo);
  first->addSpacing(10);
  LblInfo = new Ticker(this);
  LblInfo->setObjectName(QStringLiteral("LblInfo"));
  LblProgression = new FitLabel(this);
  LblProgression->setObjectName(QStringLiteral("LblProgression"));
  LblProgression->setAlignment(Qt::AlignCenter);
  LblProgression->hide();
  LblAvis = new FitLabel(this);
  LblAvis->setObjectName(QStringLiteral("LblAvis"));
  LblAvis->setAlignment(Qt::AlignCenter);
  LblAvis->SetColour(Theme::kNote);
  LblAvis->hide();
  first->addWidget(LblInfo, 5);
  first->addWidget(LblAvis, 9);
  first->addWidget(LblProgression, 5);
  first->addSpacing(10);
  for (size_t contact = 0; contact < LedSat.size(); ++contact) {
    LedSat[contact] = Figure(("LedSat" + std::to_string(contact)).c_str());
    LedSat[contact]->setAlignment(Qt::AlignCenter);
    LedSat[contact]->setText(QString::number(contact));
    first->addWidget(LedSat[contact]);
    first->addSpacing(3);
  }
  LedJoystique = Figure("LedJoystique");
  LedJoystique->setAlignment(Qt::AlignCenter);
  first->addWidget(LedJoystique);
  auto* second = new QHBoxLayout;
  second->setSpacing(8);
  for (size_t figure = 0; figure < health_.size(); ++figure) {
    health_[figure] = new FitLabel(this);
    health_[figure]->setObjectName("Health" + QString::number(figure));
    second->addWidget(health_[figure], figure == HealthLine::kDevice ? 5 : 4);
  }
  LblErreur = new FitLabel(this);
  LblErreur->setObjectName(QStringLiteral("LblErreur"));
  LblErreur->SetColour(Theme::kNote);
  second->addWidget(LblErreur, 9);
  layout->addLayout(first);
  layout->addLayout(second);
}

void BottomStrip::Arrange(double unit) {
  unit_ = unit;
  const QFont type = Theme::Type(unit, 15);
  for (QLabel* label : {LblTpsTot, HHTot, MnTot, SSTot, LblCycle, LblMaxPlayInfo, colons_[0],
                        colons_[1], LedJoystique})
    label->setFont(type);
  LblInfo->setFont(type);
  LblOffsetBuffers->SetType(type, 10);
  LblProgression->SetType(type, 10);
  LblAvis->SetType(type, 10);
  for (QLabel* led : LedSat) {
    led->setFont(Theme::Type(unit, 12));
    led->setFixedSize(Theme::Px(unit, 18), Theme::Px(unit, 18));
  }
  LedJoystique->setFixedWidth(QFontMetrics(type).horizontalAdvance(QStringLiteral("Joy4")) + 10);
  const QFont small = Theme::Type(unit, 14);
  for (FitLabel* figure : health_) figure->SetType(small, 10);
  LblErreur->SetType(small, 10);
}

void BottomStrip::ShowInputs(const MainScreen& screen) {
  const auto light = [](QLabel* label, uint32_t colour) {
    const QString sheet =
        QStringLiteral("background:%1;color:%2;border-radius:3px;")
            .arg(Theme::FromBgr(colour).name(),
                 colour == kLedOff ? QStringLiteral("white") : QStringLiteral("black"));
    if (label->styleSheet() != sheet) label->setStyleSheet(sheet);
  };
  for (size_t contact = 0; contact < LedSat.size(); ++contact)
    light(LedSat[contact], screen.LedSat[contact]);
  const MainScreen::Lamp& joystick = screen.LedJoystique;
  Put(LedJoystique, QString::fromStdString(joystick.text));
  light(LedJoystique, joystick.colour);
  LedJoystique->setVisible(joystick.visible);
}

void BottomStrip::ShowStation(const MainScreen& screen, const ScreenNotices& notices,
                              int64_t nowMs) {
  Put(HHTot, QString::fromStdString(TwoDigits(screen.HHTot)));
  Put(MnTot, QString::fromStdString(TwoDigits(screen.MnTot)));
  Put(SSTot, QString::fromStdString(TwoDigits(screen.SSTot)));
  LblOffsetBuffers->Show(texts_.OfRoutine(screen.LblOffsetBuffers));
  Put(LblMaxPlayInfo, QString::fromStdString(screen.LblMaxPlayInfo));
  const bool told = nowMs < toldUntilMs_;
  LblProgression->Show(texts_.OfRoutine(notices.progress.text));
  LblProgression->setVisible(notices.progress.visible && !told);
  LblAvis->setVisible(told);
  LblInfo->setVisible(!notices.progress.visible && !told);
  LblInfo->Show(QString::fromStdString(screen.LblInfo), screen.LblInfoScrolling, nowMs);
  LblErreur->Show(QString::fromStdString(notices.lastError));
  ShowInputs(screen);
}

void BottomStrip::Tell(const QString& text, int64_t nowMs) {
  LblAvis->Show(text);
  toldUntilMs_ = text.isEmpty() ? 0 : nowMs + kToldMs;
}

void BottomStrip::ShowHealth(const HealthLine& health, int64_t nowMs) {
  for (size_t index = 0; index < health_.size(); ++index) {
    const HealthFigure& figure = health.figures[index];
    if (figure.name[0] == '\0') continue;
    // The error itself stands beside.
    const bool error = index == HealthLine::kError && !figure.state.empty();
    const QString what = error ? QString() : QString::fromStdString(figure.text) + QChar(u' ');
    health_[index]->SetColour(ColourOf(figure.severity));
    health_[index]->Show(
        QStringLiteral("%1 %2· %3")
            .arg(texts_.Word(figure.name), what,
                 QString::fromStdString(AgeText(nowMs - figure.sinceMs, texts_.Langue()))));
  }
}

}  // namespace zemo
