// What the settings' window has of lists: the times of a weekday, the hours of instrumentals, and
// the times at which the inputs are off.
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTableWidget>

#include "settings/SettingsControls.h"
#include "settings/SettingsTexts.h"
#include "settings/screens/SettingsWindow.h"
#include "station/Station.h"
#include "ui/Named.h"
#include "ui/Theme.h"

namespace zemo {

namespace {

void ShowList(QListWidget& list, const std::vector<std::string>& entries) {
  QStringList texts, present;
  for (const std::string& entry : entries) texts << ShownText(entry);
  for (int row = 0; row < list.count(); ++row) present << list.item(row)->text();
  if (texts == present) return;
  const int row = list.currentRow();
  list.clear();
  list.addItems(texts);
  list.setCurrentRow(std::min(row, list.count() - 1));
}

// Of the list alone: Delete removes the chosen entry.
template <typename Pressed>
void OnDelete(QListWidget& list, Pressed pressed) {
  auto* key = new QShortcut(QKeySequence(Qt::Key_Delete), &list);
  key->setContext(Qt::WidgetShortcut);
  QObject::connect(key, &QShortcut::activated, &list, pressed);
}

}  // namespace

void SettingsWindow::MakeStart() {
  Panel day = MakePanel();
  auto* JourSemaine = new QComboBox(this);
  JourSemaine->setObjectName(QStringLiteral("JourSemaine"));
  SetTip(*JourSemaine, Word("DayTip"));
  JourSemaine->setAccessibleName(Word("JourSemaine"));
  connect(JourSemaine, &QComboBox::activated, this, [this](int chosen) {
    EnterTypedTimes();
    Settings::ChooseWeekday(station_, chosen);
    ShowAll();
  });
  Follow([this, JourSemaine] {
    const QSignalBlocker silent(JourSemaine);
    if (JourSemaine->count() == 0)
      for (const std::string& name : Screen().JourSemaineNames)
        JourSemaine->addItem(ShownText(name));
    JourSemaine->setCurrentIndex(Screen().JourSemaine);
  });
  AddRow(day, Word("JourSemaine"), JourSemaine);
  AddPage({{day.frame, TimesPanel("StartAuto", "ComboHeure", Settings::TimeList::kComboHeure)},
           {TimesPanel("ArretSystem", "HeureArretSystem", Settings::TimeList::kHeureArretSystem)},
           {MarkerPanel()}});
}

QWidget* SettingsWindow::TimesPanel(const char* caption, const char* listName,
                                    Settings::TimeList which) {
  Panel panel = MakePanel(caption);
  panel.frame->setProperty("grows", true);
  const char* tip = which == Settings::TimeList::kHeureArretSystem ? "StopsTip" : "TimesTip";
  const std::string boxName = std::string(listName) + "Typed";
  QLineEdit* box = TypedBox(boxName.c_str(), caption, tip);
  const auto enter = [this, which, box] { EnterTime(which, *box); };
  connect(box, &QLineEdit::returnPressed, this, enter);
  typedTimes_.emplace_back(box, enter);
  AddRow(panel, {}, box, Note(boxName.c_str()));
  auto* list = new QListWidget(this);
  list->setObjectName(QString::fromUtf8(listName));
  list->setAccessibleName(Word(caption));
  SetTip(*list, Word(tip));
  OnDelete(*list, [this, which, list] { DeleteChosen(which, *list); });
  AddRow(panel, {}, list);
  panel.grid->setRowStretch(panel.grid->rowCount() - 1, 1);
  Follow([this, list, which] { ShowList(*list, Settings::TimesOf(station_, which)); });
  return panel.frame;
}

QWidget* SettingsWindow::MarkerPanel() {
  Panel panel = MakePanel("FrameTopage");
  panel.frame->setProperty("grows", true);
  constexpr auto kList = Settings::TimeList::kTopage;
  auto* typed = new QWidget(this);
  auto* row = new QHBoxLayout(typed);
  row->setContentsMargins(0, 0, 0, 0);
  ChEdit = TypedBox("ChEdit", "ChEdit", "TimesTip");
  const auto enter = [this] { EnterMarker(); };
  connect(ChEdit, &QLineEdit::returnPressed, this, enter);
  typedTimes_.emplace_back(ChEdit, enter);
  row->addWidget(ChEdit);
  row->addWidget(Button("BtnAjouter", "TimesTip", [this] { EnterTime(kList, *ChEdit); }));
  row->addStretch(1);
  AddRow(panel, {}, typed, Note("ChEdit"));
  auto* list = new QListWidget(this);
  list->setObjectName(QStringLiteral("Topage"));
  list->setAccessibleName(Word("FrameTopage"));
  SetTip(*list, Word("TimesTip"));
  OnDelete(*list, [this, list] { DeleteChosen(kList, *list); });
  AddRow(panel, {}, list);
  panel.grid->setRowStretch(panel.grid->rowCount() - 1, 1);
  Follow([this, list] { ShowList(*list, Screen().Topage); });
  auto* heading = new QLabel(Word("ChDecoupe"), this);
  heading->setProperty("dim", true);
  AddRow(panel, {}, heading);
  AddRow(panel, {}, MinuteBoxes(), Note("BtnInti"));
  AddRow(panel, {}, Button("BtnSave", "SaveTip", [this] {
           if (IsOpen()) Settings::BtnSaveTopage_Click(station_);
         }));
  return panel.frame;
}

QWidget* SettingsWindow::MinuteBoxes() {
  auto* whole = new QWidget(this);
  auto* row = new QHBoxLayout(whole);
  row->setContentsMargins(0, 0, 0, 0);
  for (size_t at = 0; at < Screen().ChDecoupe.size(); ++at) {
    auto* box = new QLineEdit(whole);
    box->setObjectName(QStringLiteral("ChDecoupe_%1").arg(at));
    box->setAccessibleName(Word("ChDecoupe"));
    SetTip(*box, Word("IntiTip"));
    connect(box, &QLineEdit::textEdited, this,
            [this, at](const QString& typed) { Screen().ChDecoupe[at] = typed.toStdString(); });
    Follow([this, box, at] {
      const QString text = ShownText(Screen().ChDecoupe[at]);
      if (box->text() != text) box->setText(text);
    });
    row->addWidget(box, 1);
  }
  row->addWidget(Button("BtnInti", "IntiTip", [this] {
    if (!IsOpen()) return;
    const bool refused = Settings::BtnInti_Click(station_).has_value();
    ShowNote("BtnInti", refused ? Word("RefusedMinute") : QString());
    ShowAll();
  }));
  return whole;
}

// A tick an hour, in columns.
QWidget* SettingsWindow::HoursPanel() {
  Panel panel = MakePanel("Instru");
  panel.frame->setProperty("grows", true);
  AddField(panel, "CheckInstrumental");
  auto* Instru = new QListWidget(this);
  Instru->setObjectName(QStringLiteral("Instru"));
  Instru->setAccessibleName(Word("Instru"));
  SetTip(*Instru, QString::fromStdString(
                      SettingTip(*FindSettingsControl("CheckInstrumental"), Texts().Langue())));
  for (size_t hour = 0; hour < Screen().Instru.size(); ++hour) Instru->addItem(QString());
  connect(Instru, &QListWidget::itemChanged, this, [this](QListWidgetItem* entry) {
    if (IsOpen()) TickHour(entry);
  });
  AddRow(panel, {}, Instru);
  panel.grid->setRowStretch(panel.grid->rowCount() - 1, 1);
  Follow([this, Instru] {
    const QSignalBlocker silent(Instru);
    for (size_t hour = 0; hour < Screen().Instru.size(); ++hour) {
      QListWidgetItem* entry = Instru->item(static_cast<int>(hour));
      entry->setText(ShownText(Settings::InstruEntry(Screen(), hour)));
      entry->setCheckState(Screen().Instru[hour] ? Qt::Checked : Qt::Unchecked);
    }
  });
  return panel.frame;
}

QWidget* SettingsWindow::FilterPanel() {
  Panel panel = MakePanel("Filtre");
  panel.frame->setProperty("grows", true);
  ChFiltre = TypedBox("ChFiltre", "ChFiltre", "FiltreTip");
  connect(ChFiltre, &QLineEdit::returnPressed, this, [this] { WriteFilter(); });
  AddRow(panel, Word("ChFiltre"), ChFiltre, Note("ChFiltre"));
  Filtre = new QTableWidget(SettingsScreen::kFilterRows, 2, this);
  Filtre->setObjectName(QStringLiteral("Filtre"));
  Filtre->setAccessibleName(Word("Filtre"));
  SetTip(*Filtre, Word("FiltreTip"));
  Filtre->setHorizontalHeaderLabels({Word("Filtre.0"), Word("Filtre.1")});
  Filtre->setEditTriggers(QAbstractItemView::NoEditTriggers);
  Filtre->setSelectionMode(QAbstractItemView::SingleSelection);
  Filtre->setTabKeyNavigation(false);
  Filtre->setCornerButtonEnabled(false);
  Filtre->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  for (int row = 0; row < Filtre->rowCount(); ++row)
    for (int column = 0; column < 2; ++column) Filtre->setItem(row, column, new QTableWidgetItem);
  connect(Filtre, &QTableWidget::currentCellChanged, this, [this](int row, int column) {
    if (row < 0) return;
    Screen().FiltreRow = row;
    Screen().FiltreColumn = column;
  });
  AddRow(panel, {}, Filtre);
  panel.grid->setRowStretch(panel.grid->rowCount() - 1, 1);
  Follow([this] {
    const QSignalBlocker silent(Filtre);
    for (int row = 0; row < Filtre->rowCount(); ++row) {
      const auto& [from, to] = Screen().Filtre[static_cast<size_t>(row)];
      Filtre->item(row, 0)->setText(ShownText(from));
      Filtre->item(row, 1)->setText(ShownText(to));
    }
    Filtre->setCurrentCell(Screen().FiltreRow, Screen().FiltreColumn);
  });
  return panel.frame;
}

}  // namespace zemo
