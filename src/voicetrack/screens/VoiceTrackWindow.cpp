#include "voicetrack/screens/VoiceTrackWindow.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "platform/Desktop.h"
#include "platform/Folder.h"
#include "platform/Recorder.h"
#include "platform/SoundSource.h"
#include "station/Station.h"
#include "ui/Theme.h"
#include "voicetrack/TrackJoins.h"
#include "voicetrack/VoiceTrackParts.h"
#include "voicetrack/VoiceTrackTexts.h"
#include "voicetrack/screens/JoinCards.h"
#include "voicetrack/screens/JoinList.h"

namespace zemo {

namespace {

constexpr int kRefreshMs = 50;
constexpr int64_t kJoinsMs = 500;  // between two looks at the list
constexpr int kLeastWidth = 980, kLeastHeight = 660;
constexpr int32_t kRoomBeforeMs = 2000, kRoomBehindMs = 3000;
constexpr double kSidePixels = 250, kLeastViewPixels = 150;
constexpr const char* kProgramsFolder = "/usr/bin";

void OpenFileDialogue(QWidget& over, const char* name, const QString& title, const QString& folder,
                      const QString& filter, std::function<void(const std::string&)> take) {
  auto* dialog = new QFileDialog(&over, title, folder, filter);
  dialog->setObjectName(QString::fromLatin1(name));
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setOption(QFileDialog::DontUseNativeDialog);
  dialog->setFileMode(QFileDialog::ExistingFile);
  QObject::connect(dialog, &QFileDialog::fileSelected, &over,
                   [take = std::move(take)](const QString& path) { take(path.toStdString()); });
  dialog->open();
}

}  // namespace

VoiceTrackWindow::VoiceTrackWindow(Station& station, VoiceTrackSources sources, QWidget& over)
    : OfficeWindow(station, "FrmVoiceTrack", "VoiceTrack", {{}, VoiceTrackCaptions()}),
      sources_(sources) {
  setParent(&over, windowFlags() | Qt::Window);
  setWindowModality(Qt::WindowModal);
  setWindowTitle(Texts().Word("title"));
  MakeOrders();
  auto* body = new QWidget(this);
  setCentralWidget(body);
  cards_ = new JoinCards(editor_, Texts(), body);
  VueRaccord = Named(new JoinView(body), "VueRaccord");
  VueRaccord->setAccessibleName(Texts().Word("For.VueRaccord"));
  SetTip(*VueRaccord, Texts().Word("VueRaccord.Tip"));
  ConnectView();
  page_ = new VoiceTrackPage(station_, editor_, orders_, Texts(), body);
  auto* right = new QVBoxLayout;
  right->addWidget(cards_);
  right->addWidget(VueRaccord, 1);
  right->addWidget(page_);
  right->addWidget(Foot());
  side_ = Side();
  auto* layout = new QHBoxLayout(body);
  layout->setContentsMargins(8, 6, 8, 8);
  layout->addWidget(side_);
  layout->addLayout(right, 1);
  poll_.setInterval(kRefreshMs);
  connect(&poll_, &QTimer::timeout, this, [this] { Refresh(); });
  setMinimumSize(kLeastWidth, kLeastHeight);  // not that of the type of a larger window
  resize(1280, 800);
  Arrange();
}

void VoiceTrackWindow::MakeOrders() {
  orders_.run = [this](const std::function<void()>& order) { Run(order); };
  orders_.work = [this](std::function<void()> order) { Work(std::move(order)); };
  orders_.chooseFile = [this] { ChooseFile(); };
  orders_.chooseEditor = [this] { ChooseEditor(); };
}

// --- parts ---

QPushButton* VoiceTrackWindow::Button(const char* name, const QKeySequence& keys,
                                      void (*routine)(Station&, VoiceTrackEditor&),
                                      QWidget* parent) {
  auto* made = Named(new QPushButton(Texts().Word(name), parent), name);
  made->setFocusPolicy(Qt::TabFocus);
  // At once: its own shortcut would show it pressed for a tenth of a second first.
  connect(new QShortcut(keys, this), &QShortcut::activated, made, [made] { made->click(); });
  made->setProperty("keys", keys.toString(QKeySequence::PortableText));
  const QString tip = Texts().Word(std::string(name) + ".Tip");
  SetTip(*made, tip.isEmpty() ? made->text() : tip);
  connect(made, &QPushButton::clicked, this,
          [this, routine] { Work([this, routine] { routine(station_, editor_); }); });
  return made;
}

QWidget* VoiceTrackWindow::Side() {
  auto* side = new QWidget(centralWidget());
  auto* words = new QLabel(Texts().Word("For.ListJoins"), side);
  words->setProperty("head", true);
  LblJoins = Named(new QLabel(side), "LblJoins");
  LblJoins->setProperty("dim", true);
  ListJoins = new JoinList(Texts(), side);
  ListJoins->chosen = [this](const TrackJoin& join) {
    Work([this, join] { VoiceTracks::OpenJoin(station_, editor_, join); });
  };
  auto* steps = new QHBoxLayout;
  steps->addWidget(
      Button("BtnPrecedent", Qt::ALT | Qt::Key_PageUp, VoiceTracks::BtnPrecedent_Click, side));
  steps->addWidget(
      Button("BtnSuivant", Qt::ALT | Qt::Key_PageDown, VoiceTracks::BtnSuivant_Click, side));
  auto* layout = new QVBoxLayout(side);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(words);
  layout->addWidget(LblJoins);
  layout->addWidget(ListJoins, 1);
  layout->addLayout(steps);
  return side;
}

QWidget* VoiceTrackWindow::Foot() {
  auto* foot = new QWidget(centralWidget());
  auto* layout = new QHBoxLayout(foot);
  layout->setContentsMargins(0, 0, 0, 0);
  note_ = new QLabel(foot);
  note_->setProperty("note", true);
  LblMicro = Named(new QLabel(Texts().Word("LblMicro"), foot), "LblMicro");
  LblMicro->setProperty("mark", true);
  LblSortie = Named(new QLabel(Texts().Word("LblSortie"), foot), "LblSortie");
  LblSortie->setProperty("mark", true);
  LblSortie->setToolTip(Texts().Word("LblSortie.Tip"));
  layout->addWidget(note_);
  layout->addWidget(LblMicro);
  layout->addWidget(LblSortie);
  layout->addStretch(1);
  layout->addWidget(Button("BtnSave", Qt::CTRL | Qt::Key_S, VoiceTracks::BtnSave_Click, foot));
  return foot;
}

// Escape is no shortcut, so that it closes a box that stands open first.
void VoiceTrackWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return OfficeWindow::keyPressEvent(event);
  Work([this] {
    if (editor_.BtnStopEnabled) VoiceTracks::BtnStop_Click(station_, editor_);
    VoiceTracks::BtnStop2_Click(station_, editor_);
  });
}

