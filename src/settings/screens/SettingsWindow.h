// The settings' window: nine tabs over the settings of the station, this machine and the days of
// the week. It shows Station::settings and calls the routines of settings/SettingsControls.h and
// SettingsCouplings.h.
#pragma once

#include <QLabel>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "settings/SettingsCouplings.h"
#include "settings/screens/OutputTrial.h"
#include "ui/OfficeWindow.h"

class QGridLayout;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QStackedWidget;
class QTabBar;
class QTableWidget;
class QVBoxLayout;

namespace zemo {

class LevelMeter;
class SettingsDevices;
struct SettingsControl;
struct SettingsScreen;

// What the window is given besides the station. References are not owned and outlive it.
struct SettingsSources {
  SettingsDevices* devices = nullptr;
  OfficeWindow::FileChooser chooseFiles;
};

// Modeless beside the air; what is set is stored when it is left. Thread: the logic's. The station
// outlives it.
class SettingsWindow : public OfficeWindow {
 public:
  SettingsWindow(Station& station, SettingsSources sources);
  void Open();  // at a free moment; nothing while the menus are locked
  bool IsOpen() const override;
  bool LeaveNow() override;  // false also where it stays open, since the base did not take all

 protected:
  void ArrangeParts(double unit) override;
  void ShowAll() override;
  bool TakeOver() override;
  void Left() override;

 private:
  // A panel of fields below each other: what is named, the control, what stands beside it, and why
  // a value was not taken.
  struct Panel {
    QWidget* frame;
    QGridLayout* grid;
  };
  // --- pages: SettingsPages.cpp, SettingsListPages.cpp ---
  void MakePreferences();
  void MakeMixPoints();
  void MakeLevels();
  void MakeSoundCard();
  void MakeSpots();
  void MakeStart();
  void MakeOthers();
  void MakeCommunication();
  void MakeOptimisation();
  QWidget* JoystickPanel();
  QWidget* FilterPanel();
  QWidget* HoursPanel();
  QWidget* MarkerPanel();
  QWidget* MinuteBoxes();
  QWidget* TimesPanel(const char* caption, const char* list, Settings::TimeList which);
  void AddOutput(Panel& panel, const char* combo, const char* test);
  void AddPage(std::initializer_list<std::vector<QWidget*>> columns);

  // --- fields: SettingsFields.cpp ---
  Panel MakePanel(const char* caption = nullptr);
  void AddField(Panel& panel, const char* control);
  void AddRow(Panel& panel, const QString& caption, QWidget* control, QLabel* note = nullptr);
  QWidget* ControlFor(const SettingsControl& control);
  QWidget* SliderFor(const SettingsControl& control);
  QWidget* SpinnerFor(const SettingsControl& control);
  QWidget* BoxFor(const SettingsControl& control);
  QWidget* CheckFor(const SettingsControl& control);
  QWidget* OptionsFor(const SettingsControl& control);
  QWidget* ComboFor(const SettingsControl& control);
  QWidget* ColourFor(const SettingsControl& control);
  QWidget* FileBox(const char* control, const char* button);
  QPushButton* Button(const char* name, const char* tip, std::function<void()> pressed);
  QLineEdit* TypedBox(const char* name, const char* caption, const char* tip);
  QLabel* Note(const char* control);

  // --- what is done ---
  void Give(const SettingsControl& control, const std::string& value);
  void TakeOutput(const SettingsControl& control);
  void PickColour(const SettingsControl& control);
  void ShowNote(const char* control, const QString& why);
  QString WhyRefused(const SettingsControl& control, const std::string& value) const;
  QString WhyNoTime(Settings::TimeList list) const;
  void EnterTime(Settings::TimeList list, QLineEdit& box);
  void EnterMarker();  // Enter in ChEdit, which needs room in the list
  void EnterTypedTimes();
  void DeleteChosen(Settings::TimeList list, QListWidget& shown);
  void Try(const char* combo);
  void TickHour(const QListWidgetItem* entry);
  void WriteFilter();

  // Shown anew whenever anything changed.
  void Follow(std::function<void()> show) { show_.push_back(std::move(show)); }
  void OpenNow();
  void ShowWaiting();
  QString Word(const std::string& name) const { return Texts().Word(name); }
  SettingsScreen& Screen() const;

  SettingsSources sources_;
  OutputTrial trial_;
  bool takingOver_ = false;                       // what is being typed stays
  int airOutput_ = -1;                            // that the air has, by its entry of PlayCombo
  std::map<std::string, std::string> atOpening_;  // of what waits for the next start
  std::vector<std::function<void()>> show_;
  std::map<std::string, QLabel*> notes_;                                  // by control
  std::vector<std::pair<QLineEdit*, std::function<void()>>> typedTimes_;  // what enters each box
  std::vector<QGridLayout*> grids_;
  QWidget* body_ = nullptr;
  QTabBar* Config = nullptr;
  QStackedWidget* pages_ = nullptr;
  LevelMeter *levelLeft_ = nullptr, *levelRight_ = nullptr;
  QTableWidget* Filtre = nullptr;
  QLineEdit *ChFiltre = nullptr, *ChEdit = nullptr;
};

}  // namespace zemo
