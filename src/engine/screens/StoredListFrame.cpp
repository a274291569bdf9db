#include "engine/screens/StoredListFrame.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "engine/OperatorControls.h"
#include "engine/StoredPlaylists.h"
#include "platform/Desktop.h"
#include "station/Station.h"
#include "ui/CalendarWindow.h"
#include "ui/Theme.h"
#include "ui/WhenFree.h"

namespace zemo {

namespace {
struct Option {
  const char* item;
  const char* tip;  // a word of the screen
};
constexpr Option kOptions[] = {
    {"ON", "OptionOn"}, {"ON-P", "OptionOnP"}, {"OFF", "OptionOff"}, {"OFF-P", "OptionOffP"}};

// Only a choice in the opened list counts: it replaces the list on air. Left alone, an editable box
// also chooses at Return, when it loses the keyboard and at each turn of the wheel.
class ListBox : public QComboBox {
 public:
  ListBox(std::function<void(int)> chosen, QWidget* parent) : QComboBox(parent) {
    connect(this, &QComboBox::activated, this, [this, chosen = std::move(chosen)](int item) {
      if (opened_) chosen(item);
    });
  }
  void showPopup() override {
    opened_ = true;
    QComboBox::showPopup();
  }
  void hidePopup() override {
    QComboBox::hidePopup();
    QTimer::singleShot(0, this, [this] { opened_ = false; });  // the choice comes behind this
  }

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
  void keyPressEvent(QKeyEvent* event) override {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
      showPopup();
    else
      QComboBox::keyPressEvent(event);
  }

 private:
  bool opened_ = false;
};
}  // namespace

StoredListFrame::StoredListFrame(Station& station, std::function<void(const QString&)> tell,
                                 Translation texts, QWidget* parent)
    : QFrame(parent), station_(station), tell_(std::move(tell)), texts_(texts) {
  setObjectName(QStringLiteral("CadrePL"));
  setProperty("panel", true);
  MakeControls();
  LayOut();
  Connect();
}

void StoredListFrame::MakeControls() {
  ComboPLS = new ListBox([this](int item) { ChooseList(item); }, this);
  ComboPLS->setObjectName(QStringLiteral("ComboPLS"));
  ComboPLS->setEditable(true);
  ComboPLS->setInsertPolicy(QComboBox::NoInsert);
  ComboPLS->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  ComboPLS->setMinimumWidth(80);
  ComboPLS->setCompleter(nullptr);  // the text is the list's label, not a search
  ComboPLS->lineEdit()->setMaxLength(40);
  ComboPLS->lineEdit()->installEventFilter(this);
  ComboPLS->installEventFilter(this);
  LblDate = new QPushButton(this);
  LblDate->setObjectName(QStringLiteral("LblDate"));
  LblDate->installEventFilter(this);
  ChHeure = new QLineEdit(this);
  ChHeure->setObjectName(QStringLiteral("ChHeure"));
  ChHeure->setMaxLength(5);
  ChHeure->installEventFilter(this);
  OptPls = new QComboBox(this);
  OptPls->setObjectName(QStringLiteral("OptPls"));
  for (const Option& option : kOptions) {
    OptPls->addItem(QString::fromLatin1(option.item));
    OptPls->setItemData(OptPls->count() - 1, texts_.Word(option.tip), Qt::ToolTipRole);
  }
  ChkNoJingle = new QLabel(this);
  ChkNoJingle->setObjectName(QStringLiteral("ChkNoJingle"));
  ChkNoJingle->setBuddy(OptPls);
  LblCodePL = new QLabel(this);
  LblCodePL->setObjectName(QStringLiteral("LblCodePL"));
  LblCodePL->setProperty("dim", true);
  BtnSauve = new QPushButton(this);
  BtnSauve->setObjectName(QStringLiteral("BtnSauve"));
  BtnNew = new QPushButton(this);
  BtnNew->setObjectName(QStringLiteral("BtnNew"));
}

void StoredListFrame::LayOut() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(6, 5, 6, 5);
  layout->setSpacing(4);
  auto* which = new QHBoxLayout;
  which->setSpacing(6);
  which->addWidget(ComboPLS, 1);
  which->addWidget(LblDate);
  which->addWidget(ChHeure);
  auto* how = new QHBoxLayout;
  how->setSpacing(6);
  how->addWidget(ChkNoJingle);
  how->addWidget(OptPls);
  how->addWidget(LblCodePL);
  how->addStretch();
  how->addWidget(BtnNew);
  how->addWidget(BtnSauve);
  layout->addLayout(which);
  layout->addLayout(how);
}

