#include "library/screens/MarkerPane.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "library/LibraryEditor.h"
#include "station/Station.h"
#include "station/TextForms.h"
#include "ui/Theme.h"
#include "ui/Translation.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {

constexpr int kPlaceMs = 40;
constexpr int kStandsPolls = 4;    // that a card is shown before it is looked at
constexpr int kMeasurePolls = 50;  // between two looks at one that was not measured yet
constexpr int kViewPixels = 110, kLeastViewPixels = 44;  // where the card leaves that little

// "mm:ss.mmm"
QString PlaceText(int32_t ms) {
  return QStringLiteral("%1:%2.%3")
      .arg(ms / 60000, 2, 10, QLatin1Char('0'))
      .arg(ms / 1000 % 60, 2, 10, QLatin1Char('0'))
      .arg(ms % 1000, 3, 10, QLatin1Char('0'));
}

std::string CardShown(const LibraryEditor& editor) {
  return editor.music.lblNumero + " " + Trim(editor.music.ChFileName);
}

}  // namespace

MarkerPane::MarkerPane(Station& station, LibraryEditor& editor, Waveforms* waveforms,
                       const Translation& texts, std::function<void()> marked, QWidget* parent)
    : QFrame(parent),
      station_(station),
      editor_(editor),
      waveforms_(waveforms),
      texts_(texts),
      marked_(std::move(marked)) {
  setObjectName(QStringLiteral("CadreOnde"));
  setProperty("panel", true);
  VueOnde = new MarkerView(editor_.sound.markers, this);
  VueOnde->setObjectName(QStringLiteral("VueOnde"));
  VueOnde->setAccessibleName(texts_.Word("For.VueOnde"));
  VueOnde->setToolTip(texts_.Word("VueOnde.Tip"));
  ConnectView();
  auto* marks = new QHBoxLayout;
  auto* joins = new QHBoxLayout;
  MakeMarkButtons(*marks);
  MakeJoinButtons(*joins);
  rows_ = new QBoxLayout(QBoxLayout::TopToBottom);
  rows_->addLayout(marks);
  rows_->addLayout(joins);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(VueOnde);
  layout->addLayout(rows_);
  poll_.setInterval(kPlaceMs);
  connect(&poll_, &QTimer::timeout, this, [this] { Poll(); });
}

// What has the keys of the marks stays in focus whatever button is pressed.
QPushButton* MarkerPane::Button(const char* name, std::function<void()> pressed) {
  auto* button = new QPushButton(texts_.Word(name), this);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(texts_.Word(std::string(name) + ".Tip"));
  button->setAccessibleDescription(button->toolTip());
  connect(button, &QPushButton::clicked, this, [this, pressed = std::move(pressed)] {
    pressed();
    VueOnde->setFocus();
    Refresh();
  });
  return button;
}

void MarkerPane::MakeMarkButtons(QBoxLayout& row) {
  BtnEcoute = Button("BtnEcoute", [this] { Listen(); });
  LblPosition = new QLabel(this);
  LblPosition->setObjectName(QStringLiteral("LblPosition"));
  row.addWidget(BtnEcoute);
  row.addWidget(LblPosition);
  row.addStretch(1);
  const std::pair<const char*, Mark> marks[] = {{"BtnIntro", Mark::kIntro},
                                                {"BtnSortie", Mark::kExit},
                                                {"BtnDebutExtrait", Mark::kExtractBegin},
                                                {"BtnFinExtrait", Mark::kExtractEnd}};
  for (const auto& [name, mark] : marks) {
    markButtons_.push_back(Button(name, [this, which = mark] { PutMark(which); }));
    row.addWidget(markButtons_.back());
  }
  BtnAnnule = Button("BtnAnnule", [this] { Change(Markers::Undo); });
  row.addWidget(BtnAnnule);
}

void MarkerPane::MakeJoinButtons(QBoxLayout& row) {
  row.addWidget(Button("BtnZoomMoins", [this] { Zoom(-1); }));
  row.addWidget(Button("BtnZoomPlus", [this] { Zoom(1); }));
  row.addStretch(1);
  BtnPropose = Button("BtnPropose", [this] { Change(Markers::TakeMeasuredExit); });
  BtnRaccordAvant = Button("BtnRaccordAvant", [this] { Join(Library::JoinSide::kBefore); });
  BtnRaccordApres = Button("BtnRaccordApres", [this] { Join(Library::JoinSide::kBehind); });
  BtnRetenir = Button("BtnRetenir", [this] {
    Library::BtnRetenir_Click(editor_);
    ShowPartners();
  });
  BtnRetenir->setCheckable(true);
  for (QPushButton* button : {BtnPropose, BtnRaccordAvant, BtnRaccordApres, BtnRetenir})
    row.addWidget(button);
}

