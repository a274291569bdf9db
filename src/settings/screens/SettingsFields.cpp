// The fields of the settings' window: for each row of the settings the control that its kind asks
// for, with its caption, its tip and the place of a refusal.
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QSpinBox>

#include "settings/SettingsControls.h"
#include "settings/SettingsTexts.h"
#include "settings/screens/SettingsWindow.h"
#include "station/Station.h"
#include "ui/Named.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr const char* kShownText = "shownText";  // of a spinner; another one is half typed
constexpr int kTimeStepMs = 100, kTimePageMs = 1000, kSlidersPages = 20;

const std::vector<std::string>& EntriesOf(const SettingsScreen& screen,
                                          const SettingsControl& control) {
  if (control.in == StoredIn::kAudio) return screen.PlayNames;
  return control.field == Cnf::kLangue ? screen.LangueNames : screen.JoystickPorts;
}

bool IsCombo(const SettingsControl& control) {
  return control.in == StoredIn::kAudio || control.field == Cnf::kLangue ||
         control.field == Cnf::kJoystiquePort;
}

}  // namespace

SettingsWindow::Panel SettingsWindow::MakePanel(const char* caption) {
  auto* frame = new QFrame(this);
  frame->setProperty("panel", true);
  auto* grid = new QGridLayout(frame);
  grid->setColumnStretch(1, 1);
  grids_.push_back(grid);
  if (caption) {
    auto* head = new QLabel(Word(caption), frame);
    const std::string_view name = caption;  // a list of that name has its own
    if (name != "Instru" && name != "Filtre") Named(head, caption);
    head->setProperty("head", true);
    grid->addWidget(head, 0, 0, 1, 2);
  }
  return {frame, grid};
}

QLabel* SettingsWindow::Note(const char* control) {
  auto* note = new QLabel(this);
  note->setWordWrap(true);
  note->setProperty("refusal", true);
  note->hide();
  notes_[control] = note;
  return note;
}

// The caption left of the control, and the note below it, which takes no room while it is empty.
void SettingsWindow::AddRow(Panel& panel, const QString& caption, QWidget* control, QLabel* note) {
  const int row = panel.grid->rowCount();
  if (caption.isEmpty()) {
    panel.grid->addWidget(control, row, 0, 1, 2);
  } else {
    auto* label = new QLabel(caption, panel.frame);
    label->setProperty("dim", true);
    label->setBuddy(control);
    if (control->accessibleName().isEmpty()) control->setAccessibleName(caption);
    panel.grid->addWidget(label, row, 0);
    panel.grid->addWidget(control, row, 1);
  }
  if (note) panel.grid->addWidget(note, row + 1, caption.isEmpty() ? 0 : 1);
}

void SettingsWindow::AddField(Panel& panel, const char* name) {
  const SettingsControl& control = *FindSettingsControl(name);
  const bool captioned =
      control.kind != ControlKind::kCheck && control.kind != ControlKind::kColour;
  if (control.kind == ControlKind::kOption && !IsCombo(control)) {
    auto* caption = new QLabel(Word(name), panel.frame);
    caption->setProperty("dim", true);
    AddRow(panel, {}, caption);
    return AddRow(panel, {}, ControlFor(control), Note(name));
  }
  AddRow(panel, captioned ? Word(name) : QString(), ControlFor(control), Note(name));
}

QWidget* SettingsWindow::ControlFor(const SettingsControl& control) {
  switch (control.kind) {
    case ControlKind::kSlider:
      return SliderFor(control);
    case ControlKind::kNumber:
      return IsSpinner(control) ? SpinnerFor(control) : BoxFor(control);
    case ControlKind::kText:
      return BoxFor(control);
    case ControlKind::kCheck:
      return CheckFor(control);
    case ControlKind::kOption:
      return IsCombo(control) ? ComboFor(control) : OptionsFor(control);
    case ControlKind::kColour:
      break;
  }
  return ColourFor(control);
}

