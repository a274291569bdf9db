#include "engine/screens/ControlBar.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QStyle>
#include <QToolButton>
#include <utility>

#include "engine/MainScreenPicture.h"
#include "engine/OperatorControls.h"
#include "station/Station.h"
#include "ui/Theme.h"
#include "ui/Translation.h"

namespace zemo {

namespace {

struct Button {
  Toolbar button;
  const char* name;
  const char* item;  // of the texts
  const char* tip;
  const char* key;
};
constexpr Button kButtons[] = {{Toolbar::kAutomatic, "Toolbar1_1", "1", "tip1", "F2"},
                               {Toolbar::kLive, "Toolbar1_2", "2", "tip2", "F3"},
                               {Toolbar::kDayGrid, "Toolbar1_3", "3", "tip3", "F4"},
                               {Toolbar::kStart, "Toolbar1_5", "5", "tip5", nullptr},
                               {Toolbar::kStop, "Toolbar1_6", "6", "tip6", nullptr}};

}  // namespace

// Works the button at once: its own shortcut would show it pressed for a tenth of a second first.
void ControlBar::GiveKey(QAbstractButton* button, const char* key) {
  if (!key) return;
  button->setProperty("keys", QString::fromLatin1(key));
  connect(new QShortcut(QKeySequence(QString::fromLatin1(key)), this), &QShortcut::activated,
          button, [button] { button->click(); });
}

QToolButton* ControlBar::AddToolbarButton(QHBoxLayout* bar, Toolbar button, const char* key) {
  auto* made = new QToolButton(this);
  made->setCheckable(true);
  made->setFocusPolicy(Qt::TabFocus);
  GiveKey(made, key);
  bar->addWidget(made);
  toolbar_[static_cast<size_t>(button)] = made;
  connect(made, &QToolButton::clicked, this, [this, button] {
    orders_.toolbar(button);
    Refresh(PictureOf(station_));
  });
  return made;
}

QPushButton* ControlBar::AddButton(QHBoxLayout* bar, const char* name, const char* key,
                                   std::function<void()> order) {
  auto* made = new QPushButton(this);
  made->setObjectName(QString::fromLatin1(name));
  made->setFocusPolicy(Qt::TabFocus);
  GiveKey(made, key);
  bar->addWidget(made);
  connect(made, &QPushButton::clicked, this, std::move(order));
  return made;
}

ControlBar::ControlBar(Station& station, ControlBarOrders orders, Translation texts,
                       QWidget* parent)
    : QWidget(parent), station_(station), orders_(std::move(orders)), texts_(texts) {
  setObjectName(QStringLiteral("ControlBar"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* bar = new QHBoxLayout(this);
  bar->setContentsMargins(0, 0, 0, 0);
  bar->setSpacing(4);
  auto* group = new QWidget(this);
  group->setObjectName(QStringLiteral("Toolbar1"));
  auto* tools = new QHBoxLayout(group);
  tools->setContentsMargins(0, 0, 0, 0);
  tools->setSpacing(3);
  for (const Button& button : kButtons) {
    if (button.button == Toolbar::kStart) tools->addSpacing(8);  // button 4, the separator
    AddToolbarButton(tools, button.button, button.key)
        ->setObjectName(QString::fromLatin1(button.name));
  }
  toolbar_[static_cast<size_t>(Toolbar::kStart)]->setProperty("running", true);
  bar->addWidget(group);
  bar->addSpacing(6);
  CmdStop = AddButton(bar, "CmdStop", "F6", [this] { orders_.next(); });
  CmdStop->setProperty("keys", texts_.Word("KeysOfNext"));
  CmdRequette = AddButton(bar, "CmdRequette", "F5", [this] { orders_.request(); });
  BtnSurImpression = AddButton(bar, "BtnSurImpression", "F8", [this] { orders_.overlay(); });
  BntVoiceTrack = AddButton(bar, "BntVoiceTrack", "F9", [this] { orders_.voiceTrack(); });
  BntVoiceTrack->setEnabled(orders_.voiceTrack != nullptr);
  bar->addStretch();
  Info = AddButton(bar, "Info", "F1", [this] { orders_.info(); });
  QSizePolicy keep = BntVoiceTrack->sizePolicy();
  keep.setRetainSizeWhenHidden(true);
  BntVoiceTrack->setSizePolicy(keep);
}

void ControlBar::SetTexts() {
  for (const Button& button : kButtons) {
    QToolButton* tool = toolbar_[static_cast<size_t>(button.button)];
    tool->setText(texts_.Text("Toolbar1", button.item));
    tool->setAccessibleName(tool->text());
    SetTip(*tool, texts_.Text("Toolbar1", button.tip));
  }
}

void ControlBar::Arrange(double unit) {
  const int height = Theme::Px(unit, 38);
  for (QToolButton* tool : toolbar_)
    if (tool) tool->setFixedHeight(height);
  for (QPushButton* button : {CmdStop, CmdRequette, BntVoiceTrack, BtnSurImpression, Info})
    button->setFixedHeight(height);
  // The widest caption of each fits, so that no caption moves the others.
  const QFontMetrics metrics(Theme::Type(unit, 18, true));
  CmdStop->setFixedWidth(std::max(metrics.horizontalAdvance(texts_.OfRoutine(kNextCaption)),
                                  metrics.horizontalAdvance(texts_.OfRoutine(kStopCaption))) +
                         Theme::Px(unit, 36));
  const QFontMetrics plain(Theme::Type(unit, 16));
  BtnSurImpression->setFixedWidth(plain.horizontalAdvance(QStringLiteral("Sur Impression")) +
                                  Theme::Px(unit, 26));
}

void ControlBar::Refresh(const MainScreen& screen) {
  const bool grid = station_.gridFrame.open;
  const auto check = [this](Toolbar button, bool on) {
    QToolButton* tool = toolbar_[static_cast<size_t>(button)];
    if (tool->isChecked() != on) tool->setChecked(on);
  };
  check(Toolbar::kAutomatic, station_.engine.IsAutomatic && !grid);
  check(Toolbar::kLive, !station_.engine.IsAutomatic && !grid);
  check(Toolbar::kDayGrid, grid);
  check(Toolbar::kStart, screen.ToolbarStartPressed);
  check(Toolbar::kStop, !screen.ToolbarStartPressed);
  const auto put = [](QPushButton* button, const QString& text) {
    if (button->text() != text) button->setText(text);
  };
  put(CmdStop, texts_.OfRoutine(screen.CmdStopCaption));
  const bool atRest = screen.BtnSurImpressionCaption == kOverlayAtRest;
  put(BtnSurImpression, atRest ? texts_.Text("BtnSurImpression", "text")
                               : texts_.OfRoutine(screen.BtnSurImpressionCaption));
  ShowCut(!screen.ToolbarStartPressed && station_.platform.sound.ElementSounds());
}

// What plays out behind a stop the button cuts: another thing than the order to stop.
void ControlBar::ShowCut(bool cuts) {
  if (CmdStop->property("cuts").toBool() == cuts) return;
  CmdStop->setProperty("cuts", cuts);
  CmdStop->style()->polish(CmdStop);
  SetTip(*CmdStop, texts_.Text("CmdStop", cuts ? "tipStopped" : "tip"));
}

void ControlBar::ShowOverlay(bool playable, const QString& tip) {
  BtnSurImpression->setEnabled(playable);
  SetTip(*BtnSurImpression, tip);
}

void ControlBar::ShowVoiceTrack(bool visible) {
  if (BntVoiceTrack->isVisibleTo(this) != visible) BntVoiceTrack->setVisible(visible);
}

}  // namespace zemo
