#include "ui/FieldPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/Theme.h"

namespace zemo {

namespace {

// A press picks a day, the right button or Delete does something else.
class DayButton : public QPushButton {
 public:
  using QPushButton::QPushButton;
  std::function<void()> otherwise;

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::RightButton && isEnabled()) return otherwise();
    QPushButton::mouseReleaseEvent(event);
  }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace) return otherwise();
    QPushButton::keyPressEvent(event);
  }
};

}  // namespace

void ShowIn(QLineEdit& box, const std::string& text) {
  const QString shown = ShownText(text);
  if (box.text() == shown) return;
  const QSignalBlocker silent(&box);
  box.setText(shown);
  if (!box.hasFocus()) box.setCursorPosition(0);  // the begin of a long path shows
}

FieldPage::FieldPage(const Translation& texts, QWidget* parent) : QWidget(parent), texts_(texts) {
  rows_ = new QVBoxLayout(this);
  rows_->setContentsMargins(0, 0, 0, 0);
}

void FieldPage::Arrange(double unit) {
  rows_->setSpacing(Theme::Px(unit, 5));
}

void FieldPage::ShowCard() {
  for (const auto& show : show_) show();
}

void FieldPage::Changed() {
  ShowCard();
}

// --- controls ---

QLineEdit* FieldPage::Box(const char* name, std::string& text) {
  auto* box = Named(new QLineEdit(this), name);
  connect(box, &QLineEdit::textEdited, this, [this, &text](const QString& typed) {
    text = typed.toStdString();
    Changed();
  });
  return Shown(box, [&text] { return text; });
}

QLineEdit* FieldPage::Shown(QLineEdit* box, std::function<std::string()> text) {
  Follow([box, text = std::move(text)] { ShowIn(*box, text()); });
  return box;
}

void FieldPage::NameLength(QLineEdit& box) const {
  box.setAccessibleName(texts_.Word("For.Longeur"));
  box.setToolTip(box.accessibleName() + QStringLiteral(" (ms)"));
}

QLabel* FieldPage::Label(const char* name, std::function<std::string()> text) {
  auto* label = Named(new QLabel(this), name);
  label->setTextFormat(Qt::PlainText);
  Follow([label, text = std::move(text)] { label->setText(ShownText(text())); });
  return label;
}

QCheckBox* FieldPage::Tick(const char* name, bool& ticked) {
  auto* box = Named(new QCheckBox(texts_.Word(name), this), name);
  connect(box, &QCheckBox::clicked, this, [this, &ticked](bool on) {
    ticked = on;
    Changed();
  });
  Follow([box, &ticked] { box->setChecked(ticked); });
  return box;
}

QPushButton* FieldPage::Button(const char* name, std::function<void()> pressed) {
  auto* button = Named(new QPushButton(texts_.Word(name), this), name);
  connect(button, &QPushButton::clicked, this, std::move(pressed));
  return button;
}

QComboBox* FieldPage::ClosedList(const char* name, std::string& text,
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

QPushButton* FieldPage::Day(const char* name, std::function<QString()> text,
                            std::function<void()> pressed, std::function<void()> otherwise) {
  auto* day = Named(new DayButton(this), name);
  day->otherwise = std::move(otherwise);
  connect(day, &QPushButton::clicked, this, std::move(pressed));
  Follow([day, text = std::move(text)] { day->setText(text()); });
  return day;
}

// --- layout ---

QWidget* FieldPage::Field(const char* name, QWidget* control) {
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

QWidget* FieldPage::Beside(std::initializer_list<Part> parts) {
  auto* row = new QWidget(this);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(8);
  for (const auto& [part, share] : parts) layout->addWidget(part, share);
  return row;
}

void FieldPage::Row(std::initializer_list<Part> parts) {
  rows_->addWidget(Beside(parts));
}

void FieldPage::FillDown() {
  rows_->addStretch(1);
}

}  // namespace zemo