void VoiceTrackWindow::ConnectView() {
  VueRaccord->trackMoved = [this](int32_t ms) { MoveTrack(ms); };
  VueRaccord->trackStepped = [this](int32_t ms) { MoveTrack(editor_.LblPositionVT + ms); };
  VueRaccord->dragEnded = [this] { ShowAll(); };
  VueRaccord->cursorMoved = [this](int32_t ms) {
    cursorMs_ = ms;
    zoom_.Reveal(ms, WholeSpanNow());
    Refresh();
  };
  VueRaccord->zoomed = [this](int steps, int32_t aroundMs) {
    zoom_.By(steps, aroundMs, WholeSpanNow());
    Refresh();
  };
  VueRaccord->scrolled = [this](int32_t ms) {
    zoom_.Scroll(ms, WholeSpanNow());
    Refresh();
  };
  VueRaccord->home = [this] {
    CursorHome();
    zoom_.Reveal(cursorMs_, WholeSpanNow());
    Refresh();
  };
  VueRaccord->playPressed = [this] { PlayOrStop(); };
}

// --- opening and closing ---

void VoiceTrackWindow::Open(int64_t key) {
  WhenFree([this, key] {
    if (Barred() || station_.engine.ScreenLocked) return;
    OpenNow(key);
  });
}

