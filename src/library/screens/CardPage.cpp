#include "library/screens/CardPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSlider>
#include <QVBoxLayout>
#include <algorithm>

#include "library/MusicCard.h"
#include "station/TextForms.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

constexpr int kExitStepMs = 100, kExitPageMs = 1000;

template <typename Control>
Control* Named(Control* control, const char* name) {
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

// A day "MMDD" that a press picks.
class DayButton : public QPushButton {
 public:
  using QPushButton::QPushButton;
  std::function<void()> emptied;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::RightButton && isEnabled()) return emptied();
    QPushButton::mouseReleaseEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) return emptied();
    QPushButton::keyPressEvent(event);
  }
};

}  // namespace

QString ShownText(const std::string& text) {
  return QString::fromStdString(text);
}

void ShowIn(QLineEdit& box, const std::string& text) {
  const QString shown = ShownText(text);
  if (box.text() == shown) return;
  const QSignalBlocker silent(&box);
  box.setText(shown);
  if (!box.hasFocus()) box.setCursorPosition(0);  // the begin of a long path shows
}

CardPage::CardPage(Station& station, LibraryEditor& editor, const LibraryOrders& orders,
                   const Translation& texts, QWidget* parent)
    : QWidget(parent), station_(station), editor_(editor), orders_(orders), texts_(texts) {
  rows_ = new QVBoxLayout(this);
  rows_->setContentsMargins(0, 0, 0, 0);
}

void CardPage::Arrange(double unit) {
  rows_->setSpacing(Theme::Px(unit, 5));
}

void CardPage::ShowCard() {
  for (const auto& show : show_) show();
}

void CardPage::Changed() {
  ShowCard();
}

// --- controls ---

QLineEdit* CardPage::Box(const char* name, std::string& text) {
  auto* box = Named(new QLineEdit(this), name);
  connect(box, &QLineEdit::textEdited, this, [this, &text](const QString& typed) {
    text = typed.toStdString();
    Changed();
  });
  return Shown(box, [&text] { return text; });
}

QLineEdit* CardPage::Shown(QLineEdit* box, std::function<std::string()> text) {
  Follow([box, text = std::move(text)] { ShowIn(*box, text()); });
  return box;
}

void CardPage::NameLength(QLineEdit& box) const {
  box.setAccessibleName(texts_.Word("For.Longeur"));
  box.setToolTip(box.accessibleName() + QStringLiteral(" (ms)"));
}

QLabel* CardPage::Label(const char* name, std::function<std::string()> text) {
  auto* label = Named(new QLabel(this), name);
  label->setTextFormat(Qt::PlainText);
  Follow([label, text = std::move(text)] { label->setText(ShownText(text())); });
  return label;
}

QCheckBox* CardPage::Tick(const char* name, bool& ticked) {
  auto* box = Named(new QCheckBox(texts_.Word(name), this), name);
  connect(box, &QCheckBox::clicked, this, [this, &ticked](bool on) {
    ticked = on;
    Changed();
  });
  Follow([box, &ticked] { box->setChecked(ticked); });
  return box;
}

QPushButton* CardPage::Button(const char* name, std::function<void()> pressed) {
  auto* button = Named(new QPushButton(texts_.Word(name), this), name);
  connect(button, &QPushButton::clicked, this, std::move(pressed));
  return button;
}

QWidget* CardPage::ExitPoint(const char* sliderName, const char* labelName, int32_t& ms) {
  auto* slider = Named(new QSlider(Qt::Horizontal, this), sliderName);
  slider->setRange(0, kLatestExitMs);
  slider->setSingleStep(kExitStepMs);
  slider->setPageStep(kExitPageMs);
  slider->setAccessibleName(texts_.Word("For.PointSortie"));
  connect(slider, &QSlider::valueChanged, this, [this, &ms](int value) {
    ms = value;
    Changed();
  });
  Follow([slider, &ms] {
    const QSignalBlocker silent(slider);
    slider->setValue(ms);
  });
  QLabel* label = Label(labelName, [&ms] { return SecondsText(ms); });
  return Beside({{slider, 1}, {label, 0}});
}

QComboBox* CardPage::ClosedList(const char* name, std::string& text,
                                const std::vector<std::string>& offer) {
  auto* list = Named(new QComboBox(this), name);
  list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(list, &QComboBox::activated, this, [this, list, &text](int) {
    text = list->currentText().toStdString();
    Changed();
  });
  Follow([list, &text, &offer] {
    const QSignalBlocker silent(list);
    if (list->count() != static_cast<int>(offer.size()) + 1) {
      list->clear();
      list->addItem(QString());
      for (const std::string& entry : offer) list->addItem(ShownText(entry));
    }
    list->setPlaceholderText(ShownText(text));
    list->setCurrentIndex(list->findText(ShownText(text), Qt::MatchFixedString));
  });
  return list;
}

QPushButton* CardPage::WindowDay(const char* name, std::string& text, int mode) {
  auto* day = Named(new DayButton(this), name);
  day->setToolTip(texts_.Word("WindowDayTip"));
  day->setAccessibleDescription(day->toolTip());
  day->emptied = [this, &text] {
    text.clear();
    Changed();
  };
  connect(day, &QPushButton::clicked, this, [this, mode] { orders_.pickDay(mode); });
  Follow([day, &text] { day->setText(text.empty() ? QStringLiteral("- -") : ShownText(text)); });
  return day;
}

QWidget* CardPage::Window(const char* from, std::string& fromText, int fromMode, const char* to,
                          std::string& toText, int toMode) {
  auto* first = new QLabel(texts_.Word("LblJ.0"), this);
  auto* last = new QLabel(texts_.Word("LblJ.1"), this);
  QPushButton* begin = WindowDay(from, fromText, fromMode);
  QPushButton* end = WindowDay(to, toText, toMode);
  begin->setAccessibleName(first->text());
  end->setAccessibleName(last->text());
  return Beside({{first, 0}, {begin, 1}, {last, 0}, {end, 1}});
}

// --- layout ---

QWidget* CardPage::Field(const char* name, QWidget* control) {
  auto* field = new QWidget(this);
  auto* label = new QLabel(texts_.Word(std::string("For.") + name), field);
  label->setProperty("dim", true);
  label->setBuddy(control);
  if (control->accessibleName().isEmpty()) control->setAccessibleName(label->text());
  label->setProperty("small", true);
  auto* layout = new QVBoxLayout(field);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(1);
  layout->addWidget(label);
  layout->addWidget(control);
  return field;
}

QWidget* CardPage::Beside(std::initializer_list<Part> parts) {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  for (const auto& [part, share] : parts) layout->addWidget(part, share);
  return row;
}

void CardPage::Row(std::initializer_list<Part> parts) {
  rows_->addWidget(Beside(parts));
}

void CardPage::FillDown() {
  rows_->addStretch(1);
}

}  // namespace zemo
