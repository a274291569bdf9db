#include "engine/screens/StatusHeader.h"

#include <QHBoxLayout>
#include <QVBoxLayout>
#include <algorithm>

#include "engine/HealthLine.h"
#include "engine/MainScreenPicture.h"
#include "engine/NextUp.h"
#include "engine/screens/IntroBar.h"
#include "station/OperatorWords.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "station/TimeForms.h"
#include "ui/FitLabel.h"
#include "ui/LevelMeter.h"
#include "ui/Theme.h"
#include "ui/WaveformView.h"

namespace zemo {

namespace {

QString Text(const std::string& text) {
  return QString::fromStdString(text);
}

void Put(QLabel* label, const QString& text) {
  if (label->text() != text) label->setText(text);
}

void Colour(QLabel* label, const QColor& ink, const QColor& ground, int radius) {
  const QString sheet = QStringLiteral("color:%1;background:%2;border-radius:%3px;padding:0 4px;")
                            .arg(ink.name(), ground.name(QColor::HexArgb))
                            .arg(radius);
  if (label->styleSheet() != sheet) label->setStyleSheet(sheet);
}

// Keeps its room when it is hidden.
void KeepRoom(QWidget* widget) {
  QSizePolicy policy = widget->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget->setSizePolicy(policy);
}

QString Countdown(int seconds) {
  if (seconds < 0) return {};
  const QChar zero(u'0');
  if (seconds >= 3600)
    return QStringLiteral("-%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, zero)
        .arg(seconds % 60, 2, 10, zero);
  return QStringLiteral("-%1:%2").arg(seconds / 60, 2, 10, zero).arg(seconds % 60, 2, 10, zero);
}

// In live mode the next break stands in the date's place: "15:15 >> Pubs - 01:05".
std::string NextBreakInWords(const std::string& text, int langue) {
  constexpr std::string_view kBefore = " >> ", kBehind = " - ";
  const size_t from = text.find(kBefore);
  const size_t to = from == std::string::npos ? from : text.find(kBehind, from);
  if (to == std::string::npos) return text;
  const size_t type = from + kBefore.size();
  return text.substr(0, type) + InOperatorsWords(text.substr(type, to - type), langue) +
         text.substr(to);
}

QVBoxLayout* Column(QWidget* parent, int spacing) {
  auto* layout = new QVBoxLayout(parent);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  return layout;
}

}  // namespace

FitLabel* StatusHeader::Line(const char* name) {
  auto* label = new FitLabel(this);
  label->setObjectName(QString::fromLatin1(name));
  return label;
}

QLabel* StatusHeader::Light(const char* name) {
  auto* label = new QLabel(this);
  label->setObjectName(QString::fromLatin1(name));
  label->setAlignment(Qt::AlignCenter);
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  KeepRoom(label);
  label->hide();
  return label;
}

StatusHeader::Tile StatusHeader::MakeTile(const char* name) {
  Tile tile;
  tile.frame = new QFrame(this);
  tile.frame->setObjectName(QString::fromLatin1(name));
  tile.frame->setProperty("panel", true);
  tile.head = new QLabel(tile.frame);
  tile.head->setObjectName(QString::fromLatin1(name) + QStringLiteral("Head"));
  tile.head->setProperty("dim", true);
  tile.when = Line((std::string(name) + "When").c_str());
  tile.when->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  tile.what = Line((std::string(name) + "What").c_str());
  auto* layout = Column(tile.frame, 0);
  layout->setContentsMargins(8, 3, 8, 3);
  auto* top = new QHBoxLayout;
  top->addWidget(tile.head);
  top->addWidget(tile.when, 1);
  layout->addLayout(top);
  layout->addWidget(tile.what);
  return tile;
}

QWidget* StatusHeader::LeftZone() {
  auto* zone = new QWidget(this);
  zone->setObjectName(QStringLiteral("HeadLeft"));
  auto* layout = Column(zone, 3);
  lamp_ = new QLabel(zone);
  lamp_->setObjectName(QStringLiteral("OnAirLamp"));
  lamp_->setAlignment(Qt::AlignCenter);
  lamp_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  lampReason_ = Line("OnAirLampReason");
  lampReason_->setAlignment(Qt::AlignCenter);
  lampReason_->hide();
  LblMode = Line("LblMode");
  LblMode->setAlignment(Qt::AlignCenter);
  LblDateTitre = Line("LblDateTitre");
  LblDateTitre->setAlignment(Qt::AlignCenter);
  LblFeu = Light("LblFeu");
  LblIntro = Light("LblIntro");
  LblTopage = Light("LblTopage");
  for (QWidget* widget : {static_cast<QWidget*>(lamp_), static_cast<QWidget*>(lampReason_),
                          static_cast<QWidget*>(LblMode), static_cast<QWidget*>(LblDateTitre),
                          static_cast<QWidget*>(LblFeu), static_cast<QWidget*>(LblIntro),
                          static_cast<QWidget*>(LblTopage)})
    layout->addWidget(widget);
  layout->addStretch();
  return zone;
}

QWidget* StatusHeader::MiddleZone() {
  auto* zone = new QWidget(this);
  zone->setObjectName(QStringLiteral("HeadMiddle"));
  auto* layout = Column(zone, 3);
  LblArtiste = Line("LblArtiste");
  VuMettre = new WaveformView(zone);
  VuMettre->setObjectName(QStringLiteral("VuMettre"));
  MMLevelX1 = new LevelMeter(zone);
  MMLevelX1->setObjectName(QStringLiteral("MMLevelX1"));
  MMLevelX2 = new LevelMeter(zone);
  MMLevelX2->setObjectName(QStringLiteral("MMLevelX2"));
  layout->addWidget(LblArtiste);
  layout->addWidget(VuMettre, 1);
  layout->addWidget(MMLevelX1);
  layout->addWidget(MMLevelX2);
  layout->addLayout(Figures(zone));
  return zone;
}

// The element's length and exit point on the left; for how long the output has run on the right.
QHBoxLayout* StatusHeader::Figures(QWidget* zone) {
  LblLongueur = Line("LblLongueur");
  PSortie = Line("PSortie");
  VueIntro = new IntroBar(zone);
  VueIntro->setObjectName(QStringLiteral("VueIntro"));
  VueIntro->hide();
  LblEncours = Line("LblEncours");
  LblEncours->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* figures = new QHBoxLayout;
  figures->setSpacing(6);
  const char* names[] = {"LblLongueurHead", "LblEncoursHead"};
  for (size_t head = 0; head < figureHeads_.size(); ++head) {
    figureHeads_[head] = new QLabel(zone);
    figureHeads_[head]->setObjectName(QString::fromLatin1(names[head]));
    figureHeads_[head]->setProperty("dim", true);
  }
  figures->addWidget(figureHeads_[0]);
  figures->addWidget(LblLongueur, 2);
  figures->addWidget(PSortie, 2);
  figures->addWidget(VueIntro, 3);
  figures->addSpacing(8);
  figures->addWidget(figureHeads_[1]);
  figures->addWidget(LblEncours, 2);
  return figures;
}

QWidget* StatusHeader::RightZone() {
  auto* zone = new QWidget(this);
  zone->setObjectName(QStringLiteral("HeadRight"));
  auto* layout = Column(zone, 0);
  auto* clock = new QHBoxLayout;
  clock->setSpacing(0);
  clock->addStretch();
  const auto digits = [&](const char* name) {
    auto* label = new QLabel(zone);
    label->setObjectName(QString::fromLatin1(name));
    clock->addWidget(label);
    return label;
  };
  hh_ = digits("hh");
  colons_[0] = digits("");
  mn_ = digits("mn");
  colons_[1] = digits("");
  ss_ = digits("ss");
  for (QLabel* colon : colons_) colon->setText(QStringLiteral(":"));
  InfoDate = Line("InfoDate");
  InfoDate->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  LblTemp = new QLabel(zone);
  LblTemp->setObjectName(QStringLiteral("LblTemp"));
  LblTemp->setProperty("dim", true);
  Temp = Line("Temp");
  Temp->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  layout->addLayout(clock);
  layout->addWidget(InfoDate);
  layout->addStretch();
  layout->addWidget(LblTemp, 0, Qt::AlignRight);
  layout->addWidget(Temp);
  // Whole minutes and seconds that remain, for whoever reads them by name.
  Tmn = new QLabel(zone);
  Tmn->setObjectName(QStringLiteral("Tmn"));
  Tmn->hide();
  Tss = new QLabel(zone);
  Tss->setObjectName(QStringLiteral("Tss"));
  Tss->hide();
  return zone;
}

StatusHeader::StatusHeader(Translation texts, QWidget* parent) : QFrame(parent), texts_(texts) {
  setObjectName(QStringLiteral("StatusHeader"));
  setProperty("panel", true);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);  // no mode moves it
  auto* layout = Column(this, 4);
  layout->setContentsMargins(8, 5, 8, 5);
  auto* top = new QHBoxLayout;
  top->setSpacing(12);
  top->addWidget(LeftZone());
  top->addWidget(MiddleZone(), 1);
  top->addWidget(RightZone());
  next_ = MakeTile("TileNext");
  break_ = MakeTile("TileBreak");
  pip_ = MakeTile("TilePip");
  auto* tiles = new QHBoxLayout;
  tiles->setSpacing(6);
  tiles->addWidget(next_.frame, 5);
  tiles->addWidget(break_.frame, 3);
  tiles->addWidget(pip_.frame, 2);
  layout->addLayout(top, 1);
  layout->addLayout(tiles);
}

void StatusHeader::Arrange(double unit) {
  using Theme::Px;
  using Theme::Type;
  lamp_->setFont(Type(unit, 26, true));
  lamp_->setFixedHeight(Px(unit, 42));
  lampReason_->SetType(Type(unit, 14), 9);
  lampReason_->SetColour(Theme::kNote);
  LblMode->SetType(Type(unit, 17), 9);
  LblDateTitre->SetType(Type(unit, 14), 9);
  LblDateTitre->SetColour(Theme::kNote);
  for (QLabel* light : {LblFeu, LblIntro, LblTopage}) {
    light->setFont(Type(unit, 14, true));
    light->setFixedHeight(Px(unit, 21));
  }
  LblArtiste->SetType(Type(unit, 34, true), Px(unit, 22));
  VuMettre->setFixedHeight(Px(unit, 66));
  MMLevelX1->setFixedHeight(Px(unit, 8));
  MMLevelX2->setFixedHeight(Px(unit, 8));
  for (FitLabel* figure : {LblEncours, LblLongueur, PSortie}) figure->SetType(Type(unit, 17), 10);
  for (QLabel* head : figureHeads_) head->setFont(Type(unit, 13));
  VueIntro->setFont(Type(unit, 14, true));
  VueIntro->setFixedHeight(Px(unit, 24));
  for (QLabel* digits : {hh_, mn_, ss_, colons_[0], colons_[1]})
    digits->setFont(Type(unit, 56, true));
  InfoDate->SetType(Type(unit, 18), 9);
  LblTemp->setFont(Type(unit, 14));
  Temp->SetType(Type(unit, 82, true), 20);
  Temp->setFixedHeight(Px(unit, 78));  // digits have no descenders
  findChild<QWidget*>(QStringLiteral("HeadLeft"))->setFixedWidth(Px(unit, 190));
  findChild<QWidget*>(QStringLiteral("HeadRight"))->setFixedWidth(Px(unit, 310));
  for (Tile* tile : {&next_, &break_, &pip_}) {
    tile->head->setFont(Type(unit, 13));
    tile->when->SetType(Type(unit, 22, true), 10);
    tile->what->SetType(Type(unit, 20), Px(unit, 15));
  }
}

// Red only while a listener could hear it.
void StatusHeader::ShowLamp(const Station& station, const OutputFigures& output, bool silent) {
  struct Look {
    const char* word;
    QColor ink, ground;
  };
  const bool unheard = UnheardOnAir(station, output);
  const Look look = unheard  ? Look{"NoDevice", Qt::black, Theme::kNote}
                    : silent ? Look{"SilentOnAir", Qt::black, Theme::kNote}
                    : station.engine.EmergencyOnAir
                        ? Look{"EmergencyOnAir", Qt::black, Theme::kNote}
                    : station.engine.IsRunning ? Look{"OnAir", Qt::white, Theme::kOnAir}
                    : sounding_ ? Look{"Draining", Theme::kText, QColor(0x6b, 0x4a, 0x14)}
                                : Look{"Stopped", Theme::kDim, Theme::kRaised};
  Put(lamp_, texts_.Word(look.word));
  Colour(lamp_, look.ink, look.ground, 4);
  const QString tip =
      unheard ? texts_.Word("NoDeviceTip").arg(texts_.OfRoutine(output.output)) : QString();
  if (lamp_->toolTip() != tip) lamp_->setToolTip(tip);
  lampReason_->setVisible(unheard);
  lampReason_->Show(unheard ? texts_.OfRoutine(output.output) : QString());
}

void StatusHeader::ShowLights(const MainScreen& screen) {
  LblMode->Show(texts_.OfRoutine(screen.LblMode));
  LblDateTitre->Show(texts_.OfRoutine(screen.LblDateTitre));
  LblDateTitre->setVisible(!screen.LblDateTitre.empty());
  Put(LblFeu, texts_.OfRoutine(screen.LblFeu.text));
  // Red is the lamp's alone.
  Colour(LblFeu, Qt::black,
         screen.voiceTrackHeard ? Theme::kVoiceTrack : Theme::FromBgr(screen.LblFeu.colour), 3);
  LblFeu->setVisible(screen.LblFeu.visible);
  Colour(LblIntro, Qt::black, Theme::kJingle, 3);
  LblIntro->setVisible(screen.LblIntro.visible);
  Put(LblTopage, texts_.OfRoutine(screen.LblTopage.text));
  Colour(LblTopage, Qt::black, Theme::kNote, 3);
  LblTopage->setVisible(screen.LblTopage.visible);
}

void StatusHeader::ShowClock(const MainScreen& screen, const LocalDateTime& now) {
  Put(hh_, Text(TwoDigits(now.hour)));
  Put(mn_, Text(TwoDigits(now.minute)));
  Put(ss_, Text(TwoDigits(now.second)));
  InfoDate->Show(Text(NextBreakInWords(screen.InfoDate, texts_.Langue())));
}

void StatusHeader::ShowElement(const MainScreen& screen, int32_t codeOnAir,
                               uint32_t counterColour) {
  LblArtiste->SetColour(sounding_ ? Theme::kText : Theme::kDim);
  LblArtiste->Show(Text(TitleInWords(codeOnAir, screen.LblArtiste, texts_.Langue())));
  // Where nothing plays, nothing remains.
  Temp->SetColour(Theme::Readable(Theme::FromBgr(counterColour), Theme::kText));
  Temp->Show(idle_ ? QString() : Text(screen.Temp));
  Put(Tmn, QString::number(screen.Tmn));
  Put(Tss, QString::number(screen.Tss));
  LblEncours->Show(Text(screen.LblEncours));
  LblLongueur->Show(Text(screen.LblLongueur));
  PSortie->Show(Text(screen.PSortie));
  VueIntro->Show(screen.VueIntro.visible, screen.VueIntro.elapsedSec, screen.VueIntro.lengthSec);
}

void StatusHeader::ShowStation(const Station& station, const MainScreen& screen,
                               const LocalDateTime& now, const OutputFigures& output, bool silent) {
  sounding_ = station.platform.sound.ElementSounds();
  idle_ = !station.engine.IsRunning && !sounding_;
  ShowLamp(station, output, silent);
  ShowLights(screen);
  ShowClock(screen, now);
  ShowElement(screen, station.engine.CodeEnCours, station.notices.counterColour);
}

void StatusHeader::ShowNext(const NextUp& next) {
  const QString none = texts_.Word("None");
  Put(next_.head, texts_.Word("Next"));
  next_.when->Show(Text(next.elementAt));
  next_.what->Show(next.elementTitle.empty()
                       ? none
                       : Text(TitleInWords(next.elementCode, next.elementTitle, texts_.Langue())));
  next_.what->SetColour(next.elementCode > 0 ? Theme::kText
                                             : Theme::ColourOfElement(next.elementCode));
  Put(break_.head, texts_.Word("Break"));
  break_.when->Show(Countdown(next.breakInSec));
  break_.what->Show(next.breakAt.empty()
                        ? none
                        : QStringLiteral("%1  %2  %3")
                              .arg(Text(next.breakAt),
                                   texts_.Word(next.breakIsSpots ? "Spots" : "News"),
                                   Text(next.breakLength)));
  break_.what->SetColour(next.breakAt.empty() ? Theme::kDim
                         : next.breakIsSpots  ? Theme::kSpot
                                              : Theme::kNews);
  Put(pip_.head, texts_.Word("Pip"));
  pip_.when->Show(Countdown(next.pipInSec));
  pip_.what->Show(next.pipAt.empty() ? none : Text(next.pipAt.substr(0, 5)));
  pip_.what->SetColour(next.pipAt.empty() ? Theme::kDim : Theme::kPip);
}

void StatusHeader::ShowWave(const Station& station, const MainScreen& screen,
                            std::shared_ptr<const WavePeaks> peaks) {
  const EngineState& engine = station.engine;
  const SoundChain& sound = station.platform.sound;
  const std::string& file = sound.FileName(engine.CurrentChannel);
  if (file != introFile_ || file.empty()) {
    introFile_ = file;
    introMs_ = 0;
  }
  if (engine.IntroLengthSec > 0) introMs_ = engine.IntroLengthSec * 1000;
  WaveformView::Element element;
  element.colour =
      Theme::ColourOfElement(engine.CodeEnCours == 0 ? 1 : int32_t{engine.CodeEnCours});
  if (!file.empty()) {
    element.lengthMs = engine.ElementLengthMs;
    element.positionMs = engine.ElementPositionMs;
    element.introMs = introMs_;
    element.exitMs = static_cast<int32_t>(std::max(0.0F, static_cast<float>(engine.MixPointMs)));
  }
  VuMettre->Show(element, screen.VuMettrePercent, std::move(peaks));
}

void StatusHeader::ShowLevels(const OutputFigures& output, int64_t nowMs) {
  MMLevelX1->Show(output.peakLeft, nowMs);
  MMLevelX2->Show(output.peakRight, nowMs);
}

}  // namespace zemo