void VoiceTrackWindow::OpenNow(int64_t key) {
  const int row = station_.PL.RowOfKey(key);
  if (row == 0) return;
  Busy([this, row] { VoiceTracks::Open(station_, editor_, row); });
  if (!editor_.open) return;
  CursorHome();
  zoom_ = JoinZoom();
  ShowSelf();
  VueRaccord->setFocus();
  poll_.start();
}

// A track that is not stored is asked for.
bool VoiceTrackWindow::MayLeave() {
  if (!OfficeWindow::MayLeave()) return false;
  if (!VoiceTracks::IsUnsaved(editor_)) return true;
  const Answer answer =
      station_.platform.messages.Show("Alerte", VoiceTracks::kAskSave, Buttons::kYesNoCancel);
  if (answer == Answer::kYes) VoiceTracks::BtnSave_Click(station_, editor_);
  return answer == Answer::kNo || (answer == Answer::kYes && !VoiceTracks::IsUnsaved(editor_));
}

// The recorder may yield while it ends.
void VoiceTrackWindow::Left() {
  poll_.stop();
  Busy([this] { VoiceTracks::Form_Unload(station_, editor_); });
  Window::Left();
}

// --- orders ---

void VoiceTrackWindow::ChooseFile() {
  const Folder& station = station_.platform.stationFolder;
  const QString root = ShownText(station.Path());
  const QString folder = station.Exists("VoiceTrack") ? root + QStringLiteral("VoiceTrack") : root;
  OpenFileDialogue(*this, "FrmFichierSon", QString(Texts().Word("BntLoadVT")).remove(u'.'), folder,
                   Texts().Word("SoundFiles") + QStringLiteral(" *.wav *.mp3 (*.wav *.mp3)"),
                   [this](const std::string& path) {
                     Work([this, path] { VoiceTracks::BntLoadVT_Click(station_, editor_, path); });
                   });
}

void VoiceTrackWindow::ChooseEditor() {
  OpenFileDialogue(*this, "FrmEditeur", QString(Texts().Word("BtnChoseEditeur")).remove(u'.'),
                   QString::fromLatin1(kProgramsFolder),
                   Texts().Word("Programs") + QStringLiteral(" (*)"),
                   [this](const std::string& path) {
                     Run([this, path] { VoiceTracks::BtnChoseEditeur_Click(editor_, path); });
                   });
}

// On air it would not begin behind the exit point.
void VoiceTrackWindow::MoveTrack(int32_t ms) {
  if (editor_.CheckCut || editor_.FileVoiceTrack.empty() || VoiceTracks::IsRecording(station_))
    return;
  const int32_t most = std::max(0, VoiceTracks::ExitOfBefore(editor_));
  Run([this, ms, most] { VoiceTracks::LblPositionVT_Change(editor_, std::clamp(ms, 0, most)); });
}

void VoiceTrackWindow::PlayOrStop() {
  Work([this] {
    if (editor_.join.on)
      VoiceTracks::BtnStop2_Click(station_, editor_);
    else
      VoiceTracks::PlayJoinFrom(station_, editor_, cursorMs_);
  });
}

void VoiceTrackWindow::CursorHome() {
  cursorMs_ = std::max(0, VoiceTracks::ExitOfBefore(editor_) - editor_.SpinPreRoll * 1000);
}

// --- the picture ---