QWidget* SettingsWindow::SliderFor(const SettingsControl& control) {
  auto* whole = new QWidget(this);
  auto* slider = Named(new QSlider(Qt::Horizontal, whole), control.name);
  const bool time = *control.unit != 0;
  const auto most = static_cast<int>(control.most);
  slider->setRange(0, most);
  slider->setSingleStep(time ? kTimeStepMs : most / 100);
  slider->setPageStep(time ? kTimePageMs : most / kSlidersPages);
  slider->setAccessibleName(Word(control.name));
  SetTip(*slider, ShownText(SettingTip(control, Texts().Langue())));
  auto* value = Named(new QLabel(whole), ("Lbl" + std::string(control.name)).c_str());
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  auto* layout = new QHBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(slider, 1);
  layout->addWidget(value);
  connect(slider, &QSlider::valueChanged, this,
          [this, &control](int number) { Give(control, std::to_string(number)); });
  Follow([this, slider, value, time, &control] {
    const QSignalBlocker silent(slider);
    slider->setValue(static_cast<int>(ControlNumber(Screen(), control)));
    value->setText(ShownText(ControlLabel(Screen(), control)) +
                   (time ? QStringLiteral(" s") : QString()));
    value->setMinimumWidth(value->fontMetrics().horizontalAdvance(QStringLiteral("32.767 s")));
  });
  return whole;
}

QWidget* SettingsWindow::SpinnerFor(const SettingsControl& control) {
  auto* spinner = Named(new QSpinBox(this), control.name);
  spinner->setRange(static_cast<int>(control.lowest), static_cast<int>(control.most));
  const bool minute = std::string_view(control.unit) == "minute";
  if (*control.unit)
    spinner->setSuffix(QStringLiteral(" ") +
                       (minute ? QStringLiteral("mn") : Word("Unit." + std::string(control.unit))));
  SetTip(*spinner, ShownText(SettingTip(control, Texts().Langue())));
  spinner->setKeyboardTracking(false);
  spinner->setAccessibleName(Word(control.name));
  connect(spinner, &QSpinBox::valueChanged, this,
          [this, &control](int number) { Give(control, std::to_string(number)); });
  Follow([this, spinner, &control] {
    const bool typed = spinner->text() != spinner->property(kShownText).toString();
    if (takingOver_ && spinner->hasFocus() && typed) return;
    const QSignalBlocker silent(spinner);
    const auto number = static_cast<int>(ControlNumber(Screen(), control));
    if (spinner->value() != number) spinner->setValue(number);
    spinner->setProperty(kShownText, spinner->text());
  });
  return spinner;
}

QWidget* SettingsWindow::BoxFor(const SettingsControl& control) {
  auto* box = Named(new QLineEdit(this), control.name);
  SetTip(*box, ShownText(SettingTip(control, Texts().Langue())));
  box->setAccessibleName(Word(control.name));
  // A number counts when it is typed to its end, so that one refused leaves none of its digits.
  if (control.kind == ControlKind::kText)
    connect(box, &QLineEdit::textEdited, this,
            [this, &control](const QString& typed) { Give(control, typed.toStdString()); });
  else
    connect(box, &QLineEdit::editingFinished, this, [this, box, &control] {
      const std::string typed = box->text().toStdString();
      if (typed != ControlText(Screen(), control)) Give(control, typed);
    });
  Follow([this, box, &control] {
    const QString text = ShownText(ControlText(Screen(), control));
    if (box->text() == text || (takingOver_ && box->hasFocus() && box->isModified())) return;
    box->setText(text);
    if (!box->hasFocus()) box->setCursorPosition(0);  // the begin of a long path shows
  });
  if (!*control.unit) return box;
  auto* whole = new QWidget(this);
  auto* layout = new QHBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(box, 1);
  layout->addWidget(new QLabel(Word("Unit." + std::string(control.unit)), whole));
  return whole;
}