void MarkerPane::ConnectView() {
  VueOnde->pressed = [this](int x) { Press(x); };
  VueOnde->dragged = [this](int x) { Drag(x); };
  VueOnde->released = [this] {
    if (std::exchange(dragged_, Mark::kNone) != Mark::kNone) Change(Markers::EndDrag);
  };
  VueOnde->zoomed = [this](int steps, int x) {
    Markers::Zoom(Marks(), steps, Markers::MsAt(Marks(), x, VueOnde->width()));
    Refresh();
  };
  VueOnde->scrolled = [this](int pixels) {
    const int64_t frames = Marks().toFrame - Marks().fromFrame;
    Markers::Scroll(Marks(), frames * pixels / std::max(1, VueOnde->width()));
    Refresh();
  };
  VueOnde->typed = [this](const QKeyEvent& key) { return Type(key); };
}

void MarkerPane::Arrange(double unit, bool wide) {
  const int margin = Theme::Px(unit, 5);
  layout()->setContentsMargins(margin, margin, margin, margin);
  layout()->setSpacing(margin);
  rows_->setSpacing(margin);
  rows_->setDirection(wide ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
  VueOnde->setMinimumHeight(Theme::Px(unit, kLeastViewPixels));
  VueOnde->setMaximumHeight(Theme::Px(unit, kViewPixels));
  LblPosition->setMinimumWidth(
      QFontMetrics(Theme::Type(unit, 15)).horizontalAdvance(QStringLiteral("00:00.000")) + 8);
}

// --- following the card ---

void MarkerPane::showEvent(QShowEvent* event) {
  QFrame::showEvent(event);
  poll_.start();
}

void MarkerPane::hideEvent(QHideEvent* event) {
  QFrame::hideEvent(event);
  poll_.stop();
}

void MarkerPane::Poll() {
  const std::string shown = CardShown(editor_);
  stands_ = shown == standing_ ? stands_ + 1 : 0;
  standing_ = shown;
  const bool look = stands_ >= kStandsPolls && !Looked();
  const bool measure = stands_ % kMeasurePolls == 0 && Marks().measured == MeasuredMarks();
  if ((look || measure) && !std::exchange(waits_, true))
    WhenFree(station_, this, [this] {
      waits_ = false;
      if (Looked()) return Library::LookForMeasures(station_, editor_);
      if (stands_ >= kStandsPolls) Look();
    });
  Refresh();
}

bool MarkerPane::Looked() const {
  return looked_ == CardShown(editor_) && editor_.sound.file == Trim(editor_.music.ChFileName);
}

void MarkerPane::Look() {
  looked_ = CardShown(editor_);
  Library::LookAtSound(station_, editor_);
  lengthKnown_ = false;
  shapes_ = {};
  dragged_ = Mark::kNone;
  ShowPartners();
  Refresh();
}

void MarkerPane::Refresh() {
  if (dragged_ == Mark::kNone) Library::TakeMarkBoxes(editor_);
  ReadShapes();
  const int32_t heardMs = Library::HeardAtMs(station_, editor_);
  if (heardMs >= 0 && dragged_ == Mark::kNone) Markers::BringIntoView(Marks(), heardMs);
  VueOnde->Show(shapes_, heardMs,
                QString::fromStdString(Library::ListeningNote(station_, editor_)));
  const int32_t chosenMs = Markers::PlaceOf(Marks(), Marks().chosen);
  const int32_t shownMs = heardMs >= 0 ? heardMs : chosenMs >= 0 ? chosenMs : Marks().cursorMs;
  LblPosition->setText(PlaceText(shownMs));
  ShowButtons();
}

void MarkerPane::ReadShapes() {
  const std::string& path = editor_.sound.path;
  if (path.empty()) shapes_ = {};
  if (!waveforms_ || path.empty()) return;
  shapes_.whole = waveforms_->PeaksOf(path);
  SoundMarkers& marks = Marks();
  if (!lengthKnown_) {
    const auto length = waveforms_->PartOf(path, 0, 0, 0);
    lengthKnown_ = length != nullptr;
    if (length && length->lengthFrames > 0) Markers::SetLength(marks, length->lengthFrames);
    return;
  }
  if (marks.toFrame - marks.fromFrame == marks.lengthFrames) return;
  if (auto part = waveforms_->PartOf(path, marks.fromFrame, marks.toFrame,
                                     static_cast<size_t>(std::max(1, VueOnde->width()))))
    shapes_.part = std::move(part);
}

void MarkerPane::ShowButtons() {
  const bool sound = Marks().lengthFrames > 0;
  const bool plays = Library::IsListening(station_, editor_);
  BtnEcoute->setText(texts_.Word(plays ? "BtnEcoute.On" : "BtnEcoute"));
  BtnEcoute->setEnabled(sound || plays);
  for (QPushButton* button : markButtons_) button->setEnabled(sound);
  BtnAnnule->setEnabled(!Marks().changes.empty());
  BtnPropose->setEnabled(sound && Marks().measured.exitMs > 0);
  BtnRetenir->setEnabled(editor_.Code() > 0);
  BtnRetenir->setChecked(editor_.sound.partner > 0 && editor_.sound.partner == editor_.Code());
}

// Each join's button tells which titles it plays.
void MarkerPane::ShowPartners() {
  const std::pair<QPushButton*, Library::JoinSide> joins[] = {
      {BtnRaccordAvant, Library::JoinSide::kBefore}, {BtnRaccordApres, Library::JoinSide::kBehind}};
  for (const auto& [button, side] : joins) {
    const Library::JoinTitle other = Library::PartnerOf(station_, editor_, side);
    const QString tip = texts_.Word(button->objectName().toStdString() + ".Tip");
    button->setEnabled(!other.file.empty() && !editor_.sound.file.empty());
    button->setToolTip(
        other.file.empty() ? tip : tip + QStringLiteral("\n") + QString::fromStdString(other.name));
    button->setAccessibleDescription(button->toolTip());
  }
}

// --- orders ---

SoundMarkers& MarkerPane::Marks() {
  return editor_.sound.markers;
}

void MarkerPane::Change(const std::function<void(SoundMarkers&)>& change) {
  if (Marks().lengthFrames <= 0) return;
  if (dragged_ == Mark::kNone) Library::TakeMarkBoxes(editor_);
  change(Marks());
  Library::PutMarkBoxes(editor_);
  marked_();
  Refresh();
}

void MarkerPane::PutMark(Mark mark) {
  const int32_t heardMs = Library::HeardAtMs(station_, editor_);
  Change([&](SoundMarkers& marks) {
    Markers::Put(marks, mark, heardMs >= 0 ? heardMs : marks.cursorMs);
  });
}

void MarkerPane::Press(int x) {
  if (Marks().lengthFrames <= 0) return;
  dragged_ = Markers::MarkAt(Marks(), x, VueOnde->width());
  if (dragged_ != Mark::kNone)
    Markers::BeginDrag(Marks(), dragged_);
  else
    Drag(x);
  Refresh();
}

void MarkerPane::Drag(int x) {
  const int32_t ms = Markers::MsAt(Marks(), x, VueOnde->width());
  if (dragged_ != Mark::kNone)
    return Change([ms](SoundMarkers& marks) { Markers::DragTo(marks, ms); });
  Marks().chosen = Mark::kNone;
  Library::ListenAt(station_, editor_, ms);
  Refresh();
}

void MarkerPane::Zoom(int steps) {
  const int32_t heardMs = Library::HeardAtMs(station_, editor_);
  const int32_t chosenMs = Markers::PlaceOf(Marks(), Marks().chosen);
  const int32_t about = heardMs >= 0 ? heardMs : chosenMs >= 0 ? chosenMs : Marks().cursorMs;
  Markers::BringIntoView(Marks(), about);
  Markers::Zoom(Marks(), steps, about);
}

// A file that is opened may hold the tick for a while; a pause does not.
void MarkerPane::Listen() {
  const auto listen = [this] {
    Library::BtnEcoute_Click(station_, editor_);
    Refresh();
  };
  if (Library::IsListening(station_, editor_)) return listen();
  WhenFree(station_, this, listen);
}

void MarkerPane::Join(Library::JoinSide side) {
  WhenFree(station_, this, [this, side] {
    Library::BtnRaccord_Click(station_, editor_, side);
    Refresh();
  });
}

bool MarkerPane::Type(const QKeyEvent& key) {
  const bool undo = key.key() == Qt::Key_Z && key.modifiers() == Qt::ControlModifier;
  if (!undo && key.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) return false;
  const bool known = undo || TypeMark(key) || TypeView(key);
  if (undo) Change(Markers::Undo);
  Refresh();
  return known;
}

// Keys that set and move marks.
bool MarkerPane::TypeMark(const QKeyEvent& key) {
  const std::pair<int, Mark> marks[] = {{Qt::Key_I, Mark::kIntro},
                                        {Qt::Key_O, Mark::kExit},
                                        {Qt::Key_B, Mark::kExtractBegin},
                                        {Qt::Key_E, Mark::kExtractEnd}};
  for (const auto& [letter, mark] : marks)
    if (key.key() == letter) return PutMark(mark), true;
  const int32_t step = key.modifiers() & Qt::ShiftModifier ? kLongStepMs : kStepMs;
  switch (key.key()) {
    case Qt::Key_Left:
      return Change([step](SoundMarkers& all) { Markers::Step(all, -step); }), true;
    case Qt::Key_Right:
      return Change([step](SoundMarkers& all) { Markers::Step(all, step); }), true;
    case Qt::Key_P:
      return Change(Markers::TakeMeasuredExit), true;
    case Qt::Key_Delete:
      return Change([](SoundMarkers& all) { Markers::Erase(all, all.chosen); }), true;
    default:
      return false;
  }
}

bool MarkerPane::TypeView(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Escape:
      Marks().chosen = Mark::kNone;
      return true;
    case Qt::Key_Plus:
      return Zoom(1), true;
    case Qt::Key_Minus:
      return Zoom(-1), true;
    case Qt::Key_Home:
      Library::ListenAt(station_, editor_, 0);
      return Markers::BringIntoView(Marks(), 0), true;
    case Qt::Key_Space:
      if (!key.isAutoRepeat()) Listen();
      return true;
    default:
      return false;
  }
}

}  // namespace zemo