JoinView::Picture VoiceTrackWindow::PictureNow() {
  JoinView::Picture picture;
  picture.plan = PlanOf(editor_, VoiceTracks::FadeMs(station_));
  picture.recording = VoiceTracks::IsRecording(station_);
  int32_t trackMs = editor_.trackLengthMs;
  if (picture.recording) {
    trackMs = static_cast<int32_t>(station_.platform.recorder->RecordedMs());
    picture.plan.hasTrack = trackMs > 0;
    picture.plan.ducks = !editor_.CheckCut;
    picture.plan.trackToMs = picture.plan.trackFromMs + trackMs;
  }
  picture.sounds[JoinView::kBefore] = {ShownText(editor_.Avant), editor_.beforeLengthMs, {}, {}};
  picture.sounds[JoinView::kTrack] = {Texts().Word("title"), trackMs, {}, {}};
  picture.sounds[JoinView::kAfter] = {
      ShownText(editor_.Apres), picture.plan.hasAfter ? editor_.afterLengthMs : 0, {}, {}};
  picture.exit = Texts().OfRoutine(editor_.InfoPS);
  picture.intro = Texts().OfRoutine(editor_.Intro);
  picture.cursorMs = cursorMs_;
  picture.heardMs = VoiceTracks::HeardAtMs(station_, editor_).value_or(-1);
  const auto music = static_cast<double>(station_.base.CnfInt(Cnf::kVolumeMusique));
  const auto under = static_cast<double>(station_.base.CnfInt(Cnf::kVolumeMusiqueSous));
  picture.duckedShare = music > 0 ? std::clamp(under / music, 0.0, 1.0) : 1;
  PutSpan(picture);
  return picture;
}

// All that meets in the join, with some room around it.
JoinZoom::Span VoiceTrackWindow::WholeSpan(const JoinPlan& plan) const {
  int32_t first = plan.exitMs - editor_.SpinPreRoll * 1000, last = plan.beforeToMs;
  if (plan.hasTrack) {
    first = std::min(first, plan.trackFromMs);
    last = std::max(last, plan.trackToMs);
  }
  if (plan.hasAfter) last = std::max(last, plan.introToMs);
  const int32_t from = std::max(0, first - kRoomBeforeMs);
  return {from, std::max(last + kRoomBehindMs, from + kRoomBehindMs)};
}

JoinZoom::Span VoiceTrackWindow::WholeSpanNow() {
  return WholeSpan(PlanOf(editor_, VoiceTracks::FadeMs(station_)));
}

// While the track is drawn along, and while one is recorded, the time line stands still; one that
// is seen closer goes along with what is heard.
void VoiceTrackWindow::PutSpan(JoinView::Picture& picture) {
  const JoinView::Picture& shown = VueRaccord->Shown();
  const JoinZoom::Span whole = WholeSpan(picture.plan);
  JoinZoom::Span view{shown.fromMs, shown.toMs};
  const bool recordsOn =
      picture.recording && shown.recording && picture.plan.trackToMs < shown.lastMs;
  const bool stands = VueRaccord->Dragging() || (recordsOn && !zoom_.Closer());
  if (!stands) {
    if (zoom_.Closer() && picture.heardMs >= 0) zoom_.Reveal(picture.heardMs, whole);
    view = zoom_.Of(whole);
  }
  picture.fromMs = view.fromMs;
  picture.toMs = view.toMs;
  picture.lastMs = stands ? shown.lastMs : whole.toMs;
}

