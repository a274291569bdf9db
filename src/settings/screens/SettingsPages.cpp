// The tabs of the settings' window, in their order. What is a list stands in SettingsListPages.cpp.
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QTabBar>
#include <QVBoxLayout>

#include "platform/Clock.h"
#include "platform/Joystick.h"
#include "settings/SettingsControls.h"
#include "settings/screens/SettingsWindow.h"
#include "station/Station.h"
#include "ui/LevelMeter.h"
#include "ui/Theme.h"

namespace zemo {

// Panels below each other in columns of one width.
void SettingsWindow::AddPage(std::initializer_list<std::vector<QWidget*>> columns) {
  auto* page = new QWidget(pages_);
  auto* layout = new QHBoxLayout(page);
  layout->setContentsMargins(0, 0, 0, 0);
  for (const std::vector<QWidget*>& panels : columns) {
    auto* column = new QVBoxLayout;
    for (QWidget* panel : panels)
      column->addWidget(panel, panel->property("grows").toBool() ? 1 : 0);
    if (!panels.back()->property("grows").toBool()) column->addStretch(1);
    layout->addLayout(column, 1);
  }
  Config->addTab(Word("Config." + std::to_string(pages_->count())));
  pages_->addWidget(page);
}

void SettingsWindow::MakePreferences() {
  Panel screen = MakePanel(), music = MakePanel();
  for (const char* name : {"Langue", "SpinVeille", "TexteV", "GraphiqueMini", "PictureColor"})
    AddField(screen, name);
  for (const char* name : {"SpinRequette", "JingleMn", "JingleMnIntro", "CheckJingleCourt",
                           "CheckDepartJingle", "JingleExtraitYN"})
    AddField(music, name);
  AddPage({{screen.frame}, {music.frame}});
}

void SettingsWindow::MakeMixPoints() {
  Panel points = MakePanel();
  for (const char* name : {"EnchDef", "EnchPub", "EnchToph", "EnchJingles", "HsFadeOut"})
    AddField(points, name);
  AddPage({{points.frame}});
}

void SettingsWindow::MakeLevels() {
  Panel levels = MakePanel();
  for (const char* name : {"Volume", "VolumeSousImp", "VolumeSurImp", "VolumePub", "VolumeRub"})
    AddField(levels, name);
  AddPage({{levels.frame}});
}

void SettingsWindow::MakeSoundCard() {
  Panel outputs = MakePanel(), buffers = MakePanel();
  AddOutput(outputs, "PlayCombo", "TestAir");
  AddOutput(outputs, "PlayPréecoute", "TestPrelisten");
  levelLeft_ = new LevelMeter(this);
  levelRight_ = new LevelMeter(this);
  levelLeft_->setObjectName(QStringLiteral("TestLevelX1"));
  levelRight_->setObjectName(QStringLiteral("TestLevelX2"));
  for (LevelMeter* meter : {levelLeft_, levelRight_}) AddRow(outputs, {}, meter);
  AddRow(outputs, {}, Button("TestStop", "TestTip", [this] { trial_.End(); }));
  trial_.level = [this](float left, float right) {
    const int64_t nowMs = station_.platform.clock.MonotonicMs();
    levelLeft_->Show(left, nowMs);
    levelRight_->Show(right, nowMs);
  };
  for (const char* name : {"NbrBuffers", "Buffers", "MaxPlay"}) AddField(buffers, name);
  AddPage({{outputs.frame}, {buffers.frame}});
}

void SettingsWindow::AddOutput(Panel& panel, const char* combo, const char* test) {
  auto* whole = new QWidget(this);
  auto* layout = new QHBoxLayout(whole);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(ControlFor(*FindSettingsControl(combo)), 1);
  layout->addWidget(Button(test, "TestTip", [this, combo] { Try(combo); }));
  AddRow(panel, Word(combo), whole, Note(combo));
}

void SettingsWindow::MakeSpots() {
  Panel rules = MakePanel(), files = MakePanel();
  for (const char* name : {"CheckPub", "CheckRubrique", "CheckPubToph", "CheckDelPub"})
    AddField(rules, name);
  AddRow(files, Word("FileAvantPub"), FileBox("FileAvantPub", "CmdFileAvant"),
         Note("FileAvantPub"));
  AddRow(files, Word("FileApresPub"), FileBox("FileApresPub", "CmdFileApres"),
         Note("FileApresPub"));
  AddPage({{rules.frame}, {files.frame}});
}

void SettingsWindow::MakeOthers() {
  Panel machine = MakePanel(), excerpts = MakePanel(), base = MakePanel();
  for (const char* name :
       {"CheckAutoPlay", "RapportSquelette", "CheckDoublonYN", "SpinRapportDiff", "SpinPurge"})
    AddField(machine, name);
  for (const char* name : {"CheckExtraitAuto", "SpinInExtrait", "SpinOutExtrait"})
    AddField(excerpts, name);
  AddRow(base, {}, Button("BtnIndex", "BtnIndexTip", [this] {
           Work([this] { Settings::BtnIndex_Click(station_); });
         }));
  AddRow(base, {}, Button("BtnRech", "BtnRechTip", [this] {
           Work([this] { Settings::BtnRech_Click(station_); });
         }));
  AddPage({{machine.frame}, {excerpts.frame, base.frame}});
}

void SettingsWindow::MakeCommunication() {
  Panel port = MakePanel(), action = MakePanel();
  AddField(port, "PortCom");
  QLineEdit* line = TypedBox("Setting", "Setting", "SettingTip");
  connect(line, &QLineEdit::textEdited, this,
          [this](const QString& typed) { Screen().Setting = typed.toStdString(); });
  AddRow(port, Word("Setting"), line);
  auto* told = new QLabel(this);
  told->setObjectName(QStringLiteral("InfoERR"));
  AddRow(port, {}, told);
  Follow([this, line, told] {
    const QString setting = QString::fromStdString(Screen().Setting);
    if (line->text() != setting) line->setText(setting);
    told->setText(Texts().OfRoutine(Screen().InfoERR));
  });
  AddField(action, "OptionSat");
  AddField(action, "SpinImpulsion");
  AddPage({{port.frame}, {action.frame, JoystickPanel()}, {FilterPanel()}});
}

QWidget* SettingsWindow::JoystickPanel() {
  Panel panel = MakePanel("FrameJoystique");
  AddField(panel, "ComboJoystiquePort");
  auto* answers = new QLabel(this);
  answers->setObjectName(QStringLiteral("LblJoystique"));
  AddRow(panel, Word("JoystickAnswers"), answers);
  Follow([this, answers] {
    const std::string& told = Screen().LblJoystique;
    answers->setText(told.empty() ? QStringLiteral("-") : Word(told == "Yes" ? "Yes" : "No"));
  });
  return panel.frame;
}

void SettingsWindow::MakeOptimisation() {
  Panel hour = MakePanel(), request = MakePanel();
  for (const char* name : {"OptionOptimise", "SpinOptimise", "SpinAvantoph", "SpinOffset"})
    AddField(hour, name);
  for (const char* name : {"CheckModel", "CheckNational", "SpinEcartArtiste", "SpinDecalDiff"})
    AddField(request, name);
  AddPage({{hour.frame}, {request.frame}, {HoursPanel()}});
}

}  // namespace zemo
