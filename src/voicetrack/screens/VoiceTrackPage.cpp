#include "voicetrack/screens/VoiceTrackPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <string>
#include <string_view>

#include "ui/LevelMeter.h"
#include "ui/Theme.h"
#include "voicetrack/VoiceTrackTexts.h"

namespace zemo {

namespace {

constexpr int kExitStepMs = 100, kExitPageMs = 1000;
constexpr int kDeviceLetters = 14;  // that a list of devices shows at least

}  // namespace

VoiceTrackPage::VoiceTrackPage(Station& station, VoiceTrackEditor& editor,
                               const VoiceTrackOrders& orders, const Translation& texts,
                               QWidget* parent)
    : FieldPage(texts, parent), station_(station), editor_(editor), orders_(orders) {
  TrackRow();
  JoinRow();
  PlaceRow();
  DeviceRow();
  ToolRow();
}

void VoiceTrackPage::Arrange(double unit) {
  FieldPage::Arrange(unit);
  const QFontMetrics type(Theme::Type(unit, 15));
  for (const auto& [label, widest] : values_)
    label->setMinimumWidth(type.horizontalAdvance(widest) + 4);
  for (const auto& [meter, level] : meters_) meter->setFixedHeight(Theme::Px(unit, 8));
}

// --- rows ---

void VoiceTrackPage::TrackRow() {
  Row({{Order("BtnRecord", VoiceTracks::BtnRecord_Click, "F9", &editor_.BtnRecordEnabled), 0},
       {Order("BtnStop", VoiceTracks::BtnStop_Click, "F7", &editor_.BtnStopEnabled), 0},
       {Order("BtnReprise", VoiceTracks::BtnReprise_Click, "F8", nullptr), 0},
       {Order("BtnPlay1", VoiceTracks::BtnPlay1_Click, "F6", &editor_.BtnPlay1Enabled), 0},
       {Value(
            "LblTimeVT", [this] { return editor_.LblTimeVT; }, "00:00"),
        0},
       {Asking("BntLoadVT", orders_.chooseFile, &editor_.BntLoadVTEnabled), 0},
       {Path("FileVoiceTrack", editor_.FileVoiceTrack), 1}});
}

void VoiceTrackPage::JoinRow() {
  QPushButton* fit = Order("CmdVTToIntro", VoiceTracks::CmdVTToIntro_Click, "F3", nullptr);
  Follow([this, fit] { fit->setEnabled(!editor_.CheckCut); });
  Row({{Order("BtnPplay2", VoiceTracks::BtnPplay2_Click, "F5", nullptr), 0},
       {Order("BtnStop2", VoiceTracks::BtnStop2_Click, "Shift+F5", nullptr), 0},
       {Test(), 0},
       {Cut(), 0},
       {new QWidget(this), 1},
       {fit, 0}});
}

void VoiceTrackPage::PlaceRow() {
  const auto position = [this](const char* name, const std::string& text) {
    return Field(name, Value(
                           name, [&text] { return text; }, "00:00"));
  };
  Row({{Field("LblCodeVT",
              Value(
                  "LblCodeVT", [this] { return std::to_string(editor_.LblCodeVT); }, "00000")),
        1},
       {Field("LblPositionVT",
              Value(
                  "LblPositionVT", [this] { return std::to_string(editor_.LblPositionVT); },
                  "0000000")),
        1},
       {position("PoAvant", editor_.PoAvant), 1},
       {position("PoVT", editor_.PoVT), 1},
       {position("PoApres", editor_.PoApres), 1},
       {ExitPoint(), 3}});
}

void VoiceTrackPage::DeviceRow() {
  Row({{Field("VoiceTrackInputID",
              DeviceList("VoiceTrackInputID", editor_.VoiceTrackInputID, editor_.devices.inputs,
                         VoiceTracks::VoiceTrackInputID_Change)),
        3},
       {Meters("MMLevelX1", "MMLevelX2"), 2},
       {Field("VoiceTrackOututID",
              DeviceList("VoiceTrackOututID", editor_.VoiceTrackOututID, editor_.devices.outputs,
                         VoiceTracks::VoiceTrackOututID_Change)),
        3},
       {Meters("MMLevelX3", "MMLevelX4"), 2},
       {Field("SpinPreRoll",
              Spinner("SpinPreRoll", editor_.SpinPreRoll, {0, VoiceTracks::kMostPreRollSec}, " s")),
        0}});
}

void VoiceTrackPage::ToolRow() {
  QPushButton* mixer = Button("BtnTableMixage", [this] {
    orders_.work([this] { VoiceTracks::BtnTableMixage_Click(station_); });
  });
  GiveKeys(*mixer, "BtnTableMixage", nullptr, {});
  Row({{Field("LevelNormalize",
              Spinner("LevelNormalize", editor_.LevelNormalize,
                      {VoiceTracks::kLeastLufs, VoiceTracks::kMostLufs}, " LUFS")),
        0},
       {Low(Order("BtnNormalize", VoiceTracks::BtnNormalize_Click, nullptr,
                  &editor_.BtnNormalizeEnabled)),
        0},
       {Low(Order("BtnUndoNormalize", VoiceTracks::BtnUndoNormalize_Click, nullptr,
                  &editor_.BtnUndoNormalizeEnabled)),
        0},
       {Low(Gauge()), 1},
       {Field("LblLatence", Value(
                                "LblLatence",
                                [this] {
                                  return editor_.LblLatence < 0
                                             ? "–"
                                             : std::to_string(editor_.LblLatence);
                                },
                                "00000")),
        0},
       {Low(Order("BtnLatence", VoiceTracks::BtnLatence_Click, nullptr, nullptr)), 0},
       {Low(Latency()), 0}});
  Row({{Order("BtnEditVT", VoiceTracks::BtnEditVT_Click, nullptr, &editor_.BtnEditVTEnabled), 0},
       {Asking("BtnChoseEditeur", orders_.chooseEditor, nullptr), 0},
       {Path("LblEditeur", editor_.LblEditeur), 1},
       {mixer, 0}});
}

// At the height of the fields beside it, whose labels stand above them.
QWidget* VoiceTrackPage::Low(QWidget* control) {
  auto* whole = new QWidget(this);
  auto* layout = new QVBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addStretch(1);
  layout->addWidget(control);
  return whole;
}

// --- controls ---

// The keys work the control wherever the keyboard is in the window, and stand in its tip. With the
// mouse it takes no keyboard: what had it, which is the picture for the most part, keeps it.
void VoiceTrackPage::GiveKeys(QWidget& control, const char* name, const char* keys,
                              std::function<void()> order) {
  control.setFocusPolicy(Qt::TabFocus);
  QString tip = texts_.Word(std::string(name) + ".Tip");
  if (keys) {
    const QKeySequence sequence(QString::fromLatin1(keys));
    control.setProperty("keys", sequence.toString(QKeySequence::NativeText));
    auto* shortcut = new QShortcut(sequence, this);
    shortcut->setContext(Qt::WindowShortcut);
    shortcut->setAutoRepeat(false);
    connect(shortcut, &QShortcut::activated, &control, [&control, order = std::move(order)] {
      if (control.isEnabled()) order();
    });
  }
  if (tip.isEmpty() && keys) tip = texts_.Word(name);
  if (!tip.isEmpty()) SetTip(control, tip);
}

QPushButton* VoiceTrackPage::Order(const char* name, Routine routine, const char* keys,
                                   const bool* enabled) {
  const auto order = [this, routine] {
    orders_.work([this, routine] { routine(station_, editor_); });
  };
  QPushButton* button = Button(name, order);
  GiveKeys(*button, name, keys, order);
  if (enabled) Follow([button, enabled] { button->setEnabled(*enabled); });
  return button;
}

QPushButton* VoiceTrackPage::Asking(const char* name, const std::function<void()>& ask,
                                    const bool* enabled) {
  QPushButton* button = Button(name, [&ask] { ask(); });
  GiveKeys(*button, name, nullptr, {});
  if (enabled) Follow([button, enabled] { button->setEnabled(*enabled); });
  return button;
}

// To be read and copied; its begin and, in its tip, the whole of it.
QWidget* VoiceTrackPage::Path(const char* name, const std::string& path) {
  auto* box = Named(new QLineEdit(this), name);
  box->setReadOnly(true);
  box->setAccessibleName(texts_.Word(std::string("For.") + name));
  box->setPlaceholderText(box->accessibleName());
  Follow([box, &path] {
    ShowIn(*box, path);
    box->setToolTip(box->text());
  });
  return box;
}

QCheckBox* VoiceTrackPage::Cut() {
  auto* box = Named(new QCheckBox(this), "CheckCut");
  const auto tick = [this](bool ticked) {
    orders_.run([this, ticked] { VoiceTracks::CheckCut_Click(editor_, ticked); });
  };
  connect(box, &QCheckBox::clicked, this, tick);
  GiveKeys(*box, "CheckCut", "F2", [this, tick] { tick(!editor_.CheckCut); });
  Follow([this, box] {
    box->setChecked(editor_.CheckCut);
    box->setText(ShownText(ShownCut(editor_, texts_.Langue())));
  });
  return box;
}

QCheckBox* VoiceTrackPage::Test() {
  auto* box = Named(new QCheckBox(texts_.Word("CheckTest"), this), "CheckTest");
  const auto tick = [this](bool ticked) {
    orders_.work([this, ticked] { VoiceTracks::CheckTest_Click(station_, editor_, ticked); });
  };
  connect(box, &QCheckBox::clicked, this, tick);
  GiveKeys(*box, "CheckTest", "F4", [this, tick] { tick(!editor_.CheckTest); });
  Follow([this, box] {
    box->setChecked(editor_.CheckTest);
    box->setEnabled(editor_.CheckTestEnabled);
  });
  return box;
}

QCheckBox* VoiceTrackPage::Latency() {
  auto* box = Named(new QCheckBox(texts_.Word("CheckLatence"), this), "CheckLatence");
  connect(box, &QCheckBox::clicked, this, [this](bool ticked) {
    orders_.run([this, ticked] { VoiceTracks::CheckLatence_Click(editor_, ticked); });
  });
  GiveKeys(*box, "CheckLatence", nullptr, {});
  Follow([this, box] {
    box->setChecked(editor_.CheckLatence);
    box->setEnabled(editor_.LblLatence >= 0);
  });
  return box;
}

// Seen with CheckCut alone; its room stays.
QWidget* VoiceTrackPage::ExitPoint() {
  auto* slider = Named(new QSlider(Qt::Horizontal, this), "PointSortie");
  slider->setSingleStep(kExitStepMs);
  slider->setPageStep(kExitPageMs);
  slider->setAccessibleName(texts_.Word("For.PointSortie"));
  slider->setToolTip(slider->accessibleName());
  connect(slider, &QSlider::valueChanged, this, [this](int ms) {
    orders_.run([this, ms] { VoiceTracks::PointSortie_Change(editor_, ms); });
  });
  QLabel* value = Value(
      "LblPS", [this] { return editor_.LblPS; }, "000.0");
  QWidget* both = Beside({{slider, 1}, {value, 0}});
  both->setAccessibleName(slider->accessibleName());
  QWidget* whole = Field("PointSortie", both);
  QSizePolicy keep = whole->sizePolicy();
  keep.setRetainSizeWhenHidden(true);
  whole->setSizePolicy(keep);
  Follow([this, slider, whole] {
    const QSignalBlocker silent(slider);
    slider->setRange(0, std::max(editor_.trackLengthMs, editor_.PointSortie));
    slider->setValue(editor_.PointSortie);
    whole->setVisible(editor_.CheckCut);
  });
  return whole;
}

QWidget* VoiceTrackPage::Spinner(const char* name, int32_t& number, std::pair<int, int> range,
                                 const char* suffix) {
  auto* spinner = Named(new QSpinBox(this), name);
  spinner->setRange(range.first, range.second);
  spinner->setSuffix(QString::fromLatin1(suffix));
  spinner->setToolTip(texts_.Word(std::string("For.") + name));
  connect(spinner, &QSpinBox::valueChanged, this,
          [this, &number](int value) { orders_.run([&number, value] { number = value; }); });
  Follow([spinner, &number] {
    const QSignalBlocker silent(spinner);
    if (spinner->value() != number) spinner->setValue(number);
  });
  return spinner;
}

// Without an answer of the machine the device stands with its number.
QWidget* VoiceTrackPage::DeviceList(const char* name, const int32_t& number, const Devices& devices,
                                    void (*change)(Station&, VoiceTrackEditor&, int32_t)) {
  auto* list = Named(new QComboBox(this), name);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  list->setMinimumContentsLength(kDeviceLetters);
  connect(list, &QComboBox::activated, this, [this, change](int index) {
    orders_.work([this, change, index] { change(station_, editor_, index); });
  });
  Follow([this, list, &number, &devices] {
    QStringList names;
    for (const auto& device : devices) names << ShownText(device.name);
    const QSignalBlocker silent(list);
    QStringList shown;
    for (int item = 0; item < list->count(); ++item) shown << list->itemText(item);
    if (shown != names) {
      list->clear();
      list->addItems(names);
    }
    list->setEnabled(!names.isEmpty());
    list->setPlaceholderText(texts_.Word("Device", QString::number(number)));
    list->setCurrentIndex(number < list->count() ? number : -1);
    list->setToolTip(list->currentText());
  });
  return list;
}

QWidget* VoiceTrackPage::Meters(const char* left, const char* right) {
  auto* both = new QWidget(this);
  auto* layout = new QVBoxLayout(both);
  layout->setContentsMargins(0, 0, 0, 4);
  layout->setSpacing(3);
  layout->addStretch(1);
  const auto add = [&](const char* name, const float& level) {
    auto* meter = Named(new LevelMeter(both), name);
    meter->setAccessibleName(texts_.Word(std::string("For.") + name));
    meter->setToolTip(meter->accessibleName());
    layout->addWidget(meter);
    meters_.emplace_back(meter, &level);
  };
  const bool microphone = std::string_view(left) == "MMLevelX1";
  add(left, microphone ? editor_.MMLevelX1 : editor_.MMLevelX3);
  add(right, microphone ? editor_.MMLevelX2 : editor_.MMLevelX4);
  return both;
}

void VoiceTrackPage::ShowLevels(int64_t nowMs) {
  for (const auto& [meter, level] : meters_) meter->Show(*level, nowMs);
}

QProgressBar* VoiceTrackPage::Gauge() {
  auto* gauge = Named(new QProgressBar(this), "Gauge");
  gauge->setRange(0, 0);  // how far it is nobody knows
  gauge->setTextVisible(false);
  gauge->setAccessibleName(texts_.Word("BtnNormalize"));
  QSizePolicy keep = gauge->sizePolicy();
  keep.setRetainSizeWhenHidden(true);
  gauge->setSizePolicy(keep);
  Follow([this, gauge] { gauge->setVisible(editor_.GaugeVisible); });
  return gauge;
}

QLabel* VoiceTrackPage::Value(const char* name, std::function<std::string()> text,
                              const char* widest) {
  QLabel* label = Label(name, std::move(text));
  values_.emplace_back(label, QString::fromLatin1(widest));
  return label;
}

}  // namespace zemo