QWidget* SettingsWindow::CheckFor(const SettingsControl& control) {
  auto* box = Named(new QCheckBox(Word(control.name), this), control.name);
  SetTip(*box, ShownText(SettingTip(control, Texts().Langue())));
  connect(box, &QCheckBox::clicked, this,
          [this, &control](bool on) { Give(control, on ? "1" : "0"); });
  Follow([this, box, &control] { box->setChecked(ControlNumber(Screen(), control) != 0); });
  return box;
}

QWidget* SettingsWindow::OptionsFor(const SettingsControl& control) {
  auto* whole = new QWidget(this);
  auto* group = new QButtonGroup(whole);
  auto* layout = new QVBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  const std::string name = control.name;
  for (int option = 0; option <= control.most; ++option) {
    auto* button = Named(new QRadioButton(Word(name + "." + std::to_string(option)), whole),
                         (name + "_" + std::to_string(option)).c_str());
    SetTip(*button, ShownText(SettingTip(control, Texts().Langue())));
    group->addButton(button, option);
    layout->addWidget(button);
  }
  connect(group, &QButtonGroup::idClicked, this,
          [this, &control](int option) { Give(control, std::to_string(option)); });
  Follow([this, group, &control] {
    if (auto* button = group->button(static_cast<int>(ControlNumber(Screen(), control))))
      button->setChecked(true);
  });
  return whole;
}

QWidget* SettingsWindow::ComboFor(const SettingsControl& control) {
  auto* combo = Named(new QComboBox(this), control.name);
  combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  combo->setMinimumContentsLength(10);
  combo->setAccessibleName(Word(control.name));
  SetTip(*combo, ShownText(SettingTip(control, Texts().Langue())));
  const bool output = control.in == StoredIn::kAudio;
  if (output) combo->setPlaceholderText(Word("NoOutput"));
  connect(combo, &QComboBox::activated, this,
          [this, &control](int entry) { Give(control, std::to_string(entry)); });
  Follow([this, combo, &control] {
    const QSignalBlocker silent(combo);
    const std::vector<std::string>& entries = EntriesOf(Screen(), control);
    if (combo->count() != static_cast<int>(entries.size())) {
      combo->clear();
      for (const std::string& entry : entries) combo->addItem(ShownText(entry));
    }
    combo->setCurrentIndex(static_cast<int>(ControlNumber(Screen(), control)));
  });
  return combo;
}

QWidget* SettingsWindow::ColourFor(const SettingsControl& control) {
  auto* button = Button(control.name, nullptr, [this, &control] { PickColour(control); });
  SetTip(*button, ShownText(SettingTip(control, Texts().Langue())));
  Follow([this, button, &control] {
    QPixmap swatch(16, 16);
    swatch.fill(Theme::FromBgr(static_cast<uint32_t>(ControlNumber(Screen(), control))));
    button->setIcon(swatch);
  });
  return button;
}

QPushButton* SettingsWindow::Button(const char* name, const char* tip,
                                    std::function<void()> pressed) {
  auto* button = Named(new QPushButton(Word(name), this), name);
  if (tip) SetTip(*button, Word(tip));
  connect(button, &QPushButton::clicked, this, std::move(pressed));
  return button;
}

QLineEdit* SettingsWindow::TypedBox(const char* name, const char* caption, const char* tip) {
  auto* box = Named(new QLineEdit(this), name);
  box->setAccessibleName(Word(caption));
  SetTip(*box, Word(tip));
  return box;
}

QWidget* SettingsWindow::FileBox(const char* name, const char* buttonName) {
  const SettingsControl& control = *FindSettingsControl(name);
  auto* whole = new QWidget(this);
  auto* layout = new QHBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(BoxFor(control), 1);
  auto* button = Button(buttonName, nullptr, [this, &control] {
    if (!sources_.chooseFiles) return;
    sources_.chooseFiles(
        this, ControlText(Screen(), control), {},
        [window = QPointer(this), &control](const std::vector<std::string>& files) {
          if (window && !files.empty()) window->Give(control, files.front());
        });
  });
  SetTip(*button, ShownText(SettingTip(control, Texts().Langue())));
  layout->addWidget(button);
  return whole;
}

}  // namespace zemo