// One part is asked for at a time, since the reader keeps no more.
void VoiceTrackWindow::ReadShapes(JoinView::Picture& picture) {
  if (!sources_.waveforms) return;
  const std::string files[] = {editor_.FileAvant, editor_.FileVoiceTrack, editor_.FileApres};
  bool asked = false;
  for (size_t lane = 0; lane < JoinView::kLanes; ++lane) {
    const bool written = lane == JoinView::kTrack && picture.recording;
    if (files[lane].empty() || written || picture.sounds[lane].lengthMs <= 0) continue;
    const std::string path = station_.platform.soundFiles.Resolve(files[lane]);
    picture.sounds[lane].whole = sources_.waveforms->PeaksOf(path);
    const auto view = VueRaccord->PartInView(static_cast<JoinView::Lane>(lane));
    if (view.toMs <= view.fromMs) continue;
    const Shape wish{path + '#' + std::to_string(editor_.takes), MsToFrames(view.fromMs),
                     MsToFrames(view.toMs), nullptr};
    Shape& shape = shapes_[lane];
    const bool known = shape.part && shape.file == wish.file && shape.fromFrame == wish.fromFrame &&
                       shape.toFrame == wish.toFrame;
    if (!known && !std::exchange(asked, true)) {
      shape = wish;
      const int pixels = VueRaccord->XOf(view.toMs) - VueRaccord->XOf(view.fromMs);
      shape.part = sources_.waveforms->PartOf(path, wish.fromFrame, wish.toFrame,
                                              static_cast<size_t>(std::max(1, pixels)));
    }
    if (known) picture.sounds[lane].part = shape.part;
  }
}

// --- showing ---

void VoiceTrackWindow::ArrangeParts(double unit) {
  cards_->Arrange(unit);
  page_->Arrange(unit);
  side_->setFixedWidth(Theme::Px(unit, kSidePixels));
  ListJoins->Arrange(unit);
  VueRaccord->setFont(Theme::Type(unit, 13));
  VueRaccord->setMinimumHeight(Theme::Px(unit, kLeastViewPixels));
  centralWidget()->layout()->setSpacing(Theme::Px(unit, 8));
}

QString VoiceTrackWindow::Note() const {
  if (VoiceTracks::IsRecording(station_)) return Texts().Word("Note.Recording");
  if (editor_.join.recordAtMs >= 0) {
    const int32_t heard = VoiceTracks::HeardAtMs(station_, editor_).value_or(0);
    const int32_t left = std::max(0, editor_.join.recordAtMs - heard);
    return Texts().Word("Note.RetakeIn", QString::number((left + 999) / 1000));
  }
  if (VoiceTracks::IsUnsaved(editor_)) return Texts().Word("Note.Unsaved");
  const int row = station_.PL.RowOfKey(editor_.rowKey);
  if (row == 0) return {};
  return ShownText(ShownFault(FaultOfRow(station_.PL, row), Texts().Langue()));
}

void VoiceTrackWindow::ShowAll() {
  if (!editor_.open) return;
  std::vector<TrackJoin> joins = JoinsOf(station_.PL, editor_);
  const size_t missing = MissingTracks(joins);
  const QString numbers =
      Texts().Word("LblJoins").arg(QString::number(missing), QString::number(joins.size()));
  LblJoins->setText(missing == 0 ? Texts().Word("LblJoins.Done") : numbers);
  ListJoins->Show(std::move(joins));
  joinsShownMs_ = station_.platform.clock.MonotonicMs();
  Refresh();
}

void VoiceTrackWindow::Refresh() {
  if (!editor_.open) return;
  const int64_t nowMs = station_.platform.clock.MonotonicMs();
  if (nowMs - joinsShownMs_ >= kJoinsMs) return ShowAll();
  if (!editor_.TimerVT || !editor_.TimerVT->Enabled()) VoiceTracks::ShowLevels(station_, editor_);
  if (editor_.join.on || VoiceTracks::IsRecording(station_))
    station_.engine.LastActivityTimer = station_.Timer();  // no screen saver over who speaks
  page_->ShowCard();
  page_->ShowLevels(nowMs);
  cards_->Show({TimeToFillMs(editor_), VoiceTracks::CountdownMs(station_, editor_)});
  const QString note = Note();
  note_->setText(note);
  note_->setVisible(!note.isEmpty());
  LblMicro->setVisible(editor_.LblMicroVisible);
  LblSortie->setVisible(VoiceTracks::PlaysOnTheAirsOutput(station_, editor_));
  JoinView::Picture picture = PictureNow();
  ReadShapes(picture);
  VueRaccord->Show(std::move(picture));
}

}  // namespace zemo