void StoredListFrame::Connect() {
  connect(ComboPLS, &QComboBox::editTextChanged, this,
          [this](const QString& text) { OnAir::ComboPLS_Change(station_, text.toStdString()); });
  connect(LblDate, &QPushButton::clicked, this, [this] { OpenCalendar(); });
  connect(ChHeure, &QLineEdit::textEdited, this, [this](const QString& text) {
    const std::string neutral = StoredListEditor().ChHeure;
    OnAir::ChHeure_Change(station_,
                          text == texts_.OfRoutine(neutral) ? neutral : text.toStdString());
  });
  connect(OptPls, &QComboBox::activated, this,
          [this](int item) { OnAir::OptPls_Click(station_, item); });
  connect(BtnSauve, &QPushButton::clicked, this, [this] {
    OnAir::RecordActivity(station_);
    WhenFree(station_, this, [this] { Save(); });
  });
  connect(BtnNew, &QPushButton::clicked, this, [this] {
    OnAir::RecordActivity(station_);
    WhenFree(station_, this, [this] { NewList(); });
  });
}

// --- orders ---

bool StoredListFrame::Confirmed(const char* title, const char* question) {
  return station_.platform.messages.Show(texts_.Text(title, "text").toStdString(),
                                         texts_.Word(question).toStdString(),
                                         Buttons::kYesNo) == Answer::kYes;
}

// Only what would take the music from the air is asked for; the rest can be taken back.
void StoredListFrame::NewList() {
  const bool airs = station_.engine.IsRunning && !station_.PL.Empty();
  if (airs && !Confirmed("BtnNew", "NewOnAir")) return;
  OnAir::BtnNew_Click(station_);
  Refresh();
}

// A list with half a moment would never air, and one without any only by hand.
bool StoredListFrame::MaySave() {
  const StoredListEditor& editor = station_.storedList;
  switch (OnAir::DoubtOf(editor)) {
    case OnAir::ListDoubt::kNoTime:
      tell_(OnAir::TimeMissing(editor)
                ? texts_.Word("NoTimeYet")
                : texts_.Word("NoSuchTime", texts_.OfRoutine(editor.ChHeure)));
      ChHeure->setFocus();
      return false;
    case OnAir::ListDoubt::kNoDate:
      tell_(OnAir::DateMissing(editor)
                ? texts_.Word("NoDateYet")
                : texts_.Word("NoSuchDate", texts_.OfRoutine(editor.LblDate)));
      LblDate->setFocus();
      return false;
    case OnAir::ListDoubt::kNoMoment:
      if (!Confirmed("BtnSauve", "SaveWithoutMoment")) return false;
      break;
    case OnAir::ListDoubt::kNone:
      break;
  }
  return !station_.PL.Empty() || Confirmed("BtnSauve", "SaveEmpty");
}

void StoredListFrame::Save() {
  if (!MaySave()) return;
  const std::string& text = station_.storedList.ComboPLS.text;
  const QString label = text.empty() ? texts_.Word("None") : QString::fromStdString(text);
  const bool saved = OnAir::BtnSauve_Click(station_);
  tell_(saved ? texts_.Word("ListSaved", label) : texts_.Word("ListNotSaved"));
  Refresh();
}

// --- the panel's fields ---

void StoredListFrame::Arrange(double unit) {
  const QFontMetrics metrics(Theme::Type(unit, 15));
  const int widest =
      std::max(metrics.horizontalAdvance(QStringLiteral("00:00")),
               metrics.horizontalAdvance(texts_.OfRoutine(StoredListEditor().ChHeure)));
  ChHeure->setFixedWidth(widest + Theme::Px(unit, 34));
}

void StoredListFrame::OpenCalendar() {
  auto* calendar = new CalendarWindow(texts_.Langue(), station_.Now(), this);
  calendar->picked = [this](const LocalDateTime& day) {
    OnAir::PickListDay(station_, day);
    Refresh();
  };
  calendar->open();
}

void StoredListFrame::FillItems() {
  const auto& items = station_.storedList.ComboPLS.items;
  bool same = ComboPLS->count() == static_cast<int>(items.size());
  for (int item = 0; same && item < ComboPLS->count(); ++item) {
    const auto& wanted = items[static_cast<size_t>(item)];
    same = ComboPLS->itemData(item).toInt() == wanted.data &&
           ComboPLS->itemText(item) == QString::fromStdString(wanted.text);
  }
  if (same) return;
  ComboPLS->clear();
  for (const auto& item : items) ComboPLS->addItem(QString::fromStdString(item.text), item.data);
}

void StoredListFrame::Refresh() {
  const StoredListEditor& editor = station_.storedList;
  const QSignalBlocker quiet(ComboPLS);
  FillItems();
  if (ComboPLS->currentIndex() != editor.ComboPLS.index)
    ComboPLS->setCurrentIndex(editor.ComboPLS.index);
  const QString text = QString::fromStdString(editor.ComboPLS.text);
  if (ComboPLS->currentText() != text) ComboPLS->setEditText(text);
  const QString date = texts_.OfRoutine(editor.LblDate);
  if (LblDate->text() != date) LblDate->setText(date);
  const QString hour = texts_.OfRoutine(editor.ChHeure);
  if (ChHeure->text() != hour) ChHeure->setText(hour);
  if (OptPls->currentIndex() != editor.OptPls) OptPls->setCurrentIndex(editor.OptPls);
  const QString code = QString::number(editor.LblCodePL);
  if (LblCodePL->text() != code) LblCodePL->setText(code);
  BtnSauve->setEnabled(!editor.saving);
}

void StoredListFrame::ChooseList(int item) {
  OnAir::RecordActivity(station_);
  station_.storedList.ComboPLS.index = item;
  WhenFree(station_, this, [this] {
    OnAir::ComboPLS_Click(station_);
    Refresh();
    tell_(texts_.Word("ListLoaded", ComboPLS->currentText()));
  });
}

// Without a chosen list the key is the text's.
bool StoredListFrame::DeleteKey() {
  if (station_.storedList.ComboPLS.index < 0) return false;
  OnAir::RecordActivity(station_);
  WhenFree(station_, this, [this] {
    OnAir::ComboPLS_KeyDelete(station_);
    Refresh();
  });
  return true;
}

bool StoredListFrame::eventFilter(QObject* watched, QEvent* event) {
  // The neutral text fills the whole field: it is selected, so that the time can be typed.
  if (watched == ChHeure && event->type() == QEvent::FocusIn)
    QTimer::singleShot(0, ChHeure, &QLineEdit::selectAll);
  const int key = event->type() == QEvent::KeyPress ? static_cast<QKeyEvent*>(event)->key() : 0;
  if (watched == LblDate) {
    const bool rightClick = event->type() == QEvent::MouseButtonRelease &&
                            static_cast<QMouseEvent*>(event)->button() == Qt::RightButton;
    if (!rightClick && key != Qt::Key_J) return false;
    OnAir::LblDate_RightClick(station_);
    Refresh();
    return true;
  }
  return watched != ChHeure && key == Qt::Key_Delete && DeleteKey();
}

}  // namespace zemo
